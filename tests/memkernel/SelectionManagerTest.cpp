#include "memkernel/SelectionManager.h"

#include "TreeFixture.h"
#include "memkernel/ShapeScene.h"
#include "zelk/ObjectSelectionItem.h"

namespace memkerneltest {
namespace {

using memkernel::SelectionManager;
using memkernel::ShapeInstanceSelectionItem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned int s_list = SelectionManager::SelectionList;
constexpr unsigned int s_otherList = SelectionManager::AssocHlightList;

du::SmartPtr<zelk::SelectionItem> ItemOf(const InstancePtr& instance)
{
  return du::MakeSmart<zelk::ObjectSelectionItem>(instance);
}

class SelectionManagerTest : public TreeFixture {
protected:
  SelectionManagerTest() { manager->RegisterObserver(s_list, *selection); }
  ~SelectionManagerTest() override { manager->UnregisterObserver(s_list, *selection); }

  unsigned int Apply(const std::vector<du::SmartPtr<zelk::Instance>>& instances, SelectionManager::Operation operation)
  {
    return manager->ApplyInstances(s_list, instances, operation);
  }
  [[nodiscard]] std::size_t CountInstances(zelk::ExpandRule rule = zelk::ExpandRuleInstances) const
  {
    std::set<du::SmartPtr<zelk::Instance>> instances;
    manager->GetSelectedInstances(s_list, instances, rule);
    return instances.size();
  }

