#pragma once

#include <memory>
#include <vector>

#include "du/SmartPtr.h"
#include "guitree/FilterObserverBase.h"
#include "guitree/FilteredTree.h"
#include "structure_utils/TreeFilterInfoBase.h"
#include "zelk/BaseTree.h"

namespace guitree {

class GenerateFilteredTreeTask;
class GuiTree;
class TreeStateBase;

/// Runs the filter jobs of one `GuiTree` and keeps their latest result: a new request cancels the jobs under way and
/// starts at once, and the observers hear of the end of the last one. Owned by the `GuiTree`. Owner's thread.
class TreeController {
public:
  explicit TreeController(GuiTree* tree);
  /// Memberwise. A copy shares jobs and result with its source, which alone hears of the end of the jobs. The jobs that
  /// an assignment replaces are orphaned.
  TreeController(const TreeController&);
  TreeController& operator=(const TreeController&);
  /// Orphans the jobs under way: they run to their end, and their completion does nothing.
  ~TreeController();

  /// Appends; an observer that is added twice stands twice.
  void AddObserver(du::SmartPtr<FilterObserverBase> observer);
  /// Takes out the first entry of the observer, and leaves the order of the rest; nothing for an unknown one.
  void RemoveObserver(du::SmartPtr<FilterObserverBase> observer);

  /// Cancels all jobs under way, which leave only by completing, and starts one for the current tree of the `GuiTree`;
  /// without a tree, or a managed object with a message queue to complete it, there is none, and no word of it; neither
  /// is there one if its event has ended before this returns. Without a task pool it ends by itself, with an empty
  /// result; one that a pool refuses, as it may when its world ends, stays under way. The filter is duplicated.
  /// `state`, which must not be null, and the host are asked for what the run needs before this returns. A request from
  /// inside one of these questions overtakes this one, which then leaves no result. Costs the number of jobs under
  /// way, the lists of the host and what the filter's `Duplicate` costs; not the size of the tree.
  void ApplyFilterToTree(structure_utils::TreeFilterInfoBase& filter, TreeStateBase* state);

  /// Whether a job is under way.
  [[nodiscard]] bool IsBusy();
  /// The result of the job that completed last; null before the first.
  [[nodiscard]] du::SmartPtr<FilteredTree> GetFilteredTree();

protected:
  class TCAsyncEvent;

public:
  /// What smart pointers to the nested class use where only its declaration is visible: the new count, and whether the
  /// reference was the last one and the event has gone. Any thread. The event must not be null.
  static int AddSmartPtrReference(const TCAsyncEvent* event, void* owner);
  static bool AttemptDeleteSmartPtrReference(const TCAsyncEvent* event, void* owner);

protected:
  /// A job has ended, in whichever way: its result becomes the present one, also that of a cancelled job. The last one
  /// to end is told to the observers, in order; those that come on the way are told too. An observer may start another
  /// job, and may destroy the controller, after which no other observer is told.
  void _EventComplete(du::SmartPtr<TCAsyncEvent> event, bool isPlain);

private:
  friend int AddSmartPtrReference(const TCAsyncEvent* event, void* owner)
  {
    return TreeController::AddSmartPtrReference(event, owner);
  }
  friend bool AttemptDeleteSmartPtrReference(const TCAsyncEvent* event, void* owner)
  {
    return TreeController::AttemptDeleteSmartPtrReference(event, owner);
  }

  /// Whether the job of the event still stands: the host may have ended it, or the controller, when it was asked.
  [[nodiscard]] bool _IsUnderWay(const du::SmartPtr<TCAsyncEvent>& event) const;
  void _Orphan(TCAsyncEvent& event) const;
  void _CancelAll();
  static void _ShowProgress(const GuiTree& panel, const du::SmartPtr<TCAsyncEvent>& event);
  [[nodiscard]] static du::SmartPtr<GenerateFilteredTreeTask> _MakeTask(const GuiTree& panel,
                                                                        structure_utils::TreeFilterInfoBase& filter,
                                                                        TreeStateBase& state,
                                                                        const du::SmartPtr<zelk::BaseTree>& tree,
                                                                        const du::SmartPtr<TCAsyncEvent>& event);
  void _TellObservers();

  /// The panel that this controller belongs to.
  GuiTree* guiTree;
  /// Started and not completed, oldest first.
  std::vector<du::SmartPtr<TCAsyncEvent>> events;
  std::vector<du::SmartPtr<FilterObserverBase>> observers;
  du::SmartPtr<FilteredTree> filteredTree;
  /// The tree that `filteredTree` is a result of: branches of it may be opened after everybody else has let go.
  du::SmartPtr<zelk::BaseTree> m_filteredBaseTree;
  /// The job that ended last, until the observers hear of it.
  du::SmartPtr<GenerateFilteredTreeTask> m_untold;
  /// How many jobs have been started.
  unsigned int m_requests = 0;
  /// Tells those at work for this object whether it still lives; each object has one of its own.
  std::shared_ptr<const int> m_liveness;
};

}  // namespace guitree
