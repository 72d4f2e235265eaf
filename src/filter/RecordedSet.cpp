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
    const auto [entry, isNew] = known.emplace(key.GetText(), static_cast<std::uint32_t>(keys.size()));
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

class SubKeySort {
public:
  void operator()(InstanceList::iterator first, InstanceList::iterator last)
  {
    m_keyed.clear();
    for (auto item = first; item != last; ++item) {
      m_keyed.emplace_back(*item ? (*item)->GetInstanceSubKey().GetText() : nullptr, item->Get());
    }
    const auto isBefore = [](const Keyed& a, const Keyed& b) { return std::less<>()(a.first, b.first); };
    if (std::is_sorted(m_keyed.begin(), m_keyed.end(), isBefore)) {
      return;
    }
    std::stable_sort(m_keyed.begin(), m_keyed.end(), isBefore);
    _Reorder(first);
  }

private:
  using Keyed = std::pair<const char*, zelk::BaseInstance*>;

  void _Reorder(InstanceList::iterator first)
  {
    std::vector<du::SmartPtr<zelk::BaseInstance>> ordered;
    ordered.reserve(m_keyed.size());
    for (const auto& [key, item] : m_keyed) {
      ordered.emplace_back(item);
    }
    std::move(ordered.begin(), ordered.end(), first);
  }

  /// Kept for its memory.
  std::vector<Keyed> m_keyed;
};

}  // namespace

void SortRecorded(InstanceList& items, const ByAddress& order)
{
  // Kernels allocate instances in the order in which they are walked, as a rule.
  if (!std::is_sorted(items.begin(), items.end(), order)) {
    std::sort(items.begin(), items.end(), order);
  }
}

/// Items of one first key are counted into one group, in place, and each group is ordered by the second keys. An order
/// by comparisons alone, which reads the keys of both sides at each, takes ten times as long for a million instances;
/// one over a list of keys as well as items takes half as much memory again as all the nodes.
void SortRecorded(InstanceList& items, const InstsComperator& /*order*/)
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
  SubKeySort sortBySubKeys;
  auto first = items.begin();
  for (const std::uint32_t number : order) {
    const auto last = items.begin() + static_cast<std::ptrdiff_t>(ends[number]);
    sortBySubKeys(first, last);
    first = last;
  }
}

}  // namespace guitree
