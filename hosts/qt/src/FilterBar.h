#pragma once

#include <vector>

#include <QTimer>
#include <QWidget>

#include "qthost/FilterSettings.h"

class QToolButton;

namespace qthost {

class FilterLine;
class FilterMenu;

/// The line above the rows: a text to look for, and what else there is to choose. Typing is told after a short pause,
/// everything else at once. Owner's thread.
class FilterBar : public QWidget {
  Q_OBJECT

public:
  explicit FilterBar(QWidget* parent);
  FilterBar(const FilterBar&) = delete;
  FilterBar& operator=(const FilterBar&) = delete;
  ~FilterBar() override;

  /// The text is the one that was told last.
  [[nodiscard]] const FilterSettings& GetSettings() const;
  /// Shows these settings, without a signal.
  void SetSettings(const FilterSettings& settings);
  void SetColumns(const std::vector<du::DualSymbol>& columns);
  /// How long typing pauses before the text counts.
  void SetPause(int milliseconds);
  void FocusText();
  /// Turns off all that leaves rows out, and tells.
  void Clear();
  void SetIcons(const QPalette& palette);

Q_SIGNALS:
  /// What the user wants may have changed.
  void Changed();
  /// The user wants what is there now, changed or not.
  void Confirmed();
  void LeftDownwards();

private:
  void _TakeText();
  void _Confirm();
  void _Tell();
  void _ShowCriteria();

  FilterLine* m_line;
  QToolButton* m_options;
  QToolButton* m_list;
  FilterMenu* m_menu;
  QTimer m_pause;
};

}  // namespace qthost
