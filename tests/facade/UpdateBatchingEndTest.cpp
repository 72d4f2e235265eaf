#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "guitree/GuiTreeTreeObserverHelper.h"
#include "testsupport/Panel.h"
#include "testsupport/ShownScene.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Panel;
using testsupport::ShownScene;

using Helper = guitree::GuiTree::GuiTreeTreeObserverHelper;
using Lines = std::vector<std::string>;

/// The end of a burst on a filled panel, with nothing recorded. No scene is shown.
class UpdateBatchingEnd : public testing::Test {
protected:
  UpdateBatchingEnd() { panel.Initialise(); }

  /// What a population that keeps what is expanded tells the host.
  [[nodiscard]] Lines ListRefillCalls()
  {
    static_cast<void>(panel.host.TakeCalls());
    panel.state->PopulateTree(true);
    return panel.host.TakeCalls();
  }

  Panel panel{"root[a b]"};
  Helper burst{panel.gui.Get()};
};

Lines operator+(Lines first, const Lines& second)
{
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

TEST_F(UpdateBatchingEnd, WithoutAShownScene_OnlyTellsThatTheContentHasChangedAndTheTableIsComplete)
{
  burst.Helper_OnInstanceName(panel.kernel["a"]);
  static_cast<void>(panel.host.TakeCalls());

  burst.Helper_OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("FinishTreeUpdate()", "UpdateFilterUI()", "ContentHasChanged()", "UpdateTreeTable()"));
}

TEST_F(UpdateBatchingEnd, ABurstThatOnlyCounted_TellsNothingAndIsForgotten)
{
  for (int repetition = 0; repetition < 3; ++repetition) {
    for (std::uint64_t i = 0; i < Helper::s_maxSingleEdits; ++i) {
      burst.IncOpsDone();
    }
    burst.Helper_OnEndUpdate();
  }

  EXPECT_FALSE(burst.GetRepopulateNeeded());
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(UpdateBatchingEnd, NamesAlone_FinishABracketThatWasNeverStarted)
{
  burst.SetNodeNamesChanged();

  burst.Helper_OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("FinishTreeUpdate()", "UpdateFilterUI()", "ContentHasChanged()",
                                                  "UpdateNodeNames()", "UpdateTreeTable()"));
}

TEST_F(UpdateBatchingEnd, ADueRefillAlone_FinishesABracketThatWasNeverStartedAndThenRefills)
{
  const Lines refill = ListRefillCalls();
  burst.SetRepopulateNeeded();

  burst.Helper_OnEndUpdate();

  EXPECT_EQ(panel.host.TakeCalls(), Lines({"FinishTreeUpdate()", "UpdateFilterUI()"}) + refill);
}

TEST_F(UpdateBatchingEnd, ARefill_LeavesTheNamesToThePopulation)
{
  const Lines refill = ListRefillCalls();
  burst.SetRepopulateNeeded();
  burst.SetNodeNamesChanged();

  burst.Helper_OnEndUpdate();

  EXPECT_EQ(panel.host.TakeCalls(), Lines({"FinishTreeUpdate()", "UpdateFilterUI()"}) + refill);
}

TEST_F(UpdateBatchingEnd, FlagsSetOutsideABurst_WaitForTheNextEnd)
{
  burst.Helper_OnEndUpdate();
  burst.SetNodeNamesChanged();
  burst.SetRepopulateNeeded();
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());

  burst.Helper_OnInstanceName(panel.kernel["a"]);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  burst.Helper_OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), Contains("ClearTree()"));
}

TEST_F(UpdateBatchingEnd, TheBracketAndTheFilterAreDoneBeforeTheRefillAndTheFlagsAreClearedAfterIt)
{
  Lines pendingDuring;
  panel.host.onCall = [&](const std::string& line) {
    if (burst.GetRepopulateNeeded()) {
      pendingDuring.push_back(line);
    }
  };
  burst.SetRepopulateNeeded();

  burst.Helper_OnEndUpdate();

  EXPECT_EQ(pendingDuring, panel.host.Calls());
  EXPECT_EQ(pendingDuring.front(), "FinishTreeUpdate()");
  EXPECT_FALSE(burst.GetRepopulateNeeded());
}

TEST_F(UpdateBatchingEnd, AnEnd_LeavesNothingForTheNextOne)
{
  burst.SetChanged();
  burst.SetRepopulateNeeded();
  burst.SetNodeNamesChanged();
  burst.Helper_OnEndUpdate();
  static_cast<void>(panel.host.TakeCalls());

  burst.Helper_OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  burst.SetChanged();
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("StartTreeUpdate()"));
}

TEST_F(UpdateBatchingEnd, WithoutAState_AFinishedBurstStillBalancesTheBracket)
{
  burst.SetChanged();
  panel.gui->SetTreeState(nullptr);
  burst.SetRepopulateNeeded();

  burst.Helper_OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("StartTreeUpdate()", "FinishTreeUpdate()", "UpdateFilterUI()"));
}

TEST_F(UpdateBatchingEnd, OfAPanelThatIsNotVisible_ARefillClearsTheRowsForLater)
{
  panel.host.answers.isTreeVisibleInUI = false;
  burst.SetRepopulateNeeded();

  burst.Helper_OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("FinishTreeUpdate()", "UpdateFilterUI()", "StoreExpandedAndFirstVisibleBeforePopulate(true)",
                          "StartTreeUpdate()", "ClearTree()", "IsTreeVisibleInUI() -> false", "FinishTreeUpdate()"));
  EXPECT_TRUE(panel.state->GetTreeNeedsRedraw());
}

