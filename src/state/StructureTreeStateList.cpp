// What a structure panel shows of a filtered tree: all of it as list, the root alone, or the branches.

#include <algorithm>
#include <iterator>
#include <span>
#include <string>
#include <vector>

#include "facade/Pin.h"
#include "filter/ColumnSortOrder.h"
#include "filter/NodeLinks.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "guitree/StructureTreeState.h"
#include "state/VisitScope.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelk/ComponentInstance.h"
#include "zelk/PropertyValue.h"

namespace guitree {
namespace {

using Instance = du::SmartPtr<zelk::BaseInstance>;

using Items = std::vector<Instance>;

/// Stretches of items with the same value, as they stand.
std::vector<std::span<Instance>> FindRuns(Items& items, const ColumnSortOrder& order)
{
  std::vector<std::span<Instance>> runs;
  for (auto begin = items.begin(); begin != items.end();) {
    const du::Symbol value = order.GetValue(begin->Get());
    const auto end =
        std::find_if(begin + 1, items.end(), [&](const Instance& item) { return order.GetValue(item.Get()) != value; });
    runs.emplace_back(begin, end);
    begin = end;
  }
  return runs;
}

/// Each comparison reads two values from the kernel, and instances of one product, which stand side by side by their
/// keys, have one value as a rule: sorting them as one takes a third of the time for twenty instances a product.
void SortByColumn(Items& items, const ColumnSortOrder& order)
{
  std::vector<std::span<Instance>> runs = FindRuns(items, order);
  std::sort(runs.begin(), runs.end(), [&order](const auto& a, const auto& b) { return order(a.front(), b.front()); });
  Items sorted;
  sorted.reserve(items.size());
  for (const auto& run : runs) {
    std::move(run.begin(), run.end(), std::back_inserter(sorted));
  }
  items.swap(sorted);
}

Items ListCreatedItems(const FilteredTree& tree, structure_utils::TreeFilterInfoBase& filter)
{
  FilteredTree::CreatedSet created;
  tree.GetAllCreatedItems(created);
  Items items(created.begin(), created.end());
  const du::DualSymbol column = filter.GetSortColumn();
  const bool isAscending = filter.GetSortDirection();
  if (ColumnSortOrder::IsColumn(column)) {
    SortByColumn(items, ColumnSortOrder(column, isAscending));
  }
  return items;
}

/// The root is among the created items, and has its own row.
bool IsRoot(const zelk::BaseInstance& instance)
{
  static const du::Symbol s_name("Part ID");
  du::SmartPtr<zelk::PropertyValue> property;
  instance.GetPropertyValue(property, zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, s_name, du::Symbol::EMPTY);
  std::string id;
  if (property) {
    property->GetValueAsString(id);
  }
  return zelk::ComponentInstance::ROOT_INSTANCE_ID == id;
}

}  // namespace

void StructureTreeState::_VisitFilteredTreeNode(FilteredTree::Node* node,
                                                const du::SmartPtr<TreeSelectionController>& selController)
{
  if (ApplyFilterAsList(node, selController)) {
    return;
  }
  if (node && !node->parent && IsMatchedFilterEmpty()) {
    if (_IsRowDue(node->instance)) {
      GetGuiTree().GetGuiInterface()->InstanceCreate(node, selController, false);
    }
    return;
  }
  TreeStateBase::_VisitFilteredTreeNode(node, selController);
}

bool StructureTreeState::ApplyFilterAsList(FilteredTree::Node* node,
                                           const du::SmartPtr<TreeSelectionController>& controller)
{
  const Pin self(this);
  if (!IsDoingFilterAsList()) {
    return false;
  }
  const du::SmartPtr<FilteredTree> tree = _GetResult();
  if (!tree || !node || IsPlaceholder(node) || !_HasGuiTree()) {
    return true;
  }
  _WriteList(*tree, *node, controller);
  return true;
}

void StructureTreeState::_WriteList(FilteredTree& tree, const FilteredTree::Node& node,
                                    const du::SmartPtr<TreeSelectionController>& controller)
{
  const Pin panel(&GetGuiTree());
  const VisitScope visit(*this);
  const std::vector<Instance> items = ListCreatedItems(tree, _GetCurrentFilter());
  const Instance listParent(node.instance);
  if (!_IsRowDue(listParent.Get())) {
    return;
  }
  if (tree.IsContainItem(listParent)) {
    _InstanceCreate(listParent, nullptr, controller);
  } else {
    GetGuiTree().GetGuiInterface()->InstanceCreate(listParent, nullptr, controller, false);
  }
  for (const Instance& item : items) {
    if (item && _IsRowDue(item.Get()) && !IsRoot(*item)) {
      _InstanceCreate(item, listParent, controller);
    }
  }
}

bool StructureTreeState::_IsRowDue(const zelk::BaseInstance* instance) const
{
  return !_IsVisitOvertaken() && !_HasGoneMeanwhile(instance);
}

}  // namespace guitree
