#pragma once

#include <map>
#include <memory>
#include <vector>

#include "dom/ManagedObject.h"
#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "guitree/FilteredTree.h"
#include "guitree/GuiInterface.h"
#include "zelk/BaseTree.h"
#include "zelk/SelectionItem.h"
#include "zelk/SelectionManager.h"
#include "zelk/ShapeScene.h"
#include "zelk/View.h"
#include "zelk/World.h"

namespace guitree {

class AssocHlightObserver;
class MySceneManagerObserver;
class SceneInfoLog;
class SelectionObserver;
class ShapeViewObserver;
class TreeController;
class TreeStateBase;

/// The model of one structure tree panel: binds a tree state, the host and the kernel's world, and passes on what
/// either side reports. One object a panel. Owner's thread, that of the managed object.
///
///     du::SmartPtr<guitree::GuiTree> tree = du::MakeSmart<guitree::GuiTree>(managedObject);
///     tree->SetGuiInterface(&host);
///     tree->SetTreeState(du::MakeSmart<MyTreeState>(*tree));
///     tree->Initialise(world);
///     ...
///     tree->Close();
///
/// The host's `GuiInterface` must be set before `Initialise` and outlive the object. Held by a `du::SmartPtr`, the
/// object survives a host that lets go of it from inside one of its callbacks; an object on the stack must not end
/// there.
class GuiTree : public virtual du::RefCounted {
public:
  class GuiTreeTreeObserverHelper;

  /// `manager` is the parent of every observer that is created; it may be null when the kernel needs none.
  explicit GuiTree(const du::SmartPtr<dom::ManagedObject>& manager);
  /// Memberwise: the copies share controller, host and logs, and only one of them may be destroyed. What tells whether
  /// an object lives is its own.
  GuiTree(const GuiTree&);
  GuiTree& operator=(const GuiTree&);
  /// Unregisters nothing, so `Close` comes first. Observers that the kernel still knows do nothing from now on. The
  /// host gets no call, apart from the finish of each bracket that a burst of tree events, or a selection update, has
  /// left open.
  ~GuiTree() override;

  [[nodiscard]] bool ZeroReferenceCountHook() const override;
  /// The kernel's associated highlight has changed; answers what the tree state answers, false without one.
  virtual bool OnAssocHlightChanged(unsigned int list, bool clearFirst,
                                    const std::vector<du::SmartPtr<zelk::SelectionItem>>& removed,
                                    const std::vector<du::SmartPtr<zelk::SelectionItem>>& added);

  /// Not owned.
  void SetGuiInterface(GuiInterface* gui) { guiInterface = gui; }
  [[nodiscard]] GuiInterface* GetGuiInterface() const noexcept { return guiInterface; }

  void SetTreeState(du::SmartPtr<TreeStateBase> state);
  [[nodiscard]] TreeStateBase* GetTreeState() const noexcept { return treeState.Get(); }

  /// Stores the tree to show; the rows follow with the next population.
  void SetBaseTree(const du::SmartPtr<zelk::BaseTree>& tree) { baseTree = tree; }
  [[nodiscard]] const du::SmartPtr<zelk::BaseTree>& GetBaseTree() const noexcept { return baseTree; }

  /// Binds the panel to a world and fills it for the first time. With null, or without a tree state, only the world is
  /// stored. No view is current afterwards, whatever the host reported on the way; a log that became current with such
  /// a view stays so until the next one. May be called again after `Close`.
  void Initialise(const du::SmartPtr<zelk::World>& newWorld);
  /// Ends the scene side: from now on reports of the host do nothing, and no scene is listened to. What remains is
  /// bound to its tree and its selection. A second call does nothing.
  void Close();
  /// Takes the panel off its tree: the state forgets its rows, nothing is observed any more and no selection is bound.
  /// Scenes and view stay. Inside a burst of tree events the burst ends first; rows that it fills are taken away again.
  void Reset();

