#include "hostcheck/CallTracer.h"

#include "Join.h"
#include "zelk/ObjectSelectionItem.h"

namespace hostcheck {

namespace {

std::string Show(bool value)
{
  return value ? "true" : "false";
}

std::string ShowPresence(const void* object)
{
  return object ? "yes" : "no";
}

std::string Quote(const du::Symbol& symbol)
{
  return '"' + std::string(symbol) + '"';
}

}  // namespace

void CallTracer::_OnLine(const std::string& line) const
{
  if (m_sink) {
    m_sink(line);
  }
}

void CallTracer::_OnQuestion(const std::string& line) const
{
  if (m_showQuestions) {
    _OnLine(line);
  }
}

std::string CallTracer::_NameOf(const zelk::Object* object) const
{
  if (!object) {
    return "null";
  }
  if (m_namer) {
    return m_namer(*object);
  }
  const du::Symbol name = object->GetObjectName();
  return name.IsEmpty() ? "unnamed" : std::string(name);
}

void CallTracer::RememberName(const zelk::BaseInstance& instance) const
{
  m_names[&instance] = _NameOf(&instance);
}

std::string CallTracer::_NameOfIdentity(const zelk::BaseInstance* instance) const
{
  const auto name = m_names.find(instance);
  return name != m_names.end() ? name->second : "?";
}

std::string CallTracer::_NameOfRow(const zelk::BaseInstance* instance) const
{
  if (instance) {
    RememberName(*instance);
    m_icons.erase(instance);
  }
  return _NameOf(instance);
}

std::string CallTracer::_NameOfNode(const guitree::FilteredTree::Node* node) const
{
  return _NameOfRow(node ? node->instance : nullptr);
}

std::string CallTracer::_NameOfItem(const zelk::Object* item) const
{
  const auto* selected = dynamic_cast<const zelk::ObjectSelectionItem*>(item);
  return selected ? _NameOf(selected->GetObject().Get()) : _NameOf(item);
}

std::string CallTracer::_ShowItems(const std::vector<du::SmartPtr<zelk::Object>>& items) const
{
  std::vector<std::string> names;
  names.reserve(items.size());
  for (const auto& item : items) {
    names.push_back(_NameOfItem(item.Get()));
  }
  return Join(names, '[', ']');
}

std::string CallTracer::_ShowInstances(const std::list<zelk::BaseInstance*>* instances) const
{
  if (!instances) {
    return "null";
  }
  std::vector<std::string> names;
  names.reserve(instances->size());
  for (const zelk::BaseInstance* instance : *instances) {
    names.push_back(_NameOf(instance));
  }
  return Join(names, '[', ']');
}

void CallTracer::SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer)
{
  _OnCall("SetSceneManagerObserver(" + ShowPresence(observer.Get()) + ")");
  ForwardingHost::SetSceneManagerObserver(observer);
}

void CallTracer::StartTreeUpdate()
{
  _OnCall("StartTreeUpdate()");
  ForwardingHost::StartTreeUpdate();
}

void CallTracer::FinishTreeUpdate()
{
  _OnCall("FinishTreeUpdate()");
  ForwardingHost::FinishTreeUpdate();
}

void CallTracer::ClearTree()
{
  _OnCall("ClearTree()");
  ForwardingHost::ClearTree();
}

void CallTracer::InitialiseBeforePopulate()
{
  _OnCall("InitialiseBeforePopulate()");
  ForwardingHost::InitialiseBeforePopulate();
}

void CallTracer::RefreshSelection()
{
  _OnCall("RefreshSelection()");
  ForwardingHost::RefreshSelection();
}

void CallTracer::PostOnActiveViewChanged(const du::SmartPtr<zelk::View>& view, bool wasClashReport)
{
  _OnCall("PostOnActiveViewChanged(" + _NameOf(view.Get()) + ", wasClashReport=" + Show(wasClashReport) + ")");
  ForwardingHost::PostOnActiveViewChanged(view, wasClashReport);
}

void CallTracer::UpdateStatusBar()
{
  _OnCall("UpdateStatusBar()");
  ForwardingHost::UpdateStatusBar();
}

void CallTracer::UpdateFilterUI()
{
  _OnCall("UpdateFilterUI()");
  ForwardingHost::UpdateFilterUI();
}

void CallTracer::UpdateTreeTable()
{
  _OnCall("UpdateTreeTable()");
  ForwardingHost::UpdateTreeTable();
}

void CallTracer::ViewChangeUpdaeFilterUI()
{
  _OnCall("ViewChangeUpdaeFilterUI()");
  ForwardingHost::ViewChangeUpdaeFilterUI();
}

void CallTracer::UpdateNodeNames()
{
  _OnCall("UpdateNodeNames()");
  ForwardingHost::UpdateNodeNames();
}

