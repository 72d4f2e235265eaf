#include <gtest/gtest.h>

#include <vector>

#include "TreeFixture.h"
#include "zelk/BaseInstanceVisitor.h"

namespace memkerneltest {
namespace {

using memkernel::Instance;
using memkernel::Product;

constexpr unsigned int s_many = 1'000'000;

/// Counts, and ends the visit after a number of instances.
class CountingVisitor : public zelk::BaseInstanceVisitor {
public:
  explicit CountingVisitor(unsigned int limit) : m_limit(limit) {}

  bool VisitInstance(const du::SmartPtr<zelk::BaseInstance>& instance) override
  {
    last = instance;
    return ++count < m_limit;
  }

  unsigned int count = 0;
  du::SmartPtr<zelk::BaseInstance> last;

private:
  unsigned int m_limit;
};

class LargeTreeTest : public TreeFixture {
protected:
  [[nodiscard]] unsigned int CountByVisit() const
  {
    CountingVisitor visitor(~0U);
    tree->Visit(visitor, zelk::BaseTree::VisitParentsFirst);
    return visitor.count;
  }
};

TEST_F(LargeTreeTest, Chain_OfAMillionLevels_IsMadeVisitedAndRemoved)
{
  const auto product = MakeProduct("P");
  InstancePtr deepest = root;
  tree->UnregisterObserver(*recorder);
  for (unsigned int i = 0; i < s_many; ++i) {
    deepest = tree->AddChild(deepest, product);
  }
  EXPECT_EQ(CountByVisit(), s_many + 1);

  du::SmartPtr<zelk::BaseInstance> first;
  root->GetBaseFirstChild(first);
  EXPECT_TRUE(tree->Remove(du::DynamicCast<Instance>(first)));
  first.Reset();

  EXPECT_EQ(GetCount(), 1U);
  du::SmartPtr<zelk::BaseInstance> parent = root;
  deepest->GetBaseParent(parent);
  EXPECT_FALSE(parent);
}

TEST_F(LargeTreeTest, List_OfAMillionChildrenOfManyProducts_IsMadeVisitedAndTakenApart)
{
  std::vector<du::SmartPtr<Product>> products;
  tree->UnregisterObserver(*recorder);
  for (int i = 0; i < 1000; ++i) {
    products.push_back(MakeProduct("P"));
  }
  std::vector<InstancePtr> children;
  for (unsigned int i = 0; i < s_many; ++i) {
    children.push_back(tree->AddChild(root, products[i % products.size()]));
  }
  EXPECT_EQ(CountByVisit(), s_many + 1);

  // From the front, from the back, and in between: each time a group loses its first, its last or an inner instance.
  for (std::size_t i = 0; i < 100'000; ++i) {
    tree->Remove(children[i]);
    tree->Remove(children[children.size() - 1 - i]);
    tree->Remove(children[200'000 + 5 * i]);
  }

  EXPECT_EQ(GetCount(), s_many - 300'000 + 1);
  EXPECT_TRUE(children[100'000]->IsFirstMultiInstancedSibling());
  EXPECT_EQ(children[899'999]->GetFirstMultiInstancedSibling(), children[100'999]);
}

TEST_F(LargeTreeTest, List_WhoseProductsComeTwiceAndFarApart_IsTakenApartFromTheFront)
{
  constexpr std::size_t pairs = 100'000;
  std::vector<du::SmartPtr<Product>> products;
  std::vector<InstancePtr> children;
  tree->UnregisterObserver(*recorder);
  for (std::size_t i = 0; i < pairs; ++i) {
    products.push_back(MakeProduct("P"));
  }
  for (std::size_t i = 0; i < 3 * pairs; ++i) {
    children.push_back(tree->AddChild(root, products[i % pairs]));
  }

  for (std::size_t i = 0; i < pairs; ++i) {
    ASSERT_TRUE(children[i]->IsFirstMultiInstancedSibling());
    tree->Remove(children[i]);
    ASSERT_TRUE(children[i + pairs]->IsFirstMultiInstancedSibling());
  }

  EXPECT_EQ(GetCount(), 2 * pairs + 1);
}

TEST_F(LargeTreeTest, Tree_ThatDies_LetsGoOfAllItsInstances)
{
  auto other = du::MakeSmart<memkernel::Tree>();
  auto top = other->CreateRoot(other->CreateProduct({.name = "R"}));
  const auto product = other->CreateProduct({.name = "P"});
  InstancePtr kept = top;
  for (int i = 0; i < 100'000; ++i) {
    kept = other->AddChild(kept, product);
    other->AddChild(kept, product);
  }
  top.Reset();

  other.Reset();

  EXPECT_TRUE(kept->HasChildren());
  EXPECT_FALSE(kept->IsInTree());
}

TEST_F(LargeTreeTest, Visit_ThatIsEnded_GoesNoFurther)
{
  const auto a = Add(root, "A");
  const auto b = Add(a, "B");
  Add(root, "C");
  CountingVisitor visitor(3);

  tree->Visit(visitor, zelk::BaseTree::VisitParentsFirst);

  EXPECT_EQ(visitor.count, 3U);
  EXPECT_EQ(visitor.last, b);
}

TEST_F(LargeTreeTest, Visit_OfAnEmptyTree_CallsNobody)
{
  tree->Remove(root);

  EXPECT_EQ(CountByVisit(), 0U);
}

}  // namespace
}  // namespace memkerneltest
