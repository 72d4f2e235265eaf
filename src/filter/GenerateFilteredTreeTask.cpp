#include "guitree/GenerateFilteredTreeTask.h"

#include <utility>

#include "guitree/GuiTree.h"
#include "guitree/TreeStateBase.h"

namespace guitree {

GenerateFilteredTreeTask::GenerateFilteredTreeTask(
    TreeStateBase* state, structure_utils::TreeFilterInfoBase& filterOfState,
    du::SmartPtr<TreeSelectionController> selection, du::SmartPtr<du::RefCounted> additional,
    const du::SmartPtr<zelk::BaseTree>& tree, const std::list<zelk::BaseInstance*>* list1,
    const std::list<zelk::BaseInstance*>* list2, bool addNonFilteredRoot, zelk::AsyncEvent* event)
    : asyncEvent(event),
      filter(filterOfState.Duplicate()),
      selController(std::move(selection)),
      additionalInfo(std::move(additional)),
      baseTree(tree)
{
  if (state) {
    filteredTree = du::SmartPtr<FilteredTree>(state->CreateFilteredTree());
    guiInterface = state->GetGuiTree().GetGuiInterface();
  }
  if (!filteredTree) {
    filteredTree = du::MakeSmart<FilteredTree>();
  }
  if (!filter->GetDynamicUpdate()) {
    for (const auto* list : {list1, list2}) {
      if (list) {
        notFilteredInsts.insert(list->begin(), list->end());
      }
    }
  }
  if (addNonFilteredRoot && baseTree) {
    du::SmartPtr<zelk::BaseInstance> root;
    baseTree->GetBaseRoot(root);
    // Nobody is spared where a root comes later: the filter was asked for without one.
    if (root) {
      notFilteredInsts.insert(root.Get());
    }
  }
}

GenerateFilteredTreeTask::GenerateFilteredTreeTask(const GenerateFilteredTreeTask&) = default;

GenerateFilteredTreeTask& GenerateFilteredTreeTask::operator=(const GenerateFilteredTreeTask&) = default;

GenerateFilteredTreeTask::~GenerateFilteredTreeTask()
{
  delete filter;
}

void GenerateFilteredTreeTask::Run()
{
  const bool isWanted = !asyncEvent || !asyncEvent->IsCanceled();
  if (isWanted) {
    _Build();
  }
  if (asyncEvent) {
    asyncEvent->Complete();
  }
}

void GenerateFilteredTreeTask::TaskComplete()
{
  filteredTree->_DisposeOfDiscarded();
}

void GenerateFilteredTreeTask::_Build()
{
  du::SmartPtr<zelk::BaseInstance> root;
  if (baseTree) {
    baseTree->GetBaseRoot(root);
  }
  if (root) {
    filteredTree->m_treeOfJob = baseTree.Get();
    filteredTree->BuildTree(*filter, std::move(root), selController, additionalInfo, notFilteredInsts, asyncEvent);
    filteredTree->m_treeOfJob = nullptr;
  }
}

du::SmartPtr<FilteredTree> GenerateFilteredTreeTask::GetFilteredTreeResult()
{
  return filteredTree;
}

}  // namespace guitree
