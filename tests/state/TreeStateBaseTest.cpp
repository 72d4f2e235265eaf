#include "guitree/TreeStateBase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testsupport::Panel;
using InstanceSet = std::set<du::SmartPtr<zelk::BaseInstance>>;

TEST(TreeStateBase, StartsWithNoFlagAndNothingShown)
{
  const Panel panel("root");

  EXPECT_FALSE(panel.state->IsBusy());
  EXPECT_FALSE(panel.state->GetSelectionNeedsUpdating());
  EXPECT_FALSE(panel.state->GetAssocHlightsNeedsUpdating());
  EXPECT_FALSE(panel.state->GetTreeNeedsRedraw());
  EXPECT_THAT(panel.state->GetNotFilteredSet(), IsEmpty());
  EXPECT_FALSE(panel.state->IsAssocHlight(panel.kernel["root"].Get()));
  EXPECT_EQ(&panel.state->GetGuiTree(), panel.gui.Get());
}

TEST(TreeStateBase, DefaultsSayWhatAPlainPanelNeeds)
{
  Panel panel("root[a]");
  guitree::TreeStateBase& state = *panel.state;
  int icon = 7;
  du::SmartPtr<zelk::View> view;

  state.OverrideActiveViewAfterChange(view);
  state.CheckAltPartNamePrefs();
  state.OnBeginUpdate();

  EXPECT_TRUE(state.GetDisplayRoot());
  EXPECT_EQ(state.CreateFilteredTree(), nullptr);
  EXPECT_FALSE(state.IsDoingFilterAsList());
  EXPECT_FALSE(state.UpdateSceneInfoLog_OnSceneRemoved(nullptr));
  EXPECT_FALSE(state.UpdateSceneInfoLog_OnShapeInstanceCreate(nullptr, nullptr));
  EXPECT_FALSE(state.UpdateSceneInfoLog_OnShapeInstanceRemove(nullptr, nullptr));
  EXPECT_FALSE(state.DoAdditionalUpdateIcons(panel.kernel["a"].Get(), nullptr, icon));
  EXPECT_EQ(icon, 7);
  EXPECT_TRUE(state.ShowLoadedNoLog(panel.kernel["a"].Get()));
  EXPECT_EQ(state.GetAdditionalFilterInfo(), nullptr);
  EXPECT_FALSE(state.TreeStateBase::IsInstHidden(panel.kernel["a"].Get()));
  EXPECT_TRUE(state.HasNoneHiddenChildren(panel.kernel["root"]));
  EXPECT_FALSE(state.HasNoneHiddenChildren(panel.kernel["a"]));
  EXPECT_EQ(view, nullptr);
  EXPECT_FALSE(state.GetNeedsUpdate(nullptr));
  EXPECT_TRUE(state.IsCompatibleShapeSceneType(nullptr));
  EXPECT_FALSE(state.IsTooltipsUpdateNeeded(nullptr));
  EXPECT_TRUE(state.IsCompatibleViewType(nullptr));
  EXPECT_FALSE(state.ReloadOnViewChange(nullptr));
  EXPECT_THAT(panel.host.Calls(), IsEmpty());
}

TEST(TreeStateBase, GetBaseRoot_IsNullWithoutATree)
{
  Panel panel("root[a]");

  EXPECT_EQ(panel.state->GetBaseRoot(), nullptr);

  panel.ShowTree();
  EXPECT_EQ(panel.state->GetBaseRoot(), panel.kernel["root"]);
}

TEST(TreeStateBase, IsFiltered_AsksTheFilterOfTheCurrentView)
{
  Panel panel("root");

  EXPECT_FALSE(panel.state->IsFiltered());

  panel.state->filter.isFiltering = true;
  EXPECT_TRUE(panel.state->IsFiltered());
}

TEST(TreeStateBase, WithoutScenesThereIsNoLog)
{
  Panel panel("root");

  EXPECT_EQ(panel.state->GetCurInfoLog(), nullptr);
  EXPECT_EQ(panel.state->GetLog(nullptr), nullptr);
}

