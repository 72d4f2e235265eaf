#pragma once

#include <list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "guitree/FilterObserverBase.h"
#include "guitree/FilteredTree.h"
#include "guitree/TreeSelectionController.h"
#include "structure_utils/TreeFilterInfoBase.h"
#include "zelk/BaseInstanceVisitor.h"
#include "zelk/BaseTree.h"
#include "zelk/Scene.h"
#include "zelk/SelectionItem.h"
#include "zelk/ShapeInstance.h"
#include "zelk/ShapeScene.h"
#include "zelk/View.h"

namespace guitree {

class FormerRows;
class GuiInterface;
class GuiTree;
class SceneInfoLog;

/// What one tree panel shows, and how it is filled. A host derives from it, or takes one of the states that come with
/// the library, and hands it to `GuiTree::SetTreeState`. It must be held by a `du::SmartPtr` and may outlive its
/// `GuiTree`: its operations then do nothing and answer null or false. Owner's thread.
class TreeStateBase : public virtual du::RefCounted {
public:
  class FilterObserver;

  /// `tree` must have its controller, as every constructed `GuiTree` has; the state listens on it from now on.
  explicit TreeStateBase(GuiTree& tree);
  /// Memberwise. A copy shares the listener on the controller, which goes on to serve the source, and the destruction
  /// of either ends it.
  TreeStateBase(const TreeStateBase&);
  TreeStateBase& operator=(const TreeStateBase&) = delete;
  ~TreeStateBase() override;

  /// The tree to show for a view, which may be null; null for none.
  virtual du::SmartPtr<zelk::BaseTree> Initialise_GetZelkTree(const du::SmartPtr<zelk::View>& view) = 0;
  /// A controller for the selection; null when there is no selection. `forRows` tells that rows are about to be made.
  [[nodiscard]] virtual du::SmartPtr<TreeSelectionController> GetSelController(bool forRows) const = 0;
  [[nodiscard]] virtual bool HaveSelController() const = 0;
  [[nodiscard]] virtual bool HasInstGotThumbnail(const du::SmartPtr<zelk::BaseInstance>& instance) const = 0;
  /// Begins to observe the current tree; a second call replaces the first observer.
  virtual void CreateAndRegisterTreeObserver() = 0;
  virtual void DeregisterTreeObserver() = 0;
  [[nodiscard]] virtual bool IsInstLoaded(const zelk::BaseInstance* instance) = 0;
  /// Whether the root instance stands in the displayed tree of a filter. True by default. The root's row is made in
  /// either case.
  [[nodiscard]] virtual bool GetDisplayRoot();
  /// Adds to `out` the instances that rows stand for, of those that kernel objects are.
  virtual void GetBaseInstFromSelItems(const std::vector<du::SmartPtr<zelk::Object>>& items,
                                       std::set<zelk::BaseInstance*>& out);
  /// A tree of an own class for the next filter job; null, the default, for a plain one. The caller owns it.
  [[nodiscard]] virtual FilteredTree* CreateFilteredTree();
  [[nodiscard]] virtual bool IsDoingFilterAsList();
  /// A new log for a scene, which the caller owns.
  [[nodiscard]] virtual SceneInfoLog* CreateSceneInfoLog() = 0;
  virtual bool UpdateSceneInfoLog_OnSceneRemoved(const du::SmartPtr<zelk::Scene>& scene);
  /// Events of a shape instance for the log of its scene. True, of those that answer, asks for a repaint of all rows at
  /// the end of the scene's update.
  virtual bool UpdateSceneInfoLog_OnShapeInstanceCreate(SceneInfoLog* log,
                                                        const du::SmartPtr<zelk::ShapeInstance>& shapeInstance);
  virtual bool UpdateSceneInfoLog_OnShapeInstanceRemove(SceneInfoLog* log,
                                                        const du::SmartPtr<zelk::ShapeInstance>& shapeInstance);
  virtual void UpdateSceneInfoLog_OnShapeInstanceVisibility(SceneInfoLog* log,
                                                            const du::SmartPtr<zelk::ShapeInstance>& shapeInstance,
                                                            bool visible);
  virtual void UpdateSceneInfoLog_OnInstanceCompared(SceneInfoLog* log,
                                                     const du::SmartPtr<zelk::ShapeInstance>& shapeInstance);
  /// The icon of an instance apart from its being loaded; `scene` may be null.
  [[nodiscard]] virtual int GetUnloadedTypeIcon(const zelk::BaseInstance* instance,
                                                const du::SmartPtr<zelk::Scene>& scene) = 0;
  /// For hosts that put more into an icon; true if `icon` was changed.
  virtual bool DoAdditionalUpdateIcons(const zelk::BaseInstance* instance, const du::SmartPtr<zelk::Scene>& scene,
                                       int& icon);
  /// Whether an instance shows as loaded while no scene is shown. True by default.
  [[nodiscard]] virtual bool ShowLoadedNoLog(const zelk::BaseInstance* instance) const;

