#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "JobStage.h"

namespace {

using filtertest::CountingObserver;
using filtertest::JobStage;
using filtertest::Show;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(FilterJobBurst, ANewRequestCancelsAllThatAreUnderWayAndStartsAtOnce)
{
  JobStage stage;

  for (int i = 0; i < 3; ++i) {
    stage.Request();
  }

  EXPECT_TRUE(stage.host.events.at(0)->IsCanceled());
  EXPECT_TRUE(stage.host.events.at(1)->IsCanceled());
  EXPECT_FALSE(stage.host.events.at(2)->IsCanceled());
  EXPECT_THAT(stage.GetPool().waiting, SizeIs(3));
}

TEST(FilterJobBurst, IsToldOnceWithTheLastResult)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.LetThrough({"b"});
  stage.Request();
  stage.LetThrough({"d"});
  stage.Request();

  stage.GetPool().Run(0);
  stage.Deliver();
  EXPECT_THAT(observer->calls, IsEmpty());
  EXPECT_TRUE(stage.GetController().IsBusy());
  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "none");
  stage.Finish();

  EXPECT_THAT(observer->calls, SizeIs(1));
  EXPECT_FALSE(stage.GetController().IsBusy());
  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "root[d]");
}

TEST(FilterJobBurst, ACancelledJobThatEndsLastWins)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.Request();
  stage.Request();

  stage.GetPool().Run(1);
  stage.Deliver();
  EXPECT_THAT(observer->calls, IsEmpty());
  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "root[a[b c] d]");
  stage.Finish();

  EXPECT_THAT(observer->calls, SizeIs(1));
  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "none");
}

TEST(FilterJobBurst, AJobThatIsCancelledWhileItBuildsAndEndsLastLeavesARootOverAPlaceholder)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  bool isFirst = true;
  stage.state->filter.onAsked = [&](auto&&...) {
    if (std::exchange(isFirst, false)) {
      stage.Request();
      stage.GetPool().Run(0);
    }
  };
  stage.Request();

  stage.Finish();

  EXPECT_THAT(observer->calls, SizeIs(1));
  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "root[...]");
  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "...root"));
}

TEST(FilterJobBurst, IsToldWithTreeAndHostOfTheJobThatEndsLast)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  testsupport::NamedTree otherTree("other");
  filtertest::JobHost otherHost;
  stage.Request();
  stage.gui->SetBaseTree(otherTree.Get());
  stage.gui->SetGuiInterface(&otherHost);
  stage.Request();

  stage.GetPool().Run(1);
  stage.Finish();

  ASSERT_THAT(observer->calls, SizeIs(1));
  EXPECT_EQ(observer->calls[0].tree, stage.kernel.Get());
  EXPECT_EQ(observer->calls[0].gui, &stage.host);
  stage.gui->SetGuiInterface(&stage.host);
}

TEST(FilterJobBurst, IsBusyFromTheFirstRequestToTheLastEndInAnyOrder)
{
  const std::vector<std::vector<std::size_t>> orders{{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {2, 0, 0}, {2, 1, 0}};
  for (const auto& order : orders) {
    JobStage stage;
    const auto observer = stage.AddObserver();
    for (std::size_t i = 0; i < order.size(); ++i) {
      stage.Request();
    }
    for (const std::size_t next : order) {
      EXPECT_TRUE(stage.GetController().IsBusy());
      EXPECT_THAT(observer->calls, IsEmpty());
      stage.GetPool().Run(next);
      stage.Deliver();
    }
    EXPECT_FALSE(stage.GetController().IsBusy());
    EXPECT_THAT(observer->calls, SizeIs(1));
  }
}

TEST(FilterJobBurst, EachIdleTimeInBetweenIsToldOf)
{
  JobStage stage;
  const auto observer = stage.AddObserver();

  for (int i = 1; i <= 3; ++i) {
    stage.Request();
    stage.Finish();
    EXPECT_THAT(observer->calls, SizeIs(i));
  }
}

TEST(FilterJobBurst, AnObserverThatIsAddedTwiceIsToldTwice)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.GetController().AddObserver(observer);

  stage.Request();
  stage.Finish();

  EXPECT_THAT(observer->calls, SizeIs(2));
}

TEST(FilterJobBurst, ObserversAreToldInOrderAndThoseThatComeOnTheWayTo)
{
  JobStage stage;
  std::vector<std::string> order;
  const auto first = stage.AddObserver();
  const auto second = stage.AddObserver();
  second->onCall = [&] { order.emplace_back("second"); };
  first->onCall = [&] {
    order.emplace_back("first");
    stage.AddObserver()->onCall = [&] { order.emplace_back("third"); };
  };

  stage.Request();
  stage.Finish();

  EXPECT_THAT(order, ElementsAre("first", "second", "third"));
}

TEST(FilterJobBurst, ObserversThatAreRemovedOnTheWayAreNotToldAnyMore)
{
  JobStage stage;
  const auto first = stage.AddObserver();
  const auto second = stage.AddObserver();
  const auto third = stage.AddObserver();
  first->onCall = [&] {
    stage.GetController().RemoveObserver(third);
    stage.GetController().RemoveObserver(second);
  };

  stage.Request();
  stage.Finish();

  EXPECT_THAT(first->calls, SizeIs(1));
  EXPECT_THAT(second->calls, IsEmpty());
  EXPECT_THAT(third->calls, IsEmpty());
}

