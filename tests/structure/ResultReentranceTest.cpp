// Hosts that edit the tree or populate while a result is shown.

#include <gmock/gmock.h>

#include "StructureStage.h"

namespace {

using structuretest::StructureStage;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class ResultReentrance : public testing::Test {
protected:
  /// Populates with the filter for "nut"; what its result makes is still to come.
  void Populate(int listMode)
  {
    stage.gui->Initialise(stage.world);
    stage.GetFilter().listMode = listMode;
    stage.GetFilter().SetText("nut");
    stage.state->PopulateTree(false);
    static_cast<void>(stage.host.TakeCalls());
  }
  void PopulateAsList() { Populate(1); }
  void PopulateAsTree() { Populate(0); }
  [[nodiscard]] std::vector<std::string> FinishAndTakeRows()
  {
    stage.Finish();
    return stage.TakeRows();
  }
  /// Calls `act` when the host is asked for the type of the view for the first time after the bracket of a result has
  /// been opened, which is ahead of its rows.
  void OnceAheadOfTheRows(std::function<void()> act)
  {
    stage.OnceIn("StartTreeUpdate", [this, act = std::move(act)] { stage.OnceIn("GetViewTypeString", act); });
  }

  StructureStage stage;
};

TEST_F(ResultReentrance, InAList_WhatLeavesTheTreeFromInsideARowGetsNone)
{
  PopulateAsList();
  stage.OnceIn("InstanceCreate(nut1", [this] { stage.kernel.Get()->Remove(stage.kernel["nut2"]); });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("null/root", "root/nut1", "root/nut3"));
}

TEST_F(ResultReentrance, InAList_WhatLeavesTheTreeWithItsParentGetsNone)
{
  PopulateAsList();
  stage.OnceIn("InstanceCreate(root", [this] { stage.kernel.Get()->Remove(stage.kernel["frame"]); });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("null/root", "root/nut1"));
}

TEST_F(ResultReentrance, InAList_TheEndOfARowThatIsThereOvertakesIt)
{
  PopulateAsList();
  stage.OnceIn("InstanceCreate(nut2", [this] { stage.kernel.Get()->Remove(stage.kernel["nut1"]); });

  EXPECT_THAT(FinishAndTakeRows(),
              ElementsAre("null/root", "root/nut1", "root/nut2", "null/root", "root/nut2", "root/nut3"));
}

TEST_F(ResultReentrance, InAList_WithoutItsRootNoFurtherRowIsMade)
{
  PopulateAsList();
  stage.OnceIn("InstanceCreate(root", [this] { stage.kernel.Get()->Remove(stage.kernel["root"]); });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("null/root"));
}

TEST_F(ResultReentrance, InAList_ANewInstanceGetsNoRowBeforeTheNextPopulation)
{
  PopulateAsList();
  stage.OnceIn("InstanceCreate(nut1", [this] { stage.kernel.Add("frame", "nut4"); });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("null/root", "root/nut1", "root/nut2", "root/nut3"));
}

TEST_F(ResultReentrance, InAList_APopulationFromInsideARowMakesTheRowsOfItsOwnResultAlone)
{
  PopulateAsList();
  stage.OnceIn("InstanceCreate(nut1", [this] {
    static_cast<void>(stage.host.TakeCalls());
    stage.GetFilter().SetText("bolt");
    stage.state->PopulateTree(false);
  });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("null/root", "root/bolt"));
}

TEST_F(ResultReentrance, InAList_APopulationWithoutAFilterFromInsideARowMakesAllRowsOnce)
{
  PopulateAsList();
  stage.OnceIn("InstanceCreate(nut1", [this] { stage.PopulateWithoutFilter(); });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("null/root", "root/plate", "plate/nut1", "plate/bolt", "plate/frame",
                                               "frame/nut2", "frame/nut3"));
}

TEST_F(ResultReentrance, InAList_AResetFromInsideARowMakesNoFurther)
{
  PopulateAsList();
  stage.OnceIn("InstanceCreate(nut1", [this] { stage.state->Reset(); });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("null/root", "root/nut1"));
  EXPECT_THAT(stage.state->GetNotFilteredSet(), IsEmpty());
}

