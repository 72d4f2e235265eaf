#include "qthost/SelectionBinding.h"

#include <gmock/gmock.h>

#include <QSignalSpy>
#include <QTreeView>

#include "Stage.h"

namespace qthosttest {
namespace {

using qthost::SelectionBinding;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class SelectionBindingOfAView : public testing::Test {
protected:
  void SetUp() override
  {
    stage.Initialise();
    view.setModel(&stage.model);
    view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    binding = std::make_unique<SelectionBinding>(view, stage.model);
  }
  void SelectInKernel(const std::vector<std::string>& names)
  {
    std::vector<du::SmartPtr<zelk::Instance>> instances;
    for (const std::string& name : names) {
      instances.emplace_back(stage[name]);
    }
    stage.world->GetMemSelectionManager().ApplyInstances(zelk::SelectionManager::SelectionList, instances,
                                                         zelk::SelectionManager::OperationSet);
    stage.Settle();
  }
  void SelectInView(const std::string& name, QItemSelectionModel::SelectionFlags how)
  {
    view.selectionModel()->select(stage.FindIndex(name), how | QItemSelectionModel::Rows);
    stage.Settle();
  }
  [[nodiscard]] std::vector<std::string> GetSelectedInView() const
  {
    std::vector<std::string> names;
    for (const QModelIndex& index : view.selectionModel()->selectedRows()) {
      names.push_back(index.data().toString().toStdString());
    }
    return names;
  }
  [[nodiscard]] std::vector<std::string> GetSelectedInKernel() const
  {
    std::set<du::SmartPtr<zelk::Instance>> instances;
    stage.world->GetMemSelectionManager().GetSelectedInstances(zelk::SelectionManager::SelectionList, instances,
                                                               zelk::ExpandRuleInstances);
    std::vector<std::string> names;
    for (const auto& instance : instances) {
      names.push_back(instance->GetObjectName());
    }
    return names;
  }

  Stage stage{"root[plate[bolt nut washer] rod]"};
  QTreeView view;
  std::unique_ptr<SelectionBinding> binding;
};

TEST_F(SelectionBindingOfAView, KernelSelection_IsThatOfTheViewInOneBatch)
{
  const QSignalSpy changes(view.selectionModel(), &QItemSelectionModel::selectionChanged);

  SelectInKernel({"bolt", "nut", "rod"});

  EXPECT_THAT(GetSelectedInView(), UnorderedElementsAre("bolt", "nut", "rod"));
  EXPECT_EQ(changes.count(), 1);
}

TEST_F(SelectionBindingOfAView, KernelSelection_ScrollsToItsFirstRowAndOpensWhatIsAbove)
{
  SelectInKernel({"nut"});

  EXPECT_TRUE(view.isExpanded(stage.FindIndex("root")));
  EXPECT_TRUE(view.isExpanded(stage.FindIndex("plate")));
}

TEST_F(SelectionBindingOfAView, KernelSelection_ScrollsToTheTopmostOfItsRows)
{
  stage.kernel.Add("plate", "spring");
  stage.kernel.Add("nut", "thread");
  stage.Settle();

  SelectInKernel({"rod", "spring", "thread"});

  EXPECT_EQ(view.currentIndex(), stage.FindIndex("thread"));
}

// As when another view becomes the active one.
TEST_F(SelectionBindingOfAView, KernelSelectionThatIsReadAgain_LeavesTheViewWhereItIs)
{
  SelectInKernel({"nut"});
  view.collapseAll();

  stage.model.ClearSelection();
  stage.model.RefreshSelection();

  EXPECT_THAT(GetSelectedInView(), ElementsAre("nut"));
  EXPECT_FALSE(view.isExpanded(stage.FindIndex("root")));
}

TEST_F(SelectionBindingOfAView, SelectedRowThatComesBack_LeavesTheViewWhereItIs)
{
  SelectInKernel({"nut"});
  view.collapseAll();

  stage.model.InstanceRemove(stage["nut"], stage["plate"], false);
  stage.model.InstanceCreate(stage["nut"], stage["plate"], stage.state->GetSelController(true), false);

  EXPECT_THAT(GetSelectedInView(), ElementsAre("nut"));
  EXPECT_FALSE(view.isExpanded(stage.FindIndex("root")));
}

TEST_F(SelectionBindingOfAView, KernelSelectionWithoutScrolling_LeavesTheViewWhereItIs)
{
  binding->SetScrolls(false);

  SelectInKernel({"nut"});

  EXPECT_FALSE(view.isExpanded(stage.FindIndex("root")));
  EXPECT_THAT(GetSelectedInView(), ElementsAre("nut"));
}

TEST_F(SelectionBindingOfAView, ViewSelection_IsThatOfTheKernel)
{
  SelectInView("bolt", QItemSelectionModel::ClearAndSelect);
  SelectInView("rod", QItemSelectionModel::Select);

  EXPECT_THAT(GetSelectedInKernel(), UnorderedElementsAre("bolt", "rod"));
  EXPECT_THAT(GetSelectedInView(), UnorderedElementsAre("bolt", "rod"));
}

TEST_F(SelectionBindingOfAView, SelectionOfTheUser_DoesNotEcho)
{
  const QSignalSpy changes(view.selectionModel(), &QItemSelectionModel::selectionChanged);
  const QSignalSpy told(&stage.model, &qthost::GuiTreeItemModel::SelectionTold);

  SelectInView("bolt", QItemSelectionModel::ClearAndSelect);

  EXPECT_EQ(changes.count(), 1);
  EXPECT_EQ(told.count(), 1);
}

TEST_F(SelectionBindingOfAView, DeselectionInTheView_DeselectsInTheKernel)
{
  SelectInKernel({"bolt", "nut"});

  SelectInView("bolt", QItemSelectionModel::Deselect);

  EXPECT_THAT(GetSelectedInKernel(), ElementsAre("nut"));
}

TEST_F(SelectionBindingOfAView, RowsThatAFilterLeavesOut_StaySelectedInTheKernel)
{
  SelectInKernel({"bolt", "rod"});

  stage.Filter("bolt");
  const std::vector<std::string> filtered = GetSelectedInView();
  const std::vector<std::string> meanwhile = GetSelectedInKernel();
  stage.EndFilter();

  EXPECT_THAT(filtered, ElementsAre("bolt"));
  EXPECT_THAT(meanwhile, UnorderedElementsAre("bolt", "rod"));
  EXPECT_THAT(GetSelectedInView(), UnorderedElementsAre("bolt", "rod"));
}

TEST_F(SelectionBindingOfAView, RemovedRow_LeavesTheOthersSelected)
{
  SelectInKernel({"bolt", "nut", "rod"});

  stage.Remove("nut");
  stage.Settle();

  EXPECT_THAT(GetSelectedInView(), UnorderedElementsAre("bolt", "rod"));
  EXPECT_THAT(GetSelectedInKernel(), UnorderedElementsAre("bolt", "rod"));
}

TEST_F(SelectionBindingOfAView, BindingThatComesLater_TakesOverWhatTheKernelHas)
{
  binding.reset();
  SelectInKernel({"bolt"});
  const std::vector<std::string> unbound = GetSelectedInView();

  binding = std::make_unique<SelectionBinding>(view, stage.model);

  EXPECT_THAT(unbound, IsEmpty());
  EXPECT_THAT(GetSelectedInView(), ElementsAre("bolt"));
  EXPECT_THAT(GetSelectedInKernel(), ElementsAre("bolt"));
}

TEST_F(SelectionBindingOfAView, ManyScatteredRows_AreExchangedForOthersAndTold)
{
  std::string text = "root[";
  for (int i = 0; i < 4000; ++i) {
    text += "a" + std::to_string(i) + ' ';
  }
  Stage large(text + "]");
  large.Initialise();
  QTreeView largeView;
  largeView.setModel(&large.model);
  largeView.setSelectionMode(QAbstractItemView::ExtendedSelection);
  const SelectionBinding bound(largeView, large.model);
  const auto select = [&](int first) {
    std::vector<du::SmartPtr<zelk::Instance>> instances;
    for (int i = first; i < 4000; i += 2) {
      instances.emplace_back(large["a" + std::to_string(i)]);
    }
    large.world->GetMemSelectionManager().ApplyInstances(zelk::SelectionManager::SelectionList, instances,
                                                         zelk::SelectionManager::OperationSet);
    large.Settle();
  };
  select(0);
  const QSignalSpy changes(largeView.selectionModel(), &QItemSelectionModel::selectionChanged);

  select(1);

  EXPECT_EQ(largeView.selectionModel()->selectedRows().size(), 2000);
  EXPECT_TRUE(largeView.selectionModel()->isSelected(large.FindIndex("a1")));
  EXPECT_FALSE(largeView.selectionModel()->isSelected(large.FindIndex("a0")));
  EXPECT_GE(changes.count(), 1);
}

}  // namespace
}  // namespace qthosttest
