#include "guitree/GuiTree.h"

#include <utility>

#include "facade/AssocHlightObserver.h"
#include "facade/MySceneManagerObserver.h"
#include "facade/Pin.h"
#include "facade/SelectionObserver.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/TreeController.h"
#include "guitree/TreeStateBase.h"
#include "sceneinfo/ShapeSceneObserver.h"

namespace guitree {

GuiTree::GuiTree(const du::SmartPtr<dom::ManagedObject>& manager)
    : managedObject(manager), liveness(std::make_shared<GuiTree*>(this))
{
  treeController = new TreeController(this);
}

GuiTree::GuiTree(const GuiTree&) = default;

GuiTree& GuiTree::operator=(const GuiTree&) = default;

GuiTree::~GuiTree()
{
  // From here on those that outlive this object, tree states above all, leave it alone.
  if (*liveness == this) {
    *liveness = nullptr;
  }
  delete std::exchange(treeController, nullptr);
  _ReleaseSceneManagerObserver();
  if (assocHlightObserver) {
    assocHlightObserver->guiTree = nullptr;
    assocHlightObserver.Reset();
  }
  if (selectionObserver) {
    selectionObserver->guiTree = nullptr;
    selectionObserver.Reset();
  }
  for (const auto& [scene, log] : sceneLogs) {
    if (log->shapeSceneObserver) {
      log->shapeSceneObserver->guiTree = nullptr;
    }
  }
  selectionManager.Reset();
  managedObject.Reset();
  sceneLogs.clear();
  currentView.Reset();
  treeState.Reset();
  world.Reset();
  baseTree.Reset();
}

bool GuiTree::ZeroReferenceCountHook() const
{
  return true;
}

bool GuiTree::OnAssocHlightChanged(unsigned int /*list*/, bool clearFirst,
                                   const std::vector<du::SmartPtr<zelk::SelectionItem>>& removed,
                                   const std::vector<du::SmartPtr<zelk::SelectionItem>>& added)
{
  const Pin self(this);
  return treeState && treeState->OnAssocHlightChanged(clearFirst, removed, added);
}

void GuiTree::SetTreeState(du::SmartPtr<TreeStateBase> state)
{
  treeState.Swap(state);
}

void GuiTree::Initialise(const du::SmartPtr<zelk::World>& newWorld)
{
  const Pin self(this);
  world = newWorld;
  if (!world || !treeState) {
    return;
  }
  const du::SmartPtr<zelk::BaseTree> tree = treeState->Initialise_GetZelkTree(nullptr);
  baseTree = tree;
  _SetupSelMgr(false);
  guiInterface->InitialiseBeforePopulate();
  if (treeState) {
    treeState->CreateAndRegisterTreeObserver();
  }
  _ReleaseSceneManagerObserver();
  const auto observer = du::MakeSmart<MySceneManagerObserver>(this);
  sceneManagerObserver = observer;
  guiInterface->SetSceneManagerObserver(observer);
  // What the host reported from inside that call is taken back: the first view comes with its next report.
  currentView.Reset();
  _SetupSelMgr(false);
  OnUpdateAssocHlightColor();
  if (treeState) {
    treeState->PopulateTree(false);
  }
  guiInterface->UpdateFilterUI();
  guiInterface->UpdateStatusBar();
}

void GuiTree::Close()
{
  const Pin self(this);
  _ReleaseSceneManagerObserver();
  _DetachAllLogs();
  currentLog = nullptr;
}

void GuiTree::Reset()
{
  const Pin self(this);
  if (treeState) {
    treeState->Reset();
  }
  if (treeState) {
    treeState->DeregisterTreeObserver();
  }
  baseTree.Reset();
  _TearDownSelMgr();
}

du::SmartPtr<FilteredTree> GuiTree::GetFilteredTree() const
{
  return treeController ? treeController->GetFilteredTree() : nullptr;
}

du::SmartPtr<zelk::ShapeScene> GuiTree::GetCurShapeScene() const
{
  return currentLog ? currentLog->GetShapeScene() : nullptr;
}

SceneInfoLog* GuiTree::GetLog(const du::SmartPtr<zelk::ShapeScene>& scene) const
{
  const auto entry = sceneLogs.find(scene);
  return entry != sceneLogs.end() ? entry->second : nullptr;
}

void GuiTree::GetLogs(std::vector<SceneInfoLog*>& out)
{
  if (sceneLogs.empty()) {
    return;
  }
  out.clear();
  out.reserve(sceneLogs.size());
  for (const auto& [scene, log] : sceneLogs) {
    out.push_back(log);
  }
}

void GuiTree::MarkTypeIconChanged(const zelk::BaseInstance* instance)
{
  for (const auto& [scene, log] : sceneLogs) {
    log->MarkTypeIconChanged(instance);
  }
}

void GuiTree::OnUpdateAssocHlightColor()
{
  if (!currentView) {
    return;
  }
  const Pin self(this);
  bool ignoredSwitch = false;
  dg::Color ignoredColor(0.0F, 0.0F, 0.0F, 1.0F);
  dg::Color color(0.0F, 0.0F, 0.0F, 1.0F);
  currentView->GetHighlightSettings(ignoredSwitch, ignoredSwitch, ignoredSwitch, ignoredColor, ignoredColor, color);
  const auto toByte = [](float component) { return static_cast<unsigned int>(component * 255.0F); };
  // Blue, green, red below a byte of 1: hosts compare the value with itself, and this is the form they know.
  assocHlightColor = ((toByte(color.blue) | 0x100U) << 8 | toByte(color.green)) << 8 | toByte(color.red);
  if (treeState) {
    treeState->OnAssocHlightColorChange();
  }
}

void GuiTree::_SetupSelMgr(bool tearDownOnly)
{
  _TearDownSelMgr();
  if (tearDownOnly) {
    return;
  }
  if (currentView) {
    du::SmartPtr<zelk::Scene> scene;
    currentView->GetScene(scene);
    if (scene) {
      scene->GetSelectionManager(selectionManager);
    }
  } else if (world) {
    selectionManager = world->selectionManager;
  }
  if (!selectionManager) {
    return;
  }
  selectionObserver = du::MakeSmart<SelectionObserver>(this);
  assocHlightObserver = du::MakeSmart<AssocHlightObserver>(this);
  if (managedObject) {
    managedObject->ManageObject(selectionObserver);
    managedObject->ManageObject(assocHlightObserver);
  }
  selectionManager->RegisterObserver(zelk::SelectionManager::SelectionList, *selectionObserver);
  selectionManager->RegisterObserver(zelk::SelectionManager::AssocHlightList, *assocHlightObserver);
}

void GuiTree::_TearDownSelMgr()
{
  // Unregistering inside an open selection update delivers its end, and a host may bind anew from there.
  while (selectionManager) {
    const auto manager = selectionManager;
    const auto selection = selectionObserver;
    const auto assocHlight = assocHlightObserver;
    manager->UnregisterObserver(zelk::SelectionManager::SelectionList, *selection);
    manager->UnregisterObserver(zelk::SelectionManager::AssocHlightList, *assocHlight);
    selection->guiTree = nullptr;
    assocHlight->guiTree = nullptr;
    if (selectionObserver == selection) {
      selectionManager.Reset();
      selectionObserver.Reset();
      assocHlightObserver.Reset();
    }
  }
}

void GuiTree::_ReleaseSceneManagerObserver()
{
  if (sceneManagerObserver) {
    sceneManagerObserver->guiTree = nullptr;
    sceneManagerObserver.Reset();
  }
}

void GuiTree::_DetachAllLogs()
{
  while (!sceneLogs.empty()) {
    SceneInfoLog* log = sceneLogs.begin()->second;
    sceneLogs.erase(sceneLogs.begin());
    if (const auto observer = log->shapeSceneObserver) {
      if (observer->scene) {
        observer->scene->UnregisterObserver(*observer);
      }
      observer->guiTree = nullptr;
      observer->scene.Reset();
    }
    // The log itself is left to its scene's removal, which does not come any more: hosts and derived states may hold
    // it.
    log->Destroy();
  }
}

}  // namespace guitree
