#pragma once

#include <list>
#include <set>

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "du/Task.h"
#include "guitree/FilteredTree.h"
#include "guitree/TreeSelectionController.h"
#include "structure_utils/TreeFilterInfoBase.h"
#include "zelk/AsyncEvent.h"
#include "zelk/BaseInstance.h"
#include "zelk/BaseTree.h"

namespace guitree {

class GuiInterface;
class TreeStateBase;

/// One run of a filter: takes a copy of all that it needs on the owner's thread, builds a `FilteredTree` on a worker
/// and completes its event there. It lives on with its event, as the holder of the result.
class GenerateFilteredTreeTask : public du::Task {
public:
  /// Owner's thread. The filter is duplicated, and the two lists are read at once: the instances that the filter must
  /// spare, ignored if it follows changes (`GetDynamicUpdate`). `addNonFilteredRoot` spares the root in any case, if
  /// there is one. Each pointer may be null; `event` is not owned and must outlive the run.
  GenerateFilteredTreeTask(TreeStateBase* state, structure_utils::TreeFilterInfoBase& filterOfState,
                           du::SmartPtr<TreeSelectionController> selection, du::SmartPtr<du::RefCounted> additional,
                           const du::SmartPtr<zelk::BaseTree>& tree, const std::list<zelk::BaseInstance*>* list1,
                           const std::list<zelk::BaseInstance*>* list2, bool addNonFilteredRoot,
                           zelk::AsyncEvent* event);
  /// Memberwise. The copy shares the duplicated filter, which each would delete: a task is not to be copied once it has
  /// one, and a constructed task has one.
  GenerateFilteredTreeTask(const GenerateFilteredTreeTask&);
  GenerateFilteredTreeTask& operator=(const GenerateFilteredTreeTask&);
  ~GenerateFilteredTreeTask() override;

  /// Worker. Cancelled before it starts, or without a tree or a root, it leaves the result as it was made: empty.
  /// Completes the event in every case, plainly, and touches neither event nor task afterwards.
  void Run() override;
  /// What a cancelled run had built is taken apart, by a task of its own where that is much.
  void TaskComplete() override;
  /// Never null. Owner's thread, after the event has completed.
  [[nodiscard]] virtual du::SmartPtr<FilteredTree> GetFilteredTreeResult();

  [[nodiscard]] du::SmartPtr<zelk::BaseTree> GetBaseTree() const { return baseTree; }
  /// The host of the state's `GuiTree` when the run was asked for; null without a state.
  [[nodiscard]] GuiInterface* GetGuiInterface() const noexcept { return guiInterface; }

protected:
  [[nodiscard]] const std::set<zelk::BaseInstance*>& _GetNotFilteredInsts() const noexcept { return notFilteredInsts; }

private:
  void _Build();

  zelk::AsyncEvent* asyncEvent;
  /// Owned.
  structure_utils::TreeFilterInfoBase* filter;
  du::SmartPtr<TreeSelectionController> selController;
  du::SmartPtr<du::RefCounted> additionalInfo;
  du::SmartPtr<FilteredTree> filteredTree;
  du::SmartPtr<zelk::BaseTree> baseTree;
  std::set<zelk::BaseInstance*> notFilteredInsts;
  GuiInterface* guiInterface = nullptr;
};

}  // namespace guitree
