#include "texthost/TextHost.h"

#include <vector>

#include "TreePrinter.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeStateBase.h"
#include "zelk/FindBehind.h"

namespace texthost {

namespace {

template <typename Row>
bool IsInBranch(const Row* row, const Row& branch)
{
  while (row && row != &branch) {
    row = row->parent;
  }
  return row != nullptr;
}

template <typename Row>
void Unlink(Row& row)
{
  (row.previous ? row.previous->next : row.parent->firstChild) = row.next;
  (row.next ? row.next->previous : row.parent->lastChild) = row.previous;
}

template <typename Row>
void Link(Row& row, Row& parent, Row* next)
{
  row.parent = &parent;
  row.next = next;
  row.previous = next ? next->previous : parent.lastChild;
  (row.previous ? row.previous->next : parent.firstChild) = &row;
  (next ? next->previous : parent.lastChild) = &row;
}

}  // namespace

void TextHost::Print(std::ostream& out, const PrintStyle& style) const
{
  TreePrinter(out, style, *this).Print();
}

bool TextHost::HasPlaceholder(const zelk::BaseInstance& instance) const
{
  const auto found = m_rows.find(&instance);
  return found != m_rows.end() && found->second.hasPlaceholder;
}

std::list<zelk::BaseInstance*> TextHost::GetPath(const zelk::BaseInstance& instance) const
{
  std::list<zelk::BaseInstance*> path;
  const auto found = m_rows.find(&instance);
  for (const Row* row = found != m_rows.end() ? &found->second : &m_top; row != &m_top; row = row->parent) {
    path.push_front(row->instance.Get());
  }
  return path;
}

bool TextHost::Expand(const zelk::BaseInstance& instance)
{
  guitree::TreeStateBase* const state = m_panel ? m_panel->GetTreeState() : nullptr;
  if (!state || !HasPlaceholder(instance) || !state->ExpandFilterNode(GetPath(instance))) {
    return false;
  }
  // Where nothing was left out no row has come, which would have taken the placeholder along.
  if (Row* row = _FindRow(&instance)) {
    row->hasPlaceholder = false;
  }
  return true;
}

const FilterProgress* TextHost::GetFilterProgress() const noexcept
{
  return m_progress && !m_progress->IsFinished() ? m_progress.Get() : nullptr;
}

bool TextHost::CancelFilter()
{
  if (!GetFilterProgress()) {
    return false;
  }
  m_progress->Cancel();
  return true;
}

void TextHost::StartTreeUpdate()
{
  ++m_depth;
}

void TextHost::FinishTreeUpdate()
{
  if (m_depth > 0 && --m_depth == 0) {
    m_above.clear();
    m_coming = Coming::Singly;
  }
}

void TextHost::ClearTree()
{
  _Clear();
  m_coming = m_depth > 0 ? Coming::Refill : Coming::Singly;
}

void TextHost::RestoreExpandedAfterPopulate()
{
  m_coming = Coming::Singly;
}

void TextHost::Reset()
{
  _Clear();
  m_depth = 0;
}

void TextHost::InstanceCreate(guitree::FilteredTree::Node* node,
                              const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  Row& parent = _FindRowAbove(*node);
  Row& row = _Place(du::SmartPtr<zelk::BaseInstance>(node->instance), parent, _FindNextRow(*node, parent));
  _Begin(row, controller, assocHlight);
  if (node->parent && parent.instance == node->parent->instance) {
    const auto* last = node->parent->lastChild;
    _SetPlaceholder(parent, last && !last->instance);
  }
}

void TextHost::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& parent,
                              const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  Row& above = _FindRowAbove(parent);
  Row* next = m_coming == Coming::Singly ? _FindNextRow(*instance, above) : nullptr;
  _Begin(_Place(instance, above, next), controller, assocHlight);
}

void TextHost::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& /*parent*/, bool /*repopulatePending*/)
{
  if (Row* row = _FindRow(instance.Get())) {
    _Erase(*row);
  }
}

void TextHost::FilterNodeCreate(guitree::FilteredTree::Node* node)
{
  if (Row* row = _FindRow(node ? node->instance : nullptr)) {
    _SetPlaceholder(*row, true);
  }
}

du::SmartPtr<zelk::ProgressCtrl> TextHost::CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event)
{
  m_progress = du::MakeSmart<FilterProgress>(event);
  return m_progress;
}

void TextHost::SetTreeCalculating(bool calculating)
{
  m_isCalculating = calculating;
  if (!calculating && m_coming == Coming::Singly) {
    m_coming = m_rows.empty() ? Coming::Refill : Coming::OnTop;
  }
}

void TextHost::PostProcessingComplete()
{
  m_note = m_coming == Coming::OnTop ? Note::None : _FindNote();
  m_progress.Reset();
}

