#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "JobStage.h"
#include "zelk/ProgressCtrl.h"

namespace {

using filtertest::JobStage;
using filtertest::Show;
using filtertest::TreeWatch;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class RecordingControl : public zelk::ProgressCtrl {
public:
  RecordingControl(const du::SmartPtr<zelk::AsyncEvent>& event, std::vector<std::string>& calls)
      : ProgressCtrl(event), m_calls(calls)
  {
  }

  void OnProgress(unsigned char percent) override { m_calls.push_back(std::to_string(percent)); }
  void OnFinished() override { m_calls.emplace_back("finished"); }

private:
  std::vector<std::string>& m_calls;
};

TEST(FilterJob, IsQueuedOnceHostAndStateHaveBeenAskedInOrder)
{
  JobStage stage;
  std::vector<std::string> order;
  stage.host.onCall = [&](const std::string& call) { order.push_back(call); };
  stage.state->onQuestion = [&](const std::string& question) {
    order.push_back(question);
    EXPECT_THAT(stage.GetPool().waiting, IsEmpty());
  };

  stage.Request();

  EXPECT_THAT(order, ElementsAre("CreateFilterProgressCtrl(yes) -> no", "GetAdditionalFilterInfo", "GetDisplayRoot",
                                 "GetSelController(false)", "GetNonFilteredInsts2() -> null",
                                 "GetNonFilteredInsts1() -> null", "CreateFilteredTree"));
  EXPECT_THAT(stage.GetPool().waiting, SizeIs(1));
  EXPECT_TRUE(stage.GetController().IsBusy());
}

TEST(FilterJob, HasAnEventOfAClassOfItsOwnOnTheThreadOfThePanel)
{
  JobStage stage;

  stage.Request();

  ASSERT_THAT(stage.host.events, SizeIs(1));
  EXPECT_EQ(stage.host.events[0]->GetObjectClass(), "guitree::TreeController::TCAsyncEvent");
  EXPECT_EQ(stage.host.events[0]->GetMessageQueue(), stage.loop);
}

TEST(FilterJob, IsKnownToBeUnderWayBeforeTheHostIsAsked)
{
  JobStage stage;
  bool wasBusy = false;
  stage.host.onCall = [&](const std::string&) { wasBusy = stage.GetController().IsBusy(); };

  EXPECT_FALSE(stage.GetController().IsBusy());
  stage.Request();

  EXPECT_TRUE(wasBusy);
}

TEST(FilterJob, StoresItsResultAndTellsOfItOnceItsEventHasArrived)
{
  JobStage stage;
  stage.LetThrough({"b"});
  const auto observer = stage.AddObserver();
  stage.Request();

  stage.GetPool().Run(0);
  EXPECT_THAT(observer->calls, IsEmpty());
  EXPECT_TRUE(stage.GetController().IsBusy());
  EXPECT_EQ(stage.GetController().GetFilteredTree(), nullptr);
  stage.Deliver();

  ASSERT_THAT(observer->calls, SizeIs(1));
  EXPECT_EQ(observer->calls[0].tree, stage.kernel.Get());
  EXPECT_EQ(observer->calls[0].gui, &stage.host);
  EXPECT_FALSE(stage.GetController().IsBusy());
  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "root[a[b]]");
}

TEST(FilterJob, FeedsTheControlThatTheHostHasMade)
{
  JobStage stage;
  std::vector<std::string> calls;
  stage.host.makeControl = [&](const auto& event) { return du::MakeSmart<RecordingControl>(event, calls); };

  stage.Request();
  EXPECT_THAT(stage.world->progress->GetCtrls(), SizeIs(1));
  stage.Finish();

  EXPECT_THAT(calls, ElementsAre("100", "finished"));
  EXPECT_THAT(stage.world->progress->GetCtrls(), IsEmpty());
}

TEST(FilterJob, RunsWithoutAProgressController)
{
  JobStage stage;
  std::vector<std::string> calls;
  stage.world->progress.Reset();
  stage.host.makeControl = [&](const auto& event) { return du::MakeSmart<RecordingControl>(event, calls); };
  const auto observer = stage.AddObserver();

  stage.Request();
  stage.Finish();

  EXPECT_THAT(observer->calls, SizeIs(1));
  EXPECT_THAT(calls, IsEmpty());
}

TEST(FilterJob, HasTheSameResultWithAControlAndWithout)
{
  std::vector<std::string> ignored;
  std::vector<std::string> results;
  for (const bool hasControl : {false, true}) {
    JobStage stage;
    stage.LetThrough({"c", "d"});
    if (hasControl) {
      stage.host.makeControl = [&](const auto& event) { return du::MakeSmart<RecordingControl>(event, ignored); };
    }
    stage.state->PopulateTree(false);
    stage.Finish();
    results.push_back(testing::PrintToString(stage.TakeRows()) + Show(stage.GetController().GetFilteredTree()));
  }

  EXPECT_EQ(results[0], results[1]);
}

