// A reset while a filter is in use, and the end of a state that was not reset.

#include <gmock/gmock.h>

#include <algorithm>

#include "StructureStage.h"

namespace {

using structuretest::MakeView;
using structuretest::StructureStage;
using testing::ElementsAre;
using testing::IsEmpty;
using zelremote::StructureFilterInfo;

/// Runs `act` on a fresh stage again and again, with a reset inside each of its host calls in turn. `prepare` gives the
/// filter its text. Answers the number of calls.
std::size_t ResetInEachCall(const std::function<void(StructureStage& stage)>& prepare,
                            const std::function<void(StructureStage& stage)>& act)
{
  std::size_t calls = 0;
  for (std::size_t callToResetIn = 0; callToResetIn <= calls; ++callToResetIn) {
    StructureStage stage;
    prepare(stage);
    EXPECT_EQ(stage.GetFilter(stage.gui->GetCurrentView()).GetText(), "nut");
    const auto view = stage.gui->GetCurrentView();
    std::size_t call = 0;
    stage.host.onCall = [&](const std::string& /*line*/) {
      if (call++ == callToResetIn) {
        stage.state->Reset();
      }
    };

    act(stage);
    stage.Finish();

    calls = std::max(calls, call);
    stage.host.onCall = nullptr;
    EXPECT_EQ(stage.GetFilter(view).GetText(), callToResetIn < call ? "" : "nut") << callToResetIn;
  }
  return calls;
}

TEST(StructureReset, InsideEachCallOfAPopulation_LeavesTheFilterThatIsInUseAlive)
{
  const std::size_t calls = ResetInEachCall([](StructureStage& stage) { stage.GetFilter().SetText("nut"); },
                                            [](StructureStage& stage) { stage.state->PopulateTree(false); });

  EXPECT_GT(calls, 10U);
}

TEST(StructureReset, InsideEachCallOfAViewChange_LeavesTheFilterThatIsInUseAlive)
{
  const std::size_t calls = ResetInEachCall(
      [](StructureStage& stage) {
        stage.gui->Initialise(stage.world);
        const auto view = MakeView("panel");
        stage.GetFilter(view).SetText("nut");
        stage.host.answers.sceneManagerObserver->OnActiveViewChanged(view);
      },
      [](StructureStage& stage) { stage.host.answers.sceneManagerObserver->OnActiveViewChanged(MakeView("sheet")); });

  EXPECT_GT(calls, 10U);
}

TEST(StructureReset, InsideEachCallOfTheEndOfASelectionUpdate_LeavesTheFilterThatIsInUseAlive)
{
  for (const bool isOnVisibility : {true, false}) {
    const std::size_t calls = ResetInEachCall(
        [isOnVisibility](StructureStage& stage) {
          StructureFilterInfo& filter = stage.GetFilter();
          filter.SetText("nut");
          filter.SetDynamicUpdate(true);
          filter.SetSelectedOnly(!isOnVisibility);
          filter.SetVisibility(isOnVisibility ? StructureFilterInfo::Visibility::Visible
                                              : StructureFilterInfo::Visibility::Any);
        },
        [](StructureStage& stage) { stage.state->OnEndUpdate(); });

    EXPECT_GT(calls, 10U);
  }
}

TEST(StructureReset, InsideEachCallOfTheOtherSelectionEvents_LeavesTheFilterThatIsInUseAlive)
{
  const std::size_t calls = ResetInEachCall([](StructureStage& stage) { stage.GetFilter().SetText("nut"); },
                                            [](StructureStage& stage) {
                                              std::vector<du::SmartPtr<zelk::Object>> items;
                                              stage.state->OnInsertItems(items);
                                              stage.state->OnRemoveItems(items);
                                              stage.state->OnClearSelection();
                                            });

  EXPECT_GT(calls, 5U);
}

TEST(StructureReset, InsideEachCallWhileAResultIsShown_LeavesTheFilterThatIsInUseAlive)
{
  for (const int listMode : {0, 1}) {
    const std::size_t calls = ResetInEachCall(
        [listMode](StructureStage& stage) {
          StructureFilterInfo& filter = stage.GetFilter();
          filter.SetText("nut");
          filter.listMode = listMode;
          filter.SetSortColumn({"Data", "Material"});
          stage.state->PopulateTree(false);
        },
        [](StructureStage& stage) { stage.Finish(); });

    EXPECT_GT(calls, 8U);
  }
}

TEST(StructureReset, InsideEachCallOfASwitchOrANewResultsList_LeavesTheFilterThatIsInUseAlive)
{
  const std::size_t calls = ResetInEachCall(
      [](StructureStage& stage) {
        StructureFilterInfo& filter = stage.GetFilter();
        filter.SetText("nut");
        filter.useResultsList = true;
        filter.resultsListLive = true;
        guitree::WorldTreeState::SetIsCollapsingInstances(true);
      },
      [](StructureStage& stage) {
        stage.state->SetResultsComps(nullptr);
        stage.state->ShowBodiesChanged();
        stage.state->UpdateFiltersForCollapsingInstances(true);
      });

  EXPECT_GT(calls, 20U);
}

TEST(StructureReset, InsideACall_KeepsTheFilterForTheWholeOfTheOutermostOperation)
{
  StructureStage stage;
  StructureFilterInfo* filter = nullptr;
  std::vector<std::string> texts;
  stage.host.onCall = [&](const std::string& line) {
    if (line.starts_with("StartTreeUpdate")) {
      filter = &stage.GetFilter();
      filter->SetText("nut");
      stage.state->Reset();
    } else if (filter) {
      texts.push_back(filter->GetText());
    }
  };

  stage.state->PopulateTree(false);

  EXPECT_GT(texts.size(), 5U);
  EXPECT_THAT(texts, testing::Each("nut"));
}

TEST(StructureReset, OfAStateInAnotherOnesCall_KeepsItsFiltersToTheEndOfThatCall)
{
  StructureStage stage;
  const auto second = du::MakeSmart<structuretest::OpenStructureState>(*stage.gui, true);
  auto& filter = dynamic_cast<StructureFilterInfo&>(second->GetFilter(nullptr));
  filter.SetText("nut");
  std::string text;
  stage.OnceIn("ClearTree", [&] {
    second->Reset();
    text = filter.GetText();
  });

  stage.state->PopulateTree(false);

  EXPECT_EQ(text, "nut");
}

TEST(StructureReset, HasForgottenTheFiltersWhenTheHostIsToldAndKeepsThoseThatItAsksForThen)
{
  StructureStage stage;
  stage.GetFilter().SetText("nut");
  std::string text = "unknown";
  stage.OnceIn("Reset", [&] {
    text = stage.GetFilter().GetText();
    stage.GetFilter().SetText("bolt");
  });

  stage.state->Reset();

  EXPECT_EQ(text, "");
  EXPECT_EQ(stage.GetFilter().GetText(), "bolt");
}

TEST(StructureReset, Twice_IsNoTrouble)
{
  StructureStage stage;
  static_cast<void>(stage.GetFilter());

  stage.state->Reset();
  stage.state->Reset();

  EXPECT_THAT(stage.TakeCalls("Reset"), ElementsAre("Reset()", "Reset()"));
}

TEST(StructureReset, AStateThatEndsWithoutOne_LeavesItsFiltersToThoseWhoReferToThem)
{
  StructureStage stage;
  auto state = du::MakeSmart<guitree::StructureTreeState>(*stage.gui, true);
  auto& filter = dynamic_cast<StructureFilterInfo&>(state->GetFilter(MakeView("panel")));
  auto& other = dynamic_cast<StructureFilterInfo&>(state->GetFilter(MakeView("sheet")));
  filter.SetText("nut");

  state.Reset();

  EXPECT_EQ(filter.GetText(), "nut");
  other.SetText("bolt");
  EXPECT_EQ(other.GetText(), "bolt");
}

}  // namespace