TEST(FilterJobBurst, AnObserverMayTakeItselfOutAndDie)
{
  JobStage stage;
  auto observer = stage.AddObserver();
  CountingObserver* const raw = observer.Get();
  bool isTold = false;
  raw->onCall = [&] {
    stage.GetController().RemoveObserver(du::SmartPtr<CountingObserver>(raw));
    isTold = true;
  };
  observer.Reset();

  stage.Request();
  stage.Finish();

  EXPECT_TRUE(isTold);
}

TEST(FilterJobBurst, AnObserverMayStartAnotherJob_TheOthersAreToldOfBoth)
{
  JobStage stage;
  const auto first = stage.AddObserver();
  const auto second = stage.AddObserver();
  first->onCall = [&] {
    EXPECT_FALSE(stage.GetController().IsBusy());
    if (first->calls.size() == 1) {
      stage.Request();
    }
  };
  stage.Request();

  stage.GetPool().Run(0);
  stage.loop->RunDue();
  EXPECT_THAT(second->calls, SizeIs(1));
  EXPECT_TRUE(stage.GetController().IsBusy());
  stage.Finish();

  EXPECT_EQ(first->returned, 2U);
  EXPECT_EQ(second->returned, 2U);
}

TEST(FilterJobBurst, AnObserverMayDestroyTheController_NoOtherIsTold)
{
  JobStage stage;
  const auto first = stage.AddObserver();
  const auto second = stage.AddObserver();
  first->onCall = [&] { stage.gui.Reset(); };
  stage.Request();

  stage.Finish();

  EXPECT_EQ(stage.gui, nullptr);
  EXPECT_THAT(first->calls, SizeIs(1));
  EXPECT_THAT(second->calls, IsEmpty());
}

TEST(FilterJobBurst, TheEndOfTheControllerLeavesJobsThatTellNobody)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  for (int i = 0; i < 3; ++i) {
    stage.Request();
  }
  stage.GetPool().Run(0);
  stage.loop->RunDue();
  stage.GetPool().Run(0);

  stage.gui.Reset();
  stage.state.Reset();
  static_cast<void>(stage.host.TakeCalls());
  stage.Finish();

  EXPECT_THAT(observer->calls, IsEmpty());
  EXPECT_THAT(stage.host.Calls(), IsEmpty());
  EXPECT_TRUE(stage.host.events.at(2)->IsCompleted());
}

TEST(FilterJobBurst, AnEventThatEndsBeforeItsJobIsThereOnlyLeaves)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.host.makeControl = [&](const auto& event) {
    event->Complete();
    stage.Deliver();
    EXPECT_FALSE(stage.GetController().IsBusy());
    return nullptr;
  };

  stage.Request();
  stage.Deliver();

  EXPECT_THAT(stage.GetPool().waiting, IsEmpty());
  EXPECT_FALSE(stage.GetController().IsBusy());
  EXPECT_EQ(stage.GetController().GetFilteredTree(), nullptr);
  EXPECT_THAT(observer->calls, IsEmpty());
}

TEST(FilterJobBurst, AnEventThatEndsBeforeItsJobIsThereDoesNotBringBackAnEarlierResult)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.Request();
  stage.Finish();
  stage.host.makeControl = [&](const auto& event) {
    event->Complete();
    return nullptr;
  };

  stage.host.onCall = [&](const std::string& call) {
    if (call.starts_with("GetNonFilteredInsts1")) {
      stage.Deliver();
    }
  };
  stage.Request();
  stage.Deliver();

  EXPECT_FALSE(stage.GetController().IsBusy());
  EXPECT_THAT(observer->calls, SizeIs(1));
}

TEST(FilterJobBurst, AResultIsToldOfAlsoWhenAnEventWithoutAJobIsTheLastToLeave)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.Request();
  stage.host.makeControl = [&](const auto& event) {
    // The first job ends while the second one is being made, which then ends before it is there.
    stage.Finish();
    event->Complete();
    stage.Deliver();
    return nullptr;
  };

  stage.Request();
  stage.Deliver();

  EXPECT_FALSE(stage.GetController().IsBusy());
  EXPECT_THAT(observer->calls, SizeIs(1));
}

TEST(FilterJobBurst, AJobThatTheHostCancelsBeforeItIsThereRunsAndEndsEmpty)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.host.makeControl = [](const auto& event) {
    event->Cancel();
    return nullptr;
  };

  stage.Request();
  EXPECT_THAT(stage.GetPool().waiting, SizeIs(1));
  stage.Finish();

  EXPECT_THAT(observer->calls, SizeIs(1));
  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "none");
}

TEST(FilterJobBurst, ARequestFromInsideAQuestionOfAnotherOneHasTheLastWord)
{
  for (const std::string& question : filtertest::s_jobQuestions) {
    SCOPED_TRACE(question);
    JobStage stage;
    const auto observer = stage.AddObserver();
    bool isAsked = false;
    const auto onQuestion = [&](const std::string& asked) {
      if (!isAsked && asked.starts_with(question)) {
        isAsked = true;
        stage.LetThrough({"d"});
        stage.Request();
      }
    };
    stage.host.onCall = onQuestion;
    stage.state->onQuestion = onQuestion;
    stage.LetThrough({"b"});

    stage.Request();
    EXPECT_TRUE(isAsked);
    stage.Finish();

    EXPECT_THAT(observer->calls, SizeIs(1));
    EXPECT_FALSE(stage.GetController().IsBusy());
    EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "root[d]");
  }
}

}  // namespace