  /// Null when no view is active.
  [[nodiscard]] const du::SmartPtr<zelk::View>& GetCurrentView() const noexcept { return currentView; }
  [[nodiscard]] const du::SmartPtr<dom::ManagedObject>& GetManagedObject() const noexcept { return managedObject; }
  /// The selection of the current view's scene, or the world's while no view is current; may be null.
  [[nodiscard]] const du::SmartPtr<zelk::SelectionManager>& GetSelectionManager() const noexcept
  {
    return selectionManager;
  }
  /// 0 until a view was asked. To be compared with other values of this operation only: the forms differ.
  [[nodiscard]] unsigned int GetAssocHlightColor() const noexcept { return assocHlightColor; }
  /// The result of the filter job that completed last; null before the first.
  [[nodiscard]] du::SmartPtr<FilteredTree> GetFilteredTree() const;
  /// The scene that is shown; null when there is none or it is no shape scene.
  [[nodiscard]] du::SmartPtr<zelk::ShapeScene> GetCurShapeScene() const;

  /// Null for a scene without a log. The log stays the `GuiTree`'s and goes with its scene.
  [[nodiscard]] SceneInfoLog* GetLog(const du::SmartPtr<zelk::ShapeScene>& scene) const;
  /// The log of the scene that is shown; may be null.
  [[nodiscard]] SceneInfoLog* GetCurrentLog() const noexcept { return currentLog; }
  /// Replaces `out` with all logs, ordered by the address of their scenes; without any, `out` stays as it was.
  void GetLogs(std::vector<SceneInfoLog*>& out);

  /// Reports of the host, through the observer that `Initialise` hands out. A scene gets a log, and a shape scene is
  /// listened to from then on; a scene that has its log already is left as it is.
  void OnSceneAdded(const du::SmartPtr<zelk::Scene>& scene);
  /// Ends the log of a scene; nothing for a scene without one. Nothing is repainted, also when the scene was shown and
  /// has events under way.
  void OnSceneRemoved(const du::SmartPtr<zelk::Scene>& scene);
  /// Follows the view: refills the rows when the tree or the filter is another one, and repaints them otherwise. Null
  /// tells that there is no view any more. Nothing without a tree state.
  void OnActiveViewChanged(const du::SmartPtr<zelk::View>& view);
  /// As a change to no view, if it was the current one; otherwise nothing.
  void OnViewRemoved(const du::SmartPtr<zelk::View>& view);

  /// Events of a scene's shape instances, for its log; nothing, and false, without one. True asks for a repaint of all
  /// rows at the end of the scene's update.
  bool OnShapeInstanceCreate(const du::SmartPtr<zelk::ShapeScene>& scene,
                             const du::SmartPtr<zelk::ShapeInstance>& instance);
  bool OnShapeInstanceRemove(const du::SmartPtr<zelk::ShapeScene>& scene,
                             const du::SmartPtr<zelk::ShapeInstance>& instance);
  void OnShapeInstanceVisibility(const du::SmartPtr<zelk::ShapeScene>& scene,
                                 const du::SmartPtr<zelk::ShapeInstance>& instance, bool visible);
  void OnShapeInstanceCompared(const du::SmartPtr<zelk::ShapeScene>& scene,
                               const du::SmartPtr<zelk::ShapeInstance>& instance);
  void OnUnsyncInstances(bool unsynced);
  /// The end of a scene's update: tells the host what has changed, or to repaint all rows with `full`, if the scene is
  /// the one that is shown. The changes of any other wait for its view.
  void OnShapeSceneEndUpdate(const du::SmartPtr<zelk::ShapeScene>& scene, bool full);
  /// What the scene marks in the tree has changed. A filtered tree is refilled.
  void ApplyTreeUpdate();
  /// The end of a burst of tree events: refills the rows with `repopulate`, otherwise tells the host that rows have
  /// changed, and what has changed in the scene that is shown.
  void OnGuiTreeObserverEndUpdate(bool repopulate, bool nodeNamesChanged);

