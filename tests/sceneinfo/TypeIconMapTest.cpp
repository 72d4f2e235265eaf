#include "guitree/TypeIconMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>

#include "testsupport/Panel.h"

namespace {

using guitree::TypeIconMap;
using testing::ElementsAre;
using testing::Pair;
using testsupport::Panel;

class TypeIconMapTest : public testing::Test {
protected:
  [[nodiscard]] const zelk::BaseInstance* Get(const std::string& name) const { return panel.kernel[name].Get(); }
  [[nodiscard]] std::size_t CountQuestions() const { return panel.state->calls.size(); }

  Panel panel{"root[a b]"};
  TypeIconMap icons{panel.gui.Get()};
  int icon = -7;
};

TEST_F(TypeIconMapTest, StartsEmpty)
{
  EXPECT_EQ(icons.size(), 0u);
  EXPECT_EQ(icons.begin(), icons.end());
  EXPECT_FALSE(icons._Get(Get("a"), icon));
  EXPECT_EQ(icon, -7);
}

TEST_F(TypeIconMapTest, Find_WorksAMissOutOnce)
{
  panel.state->unloadedTypeIcon = 28;

  EXPECT_TRUE(icons.Find(Get("a"), icon, nullptr));
  EXPECT_EQ(icon, 28);
  panel.state->unloadedTypeIcon = 30;
  EXPECT_TRUE(icons.Find(Get("a"), icon, nullptr));

  EXPECT_EQ(icon, 28);
  EXPECT_EQ(CountQuestions(), 1u);
}

TEST_F(TypeIconMapTest, Find_AddsTheLoadedBit)
{
  panel.state->unloadedTypeIcon = 28;
  panel.state->loaded = {Get("a")};

  EXPECT_TRUE(icons.Find(Get("a"), icon, nullptr));

  EXPECT_EQ(icon, 29);
}

TEST_F(TypeIconMapTest, Find_OfALoadedInstance_AddsOneToWhateverIconThereIs)
{
  panel.state->loaded = {Get("a"), Get("b")};

  panel.state->unloadedTypeIcon = 3;
  icons.Find(Get("a"), icon, nullptr);
  EXPECT_EQ(icon, 4);
  panel.state->unloadedTypeIcon = -1;
  icons.Find(Get("b"), icon, nullptr);
  EXPECT_EQ(icon, 0);
}

TEST_F(TypeIconMapTest, Find_WithNobodyToAsk_Fails)
{
  TypeIconMap orphan(nullptr);
  EXPECT_FALSE(orphan.Find(Get("a"), icon, nullptr));
  EXPECT_FALSE(icons.Find(nullptr, icon, nullptr));

  panel.gui->SetTreeState(nullptr);
  EXPECT_FALSE(icons.Find(Get("a"), icon, nullptr));

  EXPECT_EQ(icons.size(), 0u);
}

TEST_F(TypeIconMapTest, Get_NeverWorksAnythingOut)
{
  EXPECT_FALSE(icons._Get(Get("a"), icon));

  EXPECT_EQ(CountQuestions(), 0u);
}

TEST_F(TypeIconMapTest, Set_OverwritesAndIgnoresNull)
{
  icons.Set(Get("a"), 2);
  icons.Set(Get("a"), 4);
  icons.Set(nullptr, 6);

  EXPECT_THAT(icons, ElementsAre(Pair(Get("a"), 4)));
}

TEST_F(TypeIconMapTest, ResetIcon_LetsTheNextFindAskAgain)
{
  static_cast<void>(icons.Find(Get("a"), icon, nullptr));
  panel.state->unloadedTypeIcon = 6;

  icons.ResetIcon(Get("a"));
  icons.ResetIcon(Get("b"));
  EXPECT_TRUE(icons.Find(Get("a"), icon, nullptr));

  EXPECT_EQ(icon, 6);
  EXPECT_EQ(CountQuestions(), 2u);
}

TEST_F(TypeIconMapTest, Clear_ForgetsEverythingAndTakesNewEntries)
{
  icons.Set(Get("a"), 2);

  icons.Clear();
  EXPECT_FALSE(icons._Get(Get("a"), icon));
  icons.Set(Get("b"), 4);

  EXPECT_THAT(icons, ElementsAre(Pair(Get("b"), 4)));
}

using PlainMap = du::HashMap<const zelk::BaseInstance*, int>;

/// How many buckets a map has that was cleared and has three entries now.
[[nodiscard]] std::size_t CountBucketsOfThree(const std::array<const zelk::BaseInstance*, 3>& keys)
{
  PlainMap map;
  map.clear();
  for (const zelk::BaseInstance* key : keys) {
    map.insert_or_assign(key, 0);
  }
  return map.bucket_count();
}

/// Identities without an instance behind them. In a map that was cleared, the third one shares the bucket of the first.
[[nodiscard]] std::array<const zelk::BaseInstance*, 3> MakeIdentities()
{
  static const std::array<std::uint32_t, 100> places{};
  const auto get = [](std::size_t index) { return reinterpret_cast<const zelk::BaseInstance*>(&places.at(index)); };
  return {get(0), get(1), get(CountBucketsOfThree({get(0), get(1), get(2)}))};
}

template <typename Map>
std::vector<const zelk::BaseInstance*> ListKeys(const Map& map)
{
  std::vector<const zelk::BaseInstance*> keys;
  for (const auto& entry : map) {
    keys.push_back(entry.first);
  }
  return keys;
}

TEST_F(TypeIconMapTest, Clear_LetsTheBucketArrayStartAnewAtTheCountOfEntries)
{
  // The order of the list tells which entries share a bucket.
  PlainMap fresh;
  PlainMap cleared;
  cleared.clear();

  icons.Clear();
  for (const zelk::BaseInstance* identity : MakeIdentities()) {
    icons.Set(identity, 0);
    fresh.insert_or_assign(identity, 0);
    cleared.insert_or_assign(identity, 0);
  }

  EXPECT_EQ(ListKeys(icons), ListKeys(cleared));
  EXPECT_NE(ListKeys(icons), ListKeys(fresh));
}

TEST_F(TypeIconMapTest, CopiesKeepTheirEntriesAndWhomToAsk)
{
  icons.Set(Get("a"), 2);
  TypeIconMap copy(icons);
  TypeIconMap assigned(nullptr);
  assigned = icons;
  TypeIconMap& itself = assigned;
  assigned = itself;
  icons.Clear();

  EXPECT_THAT(copy, ElementsAre(Pair(Get("a"), 2)));
  EXPECT_THAT(assigned, ElementsAre(Pair(Get("a"), 2)));
  EXPECT_TRUE(assigned.Find(Get("b"), icon, nullptr));
}

}  // namespace
