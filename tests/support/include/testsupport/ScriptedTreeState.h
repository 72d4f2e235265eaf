#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/TreeStateBase.h"
#include "testsupport/ScriptedFilter.h"
#include "testsupport/ScriptedSelectionController.h"

namespace testsupport {

/// The smallest concrete tree state: what a `guitree::TreeStateBase` leaves open is answered from the members, and what
/// is asked of it beyond rows is written down in `calls`.
class ScriptedTreeState : public guitree::TreeStateBase {
public:
  explicit ScriptedTreeState(guitree::GuiTree& tree) : TreeStateBase(tree) {}
  ScriptedTreeState(const ScriptedTreeState&) = default;
  ScriptedTreeState& operator=(const ScriptedTreeState&) = delete;
  ~ScriptedTreeState() override
  {
    if (onEnd) {
      onEnd();
    }
  }

  du::SmartPtr<zelk::BaseTree> baseTree;
  du::SmartPtr<ScriptedSelectionController> selController;
  ScriptedFilter filter;
  std::set<const zelk::BaseInstance*> hidden;
  std::set<const zelk::BaseInstance*> loaded;
  int unloadedTypeIcon = 0;
  /// The filter of a view that has one of its own.
  std::map<const zelk::View*, ScriptedFilter> filterOfView;
  /// Takes the place of each view that is about to become current.
  du::SmartPtr<zelk::View> overridingView;
  bool isCompatibleScene = true;
  bool isCompatibleView = true;
  bool reloadsOnViewChange = false;
  bool needsUpdate = false;
  bool needsTooltips = false;
  bool answerToShapeEvents = false;
  std::vector<std::string> calls;
  /// The log that the last scene event was for.
  guitree::SceneInfoLog* lastLog = nullptr;
  /// What `GetSelController` was asked with, in order.
  mutable std::vector<bool> selControllerQuestions;
  /// The scenes that `GetNeedsUpdate` was asked for, in order.
  mutable std::vector<du::SmartPtr<zelk::Scene>> needsUpdateQuestions;
  /// The scenes that `IsTooltipsUpdateNeeded` was asked for, in order.
  mutable std::vector<du::SmartPtr<zelk::Scene>> tooltipsQuestions;
  /// The scenes that icons were asked for, in order.
  std::vector<du::SmartPtr<zelk::Scene>> iconQuestions;
  /// Makes the logs; without it they are plain ones.
  std::function<guitree::SceneInfoLog*()> makeSceneInfoLog;
  /// Runs inside every operation that is written down, after that, and inside `GetFilter` before it answers: a test
  /// calls the library again from here.
  std::function<void(const std::string& call)> onCall;
  /// Runs first of all when the state ends.
  std::function<void()> onEnd;

  du::SmartPtr<zelk::BaseTree> Initialise_GetZelkTree(const du::SmartPtr<zelk::View>& view) override
  {
    _Note(view ? "Initialise_GetZelkTree(view)" : "Initialise_GetZelkTree(null)");
    return baseTree;
  }
  [[nodiscard]] du::SmartPtr<guitree::TreeSelectionController> GetSelController(bool forRows) const override
  {
    selControllerQuestions.push_back(forRows);
    return selController;
  }
  [[nodiscard]] bool HaveSelController() const override { return static_cast<bool>(selController); }
  [[nodiscard]] bool HasInstGotThumbnail(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) const override
  {
    return false;
  }
  void CreateAndRegisterTreeObserver() override { _Note("CreateAndRegisterTreeObserver()"); }
  void DeregisterTreeObserver() override { _Note("DeregisterTreeObserver()"); }
  [[nodiscard]] bool IsInstLoaded(const zelk::BaseInstance* instance) override { return loaded.contains(instance); }
  [[nodiscard]] guitree::SceneInfoLog* CreateSceneInfoLog() override
  {
    return makeSceneInfoLog ? makeSceneInfoLog() : new guitree::SceneInfoLog(&GetGuiTree());
  }
  [[nodiscard]] int GetUnloadedTypeIcon(const zelk::BaseInstance* /*instance*/,
                                        const du::SmartPtr<zelk::Scene>& scene) override
  {
    iconQuestions.push_back(scene);
    _Note("GetUnloadedTypeIcon");
    return unloadedTypeIcon;
  }
  [[nodiscard]] structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& view) override
  {
    _RunHook("GetFilter");
    const auto own = filterOfView.find(view.Get());
    return own != filterOfView.end() ? own->second : filter;
  }
  void OnBeginUpdate() override
  {
    _Note("OnBeginUpdate");
    TreeStateBase::OnBeginUpdate();
  }
  void OverrideActiveViewAfterChange(du::SmartPtr<zelk::View>& view) override
  {
    _Note("OverrideActiveViewAfterChange");
    if (overridingView) {
      view = overridingView;
    }
  }
  [[nodiscard]] bool IsCompatibleShapeSceneType(const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    return isCompatibleScene;
  }
  [[nodiscard]] bool IsCompatibleViewType(const du::SmartPtr<zelk::View>& /*view*/) const override
  {
    return isCompatibleView;
  }
  [[nodiscard]] bool ReloadOnViewChange(const du::SmartPtr<zelk::View>& /*view*/) const override
  {
    return reloadsOnViewChange;
  }
  [[nodiscard]] bool GetNeedsUpdate(const du::SmartPtr<zelk::Scene>& scene) const override
  {
    needsUpdateQuestions.push_back(scene);
    return needsUpdate;
  }
  [[nodiscard]] bool IsTooltipsUpdateNeeded(const du::SmartPtr<zelk::Scene>& scene) const override
  {
    tooltipsQuestions.push_back(scene);
    return needsTooltips;
  }
  bool UpdateSceneInfoLog_OnSceneRemoved(const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    _Note("OnSceneRemoved");
    return false;
  }
  bool UpdateSceneInfoLog_OnShapeInstanceCreate(guitree::SceneInfoLog* log,
                                                const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/) override
  {
    _Note("OnShapeInstanceCreate");
    lastLog = log;
    return answerToShapeEvents;
  }
  bool UpdateSceneInfoLog_OnShapeInstanceRemove(guitree::SceneInfoLog* log,
                                                const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/) override
  {
    _Note("OnShapeInstanceRemove");
    lastLog = log;
    return answerToShapeEvents;
  }
  void UpdateSceneInfoLog_OnShapeInstanceVisibility(guitree::SceneInfoLog* log,
                                                    const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/,
                                                    bool visible) override
  {
    _Note(visible ? "OnShapeInstanceVisibility(true)" : "OnShapeInstanceVisibility(false)");
    lastLog = log;
  }
  void UpdateSceneInfoLog_OnInstanceCompared(guitree::SceneInfoLog* log,
                                             const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/) override
  {
    _Note("OnInstanceCompared");
    lastLog = log;
  }
  [[nodiscard]] bool IsInstHidden(zelk::BaseInstance* instance) const override { return hidden.contains(instance); }

  // What a test may reach of the protected workers.
  using TreeStateBase::ClearAssocHighlights;
  using TreeStateBase::SetAssocHlight;
  using TreeStateBase::SetBusy;
  using TreeStateBase::UpdateAssocHighlights;

private:
  void _Note(const std::string& call)
  {
    calls.push_back(call);
    _RunHook(call);
  }
  void _RunHook(const std::string& call) const
  {
    if (const auto hook = onCall) {
      hook(call);
    }
  }
};

}  // namespace testsupport
