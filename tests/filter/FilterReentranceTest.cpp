#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "JobStage.h"

namespace {

using filtertest::JobStage;
using filtertest::JobState;
using testing::IsEmpty;

using Rows = std::set<std::string>;

/// What a panel shows without a filter, and with the filter that lets "f" through.
const Rows s_allRows{"root", "a", "b", "e", "f", "g", "c", "d"};
const Rows s_filteredRows{"root", "a", "b", "e", "f"};

/// Something that a panel with a filter does.
struct Operation {
  const char* name;
  std::function<void(JobStage&)> prepare;
  std::function<void(JobStage&)> run;
  /// The rows at the end, if nobody interferes.
  Rows rows;
};

void PrintTo(const Operation& operation, std::ostream* out)
{
  *out << operation.name;
}

void Populate(JobStage& stage)
{
  stage.state->PopulateTree(false);
}

void ExpandRoot(JobStage& stage)
{
  stage.state->ExpandFilterNode({stage.kernel["root"].Get()});
}

void ShowCancelledJob(JobStage& stage)
{
  stage.state->filter.onAsked = [&](auto&&...) { stage.host.events.at(0)->Cancel(); };
  Populate(stage);
  stage.Finish();
  stage.state->filter.onAsked = nullptr;
}

/// What is left after all calls in order: rows are what was made since the host was cleared last.
struct Outcome {
  Rows rows;
  /// A row that was made twice stands twice.
  std::multiset<std::string> made;
  bool isCalculating = false;
  int openBrackets = 0;
};

Outcome PlayBack(const std::vector<std::string>& calls)
{
  Outcome outcome;
  for (const std::string& call : calls) {
    if (call == "ClearTree()" || call == "Reset()") {
      outcome.rows.clear();
      outcome.made.clear();
    } else if (call.starts_with("InstanceCreate(")) {
      const std::size_t begin = call.find("node ") == std::string::npos ? 15 : 20;
      outcome.made.insert(*outcome.rows.insert(call.substr(begin, call.find(',') - begin)).first);
    } else if (call.starts_with("InstanceRemove(")) {
      outcome.rows.erase(call.substr(15, call.find(',') - 15));
    } else if (call.starts_with("SetTreeCalculating")) {
      outcome.isCalculating = call == "SetTreeCalculating(true)";
    } else if (call == "StartTreeUpdate()") {
      ++outcome.openBrackets;
    } else if (call == "FinishTreeUpdate()") {
      --outcome.openBrackets;
    }
  }
  return outcome;
}

/// Passes on what the kernel tells of removals. The answers are left alone, as in a burst that has not ended yet.
class RemovalForwarder : public zelk::TreeObserver {
public:
  /// The kernel tells of everything that goes; a state need only hear of the topmost.
  RemovalForwarder(JobState& state, bool passesOnAll) : m_state(state), m_passesOnAll(passesOnAll) {}

  /// In the order in which they were announced.
  std::vector<std::string> gone;

  void OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& parent) override
  {
    gone.emplace_back(instance->GetObjectName().GetView());
    if (m_passesOnAll || gone.size() == 1) {
      m_state.InstanceRemove(instance, parent, false);
    }
  }

private:
  JobState& m_state;
  const bool m_passesOnAll;
};

Rows Without(Rows rows, const std::vector<std::string>& names)
{
  for (const std::string& name : names) {
    rows.erase(name);
  }
  return rows;
}

class FilterReentrance : public testing::TestWithParam<Operation> {
protected:
  using Interference = std::function<void(JobStage&)>;
  using Check = std::function<void(JobStage&, const Outcome&)>;

  /// Runs the operation to the end of all jobs, once for each call that the host gets in it. From inside that call the
  /// host interferes.
  static void InterfereAtEachCall(const Interference& interfere, const Check& check)
  {
    const std::size_t count = Play(
        -1, [](JobStage&) {}, [](JobStage&, const Outcome& outcome) { EXPECT_EQ(outcome.rows, GetParam().rows); });
    ASSERT_GT(count, 5U);
    for (std::size_t k = 0; k < count; ++k) {
      Play(static_cast<int>(k), interfere, check);
    }
  }

