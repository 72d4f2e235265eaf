#include "BranchRemoval.h"

namespace viewer {

void BranchRemoval::Begin(const Instance& top)
{
  m_path.clear();
  if (top) {
    m_path.push_back(top);
  }
}

bool BranchRemoval::GoOn(std::size_t count)
{
  for (; count > 0 && !m_path.empty(); --count) {
    _GoOneStep();
  }
  return !m_path.empty();
}

void BranchRemoval::_GoOneStep()
{
  const Instance last = m_path.back();
  du::SmartPtr<zelk::BaseInstance> child;
  last->GetBaseFirstChild(child);
  if (child && last->IsInTree()) {
    m_path.push_back(du::DynamicCast<memkernel::Instance>(child));
    return;
  }
  m_tree->Remove(last);
  m_path.pop_back();
}

}  // namespace viewer
