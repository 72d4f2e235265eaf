// What a script does to the panel itself.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "ScriptPlayerStage.h"

namespace {

using ScriptPlayerPanelTest = ScriptPlayerStage;

TEST_F(ScriptPlayerPanelTest, Panel_GoesAndComesBack)
{
  Play("panel hide");
  Play("panel show");

  EXPECT_EQ(panel.calls, (std::vector<std::string>{"hide", "show"}));
}

TEST_F(ScriptPlayerPanelTest, Switches_AreThePanels)
{
  for (const char* line : {"bodies off", "bodies on", "collapse on", "collapse off"}) {
    Play(line);
  }

  EXPECT_EQ(panel.calls, (std::vector<std::string>{"no bodies", "bodies", "collapse", "no collapse"}));
}

TEST_F(ScriptPlayerPanelTest, ViewType_IsGivenToTheViewOfTheNumber)
{
  Play("scene add");

  Play("view type 1 cut");

  EXPECT_EQ(panel.typedView, stage.GetView(1));
  EXPECT_EQ(panel.calls, std::vector<std::string>{"type cut"});
  EXPECT_EQ(FaultOf("view type 9 cut"), "there is no view 9");
}

TEST_F(ScriptPlayerPanelTest, PanelIsPrepared_ForEachChangeOfTheCurrentView)
{
  Play("scene add");
  Play("view 2");
  Play("view remove 1");
  Play("view none");
  Play("view 2");
  Play("view remove 2");

  EXPECT_EQ(panel.calls, (std::vector<std::string>{"view", "no view", "view", "no view"}));
}

TEST_F(ScriptPlayerPanelTest, Results_AreTheInstancesThatAreNamed)
{
  Play("results frame gear");
  ASSERT_TRUE(panel.results);
  EXPECT_EQ(panel.results->GetInstances(), (std::set<du::SmartPtr<zelk::BaseInstance>>{Find("frame"), Find("gear")}));

  Play("results off");
  EXPECT_FALSE(panel.results);
}

TEST_F(ScriptPlayerPanelTest, Filter_ReplacesTheOneBeforeAndLeavesTheOrder)
{
  Play("sort Name descending");
  Play("filter bolt --parts");
  EXPECT_EQ(panel.filter, (FilterSettings{.text = "bolt", .parts = true, .sort = "Name", .descending = true}));

  Play("filter --selected --sort Layer");
  EXPECT_EQ(panel.filter, (FilterSettings{.selected = true, .sort = "Layer"}));

  Play("filter off");
  EXPECT_EQ(panel.filter, (FilterSettings{.sort = "Layer"}));
}

TEST_F(ScriptPlayerPanelTest, FilterWithNothingToFilterBy_IsAFaultUnlessEqualSiblingsAreCollapsed)
{
  EXPECT_EQ(FaultOf("filter --list"), "--list needs something to filter by, such as a text");
  EXPECT_EQ(panel.filter, FilterSettings{});

  panel.isCollapsing = true;
  Play("filter --list --sort Layer");

  EXPECT_EQ(panel.filter, (FilterSettings{.list = true, .sort = "Layer"}));
}

TEST_F(ScriptPlayerPanelTest, Sort_LeavesTheFilter)
{
  Play("filter bolt");
  Play("sort Name");
  EXPECT_EQ(panel.filter, (FilterSettings{.text = "bolt", .sort = "Name"}));

  Play("sort off");
  EXPECT_EQ(panel.filter, (FilterSettings{.text = "bolt"}));
}

TEST_F(ScriptPlayerPanelTest, FilterAtWork_IsHeldAndCancelled)
{
  panel.isFilterAtWork = true;

  Play("filter hold");
  Play("filter cancel");
  Play("filter resume");

  EXPECT_EQ(panel.calls, (std::vector<std::string>{"hold", "cancel", "resume"}));
}

TEST_F(ScriptPlayerPanelTest, CancelWithoutAFilter_IsAFault)
{
  EXPECT_EQ(FaultOf("filter cancel"), "no filter is at work");
}

TEST_F(ScriptPlayerPanelTest, Expand_OpensRowByRow)
{
  Play("expand pump set");

  EXPECT_EQ(panel.calls, (std::vector<std::string>{"expand pump", "expand set"}));
}

TEST_F(ScriptPlayerPanelTest, Expand_TellsWhyNothingCanBeOpened)
{
  using Expansion = script::PanelControl::Expansion;

  panel.expansion = Expansion::FilterAtWork;
  EXPECT_EQ(FaultOf("expand pump/set"), "a filter is at work: nothing can be opened before it has ended");

  panel.expansion = Expansion::NoRow;
  EXPECT_EQ(FaultOf("expand pump/set"), "pump/set has no row");

  panel.expansion = Expansion::NothingLeftOut;
  EXPECT_EQ(FaultOf("expand pump/set"), "nothing is left out below pump/set");
}

}  // namespace
