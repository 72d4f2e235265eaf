#include <gtest/gtest.h>
// After the header that it needs.
#include <rapidcheck/gtest.h>

#include <map>

#include "TreeFixture.h"

namespace memkerneltest {
namespace {

using memkernel::Instance;
using memkernel::Product;

using Children = std::vector<du::SmartPtr<zelk::BaseInstance>>;

du::SmartPtr<Instance> AsInstance(const du::SmartPtr<zelk::BaseInstance>& base)
{
  return du::DynamicCast<Instance>(base);
}

/// The groups of a list of children by the definition: those that show one product, in order.
std::map<const Product*, std::vector<const zelk::Instance*>> FindGroups(const Children& children)
{
  std::map<const Product*, std::vector<const zelk::Instance*>> groups;
  for (const auto& child : children) {
    const auto instance = AsInstance(child);
    groups[instance->GetProduct().Get()].push_back(instance.Get());
  }
  return groups;
}

std::vector<const zelk::Instance*> GetGroup(const Instance& instance)
{
  std::vector<du::SmartPtr<zelk::Instance>> all;
  instance.GetAllMultiInstancedSibling(all);
  std::vector<const zelk::Instance*> group;
  for (const auto& one : all) {
    group.push_back(one.Get());
  }
  return group;
}

void CheckGroups(const du::SmartPtr<Instance>& parent)
{
  Children children;
  parent->GetBaseChildren(children);
  for (const auto& [product, group] : FindGroups(children)) {
    for (const zelk::Instance* member : group) {
      RC_ASSERT(member->IsMultiInstancedSibling() == (group.size() > 1));
      RC_ASSERT(member->IsFirstMultiInstancedSibling() == (group.size() > 1 && member == group.front()));
      RC_ASSERT(member->GetFirstMultiInstancedSibling().Get() == group.front());
    }
    RC_ASSERT(GetGroup(static_cast<const Instance&>(*group.front())) == group);
  }
}

void CheckLinks(const du::SmartPtr<Instance>& parent, const std::vector<InstancePtr>& expected)
{
  Children children;
  parent->GetBaseChildren(children);
  RC_ASSERT(children.size() == expected.size());
  for (std::size_t i = 0; i < children.size(); ++i) {
    RC_ASSERT(children[i] == expected[i]);
  }
}

/// One random run of edits below one parent. Few products make large groups, many make neighbours that are far apart.
void RunEdits(int productCount, int startCount)
{
  const auto tree = du::MakeSmart<memkernel::Tree>();
  const auto root = tree->CreateRoot(tree->CreateProduct({.name = "R"}));
  std::vector<du::SmartPtr<Product>> products;
  std::vector<InstancePtr> model;
  for (int i = 0; i < productCount; ++i) {
    products.push_back(tree->CreateProduct({.name = "P"}));
  }
  const auto pickProduct = [&] { return products[*rc::gen::inRange<std::size_t>(0, products.size())]; };
  for (int i = 0; i < startCount; ++i) {
    model.push_back(tree->AddChild(root, pickProduct()));
  }
  CheckGroups(root);

  const int edits = *rc::gen::inRange(0, 120);
  for (int i = 0; i < edits; ++i) {
    const int kind = *rc::gen::inRange(0, 6);
    const auto place = static_cast<std::ptrdiff_t>(*rc::gen::inRange<std::size_t>(0, model.size() + 1));
    if (model.empty() || kind == 0) {
      model.push_back(tree->AddChild(root, pickProduct()));
    } else if (kind < 3 && place < std::ssize(model)) {
      const auto at = model.begin() + place;
      const auto made = tree->InsertBefore(*at, pickProduct());
      model.insert(at, made);
    } else {
      // The ends most of all: there a group gets another first or last.
      const auto at = kind == 3 || place == std::ssize(model) ? model.begin() : model.begin() + place;
      RC_ASSERT(tree->Remove(*at));
      RC_ASSERT(!(*at)->IsMultiInstancedSibling());
      model.erase(at);
    }
    CheckLinks(root, model);
    CheckGroups(root);
  }
}

RC_GTEST_PROP(MultiInstancedSiblings, OfAShortList_AgreeWithTheirDefinitionAfterEachEdit, ())
{
  RunEdits(*rc::gen::inRange(1, 4), *rc::gen::inRange(0, 8));
}

RC_GTEST_PROP(MultiInstancedSiblings, OfALongList_AgreeWithTheirDefinitionAfterEachEdit, ())
{
  RunEdits(*rc::gen::inRange(1, 60), *rc::gen::inRange(10, 180));
}

class MultiInstancedSiblingsTest : public TreeFixture {};

TEST_F(MultiInstancedSiblingsTest, InTwoParents_AreTwoGroups)
{
  const auto bolt = MakeProduct("Bolt");
  const auto a = Add(root, "A");
  const auto b = Add(root, "B");
  const auto inA = tree->AddChild(a, bolt);
  const auto inB = tree->AddChild(b, bolt);
  const auto alsoInB = tree->AddChild(b, bolt);

  EXPECT_FALSE(inA->IsMultiInstancedSibling());
  EXPECT_EQ(inA->GetFirstMultiInstancedSibling(), inA);
  EXPECT_TRUE(inB->IsFirstMultiInstancedSibling());
  EXPECT_EQ(alsoInB->GetFirstMultiInstancedSibling(), inB);
}

TEST_F(MultiInstancedSiblingsTest, OfTheSameNameButOfDifferentProducts_AreNoGroup)
{
  const auto a = Add(root, "Body", memkernel::InstanceBody);
  const auto b = Add(root, "Body", memkernel::InstanceBody);

  EXPECT_FALSE(a->IsMultiInstancedSibling());
  EXPECT_FALSE(b->IsMultiInstancedSibling());
}

TEST_F(MultiInstancedSiblingsTest, InARemovedSubtree_StayAGroup)
{
  const auto top = Add(root, "T");
  const auto bolt = MakeProduct("Bolt");
  const auto first = tree->AddChild(top, bolt);
  for (int i = 0; i < 30; ++i) {
    tree->AddChild(top, bolt);
  }
  tree->Remove(top);

  std::vector<du::SmartPtr<zelk::Instance>> group;
  first->GetAllMultiInstancedSibling(group);

  EXPECT_EQ(group.size(), 31U);
  EXPECT_EQ(group.back()->GetFirstMultiInstancedSibling(), first);
}

TEST_F(MultiInstancedSiblingsTest, ThatOutliveTheirParent_AreAlone)
{
  auto top = Add(root, "T");
  const auto bolt = MakeProduct("Bolt");
  const auto first = tree->AddChild(top, bolt);
  const auto second = tree->AddChild(top, bolt);
  tree->Remove(top);

  top.Reset();

  EXPECT_FALSE(first->IsMultiInstancedSibling());
  EXPECT_EQ(second->GetFirstMultiInstancedSibling(), second);
}

}  // namespace
}  // namespace memkerneltest
