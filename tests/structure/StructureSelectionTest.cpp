// The selection in a structure panel: what rows it finds, and what a filter that shows it does about its changes.

#include <gmock/gmock.h>

#include "StructureStage.h"

namespace {

using structuretest::StructureStage;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using Objects = std::vector<du::SmartPtr<zelk::Object>>;

std::vector<std::string> FindRows(const StructureStage& stage, const Objects& items)
{
  std::set<zelk::BaseInstance*> rows;
  stage.state->GetBaseInstFromSelItems(items, rows);
  std::vector<std::string> names;
  for (const zelk::BaseInstance* row : rows) {
    names.emplace_back(row->GetObjectName());
  }
  return names;
}

void ReportChanges(const StructureStage& stage)
{
  Objects items{stage.kernel["bolt"]};
  stage.state->OnInsertItems(items);
  stage.state->OnRemoveItems(items);
  stage.state->OnClearSelection();
}

TEST(StructureSelection, UnderAFilter_FindsTheRowsOfTheResultAlone)
{
  StructureStage stage;
  const Objects items{stage.kernel["bolt"], stage.kernel["nut2"], stage.kernel["frame"]};
  stage.Show("nut");
  EXPECT_THAT(FindRows(stage, items), UnorderedElementsAre("nut2", "frame"));

  stage.ShowAsList("nut");
  EXPECT_THAT(FindRows(stage, items), ElementsAre("nut2"));

  stage.Show("screw");
  EXPECT_THAT(FindRows(stage, items), IsEmpty());
}

TEST(StructureSelection, WhileAFilterIsAtWork_FindsNoRow)
{
  StructureStage stage;
  stage.state->PopulateTree(false);
  stage.GetFilter().SetText("nut");
  stage.state->PopulateTree(false);

  EXPECT_THAT(FindRows(stage, {stage.kernel["nut1"]}), IsEmpty());
}

TEST(StructureSelection, UnderAFilterThatShowsIt_AChangeOnlyAsksForTheFilter)
{
  for (const bool isVisible : {true, false}) {
    StructureStage stage;
    stage.GetFilter().SetDynamicUpdate(true);
    stage.GetFilter().SetSelectedOnly(true);
    stage.host.answers.isTreeVisibleInUI = isVisible;
    static_cast<void>(stage.host.TakeCalls());

    ReportChanges(stage);

    EXPECT_THAT(stage.host.TakeCalls(), Each(StartsWith("GetViewTypeString")));
    EXPECT_FALSE(stage.state->GetSelectionNeedsUpdating());
  }
}

TEST(StructureSelection, OnAHiddenPanelUnderAFilterThatShowsIt_TheJobStartsWhenThePanelIsShown)
{
  StructureStage stage;
  stage.GetFilter().SetDynamicUpdate(true);
  stage.GetFilter().SetSelectedOnly(true);
  stage.host.answers.isTreeVisibleInUI = false;
  stage.state->OnEndUpdate();
  EXPECT_THAT(stage.world->pool.waiting, IsEmpty());

  stage.host.answers.isTreeVisibleInUI = true;
  stage.state->MadeVisible(true);

  EXPECT_THAT(stage.state->populations, ElementsAre(false));
  EXPECT_EQ(stage.world->pool.waiting.size(), 1U);
}

TEST(StructureSelection, UnderAFilterOnVisibility_ChangesGoToTheHostAndTheEndPopulates)
{
  StructureStage stage;
  stage.GetFilter().SetDynamicUpdate(true);
  stage.GetFilter().SetVisibility(zelremote::StructureFilterInfo::Visibility::Visible);
  static_cast<void>(stage.host.TakeCalls());

  ReportChanges(stage);
  EXPECT_THAT(stage.TakeCalls("SelectItems"), ElementsAre("SelectItems([bolt])"));
  EXPECT_THAT(stage.state->populations, IsEmpty());

  stage.state->OnEndUpdate();
  EXPECT_THAT(stage.state->populations, ElementsAre(true));
}

}  // namespace
