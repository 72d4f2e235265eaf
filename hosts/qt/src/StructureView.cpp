#include "StructureView.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QSignalBlocker>

#include "RowPainter.h"
#include "RowPlace.h"

namespace qthost {

namespace {

constexpr int s_eyeWidth = 56;
constexpr int s_widest = 4000;
// With 930 ranges Qt takes 2.2 milliseconds for a page of rows, and 0.7 with 170.
constexpr qsizetype s_mostRanges = 1000;

void SortByPlace(std::vector<QModelIndex>& rows)
{
  std::vector<std::pair<std::vector<int>, QModelIndex>> places;
  places.reserve(rows.size());
  std::transform(rows.begin(), rows.end(), std::back_inserter(places),
                 [](const QModelIndex& row) { return std::pair(GetPlace(row), row); });
  std::sort(places.begin(), places.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::transform(places.begin(), places.end(), rows.begin(), [](const auto& place) { return place.second; });
}

/// Those rows that are below no other one.
std::vector<QModelIndex> FindTopmost(const std::vector<QModelIndex>& rows)
{
  const std::set<QModelIndex> all(rows.begin(), rows.end());
  std::vector<QModelIndex> topmost;
  std::copy_if(rows.begin(), rows.end(), std::back_inserter(topmost), [&all](const QModelIndex& row) {
    QModelIndex above = row.parent();
    while (above.isValid() && !all.contains(above)) {
      above = above.parent();
    }
    return !above.isValid();
  });
  return topmost;
}

}  // namespace

StructureView::StructureView(QWidget* parent) : QTreeView(parent)
{
  setObjectName(QStringLiteral("structureView"));
  setAccessibleName(tr("Structure"));
  setAccessibleDescription(tr("The rows of the assembly. Space shows and hides the selected ones."));
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setSelectionMode(ExtendedSelection);
  setSelectionBehavior(SelectRows);
  setEditTriggers(NoEditTriggers);
  QHeaderView& columns = *header();
  columns.setAccessibleName(tr("Columns"));
  columns.setToolTip(tr("Click to sort the rows; once more for the other order, and again for that of the assembly"));
  columns.setSectionsClickable(true);
  columns.setSortIndicatorShown(true);
  columns.setSortIndicatorClearable(true);
  columns.setSortIndicator(-1, Qt::AscendingOrder);
  columns.setStretchLastSection(false);
  columns.setSectionsMovable(false);
  connect(&columns, &QHeaderView::sortIndicatorChanged, this, &StructureView::SortChosen);
  connect(&columns, &QHeaderView::sectionResized, this, &StructureView::_NoteWidths);
  connect(&columns, &QHeaderView::sectionCountChanged, this, &StructureView::_LayColumnsOut);
}

std::vector<QModelIndex> StructureView::GetChosenRows() const
{
  std::vector<QModelIndex> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      rows.push_back(model()->index(row, GuiTreeItemModel::NameColumn, range.parent()));
    }
  }
  if (rows.empty() && currentIndex().isValid()) {
    rows.push_back(currentIndex().siblingAtColumn(GuiTreeItemModel::NameColumn));
  }
  SortByPlace(rows);
  return rows;
}

bool StructureView::IsAnyChosen(const std::function<bool(const QModelIndex& row)>& isSo) const
{
  const QItemSelection selection = selectionModel()->selection();
  if (selection.isEmpty()) {
    return currentIndex().isValid() && isSo(currentIndex().siblingAtColumn(GuiTreeItemModel::NameColumn));
  }
  return std::any_of(selection.begin(), selection.end(), [&](const QItemSelectionRange& range) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      if (isSo(model()->index(row, GuiTreeItemModel::NameColumn, range.parent()))) {
        return true;
      }
    }
    return false;
  });
}

void StructureView::SetBranchesExpanded(const std::vector<QModelIndex>& rows, bool isExpanded)
{
  // With a layout due the view only notes what is expanded.
  scheduleDelayedItemsLayout();
  std::vector<QModelIndex> open = FindTopmost(rows);
  while (!open.empty()) {
    const QModelIndex next = open.back();
    open.pop_back();
    if (!model()->hasChildren(next) || (isExpanded && model()->canFetchMore(next))) {
      continue;
    }
    setExpanded(next, isExpanded);
    for (int row = 0; row < model()->rowCount(next); ++row) {
      open.push_back(model()->index(row, GuiTreeItemModel::NameColumn, next));
    }
  }
}

