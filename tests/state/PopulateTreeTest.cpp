#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dp/ZelTracer.h"
#include "guitree/TreeController.h"
#include "testsupport/Panel.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Panel;

/// Everything about a population of root[a] but its rows.
std::vector<std::string> MakePopulationOf(const std::vector<std::string>& rows, const std::string& keepExpanded)
{
  std::vector<std::string> calls{"StoreExpandedAndFirstVisibleBeforePopulate(" + keepExpanded + ")",
                                 "StartTreeUpdate()", "ClearTree()", "IsTreeVisibleInUI() -> true",
                                 "IsValidView(null) -> true"};
  calls.insert(calls.end(), rows.begin(), rows.end());
  for (const char* call : {"UpdateTreeTable()", "RestoreExpandedAfterPopulate()", "FinishTreeUpdate()",
                           "RestoreFirstVisible()", "UpdateMarkedInsts(null)", "ContentHasChanged()",
                           "UpdateQuickSearchResults(true, view=null, filterNeeded=false)"}) {
    calls.emplace_back(call);
  }
  return calls;
}

std::string MakeRow(const std::string& name, const std::string& parent, const std::string& controller = "no",
                    const std::string& assoc = "false")
{
  return "InstanceCreate(" + name + ", parent=" + parent + ", controller=" + controller + ", assoc=" + assoc + ")";
}

TEST(PopulateTree, WithoutACurrentTree_MakesNoHostCallAndLeavesAllFlags)
{
  Panel panel("root");
  panel.ShowTree();
  panel.host.answers.isTreeVisibleInUI = false;
  panel.state->PopulateTree(false);
  panel.gui->SetBaseTree(nullptr);
  static_cast<void>(panel.host.TakeCalls());
  panel.host.answers.isTreeVisibleInUI = true;

  panel.state->PopulateTree(false);

  EXPECT_THAT(panel.host.Calls(), IsEmpty());
  EXPECT_TRUE(panel.state->GetTreeNeedsRedraw());
  EXPECT_FALSE(panel.state->IsBusy());
}

TEST(PopulateTree, MakesOneRowForEachInstanceParentsFirstInOneBracket)
{
  Panel panel("root[a[b c] d]");
  panel.ShowTree();

  panel.state->PopulateTree(false);

  EXPECT_EQ(panel.host.TakeCalls(), MakePopulationOf({MakeRow("root", "null"), MakeRow("a", "root"), MakeRow("b", "a"),
                                                      MakeRow("c", "a"), MakeRow("d", "root")},
                                                     "false"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "b", "c", "d", "root"));
}

TEST(PopulateTree, HandsTheWishToKeepExpansionToTheHostAndDoesNothingElseWithIt)
{
  Panel panel("root");
  panel.ShowTree();

  panel.state->PopulateTree(true);

  EXPECT_EQ(panel.host.TakeCalls(), MakePopulationOf({MakeRow("root", "null")}, "true"));
}

TEST(PopulateTree, OfAnEmptyTree_BracketsNoRow)
{
  Panel panel("");
  panel.ShowTree();

  panel.state->PopulateTree(false);

  EXPECT_EQ(panel.host.TakeCalls(), MakePopulationOf({}, "false"));
}

TEST(PopulateTree, WritesOneTraceLine)
{
  Panel panel("root");
  panel.ShowTree();
  std::vector<std::string> lines;
  dp::ZelTracer::SetSink([&](const dp::TraceLine& line) {
    lines.push_back(std::string(line.component) + "|" + std::string(line.className) + "|" + std::string(line.text));
  });

  panel.state->PopulateTree(false);

  dp::ZelTracer::SetSink({});
  EXPECT_THAT(lines, ElementsAre("guitree|TreeStateBase|Populating tree... "));
}

TEST(PopulateTree, OnAnInvisiblePanel_ClearsTheHostAndAsksNothingElse)
{
  Panel panel("root[a]");
  const auto controller = panel.UseSelController();
  controller->highlighted = {panel.kernel["a"]};
  panel.ShowTree();
  panel.state->PopulateTree(false);
  ASSERT_TRUE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
  static_cast<void>(panel.host.TakeCalls());
  panel.host.answers.isTreeVisibleInUI = false;

  panel.state->PopulateTree(false);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StoreExpandedAndFirstVisibleBeforePopulate(false)", "StartTreeUpdate()", "ClearTree()",
                          "IsTreeVisibleInUI() -> false", "FinishTreeUpdate()"));
  EXPECT_THAT(panel.GetShownNames(), IsEmpty());
  EXPECT_FALSE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
  EXPECT_TRUE(panel.state->GetTreeNeedsRedraw());
}

