#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>
#include <utility>

#include "Cases.h"
#include "TestTree.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelk/ComponentInstance.h"

namespace kernelcontract {
namespace {

using Base = du::SmartPtr<zelk::BaseInstance>;

class StoppingVisitor : public zelk::BaseInstanceVisitor {
public:
  bool VisitInstance(const Base& /*instance*/) override { return ++visits < 3; }
  int visits = 0;
};

zelk::Tree& GetTree(KernelUnderTest& kernel)
{
  return *kernel.GetWorld().tree;
}

std::vector<Base> GetChildren(const zelk::BaseInstance& instance)
{
  std::vector<Base> children;
  instance.GetBaseChildren(children);
  return children;
}

du::Symbol GetPartId(const zelk::BaseInstance& instance)
{
  du::SmartPtr<zelk::PropertyValue> value;
  instance.GetPropertyValue(value, zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, "Part ID", "");
  du::Symbol id;
  if (value) {
    value->GetValueAsSymbol(id);
  }
  return id;
}

unsigned int CountInstances(const zelk::BaseTree& tree)
{
  unsigned int count = 0;
  tree.GetNumInstances(count);
  return count;
}

void AnEmptyTree_HasNoRootAndNothingToVisit(KernelUnderTest& kernel)
{
  Base root(kernel.AddInstance(nullptr, "engine", "root"));
  kernel.RemoveInstance(du::DynamicCast<zelk::Instance>(root));
  du::SmartPtr<zelk::Instance> instanceRoot = du::DynamicCast<zelk::Instance>(root);

  GetTree(kernel).GetBaseRoot(root);
  GetTree(kernel).GetRoot(instanceRoot);

  EXPECT_FALSE(root);
  EXPECT_FALSE(instanceRoot);
  EXPECT_EQ(CountInstances(GetTree(kernel)), 0U);
  EXPECT_TRUE(Visit(GetTree(kernel)).empty());
}

void Visit_DeliversEachInstanceOnceParentsFirst(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);

  std::set<Base> seen;
  for (const Base& instance : Visit(GetTree(kernel))) {
    Base parent;
    instance->GetBaseParent(parent);
    EXPECT_TRUE(!parent || seen.contains(parent)) << "an instance comes before its parent";
    EXPECT_TRUE(seen.insert(instance).second) << "an instance comes twice";
  }

