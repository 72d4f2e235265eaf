#include "du/HashMap.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

/// Puts keys into buckets of a test's choice.
struct SelfHash {
  std::size_t operator()(std::size_t key) const noexcept { return key; }
};

using Map = du::HashMap<std::size_t, std::string, SelfHash>;

std::vector<std::size_t> GetKeys(const Map& map)
{
  std::vector<std::size_t> keys;
  for (const auto& entry : map) {
    keys.push_back(entry.first);
  }
  return keys;
}

using Keys = std::vector<std::size_t>;

TEST(HashMap, ByDefault_IsBuiltForAHundredBuckets)
{
  const Map map;

  EXPECT_EQ(map.bucket_count(), du::HashNextPrime(100));
  EXPECT_TRUE(map.empty());
  EXPECT_TRUE(map.begin() == map.end());
}

TEST(HashMap, WithASize_IsBuiltForTheNextPrime)
{
  EXPECT_EQ(Map(1000).bucket_count(), du::HashNextPrime(1000));
}

TEST(HashMap, Insert_OfANewKey_EntersIt)
{
  Map map;

  const auto [position, isNew] = map.insert({7, "seven"});

  EXPECT_TRUE(isNew);
  EXPECT_EQ(position->second, "seven");
  EXPECT_EQ(map.size(), 1U);
  EXPECT_TRUE(map.contains(7));
}

TEST(HashMap, Insert_OfAKnownKey_KeepsTheOldValue)
{
  Map map;
  map.insert({7, "seven"});

  const auto [position, isNew] = map.insert({7, "other"});

  EXPECT_FALSE(isNew);
  EXPECT_EQ(position->second, "seven");
  EXPECT_EQ(map.size(), 1U);
}

TEST(HashMap, InsertOrAssign_OverwritesInPlace)
{
  Map map;
  map[1] = "one";
  map[2] = "two";
  const Keys before = GetKeys(map);

  const auto [position, isNew] = map.insert_or_assign(1, "uno");

  EXPECT_FALSE(isNew);
  EXPECT_EQ(position->second, "uno");
  EXPECT_EQ(GetKeys(map), before);
}

TEST(HashMap, TheFirstKeyOfAnEmptyBucket_GoesToTheFrontOfTheList)
{
  Map map;

  map[1] = "";
  map[5] = "";
  map[3] = "";

  EXPECT_EQ(GetKeys(map), (Keys{3, 5, 1}));
}

TEST(HashMap, AKeyOfAFilledBucket_GoesInFrontOfItsBucket)
{
  Map map;
  const std::size_t buckets = map.bucket_count();
  map[1] = "";
  map[2] = "";
  map[3] = "";

  map[2 + buckets] = "";
  map[2 + 2 * buckets] = "";

  EXPECT_EQ(GetKeys(map), (Keys{3, 2 + 2 * buckets, 2 + buckets, 2, 1}));
}

TEST(HashMap, Insertion_GrowsTheTableWhenTheCountWouldPassTheBuckets)
{
  Map map(5);
  for (std::size_t key = 0; key < 5; ++key) {
    map[key] = "";
  }
  ASSERT_EQ(map.bucket_count(), 5U);

  map[5] = "";

  EXPECT_EQ(map.bucket_count(), du::HashNextPrime(6));
}

TEST(HashMap, OverwritingInAFullTable_AsksForOneMoreAndGrowsItToo)
{
  Map map(5);
  for (std::size_t key = 0; key < 5; ++key) {
    map[key] = "";
  }

  map.insert_or_assign(3, "three");

  EXPECT_EQ(map.bucket_count(), du::HashNextPrime(6));
  EXPECT_EQ(map.size(), 5U);
}

