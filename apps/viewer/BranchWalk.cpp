#include "BranchWalk.h"

#include <utility>

namespace viewer {

void BranchWalk::Begin(const std::set<du::SmartPtr<zelk::Instance>>& tops)
{
  m_tops.assign(tops.begin(), tops.end());
  m_open.clear();
  m_found.clear();
}

bool BranchWalk::GoOn(const QDeadlineTimer& end)
{
  while (!m_open.empty() || !m_tops.empty()) {
    _TakeNext();
    if (end.hasExpired()) {
      break;
    }
  }
  return m_open.empty() && m_tops.empty();
}

BranchWalk::InstanceSet BranchWalk::Take()
{
  return std::exchange(m_found, {});
}

void BranchWalk::_TakeNext()
{
  if (m_open.empty()) {
    const Instance top = m_tops.back();
    m_tops.pop_back();
    _Enter(top);
    return;
  }
  const Instance next = m_open.back();
  if (!next) {
    m_open.pop_back();
    return;
  }
  next->GetBaseNextSibling(m_open.back());
  _Enter(next);
}

// What was met before was met with all that is below it.
void BranchWalk::_Enter(const Instance& instance)
{
  if (m_found.insert(instance.Get()).second) {
    Instance child;
    instance->GetBaseFirstChild(child);
    m_open.push_back(child);
  }
}

}  // namespace viewer