// A cancelled job has a result like any other, which alone does not tell.
TextHost::Note TextHost::_FindNote() const
{
  const bool isCancelled = m_progress && m_progress->IsCancelled();
  return isCancelled ? Note::Cancelled : _HasEmptyResult() ? Note::NoMatch : Note::None;
}

bool TextHost::_HasEmptyResult() const
{
  const auto result = m_panel ? m_panel->GetFilteredTree() : nullptr;
  return result && result->IsFilteredTreeEmpty();
}

TextHost::Row* TextHost::_FindRow(const zelk::BaseInstance* instance)
{
  const auto found = m_rows.find(instance);
  return found != m_rows.end() ? &found->second : nullptr;
}

// What was found is kept until the batch ends: a long chain of hidden instances is climbed once and not for each row.
TextHost::Row& TextHost::_FindRowAbove(const du::SmartPtr<zelk::BaseInstance>& parent)
{
  std::vector<du::SmartPtr<zelk::BaseInstance>> hidden;
  Row* row = nullptr;
  for (du::SmartPtr<zelk::BaseInstance> above = parent; !row && above; above->GetBaseParent(above)) {
    const auto known = m_above.find(above.Get());
    row = known != m_above.end() ? known->second.row : _FindRow(above.Get());
    if (!row) {
      hidden.push_back(above);
    }
  }
  row = row ? row : &m_top;
  for (const auto& instance : hidden) {
    m_above.emplace(instance.Get(), Above{instance, row});
  }
  return *row;
}

TextHost::Row& TextHost::_FindRowAbove(const guitree::FilteredTree::Node& node)
{
  for (const auto* above = node.parent; above; above = above->parent) {
    if (Row* row = _FindRow(above->instance)) {
      return *row;
    }
  }
  return m_top;
}

// Rows come in order, so a new one is the last as a rule. One from a placeholder that was opened may stand between
// others.
TextHost::Row* TextHost::_FindNextRow(const guitree::FilteredTree::Node& node, const Row& parent)
{
  if (node.prevSibling) {
    const Row* previous = _FindRow(node.prevSibling->instance);
    return previous && previous->parent == &parent ? previous->next : nullptr;
  }
  for (const auto* sibling = node.nextSibling; sibling; sibling = sibling->nextSibling) {
    Row* next = _FindRow(sibling->instance);
    if (next && next->parent == &parent) {
      return next;
    }
  }
  return nullptr;
}

// A single edit may put its instance anywhere, and the call tells only the parent. Instances without a row are entered:
// their children stand below the same row as they would.
TextHost::Row* TextHost::_FindNextRow(const zelk::BaseInstance& instance, const Row& parent)
{
  du::SmartPtr<zelk::BaseInstance> next = zelk::FindBehind(instance, parent.instance.Get());
  while (next) {
    Row* row = _FindRow(next.Get());
    if (row && row->parent == &parent) {
      return row;
    }
    du::SmartPtr<zelk::BaseInstance> child;
    if (!row) {
      next->GetBaseFirstChild(child);
    }
    next = child ? child : zelk::FindBehind(*next, parent.instance.Get());
  }
  return nullptr;
}

TextHost::Row& TextHost::_Place(const du::SmartPtr<zelk::BaseInstance>& instance, Row& parent, Row* next)
{
  Row& row = m_rows[instance.Get()];
  row.hasPlaceholder = false;
  if (!row.instance) {
    row.instance = instance;
    Link(row, parent, next);
    if (m_above.contains(instance.Get())) {
      m_above.clear();
    }
  } else if (row.parent != &parent && !IsInBranch(&parent, row)) {
    Unlink(row);
    Link(row, parent, next);
  }
  return row;
}

// What comes on top of rows leaves nothing out.
void TextHost::_SetPlaceholder(Row& row, bool isOn) const
{
  row.hasPlaceholder = isOn && m_coming != Coming::OnTop;
}

void TextHost::_Erase(Row& top)
{
  m_above.clear();
  Unlink(top);
  Row* row = &top;
  while (row) {
    if (row->firstChild) {
      row = row->firstChild;
      continue;
    }
    Row* above = row == &top ? nullptr : row->parent;
    if (above) {
      Unlink(*row);
    }
    m_selected.erase(row->instance.Get());
    m_highlighted.erase(row->instance.Get());
    m_rows.erase(row->instance.Get());
    row = above;
  }
}

void TextHost::_Clear()
{
  m_above.clear();
  m_rows.clear();
  m_top = Row{};
  m_selected.clear();
  m_highlighted.clear();
  m_showsScene = false;
  m_note = Note::None;
}

}  // namespace texthost
