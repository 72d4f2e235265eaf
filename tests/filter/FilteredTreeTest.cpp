#include "EngineStage.h"
#include "testsupport/PlainBaseInstance.h"

namespace filtertest {
namespace {

TEST(FilteredTree, NewTree_IsEmptyAndCountsNothing)
{
  const auto tree = du::MakeSmart<OpenTree>();

  EXPECT_EQ(tree->GetRoot(), nullptr);
  EXPECT_EQ(tree->hfRoot, nullptr);
  EXPECT_EQ(tree->GetFirstFilteredNode(), nullptr);
  EXPECT_EQ(tree->GetNumInsts(), 0u);
  EXPECT_EQ(tree->GetNumHfInsts(), 0u);
  EXPECT_FALSE(tree->rootIsHfTree);
  EXPECT_TRUE(tree->IsFilteredTreeEmpty());
  EXPECT_TRUE(tree->ZeroReferenceCountHook());
  EXPECT_TRUE(tree->ShouldCreateFilterNode());
}

TEST(FilteredTree, BuildTree_WithoutARootInstance_LeavesNoTreeAndAsksNothing)
{
  Stage stage("root[a]");
  stage.filter.hasHiddenPass = true;
  stage.event = du::MakeSmart<ReportedEvent>();

  stage.Build(nullptr);

  EXPECT_EQ(stage.tree->GetRoot(), nullptr);
  EXPECT_EQ(stage.tree->hfRoot, nullptr);
  EXPECT_FALSE(stage.tree->rootIsHfTree);
  EXPECT_EQ(stage.tree->GetNumHfInsts(), 0u);
  EXPECT_TRUE(stage.asks.empty());
  EXPECT_TRUE(stage.event->reports.empty());
}

TEST(FilteredTree, BuildTree_WithoutARootInstance_ThrowsAwayTheFormerTreeButNotTheSets)
{
  Stage stage("root[a]");
  stage.LetThrough({"a"});
  stage.Build();

  stage.Build(nullptr);

  EXPECT_EQ(stage.tree->GetRoot(), nullptr);
  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), nullptr);
  EXPECT_EQ(stage.tree->GetNumInsts(), 0u);
  EXPECT_EQ(stage.GetMatched(), Names{"a"});
  EXPECT_EQ(stage.GetCreated(), Names{"a"});
}

TEST(FilteredTree, IsFilteredTreeEmpty_OfATreeOfAncestorsAlone_IsTrue)
{
  Stage stage("root[a[b]]");
  stage.Spare("b");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a[b]]");
  EXPECT_TRUE(stage.tree->IsFilteredTreeEmpty());
  EXPECT_TRUE(stage.GetCreated().empty());
}

TEST(FilteredTree, AddMatchedFilterItem_WithoutAMatch_AddsToTheCreatedItemsAlone)
{
  const Stage stage("root[a]");

  stage.tree->AddMatchedFilterItem(stage.kernel["a"], false);

  EXPECT_TRUE(stage.tree->IsContainItem(stage.kernel["a"]));
  EXPECT_FALSE(stage.tree->IsContainItem(stage.kernel["root"]));
  EXPECT_EQ(stage.GetCreated(), Names{"a"});
  EXPECT_TRUE(stage.GetMatched().empty());
  EXPECT_TRUE(stage.tree->IsFilteredTreeEmpty());
}

TEST(FilteredTree, AddMatchedFilterItem_OfTheSameInstanceAgain_ChangesNothing)
{
  const Stage stage("root[a b]");

  for (const char* name : {"a", "b", "a", "a", "b"}) {
    stage.tree->AddMatchedFilterItem(stage.kernel[name], true);
  }

  EXPECT_EQ(stage.GetMatched(), (Names{"a", "b"}));
  EXPECT_EQ(stage.GetCreated(), (Names{"a", "b"}));
  EXPECT_FALSE(stage.tree->IsFilteredTreeEmpty());
}

TEST(FilteredTree, AddMatchedFilterItem_AfterTheSetsWereRead_GoesOnToRecord)
{
  const Stage stage("root[a b]");
  stage.tree->AddMatchedFilterItem(stage.kernel["b"], true);
  ASSERT_EQ(stage.GetMatched(), Names{"b"});

  stage.tree->AddMatchedFilterItem(stage.kernel["a"], true);
  stage.tree->AddMatchedFilterItem(stage.kernel["b"], true);

  EXPECT_EQ(stage.GetMatched(), (Names{"a", "b"}));
  EXPECT_EQ(stage.GetCreated(), (Names{"a", "b"}));
}

TEST(FilteredTree, AddMatchedFilterItem_OfNull_DoesNothing)
{
  const auto tree = du::MakeSmart<OpenTree>();

  tree->AddMatchedFilterItem(nullptr, true);

  EXPECT_TRUE(tree->IsFilteredTreeEmpty());
  EXPECT_TRUE(CreatedOf(*tree).empty());
}

