#include "FilterMenu.h"

#include <algorithm>

#include <QAction>
#include <QActionGroup>

#include "SvgIcon.h"

namespace qthost {

namespace {

QString ToText(const du::Symbol& symbol)
{
  return QString::fromUtf8(symbol.GetText());
}

}  // namespace

FilterMenu::FilterMenu(QWidget* parent) : QMenu(parent)
{
  setObjectName(QStringLiteral("filterMenu"));
  setToolTipsVisible(true);
  _AddTextChoices();
  addSeparator();
  _AddCriteria();
  addSeparator();
  _AddPresentation();
  addSeparator();
  m_clear = addAction(tr("Clea&r the filter"), this, &FilterMenu::ClearChosen);
  m_clear->setToolTip(tr("Look for nothing, and show all rows"));
  _FillColumns();
}

FilterMenu::~FilterMenu() = default;

void FilterMenu::_AddTextChoices()
{
  _AddFlag(*this, tr("Match &case"), tr("Tell upper and lower case apart"), &FilterSettings::matchesCase);
  _AddFlag(*this, tr("Whole &words"), tr("Find the words of the text as whole words alone"),
           &FilterSettings::matchesWholeWords);
  m_searchMenu = addMenu(tr("Search &in"));
  m_searchMenu->setObjectName(QStringLiteral("searchMenu"));
}

void FilterMenu::_AddCriteria()
{
  _AddFlag(*this, tr("Only &selected"), tr("Show only what is selected"), &FilterSettings::selectedOnly, true);
  _AddVisibility(tr("Only &visible"), tr("Show only what is visible in the scene"),
                 FilterSettings::Visibility::Visible);
  _AddVisibility(tr("Only &hidden"), tr("Show only what is hidden in the scene"), FilterSettings::Visibility::Hidden);
  _AddFlag(*this, tr("Only with an iss&ue"), tr("Show only what has failed: shapes, and files that could not be read"),
           &FilterSettings::issuesOnly, true);
  _AddFlag(*this, tr("Only &parts"), tr("Show only what has no children, or bodies alone"), &FilterSettings::partsOnly,
           true);
}

void FilterMenu::_AddPresentation()
{
  _AddFlag(*this, tr("Show si&blings"), tr("Show what stands beside a match as well"), &FilterSettings::showsSiblings);
  m_list =
      _AddFlag(*this, tr("As a &list"), tr("Show the rows as one list in place of the tree"), &FilterSettings::isList);
  _AddFlag(*this, tr("&Follow changes"), tr("Filter again when the tree or the selection has changed"),
           &FilterSettings::follows);
  m_sortMenu = addMenu(tr("S&ort by"));
  m_sortMenu->setObjectName(QStringLiteral("sortMenu"));
}

QAction* FilterMenu::_AddFlag(QMenu& menu, const QString& text, const QString& toolTip, bool FilterSettings::*isOn,
                              bool isCriterion)
{
  QAction* const action = menu.addAction(text);
  action->setToolTip(toolTip);
  action->setCheckable(true);
  m_flags.push_back({action, isOn, isCriterion});
  connect(action, &QAction::triggered, this, [this, isOn](bool isChecked) {
    m_settings.*isOn = isChecked;
    Q_EMIT Chosen();
  });
  return action;
}

void FilterMenu::_AddVisibility(const QString& text, const QString& toolTip, FilterSettings::Visibility visibility)
{
  QAction* const action = addAction(text);
  action->setToolTip(toolTip);
  action->setCheckable(true);
  m_visibilities.emplace_back(action, visibility);
  connect(action, &QAction::triggered, this, [this, visibility](bool isOn) { _ChooseVisibility(visibility, isOn); });
}

void FilterMenu::_ChooseVisibility(FilterSettings::Visibility visibility, bool isOn)
{
  m_settings.visibility = isOn ? visibility : FilterSettings::Visibility::Any;
  _ShowSettings();
  Q_EMIT Chosen();
}

void FilterMenu::_ChooseColumn(const du::DualSymbol& column, bool isOn)
{
  std::erase(m_settings.columns, column);
  if (isOn) {
    m_settings.columns.push_back(column);
  }
  Q_EMIT Chosen();
}

void FilterMenu::SetColumns(const std::vector<du::DualSymbol>& columns)
{
  m_columns = columns;
  _FillColumns();
  _ShowSettings();
}

void FilterMenu::_FillColumns()
{
  std::vector<du::DualSymbol> columns = m_columns;
  std::vector<du::DualSymbol> chosen = m_settings.columns;
  chosen.push_back(m_settings.sortColumn);
  for (const du::DualSymbol& column : chosen) {
    const bool isKnown = std::find(columns.begin(), columns.end(), column) != columns.end();
    if (!isKnown && column != du::DualSymbol() && column != FilterSettings::GetNameColumn()) {
      columns.push_back(column);
    }
  }
  std::erase_if(m_flags, [](const Flag& flag) {
    return flag.isOn == &FilterSettings::searchesName || flag.isOn == &FilterSettings::isAscending;
  });
  m_searchMenu->clear();
  _AddFlag(*m_searchMenu, tr("&Name"), tr("Look for the text in names"), &FilterSettings::searchesName);
  std::for_each(columns.begin(), columns.end(), [this](const auto& column) { _AddSearchedColumn(column); });
  m_sortMenu->clear();
  delete m_sortGroup;
  m_sortGroup = new QActionGroup(this);
  _AddSortColumn(tr("&Order of the assembly"), {});
  _AddSortColumn(tr("&Name"), FilterSettings::GetNameColumn());
  for (const du::DualSymbol& column : columns) {
    _AddSortColumn(ToText(column.GetSecond()), column);
  }
  m_sortMenu->addSeparator();
  m_descending = m_sortMenu->addAction(tr("&Descending"));
  m_descending->setCheckable(true);
  connect(m_descending, &QAction::triggered, this, [this](bool isOn) {
    m_settings.isAscending = !isOn;
    Q_EMIT Chosen();
  });
}

void FilterMenu::_AddSearchedColumn(const du::DualSymbol& column)
{
  QAction* const action = m_searchMenu->addAction(ToText(column.GetSecond()));
  action->setCheckable(true);
  action->setData(QVariant::fromValue(column));
  connect(action, &QAction::triggered, this, [this, column](bool isOn) { _ChooseColumn(column, isOn); });
}

void FilterMenu::_AddSortColumn(const QString& text, const du::DualSymbol& column)
{
  QAction* const action = m_sortMenu->addAction(text);
  action->setCheckable(true);
  action->setData(QVariant::fromValue(column));
  m_sortGroup->addAction(action);
  connect(action, &QAction::triggered, this, [this, column] {
    m_settings.sortColumn = column;
    Q_EMIT Chosen();
  });
}

void FilterMenu::SetSettings(const FilterSettings& settings)
{
  const bool hasOtherColumns = settings.columns != m_settings.columns || settings.sortColumn != m_settings.sortColumn;
  m_settings = settings;
  if (hasOtherColumns) {
    _FillColumns();
  }
  _ShowSettings();
}

void FilterMenu::_ShowSettings()
{
  for (const Flag& flag : m_flags) {
    flag.action->setChecked(m_settings.*flag.isOn);
  }
  for (const auto& [action, visibility] : m_visibilities) {
    action->setChecked(m_settings.visibility == visibility);
  }
  for (QAction* const action : m_searchMenu->actions()) {
    if (action->data().canConvert<du::DualSymbol>()) {
      const auto column = action->data().value<du::DualSymbol>();
      action->setChecked(std::find(m_settings.columns.begin(), m_settings.columns.end(), column)
                         != m_settings.columns.end());
    }
  }
  for (QAction* const action : m_sortGroup->actions()) {
    action->setChecked(action->data().value<du::DualSymbol>() == m_settings.sortColumn);
  }
  m_descending->setChecked(!m_settings.isAscending);
}

QStringList FilterMenu::DescribeCriteria() const
{
  QStringList words;
  for (const Flag& flag : m_flags) {
    if (flag.isCriterion && m_settings.*flag.isOn) {
      words << flag.action->text().remove(u'&');
    }
  }
  for (const auto& [action, visibility] : m_visibilities) {
    if (m_settings.visibility == visibility) {
      words << action->text().remove(u'&');
    }
  }
  return words;
}

void FilterMenu::SetIcons(const QPalette& palette)
{
  m_list->setIcon(MakeSvgIcon(QStringLiteral("list"), palette));
  m_clear->setIcon(MakeSvgIcon(QStringLiteral("clear"), palette));
}

}  // namespace qthost