  EXPECT_EQ(seen.size(), tree.GetNames().size());
  EXPECT_EQ(CountInstances(GetTree(kernel)), tree.GetNames().size());
}

void Visit_EndsWhenTheVisitorSaysSo(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  StoppingVisitor visitor;

  GetTree(kernel).Visit(visitor, zelk::BaseTree::VisitParentsFirst);

  EXPECT_EQ(visitor.visits, 3);
}

void ChildrenSiblingsAndParents_Agree(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  for (const Base& instance : Visit(GetTree(kernel))) {
    const std::vector<Base> children = GetChildren(*instance);

    std::vector<Base> walked;
    Base child;
    for (instance->GetBaseFirstChild(child); child; child->GetBaseNextSibling(child)) {
      walked.push_back(child);
      Base parent;
      child->GetBaseParent(parent);
      EXPECT_TRUE(parent == instance);
      du::SmartPtr<zelk::BaseTree> owner;
      child->GetBaseTree(owner);
      EXPECT_TRUE(du::DynamicCast<zelk::Tree>(owner) == kernel.GetWorld().tree);
    }

    EXPECT_TRUE(walked == children);
    EXPECT_EQ(instance->HasChildren(), !children.empty());
  }
  EXPECT_TRUE(GetChildren(*tree["root"]) == (std::vector<Base>{tree["a"], tree["b"], tree["c"], tree["d"]}));
}

void GetBaseChildren_ReplacesWhatWasThere(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  std::vector<Base> children{tree["d"], tree["root"]};

  tree["a"]->GetBaseChildren(children);
  EXPECT_TRUE(children == (std::vector<Base>{tree["a1"], tree["a2"]}));

  tree["d"]->GetBaseChildren(children);
  EXPECT_TRUE(children.empty());
}

void Getters_OverwriteAHolderThatHoldsSomething(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  Base holder(tree["a"]);

  tree["d"]->GetBaseFirstChild(holder);
  EXPECT_FALSE(holder);

  holder = tree["a"];
  tree["d"]->GetBaseNextSibling(holder);
  EXPECT_FALSE(holder);

  holder = tree["a"];
  tree["root"]->GetBaseParent(holder);
  EXPECT_FALSE(holder);
}

void AGetter_IntoTheLastHolderOfTheInstance_FindsFirstAndAssignsLast(KernelUnderTest& kernel)
{
  Base holder;
  Base x;
  {
    const TestTree tree(kernel);
    holder = tree["a"];
    x = tree["x"];
    kernel.RemoveInstance(tree["a"]);
  }

  holder->GetBaseFirstChild(holder);
  ASSERT_TRUE(holder) << "the subtree of what was removed stays whole";
  holder->GetBaseNextSibling(holder);
  // The instances above may have gone with their last holders; what must not happen is a use of them.
  if (holder) {
    holder->GetBaseFirstChild(holder);
    EXPECT_TRUE(holder == x);
    holder->GetBaseNextSibling(holder);
    EXPECT_FALSE(holder);
  }
}

void Keys_AreUniqueAndDoNotChange(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  std::map<Base, std::pair<du::Symbol, du::Symbol>> keys;
  std::set<std::pair<du::Symbol, du::Symbol>> different;
  for (const Base& instance : Visit(GetTree(kernel))) {
    keys[instance] = {instance->GetInstanceKey(), instance->GetInstanceSubKey()};
    different.insert(keys[instance]);
  }
  EXPECT_EQ(different.size(), keys.size());

  kernel.RenameInstance(tree["c"], "renamed");
  kernel.RemoveInstance(tree["b"]);
  const auto added = kernel.AddInstance(tree["root"], "bolt", "e");

  for (const auto& [instance, pair] : keys) {
    EXPECT_TRUE(instance->GetInstanceKey() == pair.first && instance->GetInstanceSubKey() == pair.second);
  }
  different.erase(keys[tree["b"]]);
  EXPECT_FALSE(different.contains({added->GetInstanceKey(), added->GetInstanceSubKey()}));
}

void TheRoot_HasNoParentAndAloneCarriesTheRootId(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  Base root;
  GetTree(kernel).GetBaseRoot(root);
  ASSERT_TRUE(root == tree["root"]);

  for (const Base& instance : Visit(GetTree(kernel))) {
    Base parent;
    instance->GetBaseParent(parent);
    EXPECT_EQ(!parent, instance == root);
    EXPECT_EQ(GetPartId(*instance) == zelk::ComponentInstance::ROOT_INSTANCE_ID, instance == root);
  }
}

void TheNumberOfInstances_FollowsEachEdit(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const unsigned int before = CountInstances(GetTree(kernel));

  kernel.AddInstance(tree["d"], "pin", "d1");
  EXPECT_EQ(CountInstances(GetTree(kernel)), before + 1);

  kernel.RemoveInstance(tree["a"]);
  EXPECT_EQ(CountInstances(GetTree(kernel)), before + 1 - 4);
  EXPECT_EQ(Visit(GetTree(kernel)).size(), before + 1 - 4);
}

void GetInstancesAndDescendents_AddsToTheSet(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  std::set<Base> found{tree["d"]};

  zelk::BaseInstance::GetInstancesAndDescendents({tree["a"], tree["b"]}, found);

  EXPECT_TRUE(found == (std::set<Base>{tree["a"], tree["a1"], tree["a2"], tree["x"], tree["b"], tree["d"]}));
}

void AMissingProperty_IsItsFallback(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  du::SmartPtr<zelk::PropertyValue> value;
  std::string text = "before";

  tree["a"]->GetPropertyValue(value, "no such group", "no such name", "fallback");
  ASSERT_TRUE(value);
  value->GetValueAsString(text);
  EXPECT_EQ(text, "fallback");

  tree["a"]->GetPropertyValue(value, "no such group", "no such name", du::Symbol::EMPTY);
  EXPECT_FALSE(value);
}

void SiblingsOfOneProduct_AreMultiInstanced(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  std::vector<du::SmartPtr<zelk::Instance>> group{tree["d"]};

  tree["c"]->GetAllMultiInstancedSibling(group);

  EXPECT_TRUE(group == (std::vector<du::SmartPtr<zelk::Instance>>{tree["b"], tree["c"]}));
  EXPECT_TRUE(tree["b"]->IsMultiInstancedSibling());
  EXPECT_TRUE(tree["c"]->IsMultiInstancedSibling());
  EXPECT_TRUE(tree["b"]->IsFirstMultiInstancedSibling());
  EXPECT_FALSE(tree["c"]->IsFirstMultiInstancedSibling());
  EXPECT_TRUE(tree["c"]->GetFirstMultiInstancedSibling() == tree["b"]);
}

void AnInstanceAloneOfItsProduct_HasNoGroup(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  // A cousin of the same product is no sibling.
  kernel.AddInstance(tree["a"], "bolt", "cousin");
  kernel.RemoveInstance(tree["b"]);

  for (const char* name : {"c", "d", "root"}) {
    EXPECT_FALSE(tree[name]->IsMultiInstancedSibling()) << name;
    EXPECT_FALSE(tree[name]->IsFirstMultiInstancedSibling()) << name;
    EXPECT_TRUE(tree[name]->GetFirstMultiInstancedSibling() == tree[name]) << name;
  }
}

void AnInstance_IsOneByItsClassNumberToo(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);

