#include "guitree/GuiInterface.h"

#include "guitree/TreeSelectionController.h"

namespace guitree {

GuiInterface::GuiInterface() = default;

GuiInterface::GuiInterface(const GuiInterface& /*other*/) : GuiInterface() {}

GuiInterface& GuiInterface::operator=(const GuiInterface&) = default;

GuiInterface::~GuiInterface() = default;

void GuiInterface::StartTreeUpdate() {}

void GuiInterface::FinishTreeUpdate() {}

void GuiInterface::ClearTree() {}

void GuiInterface::InitialiseBeforePopulate() {}

void GuiInterface::RefreshSelection() {}

void GuiInterface::PostOnActiveViewChanged(const du::SmartPtr<zelk::View>& /*view*/, bool /*wasClashReport*/) {}

void GuiInterface::UpdateStatusBar() {}

void GuiInterface::UpdateFilterUI() {}

void GuiInterface::UpdateTreeTable() {}

void GuiInterface::ViewChangeUpdaeFilterUI() {}

void GuiInterface::UpdateNodeNames() {}

void GuiInterface::CheckAltPartNamePrefs() {}

void GuiInterface::LoadSortingPrefs() {}

void GuiInterface::UpdateTooltips() {}

void GuiInterface::UpdateVisAndTypeIcons(const du::HashMap<const zelk::BaseInstance*, VisibleState>* /*visibleMap*/,
                                         TypeIconMap* /*typeIconMap*/)
{
}

void GuiInterface::UpdateQuickSearchResults(bool /*populated*/, const du::SmartPtr<zelk::View>& /*view*/,
                                            bool /*filterNeeded*/)
{
}

void GuiInterface::UnsyncInstances(bool /*unsynced*/) {}

void GuiInterface::StoreExpandedAndFirstVisibleBeforePopulate(bool /*keepExpanded*/) {}

void GuiInterface::RestoreExpandedAfterPopulate() {}

void GuiInterface::RestoreFirstVisible() {}

void GuiInterface::PostProcessingComplete() {}

bool GuiInterface::CheckPropsLoaded()
{
  return true;
}

bool GuiInterface::CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& /*instance*/)
{
  return false;
}

void GuiInterface::MadeVisible(bool /*visible*/) {}

void GuiInterface::SelectItems(std::vector<du::SmartPtr<zelk::Object>>& /*items*/) {}

void GuiInterface::DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& /*items*/) {}

void GuiInterface::ClearSelection() {}

bool GuiInterface::SetAssocHlight(zelk::BaseInstance* /*instance*/, bool /*on*/)
{
  return false;
}

void GuiInterface::InstanceCreate(FilteredTree::Node* /*node*/,
                                  const du::SmartPtr<TreeSelectionController>& /*controller*/, bool /*assocHlight*/)
{
}

void GuiInterface::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& /*instance*/,
                                  const du::SmartPtr<zelk::BaseInstance>& /*parent*/,
                                  const du::SmartPtr<TreeSelectionController>& /*controller*/, bool /*assocHlight*/)
{
}

void GuiInterface::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& /*instance*/,
                                  const du::SmartPtr<zelk::BaseInstance>& /*parent*/, bool /*repopulatePending*/)
{
}

bool GuiInterface::HasTypeIconChangedOnShapeInstanceRemove(SceneInfoLog* /*log*/,
                                                           const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/)
{
  return false;
}

std::list<zelk::BaseInstance*>* GuiInterface::GetNonFilteredInsts1()
{
  return nullptr;
}

std::list<zelk::BaseInstance*>* GuiInterface::GetNonFilteredInsts2()
{
  return nullptr;
}

void GuiInterface::UpdateDisplayNames() {}

du::Symbol GuiInterface::GetViewTypeString(const du::SmartPtr<zelk::View>& /*view*/) const
{
  return "Unknown";
}

void GuiInterface::Reset() {}

bool GuiInterface::IsTreeVisibleInUI() const
{
  return true;
}

du::SmartPtr<zelk::ProgressCtrl> GuiInterface::CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& /*event*/)
{
  return {};
}

void GuiInterface::FilterNodeCreate(FilteredTree::Node* /*node*/) {}

bool GuiInterface::IsShowingAltPartNames() const
{
  return false;
}

void GuiInterface::CurrentViewChanged() {}

void GuiInterface::ContentHasChanged() {}

bool GuiInterface::IsValidView(const du::SmartPtr<zelk::View>& /*view*/)
{
  return true;
}

void GuiInterface::UpdateMarkedInsts(const du::SmartPtr<zelk::ShapeScene>& /*scene*/) {}

void GuiInterface::SetTreeCalculating(bool /*calculating*/) {}

void GuiInterface::InstanceMoved(const du::SmartPtr<zelk::illustration::SbomInstance>& /*instance*/,
                                 const du::SmartPtr<TreeSelectionController>& /*controller*/)
{
}

du::SmartPtr<zelk::View> GuiInterface::GetCS3DView() const
{
  return {};
}

du::SmartPtr<zelk::View> GuiInterface::GetCSSchView() const
{
  return {};
}

void GuiInterface::CheckListTypeCorrect() {}

int GuiInterface::AddSmartPtrReference(const SceneManagerObserver* observer, void* owner)
{
  return observer->AddReference(owner);
}

bool GuiInterface::AttemptDeleteSmartPtrReference(const SceneManagerObserver* observer, void* owner)
{
  return du::ReleaseReference(observer, owner);
}

GuiInterface::SceneManagerObserver::~SceneManagerObserver() = default;

bool GuiInterface::SceneManagerObserver::ZeroReferenceCountHook() const
{
  return true;
}

void GuiInterface::SceneManagerObserver::OnActiveViewChanged(const du::SmartPtr<zelk::View>& /*view*/) {}

void GuiInterface::SceneManagerObserver::OnSceneRemoved(const du::SmartPtr<zelk::Scene>& /*scene*/) {}

void GuiInterface::SceneManagerObserver::OnSceneAdded(const du::SmartPtr<zelk::Scene>& /*scene*/) {}

void GuiInterface::SceneManagerObserver::OnViewRemoved(const du::SmartPtr<zelk::View>& /*view*/) {}

}  // namespace guitree
