#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "BurstStage.h"

namespace {

using bursttest::Brackets;
using bursttest::Burst;
using bursttest::CountBrackets;
using bursttest::ListBursts;
using bursttest::Stage;
using testsupport::ScriptedWorldTreeState;

using Lines = std::vector<std::string>;

/// What a host may do from inside a call.
struct Interference {
  const char* name;
  std::function<void(Stage&)> run;
  /// Whether panel, state and tree stay together, so that the panel shows the tree afterwards.
  bool keepsShowing;
  /// How many brackets it may finish that were not started.
  int unmatchedFinishes = 0;
};

void PrintTo(const Interference& interference, std::ostream* out)
{
  *out << interference.name;
}

void DropPanelAndState(Stage& stage)
{
  stage.panel.gui.Reset();
  stage.panel.state.Reset();
}

void DropPanel(Stage& stage)
{
  stage.panel.gui.Reset();
}

void DropState(Stage& stage)
{
  stage.panel.gui->SetTreeState(nullptr);
  stage.panel.state.Reset();
}

void ReplaceState(Stage& stage)
{
  stage.panel.state = du::MakeSmart<ScriptedWorldTreeState>(*stage.panel.gui);
  stage.panel.gui->SetTreeState(stage.panel.state);
}

void ReplaceStateAndKeepIt(Stage& stage)
{
  stage.panel.gui->SetTreeState(du::MakeSmart<ScriptedWorldTreeState>(*stage.panel.gui));
}

void ReplaceStateAndShowIt(Stage& stage)
{
  ReplaceState(stage);
  stage.panel.state->hidden = stage.hidden;
  stage.panel.gui->Initialise(stage.panel.world);
}

void Deregister(Stage& stage)
{
  stage.panel.state->DeregisterTreeObserver();
}

void RegisterAnew(Stage& stage)
{
  stage.panel.state->onObserver = nullptr;
  stage.panel.state->CreateAndRegisterTreeObserver();
}

void Reset(Stage& stage)
{
  stage.panel.gui->Reset();
}

void Initialise(Stage& stage)
{
  stage.panel.gui->Initialise(stage.panel.world);
}

void Close(Stage& stage)
{
  stage.GetReports().OnSceneRemoved(stage.scene);
  stage.panel.gui->Close();
}

void RemoveScene(Stage& stage)
{
  stage.GetReports().OnSceneRemoved(stage.scene);
}

void ChangeView(Stage& stage)
{
  stage.GetReports().OnActiveViewChanged(stage.otherView);
}

void LeaveView(Stage& stage)
{
  stage.GetReports().OnViewRemoved(stage.view);
}

void Populate(Stage& stage)
{
  stage.panel.state->PopulateTree(true);
}

/// The kernel refuses edits from inside its events; those inside the end of an update are bursts of their own.
void AddInstance(Stage& stage)
{
  stage.panel.GetTree().AddChild(stage.panel.kernel["b"], stage.panel.kernel["x"]->GetProduct());
}

void AddABranchInFront(Stage& stage)
{
  const memkernel::TreeBatch batch(stage.panel.GetTree());
  const auto product = stage.panel.kernel["b"]->GetProduct();
  const auto top = stage.panel.GetTree().InsertBefore(stage.panel.kernel["b"], product, "top");
  stage.panel.GetTree().AddChild(top, product, "below");
}

void AddTooMany(Stage& stage)
{
  const memkernel::TreeBatch batch(stage.panel.GetTree());
  for (int i = 0; i < 201; ++i) {
    AddInstance(stage);
  }
}

void RemoveAnother(Stage& stage)
{
  stage.panel.GetTree().Remove(stage.panel.kernel["z"]);
}

void RemoveTheBranchAtWork(Stage& stage)
{
  stage.panel.GetTree().Remove(stage.panel.kernel["a"]);
}

void RenameAnother(Stage& stage)
{
  stage.panel.GetTree().Rename(stage.panel.kernel["b"], "other");
}

void Select(Stage& stage)
{
  using zelk::SelectionManager;
  for (const unsigned int list : {SelectionManager::SelectionList, SelectionManager::AssocHlightList}) {
    stage.selection->ApplyInstances(list, {stage.panel.kernel["b"]}, SelectionManager::OperationSet);
  }
}

/// A burst that goes as in a run without interference up to the call from inside which the host interferes.
class BurstReentrance : public testing::TestWithParam<std::tuple<Burst, Interference>> {
protected:
  static void Run(Stage& stage) { std::get<Burst>(GetParam()).run(stage); }
  static const Interference& GetInterference() { return std::get<Interference>(GetParam()); }
};

TEST_P(BurstReentrance, AHostMayInterfereFromInsideAnyCall)
{
  Stage undisturbed;
  Run(undisturbed);
  const Lines expected = undisturbed.panel.host.TakeCalls();
  ASSERT_FALSE(expected.empty());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    Stage stage;
    std::size_t index = 0;
    stage.panel.host.onCall = [&](const std::string&) {
      if (index++ == i) {
        GetInterference().run(stage);
      }
    };

    Run(stage);

    const Lines& calls = stage.panel.host.Calls();
    SCOPED_TRACE("in call " + std::to_string(i) + ", " + expected[i]);
    ASSERT_GT(calls.size(), i);
    EXPECT_TRUE(std::equal(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(i) + 1, calls.begin()));
    const Brackets brackets = CountBrackets(calls);
    EXPECT_EQ(brackets.open, 0) << testing::PrintToString(calls);
    EXPECT_LE(brackets.unmatchedFinishes,
              CountBrackets(expected).unmatchedFinishes + GetInterference().unmatchedFinishes)
        << testing::PrintToString(calls);
    if (GetInterference().keepsShowing) {
      EXPECT_EQ(stage.rows.GetSortedRows(), stage.ListFreshRows()) << testing::PrintToString(calls);
    }
  }
}

