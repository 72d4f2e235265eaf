// What happens to a panel between the request of a filter and the arrival of its result.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "JobStage.h"

namespace {

using filtertest::JobStage;
using filtertest::Show;
using testing::ElementsAre;
using testing::IsEmpty;

/// The older lets through "b", the newer "d".
void StartTwoJobs(JobStage& stage)
{
  for (const char* const name : {"b", "d"}) {
    stage.LetThrough({name});
    stage.state->PopulateTree(false);
  }
  static_cast<void>(stage.host.TakeCalls());
}

TEST(LateResult, OfAFilterThatWentOffMeanwhileAddsItsRowsOnTop)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);

  stage.state->filter.isFiltering = false;
  stage.state->PopulateTree(false);
  EXPECT_FALSE(stage.state->IsBusy());
  EXPECT_FALSE(stage.host.events.at(0)->IsCanceled());
  stage.Finish();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "a", "b", "c", "d", "root", "a", "b"));
}

TEST(LateResult, IsWrittenAlsoOnAPanelThatWasHiddenMeanwhile_AndGoneOverWhenItIsShown)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);
  stage.host.answers.isTreeVisibleInUI = false;
  stage.state->PopulateTree(false);

  stage.Finish();
  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "a", "b"));
  EXPECT_TRUE(stage.state->GetTreeNeedsRedraw());
  stage.host.answers.isTreeVisibleInUI = true;
  stage.state->MadeVisible(true);
  stage.Finish();

  EXPECT_THAT(stage.host.Calls(), testing::Contains("ClearTree()"));
  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "a", "b"));
}

TEST(LateResult, EditsInBetweenFindNoRowsAndAskForNothing)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());
  const du::SmartPtr<zelk::BaseInstance> b = stage.kernel["b"];
  const du::SmartPtr<zelk::BaseInstance> a = stage.kernel["a"];

  EXPECT_FALSE(stage.state->InstanceCreate(b, a, nullptr));
  EXPECT_FALSE(stage.state->InstanceRemove(b, a, false));
  EXPECT_THAT(stage.host.Calls(), IsEmpty());
  stage.Finish();

  EXPECT_TRUE(stage.state->InstanceCreate(b, a, nullptr));
  EXPECT_TRUE(stage.state->InstanceRemove(b, a, false));
}

TEST(LateResult, OfAFilterThatFollowsChanges_IsAskedAgainForWhatComes)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.state->filter.dynamicUpdate = true;
  stage.state->PopulateTree(false);

  EXPECT_TRUE(stage.state->InstanceCreate(stage.kernel["b"], stage.kernel["a"], nullptr));
  EXPECT_FALSE(stage.state->InstanceRemove(stage.kernel["b"], stage.kernel["a"], false));
}

TEST(LateResult, MayHaveStaleRowsButNoneThatDangle)
{
  JobStage stage;
  const auto tree = du::MakeSmart<memkernel::Tree>();
  const auto product = tree->CreateProduct({.name = "part"});
  auto a = tree->AddChild(tree->CreateRoot(product, "root"), product, "a");
  tree->AddChild(tree->AddChild(a, product, "b"), product, "c");
  stage.gui->SetBaseTree(tree);
  stage.LetThrough({"c"});
  stage.state->PopulateTree(false);
  stage.GetPool().Run(0);

  tree->Remove(a);
  const zelk::BaseInstance* const removed = std::exchange(a, nullptr).Get();
  stage.Deliver();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "a", "b", "c"));
  EXPECT_TRUE(stage.state->GetNotFilteredSet().contains(removed));
  EXPECT_EQ(removed->GetObjectName(), "a");
}

TEST(LateResult, IsLeftAsItWasByAPanelReset)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);

  stage.gui->Reset();
  EXPECT_FALSE(stage.state->IsBusy());
  static_cast<void>(stage.host.TakeCalls());
  stage.Finish();

  EXPECT_THAT(stage.host.TakeCalls(), ElementsAre("SetTreeCalculating(false)"));
}

TEST(LateResult, OfTheOlderOfTwoJobsMakesNoRow)
{
  JobStage stage;
  StartTwoJobs(stage);

  stage.GetPool().Run(0);
  stage.Deliver();
  EXPECT_THAT(stage.host.Calls(), IsEmpty());
  EXPECT_TRUE(stage.state->IsBusy());
  stage.Finish();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "d"));
}

TEST(LateResult, OfACancelledJobThatEndsLastMakesNoRow)
{
  JobStage stage;
  StartTwoJobs(stage);

  stage.GetPool().Run(1);
  stage.Finish();

  EXPECT_EQ(Show(stage.gui->GetFilteredTree()), "none");
  EXPECT_THAT(stage.TakeRows(), IsEmpty());
  EXPECT_FALSE(stage.state->IsBusy());
}

TEST(LateResult, OfAStateThatHasGone_ReachesNobody)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());

  stage.gui->SetTreeState(nullptr);
  stage.state.Reset();
  stage.Finish();

  EXPECT_THAT(stage.host.Calls(), IsEmpty());
  EXPECT_EQ(Show(stage.gui->GetFilteredTree()), "root[a[b]]");
}

TEST(LateResult, ThatAnotherFilterOvertakesAtTheLastMomentIsNotEvenAnnounced)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());
  bool isFirst = true;
  stage.host.onCall = [&](const std::string& call) {
    if (call == "SetTreeCalculating(false)" && std::exchange(isFirst, false)) {
      stage.LetThrough({"d"});
      stage.state->PopulateTree(false);
    }
  };

  stage.Finish();

  EXPECT_THAT(stage.host.Calls(), testing::Contains("PostProcessingComplete()").Times(1));
  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "d"));
}

}  // namespace