TEST(PopulateTree, ForAViewThatTheHostDoesNotWant_BehavesAsOnAnInvisiblePanel)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.host.answers.isValidView = false;

  panel.state->PopulateTree(false);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StoreExpandedAndFirstVisibleBeforePopulate(false)", "StartTreeUpdate()", "ClearTree()",
                          "IsTreeVisibleInUI() -> true", "IsValidView(null) -> false", "FinishTreeUpdate()"));
  EXPECT_THAT(panel.GetShownNames(), IsEmpty());
  EXPECT_TRUE(panel.state->GetTreeNeedsRedraw());
}

TEST(PopulateTree, OnAnInvisiblePanel_KeepsTheSelectionFlags)
{
  Panel panel("root");
  panel.ShowTree();
  panel.host.answers.isTreeVisibleInUI = false;
  panel.state->OnClearSelection();
  panel.state->OnAssocHlightChanged(true, {}, {});

  panel.state->PopulateTree(false);

  EXPECT_TRUE(panel.state->GetSelectionNeedsUpdating());
  EXPECT_TRUE(panel.state->GetAssocHlightsNeedsUpdating());
}

TEST(PopulateTree, OnAVisiblePanel_ClearsAllThreeFlags)
{
  Panel panel("root");
  panel.ShowTree();
  panel.host.answers.isTreeVisibleInUI = false;
  panel.state->OnClearSelection();
  panel.state->OnAssocHlightChanged(true, {}, {});
  panel.state->PopulateTree(false);
  panel.host.answers.isTreeVisibleInUI = true;

  panel.state->PopulateTree(false);

  EXPECT_FALSE(panel.state->GetSelectionNeedsUpdating());
  EXPECT_FALSE(panel.state->GetAssocHlightsNeedsUpdating());
  EXPECT_FALSE(panel.state->GetTreeNeedsRedraw());
}

TEST(PopulateTree, UnderAFilterWhosePropertiesAreNotLoaded_StaysBusyAndDoesNotCalculate)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.state->filter.isFiltering = true;
  panel.host.answers.checkPropsLoaded = false;

  panel.state->PopulateTree(false);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StoreExpandedAndFirstVisibleBeforePopulate(false)", "StartTreeUpdate()", "ClearTree()",
                          "IsTreeVisibleInUI() -> true", "IsValidView(null) -> true", "CheckPropsLoaded() -> false",
                          "FinishTreeUpdate()"));
  EXPECT_TRUE(panel.state->IsBusy());
  EXPECT_FALSE(panel.gui->GetTreeController()->IsBusy());
  EXPECT_THAT(panel.GetShownNames(), IsEmpty());
}

TEST(PopulateTree, UnderAFilter_LeavesTheRowsForLaterAndTellsTheHostSo)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.state->filter.isFiltering = true;

  panel.state->PopulateTree(false);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StoreExpandedAndFirstVisibleBeforePopulate(false)", "StartTreeUpdate()", "ClearTree()",
                          "IsTreeVisibleInUI() -> true", "IsValidView(null) -> true", "CheckPropsLoaded() -> true",
                          "SetTreeCalculating(true)", "UpdateTreeTable()", "FinishTreeUpdate()"));
  EXPECT_TRUE(panel.state->IsBusy());
  EXPECT_THAT(panel.GetShownNames(), IsEmpty());
}

TEST(PopulateTree, WithTheFilterSwitchedOff_IsNotBusyAnyMore)
{
  Panel panel("root");
  panel.ShowTree();
  panel.state->filter.isFiltering = true;
  panel.state->PopulateTree(false);
  panel.state->filter.isFiltering = false;

  panel.state->PopulateTree(false);

  EXPECT_FALSE(panel.state->IsBusy());
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("root"));
}

TEST(PopulateTree, AHiddenInstanceHasNoRowAndItsChildrenComeWithItAsParent)
{
  Panel panel("root[a[b] c]");
  panel.ShowTree();
  panel.state->hidden = {panel.kernel["a"].Get()};
  const auto controller = panel.UseSelController();
  controller->highlighted = {panel.kernel["a"]};

  panel.state->PopulateTree(false);

  EXPECT_EQ(panel.host.TakeCalls(),
            MakePopulationOf({MakeRow("root", "null", "yes"), MakeRow("b", "a", "yes"), MakeRow("c", "root", "yes")},
                             "false"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("b", "c", "root"));
  EXPECT_FALSE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
}

TEST(PopulateTree, RowsStartWithTheHighlightThatTheControllerNames)
{
  Panel panel("root[a b]");
  panel.ShowTree();
  const auto controller = panel.UseSelController();
  controller->highlighted = {panel.kernel["b"]};

  panel.state->PopulateTree(false);

  EXPECT_EQ(panel.host.TakeCalls(), MakePopulationOf({MakeRow("root", "null", "yes"), MakeRow("a", "root", "yes"),
                                                      MakeRow("b", "root", "yes", "true")},
                                                     "false"));
  EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["b"].Get()));
  EXPECT_FALSE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
}

