#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "EngineStage.h"
#include "memkernel/Tree.h"
#include "zelremote/StructureFilterInfo.h"

namespace filtertest {
namespace {

using zelremote::StructureFilterInfo;
using MemInstance = du::SmartPtr<memkernel::Instance>;

/// The tree that a run of `filter` itself leaves, as text.
std::string ShowRunOf(structure_utils::TreeFilterInfoBase& filter, const memkernel::Tree& kernel)
{
  const auto result = du::MakeSmart<guitree::FilteredTree>();
  du::SmartPtr<du::RefCounted> none;
  result->BuildTree(filter, Instance(kernel.GetRootInstance()), nullptr, none, {}, nullptr);
  return Show(result->GetRoot());
}

/// As a job does it: by a duplicate.
std::string ShowResult(StructureFilterInfo& filter, const memkernel::Tree& kernel)
{
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());
  return ShowRunOf(*duplicate, kernel);
}

/// A body with something below it, two nuts of one product, and a box with a bolt and its skin, which is a body.
class StructureFilterTree : public testing::Test {
protected:
  StructureFilterTree()
  {
    const auto assembly = kernel->CreateProduct({.name = "assembly"});
    const auto nut = kernel->CreateProduct({.name = "nut"});
    const auto body = kernel->CreateProduct({.name = "body", .flags = memkernel::InstanceBody});
    const auto root = kernel->CreateRoot(assembly, "root");
    kernel->AddChild(kernel->AddChild(root, body, "block"), assembly, "face");
    for (const auto& [name, below] : {std::pair("nut1", "rim1"), {"nut2", "rim2"}}) {
      kernel->AddChild(kernel->AddChild(root, nut, name), assembly, below);
    }
    const auto box = kernel->AddChild(root, assembly, "box");
    kernel->AddChild(box, assembly, "bolt");
    kernel->AddChild(box, body, "skin");
  }

  /// The results for a text without and with siblings.
  [[nodiscard]] Names ShowBoth(const std::string& text)
  {
    filter.SetText(text);
    Names results;
    for (const bool showsSiblings : {false, true}) {
      filter.SetShowSiblings(showsSiblings);
      results.push_back(ShowResult(filter, *kernel));
    }
    return results;
  }

  du::SmartPtr<memkernel::Tree> kernel = du::MakeSmart<memkernel::Tree>();
  StructureFilterInfo filter{"panel"};

  const std::string withoutBodies = "root[nut1[rim1] nut2[rim2] box[bolt]]";
  const std::string collapsed = "root[block[face] nut1[rim1] box[bolt skin]]";
};

TEST_F(StructureFilterTree, HideBodies_AloneAndWithSiblings_LeavesOutBodies)
{
  filter.hideBodies = true;

  EXPECT_EQ(ShowBoth(""), Names(2, withoutBodies));
}

TEST_F(StructureFilterTree, CollapseInstances_AloneAndWithSiblings_LeavesOutLaterSiblings)
{
  filter.collapseInstances = true;

  EXPECT_EQ(ShowBoth(""), Names(2, collapsed));
}

TEST_F(StructureFilterTree, BothTogether_AloneAndWithSiblings_LeaveOutEither)
{
  filter.hideBodies = true;
  filter.collapseInstances = true;

  EXPECT_EQ(ShowBoth(""), Names(2, "root[nut1[rim1] box[bolt]]"));
}

TEST_F(StructureFilterTree, TextWhereBodiesAreHidden_BringsSiblingsAlongButNoBody)
{
  filter.hideBodies = true;

  EXPECT_EQ(ShowBoth("nut"), (Names{"root[nut1 nut2]", "root[nut1 nut2 box]"}));
  EXPECT_EQ(ShowBoth("bolt"), Names(2, "root[box[bolt]]"));
}

TEST_F(StructureFilterTree, TextWhereInstancesAreCollapsed_BringsSiblingsAlongButNoLaterOne)
{
  filter.collapseInstances = true;

  EXPECT_EQ(ShowBoth("nut"), (Names{"root[nut1]", "root[block nut1 box]"}));
  EXPECT_EQ(ShowBoth("bolt"), (Names{"root[box[bolt]]", "root[box[bolt skin]]"}));
}

TEST_F(StructureFilterTree, TextThatOnlyHiddenOnesHave_FindsNothing)
{
  filter.hideBodies = true;
  EXPECT_EQ(ShowBoth("skin"), Names(2, "root"));
  EXPECT_EQ(ShowBoth("face"), Names(2, "root"));

  filter.hideBodies = false;
  filter.collapseInstances = true;
  EXPECT_EQ(ShowBoth("nut2"), Names(2, "root"));
  EXPECT_EQ(ShowBoth("rim2"), Names(2, "root"));
}

TEST_F(StructureFilterTree, TextWhereNothingIsHidden_BringsAllSiblingsAlong)
{
  EXPECT_EQ(ShowBoth("nut"), (Names{"root[nut1 nut2]", "root[block nut1 nut2 box]"}));
}

TEST_F(StructureFilterTree, AFilterThatRunsAgain_BeginsAnew)
{
  filter.hideBodies = true;
  filter.SetShowSiblings(true);

  for (int round = 0; round < 2; ++round) {
    filter.SetText("nut");
    EXPECT_EQ(ShowRunOf(filter, *kernel), "root[nut1 nut2 box]");
    filter.SetText("");
    EXPECT_EQ(ShowRunOf(filter, *kernel), withoutBodies);
    filter.hideBodies = false;
    filter.SetText("nut");
    EXPECT_EQ(ShowRunOf(filter, *kernel), "root[block nut1 nut2 box]");
    filter.hideBodies = true;
  }
}

TEST_F(StructureFilterTree, GetShowSiblings_IsFalseInTheHiddenPassOnly)
{
  std::set<Instance> selected;
  du::SmartPtr<du::RefCounted> none;
  const Instance root(kernel->GetRootInstance());
  filter.hideBodies = true;
  filter.SetShowSiblings(true);
  EXPECT_TRUE(filter.GetShowSiblings());

  EXPECT_FALSE(filter.IsFilteredOut(root, selected, true, none, nullptr));
  EXPECT_FALSE(filter.GetShowSiblings());
  EXPECT_FALSE(filter.IsFilteredOut(root, selected, false, none, nullptr));
  EXPECT_TRUE(filter.GetShowSiblings());
  EXPECT_TRUE(filter.IsFilteredOut(nullptr, selected, true, none, nullptr));
  EXPECT_FALSE(filter.GetShowSiblings());
}

TEST_F(StructureFilterTree, ARunOfADuplicate_LeavesWhatItsOriginalAnswers)
{
  filter.hideBodies = true;
  filter.SetShowSiblings(true);

  EXPECT_EQ(ShowResult(filter, *kernel), withoutBodies);

  EXPECT_TRUE(filter.GetShowSiblings());
}

TEST_F(StructureFilterTree, CopiesOfAFilterInItsHiddenPass_AreInNone)
{
  filter.hideBodies = true;
  filter.SetShowSiblings(true);
  EXPECT_EQ(ShowRunOf(filter, *kernel), withoutBodies);
  ASSERT_FALSE(filter.GetShowSiblings());

  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());
  EXPECT_TRUE(duplicate->GetShowSiblings());
  StructureFilterInfo copy = filter;
  EXPECT_TRUE(copy.GetShowSiblings());
  EXPECT_EQ(ShowRunOf(copy, *kernel), withoutBodies);
  copy = filter;
  EXPECT_TRUE(copy.GetShowSiblings());
}

