#include "guitree/WorldTreeStateTreeObserver.h"

#include "facade/LiveGuiTree.h"
#include "guitree/GuiInterface.h"
#include "guitree/WorldTreeState.h"

namespace guitree {
namespace {

/// The property by whose name a filter sorts its rows by their names.
[[nodiscard]] bool IsSortedByName(structure_utils::TreeFilterInfoBase& filter)
{
  static const du::Symbol s_displayName("Display Name");
  return filter.GetSortColumn().GetSecond() == s_displayName;
}

[[nodiscard]] bool FollowsNames(structure_utils::TreeFilterInfoBase& filter)
{
  return filter.GetDynamicUpdate() && filter.GetFilteringName();
}

}  // namespace

// Every callback holds the observer, the state and the tree for its length: the host is called, and may let go of any
// of them from there.

WorldTreeStateTreeObserver::WorldTreeStateTreeObserver(WorldTreeState* state,
                                                       const du::SmartPtr<zelk::Tree>& observedTree)
    : GuiTreeTreeObserverHelper(&state->GetGuiTree()), treeState(state), tree(observedTree)
{
}

WorldTreeStateTreeObserver::~WorldTreeStateTreeObserver() = default;

du::Symbol WorldTreeStateTreeObserver::GetObjectClass() const
{
  static const du::Symbol s_class("guitree::WorldTreeStateTreeObserver");
  return s_class;
}

void WorldTreeStateTreeObserver::OnDestroy() {}

void WorldTreeStateTreeObserver::OnEndUpdate()
{
  const Pin self(this);
  if (const auto state = _GetLiveState()) {
    Helper_OnEndUpdate();
  }
}

void WorldTreeStateTreeObserver::OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                                                  const du::SmartPtr<zelk::BaseInstance>& parent,
                                                  const du::Symbol& name)
{
  const Pin self(this);
  const LiveGuiTree gui(_GetGuiTree());
  if (const auto state = _GetLiveState()) {
    gui->NoteChildAdded(instance, parent);
    // Its address may have been that of an instance that has gone.
    gui->RemoveFromLogs(instance);
    Helper_OnInstanceCreate(instance, parent, name);
  }
}

void WorldTreeStateTreeObserver::OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                                                  const du::SmartPtr<zelk::BaseInstance>& parent)
{
  const Pin self(this);
  if (const auto state = _GetLiveState()) {
    Helper_OnInstanceRemove(instance, parent);
  }
}

void WorldTreeStateTreeObserver::OnInstanceName(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  const Pin self(this);
  if (const auto state = _GetLiveState()) {
    Helper_OnInstanceName(instance);
  }
}

void WorldTreeStateTreeObserver::OnDisplayNamesChanged()
{
  const Pin self(this);
  const LiveGuiTree gui(_GetGuiTree());
  const auto state = _GetLiveState();
  if (!state) {
    return;
  }
  gui->GetGuiInterface()->UpdateDisplayNames();
  if (!_GetLiveState()) {
    return;
  }
  const du::SmartPtr<zelk::View> view = gui->GetCurrentView();
  structure_utils::TreeFilterInfoBase& filter = state->GetFilter(view);
  if (FollowsNames(filter) || IsSortedByName(filter)) {
    SetRepopulateNeeded();
  } else {
    gui->GetGuiInterface()->UpdateNodeNames();
  }
}

void WorldTreeStateTreeObserver::OnTreeColumnsChanged()
{
  const Pin self(this);
  const LiveGuiTree gui(_GetGuiTree());
  const auto state = _GetLiveState();
  if (!state) {
    return;
  }
  const du::SmartPtr<zelk::View> view = gui->GetCurrentView();
  structure_utils::TreeFilterInfoBase& filter = state->GetFilter(view);
  if (FollowsNames(filter)) {
    SetRepopulateNeeded();
    return;
  }
  const bool isSorted = filter.GetSortColumn() != du::DualSymbol();
  gui->GetGuiInterface()->LoadSortingPrefs();
  if (isSorted) {
    SetRepopulateNeeded();
  }
}

