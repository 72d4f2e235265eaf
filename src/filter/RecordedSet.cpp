#include "guitree/RecordedSet.h"

#include <cstdint>
#include <functional>
#include <numeric>
#include <unordered_map>
#include <utility>
#include <vector>

namespace guitree {
namespace {

/// Asks now and then whether the work is still wanted.
class Patience {
public:
  explicit Patience(const std::function<bool()>& isWanted) : m_isWanted(isWanted) {}

  /// For small steps.
  [[nodiscard]] bool HasEnded()
  {
    constexpr unsigned int s_steps = 1024;
    return ++m_count % s_steps == 0 ? HasEndedNow() : m_hasEnded;
  }
  [[nodiscard]] bool HasEndedNow()
  {
    m_hasEnded = m_hasEnded || (m_isWanted && !m_isWanted());
    return m_hasEnded;
  }

private:
  const std::function<bool()>& m_isWanted;
  unsigned int m_count = 0;
  bool m_hasEnded = false;
};

/// A stable sort that can be given up, which leaves the entries in any order.
template <typename Entry, typename Less>
void Sort(std::vector<Entry>& entries, Less less, Patience& patience)
{
  constexpr std::size_t s_block = 4096;
  const std::size_t size = entries.size();
  const auto at = [&](std::size_t place) {
    return entries.begin() + static_cast<std::ptrdiff_t>(std::min(place, size));
  };
  for (std::size_t begin = 0; begin < size && !patience.HasEndedNow(); begin += s_block) {
    std::stable_sort(at(begin), at(begin + s_block), less);
  }
  for (std::size_t width = s_block; width < size; width *= 2) {
    for (std::size_t begin = 0; begin + width < size && !patience.HasEndedNow(); begin += 2 * width) {
      std::inplace_merge(at(begin), at(begin + width), at(begin + 2 * width), less);
    }
  }
}

/// Gives each item the number of its first key, counted as they come, and answers the keys.
std::vector<du::Symbol> NumberKeys(const InstanceList& items, std::vector<std::uint32_t>& numbers, Patience& patience)
{
  std::unordered_map<const char*, std::uint32_t> known;
  std::vector<du::Symbol> keys;
  numbers.reserve(items.size());
  for (const auto& item : items) {
    if (patience.HasEnded()) {
      break;
    }
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
std::vector<std::uint32_t> OrderKeys(const std::vector<du::Symbol>& keys, Patience& patience)
{
  std::vector<std::uint32_t> order(keys.size());
  std::iota(order.begin(), order.end(), 0U);
  const auto isBefore = [&keys](std::uint32_t a, std::uint32_t b) { return keys[a].GetView() < keys[b].GetView(); };
  Sort(order, isBefore, patience);
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
void MoveToPlaces(InstanceList& items, std::vector<std::uint32_t>& places, Patience& patience)
{
  for (std::uint32_t i = 0; i < places.size() && !patience.HasEnded(); ++i) {
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
  SubKeySort(InstanceList& equals, Patience& patience) : m_equals(equals), m_patience(patience) {}

  /// Moves what stays to `out`, which does not lie behind `first`, and answers where that ends.
  InstanceList::iterator operator()(const InstanceList::iterator& first, const InstanceList::iterator& last,
                                    InstanceList::iterator out)
  {
    _ReadKeys(first, last);
    const bool isOrdered = std::adjacent_find(m_keyed.begin(), m_keyed.end(), std::not_fn(IsBefore)) == m_keyed.end();
    if (!isOrdered) {
      Sort(m_keyed, IsBefore, m_patience);
    }
    if (isOrdered || m_patience.HasEndedNow()) {
      return out == first ? last : std::move(first, last, out);
    }
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

  void _ReadKeys(const InstanceList::iterator& first, const InstanceList::iterator& last)
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
  Patience& m_patience;
  /// Both kept for their memory.
  Entries m_keyed;
  std::vector<du::SmartPtr<zelk::BaseInstance>> m_items;
};

}  // namespace

bool SortRecorded(InstanceList& items, const ByAddress& order, InstanceList& /*equals*/,
                  const std::function<bool()>& /*isWanted*/)
{
  // Kernels allocate instances in the order in which they are walked, as a rule.
  if (!std::is_sorted(items.begin(), items.end(), order)) {
    std::sort(items.begin(), items.end(), order);
  }
  items.erase(std::unique(items.begin(), items.end()), items.end());
  return true;
}

/// Items of one first key are counted into one group, in place, and each group is ordered by the second keys. An order
/// by comparisons alone, which reads the keys of both sides at each, takes ten times as long for a million instances;
/// one over a list of keys as well as items takes half as much memory again as all the nodes.
bool SortRecorded(InstanceList& items, const InstsComperator& /*order*/, InstanceList& equals,
                  const std::function<bool()>& isWanted)
{
  Patience patience(isWanted);
  std::vector<std::uint32_t> places;
  const std::vector<du::Symbol> keys = NumberKeys(items, places, patience);
  const std::vector<std::uint32_t> order = OrderKeys(keys, patience);
  if (patience.HasEndedNow()) {
    return false;
  }
  std::vector<std::uint32_t> ends = PlaceGroups(places, order);
  for (std::uint32_t& place : places) {
    place = ends[place]++;
  }
  MoveToPlaces(items, places, patience);
  places = {};
  SubKeySort sortBySubKeys(equals, patience);
  auto first = items.begin();
  auto out = first;
  for (const std::uint32_t number : order) {
    if (patience.HasEnded()) {
      break;
    }
    const auto last = items.begin() + static_cast<std::ptrdiff_t>(ends[number]);
    out = sortBySubKeys(first, last, out);
    first = last;
  }
  items.erase(out == first ? items.end() : std::move(first, items.end(), out), items.end());
  return !patience.HasEnded();
}

}  // namespace guitree
