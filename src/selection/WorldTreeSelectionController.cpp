#include "guitree/WorldTreeSelectionController.h"

#include <vector>

#include "guitree/WorldTreeState.h"
#include "zelk/ObjectSelectionItem.h"

namespace guitree {
namespace {

using zelk::SelectionManager;

du::SmartPtr<zelk::Instance> ToInstance(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  return du::SmartPtr(zelk::AsInstance(instance.Get()) ? static_cast<zelk::Instance*>(instance.Get()) : nullptr);
}

void AddItem(SelectionManager::ItemSet& items, const du::SmartPtr<zelk::Instance>& instance)
{
  items.insert(du::MakeSmart<zelk::ObjectSelectionItem>(instance));
}

/// What the row of an instance stands for.
void AddItemsOfRow(SelectionManager::ItemSet& items, const du::SmartPtr<zelk::Instance>& instance)
{
  if (!WorldTreeState::IsCollapsingInstances() || !instance->IsFirstMultiInstancedSibling()) {
    AddItem(items, instance);
    return;
  }
  std::vector<du::SmartPtr<zelk::Instance>> group;
  instance->GetAllMultiInstancedSibling(group);
  for (const auto& sibling : group) {
    AddItem(items, sibling);
  }
}

}  // namespace

WorldTreeSelectionController::WorldTreeSelectionController(const du::SmartPtr<SelectionManager>& manager)
    : TreeSelectionController(manager, false)
{
}

WorldTreeSelectionController::~WorldTreeSelectionController() = default;

unsigned int WorldTreeSelectionController::GetTotalItemCount()
{
  return selectionManager ? selectionManager->GetSelectedCount(
             SelectionManager::SelectionList, SelectionManager::GetInstanceTypes(), zelk::ExpandRuleInstances)
                          : 0;
}

void WorldTreeSelectionController::GetSelectedInstances(std::set<du::SmartPtr<zelk::BaseInstance>>& out)
{
  GetInstances(SelectionManager::SelectionList, out);
}

bool WorldTreeSelectionController::ContainsInstance()
{
  return GetTotalItemCount() != 0;
}

bool WorldTreeSelectionController::ContainsItem(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  if (!selectionManager) {
    return false;
  }
  const auto item = du::MakeSmart<zelk::ObjectSelectionItem>(ToInstance(instance));
  return selectionManager->ContainsItem(SelectionManager::SelectionList, item, zelk::ExpandRuleInstances);
}

void WorldTreeSelectionController::SetItems(const std::set<du::SmartPtr<zelk::BaseInstance>>& items)
{
  if (!selectionManager) {
    return;
  }
  SelectionManager::ItemSet selection;
  for (const auto& item : items) {
    if (const auto instance = ToInstance(item)) {
      AddItemsOfRow(selection, instance);
    }
  }
  selectionManager->ApplyItems(SelectionManager::SelectionList, selection, SelectionManager::OperationSet);
}

bool WorldTreeSelectionController::IsItemAssocHlighted(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  const auto kernelInstance = ToInstance(instance);
  if (!kernelInstance || !selectionManager) {
    return false;
  }
  const auto item = du::MakeSmart<zelk::ObjectSelectionItem>(kernelInstance);
  return selectionManager->ContainsItem(SelectionManager::AssocHlightList, item, zelk::ExpandRuleInstances);
}

void WorldTreeSelectionController::GetAssocHlightedInstances(std::set<du::SmartPtr<zelk::BaseInstance>>& out)
{
  GetInstances(SelectionManager::AssocHlightList, out);
}

void WorldTreeSelectionController::SetItems(const std::set<du::SmartPtr<zelk::Instance>>& items)
{
  if (!selectionManager) {
    return;
  }
  SelectionManager::ItemSet selection;
  for (const auto& instance : items) {
    if (instance) {
      AddItemsOfRow(selection, instance);
    }
  }
  selectionManager->ApplyItems(SelectionManager::SelectionList, selection, SelectionManager::OperationSet);
}

void WorldTreeSelectionController::GetSelectedInstances(std::set<du::SmartPtr<zelk::Instance>>& out)
{
  if (selectionManager) {
    selectionManager->GetSelectedInstances(SelectionManager::SelectionList, out, zelk::ExpandRuleInstances);
  }
}

void WorldTreeSelectionController::GetInstances(SelectionManager::ListID list,
                                                std::set<du::SmartPtr<zelk::BaseInstance>>& out)
{
  out.clear();
  if (!selectionManager) {
    return;
  }
  std::set<du::SmartPtr<zelk::Instance>> instances;
  selectionManager->GetSelectedInstances(list, instances, zelk::ExpandRuleInstances);
  for (const auto& instance : instances) {
    out.insert(out.end(), instance);
  }
}

}  // namespace guitree