TEST(PopulateTree, WithoutAController_NoRowStartsWithAHighlight)
{
  Panel panel("root[a]");
  panel.ShowTree();

  panel.state->PopulateTree(false);

  EXPECT_EQ(panel.host.TakeCalls(), MakePopulationOf({MakeRow("root", "null"), MakeRow("a", "root")}, "false"));
}

TEST(PopulateTree, ARepopulationForgetsRowsThatAreHiddenNow)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.state->PopulateTree(false);
  panel.state->hidden = {panel.kernel["a"].Get()};

  panel.state->PopulateTree(true);

  EXPECT_THAT(panel.GetShownNames(), ElementsAre("root"));
}

TEST(PopulateTree, WhoseTreeIsTakenAwayByTheHost_RestoresAndMakesNoRow)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.host.onCall = [&](const std::string& line) {
    if (line == "ClearTree()") {
      panel.gui->SetBaseTree(nullptr);
    }
  };

  panel.state->PopulateTree(false);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StoreExpandedAndFirstVisibleBeforePopulate(false)", "StartTreeUpdate()", "ClearTree()",
                          "IsTreeVisibleInUI() -> true", "IsValidView(null) -> true", "RestoreExpandedAfterPopulate()",
                          "FinishTreeUpdate()", "RestoreFirstVisible()", "UpdateMarkedInsts(null)",
                          "ContentHasChanged()", "UpdateQuickSearchResults(true, view=null, filterNeeded=false)"));
}

TEST(PopulateTree, StartedFromInsideARow_MakesAllRowsAndTheOuterOneNoMore)
{
  Panel panel("root[a b]");
  panel.ShowTree();
  bool isNested = false;
  panel.host.onCall = [&](const std::string& line) {
    if (!isNested && line.starts_with("InstanceCreate(a")) {
      isNested = true;
      panel.state->PopulateTree(false);
    }
  };

  panel.state->PopulateTree(false);

  std::vector<std::string> expected = MakePopulationOf({MakeRow("root", "null"), MakeRow("a", "root")}, "false");
  const std::vector<std::string> inner =
      MakePopulationOf({MakeRow("root", "null"), MakeRow("a", "root"), MakeRow("b", "root")}, "false");
  const auto afterA = std::find(expected.begin(), expected.end(), MakeRow("a", "root")) + 1;
  expected.insert(afterA, inner.begin(), inner.end());
  EXPECT_EQ(panel.host.TakeCalls(), expected);
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "b", "root"));
}

TEST(PopulateTree, WithAResetFromInsideARow_MakesNoFurtherRow)
{
  Panel panel("root[a b]");
  panel.ShowTree();
  panel.host.onCall = [&](const std::string& line) {
    if (line.starts_with("InstanceCreate(a")) {
      panel.state->Reset();
    }
  };

  panel.state->PopulateTree(false);

  EXPECT_THAT(panel.GetShownNames(), IsEmpty());
}

TEST(PopulateTree, WithARemovalFromInsideARow_MakesNoRowForWhatHasGone)
{
  for (const bool isAllToldOf : {false, true}) {
    Panel panel("root[a b[c] d]");
    panel.ShowTree();
    panel.host.onCall = [&](const std::string& line) {
      if (line.starts_with("InstanceCreate(a")) {
        panel.state->InstanceRemove(panel.kernel["b"], panel.kernel["root"], false);
        if (isAllToldOf) {
          panel.state->InstanceRemove(panel.kernel["c"], panel.kernel["b"], false);
        }
      }
    };

    panel.state->PopulateTree(false);

    EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "d", "root"));
  }
}

TEST(PopulateTree, WithARemovalAndAReturnFromInsideARow_MakesTheRow)
{
  Panel panel("root[a b]");
  panel.ShowTree();
  panel.host.onCall = [&](const std::string& line) {
    if (line.starts_with("InstanceCreate(a")) {
      panel.state->InstanceRemove(panel.kernel["b"], panel.kernel["root"], false);
      panel.state->InstanceCreate(panel.kernel["b"], panel.kernel["root"], nullptr);
    }
  };

  panel.state->PopulateTree(false);

  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "b", "root"));
}

}  // namespace
