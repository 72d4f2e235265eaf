#include "hostcheck/ForwardingHost.h"

namespace hostcheck {

namespace {

class DefaultHost final : public guitree::GuiInterface {
public:
  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& /*observer*/) override {}
  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* /*visibleMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* /*visibleChangeMap*/,
                                   guitree::TypeIconMap* /*typeIconMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* /*typeIconChangeMap*/) override
  {
  }
};

}  // namespace

guitree::GuiInterface& ForwardingHost::_Next() const
{
  static DefaultHost s_defaultHost;
  ++m_callCount;
  return m_next ? *m_next : s_defaultHost;
}

void ForwardingHost::SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer)
{
  _Next().SetSceneManagerObserver(observer);
}

void ForwardingHost::StartTreeUpdate()
{
  _Next().StartTreeUpdate();
}

void ForwardingHost::FinishTreeUpdate()
{
  _Next().FinishTreeUpdate();
}

void ForwardingHost::ClearTree()
{
  _Next().ClearTree();
}

void ForwardingHost::InitialiseBeforePopulate()
{
  _Next().InitialiseBeforePopulate();
}

void ForwardingHost::RefreshSelection()
{
  _Next().RefreshSelection();
}

void ForwardingHost::PostOnActiveViewChanged(const du::SmartPtr<zelk::View>& view, bool wasClashReport)
{
  _Next().PostOnActiveViewChanged(view, wasClashReport);
}

void ForwardingHost::UpdateStatusBar()
{
  _Next().UpdateStatusBar();
}

void ForwardingHost::UpdateFilterUI()
{
  _Next().UpdateFilterUI();
}

void ForwardingHost::UpdateTreeTable()
{
  _Next().UpdateTreeTable();
}

void ForwardingHost::ViewChangeUpdaeFilterUI()
{
  _Next().ViewChangeUpdaeFilterUI();
}

void ForwardingHost::UpdateNodeNames()
{
  _Next().UpdateNodeNames();
}

void ForwardingHost::CheckAltPartNamePrefs()
{
  _Next().CheckAltPartNamePrefs();
}

void ForwardingHost::LoadSortingPrefs()
{
  _Next().LoadSortingPrefs();
}

void ForwardingHost::UpdateTooltips()
{
  _Next().UpdateTooltips();
}

void ForwardingHost::UpdateVisAndTypeIconChanges(
    const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
    const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap, guitree::TypeIconMap* typeIconMap,
    const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap)
{
  _Next().UpdateVisAndTypeIconChanges(visibleMap, visibleChangeMap, typeIconMap, typeIconChangeMap);
}

void ForwardingHost::UpdateVisAndTypeIcons(
    const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap, guitree::TypeIconMap* typeIconMap)
{
  _Next().UpdateVisAndTypeIcons(visibleMap, typeIconMap);
}

void ForwardingHost::UpdateQuickSearchResults(bool populated, const du::SmartPtr<zelk::View>& view, bool filterNeeded)
{
  _Next().UpdateQuickSearchResults(populated, view, filterNeeded);
}

void ForwardingHost::UnsyncInstances(bool unsynced)
{
  _Next().UnsyncInstances(unsynced);
}

void ForwardingHost::StoreExpandedAndFirstVisibleBeforePopulate(bool keepExpanded)
{
  _Next().StoreExpandedAndFirstVisibleBeforePopulate(keepExpanded);
}

void ForwardingHost::RestoreExpandedAfterPopulate()
{
  _Next().RestoreExpandedAfterPopulate();
}

void ForwardingHost::RestoreFirstVisible()
{
  _Next().RestoreFirstVisible();
}

void ForwardingHost::PostProcessingComplete()
{
  _Next().PostProcessingComplete();
}

bool ForwardingHost::CheckPropsLoaded()
{
  return _Next().CheckPropsLoaded();
}

bool ForwardingHost::CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  return _Next().CheckAndUpdateNodeNameAndType(instance);
}

