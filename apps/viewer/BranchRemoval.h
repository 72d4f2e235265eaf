#pragma once

#include <cstddef>
#include <vector>

#include "du/SmartPtr.h"
#include "memkernel/Instance.h"
#include "memkernel/Tree.h"

namespace viewer {

/// Takes a branch out of the tree, a portion at a time: what is below an instance goes before it. What others take out
/// meanwhile is passed over. Owner's thread.
class BranchRemoval {
public:
  explicit BranchRemoval(memkernel::Tree& tree) : m_tree(&tree) {}

  /// Null for nothing.
  void Begin(const du::SmartPtr<memkernel::Instance>& top);
  /// Goes `count` steps, of which an instance takes two at most, and answers whether more are to come.
  [[nodiscard]] bool GoOn(std::size_t count);

private:
  using Instance = du::SmartPtr<memkernel::Instance>;

  void _GoOneStep();

  const du::SmartPtr<memkernel::Tree> m_tree;
  /// From the top down to the instance that is looked at.
  std::vector<Instance> m_path;
};

}  // namespace viewer
