#include "guitree/MatchedItems.h"

namespace guitree {

void MatchedItems::CopyTo(Set& out, const InstanceList& record) const
{
  out.clear();
  for (std::size_t place = 0; place < m_marks.size(); ++place) {
    if (m_marks[place]) {
      // Kernels allocate instances in the order in which they are walked, as a rule.
      out.insert(out.end(), record[place]);
    }
  }
}

void MatchedItems::Erase(const du::SmartPtr<zelk::BaseInstance>& item, const InstanceList& record)
{
  for (std::size_t place = 0; place < m_marks.size(); ++place) {
    if (m_marks[place] && record[place] == item) {
      m_marks[place] = false;
      --m_count;
    }
  }
}

void MatchedItems::Clear() noexcept
{
  m_marks.clear();
  m_count = 0;
}

}  // namespace guitree
