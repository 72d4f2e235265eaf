#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "JobStage.h"

namespace {

using filtertest::JobStage;
using filtertest::JobState;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string MakeNodeRow(const std::string& name, const std::string& controller = "no",
                        const std::string& assoc = "false")
{
  return "InstanceCreate(node " + name + ", controller=" + controller + ", assoc=" + assoc + ")";
}

TEST(FilteredPopulation, EmptiesTheHostAndLeavesItCalculating)
{
  JobStage stage;
  stage.LetThrough({"b"});

  stage.state->PopulateTree(true);

  EXPECT_THAT(stage.host.TakeCalls(),
              ElementsAre("StoreExpandedAndFirstVisibleBeforePopulate(true)", "StartTreeUpdate()", "ClearTree()",
                          "IsTreeVisibleInUI() -> true", "IsValidView(null) -> true", "CheckPropsLoaded() -> true",
                          "CreateFilterProgressCtrl(yes) -> no", "GetNonFilteredInsts2() -> null",
                          "GetNonFilteredInsts1() -> null", "SetTreeCalculating(true)", "UpdateTreeTable()",
                          "FinishTreeUpdate()"));
  EXPECT_TRUE(stage.state->IsBusy());
  EXPECT_THAT(stage.state->GetNotFilteredSet(), IsEmpty());
}

TEST(FilteredPopulation, MakesTheRowsOfTheResultParentsFirstInOneBracket)
{
  JobStage stage;
  stage.LetThrough({"b", "c", "d"});
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());

  stage.Finish();

  EXPECT_THAT(
      stage.host.TakeCalls(),
      ElementsAre("SetTreeCalculating(false)", "StartTreeUpdate()", MakeNodeRow("root"), MakeNodeRow("a"),
                  MakeNodeRow("b"), MakeNodeRow("c"), MakeNodeRow("d"), "PostProcessingComplete()", "UpdateTreeTable()",
                  "RestoreExpandedAfterPopulate()", "FinishTreeUpdate()", "RestoreFirstVisible()"));
  EXPECT_FALSE(stage.state->IsBusy());
  EXPECT_THAT(stage.state->GetNotFilteredSet(), SizeIs(5));
}

TEST(FilteredPopulation, WithoutTheProperties_StaysBusyAndStartsNothing)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.host.answers.checkPropsLoaded = false;

  stage.state->PopulateTree(false);

  EXPECT_THAT(stage.host.TakeCalls(),
              ElementsAre("StoreExpandedAndFirstVisibleBeforePopulate(false)", "StartTreeUpdate()", "ClearTree()",
                          "IsTreeVisibleInUI() -> true", "IsValidView(null) -> true", "CheckPropsLoaded() -> false",
                          "FinishTreeUpdate()"));
  EXPECT_TRUE(stage.state->IsBusy());
  EXPECT_FALSE(stage.GetController().IsBusy());
  EXPECT_THAT(stage.GetPool().waiting, IsEmpty());
}

TEST(FilteredPopulation, OnAnInvisiblePanel_StartsNothingUntilItIsShown)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.host.answers.isTreeVisibleInUI = false;

  stage.state->PopulateTree(false);
  EXPECT_FALSE(stage.GetController().IsBusy());
  stage.host.answers.isTreeVisibleInUI = true;
  stage.state->MadeVisible(true);
  stage.Finish();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "a", "b"));
}

TEST(FilteredPopulation, AsksTheSelectionForEachRow)
{
  JobStage stage;
  const auto selection = du::MakeSmart<testsupport::ScriptedSelectionController>();
  selection->highlighted = {stage.kernel["b"]};
  stage.state->selController = selection;
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());
  stage.state->selControllerQuestions.clear();

  stage.Finish();

  const std::vector<std::string> calls = stage.host.TakeCalls();
  ASSERT_THAT(calls, SizeIs(testing::Gt(4U)));
  EXPECT_EQ(calls[2], MakeNodeRow("root", "yes"));
  EXPECT_EQ(calls[4], MakeNodeRow("b", "yes", "true"));
  EXPECT_TRUE(stage.state->IsAssocHlight(stage.kernel["b"].Get()));
  EXPECT_THAT(stage.state->selControllerQuestions, ElementsAre(true));
}

TEST(FilteredPopulation, LeavesHiddenInstancesOutButNotWhatIsBelowThem)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.state->hidden = {stage.kernel["a"].Get()};

  stage.state->PopulateTree(false);
  stage.Finish();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "b"));
  EXPECT_FALSE(stage.state->GetNotFilteredSet().contains(stage.kernel["a"].Get()));
}

TEST(FilteredPopulation, OfAnEmptyTree_MakesNoRowButEndsTheCalculation)
{
  JobStage stage("");
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());

  stage.Finish();

  EXPECT_THAT(
      stage.host.TakeCalls(),
      ElementsAre("SetTreeCalculating(false)", "StartTreeUpdate()", "PostProcessingComplete()", "UpdateTreeTable()",
                  "RestoreExpandedAfterPopulate()", "FinishTreeUpdate()", "RestoreFirstVisible()"));
  EXPECT_FALSE(stage.state->IsBusy());
}

