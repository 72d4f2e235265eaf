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
/// came stays; the others, apart from those to the same instance, go to the end of `equals`. `isWanted`, which may be
/// empty, is asked on the way; once it answers false the rest is left as it is, in any order, and the answer is false.
bool SortRecorded(InstanceList& items, const ByAddress& order, InstanceList& equals,
                  const std::function<bool()>& isWanted);
bool SortRecorded(InstanceList& items, const InstsComperator& order, InstanceList& equals,
                  const std::function<bool()>& isWanted);

/// An ordered set of instances that takes millions of entries quickly: they are appended as they come, and brought into
/// order when somebody looks, or at a time of the owner's choice. Once somebody has asked for an entry, further ones
/// find their place at once, so that who looks after each of them does not pay for an order each time. Of instances
/// that are equal in `Order` the first one counts, as in `std::set`; the others are kept alive. One thread at a time,
/// looking included.
template <typename Order>
class RecordedSet {
public:
  using Item = du::SmartPtr<zelk::BaseInstance>;
  using Set = std::set<Item, Order>;

  /// Constant cost; logarithmic after a `Contains`.
  void Record(const Item& item)
  {
    if (m_isAskedFor) {
      _RecordInPlace(item);
    } else if (!IsRecordedLast(item)) {
      m_recorded.push_back(item);
    }
  }
  /// Whether the latest entry that has not been brought into order is this one.
  [[nodiscard]] bool IsRecordedLast(const Item& item) const { return !m_recorded.empty() && m_recorded.back() == item; }
  [[nodiscard]] bool IsEmpty() const noexcept { return m_ordered.empty() && m_recorded.empty() && m_late.empty(); }
  [[nodiscard]] bool Contains(const Item& item) const
  {
    Settle();
    m_isAskedFor = true;
    return std::binary_search(m_ordered.begin(), m_ordered.end(), item, Order()) || m_late.contains(item);
  }
  /// Replaces `out`.
  void CopyTo(Set& out) const
  {
    Settle();
    out.clear();
    for (const Item& item : m_ordered) {
      out.insert(out.end(), item);
    }
    out.insert(m_late.begin(), m_late.end());
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
    m_late.erase(item);
  }
  // clang-format on
  /// Brings what has been recorded into order; costs that of a sort of the new entries and a merge. A false answer of
  /// `isWanted` leaves that to who looks first; which of equal entries counts is open then.
  void Settle(const std::function<bool()>& isWanted = {}) const
  {
    if (m_recorded.empty() || !SortRecorded(m_recorded, Order(), m_equals, isWanted)) {
      return;
    }
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
  /// Hands out all references, whatever their order, which leaves the set empty. Constant cost, apart from
  /// entries that came after a `Contains`.
  void MoveTo(std::vector<InstanceList>& out)
  {
    for (InstanceList* items : {&m_ordered, &m_recorded, &m_equals}) {
      out.push_back(std::exchange(*items, {}));
    }
    out.emplace_back(m_late.begin(), m_late.end());
    m_late.clear();
  }
  [[nodiscard]] std::size_t GetSizeBound() const noexcept
  {
    return m_ordered.size() + m_recorded.size() + m_equals.size() + m_late.size();
  }

private:
  void _RecordInPlace(const Item& item)
  {
    const auto place = std::lower_bound(m_ordered.begin(), m_ordered.end(), item, Order());
    const bool isOrdered = place != m_ordered.end() && !Order()(item, *place);
    const Item& listed = isOrdered ? *place : *m_late.insert(item).first;
    if (listed != item) {
      m_equals.push_back(item);
    }
  }
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
  /// What came after the first `Contains`; disjoint from `m_ordered`.
  Set m_late;
  mutable bool m_isAskedFor = false;
  /// Instances that a node may show although the set lists an equal one.
  mutable InstanceList m_equals;
};

}  // namespace guitree
