#pragma once

#include <list>
#include <vector>

#include "du/HashMap.h"
#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "guitree/FilteredTree.h"
#include "guitree/VisibleState.h"
#include "zelk/AsyncEvent.h"
#include "zelk/BaseInstance.h"
#include "zelk/Object.h"
#include "zelk/ProgressCtrl.h"
#include "zelk/Scene.h"
#include "zelk/ShapeInstance.h"
#include "zelk/ShapeScene.h"
#include "zelk/View.h"
#include "zelk/illustration/SbomInstance.h"

namespace guitree {

class SceneInfoLog;
class TreeSelectionController;
class TypeIconMap;

/// The host's side of a tree panel: `GuiTree` calls it for every change and asks it a few questions. The host derives
/// from it, owns it, and keeps it alive for longer than the `GuiTree`. Two operations are pure; all others have a
/// default that keeps the library on its main path, so a host overrides what it shows.
///
/// All calls come on the owner's thread. Rows are told by instance. Within a population they come in order, parents
/// before children; a parent may be an instance that has no row itself, since hidden instances keep their children.
/// Instances in the maps and sets that a host is given are identities: to be looked up, never dereferenced.
///
/// A host may call the `GuiTree`, its tree state and the kernel from inside its own callbacks: report scenes and views,
/// select, show and hide, populate, reset, close, put another state in place. That is carried out at once, and what was
/// under way goes on with what it then finds:
///
/// - A population that another one overtakes makes no further row, and what leaves the tree meanwhile gets none.
///   `InstanceCreate` for an instance that has a row means to update and move that row.
/// - A view change inside another one leaves one view observer and one selection binding; the outer one has the last
///   word on the rows.
/// - A burst of tree events whose observer goes closes the bracket that it has opened.
/// - The last reference to a counted `GuiTree` may go. No call comes after the `GuiTree` has ended.
///
/// Not supported: the end of the host itself inside one of its callbacks; reading the maps of a call after their scene
/// has been removed in it, or while they are changed; and edits of the kernel's tree that the kernel refuses, as it may
/// while it tells its observers of another one.
class GuiInterface {
public:
  class SceneManagerObserver;

  GuiInterface();
  /// Nothing is copied: a host's copy starts out anew, as does an assigned one.
  GuiInterface(const GuiInterface&);
  GuiInterface& operator=(const GuiInterface&);
  virtual ~GuiInterface();

  /// From `GuiTree::Initialise`. The host stores the observer, reports all scenes and views that exist through it, and
  /// from now on their changes. It may keep the reference for as long as it likes: after `GuiTree::Close` and after the
  /// next `GuiTree::Initialise` the old observer does nothing.
  virtual void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) = 0;

  /// Begin and end of a batch of edits. Brackets nest. A finish may come without a start, so a host that counts clamps
  /// at zero.
  virtual void StartTreeUpdate();
  virtual void FinishTreeUpdate();

  /// All rows go. Before each refill, and the last word for a panel that is not visible.
  virtual void ClearTree();
  /// Once in `GuiTree::Initialise`, after the selection manager is bound and before the tree is observed.
  virtual void InitialiseBeforePopulate();
  /// The view has changed and the rows have stayed: read the selection again.
  virtual void RefreshSelection();
  /// Last call of a view change that kept the rows. `view` is the new one, which may be null; `wasClashReport` tells
  /// that the one before was a `zelk::ClashReportView`.
  virtual void PostOnActiveViewChanged(const du::SmartPtr<zelk::View>& view, bool wasClashReport);
  /// What a status bar tells of panel and selection may have changed.
  virtual void UpdateStatusBar();
  /// What the controls of the filter show may have changed.
  virtual void UpdateFilterUI();
  /// The table of rows is complete again.
  virtual void UpdateTreeTable();
  /// A view change is being processed; nothing has been decided yet about the rows.
  virtual void ViewChangeUpdaeFilterUI();
  /// Names of rows have changed in a batch.
  virtual void UpdateNodeNames();
  /// For the host's own use.
  virtual void CheckAltPartNamePrefs();
  /// The rows are about to be sorted anew: read by which column.
  virtual void LoadSortingPrefs();
  /// What tooltips tell of scenes has changed.
  virtual void UpdateTooltips();

