#include "BranchRemoval.h"

#include <gtest/gtest.h>

#include "stepimport/Import.h"
#include "zelk/TreeObserver.h"

namespace {

class RemovalCounter final : public zelk::TreeObserver {
public:
  void OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& /*parent*/) override
  {
    ++count;
    leavesOnly = leavesOnly && !instance->HasChildren();
  }

  int count = 0;
  bool leavesOnly = true;
};

class BranchRemoval : public testing::Test {
protected:
  void SetUp() override
  {
    root = tree->CreateRoot(tree->CreateProduct({.name = "Files"}));
    const auto read = stepimport::Import(SAMPLES_DIR "/nested-assembly.stp", *tree, root, nullptr);
    ASSERT_TRUE(read.ok) << read.error;
    top = read.instance;
    tree->RegisterObserver(*counter, false);
  }
  void TearDown() override { tree->UnregisterObserver(*counter); }
  [[nodiscard]] unsigned int Count() const
  {
    unsigned int count = 0;
    tree->GetNumInstances(count);
    return count;
  }
  [[nodiscard]] du::SmartPtr<memkernel::Instance> GetFirstChild() const
  {
    du::SmartPtr<zelk::BaseInstance> child;
    top->GetBaseFirstChild(child);
    return du::DynamicCast<memkernel::Instance>(child);
  }
  int GoOnToTheEnd()
  {
    int portions = 1;
    while (removal.GoOn(1)) {
      ++portions;
    }
    return portions;
  }

  const du::SmartPtr<memkernel::Tree> tree = du::MakeSmart<memkernel::Tree>();
  const du::SmartPtr<RemovalCounter> counter = du::MakeSmart<RemovalCounter>();
  du::SmartPtr<memkernel::Instance> root;
  du::SmartPtr<memkernel::Instance> top;
  viewer::BranchRemoval removal{*tree};
};

TEST_F(BranchRemoval, InPortions_TakesOutTheWholeBranchAndNothingElse)
{
  const unsigned int branch = Count() - 1;
  removal.Begin(top);

  const int portions = GoOnToTheEnd();

  EXPECT_EQ(Count(), 1U);
  EXPECT_TRUE(root->IsInTree());
  EXPECT_EQ(counter->count, static_cast<int>(branch));
  EXPECT_GE(portions, static_cast<int>(branch));
}

TEST_F(BranchRemoval, OfABranch_NeverTakesOutMoreThanALeafAtOnce)
{
  removal.Begin(top);

  GoOnToTheEnd();

  EXPECT_TRUE(counter->leavesOnly);
}

TEST_F(BranchRemoval, OfAPart_LeavesTheOthers)
{
  const unsigned int before = Count();
  removal.Begin(GetFirstChild());

  GoOnToTheEnd();

  EXPECT_LT(Count(), before);
  EXPECT_TRUE(top->IsInTree());
  EXPECT_TRUE(GetFirstChild());
}

TEST_F(BranchRemoval, OfWhatOthersTakeOutMeanwhile_Ends)
{
  removal.Begin(top);
  ASSERT_TRUE(removal.GoOn(3));

  ASSERT_TRUE(tree->Remove(top));
  GoOnToTheEnd();

  EXPECT_EQ(Count(), 1U);
}

TEST_F(BranchRemoval, WhereOthersTakeOutAPartMeanwhile_TakesOutTheRest)
{
  removal.Begin(top);
  ASSERT_TRUE(removal.GoOn(3));

  ASSERT_TRUE(tree->Remove(GetFirstChild()));
  GoOnToTheEnd();

  EXPECT_EQ(Count(), 1U);
}

TEST_F(BranchRemoval, OfNothing_IsDoneAtOnce)
{
  const unsigned int before = Count();
  removal.Begin({});

  EXPECT_FALSE(removal.GoOn(1));

  EXPECT_EQ(Count(), before);
}

}  // namespace
