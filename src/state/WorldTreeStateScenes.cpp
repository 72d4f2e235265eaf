// How a world tree state accounts for the events of a scene, and for the loads that they cause.

#include <vector>

#include "facade/Pin.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/WorldTreeState.h"
#include "sceneinfo/WTShapeLoaderEvent.h"
#include "zelk/World.h"
#include "zelloader/Loader.h"

namespace guitree {
namespace {

/// What `GetShapeDataStatus` is asked about: the geometry that is drawn.
constexpr unsigned short s_geometry = 1;

[[nodiscard]] du::SmartPtr<zelk::Instance> GetInstanceOf(const zelk::ShapeInstance& shapeInstance)
{
  du::SmartPtr<zelk::Instance> instance;
  shapeInstance.GetInstance(instance);
  return instance;
}

[[nodiscard]] ECompVisible GetPlainVisibility(const zelk::ShapeInstance& shapeInstance, bool isShown)
{
  if (!isShown) {
    return CompHidden;
  }
  return shapeInstance.IsThumbnail() ? CompThumbnailVisible : CompVisible;
}

void RecordLoaded(SceneInfoLog& log, zelk::Instance* instance, const zelk::ShapeInstance& shapeInstance)
{
  log.SetLoaded(instance, true);
  log.SetVisible(instance, GetPlainVisibility(shapeInstance, shapeInstance.IsVisible()), true);
}

/// A shape of the kernel's native format that has not failed there is no failure, whatever its status says.
[[nodiscard]] bool HasReallyFailed(const zelk::ShapeInstance& shapeInstance)
{
  du::SmartPtr<zelk::Shape> shape;
  shapeInstance.GetShape(shape);
  return !shape || !shape->IsFromTrask() || shape->IsFailedFromTrask();
}

[[nodiscard]] bool LoadsThumbnails()
{
  static const du::Symbol s_key("Model Viewer/show_3d_thumbnails");
  bool show3d = false;
  const du::SmartPtr<zelk::World> world = zelk::World::GetWorld();
  if (const auto preferences = world ? world->GetPreferences() : nullptr) {
    preferences->GetBool(s_key, show3d, nullptr);
  }
  return show3d;
}

}  // namespace

bool WorldTreeState::UpdateSceneInfoLog_OnSceneRemoved(const du::SmartPtr<zelk::Scene>& scene)
{
  std::vector<du::SmartPtr<zelk::ShapeInstance>> loadsOfScene;
  for (const auto& [shapeInstance, event] : pendingLoads) {
    if (du::SmartPtr<zelk::Scene>(event->shapeScene) == scene) {
      loadsOfScene.push_back(shapeInstance);
    }
  }
  for (const auto& shapeInstance : loadsOfScene) {
    _CancelLoad(shapeInstance);
  }
  return false;
}

bool WorldTreeState::UpdateSceneInfoLog_OnShapeInstanceCreate(SceneInfoLog* log,
                                                              const du::SmartPtr<zelk::ShapeInstance>& shapeInstance)
{
  const du::SmartPtr<zelk::Instance> instance = GetInstanceOf(*shapeInstance);
  if (!instance) {
    return false;
  }
  switch (shapeInstance->GetShapeDataStatus(s_geometry)) {
    case zelk::ShapeDataLoaded:
      RecordLoaded(*log, instance.Get(), *shapeInstance);
      return false;
    case zelk::ShapeDataNone:
    case zelk::ShapeDataPartial:
      return _RequestLoad(*log, shapeInstance, instance);
    case zelk::ShapeDataFailed:
      if (!HasReallyFailed(*shapeInstance)) {
        return false;
      }
      log->MarkTypeIconChanged(instance.Get());
      return true;
    default:
      return false;
  }
}

bool WorldTreeState::_RequestLoad(const SceneInfoLog& log, const du::SmartPtr<zelk::ShapeInstance>& shapeInstance,
                                  const du::SmartPtr<zelk::Instance>& instance)
{
  du::SmartPtr<zelk::Shape> shape;
  shapeInstance->GetShape(shape);
  if (!shape || !_HasGuiTree()) {
    return false;
  }
  const auto event = du::MakeSmart<WTShapeLoaderEvent>(*this, shapeInstance, log.GetShapeScene());
  pendingLoads.insert({shapeInstance, event.Get()});
  if (const auto& manager = GetGuiTree().GetManagedObject()) {
    manager->ManageObject(event);
  }
  du::SmartPtr<zelk::Anchor> anchor;
  instance->GetAnchor(anchor);
  const bool isThumbnailShown = LoadsThumbnails();
  if (shapeInstance->IsThumbnail() && !isThumbnailShown) {
    event->Complete();
    return true;
  }
  if (const du::SmartPtr<zelloader::Loader> loader = zelloader::Loader::GetLoader()) {
    loader->LoadShape(shape, du::Flags(zelloader::Loader::LoadGeometry), event.Get(), anchor.Get());
  } else {
    // Nobody else would ever end the wave.
    event->Complete();
  }
  return false;
}

bool WorldTreeState::UpdateSceneInfoLog_OnShapeInstanceRemove(SceneInfoLog* log,
                                                              const du::SmartPtr<zelk::ShapeInstance>& shapeInstance)
{
  if (!_HasGuiTree()) {
    return false;
  }
  const Pins pins(this, &GetGuiTree());
  _CancelLoad(shapeInstance);
  const du::SmartPtr<zelk::Instance> instance = GetInstanceOf(*shapeInstance);
  if (!instance) {
    return false;
  }
  log->SetLoaded(instance.Get(), false);
  log->SetVisible(instance.Get(), CompHidden, true);
  const du::SmartPtr<zelk::ShapeScene> scene = log->GetShapeScene();
  const bool isLogOfPanel = GetLog(scene) == log;
  if (!GetGuiTree().GetGuiInterface()->HasTypeIconChangedOnShapeInstanceRemove(log, shapeInstance)) {
    return false;
  }
  // The host may have removed the scene, and with it the log.
  SceneInfoLog* livingLog = isLogOfPanel ? GetLog(scene) : log;
  if (livingLog) {
    livingLog->MarkTypeIconChanged(instance.Get());
  }
  return true;
}

void WorldTreeState::UpdateSceneInfoLog_OnShapeInstanceVisibility(
    SceneInfoLog* log, const du::SmartPtr<zelk::ShapeInstance>& shapeInstance, bool visible)
{
  const du::SmartPtr<zelk::Instance> instance = GetInstanceOf(*shapeInstance);
  if (!instance) {
    return;
  }
  const bool isShown = visible && shapeInstance->GetShapeDataStatus(s_geometry) == zelk::ShapeDataLoaded;
  log->SetVisible(instance.Get(), GetPlainVisibility(*shapeInstance, isShown), true);
}

void WorldTreeState::UpdateSceneInfoLog_OnInstanceCompared(SceneInfoLog* log,
                                                           const du::SmartPtr<zelk::ShapeInstance>& shapeInstance)
{
  if (const du::SmartPtr<zelk::Instance> instance = GetInstanceOf(*shapeInstance)) {
    log->SetCompared(instance.Get(), shapeInstance->IsCompared(), shapeInstance->IsComparedFirstItem());
  }
}

void WorldTreeState::WTShapeLoaderEventComplete(WTShapeLoaderEvent* event)
{
  const Pin self(this);
  m_liveLoads.erase(event);
  finishedLoads.insert({event->shapeInstance, event->shapeScene});
  pendingLoads.erase(event->shapeInstance);
  if (!pendingLoads.empty()) {
    return;
  }
  _RecordWave();
  stopwatch.Stop();
}

void WorldTreeState::_RecordWave()
{
  const SceneInfoLog* shownLog = GetCurInfoLog();
  bool hasChanged = false;
  SceneInfoLog* log = nullptr;
  du::SmartPtr<zelk::ShapeScene> previousScene;
  for (const auto& [shapeInstance, scene] : finishedLoads) {
    if (scene != previousScene) {
      previousScene = scene;
      log = GetLog(scene);
    }
    if (log && _RecordFinishedLoad(*log, shapeInstance) && log == shownLog) {
      hasChanged = true;
    }
  }
  finishedLoads.clear();
  if (hasChanged) {
    _DeliverWave();
  }
}

bool WorldTreeState::_RecordFinishedLoad(SceneInfoLog& log, const du::SmartPtr<zelk::ShapeInstance>& shapeInstance)
{
  const du::SmartPtr<zelk::Instance> instance = GetInstanceOf(*shapeInstance);
  if (!instance) {
    return false;
  }
  switch (shapeInstance->GetShapeDataStatus(s_geometry)) {
    case zelk::ShapeDataPartial:
    case zelk::ShapeDataLoaded:
      RecordLoaded(log, instance.Get(), *shapeInstance);
      return true;
    case zelk::ShapeDataFailed:
      if (!HasReallyFailed(*shapeInstance)) {
        return false;
      }
      log.MarkTypeIconChanged(instance.Get());
      return true;
    default:
      return false;
  }
}

void WorldTreeState::_DeliverWave()
{
  SceneInfoLog* log = GetCurInfoLog();
  if (!log || !GetGuiTree().GetGuiInterface()) {
    return;
  }
  const Pin tree(&GetGuiTree());
  const du::SmartPtr<zelk::ShapeScene> scene = log->GetShapeScene();
  GetGuiTree().GetGuiInterface()->UpdateVisAndTypeIconChanges(&log->GetVisibleMap(), &log->GetVisibleChangeMap(),
                                                              &log->GetTypeIconMap(), &log->GetTypeIconChangeMap());
  // Looked up anew: the host may have removed the scene. One that it no longer shows has been delivered all the same.
  if (SceneInfoLog* delivered = GetLog(scene)) {
    delivered->ClearVisibleChangeMap();
    delivered->ClearTypeIconChangeMap();
  }
}

void WorldTreeState::_CancelLoad(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance)
{
  const auto load = pendingLoads.find(shapeInstance);
  if (load == pendingLoads.end()) {
    return;
  }
  // Held, since a loader may let go of a cancelled event at once.
  const du::SmartPtr<WTShapeLoaderEvent> event(load->second);
  event->Cancel();
}

void WorldTreeState::_ForgetLoad(WTShapeLoaderEvent& event)
{
  m_liveLoads.erase(&event);
  // A kernel that ends lets go of events without completing them.
  const auto load = pendingLoads.find(event.shapeInstance);
  if (load != pendingLoads.end() && load->second == &event) {
    pendingLoads.erase(event.shapeInstance);
  }
}

}  // namespace guitree
