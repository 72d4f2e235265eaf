#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "Panel.h"
#include "PanelStage.h"

namespace {

using guitree::WorldTreeState;
using structure_utils::TreeResultsList;

/// What a panel shows besides its filter: lists, the two switches, types of views.
class PanelDisplayTest : public testing::Test {
protected:
  std::unique_ptr<Panel> Open(const FilterSettings& filter = {}, bool noBodies = false, bool collapse = false)
  {
    Options options;
    options.style.ascii = true;
    options.filter = filter;
    options.noBodies = noBodies;
    options.collapse = collapse;
    options.check = true;
    auto panel = std::make_unique<Panel>(stage.GetWorld(), stage.stage, options);
    EXPECT_TRUE(panel->Settle());
    return panel;
  }
  static std::string Settled(Panel& panel)
  {
    EXPECT_TRUE(panel.Settle());
    EXPECT_TRUE(panel.Check());
    return PanelStage::TextOf(panel);
  }
  /// The same product once more, and a body, below the set.
  void AddABoltAndABody()
  {
    memkernel::Tree& tree = stage.GetTree();
    tree.AddChild(stage.set, stage.bolt->GetProduct());
    tree.AddChild(stage.set, tree.CreateProduct({.name = "core", .flags = memkernel::InstanceBody}));
  }

  /// What is left of that once equal siblings are one.
  static constexpr const char* s_collapsed =
      "pump\n"
      "|- set\n"
      "|  |- bolt\n"
      "|  |- nut\n"
      "|  `- core\n"
      "`- frame\n";

