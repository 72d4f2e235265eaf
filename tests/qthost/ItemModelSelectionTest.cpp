#include <gmock/gmock.h>

#include <QSignalSpy>

#include "Stage.h"

namespace qthosttest {
namespace {

using qthost::GuiTreeItemModel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class ItemModelSelection : public testing::Test {
protected:
  void SetUp() override
  {
    stage.Initialise();
    QObject::connect(&stage.model, &GuiTreeItemModel::SelectionTold, &stage.model,
                     [this](const QItemSelection& came, const QItemSelection& went, bool /*isNews*/) {
                       ++told;
                       selected = came;
                       deselected = went;
                     });
  }
  void Apply(const std::vector<std::string>& names, zelk::SelectionManager::Operation operation)
  {
    std::vector<du::SmartPtr<zelk::Instance>> instances;
    for (const std::string& name : names) {
      instances.emplace_back(stage[name]);
    }
    stage.world->GetMemSelectionManager().ApplyInstances(zelk::SelectionManager::SelectionList, instances, operation);
    stage.Settle();
  }
  void Select(const std::vector<std::string>& names) { Apply(names, zelk::SelectionManager::OperationSet); }
  [[nodiscard]] std::vector<std::string> GetTold() const { return stage.GetNames(stage.model.GetToldSelection()); }

  Stage stage{"root[plate[bolt nut washer] rod]"};
  int told = 0;
  QItemSelection selected;
  QItemSelection deselected;
};

TEST_F(ItemModelSelection, WhatTheKernelSelects_IsToldInOneBatchOfRanges)
{
  Select({"bolt", "nut", "rod"});

  EXPECT_EQ(told, 1);
  EXPECT_EQ(selected.size(), 2);
  EXPECT_THAT(stage.GetNames(selected), UnorderedElementsAre("bolt", "nut", "rod"));
  EXPECT_THAT(deselected, IsEmpty());
  EXPECT_TRUE(stage.FindIndex("nut").data(GuiTreeItemModel::SelectedRole).toBool());
}

TEST_F(ItemModelSelection, AnotherSelection_TellsWhatCameAndWhatWent)
{
  Select({"bolt", "nut"});

  Select({"nut", "rod"});

  EXPECT_EQ(told, 2);
  EXPECT_THAT(stage.GetNames(selected), ElementsAre("rod"));
  EXPECT_THAT(stage.GetNames(deselected), ElementsAre("bolt"));
  EXPECT_THAT(GetTold(), UnorderedElementsAre("nut", "rod"));
}

TEST_F(ItemModelSelection, SelectionThatIsCleared_TellsWhatWent)
{
  Select({"bolt", "nut"});

  Select({});

  EXPECT_THAT(stage.GetNames(deselected), ElementsAre("bolt", "nut"));
  EXPECT_THAT(GetTold(), IsEmpty());
}

TEST_F(ItemModelSelection, SelectedRowInPlaceOfAnother_IsTold)
{
  std::vector<du::SmartPtr<zelk::Object>> items{du::SmartPtr<zelk::Object>(stage["bolt"]),
                                                du::SmartPtr<zelk::Object>(stage["rod"])};

  stage.model.StartTreeUpdate();
  stage.model.SelectItems(items);
  stage.model.InstanceRemove(stage["bolt"], stage["plate"], false);
  stage.model.InstanceCreate(stage["bolt"], stage["plate"], {}, false);
  stage.model.SelectItems(items);
  stage.model.FinishTreeUpdate();

  EXPECT_THAT(stage.GetNames(selected), UnorderedElementsAre("bolt", "rod"));
}

TEST_F(ItemModelSelection, SelectedRowThatGoesAndComesBackSelected_IsToldAgain)
{
  Select({"bolt"});
  std::vector<du::SmartPtr<zelk::Object>> items{du::SmartPtr<zelk::Object>(stage["bolt"])};

  stage.model.StartTreeUpdate();
  stage.model.InstanceRemove(stage["bolt"], stage["plate"], false);
  stage.model.InstanceCreate(stage["bolt"], stage["plate"], {}, false);
  stage.model.SelectItems(items);
  stage.model.FinishTreeUpdate();

  EXPECT_EQ(told, 2);
  EXPECT_THAT(stage.GetNames(selected), ElementsAre("bolt"));
}

TEST_F(ItemModelSelection, RowSelectedAndDeselectedInOneBracket_IsNotTold)
{
  std::vector<du::SmartPtr<zelk::Object>> items{du::SmartPtr<zelk::Object>(stage["bolt"])};
  stage.model.StartTreeUpdate();
  stage.model.SelectItems(items);
  stage.model.DeselectItems(items);
  stage.model.FinishTreeUpdate();

  EXPECT_EQ(told, 0);
}

TEST_F(ItemModelSelection, SelectionAtAPopulation_IsToldWithTheNewRows)
{
  Select({"bolt", "rod"});

  stage.state->PopulateTree(true);

  EXPECT_EQ(told, 2);
  EXPECT_THAT(stage.GetNames(selected), UnorderedElementsAre("bolt", "rod"));
  EXPECT_THAT(deselected, IsEmpty());
}

TEST_F(ItemModelSelection, SelectedInstanceThatAFilterLeavesOut_ComesBackSelected)
{
  Select({"bolt", "rod"});
  stage.Filter("bolt");
  const std::vector<std::string> filtered = GetTold();

  stage.EndFilter();

  EXPECT_THAT(filtered, ElementsAre("bolt"));
  EXPECT_THAT(GetTold(), UnorderedElementsAre("bolt", "rod"));
}

TEST_F(ItemModelSelection, SelectionOfAPanelOutOfSight_IsReadWhenItIsSeen)
{
  stage.model.SetInSight(false);
  Select({"bolt"});
  const int toldBefore = told;

  stage.model.SetInSight(true);

  EXPECT_EQ(toldBefore, 0);
  EXPECT_THAT(GetTold(), ElementsAre("bolt"));
}

TEST_F(ItemModelSelection, PickInAScene_SelectsTheRowOfItsInstance)
{
  stage.ShowScene();
  stage.world->GetMemSelectionManager().ApplyItems(
      zelk::SelectionManager::SelectionList,
      {du::MakeSmart<memkernel::ShapeInstanceSelectionItem>(du::SmartPtr<zelk::ShapeInstance>(stage.GetShape("nut")))},
      zelk::SelectionManager::OperationSet);
  stage.Settle();

  EXPECT_THAT(GetTold(), ElementsAre("nut"));
}

TEST_F(ItemModelSelection, InstanceWithoutARow_SelectsNothing)
{
  stage.Filter("bolt");

  Select({"rod"});

  EXPECT_THAT(GetTold(), IsEmpty());
  EXPECT_THAT(stage.model.MakeSelection({stage["rod"].Get(), nullptr}), IsEmpty());
}

TEST_F(ItemModelSelection, CollapsedSiblings_AreOneRowForAll)
{
  Stage collapsed("root[bolt bolt bolt nut]");
  guitree::WorldTreeState::SetIsCollapsingInstances(true);
  collapsed.Initialise();
  const auto first = du::SmartPtr<zelk::BaseInstance>(collapsed["bolt"]);
  std::vector<du::SmartPtr<zelk::BaseInstance>> children;
  collapsed["root"]->GetBaseChildren(children);
  auto& manager = collapsed.world->GetMemSelectionManager();
  const auto apply = [&](std::size_t child, zelk::SelectionManager::Operation operation) {
    manager.ApplyInstances(zelk::SelectionManager::SelectionList, {du::DynamicCast<zelk::Instance>(children[child])},
                           operation);
    collapsed.Settle();
    return collapsed.model.FindIndex(first.Get()).data(GuiTreeItemModel::SelectedRole).toBool();
  };

  EXPECT_TRUE(apply(1, zelk::SelectionManager::OperationAdd));
  EXPECT_TRUE(apply(2, zelk::SelectionManager::OperationAdd));
  EXPECT_TRUE(apply(1, zelk::SelectionManager::OperationRemove));
  EXPECT_FALSE(apply(2, zelk::SelectionManager::OperationRemove));
}

}  // namespace
}  // namespace qthosttest
