#include <gtest/gtest.h>

#include <set>

#include "FakeInstance.h"
#include "SmallTree.h"
#include "zelk/Instance.h"

namespace {

using kerneltest::FakeInstance;
using kerneltest::SmallTree;
using zelk::BaseInstance;
using zelk::Instance;
using BaseSet = std::set<du::SmartPtr<BaseInstance>>;
using InstanceSet = std::set<du::SmartPtr<Instance>>;

TEST(GetInstancesAndDescendents, OfTheRoot_GivesTheWholeTree)
{
  const SmallTree tree;
  BaseSet out;

  BaseInstance::GetInstancesAndDescendents({tree.root}, out);

  EXPECT_EQ(out, (BaseSet{tree.root, tree.a, tree.a1, tree.a2, tree.b, tree.b1}));
}

TEST(GetInstancesAndDescendents, OfABranch_LeavesItsSiblingsAndParentsOut)
{
  const SmallTree tree;
  BaseSet out;

  BaseInstance::GetInstancesAndDescendents({tree.a, tree.b1}, out);

  EXPECT_EQ(out, (BaseSet{tree.a, tree.a1, tree.a2, tree.b1}));
}

TEST(GetInstancesAndDescendents, AddsToWhatIsThere)
{
  const SmallTree tree;
  BaseSet out{tree.b, tree.a1};

  BaseInstance::GetInstancesAndDescendents({tree.a}, out);

  EXPECT_EQ(out, (BaseSet{tree.a, tree.a1, tree.a2, tree.b}));
}

TEST(GetInstancesAndDescendents, OfStartsBelowEachOther_GivesEachInstance)
{
  const SmallTree tree;
  BaseSet out;

  BaseInstance::GetInstancesAndDescendents({tree.root, tree.a, tree.a2, tree.b1}, out);

  EXPECT_EQ(out.size(), 6U);
}

TEST(GetInstancesAndDescendents, WithOneSetForBoth_CompletesIt)
{
  const SmallTree tree;
  BaseSet both{tree.a, tree.b};

  BaseInstance::GetInstancesAndDescendents(both, both);

  EXPECT_EQ(both, (BaseSet{tree.a, tree.a1, tree.a2, tree.b, tree.b1}));
}

TEST(GetInstancesAndDescendents, PassesOverNullAndBearsNothing)
{
  const SmallTree tree;
  BaseSet out;

  BaseInstance::GetInstancesAndDescendents({}, out);
  EXPECT_TRUE(out.empty());

  BaseInstance::GetInstancesAndDescendents({du::SmartPtr<BaseInstance>(), tree.b}, out);
  EXPECT_EQ(out, (BaseSet{tree.b, tree.b1}));
}

TEST(GetInstancesAndDescendents, OfInstances_IsTheSame)
{
  const SmallTree tree;
  InstanceSet out{tree.b1};

  Instance::GetInstancesAndDescendents({tree.a, du::SmartPtr<Instance>()}, out);
  EXPECT_EQ(out, (InstanceSet{tree.a, tree.a1, tree.a2, tree.b1}));

  Instance::GetInstancesAndDescendents(out, out);
  EXPECT_EQ(out.size(), 4U);
}

TEST(GetInstancesAndDescendents, OfADeepChainWithStartsOnEveryLevel_NeitherRecursesNorWalksTwice)
{
  constexpr std::size_t depth = 100'000;
  const auto root = du::MakeSmart<FakeInstance>();
  BaseSet starts{root};
  du::SmartPtr<FakeInstance> last = root;
  for (std::size_t i = 1; i < depth; ++i) {
    last = last->AddChild();
    starts.insert(last);
  }
  BaseSet fromTheRoot;
  BaseSet fromEverywhere;

  BaseInstance::GetInstancesAndDescendents({root}, fromTheRoot);
  BaseInstance::GetInstancesAndDescendents(starts, fromEverywhere);

  EXPECT_EQ(fromTheRoot.size(), depth);
  EXPECT_EQ(fromEverywhere, starts);
}

TEST(GetInstancesAndDescendents, LeavesNoReferenceBehind)
{
  const SmallTree tree;
  {
    BaseSet out;
    BaseInstance::GetInstancesAndDescendents({tree.root}, out);
  }

  // One of the test and one of the parent.
  EXPECT_EQ(tree.a1->AddReference(nullptr), 3);
  tree.a1->RemoveReference(nullptr);
}

}  // namespace