void StructureView::ShowSort(int column, Qt::SortOrder order)
{
  const QSignalBlocker blocker(header());
  header()->setSortIndicator(column, order);
}

void StructureView::NoteSelection()
{
  m_isScattered = selectionModel()->selection().size() > s_mostRanges;
  viewport()->update();
}

void StructureView::drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
  if (m_isScattered) {
    RowPainter(*this, option, index).Paint(*painter);
  } else {
    QTreeView::drawRow(painter, option, index);
  }
}

void StructureView::resizeEvent(QResizeEvent* event)
{
  QTreeView::resizeEvent(event);
  _LayColumnsOut();
}

std::vector<int> StructureView::GetWidths() const
{
  return m_widths;
}

void StructureView::SetWidths(const std::vector<int>& widths)
{
  const bool areAllPossible = std::all_of(widths.begin(), widths.end(), [this](int width) {
    return width >= header()->minimumSectionSize() && width <= s_widest;
  });
  m_widths = areAllPossible ? widths : std::vector<int>();
  _LayColumnsOut();
}

void StructureView::_LayColumnsOut()
{
  const QScopedValueRollback fitting(m_isFitting, true);
  if (m_widths.empty()) {
    _FitNames();
  } else {
    _UseWidths();
  }
}

void StructureView::_UseWidths()
{
  const int count = std::min(header()->count(), static_cast<int>(m_widths.size()));
  for (int column = 0; column < count; ++column) {
    header()->resizeSection(column, m_widths[static_cast<std::size_t>(column)]);
  }
}

// Names get the room that the other columns leave, until the user decides.
void StructureView::_FitNames()
{
  QHeaderView& columns = *header();
  if (columns.count() <= GuiTreeItemModel::VisibleColumn) {
    return;
  }
  columns.resizeSection(GuiTreeItemModel::VisibleColumn,
                        std::max(s_eyeWidth, columns.sectionSizeHint(GuiTreeItemModel::VisibleColumn)));
  const int others = columns.length() - columns.sectionSize(GuiTreeItemModel::NameColumn);
  columns.resizeSection(GuiTreeItemModel::NameColumn,
                        std::max(viewport()->width() - others, columns.defaultSectionSize()));
}

void StructureView::_NoteWidths()
{
  if (m_isFitting) {
    return;
  }
  m_widths.resize(std::max(m_widths.size(), static_cast<std::size_t>(header()->count())));
  for (int column = 0; column < header()->count(); ++column) {
    m_widths[static_cast<std::size_t>(column)] = header()->sectionSize(column);
  }
}

void StructureView::contextMenuEvent(QContextMenuEvent* event)
{
  const bool isByKey = event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid();
  Q_EMIT MenuWanted(isByKey ? viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()) : event->globalPos());
}

bool StructureView::_IsEye(const QModelIndex& index)
{
  return index.column() == GuiTreeItemModel::VisibleColumn && (index.flags() & Qt::ItemIsUserCheckable);
}

// Two quick clicks on an eye are two clicks, and do not open the branch.
void StructureView::mouseDoubleClickEvent(QMouseEvent* event)
{
  if (_IsEye(indexAt(event->position().toPoint()))) {
    mousePressEvent(event);
  } else {
    QTreeView::mouseDoubleClickEvent(event);
  }
}

QItemSelectionModel::SelectionFlags StructureView::selectionCommand(const QModelIndex& index, const QEvent* event) const
{
  const bool isClick = event
                       && (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease
                           || event->type() == QEvent::MouseButtonDblClick || event->type() == QEvent::MouseMove);
  const auto* const mouse = isClick ? dynamic_cast<const QMouseEvent*>(event) : nullptr;
  if (mouse && mouse->button() != Qt::RightButton && _IsEye(index)) {
    return QItemSelectionModel::NoUpdate;
  }
  return QTreeView::selectionCommand(index, event);
}

}  // namespace qthost
