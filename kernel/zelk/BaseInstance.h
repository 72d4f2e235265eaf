#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "zelk/Object.h"
#include "zelk/PropertyValue.h"

namespace zelk {

class BaseTree;

/// A node of a kernel tree. The owner's thread reads it at any time; another thread reads it while it holds the read
/// side of the tree's lock. No getter takes that lock.
class BaseInstance : public Object {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdBaseInstance, "zelk::BaseInstance", &Object::CLASS_TYPE};

  /// First and second key of the instance. The pair is unique in its tree and never changes.
  [[nodiscard]] virtual du::Symbol GetInstanceKey() const = 0;
  /// Whether an instance without any shape source shows as an ordinary one.
  [[nodiscard]] virtual bool IsPlainIconInstance() const = 0;
  [[nodiscard]] virtual bool IsBodyInstance() const = 0;
  [[nodiscard]] virtual du::Symbol GetInstanceSubKey() const = 0;
  /// Overwrites `out` with the value of a property. Without such a property `out` is a value of the text `fallback`,
  /// and null when `fallback` is empty.
  virtual void GetPropertyValue(du::SmartPtr<PropertyValue>& out, const du::Symbol& group, const du::Symbol& name,
                                const du::Symbol& fallback) const = 0;

  /// Replaces `out` with the children in order; empty for a leaf. Costs the number of children.
  virtual void GetBaseChildren(std::vector<du::SmartPtr<BaseInstance>>& out) const = 0;
  /// With `GetBaseNextSibling` the way to walk children in order: both overwrite `out`, and leave it null at the end.
  /// Constant cost. `out` may be the holder of this instance and its last reference:
  /// `child->GetBaseNextSibling(child)` finds first and assigns last.
  virtual void GetBaseFirstChild(du::SmartPtr<BaseInstance>& out) const = 0;
  virtual void GetBaseNextSibling(du::SmartPtr<BaseInstance>& out) const = 0;
  /// Null at the top of the chain, and for an instance that has been taken out of its tree.
  virtual void GetBaseParent(du::SmartPtr<BaseInstance>& out) const = 0;
  /// Null for an instance without a tree. Any thread, without the lock, which is found by it: the answer may change at
  /// any time before the lock is held. A thread other than the owner's asks while the tree is kept alive. Where the
  /// answer is null because the instance has been taken out, everything below it has been taken out as well.
  virtual void GetBaseTree(du::SmartPtr<BaseTree>& out) const = 0;
  [[nodiscard]] virtual bool HasChildren() const = 0;
  /// Tells whether the list of children is still the one that somebody has looked through, so that nobody need look
  /// again. 0, the default, makes no promise. Any other value goes up by exactly one with each child that comes, and by
  /// more with each that goes, turns into a 3D symbol or ceases to be one (`Instance::Is3dSymbol`). It is never one
  /// that another instance at the same address has had. Who answers it announces a new child before the list changes
  /// again. Constant cost; owner's thread alone.
  [[nodiscard]] virtual std::uint64_t GetChildListRevision() const { return 0; }

  [[nodiscard]] const ClassType& GetClassTypes() const override;

  /// Adds to `out` all of `in` and all their descendants, each once, at the cost of their number. Null members are
  /// passed over. The two sets may be one.
  static void GetInstancesAndDescendents(const std::set<du::SmartPtr<BaseInstance>>& in,
                                         std::set<du::SmartPtr<BaseInstance>>& out);
};

}  // namespace zelk
