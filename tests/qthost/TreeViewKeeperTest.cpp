#include "qthost/TreeViewKeeper.h"

#include <gmock/gmock.h>

#include <QScrollBar>

#include "FilterHold.h"
#include "qthost/SelectionBinding.h"

namespace qthosttest {
namespace {

using qthost::TreeViewKeeper;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class TreeViewKeeperOfAView : public testing::Test {
protected:
  void SetUp() override
  {
    stage.Initialise();
    view.setUniformRowHeights(true);
    view.setModel(&stage.model);
    view.resize(300, 120);
    view.show();
    // The view owns it.
    keeper = std::make_unique<TreeViewKeeper>(view, stage.model).release();
  }
  [[nodiscard]] std::vector<std::string> GetExpanded() const
  {
    std::vector<std::string> names;
    stage.model.VisitBranches([&](const QModelIndex& index) {
      if (view.isExpanded(index)) {
        names.push_back(index.data().toString().toStdString());
      }
    });
    return names;
  }
  [[nodiscard]] std::string GetFirstVisible() const { return view.indexAt({0, 0}).data().toString().toStdString(); }
  static std::string MakeTree()
  {
    std::string text = "root[plate[bolt nut] frame[bar[pin]]";
    for (int i = 0; i < 100; ++i) {
      text += " part" + std::to_string(i);
    }
    return text + "]";
  }

  Stage stage{MakeTree()};
  QTreeView view;
  TreeViewKeeper* keeper = nullptr;
};

TEST_F(TreeViewKeeperOfAView, Population_LeavesExpandedWhatWas)
{
  view.setExpanded(stage.FindIndex("root"), true);
  view.setExpanded(stage.FindIndex("frame"), true);

  stage.state->PopulateTree(true);

  EXPECT_THAT(GetExpanded(), ElementsAre("root", "frame"));
}

TEST_F(TreeViewKeeperOfAView, ExpandedRowBelowACollapsedOne_IsKeptAsWell)
{
  view.setExpanded(stage.FindIndex("bar"), true);

  stage.state->PopulateTree(true);

  EXPECT_THAT(GetExpanded(), ElementsAre("bar"));
}

TEST_F(TreeViewKeeperOfAView, RowThatWasCollapsed_StaysCollapsed)
{
  view.setExpanded(stage.FindIndex("root"), true);
  stage.state->PopulateTree(true);
  view.setExpanded(stage.FindIndex("root"), false);

  stage.state->PopulateTree(true);

  EXPECT_THAT(GetExpanded(), testing::IsEmpty());
}

TEST_F(TreeViewKeeperOfAView, WhatAFilterLeavesOut_ComesBackExpanded)
{
  view.setExpanded(stage.FindIndex("root"), true);
  view.setExpanded(stage.FindIndex("frame"), true);
  stage.Filter("bolt");

  stage.EndFilter();

  EXPECT_THAT(GetExpanded(), ElementsAre("root", "frame"));
}

TEST_F(TreeViewKeeperOfAView, ResultThatIsAllExpanded_LeavesTheExpansionThatWasBefore)
{
  view.setExpanded(stage.FindIndex("root"), true);
  keeper->SetExpandsAll(true);
  stage.Filter("bolt");
  const std::vector<std::string> filtered = GetExpanded();

  keeper->SetExpandsAll(false);
  stage.EndFilter();

  EXPECT_THAT(filtered, ElementsAre("root", "plate"));
  EXPECT_THAT(GetExpanded(), ElementsAre("root"));
}

TEST_F(TreeViewKeeperOfAView, ResultThatIsAllExpanded_LeavesItsLeavesClosed)
{
  keeper->SetExpandsAll(true);

  stage.Filter("bolt");

  EXPECT_FALSE(view.isExpanded(stage.FindIndex("bolt")));
}

TEST_F(TreeViewKeeperOfAView, Population_LeavesTheViewWhereItHadScrolledTo)
{
  view.expandAll();
  view.scrollTo(stage.FindIndex("part50"), QAbstractItemView::PositionAtTop);
  const std::string before = GetFirstVisible();

  stage.state->PopulateTree(true);

  EXPECT_EQ(before, "part50");
  EXPECT_EQ(GetFirstVisible(), "part50");
}

TEST_F(TreeViewKeeperOfAView, Population_KeepsTheCurrentRowAndTheSelection)
{
  const qthost::SelectionBinding binding(view, stage.model);
  view.setCurrentIndex(stage.FindIndex("nut"));

  stage.state->PopulateTree(true);

  EXPECT_EQ(view.currentIndex(), stage.FindIndex("nut"));
  EXPECT_TRUE(view.selectionModel()->isSelected(stage.FindIndex("nut")));
}

TEST_F(TreeViewKeeperOfAView, RemovedRow_LeavesTheRestAsItIs)
{
  view.expandAll();
  view.setCurrentIndex(stage.FindIndex("part60"));
  view.scrollTo(stage.FindIndex("part50"), QAbstractItemView::PositionAtTop);

  stage.Remove("plate");
  stage.Settle();

  EXPECT_THAT(GetExpanded(), ElementsAre("root", "frame", "bar"));
  EXPECT_EQ(view.currentIndex(), stage.FindIndex("part60"));
  EXPECT_EQ(GetFirstVisible(), "part50");
}

TEST_F(TreeViewKeeperOfAView, BatchOfEdits_KeepsTheViewWithoutARebuild)
{
  view.expandAll();
  view.setCurrentIndex(stage.FindIndex("part60"));
  view.scrollTo(stage.FindIndex("part50"), QAbstractItemView::PositionAtTop);
  const int before = view.verticalScrollBar()->value();
  {
    const memkernel::TreeBatch batch(stage.tree);
    stage.kernel.Add("root", "wheel");
    stage.kernel.Add("wheel", "tyre");
    stage.kernel.Add("root", "axle");
  }
  stage.Settle();

  EXPECT_THAT(GetExpanded(), ElementsAre("root", "plate", "frame", "bar"));
  EXPECT_EQ(view.currentIndex(), stage.FindIndex("part60"));
  EXPECT_EQ(view.verticalScrollBar()->value(), before);
}

TEST_F(TreeViewKeeperOfAView, Forget_LeavesThePopulationCollapsed)
{
  view.expandAll();
  stage.model.StartTreeUpdate();
  stage.model.ClearTree();
  stage.model.FinishTreeUpdate();
  keeper->Forget();

  stage.state->PopulateTree(true);

  EXPECT_THAT(GetExpanded(), testing::IsEmpty());
}

// A shape that is held would be all the memory of a file that was closed.
TEST_F(TreeViewKeeperOfAView, WhatHasLeftTheTree_IsHeldNoLonger)
{
  auto token = std::make_shared<int>();
  const std::weak_ptr<int> shape = token;
  auto assembly = stage.tree.AddChild(stage["root"], stage.tree.CreateProduct({.name = "motor"}));
  stage.tree.AddChild(
      assembly,
      stage.tree.CreateProduct({
          .name = "rotor",
          .shape = du::MakeSmart<memkernel::Shape>([token](memkernel::LoadContext&) { return zelk::ShapeDataLoaded; }),
      }));
  token.reset();
  stage.Settle();
  view.expandAll();
  view.setCurrentIndex(stage.model.FindIndex(assembly.Get()));
  view.scrollTo(view.currentIndex(), QAbstractItemView::PositionAtTop);
  stage.state->PopulateTree(true);
  const bool isHeldByTheTree = !shape.expired();

  stage.tree.Remove(std::exchange(assembly, {}));
  stage.Settle();

  EXPECT_TRUE(isHeldByTheTree);
  EXPECT_TRUE(shape.expired());
}

TEST_F(TreeViewKeeperOfAView, PlaceholderThatTheUserOpens_IsFilled)
{
  FilterAndCancelAtWork(stage, "bolt");

  view.expand(stage.FindIndex("root"));

  EXPECT_EQ(stage.model.rowCount(stage.FindIndex("root")), 102);
  EXPECT_TRUE(view.isExpanded(stage.FindIndex("root")));
}

}  // namespace
}  // namespace qthosttest
