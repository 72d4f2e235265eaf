#pragma once

#include "dp/ReadWriteLock.h"
#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"
#include "zelk/BaseInstanceVisitor.h"
#include "zelk/Object.h"

namespace zelk {

class BaseTreeObserver;

/// A tree of instances. It belongs to one thread, its owner's, which alone edits it. Another thread reads it while it
/// holds the read side of the tree's lock; the owner takes the write side for each edit and no side for reading.
class BaseTree : public Object {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdBaseTree, "zelk::BaseTree", &Object::CLASS_TYPE};

  enum VisitType {
    /// Each instance once, parents before their children.
    VisitParentsFirst = 0,
  };

  /// Overwrites `out` with the one instance that has no parent; null for an empty tree. Any thread, without a lock.
  virtual void GetBaseRoot(du::SmartPtr<BaseInstance>& out) const = 0;
  /// Overwrites `out` with the number of instances, the root included. Constant cost.
  virtual void GetNumInstances(unsigned int& out) const = 0;
  /// Calls the visitor for each instance until it answers false; nothing for an empty tree. Owner's thread.
  virtual void Visit(BaseInstanceVisitor& visitor, VisitType type) const = 0;

  /// Owner's thread. False if the observer is not registered. Inside an open run of events the observer's `OnEndUpdate`
  /// is called first.
  virtual bool UnregisterObserver(BaseTreeObserver& observer) = 0;

  /// The tree's lock; null for a tree that only its owner reads.
  [[nodiscard]] virtual dp::ReadWriteLock* GetReadWriteLock() const = 0;

  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