void CallTracer::CheckAltPartNamePrefs()
{
  _OnCall("CheckAltPartNamePrefs()");
  ForwardingHost::CheckAltPartNamePrefs();
}

void CallTracer::LoadSortingPrefs()
{
  _OnCall("LoadSortingPrefs()");
  ForwardingHost::LoadSortingPrefs();
}

void CallTracer::UpdateTooltips()
{
  _OnCall("UpdateTooltips()");
  ForwardingHost::UpdateTooltips();
}

void CallTracer::UpdateQuickSearchResults(bool populated, const du::SmartPtr<zelk::View>& view, bool filterNeeded)
{
  _OnCall("UpdateQuickSearchResults(" + Show(populated) + ", view=" + _NameOf(view.Get())
          + ", filterNeeded=" + Show(filterNeeded) + ")");
  ForwardingHost::UpdateQuickSearchResults(populated, view, filterNeeded);
}

void CallTracer::UnsyncInstances(bool unsynced)
{
  _OnCall("UnsyncInstances(" + Show(unsynced) + ")");
  ForwardingHost::UnsyncInstances(unsynced);
}

void CallTracer::StoreExpandedAndFirstVisibleBeforePopulate(bool keepExpanded)
{
  _OnCall("StoreExpandedAndFirstVisibleBeforePopulate(" + Show(keepExpanded) + ")");
  ForwardingHost::StoreExpandedAndFirstVisibleBeforePopulate(keepExpanded);
}

void CallTracer::RestoreExpandedAfterPopulate()
{
  _OnCall("RestoreExpandedAfterPopulate()");
  ForwardingHost::RestoreExpandedAfterPopulate();
}

void CallTracer::RestoreFirstVisible()
{
  _OnCall("RestoreFirstVisible()");
  ForwardingHost::RestoreFirstVisible();
}

void CallTracer::PostProcessingComplete()
{
  _OnCall("PostProcessingComplete()");
  ForwardingHost::PostProcessingComplete();
}

bool CallTracer::CheckPropsLoaded()
{
  const bool answer = ForwardingHost::CheckPropsLoaded();
  _OnQuestion("CheckPropsLoaded() -> " + Show(answer));
  return answer;
}

bool CallTracer::CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  const bool answer = ForwardingHost::CheckAndUpdateNodeNameAndType(instance);
  if (instance) {
    RememberName(*instance);
  }
  _OnCall("CheckAndUpdateNodeNameAndType(" + _NameOf(instance.Get()) + ") -> " + Show(answer));
  return answer;
}

void CallTracer::MadeVisible(bool visible)
{
  _OnCall("MadeVisible(" + Show(visible) + ")");
  ForwardingHost::MadeVisible(visible);
}

void CallTracer::SelectItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  _OnCall("SelectItems(" + _ShowItems(items) + ")");
  ForwardingHost::SelectItems(items);
}

void CallTracer::DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  _OnCall("DeselectItems(" + _ShowItems(items) + ")");
  ForwardingHost::DeselectItems(items);
}

void CallTracer::ClearSelection()
{
  _OnCall("ClearSelection()");
  ForwardingHost::ClearSelection();
}

bool CallTracer::SetAssocHlight(zelk::BaseInstance* instance, bool on)
{
  const bool answer = ForwardingHost::SetAssocHlight(instance, on);
  if (on && instance) {
    RememberName(*instance);
  }
  // One that is turned off may have ended.
  const std::string name = on ? _NameOf(instance) : _NameOfIdentity(instance);
  _OnCall("SetAssocHlight(" + name + ", on=" + Show(on) + ") -> " + Show(answer));
  return answer;
}

void CallTracer::InstanceCreate(guitree::FilteredTree::Node* node,
                                const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  _OnCall("InstanceCreate(node " + _NameOfNode(node) + ", controller=" + ShowPresence(controller.Get())
          + ", assoc=" + Show(assocHlight) + ")");
  ForwardingHost::InstanceCreate(node, controller, assocHlight);
}

void CallTracer::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                const du::SmartPtr<zelk::BaseInstance>& parent,
                                const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  _OnCall("InstanceCreate(" + _NameOfRow(instance.Get()) + ", parent=" + _NameOf(parent.Get())
          + ", controller=" + ShowPresence(controller.Get()) + ", assoc=" + Show(assocHlight) + ")");
  ForwardingHost::InstanceCreate(instance, parent, controller, assocHlight);
}

void CallTracer::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                                const du::SmartPtr<zelk::BaseInstance>& parent, bool repopulatePending)
{
  _OnCall("InstanceRemove(" + _NameOf(instance.Get()) + ", parent=" + _NameOf(parent.Get())
          + ", repopulatePending=" + Show(repopulatePending) + ")");
  ForwardingHost::InstanceRemove(instance, parent, repopulatePending);
}

