#include <gmock/gmock.h>

#include <QSignalSpy>

#include "PanelStage.h"

namespace qthosttest {
namespace {

using qthost::GuiTreeItemModel;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto s_all = "root[plate[bolt nut] rod]";

TEST(SightOfAPanel, PanelThatWasNeverShown_HasNoRowsUntilItIs)
{
  PanelStage stage(s_all);
  stage.Initialise();
  stage.ShowScene();
  ASSERT_EQ(stage.GetText(), "");

  stage.panel.show();

  EXPECT_EQ(stage.GetText(), s_all);
  EXPECT_EQ(stage.GetMessage(), "");
}

TEST(SightOfAPanel, FilterOfAHiddenPanel_WaitsUntilItIsShown)
{
  PanelStage stage(s_all);
  stage.Open();
  stage.panel.hide();
  qthost::FilterSettings filter;
  filter.text = "nut";

  stage.panel.SetFilter(filter);
  stage.Settle();
  const bool wasBusy = stage.model.IsCalculating();
  stage.panel.show();
  stage.WaitForFilter();

  EXPECT_FALSE(wasBusy);
  EXPECT_EQ(stage.GetText(), "root[plate[nut]]");
}

TEST(SightOfAPanel, SelectionOfAHiddenPanel_IsCaughtUpOn)
{
  PanelStage stage(s_all);
  stage.Open();
  stage.panel.hide();
  stage.state->GetSelController(false)->SetItems({stage["nut"]});
  ASSERT_THAT(stage.GetView().selectionModel()->selectedRows(), IsEmpty());

  stage.panel.show();

  EXPECT_THAT(stage.GetView().selectionModel()->selectedRows(), ElementsAre(stage.FindIndex("nut")));
}

TEST(SightOfAPanel, ClosedPanel_CatchesUpWithOnePopulation)
{
  PanelStage stage(s_all);
  stage.Open();
  stage.panel.close();
  for (int i = 0; i < 300; ++i) {
    stage.kernel.Add("rod", "part" + std::to_string(i));
  }
  stage.state->PopulateTree(true);
  const QSignalSpy populations(&stage.model, &GuiTreeItemModel::Populated);

  stage.panel.show();

  EXPECT_EQ(populations.count(), 1);
  EXPECT_EQ(stage.model.GetRowCount(), 305U);
}

TEST(SightOfAPanel, EmptyTree_SaysThatThereIsNothing)
{
  PanelStage stage("");

  stage.Open();

  EXPECT_EQ(stage.GetMessage(), "There is nothing to show.");
  EXPECT_EQ(stage.GetStatus(), "0 rows");
}

TEST(SightOfAPanel, PanelWithoutAGuiTree_CanBeUsed)
{
  PanelStage stage(s_all);
  stage.Open();
  stage.Close();
  stage.model.SetPanel(nullptr);

  stage.Type("nut");
  stage.Choose("As a list");
  stage.panel.FilterAgain();
  stage.panel.GetAction(qthost::GuiTreePanel::Command::SelectProduct).trigger();

  EXPECT_EQ(stage.panel.GetFilter().text, "nut");
  EXPECT_EQ(stage.GetText(), "");
}

TEST(SightOfAPanel, ModelThatOutlivesThePanel_GoesOn)
{
  Stage stage(s_all);
  {
    qthost::GuiTreePanel panel(stage.model);
    panel.show();
    stage.Initialise();
  }
  stage.model.SetInSight(true);

  stage.Filter("nut");

  EXPECT_EQ(stage.GetText(), "root[plate[nut]]");
  EXPECT_FALSE(stage.FindIndex("nut").data(Qt::DecorationRole).value<QIcon>().isNull());
}

}  // namespace
}  // namespace qthosttest