  /// Refills the host's rows from the current tree; nothing at all without one. `keepExpanded` tells that the same
  /// content is rebuilt after a change; it only goes on to the host.
  ///
  /// On a panel that is not visible, or not for the current view, the rows are cleared and `GetTreeNeedsRedraw` becomes
  /// true. With a filter that is on, the rows come later: the host is told that they are being worked out. Otherwise
  /// one row is made for each instance that is not hidden, in the order in which the kernel visits its tree, parents
  /// first. The visit ends before the first row is made, and all calls stand in one bracket. A host may edit the tree,
  /// or populate again, from inside these calls: what has gone by then gets no row, and the last population makes them.
  virtual void PopulateTree(bool keepExpanded);
  /// Forgets what stands in the host's tree and tells the host; no host, no call.
  virtual void Reset();
  /// The selected instances replace `out`; with `withDescendents` they and all below them are added to it. Without a
  /// controller `out` stays as it was.
  virtual void GetSelectedComps(std::set<du::SmartPtr<zelk::BaseInstance>>& out, bool withDescendents);

  /// An instance has come: makes its row at once, unless a filter is on. A filter is never patched: one that follows
  /// changes asks for a repopulate, and one that does not asks for it only if `parent` has a row. `selController` may
  /// be null. True asks for a repopulate.
  virtual bool InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& parent,
                              const du::SmartPtr<TreeSelectionController>& selController);
  /// An instance has gone, with what is below it: forgets all of it and tells the host of the topmost, unless a filter
  /// follows changes, which leaves the work to the repopulate. `repopulatePending` goes on to the host. True asks for a
  /// repopulate; it comes for every instance that had a row, although the row has gone. An instance without a row
  /// changes nothing: rows below it go by their own announcements. Costs the number of descendants.
  virtual bool InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& parent, bool repopulatePending);

  /// Takes the root out of the matches of a result, if it is not displayed. `tree` may be null.
  virtual void RemoveHiddenNotFilteredItems(const du::SmartPtr<FilteredTree>& tree);
  /// Opens a placeholder of the result that is shown: `path` leads from the top of the filtered tree to the node whose
  /// last child it is, both included. The children of that node that have no node yet get rows, with all that is below
  /// them, unfiltered; before them those of a leaf that stands right before the placeholder. They come from the kernel,
  /// or from the result of the hidden pass where a visible one went over that. True once the branch is open, also when
  /// nothing has come. False, without a host call, while the state is busy, without a result, and for a path that leads
  /// nowhere or to a node without a placeholder. It works on the last result also after the filter has been turned off,
  /// and while the job of that filter runs on.
  /// Costs the new rows, the siblings that are searched along the path, and the children of the node and of its source.
  /// From inside the visit of a result it makes its rows at once, and the visit does not make them again where the row
  /// of the node stands already.
  virtual bool ExpandFilterNode(const std::list<zelk::BaseInstance*>& path);

  /// A change of the selection, in brackets of begin and end. While the panel is not visible only a flag is set: what
  /// to catch up with is the selection itself and not a queue. Under a filter that shows the selection the end of the
  /// update repopulates, and the single changes do nothing.
  virtual void OnBeginUpdate();
  virtual void OnEndUpdate();
  virtual void OnInsertItems(std::vector<du::SmartPtr<zelk::Object>>& items);
  virtual void OnRemoveItems(std::vector<du::SmartPtr<zelk::Object>>& items);
  virtual void OnClearSelection();
  /// A change of the associated highlight. True when it has been applied; false while a filter job runs, which drops
  /// it, and while the panel is not visible, which defers it.
  virtual bool OnAssocHlightChanged(bool clearFirst, const std::vector<du::SmartPtr<zelk::SelectionItem>>& removed,
                                    const std::vector<du::SmartPtr<zelk::SelectionItem>>& added);

  /// What a filter gets beyond the instance; null by default.
  [[nodiscard]] virtual du::SmartPtr<du::RefCounted> GetAdditionalFilterInfo() const;
  /// The filter for a view, which may be null. The reference is never kept beyond the operation that asks for it, but a
  /// population calls the host meanwhile: the object must stay until `PopulateTree` has returned.
  [[nodiscard]] virtual structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& view) = 0;
  /// Whether an instance gets no row. Its children are asked about by themselves. False by default.
  [[nodiscard]] virtual bool IsInstHidden(zelk::BaseInstance* instance) const;
  [[nodiscard]] virtual bool HasNoneHiddenChildren(const du::SmartPtr<zelk::BaseInstance>& instance) const;
  /// May replace the view that is about to become current.
  virtual void OverrideActiveViewAfterChange(du::SmartPtr<zelk::View>& view);
  [[nodiscard]] virtual bool GetNeedsUpdate(const du::SmartPtr<zelk::Scene>& scene) const;
  virtual void CheckAltPartNamePrefs();
  [[nodiscard]] virtual bool IsCompatibleShapeSceneType(const du::SmartPtr<zelk::Scene>& scene);
  [[nodiscard]] virtual bool IsTooltipsUpdateNeeded(const du::SmartPtr<zelk::Scene>& scene) const;

  /// The panel has been shown or hidden. What was deferred while it was hidden is caught up with when it is shown:
  /// a population that was due redoes everything, otherwise highlight and selection are refreshed. `IsTreeVisibleInUI`
  /// is not asked.
  virtual void MadeVisible(bool visible);
  [[nodiscard]] virtual bool IsCompatibleViewType(const du::SmartPtr<zelk::View>& view) const;
  [[nodiscard]] virtual bool ReloadOnViewChange(const du::SmartPtr<zelk::View>& view) const;

  /// Not to be called after the `GuiTree` has gone.
  [[nodiscard]] GuiTree& GetGuiTree() const noexcept { return guiTree; }
  /// Every instance that has been handed to the host since the last clear, as identities.
  [[nodiscard]] const std::set<const zelk::BaseInstance*>& GetNotFilteredSet() const noexcept { return notFilteredSet; }
  [[nodiscard]] bool GetSelectionNeedsUpdating() const noexcept { return selectionNeedsUpdating; }
  [[nodiscard]] bool GetAssocHlightsNeedsUpdating() const noexcept { return assocHlightsNeedsUpdating; }
  /// Whether rows are still to come: from a filter job, or from a filtered population that waits for properties. A
  /// population without a filter, and a reset, end it, although a job that is under way runs on;
  /// `TreeController::IsBusy` tells of jobs.
  [[nodiscard]] bool IsBusy() const noexcept { return busy; }
  /// Whether the last population could not fill the host.
  [[nodiscard]] bool GetTreeNeedsRedraw() const noexcept { return treeNeedsRedraw; }
  [[nodiscard]] bool IsAssocHlight(zelk::BaseInstance* instance) const;

  /// Null without a current tree.
  [[nodiscard]] du::SmartPtr<zelk::BaseInstance> GetBaseRoot() const;
  /// The log of the scene that is shown; may be null.
  [[nodiscard]] SceneInfoLog* GetCurInfoLog();
  /// Null for a scene without a log.
  [[nodiscard]] SceneInfoLog* GetLog(const du::SmartPtr<zelk::ShapeScene>& scene) const;
  /// Whether the filter of the current view is on.
  [[nodiscard]] bool IsFiltered();
  /// Tells the logs and the host that name or type of an instance may have changed. True asks for a repopulate; false
  /// for an instance that is not in the host's tree, of which nobody is told.
  bool CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance);

  /// Redraws all rows that carry the associated highlight.
  void RefreshAssocHlights();
  /// Adds the highlights that are missing; those that are shown get no call.
  void OnAssocHlightColorChange();

  /// What smart pointers to the nested class use where only its declaration is visible.
  static int AddSmartPtrReference(const FilterObserver* observer, void* owner);
  static bool AttemptDeleteSmartPtrReference(const FilterObserver* observer, void* owner);