void WorldTreeStateTreeObserver::OnInstanceExpanded(const du::SmartPtr<zelk::Instance>& instance)
{
  const Pin self(this);
  const LiveGuiTree gui(_GetGuiTree());
  const auto state = _GetLiveState();
  if (!state) {
    return;
  }
  if (GetRepopulateNeeded()) {
    gui->MarkTypeIconChanged(instance.Get());
    return;
  }
  SetChanged();
  _UpdateNameAndType(instance);
  if (_GetLiveState()) {
    gui->CheckVisibleIcon(instance);
    SetNodeNamesChanged();
  }
}

void WorldTreeStateTreeObserver::OnInstanceCollapsed(const du::SmartPtr<zelk::Instance>& instance)
{
  const Pin self(this);
  const LiveGuiTree gui(_GetGuiTree());
  const auto state = _GetLiveState();
  if (!state) {
    return;
  }
  gui->ForceVisibleIconHidden(instance);
  if (GetRepopulateNeeded()) {
    gui->MarkTypeIconChanged(instance.Get());
    return;
  }
  SetChanged();
  _UpdateNameAndType(instance);
  SetNodeNamesChanged();
}

void WorldTreeStateTreeObserver::OnInstanceProxyToNode(const du::SmartPtr<zelk::Instance>& instance)
{
  const Pin self(this);
  const LiveGuiTree gui(_GetGuiTree());
  const auto state = _GetLiveState();
  if (!state || GetRepopulateNeeded()) {
    return;
  }
  if (state->CheckAndUpdateNodeNameAndType(instance)) {
    SetChanged();
  }
}

void WorldTreeStateTreeObserver::OnInstanceAddViewable(const du::SmartPtr<zelk::Instance>& instance,
                                                       const du::SmartPtr<zelk::ViewableData>& viewable)
{
  _OnViewablesChanged(instance, viewable);
}

void WorldTreeStateTreeObserver::OnInstanceRemoveViewable(const du::SmartPtr<zelk::Instance>& instance,
                                                          const du::SmartPtr<zelk::ViewableData>& viewable)
{
  _OnViewablesChanged(instance, viewable);
}

void WorldTreeStateTreeObserver::OnPropertyGroupsLoaded()
{
  const Pin self(this);
  const LiveGuiTree gui(_GetGuiTree());
  if (const auto state = _GetLiveState(); state && gui->GetGuiInterface()->IsShowingAltPartNames()) {
    SetNodeNamesChanged();
  }
}

void WorldTreeStateTreeObserver::_Detach()
{
  const Pin self(this);
  treeState = nullptr;
  GuiTreeTreeObserverHelper::_Detach();
  tree.Reset();
}

du::SmartPtr<WorldTreeState> WorldTreeStateTreeObserver::_GetLiveState() const
{
  return _GetGuiTree() ? du::SmartPtr<WorldTreeState>(treeState) : nullptr;
}

void WorldTreeStateTreeObserver::_UpdateNameAndType(const du::SmartPtr<zelk::Instance>& instance)
{
  if (const auto state = _GetLiveState(); state && state->CheckAndUpdateNodeNameAndType(instance)) {
    SetRepopulateNeeded();
  }
}

void WorldTreeStateTreeObserver::_OnViewablesChanged(const du::SmartPtr<zelk::Instance>& instance,
                                                     const du::SmartPtr<zelk::ViewableData>& viewable)
{
  const Pin self(this);
  const LiveGuiTree gui(_GetGuiTree());
  const auto state = _GetLiveState();
  if (!state || !viewable || !viewable->viewable || GetRepopulateNeeded()) {
    return;
  }
  SetChanged();
  _UpdateNameAndType(instance);
}

}  // namespace guitree
