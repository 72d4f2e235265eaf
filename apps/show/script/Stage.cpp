#include "script/Stage.h"

#include "script/ScriptError.h"
#include "stepimport/Scene.h"

namespace script {

template <typename Call>
void Stage::_Tell(Call call) const
{
  if (m_follower) {
    call(*m_follower);
  }
}

void Stage::SetFollower(const du::SmartPtr<Follower>& follower)
{
  m_follower = follower;
  for (const ScenePtr& scene : GetScenes()) {
    _Tell([&scene](Follower& told) { told.OnSceneAdded(scene); });
  }
  if (HasCurrentView()) {
    _Tell([&view = m_places[m_current - 1].view](Follower& told) { told.OnActiveViewChanged(view); });
  }
}

void Stage::Add(const ScenePtr& scene, const ViewPtr& view)
{
  m_places.push_back({scene, view});
  _Tell([&scene](Follower& told) { told.OnSceneAdded(scene); });
}

void Stage::AddSceneOfAll()
{
  const ScenePtr scene = m_world->CreateShapeScene();
  stepimport::AddToScene(*scene, m_world->GetMemTree().GetRootInstance());
  Add(scene, du::MakeSmart<memkernel::ShapeView>(scene));
}

void Stage::RemoveScene(std::size_t number)
{
  const ScenePtr scene = GetScene(number);
  m_places[number - 1].hasScene = false;
  _Tell([&scene](Follower& told) { told.OnSceneRemoved(scene); });
}

void Stage::RemoveView(std::size_t number)
{
  const ViewPtr view = GetView(number);
  m_places[number - 1].hasView = false;
  m_current = m_current == number ? 0 : m_current;
  _Tell([&view](Follower& told) { told.OnViewRemoved(view); });
}

void Stage::ActivateView(std::size_t number)
{
  const ViewPtr view = GetView(number);
  m_current = number;
  _Tell([&view](Follower& told) { told.OnActiveViewChanged(view); });
}

void Stage::ActivateNoView()
{
  m_current = 0;
  _Tell([](Follower& told) { told.OnActiveViewChanged({}); });
}

const Stage::ScenePtr& Stage::GetScene(std::size_t number) const
{
  return _GetPlace(number, &Place::hasScene, "scene").scene;
}

const Stage::ViewPtr& Stage::GetView(std::size_t number) const
{
  return _GetPlace(number, &Place::hasView, "view").view;
}

const Stage::ScenePtr& Stage::GetCurrentScene() const
{
  if (!HasCurrentView()) {
    throw ScriptError("no view is current: name a scene by 'in N'");
  }
  return GetScene(m_current);
}

std::vector<Stage::ScenePtr> Stage::GetScenes() const
{
  std::vector<ScenePtr> scenes;
  for (const Place& place : m_places) {
    if (place.hasScene) {
      scenes.push_back(place.scene);
    }
  }
  return scenes;
}

std::string Stage::Describe(const zelk::Object& object) const
{
  for (std::size_t i = 0; i < m_places.size(); ++i) {
    if (m_places[i].scene.Get() == &object) {
      return "scene " + std::to_string(i + 1);
    }
    if (m_places[i].view.Get() == &object) {
      return "view " + std::to_string(i + 1);
    }
  }
  return {};
}

const Stage::Place& Stage::_GetPlace(std::size_t number, bool Place::*isThere, const char* what) const
{
  const std::string name = std::string(what) + ' ' + std::to_string(number);
  if (number == 0 || number > m_places.size()) {
    throw ScriptError("there is no " + name);
  }
  const Place& place = m_places[number - 1];
  if (!(place.*isThere)) {
    throw ScriptError(name + " has been removed");
  }
  return place;
}

}  // namespace script