  /// Removes a branch of the kernel's tree at each call.
  static void InterfereByAnEdit(const std::string& top, const std::vector<std::string>& branch, bool isAllToldOf)
  {
    SCOPED_TRACE(top);
    std::size_t callsBefore = 0;
    bool isInsideARow = false;
    int rowsInterrupted = 0;
    du::SmartPtr<RemovalForwarder> forwarder;
    InterfereAtEachCall(
        [&](JobStage& stage) {
          isInsideARow = stage.host.Calls().back().starts_with("InstanceCreate(");
          forwarder = du::MakeSmart<RemovalForwarder>(*stage.state, isAllToldOf);
          stage.kernel.Get()->RegisterObserver(*forwarder, false);
          stage.kernel.Get()->Remove(stage.kernel[top]);
          callsBefore = stage.host.Calls().size();
        },
        [&](JobStage& stage, const Outcome& outcome) {
          EXPECT_EQ(forwarder->gone, branch);
          forwarder.Reset();
          // What has gone before the rows are made may have stale ones.
          if (isInsideARow) {
            ++rowsInterrupted;
            const auto& calls = stage.host.Calls();
            const Rows after = PlayBack({calls.begin() + static_cast<std::ptrdiff_t>(callsBefore), calls.end()}).rows;
            EXPECT_EQ(Without(after, branch), after);
            EXPECT_EQ(Without(outcome.rows, branch), Without(GetParam().rows, branch));
          }
        });
    EXPECT_GT(rowsInterrupted, 1);
  }

private:
  /// Returns how many calls there were.
  static std::size_t Play(int k, const Interference& interfere, const Check& check)
  {
    JobStage stage("root[a[b[e[f g]] c] d]");
    stage.LetThrough({"f"});
    GetParam().prepare(stage);
    const auto liveness = stage.gui->GetLiveness();
    const du::SmartPtr<JobState> state = stage.state;
    std::string interrupted;
    bool wasCalledAfterTheEnd = false;
    int count = 0;
    stage.host.onCall = [&](const std::string& call) {
      wasCalledAfterTheEnd |= *liveness == nullptr;
      if (count++ == k) {
        interrupted = call;
        interfere(stage);
      }
    };

    GetParam().run(stage);
    stage.Finish();

    SCOPED_TRACE(std::to_string(k) + ": " + interrupted);
    const Outcome outcome = PlayBack(stage.host.Calls());
    EXPECT_FALSE(wasCalledAfterTheEnd);
    EXPECT_EQ(outcome.openBrackets, 0);
    EXPECT_FALSE(outcome.isCalculating && *liveness);
    // A panel that was hidden waits for its next population.
    EXPECT_FALSE(state->IsBusy() && *liveness && !state->GetTreeNeedsRedraw());
    EXPECT_FALSE(*liveness && stage.GetController().IsBusy());
    check(stage, outcome);
    return static_cast<std::size_t>(count);
  }
};

TEST_P(FilterReentrance, AHostMayClose_WhichChangesNothing)
{
  InterfereAtEachCall([](JobStage& stage) { stage.gui->Close(); },
                      [](JobStage&, const Outcome& outcome) { EXPECT_EQ(outcome.rows, GetParam().rows); });
}

TEST_P(FilterReentrance, AHostMayDropPanelAndState)
{
  InterfereAtEachCall(
      [](JobStage& stage) {
        stage.gui.Reset();
        stage.state.Reset();
      },
      [](JobStage& stage, const Outcome&) { EXPECT_EQ(stage.gui, nullptr); });
}

TEST_P(FilterReentrance, AHostMayResetThePanel_WhichIsEmptyAfterwardsButForABranchUnderWay)
{
  InterfereAtEachCall([](JobStage& stage) { stage.gui->Reset(); },
                      [](JobStage& stage, const Outcome& outcome) {
                        EXPECT_THAT(outcome.rows, IsEmpty());
                        EXPECT_THAT(stage.state->GetNotFilteredSet(), IsEmpty());
                      });
}

TEST_P(FilterReentrance, AHostMayTypeAnotherFilter_WhoseRowsAreAllThereIs)
{
  InterfereAtEachCall(
      [](JobStage& stage) {
        stage.LetThrough({"d"});
        stage.state->PopulateTree(false);
      },
      [](JobStage& stage, const Outcome& outcome) {
        EXPECT_EQ(outcome.rows, Rows({"root", "d"}));
        EXPECT_EQ(stage.state->GetNotFilteredSet().size(), 2U);
      });
}

TEST_P(FilterReentrance, AHostMayTurnTheFilterOff_ThePlainRowsAreThere)
{
  InterfereAtEachCall(
      [](JobStage& stage) {
        stage.state->filter.isFiltering = false;
        stage.state->PopulateTree(false);
      },
      [](JobStage&, const Outcome& outcome) { EXPECT_EQ(outcome.rows, s_allRows); });
}