TEST(FilteredPopulation, OfACancelledJob_ShowsTheRootOverAPlaceholder)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.state->filter.onAsked = [&](auto&&...) { stage.host.events.at(0)->Cancel(); };
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());

  stage.Finish();

  EXPECT_THAT(stage.host.TakeCalls(),
              ElementsAre("SetTreeCalculating(false)", "StartTreeUpdate()", MakeNodeRow("root"),
                          "FilterNodeCreate(node root)", "PostProcessingComplete()", "UpdateTreeTable()",
                          "RestoreExpandedAfterPopulate()", "FinishTreeUpdate()", "RestoreFirstVisible()"));
}

TEST(FilteredPopulation, TheResultOfATreeThatHasBeenReplacedOnlyEndsTheCalculation)
{
  JobStage stage;
  testsupport::NamedTree other("other");
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);
  stage.gui->SetBaseTree(other.Get());
  static_cast<void>(stage.host.TakeCalls());

  stage.Finish();

  EXPECT_THAT(stage.host.TakeCalls(), ElementsAre("SetTreeCalculating(false)"));
  EXPECT_FALSE(stage.state->IsBusy());
}

TEST(FilteredPopulation, TheResultForAnotherHostEndsNoCalculationButMakesTheRows)
{
  JobStage stage;
  filtertest::JobHost second;
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);
  stage.gui->SetGuiInterface(&second);
  static_cast<void>(stage.host.TakeCalls());

  stage.Finish();

  EXPECT_THAT(stage.host.TakeCalls(), IsEmpty());
  EXPECT_THAT(second.TakeCalls(),
              ElementsAre("StartTreeUpdate()", MakeNodeRow("root"), MakeNodeRow("a"), MakeNodeRow("b"),
                          "PostProcessingComplete()", "UpdateTreeTable()", "RestoreExpandedAfterPopulate()",
                          "FinishTreeUpdate()", "RestoreFirstVisible()"));
  stage.gui->SetGuiInterface(&stage.host);
}

TEST(FilteredPopulation, TheResultForAnotherHostAndAnotherTreeTouchesNothing)
{
  JobStage stage;
  filtertest::JobHost second;
  testsupport::NamedTree other("other");
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);
  stage.gui->SetGuiInterface(&second);
  stage.gui->SetBaseTree(other.Get());
  static_cast<void>(stage.host.TakeCalls());

  stage.Finish();

  EXPECT_THAT(stage.host.TakeCalls(), IsEmpty());
  EXPECT_THAT(second.TakeCalls(), IsEmpty());
  EXPECT_FALSE(stage.state->IsBusy());
  stage.gui->SetGuiInterface(&stage.host);
}

TEST(FilteredPopulation, BothStatesOfAPanelHearOfAJobAndTheCurrentOneMakesTheRows)
{
  for (const bool isFirstCurrent : {false, true}) {
    JobStage stage;
    const auto second = du::MakeSmart<JobState>(*stage.gui);
    stage.LetThrough({"b"});
    stage.state->PopulateTree(false);
    second->SetBusy(true);
    if (!isFirstCurrent) {
      stage.gui->SetTreeState(second);
    }
    static_cast<void>(stage.host.TakeCalls());

    stage.Finish();

    EXPECT_FALSE(stage.state->IsBusy());
    EXPECT_FALSE(second->IsBusy());
    const auto& shown = isFirstCurrent ? stage.state : second;
    const auto& other = isFirstCurrent ? second : stage.state;
    EXPECT_THAT(shown->GetNotFilteredSet(), SizeIs(3));
    EXPECT_THAT(other->GetNotFilteredSet(), IsEmpty());
    EXPECT_EQ(std::count(stage.host.Calls().begin(), stage.host.Calls().end(), "SetTreeCalculating(false)"), 2);
    EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "a", "b"));
  }
}

TEST(FilteredPopulation, WithoutAnyResult_OnlyEndsTheCalculation)
{
  JobStage stage;
  stage.state->SetBusy(true);

  stage.state->OnProcessingComplete(stage.kernel.Get(), &stage.host);

  EXPECT_THAT(stage.host.TakeCalls(), ElementsAre("SetTreeCalculating(false)"));
  EXPECT_FALSE(stage.state->IsBusy());
}

TEST(FilteredPopulation, OnAPanelWithoutAHost_EndsTheJobAlone)
{
  JobStage stage;
  stage.state->SetBusy(true);
  stage.gui->SetGuiInterface(nullptr);

  stage.state->OnProcessingComplete(nullptr, nullptr);

  EXPECT_FALSE(stage.state->IsBusy());
}

