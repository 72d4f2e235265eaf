#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <set>
#include <thread>

#include "Cases.h"
#include "TestTree.h"
#include "zelk/ObjectSelectionItem.h"

namespace kernelcontract {
namespace {

using Manager = zelk::SelectionManager;
using Objects = std::set<const zelk::Object*>;

/// Keeps what a list holds by what it is told, once by the changes as a whole and once by the callbacks on objects.
class FollowingObserver : public zelk::SelectionObserver {
public:
  void OnBeginUpdate() override { calls.emplace_back("begin"); }
  void OnEndUpdate() override { calls.emplace_back("end"); }
  void OnSelectionChanged(unsigned int list, bool clearFirst,
                          const std::vector<du::SmartPtr<zelk::SelectionItem>>& removed,
                          const std::vector<du::SmartPtr<zelk::SelectionItem>>& added) override
  {
    calls.emplace_back("changed");
    lists.insert(list);
    if (onChange) {
      onChange();
    }
    if (clearFirst) {
      EXPECT_TRUE(removed.empty()) << "what goes with the whole list is not told one by one";
      byChanges.clear();
    }
    for (const auto& item : removed) {
      EXPECT_EQ(byChanges.erase(item->GetIdentity()), 1U) << "only what was there can go";
    }
    for (const auto& item : added) {
      EXPECT_TRUE(byChanges.insert(item->GetIdentity()).second) << "only what was not there can come";
    }
  }
  void OnInsertItems(std::vector<du::SmartPtr<zelk::Object>>& items) override
  {
    calls.emplace_back("insert");
    for (const auto& item : items) {
      byObjects.insert(item.Get());
    }
  }
  void OnRemoveItems(std::vector<du::SmartPtr<zelk::Object>>& items) override
  {
    calls.emplace_back("remove");
    for (const auto& item : items) {
      byObjects.erase(item.Get());
    }
  }
  void OnClearSelection() override
  {
    calls.emplace_back("clear");
    byObjects.clear();
  }