TEST_P(FilterReentrance, AHostMayHideThePanelAndShowItAgainLater)
{
  InterfereAtEachCall(
      [](JobStage& stage) {
        stage.host.answers.isTreeVisibleInUI = false;
        stage.state->MadeVisible(false);
        stage.state->PopulateTree(false);
      },
      [](JobStage& stage, const Outcome&) {
        stage.host.onCall = nullptr;
        stage.host.answers.isTreeVisibleInUI = true;
        stage.state->MadeVisible(true);
        stage.Finish();
        EXPECT_EQ(PlayBack(stage.host.Calls()).rows, s_filteredRows);
      });
}

TEST_P(FilterReentrance, AHostMayPutAnotherStateInPlace)
{
  InterfereAtEachCall(
      [](JobStage& stage) {
        const auto other = du::MakeSmart<JobState>(*stage.gui);
        stage.gui->SetTreeState(other);
        stage.state = other;
        other->PopulateTree(false);
      },
      [](JobStage& stage, const Outcome&) { EXPECT_EQ(stage.state->GetNotFilteredSet().size(), s_allRows.size()); });
}

TEST_P(FilterReentrance, AHostMayEditTheTree_WhatHasGoneGetsNoRowAnyMore)
{
  const std::map<std::string, std::vector<std::string>> branches{{"a", {"a", "b", "e", "f", "g", "c"}},
                                                                 {"b", {"b", "e", "f", "g"}},
                                                                 {"e", {"e", "f", "g"}},
                                                                 {"f", {"f"}},
                                                                 {"d", {"d"}}};
  for (const auto& [top, branch] : branches) {
    for (const bool isAllToldOf : {true, false}) {
      InterfereByAnEdit(top, branch, isAllToldOf);
    }
  }
}

TEST_P(FilterReentrance, AHostMayEmptyTheTree)
{
  InterfereAtEachCall(
      [](JobStage& stage) {
        const du::SmartPtr<zelk::BaseInstance> root = stage.kernel["root"];
        stage.kernel.Get()->Remove(stage.kernel["root"]);
        stage.state->InstanceRemove(root, nullptr, false);
      },
      [](JobStage& stage, const Outcome&) {
        stage.host.onCall = nullptr;
        stage.state->PopulateTree(false);
        stage.Finish();
        EXPECT_THAT(PlayBack(stage.host.Calls()).rows, IsEmpty());
      });
}

TEST_P(FilterReentrance, AHostMayOpenTheBranchThatIsBeingShown)
{
  InterfereAtEachCall([](JobStage& stage) { ExpandRoot(stage); },
                      [](JobStage&, const Outcome& outcome) { EXPECT_EQ(outcome.rows, GetParam().rows); });
}

INSTANTIATE_TEST_SUITE_P(OfAnyKind, FilterReentrance,
                         testing::Values(Operation{"Populate", [](JobStage&) {}, Populate, s_filteredRows},
                                         Operation{"PopulateDuringAJob", Populate, Populate, s_filteredRows},
                                         Operation{"PopulateAgain",
                                                   [](JobStage& stage) {
                                                     Populate(stage);
                                                     stage.Finish();
                                                   },
                                                   Populate, s_filteredRows},
                                         Operation{"Expand", ShowCancelledJob, ExpandRoot, s_allRows}),
                         [](const auto& operation) { return operation.param.name; });

using CancelledFilterReentrance = FilterReentrance;

TEST_P(CancelledFilterReentrance, AHostMayOpenTheRoot_WhoseRowsComeOnce)
{
  bool isOpened = false;
  bool hadRoot = false;
  int rowsInterrupted = 0;
  InterfereAtEachCall(
      [&](JobStage& stage) {
        hadRoot = PlayBack(stage.host.Calls()).rows.contains("root");
        isOpened = stage.state->ExpandFilterNode({stage.kernel["root"].Get()});
      },
      [&](JobStage&, const Outcome& outcome) {
        EXPECT_EQ(outcome.rows, isOpened ? s_allRows : GetParam().rows);
        // Rows that came before there was a row above them come again, to their place.
        if (hadRoot) {
          ++rowsInterrupted;
          EXPECT_EQ(outcome.made, (std::multiset<std::string>(outcome.rows.begin(), outcome.rows.end())));
        }
      });
  EXPECT_GT(rowsInterrupted, 2);
}

INSTANTIATE_TEST_SUITE_P(OfAnyKind, CancelledFilterReentrance,
                         testing::Values(Operation{"Populate", [](JobStage&) {}, ShowCancelledJob, {"root"}}),
                         [](const auto& operation) { return operation.param.name; });

}  // namespace