/// An instance before it is made; the first is the root, the others come after their parents.
struct Draft {
  std::size_t parent = 0;
  std::size_t product = 0;
};

constexpr std::size_t s_bodyProduct = 2;
constexpr std::size_t s_productCount = 4;

std::vector<Draft> DraftTree()
{
  std::vector<Draft> drafts(*rc::gen::inRange<std::size_t>(1, 40));
  for (std::size_t i = 1; i < drafts.size(); ++i) {
    drafts[i] = {*rc::gen::inRange<std::size_t>(0, i), *rc::gen::inRange<std::size_t>(0, s_productCount)};
  }
  return drafts;
}

/// What the filter hides, without what is below it.
bool IsHiddenItself(const std::vector<Draft>& drafts, std::size_t number, const StructureFilterInfo& filter)
{
  const Draft& draft = drafts[number];
  const auto isEarlierSibling = [&](const Draft& other) {
    return other.parent == draft.parent && other.product == draft.product;
  };
  return number > 0
         && ((filter.hideBodies && draft.product == s_bodyProduct)
             || (filter.collapseInstances
                 && std::any_of(drafts.begin() + 1, drafts.begin() + static_cast<std::ptrdiff_t>(number),
                                isEarlierSibling)));
}

/// The tree of the drafts; what `filter` hides is not even made if `leavesOut`.
du::SmartPtr<memkernel::Tree> MakeTree(const std::vector<Draft>& drafts, const StructureFilterInfo& filter,
                                       bool leavesOut)
{
  auto kernel = du::MakeSmart<memkernel::Tree>();
  std::vector<du::SmartPtr<memkernel::Product>> products;
  for (std::size_t i = 0; i < s_productCount; ++i) {
    products.push_back(kernel->CreateProduct(
        {.name = "product", .flags = i == s_bodyProduct ? unsigned{memkernel::InstanceBody} : 0U}));
  }
  std::vector<MemInstance> made{kernel->CreateRoot(products.front(), "n0")};
  for (std::size_t i = 1; i < drafts.size(); ++i) {
    const MemInstance& parent = made[drafts[i].parent];
    const bool isMade = parent && !(leavesOut && IsHiddenItself(drafts, i, filter));
    const du::Symbol name(std::string_view("n" + std::to_string(i)));
    made.push_back(isMade ? kernel->AddChild(parent, products[drafts[i].product], name) : nullptr);
  }
  return kernel;
}

RC_GTEST_PROP(StructureFilterTreeModel, AFilterThatHides_LeavesWhatATreeWithoutTheHiddenOnesWould, ())
{
  const std::vector<Draft> drafts = DraftTree();
  StructureFilterInfo filter("panel");
  filter.hideBodies = *rc::gen::arbitrary<bool>();
  filter.collapseInstances = *rc::gen::arbitrary<bool>();
  filter.SetShowSiblings(*rc::gen::arbitrary<bool>());
  filter.SetText(*rc::gen::element<std::string>("", "n", "2", "3", "n1*", "nothing"));
  StructureFilterInfo plain = filter;
  plain.hideBodies = false;
  plain.collapseInstances = false;

  const std::string result = ShowResult(filter, *MakeTree(drafts, filter, false));

  RC_ASSERT(result == ShowResult(plain, *MakeTree(drafts, filter, true)));
}

}  // namespace
}  // namespace filtertest
