#include "guitree/TypeIconMap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
