#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "testsupport/Panel.h"
#include "zelk/ObjectSelectionItem.h"

namespace {

using testsupport::Panel;
using testsupport::ScriptedTreeState;

using Items = std::vector<du::SmartPtr<zelk::SelectionItem>>;

/// A filled panel with a highlighted row and nothing recorded.
struct Stage {
  Stage()
  {
    panel.UseSelController()->highlighted = {panel.kernel["a"]};
    panel.ShowTree();
    panel.state->PopulateTree(false);
    static_cast<void>(panel.host.TakeCalls());
  }

  Panel panel{"root[a b]"};
  std::vector<du::SmartPtr<zelk::Object>> items{panel.kernel["a"]};
};

struct Operation {
  const char* name;
  std::function<void(Stage&, ScriptedTreeState&)> run;
  std::function<void(Stage&)> prepare = [](Stage&) {};
};

void PrintTo(const Operation& operation, std::ostream* out)
{
  *out << operation.name;
}

void FilterTheSelectionDynamically(ScriptedTreeState& state)
{
  state.filter.dynamicUpdate = true;
  state.filter.filteringSel = true;
}

/// An operation of a tree state that is called by somebody who holds no reference.
class TreeStateReentrance : public testing::TestWithParam<Operation> {
protected:
  static void Prepare(Stage& stage)
  {
    GetParam().prepare(stage);
    static_cast<void>(stage.panel.host.TakeCalls());
  }
  [[nodiscard]] static std::vector<std::string> ListCalls()
  {
    Stage stage;
    Prepare(stage);
    GetParam().run(stage, *stage.panel.state);
    return stage.panel.host.TakeCalls();
  }
};

TEST_P(TreeStateReentrance, AHostMayDropPanelAndStateFromInsideAnyCall)
{
  const std::vector<std::string> expected = ListCalls();
  for (std::size_t i = 0; i < expected.size(); ++i) {
    Stage stage;
    Prepare(stage);
    std::size_t index = 0;
    stage.panel.host.onCall = [&](const std::string&) {
      if (index++ == i) {
        stage.panel.gui.Reset();
        stage.panel.state.Reset();
      }
    };
    ScriptedTreeState* state = stage.panel.state.Get();

    GetParam().run(stage, *state);

    EXPECT_EQ(stage.panel.host.TakeCalls(), expected);
    EXPECT_EQ(stage.panel.gui, nullptr);
  }
}

TEST_P(TreeStateReentrance, TheStateMayBeReplacedWhenItIsAskedForItsFilter)
{
  const std::vector<std::string> expected = ListCalls();
  Stage stage;
  Prepare(stage);
  bool isGone = false;
  bool wasAsked = false;
  ScriptedTreeState* state = stage.panel.state.Get();
  state->onEnd = [&] { isGone = true; };
  state->onCall = [&](const std::string& call) {
    if (call == "GetFilter" && !wasAsked) {
      wasAsked = true;
      stage.panel.gui->SetTreeState(du::MakeSmart<ScriptedTreeState>(*stage.panel.gui));
      stage.panel.state.Reset();
      EXPECT_FALSE(isGone);
    }
  };

  GetParam().run(stage, *state);

  EXPECT_EQ(isGone, wasAsked);
  EXPECT_EQ(stage.panel.host.TakeCalls(), expected);
}

TEST(TreeStateReentranceOfTwo, APopulationOfAnotherStateFromInsideARow_OvertakesTheOneUnderWay)
{
  Stage stage;
  const du::SmartPtr<ScriptedTreeState> former = stage.panel.state;
  std::vector<std::string> callsOfOther;
  stage.panel.host.onCall = [&](const std::string& call) {
    if (call.starts_with("InstanceCreate")) {
      stage.panel.host.onCall = {};
      static_cast<void>(stage.panel.host.TakeCalls());
      const auto other = du::MakeSmart<ScriptedTreeState>(*stage.panel.gui);
      stage.panel.gui->SetTreeState(other);
      other->PopulateTree(false);
      callsOfOther = stage.panel.host.TakeCalls();
    }
  };

  former->PopulateTree(false);

  EXPECT_THAT(callsOfOther, testing::Contains(testing::StartsWith("InstanceCreate")).Times(3));
  EXPECT_THAT(stage.panel.host.TakeCalls(), testing::Not(testing::Contains(testing::StartsWith("InstanceCreate"))));
}

INSTANTIATE_TEST_SUITE_P(
    OfAnyKind, TreeStateReentrance,
    testing::Values(
        Operation{"PopulateTree", [](Stage&, ScriptedTreeState& state) { state.PopulateTree(false); }},
        Operation{"FilteredPopulateTree",
                  [](Stage&, ScriptedTreeState& state) {
                    state.filter.isFiltering = true;
                    state.PopulateTree(false);
                  }},
        Operation{"OnInsertItems", [](Stage& stage, ScriptedTreeState& state) { state.OnInsertItems(stage.items); }},
        Operation{"OnRemoveItems", [](Stage& stage, ScriptedTreeState& state) { state.OnRemoveItems(stage.items); }},
        Operation{"OnClearSelection", [](Stage&, ScriptedTreeState& state) { state.OnClearSelection(); }},
        Operation{"OnEndUpdate",
                  [](Stage&, ScriptedTreeState& state) {
                    FilterTheSelectionDynamically(state);
                    state.OnEndUpdate();
                  }},
        Operation{"MadeVisible", [](Stage&, ScriptedTreeState& state) { state.MadeVisible(true); },
                  [](Stage& stage) {
                    stage.panel.host.answers.isTreeVisibleInUI = false;
                    stage.panel.state->OnAssocHlightChanged(true, {}, {});
                    stage.panel.state->OnClearSelection();
                    stage.panel.host.answers.isTreeVisibleInUI = true;
                  }},
        Operation{"IsFiltered", [](Stage&, ScriptedTreeState& state) { static_cast<void>(state.IsFiltered()); }},
        Operation{"OnAssocHlightChanged",
                  [](Stage& stage, ScriptedTreeState& state) {
                    const Items removed{du::MakeSmart<zelk::ObjectSelectionItem>(stage.panel.kernel["a"])};
                    const Items added{du::MakeSmart<zelk::ObjectSelectionItem>(stage.panel.kernel["b"])};
                    state.OnAssocHlightChanged(true, removed, added);
                  }},
        Operation{"RefreshAssocHlights", [](Stage&, ScriptedTreeState& state) { state.RefreshAssocHlights(); }},
        Operation{"OnAssocHlightColorChange",
                  [](Stage& stage, ScriptedTreeState& state) {
                    stage.panel.state->selController->highlighted.insert(stage.panel.kernel["b"]);
                    state.OnAssocHlightColorChange();
                  }},
        Operation{"CheckAndUpdateNodeNameAndType",
                  [](Stage& stage, ScriptedTreeState& state) {
                    static_cast<void>(state.CheckAndUpdateNodeNameAndType(stage.panel.kernel["a"]));
                  }},
        Operation{"Reset", [](Stage&, ScriptedTreeState& state) { state.Reset(); }}),
    [](const auto& operation) { return operation.param.name; });

}  // namespace
