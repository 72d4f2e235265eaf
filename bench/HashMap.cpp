// du::HashMap beside std::unordered_map, with addresses of instances as keys, as the library has them.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <random>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>

#include "du/HashMap.h"
#include "support/Measure.h"

namespace bench {
namespace {

struct Object {
  std::byte content[112];
};

using Key = const Object*;
using OurMap = du::HashMap<Key, int>;
using StandardMap = std::unordered_map<Key, int>;

/// Objects as a kernel allocates them, and their addresses, in that order or in one by lot.
class Keys {
public:
  explicit Keys(std::size_t count)
  {
    m_objects.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      m_objects.push_back(std::make_unique<Object>());
      m_inOrder.push_back(m_objects.back().get());
    }
    m_shuffled = m_inOrder;
    std::shuffle(m_shuffled.begin(), m_shuffled.end(), std::mt19937());
  }

  [[nodiscard]] const std::vector<Key>& GetInOrder() const noexcept { return m_inOrder; }
  [[nodiscard]] const std::vector<Key>& GetShuffled() const noexcept { return m_shuffled; }

private:
  std::vector<std::unique_ptr<Object>> m_objects;
  std::vector<Key> m_inOrder;
  std::vector<Key> m_shuffled;
};

/// Growth from an empty map included.
template <typename Map>
double TimeInsert(Map& map, const std::vector<Key>& keys)
{
  const double seconds = Time([&] {
    int value = 0;
    for (const Key key : keys) {
      map.insert({key, value++});
    }
  });
  Require(map.size() == keys.size(), "each key is entered once");
  return seconds;
}

template <typename Map>
double TimeFind(const Map& map, const std::vector<Key>& keys)
{
  std::size_t sum = 0;
  const double seconds = Time([&] {
    for (const Key key : keys) {
      sum += static_cast<std::size_t>(map.find(key)->second);
    }
  });
  Require(sum == keys.size() * (keys.size() - 1) / 2, "each key is found with its value");
  return seconds;
}

template <typename Map>
double TimeInsertAlone(const std::vector<Key>& keys)
{
  Map map;
  return TimeInsert(map, keys);
}

Figures CompareInsert(const std::vector<Key>& keys)
{
  return RunRounds(keys.size(), [&](Figures& figures) {
    const double seconds = TimeInsertAlone<OurMap>(keys);
    figures["x_unordered_map"] = seconds / TimeInsertAlone<StandardMap>(keys);
    return seconds;
  });
}

Figures InsertInOrder(std::size_t count)
{
  return CompareInsert(Keys(count).GetInOrder());
}

Figures InsertShuffled(std::size_t count)
{
  return CompareInsert(Keys(count).GetShuffled());
}

Figures Find(std::size_t count)
{
  const Keys keys(count);
  OurMap ours;
  StandardMap standard;
  TimeInsert(ours, keys.GetShuffled());
  TimeInsert(standard, keys.GetShuffled());
  return RunRounds(count, [&](Figures& figures) {
    const double seconds = TimeFind(ours, keys.GetShuffled());
    figures["x_unordered_map"] = seconds / TimeFind(standard, keys.GetShuffled());
    return seconds;
  });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  bench::Register("HashMap/insert_in_order", {10'000, 100'000, 1'000'000}, bench::InsertInOrder);
  bench::Register("HashMap/insert_shuffled", {10'000, 100'000, 1'000'000}, bench::InsertShuffled);
  bench::Register("HashMap/find", {10'000, 100'000, 1'000'000}, bench::Find);
  return bench::RunAll(argc, argv);
}
