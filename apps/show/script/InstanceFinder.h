#pragma once

#include <vector>

#include "du/SmartPtr.h"
#include "memkernel/Instance.h"
#include "memkernel/Tree.h"
#include "script/Path.h"

namespace script {

/// Finds the instances of a tree that scripts speak of, by their names. Ends before its tree; owner's thread. A search
/// costs a walk through the tree.
class InstanceFinder {
public:
  explicit InstanceFinder(const memkernel::Tree& tree) : m_tree(tree) {}

  /// The one instance that `path` means. Throws `ScriptError` where it means none or several.
  [[nodiscard]] du::SmartPtr<memkernel::Instance> Find(const Path& path) const;
  /// A path from the root that means this instance of the tree alone.
  [[nodiscard]] static Path MakePath(const memkernel::Instance& instance);

private:
  using Instances = std::vector<du::SmartPtr<memkernel::Instance>>;

  [[nodiscard]] Instances _FindFirst(const Path& path) const;
  [[nodiscard]] static Instances _FindChildren(const Instances& parents, const PathStep& step);

  const memkernel::Tree& m_tree;
};

/// The instance and all below it, parents before their children, children in order.
[[nodiscard]] std::vector<du::SmartPtr<memkernel::Instance>> ListSubtree(const du::SmartPtr<memkernel::Instance>& top);

}  // namespace script
