#pragma once

#include <set>
#include <vector>

#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"

namespace zelk::detail {

/// Calls `add` with all of `starts` and all their descendants. The subtree of a start is walked once, also when that
/// start lies below another one: a chain of starts would cost the square of its length otherwise. The walk keeps its
/// own stack, so that the depth of a tree is no limit.
template <typename T, typename Add>
void VisitDescendents(const std::set<du::SmartPtr<T>>& starts, const Add& add)
{
  std::set<const BaseInstance*> isStart;
  for (const auto& start : starts) {
    isStart.insert(start.Get());
  }
  std::vector<du::SmartPtr<BaseInstance>> open;
  for (const auto& start : starts) {
    if (!start) {
      continue;
    }
    add(du::SmartPtr<BaseInstance>(start));
    du::SmartPtr<BaseInstance> child;
    start->GetBaseFirstChild(child);
    open.push_back(child);
    while (!open.empty()) {
      du::SmartPtr<BaseInstance> next = open.back();
      if (!next) {
        open.pop_back();
        continue;
      }
      next->GetBaseNextSibling(open.back());
      if (!isStart.contains(next.Get())) {
        add(next);
        next->GetBaseFirstChild(child);
        open.push_back(child);
      }
    }
  }
}

}  // namespace zelk::detail