TEST(FilterJob, HandsStateAndHostsAnswersToTheFilter)
{
  JobStage stage;
  const auto selection = du::MakeSmart<testsupport::ScriptedSelectionController>();
  selection->selected = {stage.kernel["d"]};
  stage.state->selController = selection;
  stage.state->additionalInfo = stage.world;
  std::list<zelk::BaseInstance*> first{stage.kernel["b"].Get()};
  std::list<zelk::BaseInstance*> second{stage.kernel["c"].Get()};
  stage.host.answers.nonFilteredInsts1 = &first;
  stage.host.answers.nonFilteredInsts2 = &second;
  stage.LetThrough({});
  int questions = 0;
  stage.state->filter.onAsked = [&](const auto&, auto& selected, bool hiddenPass, auto& info, unsigned int*) {
    ++questions;
    EXPECT_EQ(selected, selection->selected);
    EXPECT_FALSE(hiddenPass);
    EXPECT_EQ(info, stage.world);
  };

  stage.Request();
  stage.Finish();

  EXPECT_GT(questions, 0);
  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "root[a[b c]]");
}

TEST(FilterJob, SparesTheChildrenOfARootThatIsNotDisplayed)
{
  JobStage stage;
  stage.state->displayRoot = false;
  stage.LetThrough({});

  stage.Request();
  stage.Finish();

  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "root[a d]");
}

TEST(FilterJob, IsNotReachedByLaterChangesOfTheFilter)
{
  JobStage stage;
  stage.LetThrough({"b"});
  stage.Request();

  stage.LetThrough({"d"});
  stage.Finish();

  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "root[a[b]]");
}

TEST(FilterJob, WithoutABaseTree_IsNotStartedButThoseUnderWayAreCancelled)
{
  JobStage stage;
  stage.Request();
  const auto observer = stage.AddObserver();
  stage.gui->SetBaseTree(nullptr);
  static_cast<void>(stage.host.TakeCalls());

  stage.Request();

  EXPECT_TRUE(stage.host.events.at(0)->IsCanceled());
  EXPECT_TRUE(stage.GetController().IsBusy());
  EXPECT_THAT(stage.GetPool().waiting, SizeIs(1));
  EXPECT_THAT(stage.host.Calls(), IsEmpty());
  stage.Finish();
  EXPECT_FALSE(stage.GetController().IsBusy());
  EXPECT_THAT(observer->calls, SizeIs(1));
}

TEST(FilterJob, WithoutABaseTreeOnAnIdlePanel_IsNotStartedAndTellsNobody)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.gui->SetBaseTree(nullptr);

  stage.Request();
  stage.Finish();

  EXPECT_FALSE(stage.GetController().IsBusy());
  EXPECT_THAT(observer->calls, IsEmpty());
  EXPECT_THAT(stage.host.Calls(), IsEmpty());
}

TEST(FilterJob, WithoutWorkers_EndsWithoutAResult)
{
  for (const bool hasWorld : {false, true}) {
    JobStage stage;
    const auto observer = stage.AddObserver();
    stage.world->hasPool = false;
    if (!hasWorld) {
      zelk::World::Install(nullptr);
    }
    std::vector<std::string> ignored;
    stage.host.makeControl = [&](const auto& event) { return du::MakeSmart<RecordingControl>(event, ignored); };

    stage.Request();
    EXPECT_TRUE(stage.GetController().IsBusy());
    stage.Deliver();

    EXPECT_FALSE(stage.GetController().IsBusy());
    EXPECT_THAT(observer->calls, SizeIs(1));
    EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "none");
  }
}

TEST(FilterJob, ThatThePoolRefuses_StaysUnderWay)
{
  JobStage stage;
  stage.LetThrough({"b"});
  const auto observer = stage.AddObserver();
  stage.GetPool().acceptsTasks = false;

  stage.state->PopulateTree(false);
  stage.Deliver();

  EXPECT_TRUE(stage.GetController().IsBusy());
  EXPECT_TRUE(stage.state->IsBusy());
  EXPECT_THAT(observer->calls, IsEmpty());
  EXPECT_THAT(stage.host.Calls(), testing::Not(testing::Contains("SetTreeCalculating(false)")));
}

TEST(FilterJob, ThatEndsInErrorTakesTheSameRoad)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.Request();

  stage.host.events.at(0)->CompleteWithError("disk full", 7);
  stage.Deliver();

  EXPECT_FALSE(stage.GetController().IsBusy());
  EXPECT_THAT(observer->calls, SizeIs(1));
  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "none");
  stage.Finish();
  EXPECT_THAT(observer->calls, SizeIs(1));
}

TEST(FilterJob, KeepsTheTreeOfItsResultForBranchesThatAreOpenedLater)
{
  JobStage stage;
  auto other = du::MakeSmart<memkernel::Tree>();
  const auto watch = du::MakeSmart<TreeWatch>();
  other->RegisterObserver(*watch, false);
  const zelk::BaseInstance* const root = other->CreateRoot(other->CreateProduct({.name = "other"})).Get();
  other->AddChild(other->GetRootInstance(), other->CreateProduct({.name = "child"}));
  stage.gui->SetBaseTree(other);
  stage.state->filter.onAsked = [&](auto&&...) { stage.host.events.at(0)->Cancel(); };
  stage.Request();
  stage.Finish();
  ASSERT_EQ(Show(stage.GetController().GetFilteredTree()), "other[...]");

  static_cast<void>(stage.host.TakeCalls());
  // An event knows its job, and that the tree.
  stage.host.events.clear();
  stage.gui->SetBaseTree(stage.kernel.Get());
  other.Reset();

  EXPECT_TRUE(stage.state->ExpandFilterNode({const_cast<zelk::BaseInstance*>(root)}));
  EXPECT_THAT(stage.TakeRows(), ElementsAre("child"));
  EXPECT_FALSE(watch->hasEnded);
  stage.gui.Reset();
  EXPECT_TRUE(watch->hasEnded);
}

}  // namespace
