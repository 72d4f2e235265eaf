#include "Panel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <thread>

#include "PanelStage.h"

namespace {

class PanelTest : public testing::Test {
protected:
  std::unique_ptr<Panel> Open(const FilterSettings& filter = {}, bool trace = false)
  {
    Options options;
    options.style.ascii = true;
    options.filter = filter;
    options.trace = trace;
    return std::make_unique<Panel>(stage.GetWorld(), stage.stage, options);
  }
  /// It is held, and looks for "bolt".
  std::unique_ptr<Panel> OpenWithAFilterAtWork()
  {
    auto panel = Open();
    panel->HoldFilters(true);
    panel->SetFilter({.text = "bolt"});
    EXPECT_TRUE(panel->Settle());
    return panel;
  }

  PanelStage stage;
};

TEST_F(PanelTest, FilterOfTheOptions_IsThereOnceThePanelHasSettled)
{
  const auto panel = Open({.text = "bolt"});
  EXPECT_TRUE(panel->IsFiltering());

  EXPECT_TRUE(panel->Settle());

  EXPECT_FALSE(panel->IsFiltering());
  EXPECT_EQ(PanelStage::TextOf(*panel),
            "pump\n"
            "`- set\n"
            "   `- bolt\n");
}

TEST_F(PanelTest, ShapesOfTheScene_AreLoadedInOneWaveOnceThePanelHasSettled)
{
  const auto load = [](memkernel::LoadContext&) { return zelk::ShapeDataLoaded; };
  const auto gear = stage.AddPart("gear", load);
  const auto wheel = stage.AddPart("wheel", load);
  const auto panel = Open({}, true);
  EXPECT_TRUE(panel->IsLoading());
  static_cast<void>(panel->TakeTrace());

  EXPECT_TRUE(panel->Settle());

  EXPECT_FALSE(panel->IsLoading());
  const std::string trace = panel->TakeTrace();
  EXPECT_EQ(trace.find("UpdateVisAndTypeIconChanges"), 0U);
  EXPECT_EQ(std::count(trace.begin(), trace.end(), '\n'), 1);
  EXPECT_NE(trace.find("gear: hidden -> visible"), std::string::npos) << trace;
  EXPECT_NE(trace.find("wheel: hidden -> visible"), std::string::npos) << trace;
}

TEST_F(PanelTest, FilterOfTheOptions_WaitsForTheShapesAndSeesWhichHaveFailed)
{
  stage.AddPart("gear", [](memkernel::LoadContext&) { return zelk::ShapeDataFailed; });

  const auto panel = Open({.issues = true});
  EXPECT_FALSE(panel->IsFiltering());
  EXPECT_TRUE(panel->Settle());

  EXPECT_EQ(panel->GetFilter(), FilterSettings{.issues = true});
  EXPECT_EQ(PanelStage::TextOf(*panel),
            "pump\n"
            "`- gear\n");
}

TEST_F(PanelTest, End_WhileShapesAreLoaded_LeavesThemToTheEndOfTheWorld)
{
  stage.AddPart("gear", [](memkernel::LoadContext& context) {
    while (!context.IsCanceled()) {
      std::this_thread::yield();
    }
    return zelk::ShapeDataNone;
  });
  auto panel = Open();

  panel.reset();

  EXPECT_EQ(stage.GetWorld()->GetMemLoader().GetLoadCount(), 1U);
}

TEST_F(PanelTest, SceneOfTheView_IsWhatAFilterForTheVisibleLooksAt)
{
  stage.stage.GetScene(1)->SetVisible(stage.stage.GetScene(1)->FindShapeInstance(stage.bolt.Get()), false);

  const auto panel = Open({.hidden = true});
  EXPECT_TRUE(panel->Settle());

  EXPECT_EQ(PanelStage::TextOf(*panel),
            "pump\n"
            "`- set\n"
            "   `- bolt\n");
}

TEST_F(PanelTest, SortAlone_AsksForNoPopulation)
{
  const auto panel = Open({}, true);
  EXPECT_TRUE(panel->Settle());
  EXPECT_NE(panel->TakeTrace(), "");

  panel->SetFilter({.sort = "Name"});

  EXPECT_TRUE(panel->Settle());
  EXPECT_EQ(panel->TakeTrace().find("ClearTree"), std::string::npos);
  EXPECT_EQ(panel->GetFilter().sort, "Name");
}

TEST_F(PanelTest, HeldFilter_IsStillAtWorkWhenThePanelHasSettled)
{
  const auto panel = Open();
  panel->HoldFilters(true);
  panel->SetFilter({.text = "bolt"});

  EXPECT_TRUE(panel->Settle());

  EXPECT_TRUE(panel->IsFiltering());
  EXPECT_EQ(PanelStage::TextOf(*panel), "(the filter is at work)\n");

  panel->HoldFilters(false);
  EXPECT_TRUE(panel->Settle());
  EXPECT_FALSE(panel->IsFiltering());
}

TEST_F(PanelTest, EditWhileAFilterReads_EndsItAndFiltersAgain)
{
  const auto panel = OpenWithAFilterAtWork();

  EXPECT_TRUE(stage.GetTree().Rename(stage.frame, "bolted frame"));
  panel->CatchUp();
  EXPECT_TRUE(panel->IsFiltering());
  panel->HoldFilters(false);
  EXPECT_TRUE(panel->Settle());

  EXPECT_EQ(PanelStage::TextOf(*panel),
            "pump\n"
            "|- set\n"
            "|  `- bolt\n"
            "`- bolted frame\n");
}

TEST_F(PanelTest, CatchUp_WithoutAnEdit_DoesNothing)
{
  const auto panel = Open({.text = "bolt"}, true);
  EXPECT_TRUE(panel->Settle());
  EXPECT_TRUE(stage.GetTree().Rename(stage.bolt, "bolt 2"));
  EXPECT_NE(panel->TakeTrace(), "");

  panel->CatchUp();

  EXPECT_EQ(panel->TakeTrace(), "");
}

TEST_F(PanelTest, CancelledFilter_CanBeOpened)
{
  const auto panel = OpenWithAFilterAtWork();
  EXPECT_TRUE(panel->CancelFilter());
  EXPECT_TRUE(panel->Settle());
  EXPECT_EQ(panel->GetRowCount(), 1U);

  EXPECT_EQ(panel->Expand(*stage.pump), Panel::Expansion::Done);
  EXPECT_EQ(panel->GetRowCount(), 5U);
  EXPECT_FALSE(panel->CancelFilter());
}

TEST_F(PanelTest, WhatCannotBeOpened_IsToldFromWhatCan)
{
  const auto panel = OpenWithAFilterAtWork();
  EXPECT_EQ(panel->Expand(*stage.pump), Panel::Expansion::FilterAtWork);

  panel->HoldFilters(false);
  EXPECT_TRUE(panel->Settle());

  EXPECT_EQ(panel->Expand(*stage.set), Panel::Expansion::NothingLeftOut);
  EXPECT_EQ(panel->Expand(*stage.bolt), Panel::Expansion::NothingLeftOut);
  EXPECT_EQ(panel->Expand(*stage.frame), Panel::Expansion::NoRow);
}

TEST_F(PanelTest, FilterSwitchedOffAtWork_LeavesNothingOfItsResult)
{
  const auto panel = OpenWithAFilterAtWork();

  panel->SetFilter({});
  EXPECT_TRUE(panel->Settle());

  EXPECT_FALSE(panel->IsFiltering());
  EXPECT_EQ(PanelStage::TextOf(*panel), PanelStage::s_everything);
}

TEST_F(PanelTest, End_WhileAFilterIsHeld_WaitsForNobody)
{
  auto panel = Open();
  panel->HoldFilters(true);
  panel->SetFilter({.text = "bolt"});
  EXPECT_TRUE(panel->Settle());

  panel.reset();

  EXPECT_TRUE(stage.GetTree().Rename(stage.frame, "beam"));
}

}  // namespace