  PanelStage stage;
};

TEST_F(PanelDisplayTest, List_HasNoRowForWhatIsAboveAMatch)
{
  const auto panel = Open({.text = "t", .list = true});

  EXPECT_EQ(PanelStage::TextOf(*panel),
            "pump\n"
            "|- bolt\n"
            "|- nut\n"
            "`- set\n");
}

TEST_F(PanelDisplayTest, List_WithoutAMatch_IsTheRootAndALineThatSaysSo)
{
  const auto panel = Open({.text = "washer", .list = true});

  EXPECT_EQ(PanelStage::TextOf(*panel),
            "pump\n"
            "(no match)\n");
}

TEST_F(PanelDisplayTest, List_LosesTheRowsOfWhatLeavesTheTreeWithItsAssembly)
{
  const auto panel = Open({.text = "b*", .list = true});
  EXPECT_EQ(Settled(*panel),
            "pump\n"
            "`- bolt\n");

  stage.GetTree().Remove(stage.set);

  EXPECT_EQ(Settled(*panel),
            "pump\n"
            "(no match)\n");
}

TEST_F(PanelDisplayTest, CancelledList_HasNothingToOpen)
{
  const auto panel = Open();
  panel->HoldFilters(true);
  panel->SetFilter({.text = "bolt", .list = true});
  EXPECT_TRUE(panel->Settle());

  EXPECT_TRUE(panel->CancelFilter());

  EXPECT_EQ(Settled(*panel).substr(0, 5), "pump\n");
  EXPECT_EQ(panel->Expand(*stage.pump), Panel::Expansion::NothingLeftOut);
}

TEST_F(PanelDisplayTest, Switches_ArePutBackWhenThePanelEnds)
{
  {
    const auto panel = Open({}, true, true);
    EXPECT_FALSE(WorldTreeState::IsShowingBodies());
    EXPECT_TRUE(WorldTreeState::IsCollapsingInstances());
  }

  EXPECT_TRUE(WorldTreeState::IsShowingBodies());
  EXPECT_FALSE(WorldTreeState::IsCollapsingInstances());
}

TEST_F(PanelDisplayTest, SwitchesOfTheOptions_AreThereAtTheStart)
{
  AddABoltAndABody();

  const auto panel = Open({}, true, true);

  EXPECT_EQ(PanelStage::TextOf(*panel), PanelStage::s_everything);
}

TEST_F(PanelDisplayTest, OrderOfTheOptions_IsThatOfACollapsedPanel)
{
  AddABoltAndABody();

  const auto panel = Open({.sort = "Name", .descending = true}, true, true);

  EXPECT_EQ(PanelStage::TextOf(*panel),
            "pump\n"
            "|- set\n"
            "|  |- nut\n"
            "|  `- bolt\n"
            "`- frame\n");
}

TEST_F(PanelDisplayTest, ListOfTheOptions_IsThatOfACollapsedPanel)
{
  AddABoltAndABody();

  const auto panel = Open({.list = true}, true, true);

  EXPECT_EQ(PanelStage::TextOf(*panel),
            "pump\n"
            "|- bolt\n"
            "|- frame\n"
            "|- nut\n"
            "`- set\n");
}

TEST_F(PanelDisplayTest, BodiesAndCollapsing_GoAndComeBack)
{
  AddABoltAndABody();
  const auto panel = Open();
  const std::string everything = PanelStage::TextOf(*panel);
  EXPECT_EQ(everything,
            "pump\n"
            "|- set\n"
            "|  |- bolt\n"
            "|  |- nut\n"
            "|  |- bolt\n"
            "|  `- core\n"
            "`- frame\n");

  panel->SetShowingBodies(false);
  EXPECT_EQ(Settled(*panel),
            "pump\n"
            "|- set\n"
            "|  |- bolt\n"
            "|  |- nut\n"
            "|  `- bolt\n"
            "`- frame\n");

  panel->SetCollapsing(true);
  panel->SetShowingBodies(true);
  EXPECT_EQ(Settled(*panel), s_collapsed);

  panel->SetCollapsing(false);
  EXPECT_EQ(Settled(*panel), everything);
}

TEST_F(PanelDisplayTest, CollapsingSwitchedOffAtWork_LeavesNothingOfItsResult)
{
  AddABoltAndABody();
  const auto panel = Open();
  const std::string everything = PanelStage::TextOf(*panel);
  panel->HoldFilters(true);
  panel->SetCollapsing(true);
  EXPECT_TRUE(panel->Settle());
  ASSERT_TRUE(panel->IsFiltering());

  panel->SetCollapsing(false);

  EXPECT_EQ(Settled(*panel), everything);
  EXPECT_FALSE(panel->IsFiltering());
}

TEST_F(PanelDisplayTest, FilterUnderCollapsing_IsSwitchedOffToWhatIsCollapsed)
{
  AddABoltAndABody();
  const auto panel = Open({.text = "bolt"}, false, true);

  panel->SetFilter({});

  EXPECT_EQ(Settled(*panel), s_collapsed);
}

TEST_F(PanelDisplayTest, Results_AreLookedAtWhenTheFilterRunsNextUnlessItFollowsThem)
{
  const auto frameAlone = du::MakeSmart<TreeResultsList>(std::set<du::SmartPtr<zelk::BaseInstance>>{stage.frame});
  const auto panel = Open({.results = true});
  EXPECT_EQ(PanelStage::TextOf(*panel),
            "pump\n"
            "(no match)\n");

  panel->SetResults(frameAlone);
  EXPECT_EQ(Settled(*panel),
            "pump\n"
            "(no match)\n");

  panel->SetFilter({.results = true, .follow = true});
  EXPECT_EQ(Settled(*panel),
            "pump\n"
            "`- frame\n");

  panel->SetResults({});
  EXPECT_EQ(Settled(*panel),
            "pump\n"
            "(no match)\n");
}

TEST_F(PanelDisplayTest, EachTypeOfView_HasItsFilter)
{
  const auto panel = Open({.text = "frame"});
  const std::string frameAlone = PanelStage::TextOf(*panel);
  stage.stage.AddSceneOfAll();
  panel->SetViewType(stage.stage.GetView(2), "cut");

  stage.stage.ActivateView(2);
  EXPECT_EQ(panel->GetFilter(), FilterSettings{});
  EXPECT_EQ(panel->GetRowCount(), 5U);
  panel->SetFilter({.text = "nut", .list = true});
  EXPECT_EQ(Settled(*panel),
            "pump\n"
            "`- nut\n");

  stage.stage.ActivateView(1);
  EXPECT_EQ(Settled(*panel), frameAlone);
  EXPECT_EQ(panel->GetFilter(), FilterSettings{.text = "frame"});
}

TEST_F(PanelDisplayTest, TypeOfTheCurrentView_BringsItsFilterAtOnce)
{
  const auto panel = Open({.text = "frame"});
  const std::string frameAlone = PanelStage::TextOf(*panel);

  panel->SetViewType(stage.stage.GetView(1), "cut");
  EXPECT_TRUE(panel->Settle());
  EXPECT_EQ(panel->GetRowCount(), 5U);

  panel->SetViewType(stage.stage.GetView(1), "Unknown");
  EXPECT_EQ(Settled(*panel), frameAlone);
}

TEST_F(PanelDisplayTest, ViewWithoutAFilter_EndsTheOneAtWorkBeforeItShowsEverything)
{
  const auto panel = Open();
  stage.stage.AddSceneOfAll();
  panel->SetViewType(stage.stage.GetView(2), "cut");
  panel->HoldFilters(true);
  panel->SetFilter({.text = "bolt"});
  EXPECT_TRUE(panel->Settle());

  panel->PrepareView(stage.stage.GetView(2));
  EXPECT_FALSE(panel->IsFiltering());
  stage.stage.ActivateView(2);

  EXPECT_TRUE(panel->Settle());
  EXPECT_EQ(panel->GetRowCount(), 5U);
}

TEST_F(PanelDisplayTest, NewTypeOfView_KnowsTheSwitches)
{
  AddABoltAndABody();
  const auto panel = Open({}, true, true);
  const std::string before = PanelStage::TextOf(*panel);

  panel->SetViewType(stage.stage.GetView(1), "cut");

  EXPECT_EQ(Settled(*panel), before);
}

}  // namespace