class UpdateBatchingEndOfAScene : public UpdateBatchingEnd {
protected:
  ShownScene shown{panel};
};

TEST_F(UpdateBatchingEndOfAScene, WithoutChanges_DeliversNoneAndClearsTheMapsAllTheSame)
{
  burst.SetChanged();

  burst.Helper_OnEndUpdate();

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "FinishTreeUpdate()", "UpdateFilterUI()", "ContentHasChanged()",
                          "UpdateTreeTable()", "ClearVisibleChangeMap()", "ClearTypeIconChangeMap()"));
}

TEST_F(UpdateBatchingEndOfAScene, DeliversAChangeOfVisibilityBetweenContentAndTable)
{
  shown.log->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);
  burst.SetChanged();
  burst.SetNodeNamesChanged();

  burst.Helper_OnEndUpdate();

  EXPECT_THAT(
      shown.TakeLines(),
      ElementsAre("StartTreeUpdate()", "FinishTreeUpdate()", "UpdateFilterUI()", "ContentHasChanged()",
                  "UpdateVisAndTypeIconChanges(visible={a: 1}, visibleChanges={a: 18}, typeIcons=yes, "
                  "typeIconChanges={})",
                  "UpdateNodeNames()", "UpdateTreeTable()", "ClearVisibleChangeMap()", "ClearTypeIconChangeMap()"));
  EXPECT_TRUE(shown.log->GetVisibleChangeMap().empty());
}

TEST_F(UpdateBatchingEndOfAScene, DeliversAChangeOfIconsAlone)
{
  panel.state->unloadedTypeIcon = 6;
  shown.log->MarkTypeIconChanged(panel.kernel["a"].Get());
  burst.SetChanged();

  burst.Helper_OnEndUpdate();

  EXPECT_THAT(shown.TakeLines(), Contains("UpdateVisAndTypeIconChanges(visible={}, visibleChanges={}, typeIcons=yes, "
                                          "typeIconChanges={a: 6})"));
  EXPECT_TRUE(shown.log->GetTypeIconChangeMap().empty());
}

TEST_F(UpdateBatchingEndOfAScene, ARefill_RepaintsAllRowsAndThenClearsTheChangeMaps)
{
  shown.log->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);
  panel.state->unloadedTypeIcon = 6;
  shown.log->MarkTypeIconChanged(panel.kernel["a"].Get());
  const Lines refill = ListRefillCalls();
  static_cast<void>(shown.TakeLines());
  burst.SetRepopulateNeeded();

  burst.Helper_OnEndUpdate();

  EXPECT_EQ(shown.TakeLines(), Lines({"FinishTreeUpdate()", "UpdateFilterUI()"}) + refill
                                   + Lines({"UpdateVisAndTypeIcons(visible={a: 1}, typeIcons=yes)",
                                            "ClearVisibleChangeMap()", "ClearTypeIconChangeMap()"}));
  EXPECT_TRUE(shown.log->GetVisibleChangeMap().empty());
  EXPECT_TRUE(shown.log->GetTypeIconChangeMap().empty());
}

TEST_F(UpdateBatchingEndOfAScene, TheChangesOfASceneThatIsNotShown_WaitForItsView)
{
  panel.host.answers.sceneManagerObserver->OnActiveViewChanged(nullptr);
  shown.log->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);
  static_cast<void>(shown.TakeLines());
  burst.SetChanged();

  burst.Helper_OnEndUpdate();

  EXPECT_THAT(shown.TakeLines(), ElementsAre("StartTreeUpdate()", "FinishTreeUpdate()", "UpdateFilterUI()",
                                             "ContentHasChanged()", "UpdateTreeTable()"));
  EXPECT_FALSE(shown.log->GetVisibleChangeMap().empty());
}

TEST_F(UpdateBatchingEndOfAScene, ASceneThatGoesWhileItsChangesAreDelivered_IsNotTouchedAfterwards)
{
  shown.log->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);
  panel.host.onCall = [&](const std::string& line) {
    if (line.starts_with("UpdateVisAndTypeIconChanges")) {
      panel.host.answers.sceneManagerObserver->OnSceneRemoved(shown.scene);
    }
  };
  burst.SetChanged();

  burst.Helper_OnEndUpdate();

  EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
  EXPECT_EQ(panel.host.Calls().back(), "UpdateTreeTable()");
}

TEST_F(UpdateBatchingEndOfAScene, TheFlagsAreThoseOfTheCall)
{
  panel.gui->OnGuiTreeObserverEndUpdate(false, true);
  EXPECT_THAT(shown.TakeLines(), ElementsAre("ContentHasChanged()", "UpdateNodeNames()", "UpdateTreeTable()",
                                             "ClearVisibleChangeMap()", "ClearTypeIconChangeMap()"));

  panel.gui->OnGuiTreeObserverEndUpdate(false, false);
  EXPECT_THAT(shown.TakeLines(), ElementsAre("ContentHasChanged()", "UpdateTreeTable()", "ClearVisibleChangeMap()",
                                             "ClearTypeIconChangeMap()"));
}

}  // namespace
