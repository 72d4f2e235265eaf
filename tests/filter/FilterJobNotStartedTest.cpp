#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "JobStage.h"

namespace {

using filtertest::JobStage;
using filtertest::Show;
using testing::IsEmpty;

/// Runs inside the first question of that name.
void Interfere(JobStage& stage, const std::string& question, const std::function<void()>& interfere)
{
  const auto onQuestion = [question, interfere, isFirst = std::make_shared<bool>(true)](const std::string& asked) {
    if (asked.starts_with(question) && std::exchange(*isFirst, false)) {
      interfere();
    }
  };
  stage.host.onCall = onQuestion;
  stage.state->onQuestion = onQuestion;
}

TEST(FilterJobNotStarted, OfAnEventThatTheHostEndsInsideAQuestion_IsInNoPoolAndLeavesNoResult)
{
  for (const std::string& question : filtertest::s_jobQuestions) {
    for (const bool isPlain : {true, false}) {
      SCOPED_TRACE(question);
      JobStage stage;
      const auto observer = stage.AddObserver();
      Interfere(stage, question, [&] {
        const auto event = std::exchange(stage.host.events, {}).at(0);
        isPlain ? event->Complete() : event->CompleteWithError("disk full", 7);
      });

      stage.Request();
      EXPECT_THAT(stage.GetPool().waiting, IsEmpty());
      stage.Finish();

      EXPECT_THAT(observer->calls, IsEmpty());
      EXPECT_FALSE(stage.GetController().IsBusy());
      EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "no tree");
    }
  }
}

/// Nobody could deliver the end of a job there.
struct UnmanagedPanel : JobStage {
  explicit UnmanagedPanel(const du::SmartPtr<dom::ManagedObject>& manager)
  {
    gui = du::MakeSmart<guitree::GuiTree>(manager);
    state = du::MakeSmart<filtertest::JobState>(*gui);
    state->baseTree = kernel.Get();
    gui->SetGuiInterface(&host);
    gui->SetTreeState(state);
    gui->SetBaseTree(kernel.Get());
    LetThrough({"b"});
  }
};

TEST(FilterJobNotStarted, OnAPanelWithoutAManagerOrWithoutAQueue_AsksNobody)
{
  for (const auto& manager : {du::SmartPtr<dom::ManagedObject>(), du::MakeSmart<dom::ManagedObject>()}) {
    UnmanagedPanel stage(manager);

    stage.Request();

    EXPECT_FALSE(stage.GetController().IsBusy());
    EXPECT_THAT(stage.GetPool().waiting, IsEmpty());
    EXPECT_THAT(stage.host.Calls(), IsEmpty());
  }
}

TEST(FilterJobNotStarted, OfAPopulationThatAnotherOneHasOvertakenBeforeItsRequest_AsksNobody)
{
  for (const char* const question : {"ClearTree()", "IsTreeVisibleInUI() -> true", "IsValidView(null) -> true"}) {
    SCOPED_TRACE(question);
    JobStage stage;
    stage.LetThrough({"b"});
    Interfere(stage, question, [&] { stage.state->PopulateTree(false); });

    stage.state->PopulateTree(false);

    EXPECT_THAT(stage.host.events, testing::SizeIs(1));
    EXPECT_THAT(stage.GetPool().waiting, testing::SizeIs(1));
    stage.Finish();
    EXPECT_THAT(stage.TakeRows(), testing::ElementsAre("root", "a", "b"));
  }
}

}  // namespace
