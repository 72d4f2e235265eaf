#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "testsupport/Panel.h"

namespace {

using testing::IsEmpty;
using testsupport::Panel;
using testsupport::ScriptedTreeState;

TEST(TreeStateLifetime, AStateThatOutlivesItsGuiTree_DoesNothingAndAnswersNothing)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.state->PopulateTree(false);
  static_cast<void>(panel.host.TakeCalls());
  panel.gui.Reset();
  ScriptedTreeState& state = *panel.state;
  std::vector<du::SmartPtr<zelk::Object>> items;
  std::set<du::SmartPtr<zelk::BaseInstance>> selected;

  state.PopulateTree(true);
  state.MadeVisible(true);
  state.MadeVisible(false);
  state.OnInsertItems(items);
  state.OnRemoveItems(items);
  state.OnClearSelection();
  state.OnEndUpdate();
  state.RefreshAssocHlights();
  state.OnAssocHlightColorChange();
  state.GetSelectedComps(selected, true);

  EXPECT_THAT(panel.host.Calls(), IsEmpty());
  EXPECT_FALSE(state.OnAssocHlightChanged(true, {}, {}));
  EXPECT_EQ(state.GetBaseRoot(), nullptr);
  EXPECT_EQ(state.GetCurInfoLog(), nullptr);
  EXPECT_EQ(state.GetLog(nullptr), nullptr);
  EXPECT_FALSE(state.IsFiltered());
  EXPECT_FALSE(state.CheckAndUpdateNodeNameAndType(panel.kernel["a"]));
}

TEST(TreeStateLifetime, Reset_AfterTheGuiTreeHasGone_StillForgetsTheRows)
{
  Panel panel("root");
  panel.ShowTree();
  panel.state->PopulateTree(false);
  panel.gui.Reset();

  panel.state->Reset();

  EXPECT_THAT(panel.state->GetNotFilteredSet(), IsEmpty());
}

TEST(TreeStateLifetime, AStateIsReplacedOnALivePanel)
{
  Panel panel("root[a]");
  panel.Initialise();
  const auto other = du::MakeSmart<ScriptedTreeState>(*panel.gui);
  panel.gui->SetTreeState(other);

  panel.state.Reset();
  other->PopulateTree(false);

  EXPECT_EQ(panel.gui->GetTreeState(), other.Get());
  EXPECT_EQ(other->GetNotFilteredSet().size(), 2u);
}

/// Runs `PopulateTree` once for each call that it makes, and lets the host drop its last references to panel and state
/// from inside that call.
TEST(TreeStateLifetime, AHostMayDropPanelAndStateFromInsideAnyCallOfAPopulation)
{
  std::size_t callCount = 1;
  for (std::size_t i = 0; i < callCount; ++i) {
    std::optional<Panel> panel(std::in_place, "root[a b]");
    panel->ShowTree();
    std::size_t index = 0;
    panel->host.onCall = [&](const std::string&) {
      if (index++ == i) {
        panel->gui.Reset();
        panel->state.Reset();
      }
    };
    const auto state = panel->state.Get();

    state->PopulateTree(false);

    callCount = std::max(callCount, panel->host.Calls().size());
    EXPECT_EQ(panel->host.Calls().back(), "UpdateQuickSearchResults(true, view=null, filterNeeded=false)");
  }
  EXPECT_EQ(callCount, 15u);
}

TEST(TreeStateLifetime, AHostMayDropPanelAndStateWhileItCatchesUp)
{
  Panel panel("root[a]");
  panel.UseSelController()->highlighted = {panel.kernel["a"]};
  panel.ShowTree();
  panel.state->PopulateTree(false);
  panel.host.answers.isTreeVisibleInUI = false;
  panel.state->OnAssocHlightChanged(true, {}, {});
  panel.state->OnClearSelection();
  static_cast<void>(panel.host.TakeCalls());
  panel.host.onCall = [&](const std::string&) {
    panel.gui.Reset();
    panel.state.Reset();
  };
  const auto state = panel.state.Get();

  state->MadeVisible(true);

  EXPECT_EQ(panel.host.Calls().back(), "MadeVisible(true)");
}

TEST(TreeStateLifetime, RowsOfInstancesThatDieAreOnlyIdentities)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.state->PopulateTree(false);
  const zelk::BaseInstance* gone = panel.kernel["a"].Get();

  ASSERT_TRUE(panel.kernel.Get()->Remove(panel.kernel["a"]));

  EXPECT_TRUE(panel.state->GetNotFilteredSet().contains(gone));
}

}  // namespace