void ForwardingHost::MadeVisible(bool visible)
{
  _Next().MadeVisible(visible);
}

void ForwardingHost::SelectItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  _Next().SelectItems(items);
}

void ForwardingHost::DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  _Next().DeselectItems(items);
}

void ForwardingHost::ClearSelection()
{
  _Next().ClearSelection();
}

bool ForwardingHost::SetAssocHlight(zelk::BaseInstance* instance, bool on)
{
  return _Next().SetAssocHlight(instance, on);
}

void ForwardingHost::InstanceCreate(guitree::FilteredTree::Node* node,
                                    const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  _Next().InstanceCreate(node, controller, assocHlight);
}

void ForwardingHost::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                    const du::SmartPtr<zelk::BaseInstance>& parent,
                                    const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  _Next().InstanceCreate(instance, parent, controller, assocHlight);
}

void ForwardingHost::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                                    const du::SmartPtr<zelk::BaseInstance>& parent, bool repopulatePending)
{
  _Next().InstanceRemove(instance, parent, repopulatePending);
}

bool ForwardingHost::HasTypeIconChangedOnShapeInstanceRemove(guitree::SceneInfoLog* log,
                                                             const du::SmartPtr<zelk::ShapeInstance>& shapeInstance)
{
  return _Next().HasTypeIconChangedOnShapeInstanceRemove(log, shapeInstance);
}

std::list<zelk::BaseInstance*>* ForwardingHost::GetNonFilteredInsts1()
{
  return _Next().GetNonFilteredInsts1();
}

std::list<zelk::BaseInstance*>* ForwardingHost::GetNonFilteredInsts2()
{
  return _Next().GetNonFilteredInsts2();
}

void ForwardingHost::UpdateDisplayNames()
{
  _Next().UpdateDisplayNames();
}

du::Symbol ForwardingHost::GetViewTypeString(const du::SmartPtr<zelk::View>& view) const
{
  return _Next().GetViewTypeString(view);
}

void ForwardingHost::Reset()
{
  _Next().Reset();
}

bool ForwardingHost::IsTreeVisibleInUI() const
{
  return _Next().IsTreeVisibleInUI();
}

du::SmartPtr<zelk::ProgressCtrl> ForwardingHost::CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event)
{
  return _Next().CreateFilterProgressCtrl(event);
}

void ForwardingHost::FilterNodeCreate(guitree::FilteredTree::Node* node)
{
  _Next().FilterNodeCreate(node);
}

bool ForwardingHost::IsShowingAltPartNames() const
{
  return _Next().IsShowingAltPartNames();
}

void ForwardingHost::CurrentViewChanged()
{
  _Next().CurrentViewChanged();
}

void ForwardingHost::ContentHasChanged()
{
  _Next().ContentHasChanged();
}

bool ForwardingHost::IsValidView(const du::SmartPtr<zelk::View>& view)
{
  return _Next().IsValidView(view);
}

void ForwardingHost::UpdateMarkedInsts(const du::SmartPtr<zelk::ShapeScene>& scene)
{
  _Next().UpdateMarkedInsts(scene);
}

void ForwardingHost::SetTreeCalculating(bool calculating)
{
  _Next().SetTreeCalculating(calculating);
}

void ForwardingHost::InstanceMoved(const du::SmartPtr<zelk::illustration::SbomInstance>& instance,
                                   const du::SmartPtr<guitree::TreeSelectionController>& controller)
{
  _Next().InstanceMoved(instance, controller);
}

du::SmartPtr<zelk::View> ForwardingHost::GetCS3DView() const
{
  return _Next().GetCS3DView();
}

du::SmartPtr<zelk::View> ForwardingHost::GetCSSchView() const
{
  return _Next().GetCSSchView();
}

void ForwardingHost::CheckListTypeCorrect()
{
  _Next().CheckListTypeCorrect();
}

}  // namespace hostcheck
