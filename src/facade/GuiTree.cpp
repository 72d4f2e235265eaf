#include "guitree/GuiTree.h"

#include <utility>

#include "facade/AssocHlightObserver.h"
#include "facade/MySceneManagerObserver.h"
#include "facade/Pin.h"
#include "facade/SelectionObserver.h"
#include "facade/ShapeViewObserver.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/TreeController.h"
#include "guitree/TreeStateBase.h"
#include "sceneinfo/ShapeSceneObserver.h"

namespace guitree {

GuiTree::GuiTree(const du::SmartPtr<dom::ManagedObject>& manager)
    : treeController(new TreeController(this)),
      managedObject(manager),
      m_liveness(std::make_shared<GuiTree*>(this)),
      m_populationCounter(std::make_shared<unsigned int>(0))
{
}

GuiTree::GuiTree(const GuiTree& other)
    : du::RefCounted(other),
      currentLog(other.currentLog),
      baseTree(other.baseTree),
      world(other.world),
      treeState(other.treeState),
      guiInterface(other.guiInterface),
      currentView(other.currentView),
      sceneLogs(other.sceneLogs),
      treeController(other.treeController),
      shapeViewObserver(other.shapeViewObserver),
      managedObject(other.managedObject),
      assocHlightColor(other.assocHlightColor),
      selectionManager(other.selectionManager),
      selectionObserver(other.selectionObserver),
      assocHlightObserver(other.assocHlightObserver),
      sceneManagerObserver(other.sceneManagerObserver),
      m_liveness(std::make_shared<GuiTree*>(this)),
      m_populationCounter(std::make_shared<unsigned int>(0))
{
}

GuiTree& GuiTree::operator=(const GuiTree& other)
{
  if (this == &other) {
    return *this;
  }
  currentLog = other.currentLog;
  baseTree = other.baseTree;
  world = other.world;
  treeState = other.treeState;
  guiInterface = other.guiInterface;
  currentView = other.currentView;
  sceneLogs = other.sceneLogs;
  treeController = other.treeController;
  shapeViewObserver = other.shapeViewObserver;
  managedObject = other.managedObject;
  assocHlightColor = other.assocHlightColor;
  selectionManager = other.selectionManager;
  selectionObserver = other.selectionObserver;
  assocHlightObserver = other.assocHlightObserver;
  sceneManagerObserver = other.sceneManagerObserver;
  return *this;
}

GuiTree::~GuiTree()
{
  // From here on those that outlive this object, tree states above all, leave it alone.
  *m_liveness = nullptr;
  // Nobody else closes them any more.
  for (; m_openBrackets > 0 && guiInterface; --m_openBrackets) {
    guiInterface->FinishTreeUpdate();
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
      log->shapeSceneObserver->scene.Reset();
    }
    log->Destroy();
  }
  selectionManager.Reset();
  managedObject.Reset();
  if (shapeViewObserver) {
    shapeViewObserver->guiTree = nullptr;
    shapeViewObserver->view.Reset();
    shapeViewObserver.Reset();
  }
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
  const du::SmartPtr<TreeStateBase> state = treeState;
  return state && state->OnAssocHlightChanged(clearFirst, removed, added);
}

void GuiTree::SetTreeState(du::SmartPtr<TreeStateBase> state)
{
  treeState.Swap(state);
}

void GuiTree::Initialise(const du::SmartPtr<zelk::World>& newWorld)
{
  const Pin self(this);
  world = newWorld;
  du::SmartPtr<TreeStateBase> state = treeState;
  if (!world || !state) {
    return;
  }
  baseTree = state->Initialise_GetZelkTree(nullptr);
  _SetupSelMgr(false);
  guiInterface->InitialiseBeforePopulate();
  // Taken anew after each of the two calls of the host, which may put another state in place.
  state = treeState;
  if (state) {
    state->CreateAndRegisterTreeObserver();
  }
  _ReleaseSceneManagerObserver();
  const auto observer = du::MakeSmart<MySceneManagerObserver>(this);
  sceneManagerObserver = observer;
  guiInterface->SetSceneManagerObserver(observer);
  // A view that the host reported from inside that call is taken back: the first one comes with its next report.
  currentView.Reset();
  _SetupSelMgr(false);
  OnUpdateAssocHlightColor();
  state = treeState;
  if (state) {
    state->PopulateTree(false);
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
  const du::SmartPtr<TreeStateBase> state = treeState;
  if (state) {
    state->Reset();
  }
  _ReleaseShapeViewObserver();
  if (state) {
    state->DeregisterTreeObserver();
    // That ends an open run of events, which may have refilled the rows or begun to.
    if (state->IsBusy() || !state->GetNotFilteredSet().empty()) {
      state->Reset();
    }
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

}  // namespace guitree