bool CallTracer::HasTypeIconChangedOnShapeInstanceRemove(guitree::SceneInfoLog* log,
                                                         const du::SmartPtr<zelk::ShapeInstance>& shapeInstance)
{
  const bool answer = ForwardingHost::HasTypeIconChangedOnShapeInstanceRemove(log, shapeInstance);
  _OnQuestion("HasTypeIconChangedOnShapeInstanceRemove(" + ShowPresence(log)
              + ", shapeInstance=" + _NameOf(shapeInstance.Get()) + ") -> " + Show(answer));
  return answer;
}

std::list<zelk::BaseInstance*>* CallTracer::GetNonFilteredInsts1()
{
  auto* answer = ForwardingHost::GetNonFilteredInsts1();
  _OnQuestion("GetNonFilteredInsts1() -> " + _ShowInstances(answer));
  return answer;
}

std::list<zelk::BaseInstance*>* CallTracer::GetNonFilteredInsts2()
{
  auto* answer = ForwardingHost::GetNonFilteredInsts2();
  _OnQuestion("GetNonFilteredInsts2() -> " + _ShowInstances(answer));
  return answer;
}

void CallTracer::UpdateDisplayNames()
{
  _OnCall("UpdateDisplayNames()");
  ForwardingHost::UpdateDisplayNames();
}

du::Symbol CallTracer::GetViewTypeString(const du::SmartPtr<zelk::View>& view) const
{
  auto answer = ForwardingHost::GetViewTypeString(view);
  _OnQuestion("GetViewTypeString(" + _NameOf(view.Get()) + ") -> " + Quote(answer));
  return answer;
}

void CallTracer::Reset()
{
  _OnCall("Reset()");
  ForwardingHost::Reset();
}

bool CallTracer::IsTreeVisibleInUI() const
{
  const bool answer = ForwardingHost::IsTreeVisibleInUI();
  _OnQuestion("IsTreeVisibleInUI() -> " + Show(answer));
  return answer;
}

du::SmartPtr<zelk::ProgressCtrl> CallTracer::CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event)
{
  auto answer = ForwardingHost::CreateFilterProgressCtrl(event);
  _OnQuestion("CreateFilterProgressCtrl(" + ShowPresence(event.Get()) + ") -> " + ShowPresence(answer.Get()));
  return answer;
}

void CallTracer::FilterNodeCreate(guitree::FilteredTree::Node* node)
{
  _OnCall("FilterNodeCreate(node " + _NameOfNode(node) + ")");
  ForwardingHost::FilterNodeCreate(node);
}

bool CallTracer::IsShowingAltPartNames() const
{
  const bool answer = ForwardingHost::IsShowingAltPartNames();
  _OnQuestion("IsShowingAltPartNames() -> " + Show(answer));
  return answer;
}

void CallTracer::CurrentViewChanged()
{
  _OnCall("CurrentViewChanged()");
  ForwardingHost::CurrentViewChanged();
}

void CallTracer::ContentHasChanged()
{
  _OnCall("ContentHasChanged()");
  ForwardingHost::ContentHasChanged();
}

bool CallTracer::IsValidView(const du::SmartPtr<zelk::View>& view)
{
  const bool answer = ForwardingHost::IsValidView(view);
  _OnQuestion("IsValidView(" + _NameOf(view.Get()) + ") -> " + Show(answer));
  return answer;
}

void CallTracer::UpdateMarkedInsts(const du::SmartPtr<zelk::ShapeScene>& scene)
{
  _OnCall("UpdateMarkedInsts(" + _NameOf(scene.Get()) + ")");
  ForwardingHost::UpdateMarkedInsts(scene);
}

void CallTracer::SetTreeCalculating(bool calculating)
{
  _OnCall("SetTreeCalculating(" + Show(calculating) + ")");
  ForwardingHost::SetTreeCalculating(calculating);
}

void CallTracer::InstanceMoved(const du::SmartPtr<zelk::illustration::SbomInstance>& instance,
                               const du::SmartPtr<guitree::TreeSelectionController>& controller)
{
  _OnCall("InstanceMoved(" + _NameOf(instance.Get()) + ", controller=" + ShowPresence(controller.Get()) + ")");
  ForwardingHost::InstanceMoved(instance, controller);
}

du::SmartPtr<zelk::View> CallTracer::GetCS3DView() const
{
  auto answer = ForwardingHost::GetCS3DView();
  _OnQuestion("GetCS3DView() -> " + _NameOf(answer.Get()));
  return answer;
}

du::SmartPtr<zelk::View> CallTracer::GetCSSchView() const
{
  auto answer = ForwardingHost::GetCSSchView();
  _OnQuestion("GetCSSchView() -> " + _NameOf(answer.Get()));
  return answer;
}

void CallTracer::CheckListTypeCorrect()
{
  _OnCall("CheckListTypeCorrect()");
  ForwardingHost::CheckListTypeCorrect();
}

}  // namespace hostcheck