  const du::SmartPtr<SelectionManager> manager = du::MakeSmart<SelectionManager>(tree);
  const du::SmartPtr<SelectionRecorder> selection = du::MakeSmart<SelectionRecorder>();
  const InstancePtr a = Add(root, "A");
  const InstancePtr b = Add(root, "B");
  const InstancePtr c = Add(root, "C");
};

TEST_F(SelectionManagerTest, ApplyItems_ToAnEmptyList_TellsOfWhatCame)
{
  EXPECT_EQ(Apply({a, b}, SelectionManager::OperationAdd), 2U);

  EXPECT_THAT(selection->Take(), ElementsAre("begin", "list 0 -0 +2", "insert A B", "end"));
}

TEST_F(SelectionManagerTest, ApplyItems_ThatReplaceAll_ClearFirst)
{
  Apply({a, b}, SelectionManager::OperationSet);
  (void)selection->Take();

  EXPECT_EQ(Apply({c}, SelectionManager::OperationSet), 3U);

  EXPECT_THAT(selection->Take(), ElementsAre("begin", "list 0 cleared -0 +1", "clear", "insert C", "end"));
}

TEST_F(SelectionManagerTest, ApplyItems_ThatReplaceAPart_TellOfThatPart)
{
  Apply({a, b}, SelectionManager::OperationSet);
  (void)selection->Take();

  EXPECT_EQ(Apply({b, c}, SelectionManager::OperationSet), 2U);

  EXPECT_THAT(selection->Take(), ElementsAre("begin", "list 0 -1 +1", "remove A", "insert C", "end"));
}

TEST_F(SelectionManagerTest, ApplyItems_ThatEmptyTheList_Clear)
{
  Apply({a, b}, SelectionManager::OperationSet);
  (void)selection->Take();

  EXPECT_EQ(Apply({}, SelectionManager::OperationSet), 2U);

  EXPECT_THAT(selection->Take(), ElementsAre("begin", "list 0 cleared -0 +0", "clear", "end"));
}

TEST_F(SelectionManagerTest, ApplyItems_OfEachOperation_ChangesTheListAccordingly)
{
  EXPECT_EQ(Apply({a, b}, SelectionManager::OperationAdd), 2U);
  EXPECT_EQ(Apply({b, c}, SelectionManager::OperationToggle), 2U);
  EXPECT_EQ(Apply({b, c}, SelectionManager::OperationRemove), 1U);

  EXPECT_EQ(CountInstances(), 1U);
  EXPECT_TRUE(manager->ContainsItem(s_list, ItemOf(a), zelk::ExpandRuleNone));
}

TEST_F(SelectionManagerTest, ApplyItems_WithoutAChange_TellsNothing)
{
  Apply({a}, SelectionManager::OperationSet);
  (void)selection->Take();

  EXPECT_EQ(Apply({a}, SelectionManager::OperationSet), 0U);
  EXPECT_EQ(Apply({a}, SelectionManager::OperationAdd), 0U);
  EXPECT_EQ(Apply({b}, SelectionManager::OperationRemove), 0U);
  EXPECT_EQ(manager->ApplyItems(s_list, {nullptr, ItemOf(nullptr)}, SelectionManager::OperationAdd), 0U);

  EXPECT_THAT(selection->Take(), IsEmpty());
}

TEST_F(SelectionManagerTest, Lists_AreIndependent)
{
  manager->ApplyInstances(s_otherList, {a}, SelectionManager::OperationSet);

  EXPECT_THAT(selection->Take(), IsEmpty());
  EXPECT_EQ(CountInstances(), 0U);
  EXPECT_TRUE(manager->ContainsItem(s_otherList, ItemOf(a), zelk::ExpandRuleNone));
  EXPECT_FALSE(manager->ContainsItem(17, ItemOf(a), zelk::ExpandRuleNone));
}

TEST_F(SelectionManagerTest, ShapeInstance_CountsAsItsInstanceUnderExpansionOnly)
{
  const auto scene = du::MakeSmart<memkernel::ShapeScene>(nullptr, tree);
  const auto item = du::MakeSmart<ShapeInstanceSelectionItem>(scene->CreateShapeInstance(a));
  const auto& types = zelk::SelectionManager::GetInstanceTypes();

  manager->ApplyItems(s_list, {item}, SelectionManager::OperationAdd);

  EXPECT_FALSE(manager->ContainsItem(s_list, ItemOf(a), zelk::ExpandRuleNone));
  EXPECT_TRUE(manager->ContainsItem(s_list, ItemOf(a), zelk::ExpandRuleInstances));
  EXPECT_EQ(CountInstances(zelk::ExpandRuleNone), 0U);
  EXPECT_EQ(CountInstances(zelk::ExpandRuleInstances), 1U);
  EXPECT_EQ(manager->GetSelectedCount(s_list, types, zelk::ExpandRuleNone), 0U);
  EXPECT_EQ(manager->GetSelectedCount(s_list, types, zelk::ExpandRuleInstances), 1U);
}

TEST_F(SelectionManagerTest, Expansion_OfTwoItemsOfOneInstance_CountsItOnceUntilBothHaveGone)
{
  const auto scene = du::MakeSmart<memkernel::ShapeScene>(nullptr, tree);
  const auto shapeItem = du::MakeSmart<ShapeInstanceSelectionItem>(scene->CreateShapeInstance(a));
  const auto& types = zelk::SelectionManager::GetInstanceTypes();
  manager->ApplyItems(s_list, {shapeItem, ItemOf(a), ItemOf(b)}, SelectionManager::OperationAdd);

  EXPECT_EQ(manager->GetSelectedCount(s_list, types, zelk::ExpandRuleInstances), 2U);
  EXPECT_EQ(manager->GetSelectedCount(s_list, types, zelk::ExpandRuleNone), 2U);
  Apply({a}, SelectionManager::OperationRemove);
  EXPECT_TRUE(manager->ContainsItem(s_list, ItemOf(a), zelk::ExpandRuleInstances));
  manager->ApplyItems(s_list, {shapeItem}, SelectionManager::OperationRemove);
  EXPECT_FALSE(manager->ContainsItem(s_list, ItemOf(a), zelk::ExpandRuleInstances));
}

TEST_F(SelectionManagerTest, Removal_FromTheTree_TakesTheItemsOutInOneChange)
{
  const auto scene = du::MakeSmart<memkernel::ShapeScene>(nullptr, tree);
  const auto below = Add(a, "Below");
  const auto shapeItem = du::MakeSmart<ShapeInstanceSelectionItem>(scene->CreateShapeInstance(below));
  manager->ApplyItems(s_list, {ItemOf(a), shapeItem, ItemOf(c)}, SelectionManager::OperationAdd);
  manager->ApplyInstances(s_otherList, {a}, SelectionManager::OperationAdd);
  (void)selection->Take();

  tree->Remove(a);

  EXPECT_THAT(selection->Take(), ElementsAre("begin", "list 0 -2 +0", testing::StartsWith("remove"), "end"));
  EXPECT_EQ(manager->GetItems(s_list).size(), 1U);
  EXPECT_TRUE(manager->GetItems(s_otherList).empty());
}

TEST_F(SelectionManagerTest, ApplyItems_FromInsideACallback_HoldsAtOnceAndIsToldAfterwards)
{
  const auto second = du::MakeSmart<SelectionRecorder>();
  manager->RegisterObserver(s_list, *second);
  selection->onLine = [&](const std::string& line) {
    if (line == "insert A") {
      Apply({b}, SelectionManager::OperationAdd);
      EXPECT_EQ(CountInstances(), 2U);
    }
  };

  Apply({a}, SelectionManager::OperationAdd);

  const auto lines = ElementsAre("begin", "list 0 -0 +1", "insert A", "list 0 -0 +1", "insert B", "end");
  EXPECT_THAT(selection->Take(), lines);
  EXPECT_THAT(second->Take(), lines);
  manager->UnregisterObserver(s_list, *second);
}

TEST_F(SelectionManagerTest, UnregisterObserver_InsideACallback_ClosesTheRunAndEndsTheStory)
{
  selection->onLine = [&](const std::string& line) {
    if (line.starts_with("list")) {
      EXPECT_TRUE(manager->UnregisterObserver(s_list, *selection));
    }
  };

  Apply({a}, SelectionManager::OperationSet);

  EXPECT_THAT(selection->Take(), ElementsAre("begin", "list 0 -0 +1", "end"));
  EXPECT_FALSE(selection->IsRegistered());
}

TEST_F(SelectionManagerTest, RegisterObserver_OnTwoLists_IsOnceForEach)
{
  EXPECT_FALSE(manager->RegisterObserver(s_list, *selection));
  EXPECT_TRUE(manager->RegisterObserver(s_otherList, *selection));

  manager->ApplyInstances(s_otherList, {a}, SelectionManager::OperationSet);

  EXPECT_THAT(selection->Take(), ElementsAre("begin", "list 4 -0 +1", "insert A", "end"));
  EXPECT_TRUE(manager->UnregisterObserver(s_otherList, *selection));
  EXPECT_TRUE(selection->IsRegistered());
}

TEST_F(SelectionManagerTest, Manager_ThatDies_DropsItsObserversAndLeavesTheTree)
{
  auto other = du::MakeSmart<SelectionManager>(tree);
  const auto observer = du::MakeSmart<SelectionRecorder>();
  other->RegisterObserver(s_list, *observer);
  other->ApplyInstances(s_list, {a}, SelectionManager::OperationSet);

  other.Reset();
  tree->Remove(a);

  EXPECT_FALSE(observer->IsRegistered());
}

}  // namespace
}  // namespace memkerneltest
