#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/WorldPanel.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testsupport::ScriptedFilter;
using testsupport::WorldPanel;

/// What names and columns of the whole tree mean depends on the filter.
class TreeObserverFilter : public testing::Test {
protected:
  TreeObserverFilter() { panel.Initialise(); }

  [[nodiscard]] ScriptedFilter& GetFilter() const { return panel.state->filter; }
  [[nodiscard]] bool IsRefillDue() const { return panel.observer->GetRepopulateNeeded(); }

  WorldPanel panel{"root[a b]"};
};

TEST_F(TreeObserverFilter, DisplayNames_TellTheHostTwiceWithoutAFilter)
{
  panel.observer->OnDisplayNamesChanged();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateDisplayNames()", "UpdateNodeNames()"));
  EXPECT_FALSE(IsRefillDue());
}

TEST_F(TreeObserverFilter, DisplayNames_UnderADynamicFilterOfNames_AskForARefillInsteadOfNewNames)
{
  GetFilter().dynamicUpdate = GetFilter().filteringName = true;

  panel.observer->OnDisplayNamesChanged();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateDisplayNames()"));
  EXPECT_TRUE(IsRefillDue());
}

TEST_F(TreeObserverFilter, DisplayNames_SortedByTheDisplayName_AskForARefillWhateverTheGroup)
{
  for (const char* group : {"", "General"}) {
    GetFilter().sortColumn = {group, "Display Name"};

    panel.observer->OnDisplayNamesChanged();

    EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateDisplayNames()"));
    EXPECT_TRUE(IsRefillDue());
    panel.observer->OnEndUpdate();
    static_cast<void>(panel.host.TakeCalls());
  }
}

TEST_F(TreeObserverFilter, DisplayNames_SortedByAnythingElse_GetNewNames)
{
  for (const du::DualSymbol& column : {du::DualSymbol("Display Name", ""), du::DualSymbol("General", "Mass")}) {
    GetFilter().sortColumn = column;

    panel.observer->OnDisplayNamesChanged();

    EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateDisplayNames()", "UpdateNodeNames()"));
    EXPECT_FALSE(IsRefillDue());
  }
}

TEST_F(TreeObserverFilter, DisplayNames_UnderADynamicFilterOfSomethingElse_GoByTheSortColumn)
{
  GetFilter().dynamicUpdate = true;
  panel.observer->OnDisplayNamesChanged();
  EXPECT_FALSE(IsRefillDue());

  GetFilter().sortColumn = {"", "Display Name"};
  panel.observer->OnDisplayNamesChanged();
  EXPECT_TRUE(IsRefillDue());
}

TEST_F(TreeObserverFilter, DisplayNames_UnderAStaticFilterOfNames_GoByTheSortColumn)
{
  GetFilter().filteringName = true;

  panel.observer->OnDisplayNamesChanged();

  EXPECT_FALSE(IsRefillDue());
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateDisplayNames()", "UpdateNodeNames()"));
}

TEST_F(TreeObserverFilter, Columns_UnderADynamicFilterOfNames_AskForARefillAndNothingElse)
{
  GetFilter().dynamicUpdate = GetFilter().filteringName = true;
  GetFilter().sortColumn = {"General", "Mass"};

  panel.observer->OnTreeColumnsChanged();

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_TRUE(IsRefillDue());
}

TEST_F(TreeObserverFilter, Columns_Unsorted_LoadThePreferencesAlone)
{
  panel.observer->OnTreeColumnsChanged();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("LoadSortingPrefs()"));
  EXPECT_FALSE(IsRefillDue());
}

TEST_F(TreeObserverFilter, Columns_SortedByEitherPart_LoadThePreferencesAndAskForARefill)
{
  for (const du::DualSymbol& column : {du::DualSymbol("General", ""), du::DualSymbol("", "Mass")}) {
    GetFilter().sortColumn = column;

    panel.observer->OnTreeColumnsChanged();

    EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("LoadSortingPrefs()"));
    EXPECT_TRUE(IsRefillDue());
    panel.observer->OnEndUpdate();
    static_cast<void>(panel.host.TakeCalls());
  }
}

TEST_F(TreeObserverFilter, Columns_UnderHalfOfADynamicFilterOfNames_GoByTheSortColumn)
{
  GetFilter().dynamicUpdate = true;
  panel.observer->OnTreeColumnsChanged();
  GetFilter().dynamicUpdate = false;
  GetFilter().filteringName = true;
  panel.observer->OnTreeColumnsChanged();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("LoadSortingPrefs()", "LoadSortingPrefs()"));
  EXPECT_FALSE(IsRefillDue());
}

TEST_F(TreeObserverFilter, Columns_WhetherSortedIsReadBeforeTheHostLoadsItsPreferences)
{
  panel.host.onCall = [&](const std::string&) { GetFilter().sortColumn = {"General", "Mass"}; };

  panel.observer->OnTreeColumnsChanged();

  EXPECT_FALSE(IsRefillDue());
}

TEST_F(TreeObserverFilter, TheKernelsNotices_EndInARefillWithoutAStart)
{
  GetFilter().sortColumn = {"", "Display Name"};

  panel.GetTree().NotifyDisplayNamesChanged();

  const std::vector<std::string> calls = panel.host.TakeCalls();
  ASSERT_GT(calls.size(), 3u);
  EXPECT_THAT(std::vector<std::string>(calls.begin(), calls.begin() + 4),
              ElementsAre("UpdateDisplayNames()", "FinishTreeUpdate()", "UpdateFilterUI()",
                          "StoreExpandedAndFirstVisibleBeforePopulate(true)"));
  EXPECT_FALSE(IsRefillDue());
}

TEST_F(TreeObserverFilter, AProductsNewName_ReachesTheHostOutsideAnyBracket)
{
  ASSERT_TRUE(panel.GetTree().RenameProduct(panel.kernel["a"]->GetProduct(), "renamed"));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateDisplayNames()", "UpdateNodeNames()"));
}

TEST_F(TreeObserverFilter, AnInstanceThatComesUnderAStaticFilterBelowNoRow_StaysAwayAndBalancesTheBracket)
{
  panel.state->hidden = {panel.kernel["b"].Get()};
  panel.state->PopulateTree(false);
  GetFilter().isFiltering = true;
  static_cast<void>(panel.host.TakeCalls());

  panel.kernel.Add("b", "n");

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("StartTreeUpdate()", "FinishTreeUpdate()", "UpdateFilterUI()",
                                                  "ContentHasChanged()", "UpdateTreeTable()"));
  EXPECT_THAT(panel.GetShownNames(), Not(Contains("n")));
}

}  // namespace
