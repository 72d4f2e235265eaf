// Hosts that let go of the state from inside its calls.

#include <gmock/gmock.h>

#include "StructureStage.h"

namespace {

using structuretest::StructureStage;

class LettingGo : public testing::Test {
protected:
  /// Calls `act` on a state whose last reference goes inside the first question for a type of view.
  static void LetGoInside(const std::function<void(guitree::StructureTreeState& state)>& act)
  {
    StructureStage stage;
    stage.GetFilter().listMode = 1;
    stage.GetFilter().SetText("nut");
    stage.GetFilter().useResultsList = true;
    stage.GetFilter().resultsListLive = true;
    guitree::StructureTreeState& state = *stage.state;
    stage.OnceIn("GetViewTypeString", [&stage] {
      stage.gui->SetTreeState(nullptr);
      stage.state.Reset();
    });

    act(state);

    EXPECT_FALSE(stage.state);
  }
};

TEST_F(LettingGo, WhileAResultsListIsSet_IsNoTrouble)
{
  LetGoInside([](guitree::StructureTreeState& state) { state.SetResultsComps(nullptr); });
}

TEST_F(LettingGo, WhileTheFilterIsLookedAt_IsNoTrouble)
{
  LetGoInside([](guitree::StructureTreeState& state) { static_cast<void>(state.GetFilter(nullptr)); });
  LetGoInside([](guitree::StructureTreeState& state) { EXPECT_TRUE(state.IsDoingFilterAsList()); });
  LetGoInside([](guitree::StructureTreeState& state) { EXPECT_TRUE(state.ApplyFilterAsList(nullptr, nullptr)); });
}

TEST_F(LettingGo, WhileASwitchIsFollowed_IsNoTrouble)
{
  LetGoInside([](guitree::StructureTreeState& state) { state.ShowBodiesChanged(); });
  LetGoInside([](guitree::StructureTreeState& state) {
    guitree::WorldTreeState::SetIsCollapsingInstances(true);
    state.UpdateFiltersForCollapsingInstances(true);
  });
}

TEST_F(LettingGo, AtTheEndOfASelectionUpdate_IsNoTrouble)
{
  LetGoInside([](guitree::StructureTreeState& state) { state.OnEndUpdate(); });
}

}  // namespace
