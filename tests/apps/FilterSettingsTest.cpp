#include "FilterSettings.h"

#include <gtest/gtest.h>

namespace {

TEST(FindFault, OfSettingsThatGoTogether_IsEmpty)
{
  EXPECT_EQ(FindFault({}), "");
  EXPECT_EQ(FindFault({.text = "nut", .columns = {"Layer", "name"}, .matchCase = true, .wholeWord = true}), "");
  EXPECT_EQ(FindFault({.parts = true, .bodies = true, .siblings = true, .sort = "COLOR", .descending = true}), "");
}

TEST(FindFault, OptionsOfAText_NeedOne)
{
  EXPECT_EQ(FindFault({.matchCase = true, .parts = true}), "--match-case needs a text to look for");
  EXPECT_EQ(FindFault({.wholeWord = true}), "--whole-word needs a text to look for");
  EXPECT_EQ(FindFault({.columns = {"Layer"}}), "--column needs a text to look for");
}

TEST(FindFault, Text_NeedsAWord)
{
  EXPECT_EQ(FindFault({.text = ""}), "the text to look for has no word in it");
  EXPECT_EQ(FindFault({.text = " \t"}), "the text to look for has no word in it");
}

TEST(FindFault, Descending_NeedsAColumn)
{
  EXPECT_EQ(FindFault({.text = "nut", .descending = true}), "--descending needs --sort");
}

TEST(FindNeedOfAFilter, OptionsOfAResult_HaveOne)
{
  EXPECT_EQ(FindNeedOfAFilter({.siblings = true}), "--siblings needs something to filter by, such as a text");
  EXPECT_EQ(FindNeedOfAFilter({.list = true}), "--list needs something to filter by, such as a text");
  EXPECT_EQ(FindNeedOfAFilter({.follow = true}), "--follow needs something to filter by, such as a text");
  EXPECT_EQ(FindNeedOfAFilter({.sort = "Name"}), "--sort needs something to filter by, such as a text");
}

TEST(FindNeedOfAFilter, WithSomethingToFilterBy_IsEmpty)
{
  EXPECT_EQ(FindNeedOfAFilter({}), "");
  EXPECT_EQ(FindNeedOfAFilter({.parts = true, .siblings = true, .list = true, .follow = true, .sort = "Name"}), "");
}

TEST(FindFault, VisibleAndHidden_Contradict)
{
  EXPECT_EQ(FindFault({.visible = true, .hidden = true}), "--visible and --hidden contradict each other");
}

TEST(FindFault, UnknownColumn_IsNamedWithThoseThereAre)
{
  const std::string only = ", only Name, Product Name, Color, Layer, Source File, Referenced File, Reference Failure";

  EXPECT_EQ(FindFault({.text = "nut", .columns = {"Layer", "Weight"}}), "there is no column 'Weight'" + only);
  EXPECT_EQ(FindFault({.text = "nut", .sort = "Nam"}), "there is no column 'Nam'" + only);
  EXPECT_EQ(FindFault({.text = "nut", .sort = ""}), "there is no column ''" + only);
}

class ApplySettings : public testing::Test {
protected:
  using Visibility = zelremote::StructureFilterInfo::Visibility;

  zelremote::StructureFilterInfo filter{"panel"};
};

TEST_F(ApplySettings, Nothing_FiltersNothing)
{
  Apply({.text = "nut", .selected = true, .parts = true}, filter);

  Apply({.sort = "Name"}, filter);

  EXPECT_FALSE(filter.IsFiltering(true));
}

TEST_F(ApplySettings, Text_IsLookedForInNamesWhereNoColumnIsNamed)
{
  Apply({.text = "nut"}, filter);

  EXPECT_TRUE(filter.GetFilteringName());
  EXPECT_FALSE(filter.GetFilteringColumns());
}

TEST_F(ApplySettings, Columns_TakeThePlaceOfTheName)
{
  Apply({.text = "nut", .columns = {"layer", "Color"}}, filter);
  EXPECT_FALSE(filter.GetFilteringName());
  EXPECT_EQ(filter.GetColumns(), (std::vector<du::DualSymbol>{{"Instance", "Layer"}, {"Instance", "Color"}}));

  Apply({.text = "nut", .columns = {"layer", "name"}}, filter);
  EXPECT_TRUE(filter.GetFilteringName());
  EXPECT_EQ(filter.GetColumns(), (std::vector<du::DualSymbol>{{"Instance", "Layer"}}));
}

TEST_F(ApplySettings, Name_IsSortedByWhatRowsShow)
{
  Apply({.text = "nut", .sort = "name", .descending = true}, filter);
  EXPECT_EQ(filter.GetSortColumn(), du::DualSymbol("Instance", "Display Name"));
  EXPECT_FALSE(filter.GetSortDirection());

  Apply({.text = "nut"}, filter);
  EXPECT_EQ(filter.GetSortColumn(), du::DualSymbol());
  EXPECT_TRUE(filter.GetSortDirection());
}

TEST_F(ApplySettings, List_IsSortedByNameUnlessByAnotherColumn)
{
  Apply({.text = "nut", .list = true}, filter);
  EXPECT_EQ(filter.GetSortColumn(), du::DualSymbol("Instance", "Display Name"));

  Apply({.text = "nut", .list = true, .sort = "Layer"}, filter);
  EXPECT_EQ(filter.GetSortColumn(), du::DualSymbol("Instance", "Layer"));
}

TEST_F(ApplySettings, Flags_TurnOnTheirCriteria)
{
  Apply({.text = "nut",
         .matchCase = true,
         .wholeWord = true,
         .selected = true,
         .hidden = true,
         .parts = true,
         .bodies = true,
         .issues = true,
         .results = true,
         .siblings = true,
         .list = true,
         .follow = true},
        filter);

  EXPECT_TRUE(filter.GetMatchCase() && filter.GetMatchWholeWord() && filter.GetFilteringSel());
  EXPECT_TRUE(filter.GetFilteringParts() && filter.GetFilteringBodies() && filter.GetFilteringIssues());
  EXPECT_TRUE(filter.GetShowSiblings());
  EXPECT_EQ(filter.GetVisibility(), Visibility::Hidden);
  EXPECT_TRUE(filter.useResultsList && filter.resultsListLive && filter.GetDynamicUpdate());
  EXPECT_EQ(filter.listMode, 1);

  Apply({.visible = true}, filter);
  EXPECT_EQ(filter.GetVisibility(), Visibility::Visible);
  EXPECT_FALSE(filter.GetFilteringIssues() || filter.GetShowSiblings() || filter.GetFilteringSel());
  EXPECT_FALSE(filter.useResultsList || filter.resultsListLive || filter.GetDynamicUpdate());
  EXPECT_EQ(filter.listMode, 0);
}

}  // namespace
