#include "BranchWalk.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "memkernel/Tree.h"
#include "stepimport/Import.h"

namespace {

using Instances = std::set<du::SmartPtr<zelk::Instance>>;

class BranchWalk : public testing::Test {
protected:
  void SetUp() override
  {
    const auto read = stepimport::Import(SAMPLES_DIR "/nested-assembly.stp", *tree, {}, nullptr);
    ASSERT_TRUE(read.ok) << read.error;
    top = read.instance;
  }
  [[nodiscard]] du::SmartPtr<zelk::Instance> FindChild(int number) const
  {
    du::SmartPtr<zelk::BaseInstance> child;
    top->GetBaseFirstChild(child);
    for (; number > 0; --number) {
      child->GetBaseNextSibling(child);
    }
    return du::DynamicCast<zelk::Instance>(child);
  }
  [[nodiscard]] static viewer::BranchWalk::InstanceSet FindAll(const Instances& tops)
  {
    Instances all;
    zelk::Instance::GetInstancesAndDescendents(tops, all);
    viewer::BranchWalk::InstanceSet found;
    for (const auto& instance : all) {
      found.insert(instance.Get());
    }
    return found;
  }
  /// As many portions as it takes, each as small as can be.
  int GoOnToTheEnd()
  {
    int portions = 1;
    while (!walk.GoOn(QDeadlineTimer(0))) {
      ++portions;
    }
    return portions;
  }

  const du::SmartPtr<memkernel::Tree> tree = du::MakeSmart<memkernel::Tree>();
  du::SmartPtr<memkernel::Instance> top;
  viewer::BranchWalk walk;
};

TEST_F(BranchWalk, GoOn_InPortions_FindsAllThatIsBelow)
{
  walk.Begin({top});

  const int portions = GoOnToTheEnd();

  const auto found = walk.Take();
  EXPECT_EQ(found, FindAll({top}));
  EXPECT_GE(portions, static_cast<int>(found.size()));
}

TEST_F(BranchWalk, GoOn_WithTimeEnough_EndsAtOnce)
{
  walk.Begin({top});

  EXPECT_TRUE(walk.GoOn(QDeadlineTimer(QDeadlineTimer::Forever)));

  EXPECT_EQ(walk.Take(), FindAll({top}));
}

TEST_F(BranchWalk, Tops_BelowEachOther_AreFoundOnce)
{
  const Instances tops{top, FindChild(0), FindChild(1)};
  walk.Begin(tops);

  GoOnToTheEnd();

  EXPECT_EQ(walk.Take(), FindAll({top}));
}

TEST_F(BranchWalk, ABranch_EndsWhereItEnds)
{
  const auto branch = FindChild(1);
  walk.Begin({branch});

  GoOnToTheEnd();

  const auto found = walk.Take();
  EXPECT_EQ(found, FindAll({branch}));
  EXPECT_FALSE(found.contains(FindChild(2).Get()));
}

TEST_F(BranchWalk, WithoutTops_NothingIsFound)
{
  walk.Begin({});

  EXPECT_TRUE(walk.GoOn(QDeadlineTimer(0)));

  EXPECT_TRUE(walk.Take().empty());
}

TEST_F(BranchWalk, Begin_InTheMiddle_ForgetsWhatWasFound)
{
  walk.Begin({FindChild(1)});
  ASSERT_FALSE(walk.GoOn(QDeadlineTimer(0)));

  walk.Begin({FindChild(0)});
  GoOnToTheEnd();

  EXPECT_EQ(walk.Take(), FindAll({FindChild(0)}));
}

TEST_F(BranchWalk, Removal_BetweenPortions_EndsTheWalk)
{
  walk.Begin({top});
  ASSERT_FALSE(walk.GoOn(QDeadlineTimer(0)));
  ASSERT_FALSE(walk.GoOn(QDeadlineTimer(0)));

  ASSERT_TRUE(tree->Remove(top));
  top.Reset();
  GoOnToTheEnd();

  EXPECT_FALSE(walk.Take().empty());
}

}  // namespace
