#pragma once

#include <cstddef>
#include <memory>

#include "du/SmartPtr.h"
#include "memkernel/Instance.h"
#include "memkernel/Tree.h"
#include "stepimport/Assembly.h"
#include "stepimport/ShapeStore.h"

namespace stepimport {

/// What `FillTree` does, a portion at a time, for who has other things to do in between. Refers to `assembly` until it
/// ends. The tree may be edited between two portions, but for the branch that is being filled. It brackets nothing: who
/// wants one run of edits opens a `memkernel::TreeBatch` around all portions. Owner's thread.
///
///     TreeFilling filling(assembly, shapes, tree, parent);
///     while (filling.GoOn(1000)) {
///       LookAfterOtherThings();
///     }
class TreeFilling {
public:
  /// Adds nothing yet. As in `FillTree`, `shapes` and `parent` may be null.
  TreeFilling(const Assembly& assembly, const std::shared_ptr<const ShapeStore>& shapes, memkernel::Tree& tree,
              const du::SmartPtr<memkernel::Instance>& parent);
  TreeFilling(const TreeFilling&) = delete;
  TreeFilling& operator=(const TreeFilling&) = delete;
  ~TreeFilling();

  /// Adds `count` instances, or what is left of them, and the bodies of the last one. False when all are there and when
  /// the filling was refused.
  bool GoOn(std::size_t count);
  /// Whether the tree has refused an instance, or the assembly has none or more than `MaxInstances`. What was added
  /// before stays.
  [[nodiscard]] bool IsRefused() const noexcept { return m_isRefused; }
  /// The instance that stands for the assembly; null before it is added.
  [[nodiscard]] const du::SmartPtr<memkernel::Instance>& GetTop() const noexcept { return m_top; }
  /// How many instances were added, and how many there will be.
  [[nodiscard]] std::size_t GetAddedCount() const noexcept { return m_added; }
  [[nodiscard]] std::size_t GetCount() const noexcept { return m_count; }

private:
  class Work;

  const std::unique_ptr<Work> m_work;
  const std::size_t m_count;
  std::size_t m_added = 0;
  du::SmartPtr<memkernel::Instance> m_top;
  bool m_isRefused;
};

}  // namespace stepimport
