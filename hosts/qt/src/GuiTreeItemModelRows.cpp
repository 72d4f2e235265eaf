#include <algorithm>
#include <utility>

#include "FilterProgress.h"
#include "RowTable.h"
#include "guitree/TreeSelectionController.h"
#include "guitree/WorldTreeState.h"
#include "qthost/GuiTreeItemModel.h"
#include "zelk/FindBehind.h"

namespace qthost {

namespace {

/// While views are told of rows that come or go.
class ChangeScope {
public:
  explicit ChangeScope(int& count) : m_count(count) { ++m_count; }
  ~ChangeScope() { --m_count; }
  ChangeScope(const ChangeScope&) = delete;
  ChangeScope& operator=(const ChangeScope&) = delete;

private:
  int& m_count;
};

}  // namespace

void GuiTreeItemModel::StartTreeUpdate()
{
  ++m_depth;
}

void GuiTreeItemModel::FinishTreeUpdate()
{
  if (m_depth == 0) {
    return;
  }
  if (--m_depth == 0) {
    m_isResultDue = false;
    _Settle();
  }
}

void GuiTreeItemModel::ClearTree()
{
  m_note = ResultNote::None;
  m_isResultOnTop = false;
  m_run = {};
  m_staged.clear();
  _BeginReset();
  _Clear();
  _Settle();
}

void GuiTreeItemModel::Reset()
{
  m_depth = 0;
  ClearTree();
}

void GuiTreeItemModel::StoreExpandedAndFirstVisibleBeforePopulate(bool keepExpanded)
{
  _TellRun();
  Q_EMIT PopulationBegins(keepExpanded);
}

void GuiTreeItemModel::RestoreExpandedAfterPopulate()
{
  _EndReset();
  _TellRun();
  Q_EMIT Populated();
}

void GuiTreeItemModel::RestoreFirstVisible()
{
  Q_EMIT PopulationEnds();
}

void GuiTreeItemModel::InstanceCreate(guitree::FilteredTree::Node* node,
                                      const du::SmartPtr<guitree::TreeSelectionController>& controller,
                                      bool assocHlight)
{
  if (!node || !node->instance) {
    return;
  }
  const RowId parent = _FindRowAbove(*node);
  _BeginResult(parent);
  const RowId known = m_isResultOnTop ? m_rows->Find(node->instance) : RowTable::s_none;
  const RowId next = m_rows->IsFilling() ? RowTable::s_none : _FindNextRow(*node, parent);
  // A row keeps its place among others that the result does not have.
  _BeginRow(_IsNextRow(known, parent) ? known : _PutRow(Instance(node->instance), parent, next), controller,
            assocHlight);
  // A result tells each placeholder by itself.
  if (!m_isResetting && node->parent && parent != RowTable::s_top
      && m_rows->GetInstance(parent) == node->parent->instance) {
    const auto* const last = node->parent->lastChild;
    _SetPlaceholder(parent, last && !last->instance);
  }
  _Settle();
}

void GuiTreeItemModel::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                      const du::SmartPtr<zelk::BaseInstance>& parent,
                                      const du::SmartPtr<guitree::TreeSelectionController>& controller,
                                      bool assocHlight)
{
  if (!instance) {
    return;
  }
  const RowId above = _FindRowAbove(parent);
  _BeginResult(above);
  const RowId next = m_isResetting ? RowTable::s_none : _FindNextRow(*instance, above);
  _BeginRow(_PutRow(instance, above, next), controller, assocHlight);
  _Settle();
}

void GuiTreeItemModel::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                                      const du::SmartPtr<zelk::BaseInstance>& /*parent*/, bool /*repopulatePending*/)
{
  if (!instance) {
    return;
  }
  if (!m_isResetting) {
    _TellRun();
  }
  std::vector<RowId> rows = _CollectBranch(instance);
  _RemoveRows(rows);
  _Settle();
}

