#pragma once

#include <vector>

#include "du/SmartPtr.h"
#include "guitree/TreeStateBase.h"
#include "zelk/BaseInstanceVisitor.h"

namespace guitree {

/// Gathers the instances of a tree for a population. It creates nothing itself: the kernel's walk has ended before the
/// host hears of the first row.
class TreeStateBase::AddNodeVisitor : public zelk::BaseInstanceVisitor {
public:
  /// Reserves room for all instances of `tree`.
  AddNodeVisitor(TreeStateBase* state, const zelk::BaseTree& tree,
                 const du::SmartPtr<TreeSelectionController>& controller)
      : owner(state), selController(controller)
  {
    unsigned int count = 0;
    tree.GetNumInstances(count);
    instances.reserve(count);
  }

  bool VisitInstance(const du::SmartPtr<zelk::BaseInstance>& instance) override
  {
    instances.push_back(instance);
    return true;
  }

  TreeStateBase* owner;
  std::vector<du::SmartPtr<zelk::BaseInstance>> instances;
  du::SmartPtr<TreeSelectionController> selController;
};

}  // namespace guitree