TEST(HashMap, Growth_TakesTheNodesFromTailToHeadAndLinksEachByTheSameRule)
{
  Map map(5);
  for (const std::size_t key : {0U, 1U, 2U, 5U, 10U}) {
    map[key] = "";
  }
  ASSERT_EQ(GetKeys(map), (Keys{2, 1, 10, 5, 0}));

  map.reserve(6);

  // 11 buckets: 0, 5, 10, 1 and 2 come in this order, each into a bucket of its own.
  EXPECT_EQ(map.bucket_count(), 11U);
  EXPECT_EQ(GetKeys(map), (Keys{2, 1, 10, 5, 0}));

  map[11] = "";
  map.reserve(12);
  // 23 buckets: the two nodes of one former bucket part.
  EXPECT_EQ(GetKeys(map), (Keys{2, 1, 10, 5, 11, 0}));
}

TEST(HashMap, Growth_LeavesReferencesAndIteratorsValid)
{
  Map map(2);
  auto position = map.insert({1, "one"}).first;
  std::string& value = map[2];

  for (std::size_t key = 3; key < 1000; ++key) {
    map[key] = "";
  }
  value = "two";

  EXPECT_EQ(position->second, "one");
  EXPECT_EQ(map.find(2)->second, "two");
}

TEST(HashMap, Reserve_OfNoMoreThanTheBuckets_ChangesNothing)
{
  Map map;

  map.reserve(map.bucket_count());

  EXPECT_EQ(map.bucket_count(), du::HashNextPrime(100));
}

TEST(HashMap, Clear_LeavesNoBucketArray)
{
  Map map;
  map[1] = "";

  map.clear();

  EXPECT_EQ(map.bucket_count(), 0U);
  EXPECT_EQ(map.size(), 0U);
  EXPECT_TRUE(map.begin() == map.end());
}

TEST(HashMap, OnAClearedMap_LookingUpAndErasingFindNothing)
{
  Map map;
  map[1] = "";
  map.clear();

  EXPECT_FALSE(map.contains(1));
  EXPECT_TRUE(map.find(1) == map.end());
  EXPECT_EQ(map.erase(1), 0U);
  map.clear();
  EXPECT_EQ(map.bucket_count(), 0U);
}

TEST(HashMap, TheFirstInsertionAfterClear_BuildsAnArrayForOne)
{
  Map map;
  map[1] = "";
  map.clear();

  map[2] = "two";

  EXPECT_EQ(map.bucket_count(), du::HashNextPrime(1));
  EXPECT_EQ(map.find(2)->second, "two");
}

TEST(HashMap, Erase_OfAnAbsentKey_DoesNothing)
{
  Map map;
  const std::size_t sameBucket = 1 + map.bucket_count();
  map[1] = "";

  EXPECT_EQ(map.erase(2), 0U);
  EXPECT_EQ(map.erase(sameBucket), 0U);

  EXPECT_EQ(map.size(), 1U);
}

TEST(HashMap, Erase_OfEachNodeOfABucket_LeavesTheOthersFindable)
{
  const std::size_t buckets = Map().bucket_count();
  const Keys bucket{1, 1 + buckets, 1 + 2 * buckets};
  for (const std::size_t erased : bucket) {
    Map map;
    map[0] = "";
    for (const std::size_t key : bucket) {
      map[key] = "";
    }
    map[2] = "";

    EXPECT_EQ(map.erase(erased), 1U);

    EXPECT_FALSE(map.contains(erased));
    EXPECT_EQ(map.size(), 4U);
    map[1 + 3 * buckets] = "";
    for (const auto& entry : map) {
      EXPECT_TRUE(map.contains(entry.first));
    }
  }
}

TEST(HashMap, EraseByPosition_ReturnsTheEntryAfterIt)
{
  Map map;
  map[1] = "";
  map[2] = "";
  map[3] = "";

  auto next = map.erase(map.find(2));

  EXPECT_EQ(next->first, 1U);
  EXPECT_TRUE(map.erase(next) == map.end());
  EXPECT_EQ(GetKeys(map), (Keys{3}));
}

TEST(HashMap, Erase_ByAReferenceToTheKeyOfTheEntry_IsSafe)
{
  Map map;
  map[1] = "";

  EXPECT_EQ(map.erase(map.begin()->first), 1U);

  EXPECT_TRUE(map.empty());
}

