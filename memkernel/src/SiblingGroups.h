#pragma once

#include <unordered_map>

#include "SiblingIndex.h"

namespace memkernel {

/// Keeps the marks of the multi-instanced siblings of one tree true, so that reading them costs nothing and needs no
/// more than the read side of the lock. Edits: owner's thread, under the write side.
class SiblingGroups {
public:
  /// After `child` has been linked below `parent`.
  void OnLinked(Instance& parent, Instance& child);
  /// Before `child` is unlinked from `parent`.
  void OnUnlinking(Instance& parent, Instance& child);
  /// For a parent that leaves the tree with its children, whose marks stay.
  void Forget(Instance& parent);
  /// The first instance of a product below a parent with a long list. Under the read side.
  [[nodiscard]] const Instance* GetFirst(const Instance& parent, const Product& product) const;

private:
  static void _MarkGroup(const Instance& parent, const Product& product, const Instance* left);

  std::unordered_map<const Instance*, SiblingIndex> m_indexes;
};

}  // namespace memkernel