  for (const Base& instance : Visit(GetTree(kernel))) {
    EXPECT_EQ(zelk::AsInstance(instance.Get()), dynamic_cast<const zelk::Instance*>(instance.Get()));
  }
}

void GetBaseRoot_IsSafeFromAnyThread(KernelUnderTest& kernel)
{
  std::atomic<bool> isDone{false};
  std::atomic<bool> sawNoneOrAnInstance{true};
  const zelk::Tree& tree = GetTree(kernel);
  std::thread reader([&] {
    while (!isDone) {
      Base root;
      tree.GetBaseRoot(root);
      sawNoneOrAnInstance = sawNoneOrAnInstance && (!root || root->IsATypeOf(zelk::BaseInstance::CLASS_TYPE));
    }
  });

  for (int round = 0; round < 200; ++round) {
    kernel.RemoveInstance(kernel.AddInstance(nullptr, "engine", "root"));
  }
  isDone = true;
  reader.join();

  EXPECT_TRUE(sawNoneOrAnInstance);
}

}  // namespace

std::vector<ContractCase> GetTreeCases()
{
  return {
      {"Tree", "AnEmptyTree_HasNoRootAndNothingToVisit", &AnEmptyTree_HasNoRootAndNothingToVisit},
      {"Tree", "Visit_DeliversEachInstanceOnceParentsFirst", &Visit_DeliversEachInstanceOnceParentsFirst},
      {"Tree", "Visit_EndsWhenTheVisitorSaysSo", &Visit_EndsWhenTheVisitorSaysSo},
      {"Tree", "ChildrenSiblingsAndParents_Agree", &ChildrenSiblingsAndParents_Agree},
      {"Tree", "GetBaseChildren_ReplacesWhatWasThere", &GetBaseChildren_ReplacesWhatWasThere},
      {"Tree", "Getters_OverwriteAHolderThatHoldsSomething", &Getters_OverwriteAHolderThatHoldsSomething},
      {"Tree", "AGetter_IntoTheLastHolderOfTheInstance_FindsFirstAndAssignsLast",
       &AGetter_IntoTheLastHolderOfTheInstance_FindsFirstAndAssignsLast},
      {"Tree", "Keys_AreUniqueAndDoNotChange", &Keys_AreUniqueAndDoNotChange},
      {"Tree", "TheRoot_HasNoParentAndAloneCarriesTheRootId", &TheRoot_HasNoParentAndAloneCarriesTheRootId},
      {"Tree", "TheNumberOfInstances_FollowsEachEdit", &TheNumberOfInstances_FollowsEachEdit},
      {"Tree", "GetInstancesAndDescendents_AddsToTheSet", &GetInstancesAndDescendents_AddsToTheSet},
      {"Tree", "AMissingProperty_IsItsFallback", &AMissingProperty_IsItsFallback},
      {"Tree", "SiblingsOfOneProduct_AreMultiInstanced", &SiblingsOfOneProduct_AreMultiInstanced},
      {"Tree", "AnInstanceAloneOfItsProduct_HasNoGroup", &AnInstanceAloneOfItsProduct_HasNoGroup},
      {"Tree", "AnInstance_IsOneByItsClassNumberToo", &AnInstance_IsOneByItsClassNumberToo},
      {"Tree", "GetBaseRoot_IsSafeFromAnyThread", &GetBaseRoot_IsSafeFromAnyThread},
  };
}

}  // namespace kernelcontract
