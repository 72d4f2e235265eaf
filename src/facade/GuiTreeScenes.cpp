// The logs of a GuiTree: one for each scene, and what feeds them.

#include <memory>
#include <utility>

#include "facade/Pin.h"
#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/TreeStateBase.h"
#include "sceneinfo/ShapeSceneObserver.h"

namespace guitree {
namespace {

/// What a scene's observer is registered for: the events of the shape instances.
constexpr du::Flags s_shapeInstanceEvents(0xb);

[[nodiscard]] bool HasChanges(const SceneInfoLog& log)
{
  return !log.GetVisibleChangeMap().empty() || !log.GetTypeIconChangeMap().empty();
}

}  // namespace

void GuiTree::OnSceneAdded(const du::SmartPtr<zelk::Scene>& scene)
{
  const Pin self(this);
  const du::SmartPtr<TreeStateBase> state = treeState;
  // A copy, since the host may let go of the argument meanwhile.
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  const du::SmartPtr<zelk::Scene> added(scene);
  if (!added || !state) {
    return;
  }
  const bool wasListening = static_cast<bool>(sceneManagerObserver);
  if (state->IsTooltipsUpdateNeeded(added)) {
    guiInterface->UpdateTooltips();
  }
  const bool isClosedMeanwhile = wasListening && !sceneManagerObserver;
  if (isClosedMeanwhile || !state->IsCompatibleShapeSceneType(added)) {
    return;
  }
  std::unique_ptr<SceneInfoLog> log(state->CreateSceneInfoLog());
  if (!log) {
    return;
  }
  log->Initialise(added);
  if (!sceneLogs.emplace(added, log.get()).second) {
    return;
  }
  SceneInfoLog& stored = *log.release();
  if (added->IsATypeOf(zelk::ShapeScene::CLASS_TYPE)) {
    _ListenToScene(stored, du::DynamicCast<zelk::ShapeScene>(added));
  }
}

void GuiTree::_ListenToScene(SceneInfoLog& log, const du::SmartPtr<zelk::ShapeScene>& scene)
{
  const auto observer = du::MakeSmart<ShapeSceneObserver>(this);
  log.shapeSceneObserver = observer;
  if (managedObject) {
    managedObject->ManageObject(observer);
  }
  observer->scene = scene;
  scene->RegisterObserver(*observer, s_shapeInstanceEvents, true);
}

void GuiTree::OnSceneRemoved(const du::SmartPtr<zelk::Scene>& scene)
{
  const Pin self(this);
  const du::SmartPtr<TreeStateBase> state = treeState;
  // A copy, since the host may let go of the argument meanwhile.
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  const du::SmartPtr<zelk::Scene> removed(scene);
  const auto entry = sceneLogs.find(removed);
  if (entry == sceneLogs.end()) {
    return;
  }
  std::unique_ptr<SceneInfoLog> log(entry->second);
  sceneLogs.erase(entry);
  // First of all, so that the end of an open run of the scene, which unregistering delivers, repaints nothing.
  if (currentLog == log.get()) {
    currentLog = nullptr;
  }
  _DetachSceneObserver(*log);
  log->Destroy();
  log.reset();
  if (!state) {
    return;
  }
  state->UpdateSceneInfoLog_OnSceneRemoved(removed);
  if (state->IsTooltipsUpdateNeeded(removed)) {
    guiInterface->UpdateTooltips();
  }
}

bool GuiTree::OnShapeInstanceCreate(const du::SmartPtr<zelk::ShapeScene>& scene,
                                    const du::SmartPtr<zelk::ShapeInstance>& instance)
{
  const Pin self(this);
  const du::SmartPtr<TreeStateBase> state = treeState;
  SceneInfoLog* log = GetLog(scene);
  return log && state && state->UpdateSceneInfoLog_OnShapeInstanceCreate(log, instance);
}

bool GuiTree::OnShapeInstanceRemove(const du::SmartPtr<zelk::ShapeScene>& scene,
                                    const du::SmartPtr<zelk::ShapeInstance>& instance)
{
  const Pin self(this);
  const du::SmartPtr<TreeStateBase> state = treeState;
  SceneInfoLog* log = GetLog(scene);
  return log && state && state->UpdateSceneInfoLog_OnShapeInstanceRemove(log, instance);
}

void GuiTree::OnShapeInstanceVisibility(const du::SmartPtr<zelk::ShapeScene>& scene,
                                        const du::SmartPtr<zelk::ShapeInstance>& instance, bool visible)
{
  const Pin self(this);
  const du::SmartPtr<TreeStateBase> state = treeState;
  SceneInfoLog* log = GetLog(scene);
  if (log && state) {
    state->UpdateSceneInfoLog_OnShapeInstanceVisibility(log, instance, visible);
  }
}

void GuiTree::OnShapeInstanceCompared(const du::SmartPtr<zelk::ShapeScene>& scene,
                                      const du::SmartPtr<zelk::ShapeInstance>& instance)
{
  const Pin self(this);
  const du::SmartPtr<TreeStateBase> state = treeState;
  SceneInfoLog* log = GetLog(scene);
  if (log && state) {
    state->UpdateSceneInfoLog_OnInstanceCompared(log, instance);
  }
}

void GuiTree::OnUnsyncInstances(bool unsynced)
{
  const Pin self(this);
  guiInterface->UnsyncInstances(unsynced);
}

void GuiTree::OnShapeSceneEndUpdate(const du::SmartPtr<zelk::ShapeScene>& scene, bool full)
{
  const Pin self(this);
  // A copy, since the host may let go of the argument meanwhile.
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  const du::SmartPtr<zelk::ShapeScene> delivered(scene);
  if (!currentLog || currentLog->GetShapeScene() != delivered) {
    return;
  }
  if (full) {
    _RepaintCurrentLog();
  } else {
    _DeliverChangesOfCurrentLog();
  }
  _ClearChangesOf(delivered);
}

void GuiTree::OnGuiTreeObserverEndUpdate(bool repopulate, bool nodeNamesChanged)
{
  const Pin self(this);
  if (repopulate) {
    if (const du::SmartPtr<TreeStateBase> state = treeState) {
      state->PopulateTree(true);
    }
    _RepaintCurrentLog();
  } else {
    guiInterface->ContentHasChanged();
    _DeliverChangesOfCurrentLog();
    if (nodeNamesChanged) {
      guiInterface->UpdateNodeNames();
    }
    guiInterface->UpdateTreeTable();
  }
  if (currentLog) {
    currentLog->ClearVisibleChangeMap();
    currentLog->ClearTypeIconChangeMap();
  }
}

void GuiTree::ApplyTreeUpdate()
{
  const Pin self(this);
  const du::SmartPtr<TreeStateBase> state = treeState;
  if (!state) {
    return;
  }
  const du::SmartPtr<zelk::View> view = currentView;
  if (state->GetFilter(view).IsFiltering(false)) {
    state->PopulateTree(true);
    return;
  }
  guiInterface->UpdateMarkedInsts(GetCurShapeScene());
}

void GuiTree::CheckVisibleIcon(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  for (const auto& [scene, log] : sceneLogs) {
    log->SetVisible(instance.Get(), log->IsCompVisible(instance), true);
  }
}

void GuiTree::ForceVisibleIconHidden(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  for (const auto& [scene, log] : sceneLogs) {
    log->ForceVisibleToHidden(instance.Get());
  }
}

void GuiTree::MarkTypeIconChanged(const zelk::BaseInstance* instance)
{
  for (const auto& [scene, log] : sceneLogs) {
    log->MarkTypeIconChanged(instance);
  }
}

void GuiTree::RemoveFromLogs(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  for (const auto& [scene, log] : sceneLogs) {
    log->RemoveFromLog(instance.Get());
  }
}

void GuiTree::NoteChildAdded(const du::SmartPtr<zelk::BaseInstance>& instance,
                             const du::SmartPtr<zelk::BaseInstance>& parent)
{
  if (!instance || !parent) {
    return;
  }
  for (const auto& [scene, log] : sceneLogs) {
    log->_NoteChildAdded(*parent, *instance);
  }
}

SceneInfoLog* GuiTree::GetLog(const du::SmartPtr<zelk::ShapeScene>& scene) const
{
  return _FindLog(scene);
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

SceneInfoLog* GuiTree::_FindLog(const du::SmartPtr<zelk::Scene>& scene) const
{
  const auto entry = sceneLogs.find(scene);
  return entry != sceneLogs.end() ? entry->second : nullptr;
}

void GuiTree::_DetachAllLogs()
{
  while (!sceneLogs.empty()) {
    SceneInfoLog* log = sceneLogs.begin()->second;
    sceneLogs.erase(sceneLogs.begin());
    _DetachSceneObserver(*log);
    // The log itself is left to the removal of its scene, which does not come any more: its memory stays taken.
    log->Destroy();
  }
}

void GuiTree::_DetachSceneObserver(SceneInfoLog& log)
{
  const du::SmartPtr<ShapeSceneObserver> observer = log.shapeSceneObserver;
  if (!observer) {
    return;
  }
  if (observer->scene) {
    const du::SmartPtr<zelk::ShapeScene> scene = observer->scene;
    scene->UnregisterObserver(*observer);
  }
  observer->guiTree = nullptr;
  observer->scene.Reset();
}

void GuiTree::_RepaintCurrentLog()
{
  if (currentLog) {
    guiInterface->UpdateVisAndTypeIcons(&currentLog->GetVisibleMap(), &currentLog->GetTypeIconMap());
  }
}

void GuiTree::_DeliverChangesOfCurrentLog()
{
  if (currentLog && HasChanges(*currentLog)) {
    guiInterface->UpdateVisAndTypeIconChanges(&currentLog->GetVisibleMap(), &currentLog->GetVisibleChangeMap(),
                                              &currentLog->GetTypeIconMap(), &currentLog->GetTypeIconChangeMap());
  }
}

void GuiTree::_ClearChangesOf(const du::SmartPtr<zelk::Scene>& scene)
{
  // Looked up anew: the host was told in between, and may have removed the scene or shown another one.
  if (SceneInfoLog* log = _FindLog(scene)) {
    log->ClearVisibleChangeMap();
    log->ClearTypeIconChangeMap();
  }
}

}  // namespace guitree