TEST(TreeStateBase, CheckAndUpdateNodeNameAndType_ForAnInstanceThatIsNotShown_TellsNobody)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.state->hidden = {panel.kernel["a"].Get()};
  panel.state->PopulateTree(false);
  static_cast<void>(panel.host.TakeCalls());
  panel.host.answers.checkAndUpdateNodeNameAndType = true;

  EXPECT_FALSE(panel.state->CheckAndUpdateNodeNameAndType(panel.kernel["a"]));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST(TreeStateBase, CheckAndUpdateNodeNameAndType_AnswersWhatTheHostAnswers)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.state->PopulateTree(false);
  static_cast<void>(panel.host.TakeCalls());

  EXPECT_FALSE(panel.state->CheckAndUpdateNodeNameAndType(panel.kernel["a"]));
  panel.host.answers.checkAndUpdateNodeNameAndType = true;
  EXPECT_TRUE(panel.state->CheckAndUpdateNodeNameAndType(panel.kernel["a"]));

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("CheckAndUpdateNodeNameAndType(a) -> false", "CheckAndUpdateNodeNameAndType(a) -> true"));
}

TEST(TreeStateBase, Reset_ForgetsWhatIsShownAndKeepsHighlightsAndFlags)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.UseSelController()->highlighted = {panel.kernel["a"]};
  panel.state->PopulateTree(false);
  panel.host.answers.isTreeVisibleInUI = false;
  panel.state->OnClearSelection();
  panel.state->SetBusy(true);
  static_cast<void>(panel.host.TakeCalls());

  panel.state->Reset();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("Reset()", "UpdateTreeTable()"));
  EXPECT_FALSE(panel.state->IsBusy());
  EXPECT_THAT(panel.state->GetNotFilteredSet(), IsEmpty());
  EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
  EXPECT_TRUE(panel.state->GetSelectionNeedsUpdating());
}

TEST(TreeStateBase, Reset_WithoutAHost_StopsAfterItsOwnWork)
{
  Panel panel("root");
  panel.ShowTree();
  panel.state->PopulateTree(false);
  panel.state->SetBusy(true);
  panel.gui->SetGuiInterface(nullptr);

  panel.state->Reset();

  EXPECT_FALSE(panel.state->IsBusy());
  EXPECT_THAT(panel.state->GetNotFilteredSet(), IsEmpty());
}

TEST(TreeStateBase, GetSelectedComps_WithoutAController_LeavesTheSetAsItWas)
{
  Panel panel("root[a]");
  InstanceSet out{panel.kernel["a"]};

  panel.state->GetSelectedComps(out, false);
  panel.state->GetSelectedComps(out, true);

  EXPECT_THAT(out, ElementsAre(panel.kernel["a"]));
}

TEST(TreeStateBase, GetSelectedComps_WithoutDescendents_AnswersTheSelection)
{
  Panel panel("root[a[b] c]");
  panel.UseSelController()->selected = {panel.kernel["a"]};
  InstanceSet out;

  panel.state->GetSelectedComps(out, false);

  EXPECT_THAT(out, ElementsAre(panel.kernel["a"]));
}

TEST(TreeStateBase, GetSelectedComps_WithDescendents_AddsEverythingBelow)
{
  Panel panel("root[a[b[c]] d]");
  panel.UseSelController()->selected = {panel.kernel["a"], panel.kernel["b"]};
  InstanceSet out{panel.kernel["d"]};

  panel.state->GetSelectedComps(out, true);

  EXPECT_THAT(out, UnorderedElementsAre(panel.kernel["a"], panel.kernel["b"], panel.kernel["c"], panel.kernel["d"]));
}

TEST(TreeStateBase, ACopyKeepsFlagsAndRowsApart)
{
  Panel panel("root[a]");
  panel.ShowTree();
  panel.state->PopulateTree(false);
  panel.state->SetBusy(true);

  const auto copy = du::MakeSmart<testsupport::ScriptedTreeState>(*panel.state);
  panel.state->Reset();

  EXPECT_TRUE(copy->IsBusy());
  EXPECT_EQ(copy->GetNotFilteredSet().size(), 2u);
  EXPECT_EQ(&copy->GetGuiTree(), panel.gui.Get());
}

}  // namespace
