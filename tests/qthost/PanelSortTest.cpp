#include <gmock/gmock.h>

#include <QHeaderView>

#include "PanelStage.h"

namespace qthosttest {
namespace {

using qthost::FilterSettings;
using qthost::GuiTreeItemModel;

class SortOfAPanel : public testing::Test {
protected:
  void SetUp() override { stage.Open(); }
  std::string ClickHeader(int column)
  {
    const QHeaderView& header = *stage.GetView().header();
    const QPoint place(header.sectionViewportPosition(column) + header.sectionSize(column) / 2, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
    stage.WaitForFilter();
    return stage.GetText();
  }
  [[nodiscard]] int GetSortedColumn() const { return stage.GetView().header()->sortIndicatorSection(); }

  PanelStage stage{"root[rod plate[nut bolt] axle]"};
};

TEST_F(SortOfAPanel, ClicksOnTheNames_SortBothWaysAndBack)
{
  EXPECT_EQ(ClickHeader(GuiTreeItemModel::NameColumn), "root[axle plate[bolt nut] rod]");
  EXPECT_EQ(GetSortedColumn(), GuiTreeItemModel::NameColumn);
  EXPECT_EQ(ClickHeader(GuiTreeItemModel::NameColumn), "root[rod plate[nut bolt] axle]");
  EXPECT_FALSE(stage.panel.GetFilter().isAscending);
  EXPECT_EQ(ClickHeader(GuiTreeItemModel::NameColumn), "root[rod plate[nut bolt] axle]");
  EXPECT_EQ(stage.panel.GetFilter().sortColumn, du::DualSymbol());
  EXPECT_EQ(GetSortedColumn(), -1);
}

TEST_F(SortOfAPanel, SortedRows_StayExpandedAsTheyWere)
{
  stage.GetView().setExpanded(stage.FindIndex("plate"), false);

  ClickHeader(GuiTreeItemModel::NameColumn);

  EXPECT_THAT(stage.GetExpanded(), testing::ElementsAre("root"));
  EXPECT_EQ(stage.GetStatus(), "6 rows");
}

TEST_F(SortOfAPanel, ResultOfAFilter_IsSortedAsWell)
{
  ClickHeader(GuiTreeItemModel::NameColumn);

  stage.Type("l");
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[axle plate[bolt]]");
}

TEST_F(SortOfAPanel, ClickOnTheVisibleState_SortsNothing)
{
  ClickHeader(GuiTreeItemModel::NameColumn);

  EXPECT_EQ(ClickHeader(GuiTreeItemModel::VisibleColumn), "root[axle plate[bolt nut] rod]");
  EXPECT_EQ(GetSortedColumn(), GuiTreeItemModel::NameColumn);
}

TEST_F(SortOfAPanel, ClickOnAProperty_SortsByIt)
{
  stage.tree.SetProperty(stage["rod"], "Instance", "Layer", "b");
  stage.tree.SetProperty(stage["plate"], "Instance", "Layer", "c");
  stage.tree.SetProperty(stage["axle"], "Instance", "Layer", "a");
  stage.model.SetPropertyColumns({{du::Symbol::EMPTY, "Layer"}});

  EXPECT_EQ(ClickHeader(GuiTreeItemModel::FirstPropertyColumn), "root[axle rod plate[nut bolt]]");
  EXPECT_EQ(GetSortedColumn(), GuiTreeItemModel::FirstPropertyColumn);
}

TEST_F(SortOfAPanel, Menu_SortsWithoutAMouse)
{
  stage.Choose("Name", "sortMenu");
  stage.Choose("Descending", "sortMenu");
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[rod plate[nut bolt] axle]");
  EXPECT_EQ(GetSortedColumn(), GuiTreeItemModel::NameColumn);
  EXPECT_EQ(stage.GetView().header()->sortIndicatorOrder(), Qt::DescendingOrder);
  stage.Choose("Order of the assembly", "sortMenu");
  stage.WaitForFilter();
  EXPECT_EQ(GetSortedColumn(), -1);
}

TEST_F(SortOfAPanel, NewRowUnderASort_ComesToItsPlace)
{
  ClickHeader(GuiTreeItemModel::NameColumn);

  stage.kernel.Add("root", "cover");
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[axle cover plate[bolt nut] rod]");
}

TEST_F(SortOfAPanel, List_ShowsThatItIsByName)
{
  stage.Choose("As a list");
  stage.WaitForFilter();

  EXPECT_EQ(GetSortedColumn(), GuiTreeItemModel::NameColumn);
  EXPECT_EQ(ClickHeader(GuiTreeItemModel::NameColumn), "root[rod plate nut bolt axle]");
}

}  // namespace
}  // namespace qthosttest
