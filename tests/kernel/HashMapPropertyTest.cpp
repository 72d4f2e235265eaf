#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <iterator>
#include <list>
#include <map>
#include <utility>
#include <vector>

#include "du/HashMap.h"

namespace {

struct SelfHash {
  std::size_t operator()(unsigned int key) const noexcept { return key; }
};

using Map = du::HashMap<unsigned int, int, SelfHash>;
using Entry = std::pair<unsigned int, int>;

/// The map as it is described: one list, walked from the front for everything.
class Model {
public:
  explicit Model(std::size_t buckets) : m_buckets(du::HashNextPrime(buckets)) {}

  void Set(unsigned int key, int value)
  {
    Reserve(m_list.size() + 1);
    for (Entry& entry : m_list) {
      if (entry.first == key) {
        entry.second = value;
        return;
      }
    }
    _Insert({key, value});
  }

  void Erase(unsigned int key)
  {
    m_list.remove_if([&](const Entry& entry) { return entry.first == key; });
  }

  void Clear()
  {
    m_list.clear();
    m_buckets = 0;
  }

  void Reserve(std::size_t count)
  {
    if (count <= m_buckets) {
      return;
    }
    m_buckets = du::HashNextPrime(count);
    std::list<Entry> old;
    old.swap(m_list);
    for (auto entry = old.rbegin(); entry != old.rend(); ++entry) {
      _Insert(*entry);
    }
  }

  [[nodiscard]] std::size_t GetBuckets() const { return m_buckets; }
  [[nodiscard]] std::vector<Entry> GetEntries() const { return {m_list.begin(), m_list.end()}; }

private:
  void _Insert(const Entry& entry)
  {
    auto position = m_list.begin();
    for (auto node = m_list.begin(); node != m_list.end(); ++node) {
      if (node->first % m_buckets == entry.first % m_buckets) {
        position = node;
        break;
      }
    }
    m_list.insert(position, entry);
  }

