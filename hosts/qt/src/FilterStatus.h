#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;
class QToolButton;

namespace qthost {

/// The line below the rows: how many there are, and while a filter works, how far it is and a way to end it. Owner's
/// thread.
class FilterStatus : public QWidget {
  Q_OBJECT

public:
  explicit FilterStatus(QWidget* parent);
  FilterStatus(const FilterStatus&) = delete;
  FilterStatus& operator=(const FilterStatus&) = delete;
  ~FilterStatus() override;

  void SetText(const QString& text);
  /// The progress comes into sight after a moment: what is over sooner would only flicker.
  void SetWorking(bool isWorking);
  void SetPercent(int percent);
  void SetIcons(const QPalette& palette);

Q_SIGNALS:
  void CancelChosen();

private:
  void _ShowWork(bool isShown);

  QLabel* m_text;
  QProgressBar* m_progress;
  QToolButton* m_cancel;
  QTimer m_delay;
};

}  // namespace qthost
