#pragma once

#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "du/HashMap.h"
#include "du/SmartPtr.h"
#include "du/Stopwatch.h"
#include "guitree/TreeStateBase.h"
#include "guitree/WorldTreeSelectionController.h"
#include "zelk/Instance.h"
#include "zelk/Tree.h"

namespace guitree {

class WorldTreeStateTreeObserver;
class WTShapeLoaderEvent;

/// The tree state that shows the tree of the kernel's world: follows its events, its selection and its scenes. A
/// derived class brings the filter and the icons. Lives and threads as `TreeStateBase`; the four switches are for any
/// thread.
class WorldTreeState : public TreeStateBase {
public:
  explicit WorldTreeState(GuiTree& tree);
  /// A copy would share the observer and the loads under way.
  WorldTreeState(const WorldTreeState&) = delete;
  WorldTreeState& operator=(const WorldTreeState&) = delete;
  /// The observer and the loads that are still under way do nothing from now on. The kernel drops the observer when its
  /// tree ends, unless `DeregisterTreeObserver` came first.
  ~WorldTreeState() override;

  /// Display switches of the process, for all panels: whether bodies have rows (true at the start), and whether the
  /// first of a group of equal siblings stands for all of them (false at the start). Setting one refills nothing.
  [[nodiscard]] static bool IsShowingBodies();
  static void SetIsShowingBodies(bool isShowing);
  [[nodiscard]] static bool IsCollapsingInstances();
  static void SetIsCollapsingInstances(bool isCollapsing);

  /// The tree of the installed world, whatever the view; null without a world.
  du::SmartPtr<zelk::BaseTree> Initialise_GetZelkTree(const du::SmartPtr<zelk::View>& view) override;
  /// A new controller over the panel's selection manager at each call; null without a manager.
  [[nodiscard]] du::SmartPtr<TreeSelectionController> GetSelController(bool forRows) const override;
  [[nodiscard]] bool HaveSelController() const override;
  [[nodiscard]] bool HasInstGotThumbnail(const du::SmartPtr<zelk::BaseInstance>& instance) const override;
  /// Nothing is observed while the world has no tree.
  void CreateAndRegisterTreeObserver() override;
  /// Inside an open run of tree events its end is handled first.
  void DeregisterTreeObserver() override;
  /// Whether the instance is in the shape scene that is shown; its geometry may still be on its way.
  [[nodiscard]] bool IsInstLoaded(const zelk::BaseInstance* instance) override;
  /// While groups are collapsed, an instance counts as the first of its group.
  void GetBaseInstFromSelItems(const std::vector<du::SmartPtr<zelk::Object>>& items,
                               std::set<zelk::BaseInstance*>& out) override;
  [[nodiscard]] SceneInfoLog* CreateSceneInfoLog() override;
  /// Cancels the loads of the scene. False.
  bool UpdateSceneInfoLog_OnSceneRemoved(const du::SmartPtr<zelk::Scene>& scene) override;
  /// Records a shape whose data is there, asks for data that is not, and has the icon of a failed one worked out again.
  /// True for that, and for a thumbnail that is not loaded because thumbnails are flat.
  bool UpdateSceneInfoLog_OnShapeInstanceCreate(SceneInfoLog* log,
                                                const du::SmartPtr<zelk::ShapeInstance>& shapeInstance) override;
  /// Cancels the load of the shape. True if the host says that the icon depends on the shape instance.
  bool UpdateSceneInfoLog_OnShapeInstanceRemove(SceneInfoLog* log,
                                                const du::SmartPtr<zelk::ShapeInstance>& shapeInstance) override;
  /// A shape without its data counts as hidden, whatever `visible` says.
  void UpdateSceneInfoLog_OnShapeInstanceVisibility(SceneInfoLog* log,
                                                    const du::SmartPtr<zelk::ShapeInstance>& shapeInstance,
                                                    bool visible) override;
  void UpdateSceneInfoLog_OnInstanceCompared(SceneInfoLog* log,
                                             const du::SmartPtr<zelk::ShapeInstance>& shapeInstance) override;
  [[nodiscard]] bool IsInstHidden(zelk::BaseInstance* instance) const override;
  [[nodiscard]] bool HasNoneHiddenChildren(const du::SmartPtr<zelk::BaseInstance>& instance) const override;
  /// What `CreateAndRegisterTreeObserver` registers. Null for none.
  [[nodiscard]] virtual du::SmartPtr<WorldTreeStateTreeObserver> CreateWorldTreeObserver();

  /// The current tree; null when there is none or it is of another kind.
  [[nodiscard]] du::SmartPtr<zelk::Tree> GetTree() const;
  [[nodiscard]] du::SmartPtr<WorldTreeSelectionController> GetWTSelController() const;
  using TreeStateBase::GetSelectedComps;
  /// The selected instances, with `withDescendents` also all below them, are added to `out`.
  void GetSelectedComps(std::set<du::SmartPtr<zelk::Instance>>& out, bool withDescendents);
  /// Times the present wave of loads from now on, in place of any other timing. It stops when the wave has ended.
  void AddStopWatch(const std::string& name);
  [[nodiscard]] const du::Stopwatch::StopwatchEntry& GetStopWatch() const noexcept { return stopwatch; }

protected:
  /// A load has ended. The last one of a wave records all of them, and tells the host in one call.
  void WTShapeLoaderEventComplete(WTShapeLoaderEvent* event);

private:
  friend class WTShapeLoaderEvent;

  using FinishedLoads = du::HashMap<du::SmartPtr<zelk::ShapeInstance>, du::SmartPtr<zelk::ShapeScene>>;
  using PendingLoads = du::HashMap<du::SmartPtr<zelk::ShapeInstance>, WTShapeLoaderEvent*>;

  [[nodiscard]] bool _RequestLoad(const SceneInfoLog& log, const du::SmartPtr<zelk::ShapeInstance>& shapeInstance,
                                  const du::SmartPtr<zelk::Instance>& instance);
  void _RecordWave();
  /// Answers whether the log has something new to tell.
  [[nodiscard]] bool _RecordFinishedLoad(SceneInfoLog& log, const du::SmartPtr<zelk::ShapeInstance>& shapeInstance);
  void _DeliverWave();
  void _CancelLoad(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance);
  /// An event ends that has not completed.
  void _ForgetLoad(WTShapeLoaderEvent& event);

  static bool s_bShowBodies;
  static bool s_bCollapseInstances;

  du::SmartPtr<WorldTreeStateTreeObserver> treeObserver;
  FinishedLoads finishedLoads{100};
  /// Not owned: an event that ends takes itself out.
  PendingLoads pendingLoads{100};
  du::Stopwatch::StopwatchEntry stopwatch{"", du::Stopwatch::InitStopped};
  /// All that have not completed, also those that no map knows: the second one of a shape instance.
  std::unordered_set<WTShapeLoaderEvent*> m_liveLoads;
};

}  // namespace guitree
