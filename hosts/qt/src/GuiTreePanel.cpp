#include "qthost/GuiTreePanel.h"

#include <algorithm>
#include <utility>

#include <QAction>
#include <QEvent>
#include <QHeaderView>
#include <QMenu>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "DisplaySwitches.h"
#include "EmptyMessage.h"
#include "FilterBar.h"
#include "FilterStatus.h"
#include "RowCommands.h"
#include "StructureView.h"
#include "SvgIcon.h"
#include "VisibilityDelegate.h"
#include "guitree/StructureTreeState.h"
#include "qthost/SelectionBinding.h"
#include "qthost/TreeViewKeeper.h"
#include "qthost/TypeIconSet.h"

namespace qthost {

GuiTreePanel::GuiTreePanel(GuiTreeItemModel& model, QWidget* parent)
    : QWidget(parent),
      m_model(model),
      m_bar(new FilterBar(this)),
      m_view(new StructureView(this)),
      m_status(new FilterStatus(this)),
      m_message(new EmptyMessage(*m_view)),
      m_eyes(new VisibilityDelegate(m_view)),
      m_commands(new RowCommands(*m_view, model)),
      m_keeper(new TreeViewKeeper(*m_view, model))
{
  setAccessibleName(tr("Structure panel"));
  m_view->setModel(&m_model);
  new SelectionBinding(*m_view, m_model);
  m_view->setItemDelegateForColumn(GuiTreeItemModel::VisibleColumn, m_eyes);
  _BuildLayout();
  _AddOwnActions();
  _ConnectControls();
  _ConnectModel();
  _RefreshIcons();
  _RefreshColumns();
  _ShowResult();
  m_model.SetInSight(false);
}

GuiTreePanel::~GuiTreePanel() = default;

void GuiTreePanel::_BuildLayout()
{
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->setSpacing(2);
  layout->addWidget(m_bar);
  layout->addWidget(m_view, 1);
  layout->addWidget(m_status);
  setFocusProxy(m_view);
}

void GuiTreePanel::_AddOwnActions()
{
  m_focusFilter = new QAction(tr("&Find in the structure"), this);
  m_focusFilter->setToolTip(tr("Go to the filter"));
  m_focusFilter->setShortcut(QKeySequence::Find);
  m_focusFilter->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  addAction(m_focusFilter);
  connect(m_focusFilter, &QAction::triggered, m_bar, &FilterBar::FocusText);

  m_showBodies = _AddSwitch(tr("Show &bodies"), tr("Show the bodies of parts as rows"));
  connect(m_showBodies, &QAction::toggled, this, [](bool isOn) { DisplaySwitches::Get().SetShowsBodies(isOn); });
  connect(&DisplaySwitches::Get(), &DisplaySwitches::BodiesChanged, this, &GuiTreePanel::_OnBodiesSwitched);
  m_collapse = _AddSwitch(tr("&Collapse equal instances"), tr("Show equal parts side by side as one row"));
  connect(m_collapse, &QAction::toggled, this, [](bool isOn) { DisplaySwitches::Get().SetCollapsesInstances(isOn); });
  connect(&DisplaySwitches::Get(), &DisplaySwitches::CollapseChanged, this, &GuiTreePanel::_OnCollapseSwitched);
  _ShowSwitches();
}

QAction* GuiTreePanel::_AddSwitch(const QString& text, const QString& toolTip)
{
  auto* const action = new QAction(text, this);
  action->setToolTip(toolTip);
  action->setCheckable(true);
  return action;
}

void GuiTreePanel::_ConnectControls()
{
  connect(m_bar, &FilterBar::Changed, this, &GuiTreePanel::_TakeFilter);
  connect(m_bar, &FilterBar::Confirmed, this, &GuiTreePanel::_ConfirmFilter);
  connect(m_bar, &FilterBar::LeftDownwards, this, &GuiTreePanel::_GoToRows);
  connect(m_view, &StructureView::SortChosen, this, &GuiTreePanel::_SortBy);
  connect(m_view, &StructureView::MenuWanted, this, &GuiTreePanel::_ShowMenu);
  connect(m_status, &FilterStatus::CancelChosen, this, &GuiTreePanel::CancelFilter);
  connect(m_message, &EmptyMessage::WayOutChosen, m_bar, &FilterBar::Clear);
}

void GuiTreePanel::_ConnectModel()
{
  // A filter that the library has made anew must be the user's before it is looked at.
  connect(&m_model, &GuiTreeItemModel::PopulationBegins, this, &GuiTreePanel::_ApplyFilter);
  connect(&m_model, &GuiTreeItemModel::CalculatingChanged, this, &GuiTreePanel::_OnCalculating);
  connect(&m_model, &GuiTreeItemModel::EditedMeanwhile, this, &GuiTreePanel::_FilterAfterEdits);
  // After the binding, which has made the selection that of the view.
  connect(&m_model, &GuiTreeItemModel::SelectionTold, m_view, &StructureView::NoteSelection);
  connect(&m_model, &GuiTreeItemModel::FilterProgressed, m_status, &FilterStatus::SetPercent);
  connect(&m_model, &GuiTreeItemModel::ResultShown, this, &GuiTreePanel::_ShowResult);
  connect(&m_model, &GuiTreeItemModel::RowsChanged, this, &GuiTreePanel::_ShowResult);
  connect(&m_model, &QAbstractItemModel::columnsInserted, this, &GuiTreePanel::_RefreshColumns);
  connect(&m_model, &QAbstractItemModel::columnsRemoved, this, &GuiTreePanel::_RefreshColumns);
}

QTreeView& GuiTreePanel::GetView() const noexcept
{
  return *m_view;
}

void GuiTreePanel::SetVisibilityHook(VisibilityHook hook)
{
  m_commands->SetVisibilityHook(hook);
  if (!hook) {
    m_model.SetVisibilitySetter({});
    return;
  }
  m_model.SetVisibilitySetter([hook = std::move(hook)](const GuiTreeItemModel::Instance& instance, bool isVisible) {
    return hook({instance}, isVisible);
  });
}

void GuiTreePanel::SetProductReader(ProductReader reader)
{
  m_commands->SetProductReader(std::move(reader));
}

void GuiTreePanel::SetPictureMaker(PictureMaker maker)
{
  m_pictureMaker = std::move(maker);
  _RefreshTypeIcons();
}

void GuiTreePanel::SetFilter(const FilterSettings& settings)
{
  m_bar->SetSettings(settings);
  _TakeFilter();
}

void GuiTreePanel::SetTypingPause(int milliseconds)
{
  m_bar->SetPause(milliseconds);
}

void GuiTreePanel::_TakeFilter()
{
  if (m_bar->GetSettings() == m_filter) {
    return;
  }
  const bool wasFiltered = _IsFiltered();
  m_filter = m_bar->GetSettings();
  m_keeper->SetExpandsAll(m_filter.HasCriterion());
  _ShowSort();
  _ApplyFilter();
  if (wasFiltered || _IsFiltered()) {
    FilterAgain();
  }
  Q_EMIT FilterChanged();
}

void GuiTreePanel::_ConfirmFilter()
{
  if (m_bar->GetSettings() != m_filter) {
    _TakeFilter();
  } else if (_IsFiltered()) {
    FilterAgain();
  }
}

bool GuiTreePanel::_IsFiltered() const
{
  guitree::StructureTreeState* const state = _GetState();
  return state && state->IsFiltered();
}

void GuiTreePanel::_ApplyFilter() const
{
  guitree::StructureTreeState* const state = _GetState();
  if (auto* const filter = state ? state->GetStructureFilter() : nullptr) {
    m_filter.ApplyTo(*filter);
  }
}

void GuiTreePanel::FilterAgain()
{
  guitree::StructureTreeState* const state = _GetState();
  if (!state) {
    return;
  }
  _ApplyFilter();
  // The result of the filter at work would come on top of the plain rows, which come with its end instead.
  if (m_model.IsCalculating() && !_IsFiltered()) {
    m_model.CancelFilter();
    return;
  }
  // This one reads what has been edited.
  m_isGivingWay = false;
  state->PopulateTree(false);
}

void GuiTreePanel::CancelFilter()
{
  m_model.CancelFilter();
}

void GuiTreePanel::GiveWayToEdit()
{
  m_isGivingWay = m_model.CancelFilter() || m_isGivingWay;
}

// The filter may have read all of the tree by then, and its end just be on the way.
void GuiTreePanel::_FilterAfterEdits()
{
  m_isGivingWay = true;
  m_model.CancelFilter();
}

void GuiTreePanel::_OnCalculating(bool isCalculating)
{
  m_status->SetWorking(isCalculating);
  guitree::StructureTreeState* const state = _GetState();
  if (!isCalculating && state && (std::exchange(m_isGivingWay, false) || !state->IsFiltered())) {
    state->PopulateTree(true);
  }
  _ShowResult();
}

void GuiTreePanel::_ShowResult()
{
  m_status->SetText(_DescribeRows());
  const bool isEmpty = m_model.GetRowCount() == 0 && !m_model.IsCalculating() && isVisible();
  if (m_model.GetResultNote() == GuiTreeItemModel::ResultNote::NoMatch) {
    m_message->SetMessage(tr("Nothing matches the filter."), tr("Clear the filter"));
  } else {
    m_message->SetMessage(isEmpty ? tr("There is nothing to show.") : QString());
  }
}

QString GuiTreePanel::_DescribeRows() const
{
  if (m_model.IsCalculating()) {
    return tr("Filtering");
  }
  const guitree::GuiTree* const panel = m_model.GetPanel();
  const auto result = panel ? panel->GetFilteredTree() : nullptr;
  if (!result || !m_filter.HasCriterion()) {
    const auto rows = static_cast<qulonglong>(m_model.GetRowCount());
    return rows == 1 ? tr("1 row") : tr("%1 rows").arg(locale().toString(rows));
  }
  const auto matches = static_cast<qulonglong>(result->GetNumMatchedItems());
  const QString count = matches == 1 ? tr("1 match") : tr("%1 matches").arg(locale().toString(matches));
  return m_model.GetResultNote() == GuiTreeItemModel::ResultNote::Cancelled ? tr("Cancelled, %1").arg(count) : count;
}

void GuiTreePanel::_GoToRows()
{
  if (!m_view->currentIndex().isValid()) {
    m_view->setCurrentIndex(m_model.index(0, GuiTreeItemModel::NameColumn));
  }
  m_view->setFocus(Qt::OtherFocusReason);
}

void GuiTreePanel::_ShowMenu(const QPoint& place)
{
  auto* const menu = new QMenu(m_view);
  menu->setObjectName(QStringLiteral("rowMenu"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setToolTipsVisible(true);
  m_commands->AddTo(*menu);
  Q_EMIT MenuAboutToShow(*menu);
  menu->popup(place);
}

void GuiTreePanel::_SortBy(int column, Qt::SortOrder order)
{
  const auto& properties = m_model.GetPropertyColumns();
  FilterSettings settings = m_bar->GetSettings();
  settings.isAscending = order == Qt::AscendingOrder;
  if (column < 0) {
    settings.sortColumn = {};
  } else if (column == GuiTreeItemModel::NameColumn) {
    settings.sortColumn = FilterSettings::GetNameColumn();
  } else if (column >= GuiTreeItemModel::FirstPropertyColumn) {
    settings.sortColumn = FilterSettings::CompleteColumn(
        properties[static_cast<std::size_t>(column - GuiTreeItemModel::FirstPropertyColumn)]);
  } else {
    // What is visible is no property, which the library could sort by.
    _ShowSort();
    return;
  }
  SetFilter(settings);
}

void GuiTreePanel::_ShowSort()
{
  const auto& properties = m_model.GetPropertyColumns();
  const auto order = m_filter.isAscending ? Qt::AscendingOrder : Qt::DescendingOrder;
  if (m_filter.GetSortColumn() == FilterSettings::GetNameColumn()) {
    m_view->ShowSort(GuiTreeItemModel::NameColumn, order);
    return;
  }
  const auto found = std::find_if(properties.begin(), properties.end(), [this](const du::DualSymbol& property) {
    return FilterSettings::CompleteColumn(property) == m_filter.sortColumn;
  });
  const auto place = static_cast<int>(found - properties.begin());
  m_view->ShowSort(found != properties.end() ? GuiTreeItemModel::FirstPropertyColumn + place : -1, order);
}

void GuiTreePanel::_RefreshColumns()
{
  std::vector<du::DualSymbol> columns = m_model.GetPropertyColumns();
  std::transform(columns.begin(), columns.end(), columns.begin(), FilterSettings::CompleteColumn);
  m_bar->SetColumns(columns);
  _ShowSort();
}

void GuiTreePanel::_OnBodiesSwitched()
{
  _ShowSwitches();
  if (guitree::StructureTreeState* const state = _GetState()) {
    state->ShowBodiesChanged();
  }
}

void GuiTreePanel::_OnCollapseSwitched()
{
  _ShowSwitches();
  if (guitree::StructureTreeState* const state = _GetState()) {
    state->UpdateFiltersForCollapsingInstances(guitree::WorldTreeState::IsCollapsingInstances());
  }
}

void GuiTreePanel::_ShowSwitches()
{
  const QSignalBlocker bodies(m_showBodies);
  const QSignalBlocker collapse(m_collapse);
  m_showBodies->setChecked(guitree::WorldTreeState::IsShowingBodies());
  m_collapse->setChecked(guitree::WorldTreeState::IsCollapsingInstances());
}

QAction& GuiTreePanel::GetAction(Command command) const
{
  switch (command) {
    case Command::FocusFilter:
      return *m_focusFilter;
    case Command::ShowBodies:
      return *m_showBodies;
    case Command::CollapseInstances:
      return *m_collapse;
    default:
      return m_commands->GetAction(command);
  }
}

void GuiTreePanel::_RefreshIcons()
{
  m_bar->SetIcons(palette());
  m_status->SetIcons(palette());
  m_eyes->SetIcons(palette());
  m_commands->SetIcons(palette());
  m_showBodies->setIcon(MakeSvgIcon(QStringLiteral("bodies"), palette()));
  m_collapse->setIcon(MakeSvgIcon(QStringLiteral("collapse-instances"), palette()));
  m_focusFilter->setIcon(MakeSvgIcon(QStringLiteral("filter"), palette()));
  _RefreshTypeIcons();
}

void GuiTreePanel::_RefreshTypeIcons()
{
  const auto icons = std::make_shared<TypeIconSet>(palette());
  m_model.SetIconProvider([icons, make = m_pictureMaker, colours = palette()](int typeIcon) {
    const QIcon own = make ? make(typeIcon, colours) : QIcon();
    return own.isNull() ? icons->GetIcon(typeIcon) : own;
  });
}

void GuiTreePanel::SaveSettings(QSettings& settings) const
{
  m_filter.Save(settings);
  QStringList widths;
  for (const int width : m_view->GetWidths()) {
    widths << QString::number(width);
  }
  settings.setValue(QStringLiteral("widths"), widths);
}

void GuiTreePanel::RestoreSettings(const QSettings& settings)
{
  std::vector<int> widths;
  for (const QString& width : settings.value(QStringLiteral("widths")).toStringList()) {
    widths.push_back(width.toInt());
  }
  m_view->SetWidths(widths);
  SetFilter(FilterSettings::Restore(settings));
}

void GuiTreePanel::showEvent(QShowEvent* event)
{
  QWidget::showEvent(event);
  _ShowSwitches();
  m_model.SetInSight(true);
  _ShowResult();
}

void GuiTreePanel::hideEvent(QHideEvent* event)
{
  QWidget::hideEvent(event);
  m_model.SetInSight(false);
}

void GuiTreePanel::changeEvent(QEvent* event)
{
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) {
    _RefreshIcons();
  }
}

guitree::StructureTreeState* GuiTreePanel::_GetState() const
{
  const guitree::GuiTree* const panel = m_model.GetPanel();
  return panel ? dynamic_cast<guitree::StructureTreeState*>(panel->GetTreeState()) : nullptr;
}

}  // namespace qthost
