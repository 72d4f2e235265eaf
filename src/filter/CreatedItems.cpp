#include "guitree/CreatedItems.h"

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <utility>

#include "filter/Patience.h"

namespace guitree {
namespace {

du::Symbol GetKey(const CreatedItems::Item& item)
{
  return item ? item->GetInstanceKey() : du::Symbol();
}

const char* GetSubKeyText(const CreatedItems::Item& item)
{
  return (item ? item->GetInstanceSubKey() : du::Symbol()).GetText();
}

}  // namespace

/// Brings a record into order: the entries are counted into one group for each first key, and each group is ordered by
/// the second keys. An order by comparisons alone, which reads the keys of both sides at each, takes ten times as long
/// for a million instances; one that moves the references as well takes twice as long for four million.
class CreatedItems::KeyOrder {
public:
  KeyOrder(const InstanceList& record, Patience& patience) : m_record(record), m_patience(patience) {}

  /// False when the work was given up.
  [[nodiscard]] bool Make()
  {
    _NumberKeys();
    _PlaceGroups();
    _InvertPlaces();
    _OrderGroups();
    SortPatiently(
        groups, [](const Group& a, const Group& b) { return a.key.GetView() < b.key.GetView(); }, m_patience);
    return !m_patience.HasEndedNow();
  }

  std::vector<Group> groups;
  /// First the number of each entry's group, then its place, and at last the entry at each place.
  std::vector<Entry> order;

private:
  struct Keyed {
    const char* subKey = nullptr;
    Entry entry = 0;
  };

  /// Makes the groups as their keys are met, and counts their entries.
  void _NumberKeys()
  {
    std::unordered_map<const char*, Entry> known;
    order.reserve(m_record.size());
    for (const Item& item : m_record) {
      if (m_patience.HasEnded()) {
        return;
      }
      const du::Symbol key = GetKey(item);
      const auto [number, isNew] = known.try_emplace(key.GetText(), static_cast<Entry>(groups.size()));
      if (isNew) {
        groups.push_back({.key = key});
      }
      ++groups[number->second].end;
      order.push_back(number->second);
    }
  }

  void _PlaceGroups()
  {
    Entry begin = 0;
    for (Group& group : groups) {
      group.begin = begin;
      begin += std::exchange(group.end, begin);
    }
    for (Entry& number : order) {
      number = groups[number].end++;
    }
  }

  /// In place, along the circles of who stands where whom belongs: a second list would take half as much memory as all
  /// references.
  void _InvertPlaces()
  {
    std::vector<bool> isDone(order.size());
    for (Entry first = 0; first < order.size() && !m_patience.HasEnded(); ++first) {
      Entry entry = first;
      Entry place = order[first];
      while (!isDone[place]) {
        isDone[place] = true;
        entry = std::exchange(order[place], entry);
        std::swap(entry, place);
      }
    }
  }

  void _OrderGroups()
  {
    Entry out = 0;
    for (Group& group : groups) {
      if (m_patience.HasEnded()) {
        return;
      }
      out = _OrderGroup(group, out);
    }
    order.resize(out);
    order.shrink_to_fit();
  }

  /// Moves the group to `out` and answers where it ends.
  Entry _OrderGroup(Group& group, Entry out)
  {
    m_keyed.clear();
    for (Entry place = group.begin; place < group.end; ++place) {
      m_keyed.push_back({GetSubKeyText(m_record[order[place]]), order[place]});
    }
    const auto isBefore = [](const Keyed& a, const Keyed& b) { return std::less<>()(a.subKey, b.subKey); };
    if (!std::is_sorted(m_keyed.begin(), m_keyed.end(), isBefore)) {
      SortPatiently(m_keyed, isBefore, m_patience);
    }
    group.begin = out;
    const auto isSame = [](const Keyed& a, const Keyed& b) { return a.subKey == b.subKey; };
    m_keyed.erase(std::unique(m_keyed.begin(), m_keyed.end(), isSame), m_keyed.end());
    for (const Keyed& keyed : m_keyed) {
      order[out++] = keyed.entry;
    }
    group.end = out;
    return out;
  }

  const InstanceList& m_record;
  Patience& m_patience;
  /// Kept for its memory.
  std::vector<Keyed> m_keyed;
};

bool CreatedItems::Contains(const Item& item) const
{
  Settle();
  m_isAskedFor = true;
  return _IsOrdered(item) || m_late.contains(item);
}

void CreatedItems::CopyTo(Set& out) const
{
  Settle();
  out.clear();
  for (const Group& group : m_groups) {
    for (Entry place = group.begin; place < group.end; ++place) {
      out.insert(out.end(), m_record[m_order[place]]);
    }
  }
  out.insert(m_late.begin(), m_late.end());
}

void CreatedItems::Settle(const std::function<bool()>& isWanted) const
{
  if (m_isAskedFor || m_settled == m_record.size()) {
    return;
  }
  Patience patience(isWanted);
  KeyOrder order(m_record, patience);
  if (!order.Make()) {
    return;
  }
  m_groups = std::move(order.groups);
  m_order = std::move(order.order);
  m_settled = m_record.size();
}

InstanceList CreatedItems::TakeRecord()
{
  m_groups.clear();
  m_order.clear();
  m_settled = 0;
  m_late.clear();
  m_isAskedFor = false;
  return std::exchange(m_record, {});
}

void CreatedItems::_RecordInPlace(const Item& item)
{
  if (!_IsOrdered(item)) {
    m_late.insert(item);
  }
}

bool CreatedItems::_IsOrdered(const Item& item) const
{
  const std::string_view key = GetKey(item).GetView();
  const auto group = std::partition_point(m_groups.begin(), m_groups.end(),
                                          [key](const Group& other) { return other.key.GetView() < key; });
  if (group == m_groups.end() || group->key.GetView() != key) {
    return false;
  }
  const char* const subKey = GetSubKeyText(item);
  const auto at = [this](Entry place) { return m_order.begin() + static_cast<std::ptrdiff_t>(place); };
  const auto place = std::partition_point(at(group->begin), at(group->end), [&](Entry other) {
    return std::less<>()(GetSubKeyText(m_record[other]), subKey);
  });
  return place != at(group->end) && GetSubKeyText(m_record[*place]) == subKey;
}

}  // namespace guitree
