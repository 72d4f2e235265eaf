// How a tree state follows the selection and the associated highlight.

#include "facade/Pin.h"
#include "facade/TreeUpdateScope.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeStateBase.h"
#include "zelk/ObjectSelectionItem.h"

namespace guitree {

void TreeStateBase::GetBaseInstFromSelItems(const std::vector<du::SmartPtr<zelk::Object>>& items,
                                            std::set<zelk::BaseInstance*>& out)
{
  for (const auto& item : items) {
    auto* instance = dynamic_cast<zelk::BaseInstance*>(item.Get());
    if (instance && notFilteredSet.contains(instance)) {
      out.insert(instance);
    }
  }
}

void TreeStateBase::OnBeginUpdate() {}

void TreeStateBase::OnEndUpdate()
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  if (_IsFilteringSelectionDynamically() && !_DeferSelectionUpdate()) {
    PopulateTree(true);
  }
}

void TreeStateBase::OnInsertItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  if (!_IsFilteringSelectionDynamically() && !_DeferSelectionUpdate()) {
    _Gui().SelectItems(items);
  }
}

void TreeStateBase::OnRemoveItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  if (!_IsFilteringSelectionDynamically() && !_DeferSelectionUpdate()) {
    _Gui().DeselectItems(items);
  }
}

void TreeStateBase::OnClearSelection()
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  if (!_IsFilteringSelectionDynamically() && !_DeferSelectionUpdate()) {
    _Gui().ClearSelection();
  }
}

bool TreeStateBase::OnAssocHlightChanged(bool clearFirst, const std::vector<du::SmartPtr<zelk::SelectionItem>>& removed,
                                         const std::vector<du::SmartPtr<zelk::SelectionItem>>& added)
{
  // Under a filter job the rows take their highlight from the controller when they are made.
  if (!_HasGuiTree() || busy) {
    return false;
  }
  const Pins pins(this, &guiTree);
  if (!_Gui().IsTreeVisibleInUI()) {
    assocHlightsNeedsUpdating = true;
    return false;
  }
  if (clearFirst) {
    ClearAssocHighlights();
  }
  if (!removed.empty()) {
    SetAssocHlight(removed, false);
  }
  if (!added.empty()) {
    SetAssocHlight(added, true);
  }
  return true;
}

bool TreeStateBase::IsAssocHlight(zelk::BaseInstance* instance) const
{
  return assocHlightSet.contains(instance);
}

void TreeStateBase::RefreshAssocHlights()
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  ClearAssocHighlights();
  UpdateAssocHighlights(true);
}

void TreeStateBase::OnAssocHlightColorChange()
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &guiTree);
  UpdateAssocHighlights(true);
}

void TreeStateBase::UpdateAssocHighlights(bool on)
{
  const du::SmartPtr<TreeSelectionController> selController = GetSelController(false);
  if (!selController) {
    return;
  }
  std::set<du::SmartPtr<zelk::BaseInstance>> highlighted;
  selController->GetAssocHlightedInstances(highlighted);
  SetAssocHlight(highlighted, on);
}

void TreeStateBase::SetAssocHlight(const std::vector<du::SmartPtr<zelk::SelectionItem>>& items, bool on)
{
  const TreeUpdateScope update(_Gui());
  for (const auto& item : items) {
    const auto* objectItem = dynamic_cast<const zelk::ObjectSelectionItem*>(item.Get());
    if (!objectItem) {
      continue;
    }
    if (const auto instance = du::DynamicCast<zelk::BaseInstance>(objectItem->GetObject())) {
      SetAssocHlight(instance.Get(), on);
    }
  }
}

void TreeStateBase::SetAssocHlight(const std::set<du::SmartPtr<zelk::BaseInstance>>& instances, bool on)
{
  const TreeUpdateScope update(_Gui());
  for (const auto& instance : instances) {
    SetAssocHlight(instance.Get(), on);
  }
}

void TreeStateBase::SetAssocHlight(zelk::BaseInstance* instance, bool on)
{
  const bool hasChanged = on ? assocHlightSet.insert(instance).second : assocHlightSet.erase(instance) != 0;
  if (hasChanged) {
    _Gui().SetAssocHlight(instance, on);
  }
}

void TreeStateBase::ClearAssocHighlights()
{
  if (assocHlightSet.empty()) {
    return;
  }
  const TreeUpdateScope update(_Gui());
  while (!assocHlightSet.empty()) {
    zelk::BaseInstance* instance = *assocHlightSet.begin();
    assocHlightSet.erase(assocHlightSet.begin());
    _Gui().SetAssocHlight(instance, false);
  }
}

bool TreeStateBase::_IsFilteringSelectionDynamically()
{
  structure_utils::TreeFilterInfoBase& filter = _GetCurrentFilter();
  return filter.GetDynamicUpdate() && filter.GetFilteringSel();
}

bool TreeStateBase::_DeferSelectionUpdate()
{
  if (_Gui().IsTreeVisibleInUI()) {
    return false;
  }
  selectionNeedsUpdating = true;
  return true;
}

}  // namespace guitree