void GuiTreeItemModel::FilterNodeCreate(guitree::FilteredTree::Node* node)
{
  const RowId row = m_rows->Find(node ? node->instance : nullptr);
  if (row != RowTable::s_none && !m_isResultOnTop) {
    _SetPlaceholder(row, true);
    _Settle();
  }
}

du::SmartPtr<zelk::ProgressCtrl> GuiTreeItemModel::CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event)
{
  if (m_progress) {
    m_progress->Leave();
  }
  m_progress = du::MakeSmart<FilterProgress>(event, this);
  return m_progress;
}

void GuiTreeItemModel::SetTreeCalculating(bool calculating)
{
  m_isResultDue = !calculating;
  if (m_isCalculating != calculating) {
    m_isCalculating = calculating;
    Q_EMIT CalculatingChanged(calculating);
  }
}

// A cancelled job has a result like any other, which alone does not tell. One on top of rows tells nothing of these.
void GuiTreeItemModel::PostProcessingComplete()
{
  const guitree::GuiTree* const panel = GetPanel();
  const auto result = panel ? panel->GetFilteredTree() : nullptr;
  // One that was cancelled before it began has no row at all.
  const bool isWithoutRows = m_isResultDue && m_rows->GetCount() > 0;
  if (std::exchange(m_isResultOnTop, false) || isWithoutRows) {
    m_note = ResultNote::None;
  } else if (m_progress && m_progress->IsCancelled()) {
    m_note = ResultNote::Cancelled;
  } else {
    m_note = result && result->IsFilteredTreeEmpty() ? ResultNote::NoMatch : ResultNote::None;
  }
  m_progress.Reset();
  m_isResultIn = true;
  _Settle();
}

void GuiTreeItemModel::UpdateStatusBar()
{
  Q_EMIT StatusChanged();
}

void GuiTreeItemModel::UpdateFilterUI()
{
  Q_EMIT FilterChanged();
}

void GuiTreeItemModel::ContentHasChanged()
{
  if (m_isCalculating) {
    Q_EMIT EditedMeanwhile();
  }
}

void GuiTreeItemModel::UpdateTreeTable()
{
  m_haveRowsChanged = true;
  _Settle();
}

void GuiTreeItemModel::LoadSortingPrefs()
{
  Q_EMIT SortingDue();
}

void GuiTreeItemModel::CurrentViewChanged()
{
  Q_EMIT ViewChanged();
}

// Most rows come right behind their parent or a sibling. What was found above hidden instances is kept until the batch
// ends: a long chain of them is climbed once and not for each row.
GuiTreeItemModel::RowId GuiTreeItemModel::_FindRowAbove(const Instance& parent)
{
  if (m_lastRow != RowTable::s_top && parent) {
    const RowId beside = m_rows->GetParent(m_lastRow);
    if (m_rows->GetInstance(beside) == parent) {
      return beside;
    }
    if (m_rows->GetInstance(m_lastRow) == parent) {
      return m_lastRow;
    }
  }
  if (const RowId row = m_rows->Find(parent.Get()); row != RowTable::s_none) {
    return row;
  }
  std::vector<Instance> hidden;
  RowId row = RowTable::s_none;
  for (Instance above = parent; row == RowTable::s_none && above; above->GetBaseParent(above)) {
    const auto known = m_above.find(above.Get());
    row = known != m_above.end() ? known->second.row : m_rows->Find(above.Get());
    if (row == RowTable::s_none) {
      hidden.push_back(above);
    }
  }
  row = row == RowTable::s_none ? RowTable::s_top : row;
  for (const Instance& instance : hidden) {
    m_above.emplace(instance.Get(), Above{instance, row});
  }
  return row;
}

GuiTreeItemModel::RowId GuiTreeItemModel::_FindRowAbove(const guitree::FilteredTree::Node& node)
{
  for (const auto* above = node.parent; above; above = above->parent) {
    if (const RowId row = m_rows->Find(above->instance); row != RowTable::s_none) {
      return row;
    }
  }
  return RowTable::s_top;
}