  /// For all logs, ordered by the address of their scenes: work out the visible state of an instance again, and those
  /// of its parents as far as they change; record it as plain hidden; work out its icon again; forget it.
  void CheckVisibleIcon(const du::SmartPtr<zelk::BaseInstance>& instance);
  void ForceVisibleIconHidden(const du::SmartPtr<zelk::BaseInstance>& instance);
  void MarkTypeIconChanged(const zelk::BaseInstance* instance);
  void RemoveFromLogs(const du::SmartPtr<zelk::BaseInstance>& instance);
  /// For all logs: `instance` has just come to `parent`, as the last change of its children, so that the next event
  /// below that parent need not look at all of them. Where it comes before `RemoveFromLogs`, that holds also for an
  /// instance at an address that a log still knows. Never needed; nothing for a null argument.
  void NoteChildAdded(const du::SmartPtr<zelk::BaseInstance>& instance, const du::SmartPtr<zelk::BaseInstance>& parent);

  /// The colour of the associated highlight has changed in the current view; nothing without one.
  void OnUpdateAssocHlightColor();

  /// Null only while the object ends.
  [[nodiscard]] TreeController* GetTreeController() const noexcept { return treeController; }
  /// Answers this object for as long as it lives and null afterwards, for those that may outlive it.
  [[nodiscard]] std::shared_ptr<GuiTree* const> GetLiveness() const noexcept { return m_liveness; }
  /// Counts what takes all rows away, whichever state does it: that of `TreeStateBase`, which adds to it.
  [[nodiscard]] std::shared_ptr<unsigned int> GetPopulationCounter() const noexcept { return m_populationCounter; }

private:
  friend class SelectionObserver;

  void _SetupSelMgr(bool tearDownOnly);
  void _TearDownSelMgr();
  void _ReleaseSceneManagerObserver();
  void _ReleaseShapeViewObserver();
  void _DetachAllLogs();
  void _DetachSceneObserver(SceneInfoLog& log);
  void _ListenToScene(SceneInfoLog& log, const du::SmartPtr<zelk::ShapeScene>& scene);
  [[nodiscard]] SceneInfoLog* _FindLog(const du::SmartPtr<zelk::Scene>& scene) const;
  [[nodiscard]] bool _FollowTreeOf(const du::SmartPtr<zelk::View>& view, TreeStateBase& state);
  [[nodiscard]] du::SmartPtr<zelk::Scene> _FollowSceneOfCurrentView(TreeStateBase& state);
  void _ListenToView(const du::SmartPtr<zelk::View>& view);
  void _RefillForView(TreeStateBase& state);
  void _RefreshForView(TreeStateBase& state, const du::SmartPtr<zelk::View>& view,
                       const du::SmartPtr<zelk::Scene>& scene, bool hadLog, bool wasClashReport);
  void _RepaintCurrentLog();
  void _DeliverChangesOfCurrentLog();
  void _ClearChangesOf(const du::SmartPtr<zelk::Scene>& scene);

  SceneInfoLog* currentLog = nullptr;
  du::SmartPtr<zelk::BaseTree> baseTree;
  du::SmartPtr<zelk::World> world;
  du::SmartPtr<TreeStateBase> treeState;
  GuiInterface* guiInterface = nullptr;
  du::SmartPtr<zelk::View> currentView;
  std::map<du::SmartPtr<zelk::Scene>, SceneInfoLog*> sceneLogs;
  TreeController* treeController = nullptr;
  du::SmartPtr<ShapeViewObserver> shapeViewObserver;
  du::SmartPtr<dom::ManagedObject> managedObject;
  unsigned int assocHlightColor = 0;
  du::SmartPtr<zelk::SelectionManager> selectionManager;
  du::SmartPtr<SelectionObserver> selectionObserver;
  du::SmartPtr<AssocHlightObserver> assocHlightObserver;
  du::SmartPtr<MySceneManagerObserver> sceneManagerObserver;
  const std::shared_ptr<GuiTree*> m_liveness;
  const std::shared_ptr<unsigned int> m_populationCounter;
  /// How many bursts of tree events and selection updates have their bracket open.
  int m_openBrackets = 0;
};

}  // namespace guitree
