#pragma once

#include <cstddef>
#include <vector>

#include "du/SmartPtr.h"
#include "du/Task.h"
#include "guitree/CreatedItems.h"
#include "guitree/FilteredTree.h"

namespace guitree {

/// Takes the result of a filter apart. That of a million rows costs some hundred milliseconds, which the owner's thread
/// need not wait for: a worker does it, in slices between which other tasks have their turn, apart from the end of
/// instances that nobody else holds any more. Those are the kernel's, and end on the owner's thread.
class ResultDisposal : public du::Task {
public:
  using References = std::vector<InstanceList>;

  /// Owner's thread. Takes over the trees and the references. Small results, and those without a running world, are
  /// taken apart at once.
  static void Dispose(std::vector<FilteredTree::Node*> trees, References references, std::size_t size);

  ResultDisposal(std::vector<FilteredTree::Node*> trees, References references);
  ~ResultDisposal() override;

  void Run() override;
  void TaskComplete() override;

private:
  /// Each does so many at the most, and answers how many are left of these.
  std::size_t _DestroyNodes(std::size_t limit);
  std::size_t _ReleaseShared(std::size_t limit);
  [[nodiscard]] bool _IsDone() const { return m_trees.empty() && m_references.empty(); }

  std::vector<FilteredTree::Node*> m_trees;
  References m_references;
  /// That nobody else holds.
  InstanceList m_last;
};

}  // namespace guitree
