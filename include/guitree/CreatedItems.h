#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <set>
#include <vector>

#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "guitree/InstsComperator.h"
#include "zelk/BaseInstance.h"

namespace guitree {

/// A long list that grows without moving what it holds, so that it never takes twice the room.
using InstanceList = std::deque<du::SmartPtr<zelk::BaseInstance>>;

/// The set of instances that a filter run has created rows for, in the order of their keys. It takes millions of
/// entries quickly: they are appended as they come, and brought into order when somebody looks, or at a time of the
/// owner's choice. Once somebody has asked for an instance, further ones find their place at once, so that who looks
/// after each of them does not pay for an order each time.
///
/// Of instances with equal keys the first one counts, as in `std::set`; all of them are kept alive. One thread at a
/// time, looking included.
class CreatedItems {
public:
  using Item = du::SmartPtr<zelk::BaseInstance>;
  using Set = std::set<Item, InstsComperator>;

  /// Nothing for the instance that was recorded last. Constant cost; logarithmic after a `Contains`.
  void Record(const Item& item)
  {
    if (IsRecordedLast(item)) {
      return;
    }
    m_record.push_back(item);
    if (m_isAskedFor) {
      _RecordInPlace(item);
    }
  }
  [[nodiscard]] bool IsRecordedLast(const Item& item) const { return !m_record.empty() && m_record.back() == item; }
  /// All that has been recorded, in the order in which it came, instances that came repeatedly included.
  [[nodiscard]] const InstanceList& GetRecord() const noexcept { return m_record; }
  [[nodiscard]] bool Contains(const Item& item) const;
  /// Replaces `out`. Costs the number of the entries once they are in order.
  void CopyTo(Set& out) const;
  /// Brings what has been recorded into order: linear cost, and a sort of the different first keys. A false answer of
  /// `isWanted`, which may be empty and is asked on the way, leaves that to who looks first.
  void Settle(const std::function<bool()>& isWanted = {}) const;
  /// Hands out all references, which leaves the set empty.
  [[nodiscard]] InstanceList TakeRecord();

private:
  /// An entry, by its number in the record.
  using Entry = std::uint32_t;
  class KeyOrder;
  /// The entries of one first key: those from `begin` to `end` of `m_order`.
  struct Group {
    du::Symbol key;
    Entry begin = 0;
    Entry end = 0;
  };

  void _RecordInPlace(const Item& item);
  [[nodiscard]] bool _IsOrdered(const Item& item) const;

  InstanceList m_record;
  /// Looking brings the entries into order, which does not change the set. By their first keys; the entries that the
  /// groups share out stand in the order in which each first key was met, which is nearer to where they are in memory.
  mutable std::vector<Group> m_groups;
  /// Inside a group by the second keys, each of them once.
  mutable std::vector<Entry> m_order;
  /// How much of the record has been brought into order.
  mutable std::size_t m_settled = 0;
  /// What came after the first `Contains` and is not among the ordered.
  Set m_late;
  mutable bool m_isAskedFor = false;
};

}  // namespace guitree
