#include "filter/ResultDisposal.h"

#include <limits>
#include <utility>

#include "facade/RunningPool.h"
#include "filter/NodeLinks.h"

namespace guitree {
namespace {

/// Nodes and references up to which a worker is not worth its while: about a millisecond.
constexpr std::size_t s_smallSize = 20000;
/// Some five to ten milliseconds. The next filter of a user who types waits no longer for the result of the last one.
constexpr std::size_t s_slice = 100000;

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
  _DestroyNodes(std::numeric_limits<std::size_t>::max());
}

void ResultDisposal::Run()
{
  _ReleaseShared(_DestroyNodes(s_slice));
}

void ResultDisposal::TaskComplete()
{
  m_last.clear();
  if (_IsDone()) {
    return;
  }
  if (du::TaskPool* const pool = FindRunningPool()) {
    pool->InsertTask(du::MakeSmart<ResultDisposal>(std::exchange(m_trees, {}), std::exchange(m_references, {})));
  }
}

std::size_t ResultDisposal::_DestroyNodes(std::size_t limit)
{
  while (!m_trees.empty() && limit > 0) {
    limit -= DestroyNodes(m_trees.back(), limit, [](const FilteredTree::Node* /*node*/) {});
    if (!m_trees.back()) {
      m_trees.pop_back();
    }
  }
  return limit;
}

std::size_t ResultDisposal::_ReleaseShared(std::size_t limit)
{
  while (!m_references.empty() && limit > 0) {
    InstanceList& references = m_references.back();
    for (; !references.empty() && limit > 0; --limit) {
      if (!ReleaseIfShared(references.back())) {
        m_last.push_back(std::move(references.back()));
      }
      references.pop_back();
    }
    if (references.empty()) {
      m_references.pop_back();
    }
  }
  return limit;
}

}  // namespace guitree