  /// Rows have changed their look: repaint the entries of the two change maps, and read their present state from the
  /// full maps, where an instance without a visible state is hidden. No map is kept.
  virtual void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, VisibleState>* visibleMap,
                                           const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap,
                                           TypeIconMap* typeIconMap,
                                           const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap) = 0;
  /// Repaint all rows. Both arguments are null when no scene is shown.
  virtual void UpdateVisAndTypeIcons(const du::HashMap<const zelk::BaseInstance*, VisibleState>* visibleMap,
                                     TypeIconMap* typeIconMap);

  /// With true, a null view and false: last call of a population. With false, the view and true: a filter is about to
  /// be made.
  virtual void UpdateQuickSearchResults(bool populated, const du::SmartPtr<zelk::View>& view, bool filterNeeded);
  /// Instances of a scene have come out of step with their source, or are in step again.
  virtual void UnsyncInstances(bool unsynced);

  /// First call of a population; `keepExpanded` tells that the same content is rebuilt after a change. The two below
  /// are its counterparts once the rows are in.
  virtual void StoreExpandedAndFirstVisibleBeforePopulate(bool keepExpanded);
  virtual void RestoreExpandedAfterPopulate();
  /// After the bracket of the population is closed.
  virtual void RestoreFirstVisible();

  /// The result of a filter has been written.
  virtual void PostProcessingComplete();
  /// Whether the properties that a filter looks at are loaded; on false a filtered population waits. True by default.
  virtual bool CheckPropsLoaded();
  /// The name or the type of a row may have changed: show it. True asks for a repopulate, since it cannot be shown in
  /// place. False by default.
  virtual bool CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance);
  /// False on every hide; true when the panel is shown again, selection work is waiting and the rows have stayed: read
  /// the selection again.
  virtual void MadeVisible(bool visible);

  /// The selection has changed.
  virtual void SelectItems(std::vector<du::SmartPtr<zelk::Object>>& items);
  virtual void DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& items);
  virtual void ClearSelection();
  /// Turns the associated highlight of an instance on or off; the instance may have no row, and when it is turned off
  /// it may have ended. The result is not looked at.
  virtual bool SetAssocHlight(zelk::BaseInstance* instance, bool on);

  /// A row for a node of a filtered tree; parent and position are read from the node, which is good until the next
  /// `ClearTree`. A host that wants it for longer holds `GuiTree::GetFilteredTree()`. `assocHlight` tells that the row
  /// starts with the associated highlight. `controller`, which may be null, answers whether it is selected.
  virtual void InstanceCreate(FilteredTree::Node* node, const du::SmartPtr<TreeSelectionController>& controller,
                              bool assocHlight);
  /// A row for an instance, last under `parent`, which is null for the root. Hosts are idempotent by instance: for one
  /// that has a row already, the row is updated and moved.
  virtual void InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& parent,
                              const du::SmartPtr<TreeSelectionController>& controller, bool assocHlight);
  /// The row goes, and with it those of all that is below the instance in the kernel's tree, wherever they stand.
  /// `repopulatePending` tells that the tree is refilled anyway.
  virtual void InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& parent, bool repopulatePending);

  /// Whether the icon of a row depends on its shape instance being there. False by default.
  virtual bool HasTypeIconChangedOnShapeInstanceRemove(SceneInfoLog* log,
                                                       const du::SmartPtr<zelk::ShapeInstance>& shapeInstance);
  /// The instances that a filter must spare, in two lists, the second one asked first. Null for none. The list stays
  /// the host's; it is read at once and not kept.
  virtual std::list<zelk::BaseInstance*>* GetNonFilteredInsts1();
  virtual std::list<zelk::BaseInstance*>* GetNonFilteredInsts2();
  /// What all names are made of has changed.
  virtual void UpdateDisplayNames();
  /// The type of a view, as the name under which its filter is kept. "Unknown" by default, also for a null view.
  [[nodiscard]] virtual du::Symbol GetViewTypeString(const du::SmartPtr<zelk::View>& view) const;
  /// The panel shows nothing any more.
  virtual void Reset();
  /// Whether the panel is on the screen. While it is not, the library defers its work; hosts change their answer before
  /// they call `TreeStateBase::MadeVisible(true)`. True by default.
  [[nodiscard]] virtual bool IsTreeVisibleInUI() const;
  /// A control for the progress of a filter job; null, the default, for none. The event may be kept, listened to and
  /// cancelled, at any time. It must not be completed: the worker does that, with its last touch of the job, and a host
  /// that comes before it takes the job away from under a worker that reads on. Completed inside this call, or inside
  /// any other that comes before the job is there, it leaves the panel without one.
  virtual du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event);
  /// The branch of this node can be opened.
  virtual void FilterNodeCreate(FilteredTree::Node* node);
  /// Whether rows show names that come from properties which may be loaded late. False by default.
  [[nodiscard]] virtual bool IsShowingAltPartNames() const;
  /// The new view and its selection manager are in place.
  virtual void CurrentViewChanged();
  /// The rows are not those of before any more.
  virtual void ContentHasChanged();
  /// Whether the panel is for this view, which may be null. On false the view change, or the population, is ignored.
  /// True by default.
  virtual bool IsValidView(const du::SmartPtr<zelk::View>& view);
  /// Mark the rows that belong to the scene, which may be null.
  virtual void UpdateMarkedInsts(const du::SmartPtr<zelk::ShapeScene>& scene);
  /// True: the rows are being worked out in the background and come later. False: that has ended.
  virtual void SetTreeCalculating(bool calculating);

  /// For the host's own use.
  virtual void InstanceMoved(const du::SmartPtr<zelk::illustration::SbomInstance>& instance,
                             const du::SmartPtr<TreeSelectionController>& controller);
  /// For the host's own use; null by default.
  [[nodiscard]] virtual du::SmartPtr<zelk::View> GetCS3DView() const;
  [[nodiscard]] virtual du::SmartPtr<zelk::View> GetCSSchView() const;
  /// A view change is about to refill the rows.
  virtual void CheckListTypeCorrect();

  /// What smart pointers to the nested class use where only its declaration is visible. The first adds a reference and
  /// returns the count; the second takes one away and returns true if that destroyed the object.
  static int AddSmartPtrReference(const SceneManagerObserver* observer, void* owner);
  static bool AttemptDeleteSmartPtrReference(const SceneManagerObserver* observer, void* owner);

private:
  friend int AddSmartPtrReference(const SceneManagerObserver* observer, void* owner)
  {
    return GuiInterface::AddSmartPtrReference(observer, owner);
  }
  friend bool AttemptDeleteSmartPtrReference(const SceneManagerObserver* observer, void* owner)
  {
    return GuiInterface::AttemptDeleteSmartPtrReference(observer, owner);
  }
};

/// Through this the host reports its scenes and views. Handed out by `GuiInterface::SetSceneManagerObserver`. Owner's
/// thread.
class GuiInterface::SceneManagerObserver : public virtual du::RefCounted {
public:
  ~SceneManagerObserver() override;
  [[nodiscard]] bool ZeroReferenceCountHook() const override;

  /// Another view has become active; null when there is none any more.
  virtual void OnActiveViewChanged(const du::SmartPtr<zelk::View>& view);
  virtual void OnSceneRemoved(const du::SmartPtr<zelk::Scene>& scene);
  virtual void OnSceneAdded(const du::SmartPtr<zelk::Scene>& scene);
  virtual void OnViewRemoved(const du::SmartPtr<zelk::View>& view);
};

}  // namespace guitree