  std::size_t m_buckets;
  std::list<Entry> m_list;
};

enum class Action { Set, SetOld, Erase, EraseByPosition, Clear, Reserve, Copy, Move, Swap };

struct Step {
  Action action = Action::Set;
  unsigned int key = 0;
  int value = 0;
};

std::ostream& operator<<(std::ostream& out, const Step& step)
{
  return out << static_cast<int>(step.action) << ':' << step.key << '=' << step.value;
}

rc::Gen<Step> AnyStep()
{
  return rc::gen::construct<Step>(rc::gen::weightedElement<Action>({{30, Action::Set},
                                                                    {6, Action::SetOld},
                                                                    {8, Action::Erase},
                                                                    {3, Action::EraseByPosition},
                                                                    {1, Action::Clear},
                                                                    {1, Action::Reserve},
                                                                    {1, Action::Copy},
                                                                    {1, Action::Move},
                                                                    {1, Action::Swap}}),
                                  rc::gen::inRange(0U, 300U), rc::gen::arbitrary<int>());
}

std::vector<Entry> GetEntries(const Map& map)
{
  return {map.begin(), map.end()};
}

void Apply(const Step& step, Map& map, Model& model)
{
  switch (step.action) {
    case Action::Set:
      map.insert_or_assign(step.key, step.value);
      model.Set(step.key, step.value);
      break;
    case Action::SetOld:
      if (!map.empty()) {
        const unsigned int key = map.begin()->first;
        map[key] = step.value;
        model.Set(key, step.value);
      }
      break;
    case Action::Erase:
      map.erase(step.key);
      model.Erase(step.key);
      break;
    case Action::EraseByPosition:
      if (const auto position = map.find(step.key); position != map.end()) {
        map.erase(position);
        model.Erase(step.key);
      }
      break;
    case Action::Clear:
      map.clear();
      model.Clear();
      break;
    case Action::Reserve:
      map.reserve(step.key);
      model.Reserve(step.key);
      break;
    case Action::Copy: {
      Map copy(map);
      map.clear();
      map = copy;
      break;
    }
    case Action::Move: {
      Map moved(std::move(map));
      map = std::move(moved);
      break;
    }
    case Action::Swap: {
      Map other;
      other[step.key] = step.value;
      map.swap(other);
      other.swap(map);
      break;
    }
  }
}

/// What is promised of the order whatever the model says: the nodes of one bucket stand together.
void CheckThatBucketsAreAdjacent(const Map& map)
{
  std::map<std::size_t, std::size_t> lastIndexOf;
  std::size_t index = 0;
  for (const auto& entry : map) {
    const std::size_t bucket = entry.first % map.bucket_count();
    if (const auto last = lastIndexOf.find(bucket); last != lastIndexOf.end()) {
      RC_ASSERT(last->second + 1 == index);
    }
    lastIndexOf[bucket] = index;
    ++index;
  }
}

TEST(HashMapProperties, AnyHistory_LeavesTheEntriesTheOrderAndTheBucketsOfTheModel)
{
  EXPECT_TRUE(rc::check("the map equals its model after every step", [] {
    const auto buckets = *rc::gen::inRange<std::size_t>(0, 40);
    const auto steps = *rc::gen::container<std::vector<Step>>(AnyStep());
    Map map(buckets);
    Model model(buckets);

    for (const Step& step : steps) {
      Apply(step, map, model);
      RC_ASSERT(GetEntries(map) == model.GetEntries());
      RC_ASSERT(map.bucket_count() == model.GetBuckets());
      RC_ASSERT(map.size() == model.GetEntries().size());
    }
  }));
}

TEST(HashMapProperties, AnyHistory_KeepsBucketsAdjacentAndEveryEntryFindable)
{
  EXPECT_TRUE(rc::check("buckets are adjacent, and keys are found exactly if they stand on the list", [] {
    const auto steps = *rc::gen::container<std::vector<Step>>(AnyStep());
    Map map(*rc::gen::inRange<std::size_t>(0, 40));
    Model model(0);
    for (const Step& step : steps) {
      Apply(step, map, model);
    }

    CheckThatBucketsAreAdjacent(map);
    const std::map<unsigned int, int> plain(map.begin(), map.end());
    RC_ASSERT(plain.size() == map.size());
    for (unsigned int key = 0; key < 300; ++key) {
      const auto found = map.find(key);
      RC_ASSERT((found != map.end()) == plain.contains(key));
      if (found != map.end()) {
        RC_ASSERT(found->second == plain.at(key));
      }
    }
  }));
}

TEST(HashMapProperties, WithinABucketTheNewestIsFirst)
{
  EXPECT_TRUE(rc::check("without growth the later of two keys of a bucket stands first", [] {
    const auto keys = *rc::gen::unique<std::vector<unsigned int>>(rc::gen::inRange(0U, 10000U));
    Map map(keys.size());
    std::map<unsigned int, std::size_t> timeOf;
    for (std::size_t time = 0; time < keys.size(); ++time) {
      map[keys[time]] = 0;
      timeOf[keys[time]] = time;
    }

    for (auto node = map.begin(); node != map.end(); ++node) {
      const auto next = std::next(node);
      if (next != map.end() && node->first % map.bucket_count() == next->first % map.bucket_count()) {
        RC_ASSERT(timeOf[node->first] > timeOf[next->first]);
      }
    }
  }));
}

TEST(HashMapProperties, ACopy_GoesOnLikeTheOriginal)
{
  EXPECT_TRUE(rc::check("a copy and its original answer the same to the same steps", [] {
    const auto before = *rc::gen::container<std::vector<Step>>(AnyStep());
    const auto after = *rc::gen::container<std::vector<Step>>(AnyStep());
    Map map;
    Model unused(100);
    for (const Step& step : before) {
      Apply(step, map, unused);
    }

    Map copy(map);
    for (const Step& step : after) {
      Apply(step, map, unused);
      Apply(step, copy, unused);
    }

    RC_ASSERT(GetEntries(copy) == GetEntries(map));
    RC_ASSERT(copy.bucket_count() == map.bucket_count());
  }));
}

}  // namespace