protected:
  class VisitScope;

  /// Makes the row of an instance under `parent`, which is null for the root, unless the instance is hidden.
  virtual void _InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                               const du::SmartPtr<zelk::BaseInstance>& parent,
                               const du::SmartPtr<TreeSelectionController>& selController);
  /// The same for a node of a filtered tree, which tells its place.
  virtual void _InstanceCreate(FilteredTree::Node* node, const du::SmartPtr<TreeSelectionController>& selController);
  /// Makes the rows of a branch of a filtered tree, parents first; a placeholder is announced with its parent. A
  /// derived class may call it at any time; inside the visit of a result it makes nothing more once a new population
  /// has overtaken that visit. Calls itself for each child, so that the depth of the tree costs stack: 64 bytes a level
  /// with GCC on x86-64, which is some 120,000 levels on a stack of 8 MB, and 80,000 under AddressSanitizer. A derived
  /// class that replaces it adds its own frame to each level.
  virtual void _VisitFilteredTreeNode(FilteredTree::Node* node,
                                      const du::SmartPtr<TreeSelectionController>& selController);
  /// The last filter job under way has ended: makes the rows of its result. One of another tree, or while another state
  /// is current, makes none, but ends the calculating mark of the host. `gui` is the host of that job.
  void OnProcessingComplete(const du::SmartPtr<zelk::BaseTree>& tree, GuiInterface* gui);
  /// The present result of the filter jobs. Without a controller `out` stays as it was.
  void GetFilteredTree(du::SmartPtr<FilteredTree>& out) const;
  /// An instance with those that come below it, for `_ApplyInfos`.
  struct InstanceInfo {
    du::SmartPtr<zelk::BaseInstance> instance;
    std::vector<InstanceInfo> children;
  };
  /// Makes a row for each record of `infos`, a `std::vector<InstanceInfo>`, parents first. For derived classes.
  void _ApplyInfos(void* infos, const du::SmartPtr<TreeSelectionController>& selController);
  /// Turns on or off what the controller names; nothing without a controller.
  virtual void UpdateAssocHighlights(bool on);
  /// The same for the instances behind selection items, in order; other items are passed over.
  virtual void SetAssocHlight(const std::vector<du::SmartPtr<zelk::SelectionItem>>& items, bool on);
  void SetAssocHlight(const std::set<du::SmartPtr<zelk::BaseInstance>>& instances, bool on);
  /// One instance, without a bracket. The host is called only if this changes what is recorded.
  void SetAssocHlight(zelk::BaseInstance* instance, bool on);
  void ClearAssocHighlights();

  void SetBusy(bool isBusy);
  [[nodiscard]] structure_utils::TreeFilterInfoBase& _GetCurrentFilter();
  /// For visits of a result: whether a newer population has taken over the rows, and whether an instance has left the
  /// tree meanwhile. Both false outside of a visit.
  [[nodiscard]] bool _IsVisitOvertaken() const noexcept;
  [[nodiscard]] bool _HasGoneMeanwhile(const zelk::BaseInstance* instance) const;
  /// False once the `GuiTree` has ended.
  [[nodiscard]] bool _HasGuiTree() const noexcept { return *m_livingGuiTree != nullptr; }