TEST_F(ResultReentrance, InAList_APopulationAheadOfTheRowsLeavesNoneOfTheOvertakenResult)
{
  PopulateAsList();
  OnceAheadOfTheRows([this] {
    static_cast<void>(stage.host.TakeCalls());
    stage.GetFilter().ClearCriteria();
    stage.GetFilter().SetText("bolt");
    stage.state->PopulateTree(false);
  });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("null/root", "root/bolt"));
}

TEST_F(ResultReentrance, WithoutAMatch_APopulationAheadOfTheRowMakesNoneOfTheOvertakenResult)
{
  PopulateAsTree();
  stage.GetFilter().SetText("screw");
  stage.state->PopulateTree(false);
  OnceAheadOfTheRows([this] {
    stage.state->PopulateTree(false);
    static_cast<void>(stage.host.TakeCalls());
  });
  while (!stage.world->pool.waiting.empty()) {
    stage.world->pool.Run(0);
  }
  stage.loop->RunDue();

  EXPECT_THAT(stage.TakeRows(), IsEmpty());
}

TEST_F(ResultReentrance, InAList_ARootThatGoesAheadOfTheRowsGetsNone)
{
  PopulateAsList();
  OnceAheadOfTheRows([this] { stage.kernel.Get()->Remove(stage.kernel["root"]); });

  EXPECT_THAT(FinishAndTakeRows(), IsEmpty());
}

TEST_F(ResultReentrance, WithoutAMatch_ARootThatGoesAheadOfTheRowGetsNone)
{
  PopulateAsTree();
  stage.GetFilter().SetText("screw");
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());
  OnceAheadOfTheRows([this] { stage.kernel.Get()->Remove(stage.kernel["root"]); });

  EXPECT_THAT(FinishAndTakeRows(), IsEmpty());
}

TEST_F(ResultReentrance, InATree_WhatLeavesTheTreeFromInsideARowGetsNone)
{
  PopulateAsTree();
  stage.OnceIn("InstanceCreate(node nut1", [this] { stage.kernel.Get()->Remove(stage.kernel["frame"]); });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("root", "plate", "nut1"));
}

TEST_F(ResultReentrance, InATree_WhatLeavesTheTreeWhileTheFilterIsLookedAtGetsNone)
{
  PopulateAsTree();
  stage.OnceIn("InstanceCreate(node nut1", [this] {
    stage.OnceIn("GetViewTypeString", [this] { stage.kernel.Get()->Remove(stage.kernel["frame"]); });
  });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("root", "plate", "nut1"));
}

TEST_F(ResultReentrance, InATree_APopulationFromInsideARowMakesTheRowsOfItsOwnResultAlone)
{
  PopulateAsTree();
  stage.OnceIn("InstanceCreate(node nut1", [this] {
    static_cast<void>(stage.host.TakeCalls());
    stage.GetFilter().SetText("bolt");
    stage.state->PopulateTree(false);
  });

  EXPECT_THAT(FinishAndTakeRows(), ElementsAre("root", "plate", "bolt"));
}

TEST_F(ResultReentrance, InEachCall_TheEndOfPanelAndStateLeavesNothingBehind)
{
  for (const int listMode : {0, 1}) {
    std::size_t calls = 0;
    for (std::size_t callToEndIn = 0; callToEndIn <= calls; ++callToEndIn) {
      StructureStage ending;
      ending.GetFilter().listMode = listMode;
      ending.GetFilter().SetText("nut");
      ending.state->PopulateTree(false);
      std::size_t call = 0;
      ending.host.onCall = [&](const std::string& /*line*/) {
        if (call++ == callToEndIn) {
          ending.gui->SetTreeState(nullptr);
          ending.state.Reset();
          ending.gui.Reset();
        }
      };

      ending.Finish();

      calls = std::max(calls, call);
      EXPECT_EQ(!ending.gui, callToEndIn < call);
    }
    EXPECT_GT(calls, 8U);
  }
}

}  // namespace
