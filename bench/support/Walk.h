#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"
#include "zelk/BaseTree.h"

namespace bench {

/// Calls `enter(instance, depth)` for each instance, depth first and parents first, by first child and next sibling
/// alone and without recursion. The root has depth 0. Returns the number of instances.
template <typename Enter>
std::size_t WalkDepthFirst(const zelk::BaseTree& tree, Enter enter)
{
  std::size_t count = 0;
  std::vector<du::SmartPtr<zelk::BaseInstance>> path;
  du::SmartPtr<zelk::BaseInstance> next;
  tree.GetBaseRoot(next);
  while (next) {
    enter(*next, path.size());
    ++count;
    path.push_back(std::move(next));
    path.back()->GetBaseFirstChild(next);
    while (!next && path.size() > 1) {
      path.back()->GetBaseNextSibling(next);
      path.pop_back();
    }
  }
  return count;
}

}  // namespace bench
