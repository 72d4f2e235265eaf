#pragma once

#include <QDeadlineTimer>
#include <set>
#include <unordered_set>
#include <vector>

#include "du/SmartPtr.h"
#include "zelk/Instance.h"

namespace viewer {

/// Collects instances with all that is below them, a portion at a time. Where the tree loses instances between two
/// portions some of their neighbours may be missed: whoever edits begins anew. Owner's thread.
class BranchWalk {
public:
  using InstanceSet = std::unordered_set<const zelk::BaseInstance*>;

  /// Forgets what was collected before.
  void Begin(const std::set<du::SmartPtr<zelk::Instance>>& tops);
  /// Goes on until `end`, by one instance at least, and answers whether all of it is there.
  [[nodiscard]] bool GoOn(const QDeadlineTimer& end);
  /// What was collected.
  [[nodiscard]] InstanceSet Take();

private:
  using Instance = du::SmartPtr<zelk::BaseInstance>;

  void _TakeNext();
  void _Enter(const Instance& instance);

  /// The last one is the next one.
  std::vector<Instance> m_tops;
  /// What comes next at each level below the present one of them; null at the end of a level.
  std::vector<Instance> m_open;
  InstanceSet m_found;
};

}  // namespace viewer
