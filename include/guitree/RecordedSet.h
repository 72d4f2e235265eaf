#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <deque>
#include <functional>
#include <iterator>
#include <set>
#include <utility>
#include <vector>

#include "du/SmartPtr.h"
#include "guitree/InstsComperator.h"
#include "zelk/BaseInstance.h"

namespace guitree {

using ByAddress = std::less<du::SmartPtr<zelk::BaseInstance>>;
/// A long list that grows without moving what it holds, so that it never takes twice the room.
using InstanceList = std::deque<du::SmartPtr<zelk::BaseInstance>>;

/// Brings references to instances into the order of their addresses, or of their keys. Of equal ones the first that
/// came stays; the others, apart from those to the same instance, go to the end of `equals`.
void SortRecorded(InstanceList& items, const ByAddress& order, InstanceList& equals);
void SortRecorded(InstanceList& items, const InstsComperator& order, InstanceList& equals);

/// An ordered set of instances that takes millions of entries quickly: they are appended as they come, and brought into
/// order when somebody looks, or at a time of the owner's choice. Of instances that are equal in `Order` the first one
/// counts, as in `std::set`; the others are kept alive. One thread at a time, looking included.
template <typename Order>
class RecordedSet {
public:
  using Item = du::SmartPtr<zelk::BaseInstance>;
  using Set = std::set<Item, Order>;

  /// Constant cost.
  void Record(const Item& item)
  {
    if (!IsRecordedLast(item)) {
      m_recorded.push_back(item);
    }
  }
  /// Whether the latest entry that has not been brought into order is this one.
  [[nodiscard]] bool IsRecordedLast(const Item& item) const { return !m_recorded.empty() && m_recorded.back() == item; }
  [[nodiscard]] bool IsEmpty() const noexcept { return m_ordered.empty() && m_recorded.empty(); }
  [[nodiscard]] bool Contains(const Item& item) const
  {
    Settle();
    return std::binary_search(m_ordered.begin(), m_ordered.end(), item, Order());
  }
  /// Replaces `out`.
  void CopyTo(Set& out) const
  {
    Settle();
    out.clear();
    for (const Item& item : m_ordered) {
      out.insert(out.end(), item);
    }
  }
  // clang-format off
  /// Nothing for an unknown instance. Does not bring the entries into order, which is why a set by keys has no such
  /// operation: whether an equal instance has been passed over is known only afterwards. Looks through what is not in
  /// order, which takes a millisecond for a million entries.
  void Erase(const Item& item)
    requires std::same_as<Order, ByAddress>
  {
    for (auto entry = m_recorded.begin(); (entry = std::find(entry, m_recorded.end(), item)) != m_recorded.end();) {
      entry = m_recorded.erase(entry);
    }
    const auto [first, last] = std::equal_range(m_ordered.begin(), m_ordered.end(), item, Order());
    m_ordered.erase(first, last);
  }
  // clang-format on
  /// Brings what has been recorded into order; costs that of a sort of the new entries and a merge.
  void Settle() const
  {
    if (m_recorded.empty()) {
      return;
    }
    SortRecorded(m_recorded, Order(), m_equals);
    if (m_ordered.empty()) {
      m_ordered.swap(m_recorded);
      return;
    }
    const auto middle = static_cast<std::ptrdiff_t>(m_ordered.size());
    m_ordered.insert(m_ordered.end(), std::move_iterator(m_recorded.begin()), std::move_iterator(m_recorded.end()));
    m_recorded.clear();
    std::inplace_merge(m_ordered.begin(), m_ordered.begin() + middle, m_ordered.end(), Order());
    _DropRepeated();
  }
  /// Hands out all references, whatever their order, which leaves the set empty. Constant cost.
  void MoveTo(std::vector<InstanceList>& out)
  {
    for (InstanceList* items : {&m_ordered, &m_recorded, &m_equals}) {
      out.push_back(std::exchange(*items, {}));
    }
  }
  [[nodiscard]] std::size_t GetSizeBound() const noexcept
  {
    return m_ordered.size() + m_recorded.size() + m_equals.size();
  }

private:
  void _DropRepeated() const
  {
    std::size_t kept = 0;
    for (std::size_t next = 1; next < m_ordered.size(); ++next) {
      if (Order()(m_ordered[kept], m_ordered[next])) {
        if (++kept != next) {
          m_ordered[kept] = std::move(m_ordered[next]);
        }
      } else if (m_ordered[kept] != m_ordered[next]) {
        m_equals.push_back(std::move(m_ordered[next]));
      }
    }
    m_ordered.resize(kept + 1);
  }

  /// Looking brings the entries into order, which does not change the set.
  mutable InstanceList m_ordered;
  mutable InstanceList m_recorded;
  /// Instances that a node may show although the set lists an equal one.
  mutable InstanceList m_equals;
};

}  // namespace guitree
