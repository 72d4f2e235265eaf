#include "guitree/SceneInfoLog.h"

#include "guitree/GuiTree.h"
#include "guitree/TreeStateBase.h"
#include "sceneinfo/ShapeSceneObserver.h"

namespace guitree {
namespace {

/// A change word holds the new state above the old one.
constexpr int s_stateBits = 4;
constexpr int s_stateMask = (1 << s_stateBits) - 1;

[[nodiscard]] int MakeChangeWord(int newState, int oldState)
{
  return newState << s_stateBits | oldState;
}

[[nodiscard]] int GetNewState(int changeWord)
{
  return changeWord >> s_stateBits & s_stateMask;
}

[[nodiscard]] int GetOldState(int changeWord)
{
  return changeWord & s_stateMask;
}

/// By the lowest bit, which for negative icons is set for the odd ones as well.
[[nodiscard]] bool IsLoadedIcon(int icon)
{
  return (icon & 1) != 0;
}

[[nodiscard]] ECompVisible ToCompVisible(VisibleState state)
{
  switch (state) {
    case VisibleStateThumbnailVisible:
      return CompThumbnailVisible;
    case VisibleStateThumbnailHidden:
      return CompThumbnailHidden;
    default:
      return (state & 1) != 0 ? CompVisible : CompHidden;
  }
}

}  // namespace

SceneInfoLog::SceneInfoLog(GuiTree* tree) : typeIconMap(tree), guiTree(tree) {}

SceneInfoLog::SceneInfoLog(const SceneInfoLog&) = default;

SceneInfoLog& SceneInfoLog::operator=(const SceneInfoLog&) = default;

SceneInfoLog::~SceneInfoLog() = default;

void SceneInfoLog::Initialise(const du::SmartPtr<zelk::Scene>& newScene)
{
  scene = newScene;
  lastChangeWord = 0;
  lastVisibleState = VisibleStateHidden;
  visibleMap.clear();
  m_tallies.clear();
  visibleChangeMap.clear();
  typeIconMap.Clear();
  typeIconChangeMap.clear();
}

void SceneInfoLog::Destroy()
{
  scene.Reset();
  guiTree = nullptr;
  typeIconMap.guiTree = nullptr;
}

void SceneInfoLog::RemoveFromLog(zelk::BaseInstance* instance)
{
  if (!instance) {
    return;
  }
  _StoreState(*instance, VisibleStateHidden);
  m_tallies.erase(instance);
  typeIconMap.ResetIcon(instance);
}

bool SceneInfoLog::SetVisible(zelk::BaseInstance* instance, VisibleState state)
{
  if (!instance || !_NoteVisibleChange(instance, state)) {
    return false;
  }
  _StoreState(*instance, state);
  return true;
}

void SceneInfoLog::SetVisible(zelk::BaseInstance* instance, ECompVisible visible, bool propagate)
{
  du::SmartPtr<zelk::BaseInstance> parent;
  zelk::BaseInstance* level = instance;
  while (level && SetVisible(level, _WorkOutState(*level, visible)) && propagate) {
    du::SmartPtr<zelk::BaseInstance> next;
    level->GetBaseParent(next);
    // Held from here on: a parent lives only as long as somebody holds it.
    parent = next;
    level = parent.Get();
    visible = IsCompVisible(parent);
  }
}

void SceneInfoLog::ForceVisibleToHidden(zelk::BaseInstance* instance)
{
  SetVisible(instance, VisibleStateHidden);
}

bool SceneInfoLog::SetLoaded(zelk::BaseInstance* instance, bool loaded)
{
  int icon = 0;
  if (!typeIconMap.Find(instance, icon, scene) || IsLoadedIcon(icon) == loaded) {
    return false;
  }
  const int newIcon = IsLoadedIcon(icon) ? icon - 1 : icon + 1;
  typeIconMap.Set(instance, newIcon);
  _ToggleIconChange(instance, newIcon);
  return true;
}

void SceneInfoLog::MarkTypeIconChanged(const zelk::BaseInstance* instance)
{
  int before = 0;
  const bool wasKnown = typeIconMap._Get(instance, before);
  typeIconMap.ResetIcon(instance);
  int icon = 0;
  if (!typeIconMap.Find(instance, icon, scene)) {
    return;
  }
  if (!wasKnown || icon != before) {
    typeIconChangeMap.insert_or_assign(instance, icon);
  }
}

int SceneInfoLog::GetUnloadedTypeIcon(const zelk::BaseInstance* instance)
{
  int icon = 0;
  if (!typeIconMap.Find(instance, icon, scene)) {
    return -1;
  }
  return IsLoadedIcon(icon) ? icon - 1 : icon;
}

VisibleState SceneInfoLog::GetCompVisibleState(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  return _GetState(instance.Get());
}

ECompVisible SceneInfoLog::IsCompVisible(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  return ToCompVisible(_GetState(instance.Get()));
}

const SceneInfoLog::VisibleMap& SceneInfoLog::GetVisibleMap() const
{
  return visibleMap;
}

const SceneInfoLog::ChangeMap& SceneInfoLog::GetVisibleChangeMap() const
{
  return visibleChangeMap;
}

TypeIconMap& SceneInfoLog::GetTypeIconMap()
{
  return typeIconMap;
}

const SceneInfoLog::ChangeMap& SceneInfoLog::GetTypeIconChangeMap() const
{
  return typeIconChangeMap;
}

du::SmartPtr<zelk::Scene> SceneInfoLog::GetScene() const
{
  return scene;
}

du::SmartPtr<zelk::ShapeScene> SceneInfoLog::GetShapeScene() const
{
  if (!scene || !scene->IsATypeOf(zelk::ShapeScene::CLASS_TYPE)) {
    return {};
  }
  return du::DynamicCast<zelk::ShapeScene>(scene);
}

void SceneInfoLog::ClearVisibleChangeMap()
{
  visibleChangeMap.clear();
}

void SceneInfoLog::ClearTypeIconChangeMap()
{
  typeIconChangeMap.clear();
}

void SceneInfoLog::ResetTypeIconMap()
{
  GetTypeIconMap().Clear();
}

void SceneInfoLog::SetCompared(zelk::BaseInstance* instance, bool /*compared*/, bool /*first*/)
{
  int icon = 0;
  TreeStateBase* state = guiTree ? guiTree->GetTreeState() : nullptr;
  if (!state || !typeIconMap.Find(instance, icon, scene)) {
    return;
  }
  const int newIcon = state->GetUnloadedTypeIcon(instance, scene);
  typeIconMap.Set(instance, newIcon);
  _ToggleIconChange(instance, newIcon);
}

VisibleState SceneInfoLog::_GetState(const zelk::BaseInstance* instance) const
{
  const auto known = visibleMap.find(instance);
  return known != visibleMap.end() ? known->second : VisibleStateHidden;
}

void SceneInfoLog::_StoreState(const zelk::BaseInstance& instance, VisibleState state)
{
  _MoveInTally(instance, state);
  if (state == VisibleStateHidden) {
    visibleMap.erase(&instance);
  } else {
    visibleMap.insert_or_assign(&instance, state);
  }
}

VisibleState SceneInfoLog::_WorkOutState(const zelk::BaseInstance& instance, ECompVisible visible)
{
  if (visible == CompThumbnailVisible) {
    return VisibleStateThumbnailVisible;
  }
  if (visible == CompThumbnailHidden) {
    return VisibleStateThumbnailHidden;
  }
  const int aggregate = _AggregateChildren(instance);
  return static_cast<VisibleState>(visible == CompVisible ? aggregate : aggregate + 1);
}

VisibleState SceneInfoLog::_AggregateChildren(const zelk::BaseInstance& instance)
{
  const ChildTally* tally = _FindTally(instance);
  return tally ? tally->GetAggregate() : _WalkChildren(instance);
}

bool SceneInfoLog::_NoteVisibleChange(const zelk::BaseInstance* instance, VisibleState state)
{
  const auto change = visibleChangeMap.find(instance);
  if (change == visibleChangeMap.end()) {
    lastVisibleState = _GetState(instance);
    if (lastVisibleState == state) {
      return false;
    }
    visibleChangeMap.insert_or_assign(instance, MakeChangeWord(state, lastVisibleState));
    return true;
  }
  lastChangeWord = change->second;
  if (GetNewState(lastChangeWord) == state) {
    return false;
  }
  lastVisibleState = GetOldState(lastChangeWord);
  if (lastVisibleState == state) {
    visibleChangeMap.erase(instance);
  } else {
    change->second = MakeChangeWord(state, lastVisibleState);
  }
  return true;
}

void SceneInfoLog::_ToggleIconChange(const zelk::BaseInstance* instance, int icon)
{
  const auto change = typeIconChangeMap.find(instance);
  if (change == typeIconChangeMap.end()) {
    typeIconChangeMap.insert_or_assign(instance, icon);
    return;
  }
  lastChangeWord = change->second;
  typeIconChangeMap.erase(instance);
}

}  // namespace guitree
