// How a GuiTree follows the active view.

#include "facade/Pin.h"
#include "facade/ShapeViewObserver.h"
#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/TreeStateBase.h"
#include "zelk/ClashReportView.h"
#include "zelk/ShapeView.h"

namespace guitree {

void GuiTree::OnViewRemoved(const du::SmartPtr<zelk::View>& view)
{
  if (view == currentView) {
    OnActiveViewChanged(nullptr);
  }
}

void GuiTree::OnActiveViewChanged(const du::SmartPtr<zelk::View>& view)
{
  const Pin self(this);
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
  if (_FollowTreeOf(newView)) {
    reload = true;
  }
  _ReleaseShapeViewObserver();
  state->OnClearSelection();
  const du::SmartPtr<zelk::View> oldView = currentView;
  const structure_utils::TreeFilterInfoBase& oldFilter = state->GetFilter(oldView);
  const bool wasClashReport = oldView && oldView->IsATypeOf(zelk::ClashReportView::CLASS_TYPE);
  currentView = newView;
  _SetupSelMgr(false);
  structure_utils::TreeFilterInfoBase& newFilter = state->GetFilter(newView);
  guiInterface->CurrentViewChanged();
  guiInterface->UpdateFilterUI();
  const bool hadLog = currentLog != nullptr;
  currentLog = nullptr;
  du::SmartPtr<zelk::Scene> scene;
  // The member, since a host may have changed the view again from inside one of the two calls.
  if (const du::SmartPtr<zelk::View> followed = currentView) {
    followed->GetScene(scene);
    _FollowSceneOf(followed, scene);
    assocHlightColor = _ReadAssocHlightColor().GetAsHexUI();
    if (treeState) {
      treeState->OnAssocHlightColorChange();
    }
  }
  guiInterface->ViewChangeUpdaeFilterUI();
  const bool isOtherFilter = &oldFilter != &newFilter && (oldFilter.IsFiltering(false) || newFilter.IsFiltering(false));
  if (reload || newFilter.IsFilteringUsingView() || isOtherFilter) {
    _RefillForView();
  } else {
    _RefreshForView(newView, scene, hadLog, wasClashReport);
  }
}

bool GuiTree::_FollowTreeOf(const du::SmartPtr<zelk::View>& view)
{
  const du::SmartPtr<TreeStateBase> state = treeState;
  const du::SmartPtr<zelk::BaseTree> tree = state->Initialise_GetZelkTree(view);
  if (tree == baseTree || !state->IsCompatibleViewType(view)) {
    return false;
  }
  Reset();
  baseTree = state->Initialise_GetZelkTree(view);
  state->CreateAndRegisterTreeObserver();
  return true;
}

void GuiTree::_FollowSceneOf(const du::SmartPtr<zelk::View>& view, const du::SmartPtr<zelk::Scene>& scene)
{
  // A view without a scene is no reason not to listen to it.
  if (scene && treeState && !treeState->IsCompatibleShapeSceneType(scene)) {
    return;
  }
  _ListenToView(view);
  currentLog = _FindLog(scene);
}

void GuiTree::_ListenToView(const du::SmartPtr<zelk::View>& view)
{
  // A view change from inside this one may have left its own observer.
  _ReleaseShapeViewObserver();
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

void GuiTree::_RefillForView()
{
  guiInterface->CheckListTypeCorrect();
  guiInterface->LoadSortingPrefs();
  if (treeState) {
    treeState->PopulateTree(false);
  }
  guiInterface->UpdateStatusBar();
  _RepaintCurrentLog();
}

void GuiTree::_RefreshForView(const du::SmartPtr<zelk::View>& view, const du::SmartPtr<zelk::Scene>& scene, bool hadLog,
                              bool wasClashReport)
{
  guiInterface->UpdateStatusBar();
  if (hadLog || currentLog || (treeState && treeState->GetNeedsUpdate(scene))) {
    if (currentLog) {
      _RepaintCurrentLog();
      _ClearCurrentChanges();
    } else {
      guiInterface->UpdateVisAndTypeIcons(nullptr, nullptr);
    }
  }
  guiInterface->RefreshSelection();
  if (treeState) {
    treeState->RefreshAssocHlights();
  }
  guiInterface->PostOnActiveViewChanged(view, wasClashReport);
}

void GuiTree::OnUpdateAssocHlightColor()
{
  if (!currentView) {
    return;
  }
  const Pin self(this);
  const dg::Color color = _ReadAssocHlightColor();
  const auto toByte = [](float component) { return static_cast<unsigned int>(component * 255.0F); };
  // Blue, green, red below a byte of 1: hosts compare the value with itself, and this is the form they know.
  assocHlightColor = ((toByte(color.blue) | 0x100U) << 8 | toByte(color.green)) << 8 | toByte(color.red);
  if (treeState) {
    treeState->OnAssocHlightColorChange();
  }
}

dg::Color GuiTree::_ReadAssocHlightColor() const
{
  bool ignoredSwitch = false;
  dg::Color ignoredColor(0.0F, 0.0F, 0.0F, 1.0F);
  dg::Color color(0.0F, 0.0F, 0.0F, 1.0F);
  currentView->GetHighlightSettings(ignoredSwitch, ignoredSwitch, ignoredSwitch, ignoredColor, ignoredColor, color);
  return color;
}

}  // namespace guitree