TEST(FilteredPopulation, OfARootThatGoesInsideItsOwnRow_AnnouncesNothingBelowIt)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.state->filter.onAsked = [&](auto&&...) { stage.host.events.at(0)->Cancel(); };
  stage.state->PopulateTree(false);
  stage.host.onCall = [&](const std::string& call) {
    if (call.starts_with("InstanceCreate(node root,")) {
      const auto root = stage.kernel["root"];
      stage.kernel.Get()->Remove(root);
      stage.state->InstanceRemove(root, nullptr, false);
    }
  };

  stage.Finish();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root"));
}

TEST(FilteredPopulation, AfterTheEndOfThePanel_IsNotTold)
{
  JobStage stage;
  stage.gui.Reset();

  stage.state->OnProcessingComplete(stage.kernel.Get(), &stage.host);

  EXPECT_THAT(stage.host.Calls(), IsEmpty());
}

TEST(FilteredPopulation, AStateThatDoesNotDisplayTheRootTakesItOutOfTheMatchesBeforeTheFirstRow)
{
  for (const bool displayRoot : {false, true}) {
    JobStage stage;
    stage.state->displayRoot = displayRoot;
    stage.LetThrough({"root", "b"});
    stage.state->PopulateTree(false);
    std::vector<bool> wasMatched;
    stage.host.onCall = [&](const std::string& call) {
      if (call.starts_with("StartTreeUpdate") || call.starts_with("InstanceCreate")) {
        guitree::FilteredTree::InstanceSet matches;
        stage.gui->GetFilteredTree()->GetMatchedFilterItems(matches);
        wasMatched.push_back(matches.contains(stage.kernel["root"]));
      }
    };

    stage.Finish();

    EXPECT_THAT(wasMatched, SizeIs(testing::Gt(2U)));
    EXPECT_THAT(wasMatched, testing::Each(displayRoot));
    EXPECT_THAT(stage.TakeRows(), testing::Contains("root"));
  }
}

TEST(FilteredPopulation, WithoutATreeOrAResult_NothingIsTakenOutOfTheMatches)
{
  JobStage stage;
  stage.Request();
  stage.Finish();
  stage.state->displayRoot = false;
  const auto result = stage.gui->GetFilteredTree();

  stage.state->RemoveHiddenNotFilteredItems(nullptr);
  stage.gui->SetBaseTree(nullptr);
  stage.state->RemoveHiddenNotFilteredItems(result);

  guitree::FilteredTree::InstanceSet matches;
  result->GetMatchedFilterItems(matches);
  EXPECT_TRUE(matches.contains(stage.kernel["root"]));
}

TEST(FilteredPopulation, ADerivedStateMayVisitABranchByItself_BeforeAnyPopulationAndAfterOne)
{
  for (const bool isPopulated : {false, true}) {
    JobStage stage;
    stage.LetThrough({"b", "d"});
    if (isPopulated) {
      stage.state->PopulateTree(false);
    } else {
      stage.Request();
    }
    stage.Finish();
    // A population that waits for its job says nothing about rows that are asked for meanwhile.
    stage.state->PopulateTree(false);
    static_cast<void>(stage.host.TakeCalls());

    stage.state->_VisitFilteredTreeNode(stage.gui->GetFilteredTree()->GetRoot()->firstChild, nullptr);

    EXPECT_THAT(stage.host.TakeCalls(), ElementsAre(MakeNodeRow("a"), MakeNodeRow("b")));
    EXPECT_THAT(stage.state->GetNotFilteredSet(), SizeIs(2));
  }
}

TEST(FilteredPopulation, WithoutAController_TheResultThatIsAskedForStaysAsItWas)
{
  JobStage stage;
  const auto tree = du::MakeSmart<guitree::FilteredTree>();
  du::SmartPtr<guitree::FilteredTree> out = tree;
  stage.state->GetFilteredTree(out);
  EXPECT_EQ(out, nullptr);
  out = tree;
  stage.gui.Reset();

  stage.state->GetFilteredTree(out);

  EXPECT_EQ(out, tree);
}

TEST(FilteredPopulation, RecordsOfADerivedStateBecomeRowsParentsFirst)
{
  JobStage stage;
  const auto selection = du::MakeSmart<testsupport::ScriptedSelectionController>();
  std::vector<JobState::InstanceInfo> infos{{stage.kernel["a"], {{stage.kernel["b"], {}}, {stage.kernel["c"], {}}}},
                                            {stage.kernel["d"], {}}};

  stage.state->_ApplyInfos(&infos, selection);

  EXPECT_THAT(stage.host.TakeCalls(), ElementsAre("InstanceCreate(a, parent=root, controller=yes, assoc=false)",
                                                  "InstanceCreate(b, parent=a, controller=yes, assoc=false)",
                                                  "InstanceCreate(c, parent=a, controller=yes, assoc=false)",
                                                  "InstanceCreate(d, parent=root, controller=yes, assoc=false)"));
  EXPECT_THAT(stage.state->GetNotFilteredSet(), SizeIs(4));
}

}  // namespace
