#pragma once

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
  ~ScriptedTreeState() override = default;

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

  du::SmartPtr<zelk::BaseTree> Initialise_GetZelkTree(const du::SmartPtr<zelk::View>& view) override
  {
    calls.emplace_back(view ? "Initialise_GetZelkTree(view)" : "Initialise_GetZelkTree(null)");
    return baseTree;
  }
  [[nodiscard]] du::SmartPtr<guitree::TreeSelectionController> GetSelController(bool /*forRows*/) const override
  {
    return selController;
  }
  [[nodiscard]] bool HaveSelController() const override { return static_cast<bool>(selController); }
  [[nodiscard]] bool HasInstGotThumbnail(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) const override
  {
    return false;
  }
  void CreateAndRegisterTreeObserver() override { calls.emplace_back("CreateAndRegisterTreeObserver()"); }
  void DeregisterTreeObserver() override { calls.emplace_back("DeregisterTreeObserver()"); }
  [[nodiscard]] bool IsInstLoaded(const zelk::BaseInstance* instance) override { return loaded.contains(instance); }
  [[nodiscard]] guitree::SceneInfoLog* CreateSceneInfoLog() override
  {
    return new guitree::SceneInfoLog(&GetGuiTree());
  }
  [[nodiscard]] int GetUnloadedTypeIcon(const zelk::BaseInstance* /*instance*/,
                                        const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    calls.emplace_back("GetUnloadedTypeIcon");
    return unloadedTypeIcon;
  }
  [[nodiscard]] structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& view) override
  {
    const auto own = filterOfView.find(view.Get());
    return own != filterOfView.end() ? own->second : filter;
  }
  void OverrideActiveViewAfterChange(du::SmartPtr<zelk::View>& view) override
  {
    calls.emplace_back("OverrideActiveViewAfterChange");
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
  [[nodiscard]] bool GetNeedsUpdate(const du::SmartPtr<zelk::Scene>& /*scene*/) const override { return needsUpdate; }
  [[nodiscard]] bool IsTooltipsUpdateNeeded(const du::SmartPtr<zelk::Scene>& /*scene*/) const override
  {
    return needsTooltips;
  }
  bool UpdateSceneInfoLog_OnSceneRemoved(const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    calls.emplace_back("OnSceneRemoved");
    return false;
  }
  bool UpdateSceneInfoLog_OnShapeInstanceCreate(guitree::SceneInfoLog* log,
                                                const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/) override
  {
    calls.emplace_back("OnShapeInstanceCreate");
    lastLog = log;
    return answerToShapeEvents;
  }
  bool UpdateSceneInfoLog_OnShapeInstanceRemove(guitree::SceneInfoLog* log,
                                                const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/) override
  {
    calls.emplace_back("OnShapeInstanceRemove");
    lastLog = log;
    return answerToShapeEvents;
  }
  void UpdateSceneInfoLog_OnShapeInstanceVisibility(guitree::SceneInfoLog* log,
                                                    const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/,
                                                    bool visible) override
  {
    calls.emplace_back(visible ? "OnShapeInstanceVisibility(true)" : "OnShapeInstanceVisibility(false)");
    lastLog = log;
  }
  void UpdateSceneInfoLog_OnInstanceCompared(guitree::SceneInfoLog* log,
                                             const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/) override
  {
    calls.emplace_back("OnInstanceCompared");
    lastLog = log;
  }
  [[nodiscard]] bool IsInstHidden(zelk::BaseInstance* instance) const override { return hidden.contains(instance); }

  // What a test may reach of the protected workers.
  using TreeStateBase::ClearAssocHighlights;
  using TreeStateBase::SetAssocHlight;
  using TreeStateBase::SetBusy;
  using TreeStateBase::UpdateAssocHighlights;
};

}  // namespace testsupport