private:
  class AddNodeVisitor;

  friend int AddSmartPtrReference(const FilterObserver* observer, void* owner)
  {
    return TreeStateBase::AddSmartPtrReference(observer, owner);
  }
  friend bool AttemptDeleteSmartPtrReference(const FilterObserver* observer, void* owner)
  {
    return TreeStateBase::AttemptDeleteSmartPtrReference(observer, owner);
  }

  [[nodiscard]] GuiInterface& _Gui() const;
  [[nodiscard]] bool _IsFilteringSelectionDynamically();
  [[nodiscard]] bool _DeferSelectionUpdate();
  [[nodiscard]] bool _Refill();
  [[nodiscard]] bool _CanShowRows();
  void _StartFilteredPopulation(structure_utils::TreeFilterInfoBase& filter, unsigned int population);
  [[nodiscard]] bool _RecordRow(zelk::BaseInstance* instance,
                                const du::SmartPtr<TreeSelectionController>& selController, bool& assocHlight);
  void _ShowResult(FilteredTree& tree, unsigned int population);
  void _VisitBranches(const std::list<FilteredTree::Node*>& branches, unsigned int population);
  [[nodiscard]] bool _IsOpenedMeanwhile(const FilteredTree::Node* node) const;
  void _NoteOpened(const std::list<FilteredTree::Node*>& branches, const du::SmartPtr<FilteredTree>& tree);
  void _NoteGone(const du::SmartPtr<zelk::BaseInstance>& instance);
  void _ForgetShown(const du::SmartPtr<zelk::BaseInstance>& instance);
  void _CreateRows(const zelk::BaseTree& tree, unsigned int population);

  GuiTree& guiTree;
  du::SmartPtr<FilterObserver> filterObserver;
  std::set<const zelk::BaseInstance*> notFilteredSet;
  bool selectionNeedsUpdating = false;
  bool assocHlightsNeedsUpdating = false;
  bool busy = false;
  bool treeNeedsRedraw = false;
  std::set<zelk::BaseInstance*> assocHlightSet;
  /// The record of the rows before the population under way, until the rows of its filter stand.
  std::shared_ptr<FormerRows> m_formerRows;
  /// Counts what takes all rows away, by any state of the panel. The rows of a population that another one has
  /// overtaken are not made.
  const std::shared_ptr<unsigned int> m_population;
  /// The last one that this state has begun.
  unsigned int m_ownPopulation = 0;
  /// The population that the visit of a filtered tree under way makes rows for; nothing while none is.
  std::optional<unsigned int> m_visitedPopulation;
  /// Branches that the host has opened from inside that visit, which has their rows behind it: each with its tree, so
  /// that no other node takes its address. Empty while no visit is under way.
  std::map<const FilteredTree::Node*, du::SmartPtr<FilteredTree>> m_openedMeanwhile;
  /// What has left the tree since the population under way has gathered its instances, held so that no new instance
  /// takes its address; nothing while none is.
  std::optional<std::map<const zelk::BaseInstance*, du::SmartPtr<zelk::BaseInstance>>> m_goneMeanwhile;
  /// Shared with the `GuiTree`, which puts null there when it ends.
  std::shared_ptr<GuiTree* const> m_livingGuiTree;
};

}  // namespace guitree