bool GuiTreeItemModel::_IsNextRow(RowId row, RowId parent) const
{
  return row != RowTable::s_none && m_rows->GetParent(row) == parent;
}

// Rows come in order, so a new one is the last as a rule. One from a placeholder that was opened may stand between
// others: most of what comes with it stands right behind the row before, and what follows has no row yet.
GuiTreeItemModel::RowId GuiTreeItemModel::_FindNextRow(const guitree::FilteredTree::Node& node, RowId parent)
{
  const auto* const last = node.parent ? node.parent->lastChild : &node;
  if (last == &node || (last->prevSibling == &node && !last->instance)) {
    return RowTable::s_none;
  }
  for (const auto* sibling = node.prevSibling; sibling; sibling = sibling->prevSibling) {
    const RowId row = m_rows->Find(sibling->instance);
    if (_IsNextRow(row, parent)) {
      return _GetRowBehind(row);
    }
  }
  for (const auto* sibling = node.nextSibling; sibling; sibling = sibling->nextSibling) {
    const RowId row = m_rows->Find(sibling->instance);
    if (_IsNextRow(row, parent)) {
      return row;
    }
  }
  return RowTable::s_none;
}

GuiTreeItemModel::RowId GuiTreeItemModel::_GetRowBehind(RowId row)
{
  if (!m_run.rows.empty() && m_run.rows.back() == row) {
    return m_run.next;
  }
  if (std::find(m_run.rows.begin(), m_run.rows.end(), row) != m_run.rows.end()) {
    _TellRun();
  }
  const RowId parent = m_rows->GetParent(row);
  const std::size_t position = m_rows->GetPosition(row) + 1;
  return position < m_rows->GetChildCount(parent) ? m_rows->GetChild(parent, position) : RowTable::s_none;
}

// A single edit may put its instance anywhere, and the call tells only the parent. Instances without a row are entered:
// their children stand below the same row as they would.
GuiTreeItemModel::RowId GuiTreeItemModel::_FindNextRow(const zelk::BaseInstance& instance, RowId parent) const
{
  const zelk::BaseInstance* const top = m_rows->GetInstance(parent).Get();
  Instance next = zelk::FindBehind(instance, top);
  while (next) {
    const RowId row = m_rows->Find(next.Get());
    if (_IsNextRow(row, parent)) {
      return row;
    }
    Instance child;
    if (row == RowTable::s_none) {
      next->GetBaseFirstChild(child);
    }
    next = child ? child : zelk::FindBehind(*next, top);
  }
  return RowTable::s_none;
}

// Its topmost row comes first; any other row is that of an edit, and the result was one of a former tree.
void GuiTreeItemModel::_BeginResult(RowId parent)
{
  if (!std::exchange(m_isResultDue, false) || parent != RowTable::s_top || m_depth == 0) {
    return;
  }
  _TellRun();
  _BeginReset();
  m_isResultOnTop = m_rows->GetCount() > 0;
  if (!m_isResultOnTop) {
    _Clear();
  }
}

GuiTreeItemModel::RowId GuiTreeItemModel::_PutRow(const Instance& instance, RowId parent, RowId next)
{
  if (!m_above.empty() && m_above.contains(instance.Get())) {
    m_above.clear();
  }
  m_haveRowsChanged = true;
  if (const RowId known = m_rows->Find(instance.Get()); known != RowTable::s_none) {
    _MoveRow(known, parent, next);
    return known;
  }
  if (!m_isResetting) {
    return _StageRow(instance, parent, next);
  }
  if (next == RowTable::s_none) {
    m_lastRow = m_rows->Append(instance, parent);
    return m_lastRow;
  }
  const RowId row = m_rows->Make(instance, parent);
  m_rows->Link(parent, m_rows->GetPosition(next), {&row, 1});
  return row;
}

