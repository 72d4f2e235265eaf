#include "guitree/WorldTreeSelectionController.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "memkernel/SelectionManager.h"
#include "testsupport/NamedTree.h"
#include "testsupport/PlainBaseInstance.h"
#include "testsupport/RecordingSelectionManager.h"

namespace {

using guitree::WorldTreeSelectionController;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testsupport::NamedTree;
using testsupport::PlainBaseInstance;
using testsupport::RecordingSelectionManager;
using BaseInstances = std::set<du::SmartPtr<zelk::BaseInstance>>;
using Instances = std::set<du::SmartPtr<zelk::Instance>>;
using zelk::SelectionManager;

/// A controller over a manager that writes down what it is asked.
class WorldTreeSelection : public testing::Test {
protected:
  NamedTree kernel{"root[a b c]"};
  du::SmartPtr<zelk::BaseInstance> a = kernel["a"];
  du::SmartPtr<zelk::BaseInstance> b = kernel["b"];
  du::SmartPtr<zelk::BaseInstance> c = kernel["c"];
  /// A node that is no `zelk::Instance`.
  du::SmartPtr<zelk::BaseInstance> other = du::MakeSmart<PlainBaseInstance>("other");
  du::SmartPtr<RecordingSelectionManager> manager = du::MakeSmart<RecordingSelectionManager>();
  WorldTreeSelectionController controller{manager};
};

TEST_F(WorldTreeSelection, GetTotalItemCount_CountsTheInstancesOfTheSelection)
{
  manager->selectedCount = 7;

  EXPECT_EQ(controller.GetTotalItemCount(), 7U);
  EXPECT_THAT(manager->calls, ElementsAre("GetSelectedCount(0, instance types, 2)"));
}

TEST_F(WorldTreeSelection, ContainsInstance_IsTrueFromTheFirstInstanceOn)
{
  EXPECT_FALSE(controller.ContainsInstance());
  manager->selectedCount = 1;
  EXPECT_TRUE(controller.ContainsInstance());
  manager->selectedCount = 2;
  EXPECT_TRUE(controller.ContainsInstance());

  EXPECT_THAT(manager->calls, testing::Each("GetSelectedCount(0, instance types, 2)"));
}

TEST_F(WorldTreeSelection, GetSelectedInstances_OverBaseInstances_ReplacesWhatWasThere)
{
  manager->instances[SelectionManager::SelectionList] = {kernel["a"], kernel["b"]};
  manager->instances[SelectionManager::AssocHlightList] = {kernel["c"]};
  BaseInstances out{c, other};

  controller.GetSelectedInstances(out);

  EXPECT_THAT(out, UnorderedElementsAre(a, b));
  EXPECT_THAT(manager->calls, ElementsAre("GetSelectedInstances(0, 2)"));
}

TEST_F(WorldTreeSelection, GetSelectedInstances_OverBaseInstances_OfAnEmptySelectionEmptiesWhatWasThere)
{
  BaseInstances out{c};

  controller.GetSelectedInstances(out);

  EXPECT_THAT(out, IsEmpty());
}

TEST_F(WorldTreeSelection, GetSelectedInstances_OverBaseInstances_NamesAnInstanceThatComesTwiceOnce)
{
  manager->instances[SelectionManager::SelectionList] = {kernel["a"], kernel["a"]};
  BaseInstances out;

  controller.GetSelectedInstances(out);

  EXPECT_THAT(out, ElementsAre(a));
}

TEST_F(WorldTreeSelection, GetSelectedInstances_OverInstances_AddsToWhatWasThere)
{
  manager->instances[SelectionManager::SelectionList] = {kernel["a"]};
  Instances out{kernel["c"]};

  controller.GetSelectedInstances(out);

  EXPECT_THAT(out, UnorderedElementsAre(kernel["a"], kernel["c"]));
  EXPECT_THAT(manager->calls, ElementsAre("GetSelectedInstances(0, 2)"));
}

TEST_F(WorldTreeSelection, GetAssocHlightedInstances_ReplacesWhatWasThereByTheHighlightsAlone)
{
  manager->instances[SelectionManager::SelectionList] = {kernel["a"]};
  manager->instances[SelectionManager::AssocHlightList] = {kernel["b"]};
  BaseInstances out{c};

  controller.GetAssocHlightedInstances(out);

  EXPECT_THAT(out, ElementsAre(b));
  EXPECT_THAT(manager->calls, ElementsAre("GetSelectedInstances(4, 2)"));
}

TEST_F(WorldTreeSelection, ContainsItem_AnswersWhatTheSelectionSaysOfTheInstance)
{
  EXPECT_FALSE(controller.ContainsItem(a));
  manager->containsItem = true;
  EXPECT_TRUE(controller.ContainsItem(a));

  EXPECT_THAT(manager->calls, ElementsAre("ContainsItem(0, a, 2)", "ContainsItem(0, a, 2)"));
}

TEST_F(WorldTreeSelection, ContainsItem_OfWhatIsNoInstance_AsksTheKernelAboutNothingAndPassesItsAnswerOn)
{
  EXPECT_FALSE(controller.ContainsItem(other));
  manager->containsItem = true;
  EXPECT_TRUE(controller.ContainsItem(other));
  EXPECT_TRUE(controller.ContainsItem(nullptr));

  EXPECT_THAT(manager->calls,
              ElementsAre("ContainsItem(0, nothing, 2)", "ContainsItem(0, nothing, 2)", "ContainsItem(0, nothing, 2)"));
}

TEST_F(WorldTreeSelection, IsItemAssocHlighted_AnswersWhatTheHighlightsSayOfTheInstance)
{
  EXPECT_FALSE(controller.IsItemAssocHlighted(a));
  manager->containsItem = true;
  EXPECT_TRUE(controller.IsItemAssocHlighted(a));

  EXPECT_THAT(manager->calls, ElementsAre("ContainsItem(4, a, 2)", "ContainsItem(4, a, 2)"));
}

TEST_F(WorldTreeSelection, IsItemAssocHlighted_OfWhatIsNoInstance_IsFalseAndUnlikeContainsItemDoesNotAskTheKernel)
{
  manager->containsItem = true;

  EXPECT_FALSE(controller.IsItemAssocHlighted(other));
  EXPECT_FALSE(controller.IsItemAssocHlighted(nullptr));

  EXPECT_THAT(manager->calls, IsEmpty());
}

TEST(WorldTreeSelectionWithoutAManager, AnswersNothingAndChangesNothing)
{
  const NamedTree kernel("root[a]");
  const du::SmartPtr<zelk::BaseInstance> a = kernel["a"];
  WorldTreeSelectionController controller(nullptr);
  BaseInstances selected{a};
  BaseInstances highlighted{a};
  Instances added{kernel["a"]};

  controller.GetSelectedInstances(selected);
  controller.GetAssocHlightedInstances(highlighted);
  controller.GetSelectedInstances(added);
  controller.SetItems(BaseInstances{a});
  controller.SetItems(Instances{kernel["a"]});

  EXPECT_THAT(selected, IsEmpty());
  EXPECT_THAT(highlighted, IsEmpty());
  EXPECT_THAT(added, ElementsAre(kernel["a"]));
  EXPECT_EQ(controller.GetTotalItemCount(), 0U);
  EXPECT_FALSE(controller.ContainsInstance());
  EXPECT_FALSE(controller.ContainsItem(a));
  EXPECT_FALSE(controller.IsItemAssocHlighted(a));
}

TEST(WorldTreeSelectionOnAKernel, WhatIsSetIsWhatIsAskedForAndStaysApartFromTheHighlights)
{
  const NamedTree kernel("root[a b]");
  const du::SmartPtr<zelk::BaseInstance> a = kernel["a"];
  const du::SmartPtr<zelk::BaseInstance> b = kernel["b"];
  const auto manager = du::MakeSmart<memkernel::SelectionManager>(kernel.Get());
  manager->ApplyInstances(SelectionManager::AssocHlightList, {kernel["b"]}, SelectionManager::OperationSet);
  WorldTreeSelectionController controller(manager);

  controller.SetItems(BaseInstances{a});

  BaseInstances selected;
  controller.GetSelectedInstances(selected);
  EXPECT_THAT(selected, ElementsAre(a));
  EXPECT_EQ(controller.GetTotalItemCount(), 1U);
  EXPECT_TRUE(controller.ContainsItem(a));
  EXPECT_FALSE(controller.ContainsItem(b));
  EXPECT_FALSE(controller.ContainsItem(nullptr));
  EXPECT_FALSE(controller.IsItemAssocHlighted(a));
  EXPECT_TRUE(controller.IsItemAssocHlighted(b));
}

TEST(WorldTreeSelectionOnAKernel, ControllersOfOneManagerSeeOneSelection)
{
  const NamedTree kernel("root[a b]");
  const auto manager = du::MakeSmart<memkernel::SelectionManager>(kernel.Get());
  WorldTreeSelectionController first(manager);
  WorldTreeSelectionController second(manager);

  first.SetItems(BaseInstances{kernel["a"], kernel["b"]});
  second.SetItems(BaseInstances{});

  EXPECT_FALSE(first.ContainsInstance());
}

}  // namespace
