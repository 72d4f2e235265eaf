#pragma once

#include <vector>

#include "du/SmartPtr.h"
#include "du/Task.h"
#include "guitree/FilteredTree.h"
#include "guitree/RecordedSet.h"

namespace guitree {

/// Takes the result of a filter apart. That of a million rows costs some hundred milliseconds, which the owner's thread
/// need not wait for: a worker does it, apart from the end of instances that nobody else holds any more. Those are the
/// kernel's, and end on the owner's thread.
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
  void _DestroyTrees();
  void _ReleaseShared();

  std::vector<FilteredTree::Node*> m_trees;
  References m_references;
};

}  // namespace guitree
