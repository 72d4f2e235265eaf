#pragma once

#include <cstddef>
#include <unordered_map>

#include "memkernel/Instance.h"

namespace memkernel {

/// Keeps the groups of a long list of children: without it each edit would look at all of them. Made and kept by
/// `SiblingGroups`, under the write side of the tree's lock; `GetFirst` needs the read side.
///
/// Of each group the first, the last and the number are known. That is enough to append, and to remove any but the
/// first and the last. Only when a neighbour in the group has to be looked for too far away, the groups are chained.
class SiblingIndex {
public:
  /// Enters all children of `parent`, and marks them.
  explicit SiblingIndex(const Instance& parent);

  /// After `child` has been linked.
  void Enter(Instance& child);
  /// Before `child` is unlinked.
  void Leave(Instance& child);
  [[nodiscard]] std::size_t GetChildCount() const noexcept { return m_childCount; }
  /// Null for a product without instances in the list.
  [[nodiscard]] const Instance* GetFirst(const Product& product) const;

private:
  struct Group {
    Instance* first = nullptr;
    Instance* last = nullptr;
    std::size_t count = 0;
  };
  /// The members of the group before and after an instance. Without the chain, those that are not needed stay null.
  struct Neighbours {
    Instance* previous = nullptr;
    Instance* next = nullptr;
  };

  void _Enter(Group& group, Instance& child, const Neighbours& place);
  [[nodiscard]] Neighbours _FindPlace(const Group& group, const Instance& child) const;
  [[nodiscard]] Neighbours _CompletePlace(Instance* previous, Instance* next) const;
  [[nodiscard]] Instance* _FindNext(const Group& group, const Instance& child);
  [[nodiscard]] Instance* _FindPrevious(const Group& group, const Instance& child);
  void _BuildChain();
  void _Chain(Instance& child, const Neighbours& place);
  void _Unchain(const Instance& child);

  const Instance& m_parent;
  std::size_t m_childCount = 0;
  std::unordered_map<const Product*, Group> m_groups;
  bool m_isChained = false;
  std::unordered_map<const Instance*, Neighbours> m_chain;
};

}  // namespace memkernel