GuiTreeItemModel::RowId GuiTreeItemModel::_StageRow(const Instance& instance, RowId parent, RowId next)
{
  const bool isBelowRun = m_rows->Has(parent, RowTable::IsStaged);
  const bool goesOn = !m_run.rows.empty() && m_run.parent == parent && m_run.next == next;
  if (!isBelowRun && !goesOn) {
    _TellRun();
    m_run.parent = parent;
    m_run.next = next;
  }
  const RowId row = m_rows->Make(instance, parent);
  if (isBelowRun) {
    const std::size_t position = next == RowTable::s_none ? m_rows->GetChildCount(parent) : m_rows->GetPosition(next);
    m_rows->Link(parent, position, {&row, 1});
  } else {
    m_run.rows.push_back(row);
  }
  m_rows->Set(row, RowTable::IsStaged, true);
  m_staged.push_back(row);
  return row;
}

void GuiTreeItemModel::_TellRun()
{
  if (m_run.rows.empty()) {
    return;
  }
  _NoteEdit();
  const ChangeScope scope(m_changing);
  const Run run = std::exchange(m_run, {});
  const std::vector<RowId> staged = std::exchange(m_staged, {});
  const std::size_t position =
      run.next == RowTable::s_none ? m_rows->GetChildCount(run.parent) : m_rows->GetPosition(run.next);
  beginInsertRows(_MakeIndex(run.parent), static_cast<int>(position), static_cast<int>(position + run.rows.size()) - 1);
  m_rows->Link(run.parent, position, run.rows);
  for (const RowId row : staged) {
    m_rows->Set(row, RowTable::IsStaged, false);
  }
  endInsertRows();
}

void GuiTreeItemModel::_NoteEdit()
{
  if (!m_isResetting && !std::exchange(m_haveEdits, true)) {
    Q_EMIT EditsBegin();
  }
}

void GuiTreeItemModel::_MoveRow(RowId row, RowId parent, RowId next)
{
  if (!m_isResetting) {
    _TellRun();
  }
  m_rows->FinishFilling();
  const RowId from = m_rows->GetParent(row);
  if (parent != from && m_rows->IsInBranch(parent, row)) {
    return;
  }
  const std::size_t position = m_rows->GetPosition(row);
  std::size_t place = next == RowTable::s_none ? m_rows->GetChildCount(parent) : m_rows->GetPosition(next);
  if (parent == from && (place == position || place == position + 1)) {
    return;
  }
  _NoteEdit();
  const ChangeScope scope(m_changing);
  if (!m_isResetting) {
    const auto first = static_cast<int>(position);
    beginMoveRows(_MakeIndex(from), first, first, _MakeIndex(parent), static_cast<int>(place));
  }
  m_rows->Unlink(from, position, 1);
  place -= parent == from && place > position ? 1 : 0;
  m_rows->Link(parent, place, {&row, 1});
  if (!m_isResetting) {
    endMoveRows();
  }
}

void GuiTreeItemModel::_BeginRow(RowId row, const du::SmartPtr<guitree::TreeSelectionController>& controller,
                                 bool assocHlight)
{
  if (m_isResetting) {
    m_rows->Set(row, RowTable::HasHighlight, assocHlight);
    m_rows->Set(row, RowTable::HasPlaceholder, false);
    m_controller = controller;
    return;
  }
  if (!m_rows->Has(row, RowTable::IsStaged)) {
    _NoteChanged(row);
  }
  m_rows->Set(row, RowTable::HasHighlight, assocHlight);
  _SetPlaceholder(row, false);
  _SetSelected(row, controller && controller->ContainsItem(m_rows->GetInstance(row)));
  m_isSelectionStale = m_isSelectionStale || guitree::WorldTreeState::IsCollapsingInstances();
}

void GuiTreeItemModel::_SetPlaceholder(RowId row, bool isOn)
{
  if (m_rows->Has(row, RowTable::HasPlaceholder) != isOn) {
    m_rows->Set(row, RowTable::HasPlaceholder, isOn);
    _NoteChanged(row);
  }
}