  std::function<void()> onChange;
  std::vector<std::string> calls;
  std::set<unsigned int> lists;
  std::set<const void*> byChanges;
  Objects byObjects;
};

Manager::ItemSet MakeItems(const std::vector<du::SmartPtr<zelk::Instance>>& instances)
{
  Manager::ItemSet items;
  for (const auto& instance : instances) {
    items.insert(du::MakeSmart<zelk::ObjectSelectionItem>(instance));
  }
  return items;
}

std::set<du::SmartPtr<zelk::Instance>> GetSelected(const Manager& manager, unsigned int list)
{
  std::set<du::SmartPtr<zelk::Instance>> selected;
  manager.GetSelectedInstances(list, selected, zelk::ExpandRuleInstances);
  return selected;
}

std::set<const void*> GetIdentities(const Manager& manager, unsigned int list)
{
  std::set<const void*> identities;
  for (const auto& instance : GetSelected(manager, list)) {
    identities.insert(static_cast<const zelk::Object*>(instance.Get()));
  }
  return identities;
}

bool HasSelection(KernelUnderTest& kernel)
{
  return static_cast<bool>(kernel.GetWorld().selectionManager);
}

void Operations_ChangeTheListAndAnswerHowMuch(KernelUnderTest& kernel)
{
  if (!HasSelection(kernel)) {
    GTEST_SKIP() << "this world has no selection";
  }
  const TestTree tree(kernel);
  Manager& manager = *kernel.GetWorld().selectionManager;
  using Set = std::set<du::SmartPtr<zelk::Instance>>;

  EXPECT_EQ(manager.ApplyItems(0, MakeItems({tree["a"], tree["b"]}), Manager::OperationSet), 2U);
  EXPECT_TRUE(GetSelected(manager, 0) == (Set{tree["a"], tree["b"]}));
  EXPECT_EQ(manager.ApplyItems(0, MakeItems({tree["b"], tree["c"]}), Manager::OperationAdd), 1U);
  EXPECT_TRUE(GetSelected(manager, 0) == (Set{tree["a"], tree["b"], tree["c"]}));
  EXPECT_EQ(manager.ApplyItems(0, MakeItems({tree["a"], tree["d"]}), Manager::OperationRemove), 1U);
  EXPECT_TRUE(GetSelected(manager, 0) == (Set{tree["b"], tree["c"]}));
  EXPECT_EQ(manager.ApplyItems(0, MakeItems({tree["c"], tree["d"]}), Manager::OperationToggle), 2U);
  EXPECT_TRUE(GetSelected(manager, 0) == (Set{tree["b"], tree["d"]}));
  EXPECT_EQ(manager.ApplyItems(0, MakeItems({tree["b"], tree["d"]}), Manager::OperationSet), 0U);
  EXPECT_EQ(manager.ApplyItems(0, {}, Manager::OperationSet), 2U);
  EXPECT_TRUE(GetSelected(manager, 0).empty());
}

void NullItems_ArePassedOver(KernelUnderTest& kernel)
{
  if (!HasSelection(kernel)) {
    GTEST_SKIP() << "this world has no selection";
  }
  Manager& manager = *kernel.GetWorld().selectionManager;
  const Manager::ItemSet items{du::SmartPtr<zelk::SelectionItem>()};

  EXPECT_EQ(manager.ApplyItems(0, items, Manager::OperationSet), 0U);
  EXPECT_EQ(manager.ApplyItems(0, MakeItems({nullptr}), Manager::OperationAdd), 0U);
  EXPECT_FALSE(manager.ContainsItem(0, nullptr, zelk::ExpandRuleInstances));
}

void Observers_CanFollowTheListByWhatTheyAreTold(KernelUnderTest& kernel)
{
  if (!HasSelection(kernel)) {
    GTEST_SKIP() << "this world has no selection";
  }
  const TestTree tree(kernel);
  Manager& manager = *kernel.GetWorld().selectionManager;
  const auto observer = du::MakeSmart<FollowingObserver>();
  ASSERT_TRUE(manager.RegisterObserver(0, *observer));

  const std::vector<std::pair<Manager::Operation, std::vector<du::SmartPtr<zelk::Instance>>>> steps{
      {Manager::OperationSet, {tree["a"], tree["b"]}},    {Manager::OperationAdd, {tree["c"]}},
      {Manager::OperationSet, {tree["b"], tree["d"]}},    {Manager::OperationToggle, {tree["d"], tree["x"]}},
      {Manager::OperationRemove, {tree["b"], tree["a"]}}, {Manager::OperationSet, {}},
  };
  for (const auto& [operation, instances] : steps) {
    observer->calls.clear();
    manager.ApplyItems(0, MakeItems(instances), operation);

    ASSERT_GE(observer->calls.size(), 3U);
    EXPECT_EQ(observer->calls[0], "begin");
    EXPECT_EQ(observer->calls[1], "changed") << "first as a whole";
    EXPECT_EQ(observer->calls.back(), "end");
    EXPECT_EQ(std::count(observer->calls.begin(), observer->calls.end(), "begin"), 1);
    EXPECT_EQ(observer->byChanges, GetIdentities(manager, 0));
    EXPECT_EQ(observer->byObjects.size(), observer->byChanges.size());
  }
  EXPECT_EQ(observer->lists, (std::set<unsigned int>{0}));
  manager.UnregisterObserver(0, *observer);
}

void WhatChangesNothing_IsNotTold(KernelUnderTest& kernel)
{
  if (!HasSelection(kernel)) {
    GTEST_SKIP() << "this world has no selection";
  }
  const TestTree tree(kernel);
  Manager& manager = *kernel.GetWorld().selectionManager;
  manager.ApplyItems(0, MakeItems({tree["a"]}), Manager::OperationSet);
  const auto observer = du::MakeSmart<FollowingObserver>();
  manager.RegisterObserver(0, *observer);

  manager.ApplyItems(0, MakeItems({tree["a"]}), Manager::OperationSet);
  manager.ApplyItems(0, MakeItems({tree["b"]}), Manager::OperationRemove);

  EXPECT_TRUE(observer->calls.empty()) << "nothing is replayed, and nothing has changed";
  manager.UnregisterObserver(0, *observer);
}

void Lists_AreIndependent(KernelUnderTest& kernel)
{
  if (!HasSelection(kernel)) {
    GTEST_SKIP() << "this world has no selection";
  }
  const TestTree tree(kernel);
  Manager& manager = *kernel.GetWorld().selectionManager;
  const auto selection = du::MakeSmart<FollowingObserver>();
  const auto highlight = du::MakeSmart<FollowingObserver>();
  manager.RegisterObserver(Manager::SelectionList, *selection);
  manager.RegisterObserver(Manager::AssocHlightList, *highlight);

  manager.ApplyItems(Manager::AssocHlightList, MakeItems({tree["a"]}), Manager::OperationSet);

  EXPECT_TRUE(selection->calls.empty());
  EXPECT_EQ(highlight->lists, (std::set<unsigned int>{4}));
  EXPECT_TRUE(GetSelected(manager, Manager::SelectionList).empty());
  manager.UnregisterObserver(Manager::SelectionList, *selection);
  manager.UnregisterObserver(Manager::AssocHlightList, *highlight);
}

void Registration_HappensOnceOnEachList(KernelUnderTest& kernel)
{
  if (!HasSelection(kernel)) {
    GTEST_SKIP() << "this world has no selection";
  }
  const TestTree tree(kernel);
  Manager& manager = *kernel.GetWorld().selectionManager;
  const auto observer = du::MakeSmart<FollowingObserver>();

  EXPECT_FALSE(manager.UnregisterObserver(0, *observer));
  EXPECT_TRUE(manager.RegisterObserver(0, *observer));
  EXPECT_FALSE(manager.RegisterObserver(0, *observer));
  EXPECT_FALSE(manager.UnregisterObserver(4, *observer));
  EXPECT_TRUE(observer->IsRegistered());
  EXPECT_TRUE(manager.UnregisterObserver(0, *observer));
  EXPECT_FALSE(observer->IsRegistered());

  manager.ApplyItems(0, MakeItems({tree["a"]}), Manager::OperationSet);
  EXPECT_TRUE(observer->calls.empty());
}

void UnregisteringFromInsideACallback_DeliversTheEndAndNothingAfter(KernelUnderTest& kernel)
{
  if (!HasSelection(kernel)) {
    GTEST_SKIP() << "this world has no selection";
  }
  const TestTree tree(kernel);
  Manager& manager = *kernel.GetWorld().selectionManager;
  const auto observer = du::MakeSmart<FollowingObserver>();
  manager.RegisterObserver(0, *observer);
  observer->onChange = [&] { EXPECT_TRUE(manager.UnregisterObserver(0, *observer)); };

  manager.ApplyItems(0, MakeItems({tree["a"]}), Manager::OperationSet);
  manager.ApplyItems(0, MakeItems({tree["b"]}), Manager::OperationSet);

  EXPECT_EQ(observer->calls, (std::vector<std::string>{"begin", "changed", "end"}));
}

void Queries_TellByInstanceAndType(KernelUnderTest& kernel)
{
  if (!HasSelection(kernel)) {
    GTEST_SKIP() << "this world has no selection";
  }
  const TestTree tree(kernel);
  Manager& manager = *kernel.GetWorld().selectionManager;
  manager.ApplyItems(0, MakeItems({tree["a"], tree["b"]}), Manager::OperationSet);

  const auto contains = [&](const char* name) {
    return manager.ContainsItem(0, du::MakeSmart<zelk::ObjectSelectionItem>(tree[name]), zelk::ExpandRuleInstances);
  };
  EXPECT_TRUE(contains("a"));
  EXPECT_FALSE(contains("c"));
  EXPECT_EQ(manager.GetSelectedCount(0, Manager::GetInstanceTypes(), zelk::ExpandRuleInstances), 2U);
  EXPECT_EQ(manager.GetSelectedCount(0, {"no such type"}, zelk::ExpandRuleInstances), 0U);
  EXPECT_EQ(manager.GetSelectedCount(4, Manager::GetInstanceTypes(), zelk::ExpandRuleInstances), 0U);
}

void GetSelectedInstances_AddsToTheSet(KernelUnderTest& kernel)
{
  if (!HasSelection(kernel)) {
    GTEST_SKIP() << "this world has no selection";
  }
  const TestTree tree(kernel);
  Manager& manager = *kernel.GetWorld().selectionManager;
  manager.ApplyItems(0, MakeItems({tree["a"]}), Manager::OperationSet);
  std::set<du::SmartPtr<zelk::Instance>> selected{tree["d"]};

  manager.GetSelectedInstances(0, selected, zelk::ExpandRuleInstances);

  EXPECT_TRUE(selected == (std::set<du::SmartPtr<zelk::Instance>>{tree["a"], tree["d"]}));
}

void Queries_AreSafeFromAnotherThread(KernelUnderTest& kernel)
{
  if (!HasSelection(kernel)) {
    GTEST_SKIP() << "this world has no selection";
  }
  const TestTree tree(kernel);
  Manager& manager = *kernel.GetWorld().selectionManager;
  std::atomic<bool> isDone{false};
  std::atomic<bool> sawWholeStates{true};
  std::thread reader([&] {
    while (!isDone) {
      const std::size_t count = GetSelected(manager, 0).size();
      sawWholeStates = sawWholeStates && (count == 0 || count == 3)
                       && manager.GetSelectedCount(0, {}, zelk::ExpandRuleInstances) == 0;
    }
  });

  for (int round = 0; round < 200; ++round) {
    manager.ApplyItems(0, MakeItems({tree["a"], tree["b"], tree["x"]}), Manager::OperationSet);
    manager.ApplyItems(0, {}, Manager::OperationSet);
  }
  isDone = true;
  reader.join();

  EXPECT_TRUE(sawWholeStates);
}

}  // namespace

std::vector<ContractCase> GetSelectionCases()
{
  const char* group = "Selection";
  return {
      {group, "Operations_ChangeTheListAndAnswerHowMuch", &Operations_ChangeTheListAndAnswerHowMuch},
      {group, "NullItems_ArePassedOver", &NullItems_ArePassedOver},
      {group, "Observers_CanFollowTheListByWhatTheyAreTold", &Observers_CanFollowTheListByWhatTheyAreTold},
      {group, "WhatChangesNothing_IsNotTold", &WhatChangesNothing_IsNotTold},
      {group, "Lists_AreIndependent", &Lists_AreIndependent},
      {group, "Registration_HappensOnceOnEachList", &Registration_HappensOnceOnEachList},
      {group, "UnregisteringFromInsideACallback_DeliversTheEndAndNothingAfter",
       &UnregisteringFromInsideACallback_DeliversTheEndAndNothingAfter},
      {group, "Queries_TellByInstanceAndType", &Queries_TellByInstanceAndType},
      {group, "GetSelectedInstances_AddsToTheSet", &GetSelectedInstances_AddsToTheSet},
      {group, "Queries_AreSafeFromAnotherThread", &Queries_AreSafeFromAnotherThread},
  };
}

}  // namespace kernelcontract
