#include "qthost/TreeViewKeeper.h"

#include <utility>

#include <QItemSelectionModel>
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
    if (std::exchange(m_haveRowsGone, false)) {
      _ForgetWhatHasGone();
    }
  });
  connect(&model, &QAbstractItemModel::rowsRemoved, this, [this] { m_haveRowsGone = true; });
}

TreeViewKeeper::~TreeViewKeeper() = default;

void TreeViewKeeper::Forget()
{
  m_expanded.clear();
  m_current.Reset();
  m_place = {};
}

// An instance that is held keeps all that is below it, with its shapes.
void TreeViewKeeper::_ForgetWhatHasGone()
{
  std::erase_if(m_expanded, [](const auto& entry) { return HasLeftItsTree(entry.second); });
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
  if (!m_areAllExpanded) {
    _StoreExpanded();
  }
  const QModelIndex current = m_view.currentIndex();
  m_current = m_model.GetInstance(current);
  m_currentColumn = current.column();
  _StorePlace();
}

void TreeViewKeeper::_StoreExpanded()
{
  m_model.VisitBranches([this](const QModelIndex& index) {
    GuiTreeItemModel::Instance instance = m_model.GetInstance(index);
    const zelk::BaseInstance* const key = instance.Get();
    if (m_view.isExpanded(index)) {
      m_expanded.emplace(key, std::move(instance));
    } else {
      m_expanded.erase(key);
    }
  });
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
  for (const auto& [key, instance] : m_expanded) {
    _Expand(m_model.FindIndex(key));
  }
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