TEST(HashMap, ACopy_HasTheSameEntriesOrderAndBucketsAndIsIndependent)
{
  Map map(11);
  for (const std::size_t key : {0U, 1U, 2U, 11U, 22U}) {
    map[key] = std::to_string(key);
  }

  Map copy(map);
  copy[22] = "changed";
  copy.erase(1);

  EXPECT_EQ(GetKeys(map), (Keys{2, 1, 22, 11, 0}));
  EXPECT_EQ(map.find(22)->second, "22");
  EXPECT_EQ(GetKeys(copy), (Keys{2, 22, 11, 0}));
  copy[33] = "";
  EXPECT_EQ(GetKeys(copy), (Keys{2, 33, 22, 11, 0}));
}

TEST(HashMap, ACopyOfAClearedMap_HasNoBucketArray)
{
  Map map;
  map.clear();

  Map copy(map);

  EXPECT_EQ(copy.bucket_count(), 0U);
  copy[1] = "";
  EXPECT_EQ(copy.bucket_count(), du::HashNextPrime(1));
}

TEST(HashMap, Moving_LeavesAnEmptyMapThatCanBeUsed)
{
  Map map;
  map[1] = "one";
  const Map moved(std::move(map));

  // NOLINTBEGIN(bugprone-use-after-move): that is what is promised
  EXPECT_TRUE(map.empty());
  EXPECT_FALSE(map.contains(1));
  map[2] = "two";
  // NOLINTEND(bugprone-use-after-move)

  EXPECT_EQ(GetKeys(map), (Keys{2}));
  EXPECT_EQ(GetKeys(moved), (Keys{1}));
}

TEST(HashMap, Assignment_ReplacesTheEntriesAndBearsItself)
{
  Map map;
  map[1] = "one";
  Map other;
  other[2] = "two";
  auto& same = map;

  map = same;
  EXPECT_EQ(GetKeys(map), (Keys{1}));
  map = std::move(same);
  EXPECT_EQ(GetKeys(map), (Keys{1}));
  map = other;
  EXPECT_EQ(GetKeys(map), (Keys{2}));
  map = Map();
  EXPECT_TRUE(map.empty());
  EXPECT_EQ(GetKeys(other), (Keys{2}));
}

TEST(HashMap, Values_MayBeMovableOnly)
{
  du::HashMap<int, std::unique_ptr<int>> map;

  map.insert_or_assign(1, std::make_unique<int>(1));
  map.insert_or_assign(1, std::make_unique<int>(2));
  map.try_emplace(3, std::make_unique<int>(3));

  EXPECT_EQ(*map[1], 2);
  EXPECT_EQ(*map[3], 3);
}

TEST(HashMap, AMutableIterator_ConvertsToAConstOne)
{
  Map map;
  map[1] = "one";

  const Map::const_iterator position = map.begin();

  EXPECT_TRUE(position == map.find(1));
  EXPECT_EQ(position->second, "one");
}

/// A value that cannot be copied a third time.
struct ThrowsOnThirdCopy {
  ThrowsOnThirdCopy() = default;
  ThrowsOnThirdCopy(const ThrowsOnThirdCopy& other) : copies(other.copies), owned(std::make_shared<int>(0))
  {
    if (++*copies == 3) {
      throw std::runtime_error("third copy");
    }
  }
  ThrowsOnThirdCopy& operator=(const ThrowsOnThirdCopy&) = delete;
  ~ThrowsOnThirdCopy() = default;

  std::shared_ptr<int> copies = std::make_shared<int>(0);
  std::shared_ptr<int> owned;
};

TEST(HashMap, ACopyThatFailsHalfway_LeaksNothing)
{
  du::HashMap<int, ThrowsOnThirdCopy> map;
  const std::shared_ptr<int> copies = map[0].copies;
  for (int key = 1; key < 5; ++key) {
    map[key].copies = copies;
  }

  EXPECT_THROW((du::HashMap<int, ThrowsOnThirdCopy>(map)), std::runtime_error);

  EXPECT_EQ(copies.use_count(), 6);
  EXPECT_EQ(map.size(), 5U);
}

}  // namespace
