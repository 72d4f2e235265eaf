// How a filtered tree is built from a kernel tree, on a worker.

#include <algorithm>
#include <utility>

#include "filter/BranchBuilder.h"
#include "filter/BuildTreeInfo.h"
#include "filter/ColumnSortOrder.h"
#include "filter/NodeLinks.h"
#include "guitree/FilteredTree.h"
#include "zelk/BaseTree.h"

namespace guitree {
namespace {

du::SmartPtr<zelk::BaseTree> GetTreeOf(const zelk::BaseInstance& instance)
{
  du::SmartPtr<zelk::BaseTree> tree;
  instance.GetBaseTree(tree);
  return tree;
}

const zelk::BaseInstance* GetInstanceOf(const du::SmartPtr<zelk::BaseInstance>& child)
{
  return child.Get();
}

const zelk::BaseInstance* GetInstanceOf(const FilteredTree::Node* child)
{
  return child->instance;
}

/// Reads each value once: a sort that read it at each comparison would ask the kernel some forty times as often.
template <typename Child>
void SortChildren(std::vector<Child>& children, structure_utils::TreeFilterInfoBase& filter)
{
  const du::DualSymbol column = filter.GetSortColumn();
  const ColumnSortOrder order(column, filter.GetSortDirection());
  if (!ColumnSortOrder::IsColumn(column)) {
    return;
  }
  std::vector<std::pair<du::Symbol, Child>> keyed;
  keyed.reserve(children.size());
  for (Child& child : children) {
    const du::Symbol value = order.GetValue(GetInstanceOf(child));
    keyed.emplace_back(value, std::move(child));
  }
  // Rows of equal value keep the order of the kernel.
  std::stable_sort(keyed.begin(), keyed.end(),
                   [&order](const auto& a, const auto& b) { return order.OrdersBefore(a.first, b.first); });
  std::transform(keyed.begin(), keyed.end(), children.begin(), [](auto& entry) { return std::move(entry.second); });
}

/// While hooks may ask for the filter.
class FilterScope {
public:
  using Filter = structure_utils::TreeFilterInfoBase;

  FilterScope(const Filter*& place, const Filter& filter) : m_place(place) { place = &filter; }
  ~FilterScope() { m_place = nullptr; }
  FilterScope(const FilterScope&) = delete;
  FilterScope& operator=(const FilterScope&) = delete;

private:
  const Filter*& m_place;
};

}  // namespace

// The tree and the selection must outlive the build, whoever lets go of them meanwhile: hence the own pointers.
// NOLINTBEGIN(performance-unnecessary-value-param)
void FilteredTree::BuildTree(structure_utils::TreeFilterInfoBase& filter, du::SmartPtr<zelk::BaseInstance> rootInstance,
                             du::SmartPtr<TreeSelectionController> selection,
                             du::SmartPtr<du::RefCounted>& additionalInfo,
                             const std::set<zelk::BaseInstance*>& notFiltered, zelk::AsyncEvent* event)
// NOLINTEND(performance-unnecessary-value-param)
{
  _DestroyBranch(root);
  _DestroyBranch(hfRoot);
  _ResetTrees();
  if (!rootInstance) {
    return;
  }
  const du::SmartPtr<zelk::BaseTree> tree = GetTreeOf(*rootInstance);
  // A root that has left the tree of the job just now still shares what the owner edits there, such as its products.
  const zelk::BaseTree* const guarded = tree ? tree.Get() : m_treeOfJob;
  dp::ReadWriteLock* const lock = guarded ? guarded->GetReadWriteLock() : nullptr;
  // Lets a writer at work end before the long read begins.
  {
    const dp::ReadGuard barrier(lock);
  }
  BuildTreeInfo info(filter, additionalInfo, event, lock, notFiltered);
  _KeepAlive(rootInstance.Get());
  if (selection) {
    selection->GetSelectedInstances(info.selectedItems);
  }
  if (tree) {
    tree->GetNumInstances(info.totalInstances);
  }
  _NoteRepeats();
  {
    const FilterScope scope(m_filterOfRun, filter);
    _BuildPasses(rootInstance, info);
  }
  _EndBuild(rootInstance.Get(), info);
  // An instance that has left tree and selection meanwhile must not end on a worker.
  m_keptAlive.insert(m_keptAlive.end(), info.selectedItems.begin(), info.selectedItems.end());
  info.selectedItems.clear();
}

void FilteredTree::_BuildPasses(const du::SmartPtr<zelk::BaseInstance>& rootInstance, BuildTreeInfo& info)
{
  if (!info.filter.IsHiddenFilter(false)) {
    _BuildTree(nullptr, rootInstance, nullptr, info, false);
    return;
  }
  _BuildTree(nullptr, rootInstance, nullptr, info, true);
  if (!hfRoot || info.filter.IsHiddenFilter(true)) {
    root = std::exchange(hfRoot, nullptr);
    rootIsHfTree = true;
    numHfInsts = 0;
    numInsts = 0;
    return;
  }
  firstFilteredNode = nullptr;
  _NoteRepeats();
  _BuildTree(nullptr, nullptr, hfRoot, info, false);
}

void FilteredTree::_EndBuild(zelk::BaseInstance* rootInstance, const BuildTreeInfo& info)
{
  if (!info.IsCanceled()) {
    createdItems.Settle([&info] { return !info.IsCanceled(); });
  }
  if (info.IsCanceled()) {
    m_discarded.list.push_back(std::exchange(root, nullptr));
    m_discarded.list.push_back(std::exchange(hfRoot, nullptr));
    m_discarded.size += std::exchange(m_nodeCount, 0);
    _ResetTrees();
    _NewNode(_NewNode(nullptr, rootInstance, false), nullptr, false);
    return;
  }
  if (info.asyncEvent) {
    info.asyncEvent->Progress(100);
  }
}

FilteredTree::Node* FilteredTree::_BuildTree(Node* parent, const du::SmartPtr<zelk::BaseInstance>& instance,
                                             Node* source, BuildTreeInfo& info, bool hiddenPass)
{
  if (instance || !source) {
    return BranchBuilder<du::SmartPtr<zelk::BaseInstance>>(*this, info, hiddenPass).Build(parent, instance);
  }
  return BranchBuilder<Node*>(*this, info, hiddenPass).Build(parent, source);
}

void FilteredTree::_GetSortedBaseChildren(
    du::SmartPtr<zelk::BaseInstance> instance,  // NOLINT(performance-unnecessary-value-param): held during the call
    std::vector<du::SmartPtr<zelk::BaseInstance>>& out, BuildTreeInfo& info)
{
  instance->GetBaseChildren(out);
  SortChildren(out, info.filter);
}

void FilteredTree::_GetSortedNodeChildren(Node* node, std::vector<Node*>& out, BuildTreeInfo& info)
{
  out.clear();
  for (Node* child = node->firstChild; child; child = child->nextSibling) {
    out.push_back(child);
  }
  SortChildren(out, info.filter);
}

}  // namespace guitree
