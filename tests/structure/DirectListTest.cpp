// The list presentation when it is asked for outside of the visit of a result.

#include <gmock/gmock.h>

#include <algorithm>

#include "StructureStage.h"

namespace {

using structuretest::StructureStage;
using testing::ElementsAre;

class DirectList : public testing::Test {
protected:
  DirectList()
  {
    stage.gui->Initialise(stage.world);
    stage.ShowAsList("nut");
    // Leaves the result, and none of its rows.
    stage.host.answers.isTreeVisibleInUI = false;
    stage.state->PopulateTree(false);
    stage.host.answers.isTreeVisibleInUI = true;
    static_cast<void>(stage.host.TakeCalls());
  }

  [[nodiscard]] std::vector<std::string> WriteAndTakeRows()
  {
    const du::SmartPtr<guitree::FilteredTree> result = stage.GetResult();
    EXPECT_TRUE(stage.state->ApplyFilterAsList(result->GetRoot(), nullptr));
    return stage.TakeRows();
  }

  StructureStage stage;
};

TEST_F(DirectList, WhatLeavesTheTreeFromInsideARowGetsNone)
{
  stage.OnceIn("InstanceCreate(nut1", [this] { stage.kernel.Get()->Remove(stage.kernel["nut2"]); });

  EXPECT_THAT(WriteAndTakeRows(), ElementsAre("null/root", "root/nut1", "root/nut3"));
}

TEST_F(DirectList, APopulationFromInsideARowOvertakesIt)
{
  stage.OnceIn("InstanceCreate(nut1", [this] { stage.PopulateWithoutFilter(); });

  EXPECT_THAT(WriteAndTakeRows(), ElementsAre("null/root", "root/plate", "plate/nut1", "plate/bolt", "plate/frame",
                                              "frame/nut2", "frame/nut3"));
}

TEST_F(DirectList, AResetFromInsideARowMakesNoFurther)
{
  stage.OnceIn("InstanceCreate(nut1", [this] { stage.state->Reset(); });

  EXPECT_THAT(WriteAndTakeRows(), ElementsAre("null/root", "root/nut1"));
}

TEST_F(DirectList, AskedForAgain_LooksAtWhatIsGoneAnew)
{
  stage.OnceIn("InstanceCreate(nut1", [this] { stage.kernel.Get()->Remove(stage.kernel["nut2"]); });
  static_cast<void>(WriteAndTakeRows());

  EXPECT_THAT(WriteAndTakeRows(), ElementsAre("null/root", "root/nut1", "root/nut2", "root/nut3"));
}

TEST_F(DirectList, InsideEachCall_TheEndOfPanelAndStateIsNoTrouble)
{
  std::size_t calls = 0;
  for (std::size_t callToEndIn = 0; callToEndIn <= calls; ++callToEndIn) {
    StructureStage ending;
    ending.ShowAsList("nut");
    const du::SmartPtr<guitree::FilteredTree> result = ending.GetResult();
    std::size_t call = 0;
    ending.host.onCall = [&](const std::string& /*line*/) {
      if (call++ == callToEndIn) {
        ending.gui->SetTreeState(nullptr);
        ending.state.Reset();
        ending.gui.Reset();
      }
    };

    EXPECT_TRUE(ending.state->ApplyFilterAsList(result->GetRoot(), nullptr));

    calls = std::max(calls, call);
    EXPECT_EQ(!ending.gui, callToEndIn < call);
  }
  EXPECT_GT(calls, 5U);
}

}  // namespace
