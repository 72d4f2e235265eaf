// How a GuiTree follows the active view.

#include <algorithm>

#include "facade/Pin.h"
#include "facade/ShapeViewObserver.h"
#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/TreeStateBase.h"
#include "zelk/ClashReportView.h"
#include "zelk/ShapeView.h"

namespace guitree {
namespace {

[[nodiscard]] dg::Color ReadAssocHlightColor(zelk::View& view)
{
  bool ignoredSwitch = false;
  dg::Color ignoredColor(0.0F, 0.0F, 0.0F, 1.0F);
  dg::Color color(0.0F, 0.0F, 0.0F, 1.0F);
  view.GetHighlightSettings(ignoredSwitch, ignoredSwitch, ignoredSwitch, ignoredColor, ignoredColor, color);
  return color;
}

[[nodiscard]] unsigned int CutToByte(float component)
{
  // Written so that a component that is no number reads as 0.
  const float inRange = component > 0.0F ? std::min(component, 1.0F) : 0.0F;
  return static_cast<unsigned int>(inRange * 255.0F);
}

}  // namespace

void GuiTree::OnViewRemoved(const du::SmartPtr<zelk::View>& view)
{
  if (view == currentView) {
    OnActiveViewChanged(nullptr);
  }
}

void GuiTree::OnActiveViewChanged(const du::SmartPtr<zelk::View>& view)
{
  const Pin self(this);
  // The state that is current when the change begins sees it to its end.
  const du::SmartPtr<TreeStateBase> state = treeState;
  du::SmartPtr<zelk::View> newView = view;
  if (!state || !guiInterface->IsValidView(newView)) {
    return;
  }
  state->OverrideActiveViewAfterChange(newView);
  if (newView == currentView) {
    return;
  }
  bool reload = state->ReloadOnViewChange(newView);
  if (_FollowTreeOf(newView, *state)) {
    reload = true;
  }
  _ReleaseShapeViewObserver();
  state->OnClearSelection();
  const du::SmartPtr<zelk::View> oldView = currentView;
  const structure_utils::TreeFilterInfoBase& oldFilter = state->GetFilter(oldView);
  const bool wasClashReport = oldView && oldView->IsATypeOf(zelk::ClashReportView::CLASS_TYPE);
  currentView = newView;
  _SetupSelMgr(false);
  const du::SmartPtr<zelk::View> boundView = currentView;
  structure_utils::TreeFilterInfoBase& newFilter = state->GetFilter(boundView);
  guiInterface->CurrentViewChanged();
  guiInterface->UpdateFilterUI();
  const bool hadLog = currentLog != nullptr;
  currentLog = nullptr;
  const du::SmartPtr<zelk::Scene> scene = _FollowSceneOfCurrentView(*state);
  guiInterface->ViewChangeUpdaeFilterUI();
  const bool isOtherFilter = &oldFilter != &newFilter && (oldFilter.IsFiltering(false) || newFilter.IsFiltering(false));
  if (reload || newFilter.IsFilteringUsingView() || isOtherFilter) {
    _RefillForView(*state);
  } else {
    _RefreshForView(*state, newView, scene, hadLog, wasClashReport);
  }
}

bool GuiTree::_FollowTreeOf(const du::SmartPtr<zelk::View>& view, TreeStateBase& state)
{
  const du::SmartPtr<zelk::BaseTree> tree = state.Initialise_GetZelkTree(view);
  if (tree == baseTree || !state.IsCompatibleViewType(view)) {
    return false;
  }
  Reset();
  baseTree = state.Initialise_GetZelkTree(view);
  state.CreateAndRegisterTreeObserver();
  return true;
}

du::SmartPtr<zelk::Scene> GuiTree::_FollowSceneOfCurrentView(TreeStateBase& state)
{
  // A host may have changed the view again from inside this change: that one's observer goes as well.
  _ReleaseShapeViewObserver();
  du::SmartPtr<zelk::Scene> scene;
  const du::SmartPtr<zelk::View> view = currentView;
  if (!view) {
    return scene;
  }
  view->GetScene(scene);
  // A view without a scene is no reason not to listen to it.
  if (!scene || state.IsCompatibleShapeSceneType(scene)) {
    _ListenToView(view);
    currentLog = _FindLog(scene);
  }
  assocHlightColor = ReadAssocHlightColor(*view).GetAsHexUI();
  state.OnAssocHlightColorChange();
  return scene;
}

void GuiTree::_ListenToView(const du::SmartPtr<zelk::View>& view)
{
  if (!view->IsATypeOf(zelk::ShapeView::CLASS_TYPE)) {
    return;
  }
  const auto shapeView = du::DynamicCast<zelk::ShapeView>(view);
  const auto observer = du::MakeSmart<ShapeViewObserver>(this);
  shapeViewObserver = observer;
  observer->view = shapeView;
  if (managedObject) {
    managedObject->ManageObject(observer);
  }
  shapeView->RegisterObserver(*observer, true);
}

void GuiTree::_ReleaseShapeViewObserver()
{
  const du::SmartPtr<ShapeViewObserver> observer = shapeViewObserver;
  if (!observer) {
    return;
  }
  if (const du::SmartPtr<zelk::ShapeView> view = observer->view) {
    view->UnregisterObserver(*observer);
  }
  observer->guiTree = nullptr;
  observer->view.Reset();
  if (shapeViewObserver == observer) {
    shapeViewObserver.Reset();
  }
}

void GuiTree::_RefillForView(TreeStateBase& state)
{
  guiInterface->CheckListTypeCorrect();
  guiInterface->LoadSortingPrefs();
  state.PopulateTree(false);
  guiInterface->UpdateStatusBar();
  _RepaintCurrentLog();
}

void GuiTree::_RefreshForView(TreeStateBase& state, const du::SmartPtr<zelk::View>& view,
                              const du::SmartPtr<zelk::Scene>& scene, bool hadLog, bool wasClashReport)
{
  guiInterface->UpdateStatusBar();
  if (currentLog) {
    const du::SmartPtr<zelk::Scene> delivered = currentLog->GetScene();
    _RepaintCurrentLog();
    _ClearChangesOf(delivered);
  } else if (hadLog || state.GetNeedsUpdate(scene)) {
    guiInterface->UpdateVisAndTypeIcons(nullptr, nullptr);
  }
  guiInterface->RefreshSelection();
  state.RefreshAssocHlights();
  guiInterface->PostOnActiveViewChanged(view, wasClashReport);
}

void GuiTree::OnUpdateAssocHlightColor()
{
  const du::SmartPtr<zelk::View> view = currentView;
  if (!view) {
    return;
  }
  const Pin self(this);
  const dg::Color color = ReadAssocHlightColor(*view);
  // Blue, green, red below a byte of 1: hosts compare the value with itself, and this is the form they know.
  assocHlightColor = ((CutToByte(color.blue) | 0x100U) << 8 | CutToByte(color.green)) << 8 | CutToByte(color.red);
  if (const du::SmartPtr<TreeStateBase> state = treeState) {
    state->OnAssocHlightColorChange();
  }
}

}  // namespace guitree
