#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <vector>

#include "du/SmartPtr.h"
#include "guitree/CreatedItems.h"
#include "zelk/BaseInstance.h"

namespace guitree {

/// The set of instances that have passed a filter. Each of them has been recorded as created as well, so it is a mark
/// on that record: one bit each, where a set of its own would hold a second reference. One thread at a time.
class MatchedItems {
public:
  using Set = std::set<du::SmartPtr<zelk::BaseInstance>>;

  /// Adds the instance that stands at `place` of the record. Constant cost.
  void Mark(std::size_t place)
  {
    if (place >= m_marks.size()) {
      m_marks.resize(place + 1);
    }
    m_count += m_marks[place] ? 0U : 1U;
    m_marks[place] = true;
  }
  [[nodiscard]] bool IsEmpty() const noexcept { return m_count == 0; }
  [[nodiscard]] std::size_t GetCount() const noexcept { return m_count; }
  /// Replaces `out` with the marked instances of `record`, which costs their number and, where their addresses do not
  /// ascend, a search each.
  void CopyTo(Set& out, const InstanceList& record) const;
  /// Nothing for an instance that is not marked. Looks through `record`, which takes a millisecond for a million
  /// entries.
  void Erase(const du::SmartPtr<zelk::BaseInstance>& item, const InstanceList& record);
  void Clear() noexcept;

private:
  std::vector<bool> m_marks;
  std::size_t m_count = 0;
};

}  // namespace guitree
