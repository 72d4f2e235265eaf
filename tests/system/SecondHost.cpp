#include "SecondHost.h"

namespace systemtest {

template <typename Call>
void TwinHost::_Tell(Call call)
{
  if (m_second) {
    call(*m_second);
  }
}

void TwinHost::SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer)
{
  ForwardingHost::SetSceneManagerObserver(observer);
  _Tell([&](auto& second) { second.SetSceneManagerObserver(observer); });
}

void TwinHost::StartTreeUpdate()
{
  ForwardingHost::StartTreeUpdate();
  _Tell([&](auto& second) { second.StartTreeUpdate(); });
}

void TwinHost::FinishTreeUpdate()
{
  ForwardingHost::FinishTreeUpdate();
  _Tell([&](auto& second) { second.FinishTreeUpdate(); });
}

void TwinHost::ClearTree()
{
  ForwardingHost::ClearTree();
  _Tell([&](auto& second) { second.ClearTree(); });
}

void TwinHost::RefreshSelection()
{
  ForwardingHost::RefreshSelection();
  _Tell([&](auto& second) { second.RefreshSelection(); });
}

void TwinHost::UpdateStatusBar()
{
  ForwardingHost::UpdateStatusBar();
  _Tell([&](auto& second) { second.UpdateStatusBar(); });
}

void TwinHost::UpdateFilterUI()
{
  ForwardingHost::UpdateFilterUI();
  _Tell([&](auto& second) { second.UpdateFilterUI(); });
}

void TwinHost::UpdateTreeTable()
{
  ForwardingHost::UpdateTreeTable();
  _Tell([&](auto& second) { second.UpdateTreeTable(); });
}

void TwinHost::UpdateNodeNames()
{
  ForwardingHost::UpdateNodeNames();
  _Tell([&](auto& second) { second.UpdateNodeNames(); });
}

void TwinHost::LoadSortingPrefs()
{
  ForwardingHost::LoadSortingPrefs();
  _Tell([&](auto& second) { second.LoadSortingPrefs(); });
}

void TwinHost::UpdateVisAndTypeIconChanges(
    const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
    const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap, guitree::TypeIconMap* typeIconMap,
    const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap)
{
  ForwardingHost::UpdateVisAndTypeIconChanges(visibleMap, visibleChangeMap, typeIconMap, typeIconChangeMap);
  _Tell([&](auto& second) {
    second.UpdateVisAndTypeIconChanges(visibleMap, visibleChangeMap, typeIconMap, typeIconChangeMap);
  });
}

void TwinHost::UpdateVisAndTypeIcons(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                                     guitree::TypeIconMap* typeIconMap)
{
  ForwardingHost::UpdateVisAndTypeIcons(visibleMap, typeIconMap);
  _Tell([&](auto& second) { second.UpdateVisAndTypeIcons(visibleMap, typeIconMap); });
}

void TwinHost::StoreExpandedAndFirstVisibleBeforePopulate(bool keepExpanded)
{
  ForwardingHost::StoreExpandedAndFirstVisibleBeforePopulate(keepExpanded);
  _Tell([&](auto& second) { second.StoreExpandedAndFirstVisibleBeforePopulate(keepExpanded); });
}

void TwinHost::RestoreExpandedAfterPopulate()
{
  ForwardingHost::RestoreExpandedAfterPopulate();
  _Tell([&](auto& second) { second.RestoreExpandedAfterPopulate(); });
}

void TwinHost::RestoreFirstVisible()
{
  ForwardingHost::RestoreFirstVisible();
  _Tell([&](auto& second) { second.RestoreFirstVisible(); });
}

void TwinHost::PostProcessingComplete()
{
  ForwardingHost::PostProcessingComplete();
  _Tell([&](auto& second) { second.PostProcessingComplete(); });
}

bool TwinHost::CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  const bool answer = ForwardingHost::CheckAndUpdateNodeNameAndType(instance);
  _Tell([&](auto& second) { second.CheckAndUpdateNodeNameAndType(instance); });
  return answer;
}

void TwinHost::MadeVisible(bool visible)
{
  ForwardingHost::MadeVisible(visible);
  _Tell([&](auto& second) { second.MadeVisible(visible); });
}

void TwinHost::SelectItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  ForwardingHost::SelectItems(items);
  _Tell([&](auto& second) { second.SelectItems(items); });
}

void TwinHost::DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  ForwardingHost::DeselectItems(items);
  _Tell([&](auto& second) { second.DeselectItems(items); });
}

void TwinHost::ClearSelection()
{
  ForwardingHost::ClearSelection();
  _Tell([&](auto& second) { second.ClearSelection(); });
}

bool TwinHost::SetAssocHlight(zelk::BaseInstance* instance, bool on)
{
  const bool answer = ForwardingHost::SetAssocHlight(instance, on);
  _Tell([&](auto& second) { second.SetAssocHlight(instance, on); });
  return answer;
}

void TwinHost::InstanceCreate(guitree::FilteredTree::Node* node,
                              const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  ForwardingHost::InstanceCreate(node, controller, assocHlight);
  _Tell([&](auto& second) { second.InstanceCreate(node, controller, assocHlight); });
}

void TwinHost::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& parent,
                              const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  ForwardingHost::InstanceCreate(instance, parent, controller, assocHlight);
  _Tell([&](auto& second) { second.InstanceCreate(instance, parent, controller, assocHlight); });
}

void TwinHost::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& parent, bool repopulatePending)
{
  ForwardingHost::InstanceRemove(instance, parent, repopulatePending);
  _Tell([&](auto& second) { second.InstanceRemove(instance, parent, repopulatePending); });
}

void TwinHost::UpdateDisplayNames()
{
  ForwardingHost::UpdateDisplayNames();
  _Tell([&](auto& second) { second.UpdateDisplayNames(); });
}

void TwinHost::Reset()
{
  ForwardingHost::Reset();
  _Tell([&](auto& second) { second.Reset(); });
}

void TwinHost::FilterNodeCreate(guitree::FilteredTree::Node* node)
{
  ForwardingHost::FilterNodeCreate(node);
  _Tell([&](auto& second) { second.FilterNodeCreate(node); });
}

void TwinHost::CurrentViewChanged()
{
  ForwardingHost::CurrentViewChanged();
  _Tell([&](auto& second) { second.CurrentViewChanged(); });
}

void TwinHost::SetTreeCalculating(bool calculating)
{
  ForwardingHost::SetTreeCalculating(calculating);
  _Tell([&](auto& second) { second.SetTreeCalculating(calculating); });
}

}  // namespace systemtest
