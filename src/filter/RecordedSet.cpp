#include "guitree/RecordedSet.h"

#include <cstdint>
#include <numeric>
#include <unordered_map>
#include <utility>
#include <vector>

namespace guitree {
namespace {

/// Gives each item the number of its first key, counted as they come, and answers the keys.
std::vector<du::Symbol> NumberKeys(const InstanceList& items, std::vector<std::uint32_t>& numbers)
{
  std::unordered_map<const char*, std::uint32_t> known;
  std::vector<du::Symbol> keys;
  numbers.reserve(items.size());
  for (const auto& item : items) {
    const du::Symbol key = item ? item->GetInstanceKey() : du::Symbol();
    const auto [entry, isNew] = known.try_emplace(key.GetText(), static_cast<std::uint32_t>(keys.size()));
    if (isNew) {
      keys.push_back(key);
    }
    numbers.push_back(entry->second);
  }
  return keys;
}

/// The numbers of the keys in the order of the keys' texts.
std::vector<std::uint32_t> OrderKeys(const std::vector<du::Symbol>& keys)
{
  std::vector<std::uint32_t> order(keys.size());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(),
            [&keys](std::uint32_t a, std::uint32_t b) { return keys[a].GetView() < keys[b].GetView(); });
  return order;
}

/// Where the groups of items of one key begin, by the number of the key, when the groups stand in order.
std::vector<std::uint32_t> PlaceGroups(const std::vector<std::uint32_t>& numbers,
                                       const std::vector<std::uint32_t>& order)
{
  std::vector<std::uint32_t> sizes(order.size());
  for (const std::uint32_t number : numbers) {
    ++sizes[number];
  }
  std::vector<std::uint32_t> begins(order.size());
  std::uint32_t begin = 0;
  for (const std::uint32_t number : order) {
    begins[number] = begin;
    begin += sizes[number];
  }
  return begins;
}

/// Brings each item to its place, which `places` holds: each is the place of one item.
void MoveToPlaces(InstanceList& items, std::vector<std::uint32_t>& places)
{
  for (std::uint32_t i = 0; i < places.size(); ++i) {
    while (places[i] != i) {
      const std::uint32_t place = places[i];
      items[i].Swap(items[place]);
      std::swap(places[i], places[place]);
    }
  }
}

/// Orders items of one first key by the second.
class SubKeySort {
public:
  explicit SubKeySort(InstanceList& equals) : m_equals(equals) {}

  /// Moves what stays to `out`, which does not lie behind `first`, and answers where that ends.
  InstanceList::iterator operator()(InstanceList::iterator first, InstanceList::iterator last,
                                    InstanceList::iterator out)
  {
    _ReadKeys(first, last);
    const bool isOrdered = std::adjacent_find(m_keyed.begin(), m_keyed.end(), std::not_fn(IsBefore)) == m_keyed.end();
    if (isOrdered) {
      return out == first ? last : std::move(first, last, out);
    }
    std::stable_sort(m_keyed.begin(), m_keyed.end(), IsBefore);
    std::move(first, last, std::back_inserter(m_items));
    for (auto entry = m_keyed.begin(); entry != m_keyed.end();) {
      const auto end = std::find_if(entry, m_keyed.end(), [&](const Keyed& other) { return other.key != entry->key; });
      *out = std::move(m_items[entry->place]);
      _KeepEqual(entry + 1, end, *out);
      ++out;
      entry = end;
    }
    m_items.clear();
    return out;
  }

private:
  struct Keyed {
    const char* key = nullptr;
    std::size_t place = 0;
  };
  using Entries = std::vector<Keyed>;

  [[nodiscard]] static bool IsBefore(const Keyed& a, const Keyed& b) { return std::less<>()(a.key, b.key); }

  void _ReadKeys(InstanceList::const_iterator first, InstanceList::const_iterator last)
  {
    m_keyed.clear();
    for (auto item = first; item != last; ++item) {
      m_keyed.push_back({*item ? (*item)->GetInstanceSubKey().GetText() : nullptr, m_keyed.size()});
    }
  }

  void _KeepEqual(Entries::const_iterator first, Entries::const_iterator last, const InstanceList::value_type& kept)
  {
    for (auto entry = first; entry != last; ++entry) {
      if (m_items[entry->place] != kept) {
        m_equals.push_back(std::move(m_items[entry->place]));
      }
    }
  }

  InstanceList& m_equals;
  /// Both kept for their memory.
  Entries m_keyed;
  std::vector<du::SmartPtr<zelk::BaseInstance>> m_items;
};

}  // namespace

void SortRecorded(InstanceList& items, const ByAddress& order, InstanceList& /*equals*/)
{
  // Kernels allocate instances in the order in which they are walked, as a rule.
  if (!std::is_sorted(items.begin(), items.end(), order)) {
    std::sort(items.begin(), items.end(), order);
  }
  items.erase(std::unique(items.begin(), items.end()), items.end());
}

/// Items of one first key are counted into one group, in place, and each group is ordered by the second keys. An order
/// by comparisons alone, which reads the keys of both sides at each, takes ten times as long for a million instances;
/// one over a list of keys as well as items takes half as much memory again as all the nodes.
void SortRecorded(InstanceList& items, const InstsComperator& /*order*/, InstanceList& equals)
{
  std::vector<std::uint32_t> places;
  const std::vector<du::Symbol> keys = NumberKeys(items, places);
  const std::vector<std::uint32_t> order = OrderKeys(keys);
  std::vector<std::uint32_t> ends = PlaceGroups(places, order);
  for (std::uint32_t& place : places) {
    place = ends[place]++;
  }
  MoveToPlaces(items, places);
  places = {};
  SubKeySort sortBySubKeys(equals);
  auto first = items.begin();
  auto out = first;
  for (const std::uint32_t number : order) {
    const auto last = items.begin() + static_cast<std::ptrdiff_t>(ends[number]);
    out = sortBySubKeys(first, last, out);
    first = last;
  }
  items.erase(out, items.end());
}

}  // namespace guitree