TEST(FilteredTree, GetMatchedFilterItemsAndGetAllCreatedItems_ReplaceWhatTheArgumentHeld)
{
  const Stage stage("root[a b]");
  stage.tree->AddMatchedFilterItem(stage.kernel["a"], true);
  guitree::FilteredTree::InstanceSet matched{stage.kernel["root"], stage.kernel["b"]};
  guitree::FilteredTree::CreatedSet created{stage.kernel["root"], stage.kernel["b"]};

  stage.tree->GetMatchedFilterItems(matched);
  stage.tree->GetAllCreatedItems(created);

  EXPECT_EQ(NamesOf(matched), Names{"a"});
  EXPECT_EQ(NamesOf(created), Names{"a"});
}

TEST(FilteredTree, RemoveHiddenItem_TakesOutOfTheMatchesAndOutOfNothingElse)
{
  Stage stage("root[a[b]]");
  stage.LetThrough({"a", "b"});
  stage.Build();

  stage.tree->RemoveHiddenItem(stage.kernel["a"]);

  EXPECT_EQ(stage.GetMatched(), Names{"b"});
  EXPECT_TRUE(stage.tree->IsContainItem(stage.kernel["a"]));
  EXPECT_EQ(stage.GetRows(), "root[a[b]]");
}

TEST(FilteredTree, RemoveHiddenItem_OfTheOnlyMatchBeforeAnybodyHasLooked_LeavesNoMatch)
{
  const Stage stage("root[a]");
  stage.tree->AddMatchedFilterItem(stage.kernel["a"], true);

  stage.tree->RemoveHiddenItem(stage.kernel["a"]);
  stage.tree->RemoveHiddenItem(stage.kernel["root"]);
  stage.tree->RemoveHiddenItem(nullptr);

  EXPECT_TRUE(stage.tree->IsFilteredTreeEmpty());
  EXPECT_TRUE(stage.tree->IsContainItem(stage.kernel["a"]));
}

TEST(FilteredTree, GetNumHfInsts_WithoutAHiddenFilter_IsZeroOnEveryCall)
{
  Stage stage("root[a]");
  stage.LetThrough({"a"});
  stage.Build();

  EXPECT_EQ(stage.tree->GetNumHfInsts(), 0u);
  EXPECT_EQ(stage.tree->GetNumHfInsts(), 0u);
  EXPECT_EQ(stage.tree->numHfInsts, 0u);
}

TEST(FilteredTree, GetNumHfInsts_OfARootThatIsTheHiddenTree_CountsItsNodes)
{
  Stage stage("root[a[b c] d]");
  stage.Hide({"c"});
  stage.filter.isHiddenPassAll = true;
  stage.Build();

  EXPECT_EQ(stage.tree->numHfInsts, 0u);
  EXPECT_EQ(stage.tree->GetNumHfInsts(), 4u);
  EXPECT_EQ(stage.tree->numHfInsts, 4u);
}

TEST(FilteredTree, GetNumHfInsts_OfAKeptHiddenTree_CountsThatOneAndNotTheRoot)
{
  Stage stage("root[a[b c] d]");
  stage.Hide({"c"});
  stage.LetThrough({"d"});
  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[d]");
  EXPECT_EQ(stage.tree->GetNumHfInsts(), 4u);
}

TEST(FilteredTree, GetNumHfInsts_CountsOnceWithPlaceholders)
{
  Stage stage("root[a b]");
  stage.Hide({});
  stage.Build();
  OpenTree::AddPlaceholder(stage.tree->hfRoot->firstChild);

  EXPECT_EQ(stage.tree->GetNumHfInsts(), 4u);
  OpenTree::AddPlaceholder(stage.tree->hfRoot->lastChild);
  EXPECT_EQ(stage.tree->GetNumHfInsts(), 4u);
}

TEST(FilteredTree, GetNode_OfTheTwoTopmostOfAChain_IsTheRootWithoutAComparison)
{
  Stage stage("root[a[b]]");
  stage.LetThrough({"root"});
  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root");
  EXPECT_EQ(stage.tree->GetNode(stage.kernel["a"]), stage.tree->GetRoot());
  EXPECT_EQ(stage.tree->GetNode(stage.kernel["root"]), stage.tree->GetRoot());
}

TEST(FilteredTree, GetNode_OfADeeperInstance_WalksFromTheRootByTheThirdEntryOfItsChain)
{
  Stage below("top[root[a[b c[d]]]]");
  below.LetThrough({"b", "d"});
  below.Build(below.kernel["root"]);

  EXPECT_EQ(below.GetRows(), "root[a[b c[d]]]");
  EXPECT_EQ(below.tree->GetNode(below.kernel["a"]), below["a"]);
  EXPECT_EQ(below.tree->GetNode(below.kernel["c"]), below["c"]);
  EXPECT_EQ(below.tree->GetNode(below.kernel["d"]), below["d"]);
}