// The rows of all that is below the instance in the kernel, wherever they stand: in a list beside it. Of each branch
// only the topmost, since the others go with it.
std::vector<GuiTreeItemModel::RowId> GuiTreeItemModel::_CollectBranch(const Instance& instance)
{
  std::vector<RowId> doomed;
  std::vector<Instance> open{instance};
  std::vector<Instance> children;
  while (!open.empty()) {
    const Instance next = std::move(open.back());
    open.pop_back();
    if (const RowId row = m_rows->Find(next.Get()); row != RowTable::s_none) {
      doomed.push_back(row);
      m_rows->Set(row, RowTable::IsDoomed, true);
    }
    next->GetBaseChildren(children);
    std::move(children.begin(), children.end(), std::back_inserter(open));
  }
  std::erase_if(doomed, [this](RowId row) {
    RowId above = m_rows->GetParent(row);
    while (above != RowTable::s_top && !m_rows->Has(above, RowTable::IsDoomed)) {
      above = m_rows->GetParent(above);
    }
    return above != RowTable::s_top;
  });
  return doomed;
}

// From the last to the first, so that the places of those before stay.
void GuiTreeItemModel::_RemoveRows(std::vector<RowId>& rows)
{
  if (rows.empty()) {
    return;
  }
  m_above.clear();
  m_lastRow = RowTable::s_top;
  m_haveRowsChanged = true;
  m_rows->FinishFilling();
  _NoteEdit();
  std::vector<Range> ranges = _FindRanges(rows);
  std::reverse(ranges.begin(), ranges.end());
  const ChangeScope scope(m_changing);
  for (const Range& range : ranges) {
    if (!m_isResetting) {
      beginRemoveRows(_MakeIndex(range.parent), range.first, range.last);
    }
    const auto first = static_cast<std::size_t>(range.first);
    const auto count = static_cast<std::size_t>(range.last - range.first) + 1;
    std::vector<RowId> gone;
    for (std::size_t i = 0; i < count; ++i) {
      gone.push_back(m_rows->GetChild(range.parent, first + i));
    }
    m_rows->Unlink(range.parent, first, count);
    std::for_each(gone.begin(), gone.end(), [this](RowId row) { m_rows->Erase(row); });
    if (!m_isResetting) {
      endRemoveRows();
    }
  }
}

void GuiTreeItemModel::_BeginReset()
{
  if (m_isResetting) {
    return;
  }
  // Views read the rows that go for the last time.
  beginResetModel();
  m_isResetting = true;
  m_changed.clear();
  m_haveAllChanged = false;
  _ResetSelection();
}

void GuiTreeItemModel::_EndReset()
{
  if (!m_isResetting) {
    return;
  }
  m_rows->FinishFilling();
  m_lastRow = RowTable::s_top;
  m_isResetting = false;
  m_isSelectionStale = m_isSelectionStale || guitree::WorldTreeState::IsCollapsingInstances();
  m_isSelectionReset = true;
  m_haveRowsChanged = true;
  endResetModel();
}

void GuiTreeItemModel::_Clear()
{
  m_above.clear();
  m_lastRow = RowTable::s_top;
  m_rows->Clear();
  m_selected.clear();
  m_selectionChanged.clear();
}

// What is told may bring new calls, which find all members as after an end.
void GuiTreeItemModel::_Settle()
{
  if (m_depth > 0) {
    return;
  }
  m_above.clear();
  _EndReset();
  _TellRun();
  _TellChanges();
  if (m_isSelectionStale || m_isSelectionReset) {
    _ReadSelection();
  }
  _TellSelection();
  if (std::exchange(m_haveEdits, false)) {
    Q_EMIT EditsEnd();
  }
  if (std::exchange(m_haveRowsChanged, false)) {
    Q_EMIT RowsChanged();
  }
  if (std::exchange(m_isResultIn, false)) {
    Q_EMIT ResultShown();
  }
}

}  // namespace qthost