std::string NameOf(const testing::TestParamInfo<std::tuple<Burst, Interference>>& parameters)
{
  return std::string(std::get<Burst>(parameters.param).name) + '_' + std::get<Interference>(parameters.param).name;
}

INSTANTIATE_TEST_SUITE_P(
    Calls, BurstReentrance,
    testing::Combine(
        testing::ValuesIn(ListBursts()),
        testing::Values(Interference{"DropPanelAndState", DropPanelAndState, false},
                        Interference{"DropPanel", DropPanel, false}, Interference{"DropState", DropState, false},
                        Interference{"ReplaceState", ReplaceState, false},
                        Interference{"ReplaceStateAndKeepIt", ReplaceStateAndKeepIt, false},
                        Interference{"ReplaceStateAndShowIt", ReplaceStateAndShowIt, true},
                        Interference{"Deregister", Deregister, false},
                        Interference{"RegisterAnew", RegisterAnew, false}, Interference{"Reset", Reset, false},
                        Interference{"Initialise", Initialise, true}, Interference{"Close", Close, true},
                        Interference{"RemoveScene", RemoveScene, true}, Interference{"ChangeView", ChangeView, true},
                        Interference{"LeaveView", LeaveView, true}, Interference{"Populate", Populate, true})),
    NameOf);

// A burst inside one whose refill is pending opens no bracket, and its end finishes one all the same.
INSTANTIATE_TEST_SUITE_P(Edits, BurstReentrance,
                         testing::Combine(testing::ValuesIn(ListBursts()),
                                          testing::Values(Interference{"AddInstance", AddInstance, true, 1},
                                                          Interference{"AddABranchInFront", AddABranchInFront, true, 1},
                                                          Interference{"AddTooMany", AddTooMany, true, 1},
                                                          Interference{"RemoveAnother", RemoveAnother, true, 1},
                                                          Interference{"RemoveTheBranchAtWork", RemoveTheBranchAtWork,
                                                                       true, 1},
                                                          Interference{"RenameAnother", RenameAnother, true, 1},
                                                          Interference{"Select", Select, true})),
                         NameOf);

/// A panel that was taken off its tree from inside a burst.
class BurstReset : public testing::TestWithParam<Burst> {};

TEST_P(BurstReset, LeavesNoRowAndHearsNothingMore)
{
  Stage undisturbed;
  GetParam().run(undisturbed);
  const std::size_t count = undisturbed.panel.host.TakeCalls().size();
  for (std::size_t i = 0; i < count; ++i) {
    Stage stage;
    std::size_t index = 0;
    stage.panel.host.onCall = [&](const std::string&) {
      if (index++ == i) {
        stage.panel.gui->Reset();
      }
    };
    GetParam().run(stage);
    SCOPED_TRACE(testing::PrintToString(stage.panel.host.TakeCalls()));

    stage.panel.kernel.Add("root", "unheard");

    EXPECT_THAT(stage.panel.host.Calls(), testing::IsEmpty());
    EXPECT_THAT(stage.rows.GetRows(), testing::IsEmpty());
    EXPECT_THAT(stage.panel.GetShownNames(), testing::IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(Bursts, BurstReset, testing::ValuesIn(ListBursts()),
                         [](const auto& burst) { return burst.param.name; });

}  // namespace
