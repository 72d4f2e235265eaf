#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "du/SmartPtr.h"
#include "guitree/GuiInterface.h"
#include "memkernel/ShapeScene.h"
#include "memkernel/View.h"
#include "memkernel/World.h"

namespace script {

/// The scenes and views of a program, known by their numbers: scene 1 is what view 1 looks at. Numbers are not given
/// anew, so a scene and its view can go one without the other. Whoever follows is told of every change, as a panel
/// expects it from its host. Lives as long as the program that it plays; owner's thread.
class Stage {
public:
  using ScenePtr = du::SmartPtr<memkernel::ShapeScene>;
  using ViewPtr = du::SmartPtr<memkernel::ShapeView>;
  using Follower = guitree::GuiInterface::SceneManagerObserver;

  explicit Stage(const du::SmartPtr<memkernel::World>& world) : m_world(world) {}

  /// Tells `follower` of the scenes that are there and of the current view, and of all changes from now on, in place of
  /// anyone else. Null for nobody.
  void SetFollower(const du::SmartPtr<Follower>& follower);

  /// Takes the next number. The view does not become current by itself.
  void Add(const ScenePtr& scene, const ViewPtr& view);
  /// A scene in which all that has a shape is visible, with a selection of its own.
  void AddSceneOfAll();
  /// The operations below throw `ScriptError` where there is no such scene or view, or not any more.
  void RemoveScene(std::size_t number);
  void RemoveView(std::size_t number);
  void ActivateView(std::size_t number);
  void ActivateNoView();
  [[nodiscard]] const ScenePtr& GetScene(std::size_t number) const;
  [[nodiscard]] const ViewPtr& GetView(std::size_t number) const;
  /// That of the current view.
  [[nodiscard]] const ScenePtr& GetCurrentScene() const;

  [[nodiscard]] bool HasCurrentView() const noexcept { return m_current > 0; }
  [[nodiscard]] bool IsCurrentView(std::size_t number) const noexcept { return number > 0 && number == m_current; }
  /// Those that are there, in the order of their numbers.
  [[nodiscard]] std::vector<ScenePtr> GetScenes() const;
  /// `scene 1` or `view 1`, also when it has gone; empty for what is neither.
  [[nodiscard]] std::string Describe(const zelk::Object& object) const;

private:
  struct Place {
    ScenePtr scene;
    ViewPtr view;
    bool hasScene = true;
    bool hasView = true;
  };

  [[nodiscard]] const Place& _GetPlace(std::size_t number, bool Place::*isThere, const char* what) const;
  template <typename Call>
  void _Tell(Call call) const;

  const du::SmartPtr<memkernel::World> m_world;
  std::vector<Place> m_places;
  /// The number of the current view; 0 for none.
  std::size_t m_current = 0;
  du::SmartPtr<Follower> m_follower;
};

}  // namespace script
