#include "qthost/TreeViewKeeper.h"

#include <utility>

#include <QItemSelectionModel>
#include <QScopedValueRollback>
#include <QScrollBar>

namespace qthost {

namespace {

bool HasLeftItsTree(const GuiTreeItemModel::Instance& instance)
{
  du::SmartPtr<zelk::BaseTree> tree;
  if (instance) {
    instance->GetBaseTree(tree);
  }
  return !tree;
}

}  // namespace

TreeViewKeeper::TreeViewKeeper(QTreeView& view, GuiTreeItemModel& model) : QObject(&view), m_view(view), m_model(model)
{
  connect(&model, &GuiTreeItemModel::PopulationBegins, this, &TreeViewKeeper::_Store);
  connect(&model, &GuiTreeItemModel::Populated, this, &TreeViewKeeper::_Restore);
  connect(&model, &GuiTreeItemModel::PopulationEnds, this, &TreeViewKeeper::_RestorePlace);
  connect(&model, &GuiTreeItemModel::LooksChanged, this, [this] { m_view.viewport()->update(); });
  connect(&model, &GuiTreeItemModel::EditsBegin, this, [this] {
    _StorePlace();
    m_isEditing = true;
  });
  connect(&model, &GuiTreeItemModel::EditsEnd, this, [this] {
    m_isEditing = false;
    _RestorePlace();
    _ForgetWhatHasGone();
  });
  connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &TreeViewKeeper::_NoteRemoval);
  connect(&view, &QTreeView::expanded, this, [this](const QModelIndex& index) { _Note(index, true); });
  connect(&view, &QTreeView::collapsed, this, [this](const QModelIndex& index) { _Note(index, false); });
  m_model.VisitBranches([this](const QModelIndex& index) { _Note(index, m_view.isExpanded(index)); });
}

TreeViewKeeper::~TreeViewKeeper() = default;

void TreeViewKeeper::Forget()
{
  m_expanded.clear();
  m_current.Reset();
  m_place = {};
}

// To ask the view for all rows before each population would take longer than a filter does.
void TreeViewKeeper::_Note(const QModelIndex& index, bool isExpanded)
{
  if (m_isRestoring || m_areAllExpanded || !_IsShowing()) {
    return;
  }
  GuiTreeItemModel::Instance instance = m_model.GetInstance(index);
  const zelk::BaseInstance* const key = instance.Get();
  if (isExpanded) {
    m_expanded.emplace(key, std::move(instance));
  } else {
    m_expanded.erase(key);
  }
}

void TreeViewKeeper::_NoteRemoval(const QModelIndex& parent, int first, int last)
{
  std::vector<QModelIndex> open;
  for (int row = first; row <= last; ++row) {
    open.push_back(m_model.index(row, GuiTreeItemModel::NameColumn, parent));
  }
  while (!open.empty() && !m_expanded.empty()) {
    const QModelIndex index = open.back();
    open.pop_back();
    if (const auto found = m_expanded.find(m_model.GetInstance(index).Get()); found != m_expanded.end()) {
      m_removed.push_back(found->second);
    }
    for (int row = 0; row < m_model.rowCount(index); ++row) {
      open.push_back(m_model.index(row, GuiTreeItemModel::NameColumn, index));
    }
  }
}

// An instance that is held keeps all that is below it, with its shapes.
void TreeViewKeeper::_ForgetWhatHasGone()
{
  for (const auto& instance : std::exchange(m_removed, {})) {
    if (HasLeftItsTree(instance)) {
      m_expanded.erase(instance.Get());
    }
  }
  if (HasLeftItsTree(m_current)) {
    m_current.Reset();
  }
  if (HasLeftItsTree(m_place.instance)) {
    m_place = {};
  }
}

// A panel that is still empty, since a filter is at work, has nothing to keep and must not overwrite what was kept.
void TreeViewKeeper::_Store()
{
  _ForgetWhatHasGone();
  if (!_IsShowing() || m_model.GetRowCount() == 0) {
    return;
  }
  const QModelIndex current = m_view.currentIndex();
  m_current = m_model.GetInstance(current);
  m_currentColumn = current.column();
  _StorePlace();
}

void TreeViewKeeper::_StorePlace()
{
  if (m_isEditing || !_IsShowing()) {
    return;
  }
  const QModelIndex first = m_view.indexAt({0, 0});
  m_place = {m_model.GetInstance(first), first.isValid() ? m_view.visualRect(first).top() : 0};
}

void TreeViewKeeper::_Restore()
{
  if (!_IsShowing()) {
    return;
  }
  const QScopedValueRollback restoring(m_isRestoring, true);
  m_areAllExpanded = m_expandsAll;
  if (m_expandsAll) {
    _ExpandAll();
  } else {
    _RestoreExpanded();
  }
  const QModelIndex current = m_model.FindIndex(m_current.Get());
  if (current.isValid() && m_view.selectionModel()) {
    m_view.selectionModel()->setCurrentIndex(current.siblingAtColumn(m_currentColumn), QItemSelectionModel::NoUpdate);
  }
}

// `QTreeView::expandAll` would open the leaves as well, and fetch what is left out below each placeholder.
void TreeViewKeeper::_ExpandAll()
{
  m_model.VisitBranches([this](const QModelIndex& index) { _Expand(index); });
}

void TreeViewKeeper::_RestoreExpanded()
{
  std::erase_if(m_expanded, [this](const auto& entry) {
    const QModelIndex index = m_model.FindIndex(entry.first);
    _Expand(index);
    return !index.isValid() && HasLeftItsTree(entry.second);
  });
}

// Right after a reset the view only notes what is expanded and lays all of it out at once, later. What is left out
// below a row is fetched when the user opens it.
void TreeViewKeeper::_Expand(const QModelIndex& index)
{
  if (index.isValid() && !index.data(GuiTreeItemModel::PlaceholderRole).toBool()) {
    m_view.setExpanded(index, true);
  }
}

void TreeViewKeeper::_RestorePlace()
{
  const QModelIndex first = m_model.FindIndex(m_place.instance.Get());
  if (m_isEditing || !_IsShowing() || !first.isValid()) {
    return;
  }
  const QModelIndex present = m_view.indexAt({0, 0});
  if (present.siblingAtColumn(0) == first && m_view.visualRect(present).top() == m_place.top) {
    return;
  }
  // What is above is opened by that, and the columns move.
  QScrollBar* const columns = m_view.horizontalScrollBar();
  const int column = columns->value();
  m_view.scrollTo(first, QAbstractItemView::PositionAtTop);
  if (m_view.verticalScrollMode() == QAbstractItemView::ScrollPerPixel) {
    m_view.verticalScrollBar()->setValue(m_view.verticalScrollBar()->value() - m_place.top);
  }
  columns->setValue(column);
}

}  // namespace qthost
