#pragma once

#include <utility>
#include <vector>

#include <QMenu>
#include <QMetaType>

#include "qthost/FilterSettings.h"

class QAction;
class QActionGroup;

Q_DECLARE_METATYPE(du::DualSymbol)

namespace qthost {

/// The choices of a filter apart from its text, as a menu. Belongs to its parent; owner's thread.
class FilterMenu : public QMenu {
  Q_OBJECT

public:
  explicit FilterMenu(QWidget* parent);
  FilterMenu(const FilterMenu&) = delete;
  FilterMenu& operator=(const FilterMenu&) = delete;
  ~FilterMenu() override;

  /// The properties that can be searched and sorted by, beside the name. One that the settings have stays in the menu.
  void SetColumns(const std::vector<du::DualSymbol>& columns);
  /// Shows these settings, without a signal.
  void SetSettings(const FilterSettings& settings);
  [[nodiscard]] const FilterSettings& GetSettings() const noexcept { return m_settings; }
  [[nodiscard]] QAction& GetListAction() const noexcept { return *m_list; }
  /// What the menu leaves out, in words.
  [[nodiscard]] QStringList DescribeCriteria() const;
  void SetIcons(const QPalette& palette);

Q_SIGNALS:
  /// The user has chosen something.
  void Chosen();
  /// The user wants to look for nothing.
  void ClearChosen();

private:
  struct Flag {
    QAction* action;
    bool FilterSettings::*isOn;
    /// Whether it leaves rows out.
    bool isCriterion;
  };

  QAction* _AddFlag(QMenu& menu, const QString& text, const QString& toolTip, bool FilterSettings::*isOn,
                    bool isCriterion = false);
  void _AddVisibility(const QString& text, const QString& toolTip, FilterSettings::Visibility visibility);
  void _AddTextChoices();
  void _AddCriteria();
  void _AddPresentation();
  void _FillColumns();
  void _AddSearchedColumn(const du::DualSymbol& column);
  void _AddSortColumn(const QString& text, const du::DualSymbol& column);
  void _ChooseVisibility(FilterSettings::Visibility visibility, bool isOn);
  void _ChooseColumn(const du::DualSymbol& column, bool isOn);
  void _ShowSettings();

  FilterSettings m_settings;
  std::vector<du::DualSymbol> m_columns;
  std::vector<Flag> m_flags;
  std::vector<std::pair<QAction*, FilterSettings::Visibility>> m_visibilities;
  QMenu* m_searchMenu = nullptr;
  QMenu* m_sortMenu = nullptr;
  QActionGroup* m_sortGroup = nullptr;
  QAction* m_list = nullptr;
  QAction* m_descending = nullptr;
  QAction* m_clear = nullptr;
};

}  // namespace qthost
