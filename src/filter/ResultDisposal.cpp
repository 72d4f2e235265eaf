#include "filter/ResultDisposal.h"

#include <utility>

#include "facade/RunningPool.h"
#include "filter/NodeLinks.h"

namespace guitree {
namespace {

/// Nodes and references up to which a worker is not worth its while: about a millisecond.
constexpr std::size_t s_smallSize = 20000;

/// Lets go of a reference unless it is the last one. True if it has.
bool ReleaseIfShared(du::SmartPtr<zelk::BaseInstance>& reference)
{
  const zelk::BaseInstance* const object = reference.Get();
  // The pointer gives its own reference back while a second one is held, and that one says what is left.
  object->AddReference(nullptr);
  reference.Reset();
  if (object->RemoveReference(nullptr) > 0) {
    return true;
  }
  reference = du::SmartPtr<zelk::BaseInstance>(const_cast<zelk::BaseInstance*>(object));
  return false;
}

}  // namespace

void ResultDisposal::Dispose(std::vector<FilteredTree::Node*> trees, References references, std::size_t size)
{
  const auto disposal = du::MakeSmart<ResultDisposal>(std::move(trees), std::move(references));
  if (size <= s_smallSize) {
    return;
  }
  if (du::TaskPool* const pool = FindRunningPool()) {
    pool->InsertTask(disposal);
  }
}

ResultDisposal::ResultDisposal(std::vector<FilteredTree::Node*> trees, References references)
    : m_trees(std::move(trees)), m_references(std::move(references))
{
}

ResultDisposal::~ResultDisposal()
{
  _DestroyTrees();
}

void ResultDisposal::Run()
{
  _DestroyTrees();
  _ReleaseShared();
}

void ResultDisposal::TaskComplete()
{
  m_references.clear();
}

void ResultDisposal::_DestroyTrees()
{
  for (FilteredTree::Node* const tree : std::exchange(m_trees, {})) {
    DestroyNodes(tree, [](const FilteredTree::Node* /*node*/) {});
  }
}

void ResultDisposal::_ReleaseShared()
{
  InstanceList last;
  for (InstanceList& references : m_references) {
    for (auto& reference : references) {
      if (!ReleaseIfShared(reference)) {
        last.push_back(std::move(reference));
      }
    }
  }
  m_references.clear();
  m_references.push_back(std::move(last));
}

}  // namespace guitree
