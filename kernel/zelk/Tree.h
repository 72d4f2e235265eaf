#pragma once

#include "zelk/BaseTree.h"
#include "zelk/Instance.h"

namespace zelk {

class TreeObserver;

/// The tree of a world, made of `Instance` nodes. Threads as for `BaseTree`.
class Tree : public BaseTree {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdTree, "zelk::Tree", &BaseTree::CLASS_TYPE};

  /// Overwrites `out`; null for an empty tree. Any thread, without a lock.
  virtual void GetRoot(du::SmartPtr<Instance>& out) const = 0;

  /// Owner's thread. From now on the observer is told of each edit, in brackets. With `replay` it is first told of all
  /// instances that exist, as if they were created. False, and nothing done, if it is registered already.
  virtual bool RegisterObserver(TreeObserver& observer, bool replay) = 0;

  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
