#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testsupport::Panel;

/// A filled panel, hidden, with nothing recorded.
void Hide(Panel& panel)
{
  panel.ShowTree();
  panel.state->PopulateTree(false);
  panel.host.answers.isTreeVisibleInUI = false;
  panel.state->MadeVisible(false);
  static_cast<void>(panel.host.TakeCalls());
}

void Show(Panel& panel)
{
  panel.host.answers.isTreeVisibleInUI = true;
  static_cast<void>(panel.host.TakeCalls());
  panel.state->MadeVisible(true);
}

TEST(MadeVisible, OnHide_ForwardsAndDoesNothingElseWhateverTheFlags)
{
  Panel panel("root");
  Hide(panel);
  panel.state->OnClearSelection();
  panel.state->OnAssocHlightChanged(true, {}, {});
  panel.state->PopulateTree(false);
  static_cast<void>(panel.host.TakeCalls());

  panel.state->MadeVisible(false);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("MadeVisible(false)"));
  EXPECT_TRUE(panel.state->GetSelectionNeedsUpdating());
  EXPECT_TRUE(panel.state->GetAssocHlightsNeedsUpdating());
  EXPECT_TRUE(panel.state->GetTreeNeedsRedraw());
}

TEST(MadeVisible, OnShowWithNoFlag_MakesNoHostCall)
{
  Panel panel("root");
  Hide(panel);

  Show(panel);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST(MadeVisible, AfterAPopulationThatWasDue_PopulatesAndCatchesUpWithNothingElse)
{
  Panel panel("root");
  Hide(panel);
  panel.state->OnClearSelection();
  panel.state->PopulateTree(true);

  Show(panel);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StoreExpandedAndFirstVisibleBeforePopulate(false)", "StartTreeUpdate()", "ClearTree()",
                          "IsTreeVisibleInUI() -> true", "IsValidView(null) -> true",
                          "InstanceCreate(root, parent=null, controller=no, assoc=false)", "UpdateTreeTable()",
                          "RestoreExpandedAfterPopulate()", "FinishTreeUpdate()", "RestoreFirstVisible()",
                          "UpdateMarkedInsts(null)", "ContentHasChanged()",
                          "UpdateQuickSearchResults(true, view=null, filterNeeded=false)"));
  EXPECT_FALSE(panel.state->GetTreeNeedsRedraw());
  EXPECT_FALSE(panel.state->GetSelectionNeedsUpdating());
}

TEST(MadeVisible, AfterAHighlightChange_RefreshesTheHighlightsAndKeepsTheFlag)
{
  Panel panel("root[a b]");
  const auto controller = panel.UseSelController();
  controller->highlighted = {panel.kernel["a"]};
  Hide(panel);
  controller->highlighted = {panel.kernel["b"]};
  panel.state->OnAssocHlightChanged(true, {}, {});

  Show(panel);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StartTreeUpdate()", "SetAssocHlight(a, on=false) -> false", "FinishTreeUpdate()",
                          "StartTreeUpdate()", "SetAssocHlight(b, on=true) -> false", "FinishTreeUpdate()"));
  EXPECT_TRUE(panel.state->GetAssocHlightsNeedsUpdating());
}

TEST(MadeVisible, AfterASelectionChange_TellsTheHostAndKeepsTheFlag)
{
  Panel panel("root");
  Hide(panel);
  panel.state->OnClearSelection();

  Show(panel);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("MadeVisible(true)"));
  EXPECT_TRUE(panel.state->GetSelectionNeedsUpdating());
}

TEST(MadeVisible, AfterASelectionChange_CatchesUpEachTimeUntilThePanelIsPopulated)
{
  Panel panel("root");
  Hide(panel);
  panel.state->OnClearSelection();
  Show(panel);
  ASSERT_THAT(panel.host.TakeCalls(), ElementsAre("MadeVisible(true)"));

  panel.state->MadeVisible(true);
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("MadeVisible(true)"));

  panel.state->PopulateTree(false);
  static_cast<void>(panel.host.TakeCalls());
  panel.state->MadeVisible(true);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST(MadeVisible, AfterASelectionChangeUnderAFilterThatShowsTheSelection_Populates)
{
  Panel panel("root");
  Hide(panel);
  panel.state->filter.dynamicUpdate = true;
  panel.state->filter.filteringSel = true;
  panel.state->OnEndUpdate();
  ASSERT_TRUE(panel.state->GetSelectionNeedsUpdating());

  Show(panel);

  EXPECT_THAT(panel.host.Calls(), Contains("StoreExpandedAndFirstVisibleBeforePopulate(false)"));
  EXPECT_THAT(panel.host.Calls(), Contains("ContentHasChanged()"));
  EXPECT_THAT(panel.host.Calls(), Not(Contains("MadeVisible(true)")));
}

TEST(MadeVisible, AfterASelectionChangeUnderAStaticSelectionFilter_OnlyTellsTheHost)
{
  Panel panel("root");
  Hide(panel);
  panel.state->filter.filteringSel = true;
  panel.state->OnClearSelection();

  Show(panel);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("MadeVisible(true)"));
}

TEST(MadeVisible, DoesNotAskWhetherThePanelIsVisible)
{
  Panel panel("root");
  Hide(panel);
  panel.state->OnClearSelection();
  static_cast<void>(panel.host.TakeCalls());

  panel.state->MadeVisible(true);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("MadeVisible(true)"));
}

}  // namespace