TEST(FilteredTree, GetNode_InATreeThatBeginsWithTheTopOfTheChain_IsOneLevelOffAndFindsNothing)
{
  Stage stage("root[a[b]]");
  stage.LetThrough({"b"});
  stage.Build();

  EXPECT_EQ(stage.tree->GetNode(stage.kernel["b"]), nullptr);
}

TEST(FilteredTree, GetNode_OfAPrunedInstance_IsNull)
{
  Stage stage("top[root[a[b] c]]");
  stage.LetThrough({"c"});
  stage.Build(stage.kernel["root"]);

  EXPECT_EQ(stage.tree->GetNode(stage.kernel["a"]), nullptr);
  EXPECT_EQ(stage.tree->GetNode(stage.kernel["b"]), nullptr);
  EXPECT_EQ(stage.tree->GetNode(stage.kernel["c"]), stage["c"]);
}

TEST(FilteredTree, GetNode_OfNullOrWithoutATree_IsNull)
{
  Stage stage("root[a]");

  EXPECT_EQ(stage.tree->GetNode(stage.kernel["a"]), nullptr);
  stage.Build();
  EXPECT_EQ(stage.tree->GetNode(nullptr), nullptr);
}

TEST(FilteredTree, GetNode_NeverHandsAnInstanceTheOnlyPointerToIt)
{
  // Clears the argument before anything else.
  class ClearingInstance : public testsupport::PlainBaseInstance {
  public:
    explicit ClearingInstance(Instance above) : PlainBaseInstance("any"), m_parent(std::move(above)) {}

    void GetBaseParent(Instance& out) const override
    {
      EXPECT_NE(out.Get(), this);
      out.Reset();
      out = m_parent;
    }

  private:
    Instance m_parent;
  };
  Instance chain;
  for (int level = 0; level < 4; ++level) {
    chain = du::MakeSmart<ClearingInstance>(chain);
  }
  Stage stage("root[a]");
  stage.Build();

  EXPECT_EQ(stage.tree->GetNode(chain), nullptr);
  EXPECT_EQ(stage.tree->GetNode(std::move(chain)), nullptr);
}

TEST(FilteredTree, Copy_IsMemberwiseAndSharesTheNodes)
{
  Stage stage("root[a b]");
  stage.Hide({"b"});
  stage.LetThrough({"a"});
  stage.Build();
  ASSERT_EQ(stage.tree->GetNumHfInsts(), 2u);
  const auto copy = du::MakeSmart<OpenTree>(*stage.tree);
  const auto assigned = du::MakeSmart<OpenTree>();
  *assigned = *stage.tree;

  for (const auto& other : {copy, assigned}) {
    EXPECT_EQ(other->root, stage.tree->root);
    EXPECT_EQ(other->hfRoot, stage.tree->hfRoot);
    EXPECT_EQ(other->firstFilteredNode, stage.tree->firstFilteredNode);
    EXPECT_EQ(other->numHfInsts, 2u);
    EXPECT_EQ(other->GetNumInsts(), stage.tree->GetNumInsts());
    EXPECT_EQ(other->rootIsHfTree, stage.tree->rootIsHfTree);
    EXPECT_EQ(MatchedOf(*other), stage.GetMatched());
    EXPECT_EQ(CreatedOf(*other), stage.GetCreated());
    // The nodes have one owner.
    other->root = nullptr;
    other->hfRoot = nullptr;
  }
}

TEST(FilteredTree, CopyOfACancelledResult_LeavesTheNodesOfTheRunToTheOriginal)
{
  Stage stage("root[a b]");
  stage.event = du::MakeSmart<ReportedEvent>();
  stage.onAsk = [&stage](std::size_t ask) {
    if (ask == 4) {
      stage.event->Cancel();
    }
  };
  stage.Build();
  auto copy = du::MakeSmart<OpenTree>(*stage.tree);
  EXPECT_EQ(Show(copy->root), "root[...]");
  copy->root = nullptr;

  copy.Reset();

  EXPECT_EQ(stage.GetRows(), "root[...]");
}

TEST(FilteredTree, Nodes_KeepInstancesAliveThatTheKernelHasRemoved)
{
  Stage stage("root[a[b] c]");
  stage.LetThrough({"b"});
  stage.Spare("c");
  stage.Build();
  {
    const auto tree = stage.kernel.Get();
    const auto a = stage.kernel["a"];
    const auto c = stage.kernel["c"];
    stage.kernel = testsupport::NamedTree("");
    tree->Remove(a);
    tree->Remove(c);
  }

  EXPECT_EQ(stage.GetRows(), "root[a[b] c]");
}

}  // namespace
}  // namespace filtertest
