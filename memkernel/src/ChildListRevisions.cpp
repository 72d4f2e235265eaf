#include "ChildListRevisions.h"

#include <atomic>

namespace memkernel {
namespace {

/// Each parent gets a range of its own: another one at its address, in this tree or in another, starts beyond whatever
/// it will have reached.
constexpr std::uint64_t s_range = std::uint64_t(1) << 32U;

[[nodiscard]] std::uint64_t TakeRange()
{
  static std::atomic<std::uint64_t> s_next{s_range};
  return s_next.fetch_add(s_range, std::memory_order_relaxed);
}

}  // namespace

std::uint64_t ChildListRevisions::Get(const Instance& parent)
{
  const auto [entry, isNew] = m_revisions.try_emplace(&parent, 0);
  if (isNew) {
    entry->second = TakeRange();
  }
  return entry->second;
}

void ChildListRevisions::Forget(const Instance& parent)
{
  m_revisions.erase(&parent);
}

void ChildListRevisions::_Raise(const Instance& parent, std::uint64_t step)
{
  const auto entry = m_revisions.find(&parent);
  if (entry != m_revisions.end()) {
    entry->second += step;
  }
}

}  // namespace memkernel
