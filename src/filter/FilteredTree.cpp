#include "guitree/FilteredTree.h"

#include <cstddef>
#include <limits>
#include <utility>

#include "filter/NodeLinks.h"
#include "filter/ResultDisposal.h"

namespace guitree {
namespace {

unsigned int CountNodes(const FilteredTree::Node* top)
{
  unsigned int count = 0;
  const FilteredTree::Node* node = top;
  while (node) {
    ++count;
    if (node->firstChild) {
      node = node->firstChild;
      continue;
    }
    while (node != top && !node->nextSibling) {
      node = node->parent;
    }
    node = node == top ? nullptr : node->nextSibling;
  }
  return count;
}

FilteredTree::Node* FindChild(const FilteredTree::Node& parent, const zelk::BaseInstance* instance)
{
  FilteredTree::Node* child = parent.firstChild;
  while (child && child->instance != instance) {
    child = child->nextSibling;
  }
  return child;
}

}  // namespace

FilteredTree::FilteredTree() = default;

FilteredTree::FilteredTree(const FilteredTree&) = default;

FilteredTree& FilteredTree::operator=(const FilteredTree&) = default;

FilteredTree::~FilteredTree()
{
  _DisposeOfDiscarded();
  const std::size_t size = m_nodeCount + m_keptAlive.size() + createdItems.GetRecord().size();
  matchedItems.Clear();
  std::vector<InstanceList> references;
  references.push_back(createdItems.TakeRecord());
  references.push_back(std::move(m_keptAlive));
  ResultDisposal::Dispose({root, hfRoot}, std::move(references), size);
}

void FilteredTree::_DisposeOfDiscarded()
{
  ResultDisposal::Dispose(std::exchange(m_discarded.list, {}), {}, std::exchange(m_discarded.size, 0));
}

bool FilteredTree::ZeroReferenceCountHook() const
{
  return true;
}

void FilteredTree::GetMatchedFilterItems(InstanceSet& out) const
{
  matchedItems.CopyTo(out, createdItems.GetRecord());
}

std::size_t FilteredTree::GetNumMatchedItems() const
{
  if (!m_mayRepeat) {
    return matchedItems.GetCount();
  }
  InstanceSet matches;
  GetMatchedFilterItems(matches);
  return matches.size();
}

void FilteredTree::_NoteRepeats()
{
  m_mayRepeat = m_mayRepeat || !createdItems.GetRecord().empty();
}

bool FilteredTree::IsFilteredTreeEmpty() const
{
  return matchedItems.IsEmpty();
}

void FilteredTree::GetAllCreatedItems(CreatedSet& out) const
{
  createdItems.CopyTo(out);
}

bool FilteredTree::IsContainItem(const du::SmartPtr<zelk::BaseInstance>& instance) const
{
  return createdItems.Contains(instance);
}

bool FilteredTree::ForceCheckFilteringForAllItems(bool /*hiddenPass*/)
{
  return true;
}

void FilteredTree::AddMatchedFilterItem(const du::SmartPtr<zelk::BaseInstance>& instance, bool matched)
{
  if (!instance || instance.Get() == m_knownItem) {
    return;
  }
  createdItems.Record(instance);
  if (matched) {
    matchedItems.Mark(createdItems.GetRecord().size() - 1);
  }
}

bool FilteredTree::IsFilteredOutByAdditionalCheck(structure_utils::TreeFilterInfoBase& /*filter*/,
                                                  const du::SmartPtr<zelk::BaseInstance>& /*instance*/)
{
  return true;
}

bool FilteredTree::ShouldCreateFilterNode()
{
  return true;
}

unsigned int FilteredTree::GetNumHfInsts()
{
  if (numHfInsts == 0) {
    numHfInsts = CountNodes(hfRoot ? hfRoot : (rootIsHfTree ? root : nullptr));
  }
  return numHfInsts;
}

FilteredTree::Node* FilteredTree::GetNode(du::SmartPtr<zelk::BaseInstance> instance)
{
  std::vector<const zelk::BaseInstance*> path;
  du::SmartPtr<zelk::BaseInstance> parent;
  while (instance) {
    path.push_back(instance.Get());
    // A kernel may clear its argument first, which must not be the last holder of who is asked.
    instance->GetBaseParent(parent);
    instance.Swap(parent);
  }
  if (path.empty()) {
    return nullptr;
  }
  // The path is read from the top, which stands at its end. The two topmost instances are not looked for.
  path.resize(path.size() < 2 ? 0 : path.size() - 2);
  Node* node = root;
  for (auto next = path.rbegin(); node && next != path.rend(); ++next) {
    node = FindChild(*node, *next);
  }
  return node;
}

void FilteredTree::RemoveHiddenItem(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  matchedItems.Erase(instance, createdItems.GetRecord());
}

FilteredTree::Node* FilteredTree::_NewNode(Node* parent, zelk::BaseInstance* instance, bool hiddenPass)
{
  Node* const node = _NewNode(instance);
  if (parent) {
    AppendChild(*parent, *node);
  } else {
    (hiddenPass ? hfRoot : root) = node;
  }
  return node;
}

void FilteredTree::_DestroyBranch(Node* node)
{
  DestroyNodes(node, std::numeric_limits<std::size_t>::max(), [this](const Node* ending) { _ForgetNode(ending); });
}

void FilteredTree::_ResetTrees()
{
  root = nullptr;
  hfRoot = nullptr;
  firstFilteredNode = nullptr;
  numHfInsts = 0;
  numInsts = 0;
  rootIsHfTree = false;
}

void FilteredTree::_KeepAlive(zelk::BaseInstance* instance)
{
  if (instance) {
    m_keptAlive.emplace_back(instance);
  }
}

}  // namespace guitree
