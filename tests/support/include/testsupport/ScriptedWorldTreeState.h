#pragma once

#include <functional>
#include <set>

#include "guitree/SceneInfoLog.h"
#include "guitree/WorldTreeState.h"
#include "guitree/WorldTreeStateTreeObserver.h"
#include "testsupport/ScriptedFilter.h"

namespace testsupport {

/// The smallest concrete state of the world's tree: filter and icon come from the members, everything else is what
/// `guitree::WorldTreeState` does.
class ScriptedWorldTreeState : public guitree::WorldTreeState {
public:
  explicit ScriptedWorldTreeState(guitree::GuiTree& tree) : WorldTreeState(tree) {}
  ScriptedWorldTreeState(const ScriptedWorldTreeState&) = delete;
  ScriptedWorldTreeState& operator=(const ScriptedWorldTreeState&) = delete;
  ~ScriptedWorldTreeState() override
  {
    if (onEnd) {
      onEnd();
    }
  }

  ScriptedFilter filter;
  int unloadedTypeIcon = 0;
  std::set<const zelk::BaseInstance*> hidden;
  /// Hides all bodies besides, which is known before an instance is there.
  bool hidesBodies = false;
  /// Makes the logs; without it they are plain ones.
  std::function<guitree::SceneInfoLog*()> makeSceneInfoLog;
  /// Whether there is an observer at all.
  bool makesObserver = true;
  /// Runs with each observer that is made, before it is registered: the only reference that a test may take.
  std::function<void(const du::SmartPtr<guitree::WorldTreeStateTreeObserver>&)> onObserver;
  /// Runs inside `GetFilter`, before it answers.
  std::function<void()> onGetFilter;
  /// Runs first of all when the state ends.
  std::function<void()> onEnd;

  [[nodiscard]] guitree::SceneInfoLog* CreateSceneInfoLog() override
  {
    return makeSceneInfoLog ? makeSceneInfoLog() : WorldTreeState::CreateSceneInfoLog();
  }
  [[nodiscard]] int GetUnloadedTypeIcon(const zelk::BaseInstance* /*instance*/,
                                        const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    return unloadedTypeIcon;
  }
  [[nodiscard]] structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& /*view*/) override
  {
    if (const auto hook = onGetFilter) {
      hook();
    }
    return filter;
  }
  [[nodiscard]] bool IsInstHidden(zelk::BaseInstance* instance) const override
  {
    return hidden.contains(instance) || (hidesBodies && instance->IsBodyInstance());
  }
  [[nodiscard]] du::SmartPtr<guitree::WorldTreeStateTreeObserver> CreateWorldTreeObserver() override
  {
    if (!makesObserver) {
      return {};
    }
    auto observer = WorldTreeState::CreateWorldTreeObserver();
    if (onObserver) {
      onObserver(observer);
    }
    return observer;
  }
};

}  // namespace testsupport
