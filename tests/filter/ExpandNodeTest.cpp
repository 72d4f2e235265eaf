#include "CountedKernel.h"
#include "EngineStage.h"

namespace filtertest {
namespace {

/// Fills the branch of a placeholder that is added under the node of that name; answers the topmost new nodes.
Names Expand(Stage& stage, std::string_view name)
{
  std::list<Node*> created;
  stage.tree->ExpandNode(OpenTree::AddPlaceholder(stage[name]), &created);
  ExpectLinked(stage.tree->root);
  return NamesOf(created);
}

TEST(ExpandNode, OfTheRootOfACancelledRun_BringsTheWholeKernelTree)
{
  Stage stage("root[a[b[c] d] e]");
  stage.Cancel();
  stage.Build();
  Node* const placeholder = stage.tree->root->lastChild;
  std::list<Node*> created;

  stage.tree->ExpandNode(placeholder, &created);

  EXPECT_EQ(stage.GetRows(), "root[a[b[c] d] e]");
  EXPECT_EQ(NamesOf(created), (Names{"a[b[c] d]", "e"}));
  EXPECT_EQ(placeholder->parent, nullptr);
  EXPECT_EQ(placeholder->prevSibling, nullptr);
  EXPECT_EQ(placeholder->nextSibling, nullptr);
  ExpectLinked(stage.tree->root);
}

TEST(ExpandNode, Placeholder_CanBeReadAfterTheTreeHasGone)
{
  Stage stage("root[a]");
  stage.Cancel();
  stage.Build();
  const Node* const placeholder = stage.tree->root->lastChild;
  std::list<Node*> created;
  stage.tree->ExpandNode(stage.tree->root->lastChild, &created);

  stage.tree.Reset();

  EXPECT_EQ(placeholder->instance, nullptr);
  EXPECT_EQ(placeholder->parent, nullptr);
}

TEST(ExpandNode, WithoutAList_TakesThePlaceholderOutAndMakesNothing)
{
  for (const bool isHidden : {false, true}) {
    Stage stage("root[a b]");
    if (isHidden) {
      stage.Hide({});
    }
    stage.Build();

    stage.tree->ExpandNode(OpenTree::AddPlaceholder(stage.tree->root), nullptr);

    EXPECT_EQ(stage.GetRows(), "root");
    EXPECT_EQ(stage.tree->root->lastChild, nullptr);
  }
}

TEST(ExpandNode, AppendsToTheList)
{
  Stage stage("root[a]");
  stage.Build();
  std::list<Node*> created{stage.tree->root};

  stage.tree->ExpandNode(OpenTree::AddPlaceholder(stage.tree->root), &created);

  EXPECT_EQ(NamesOf(created), (Names{"root[a]", "a"}));
}

TEST(ExpandNode, AddsWhatIsMissingInTheSourcesOrderBehindWhatIsThere)
{
  Stage stage("root[a b[x] c[y] d]");
  stage.LetThrough({"b", "x"});
  stage.Build();
  ASSERT_EQ(stage.GetRows(), "root[b[x]]");

  EXPECT_EQ(Expand(stage, "root"), (Names{"a", "c[y]", "d"}));

  EXPECT_EQ(stage.GetRows(), "root[b[x] a c[y] d]");
}

TEST(ExpandNode, WithAPlaceholder_DoesNotGoByTheNumberOfChildren)
{
  // As many children as the source, but other ones: the kernel has changed since.
  Stage stage("root[a b]");
  stage.LetThrough({"a", "b"});
  stage.Build();
  stage.kernel.Get()->Remove(stage.kernel["a"]);
  stage.kernel.Add("root", "c");

  EXPECT_EQ(Expand(stage, "root"), Names{"c"});

  EXPECT_EQ(stage.GetRows(), "root[a b c]");
}

TEST(ExpandNode, FillsALeafRightBeforeThePlaceholderFirst)
{
  Stage stage("root[a b[x y]]");
  stage.LetThrough({"b"});
  stage.Build();
  ASSERT_EQ(stage.GetRows(), "root[b]");

  EXPECT_EQ(Expand(stage, "root"), (Names{"x", "y", "a"}));

  EXPECT_EQ(stage.GetRows(), "root[b[x y] a]");
}

TEST(ExpandNode, LeavesASiblingBeforeThePlaceholderAloneThatHasChildren)
{
  Stage stage("root[b[x y] a]");
  stage.LetThrough({"b", "x"});
  stage.Build();
  ASSERT_EQ(stage.GetRows(), "root[b[x]]");

  EXPECT_EQ(Expand(stage, "root"), Names{"a"});

  EXPECT_EQ(stage.GetRows(), "root[b[x] a]");
}

TEST(ExpandNode, OfABranchBelow_LeavesTheRestAlone)
{
  Stage stage("root[a[b c] d[e]]");
  stage.LetThrough({"a", "d"});
  stage.Build();
  ASSERT_EQ(stage.GetRows(), "root[a d]");

  EXPECT_EQ(Expand(stage, "a"), (Names{"b", "c"}));

  EXPECT_EQ(stage.GetRows(), "root[a[b c] d]");
}

TEST(ExpandNode, DoesNotTouchTheSetsAndTheCounts)
{
  Stage stage("root[a b]");
  stage.Hide({});
  stage.LetThrough({"a"});
  stage.Build();
  const Names matched = stage.GetMatched();
  const Names createdItems = stage.GetCreated();
  const unsigned int count = stage.tree->GetNumInsts();
  ASSERT_EQ(stage.tree->GetNumHfInsts(), 3u);
  const std::size_t asks = stage.asks.size();

  EXPECT_EQ(Expand(stage, "root"), Names{"b"});

  EXPECT_EQ(stage.GetMatched(), matched);
  EXPECT_EQ(stage.GetCreated(), createdItems);
  EXPECT_EQ(stage.tree->GetNumInsts(), count);
  EXPECT_EQ(stage.tree->GetNumHfInsts(), 3u);
  EXPECT_EQ(stage.asks.size(), asks);
}

TEST(ExpandNode, UsesNoSortOrder)
{
  Stage stage("root[b a[d c]]");
  for (const char* name : {"a", "b", "c", "d"}) {
    stage.kernel.Get()->SetProperty(stage.kernel[name], "", "Mass", name);
  }
  stage.filter.sortColumn = du::DualSymbol("", "Mass");
  stage.Build();

  EXPECT_EQ(Expand(stage, "root"), (Names{"b", "a[d c]"}));
}

TEST(ExpandNode, FirstFilteredNode_MovesToTheLastNewNode)
{
  Stage stage("root[m a[b] c[d e]]");
  stage.LetThrough({"m"});
  stage.Build();

  static_cast<void>(Expand(stage, "root"));

  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), stage["e"]);
}

TEST(ExpandNode, FirstFilteredNode_StaysNullWithoutAMatch)
{
  Stage stage("root[a[b]]");
  stage.Build();

  static_cast<void>(Expand(stage, "root"));

  EXPECT_EQ(stage.GetRows(), "root[a[b]]");
  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), nullptr);
}

TEST(ExpandNode, FirstFilteredNode_MovesInACopyOfTheHiddenTreeToo)
{
  Stage stage("root[m a[b c]]");
  stage.Hide({});
  stage.LetThrough({"m"});
  stage.Build();

  static_cast<void>(Expand(stage, "root"));

  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), stage["c"]);
}

TEST(ExpandNode, WithAHiddenTree_BringsBackOnlyWhatTheVisiblePassHasLeftOut)
{
  Stage stage("root[a[h[i] b[c d[e]]] h2 f]");
  stage.Hide({"h", "i", "h2"});
  stage.Build();
  ASSERT_EQ(stage.GetRows(), "root");

  EXPECT_EQ(Expand(stage, "root"), (Names{"a[b[c d[e]]]", "f"}));

  EXPECT_EQ(stage.GetRows(), "root[a[b[c d[e]]] f]");
  EXPECT_EQ(stage.GetHiddenRows(), "root[a[b[c d[e]]] f]");
  EXPECT_NE(stage["a"], Find(stage.tree->hfRoot, "a"));
}

TEST(ExpandNode, WithTheHiddenFilterAlone_BringsBackWhatItHasLeftOut)
{
  Stage stage("root[a h[i]]");
  stage.Hide({"h", "i"});
  stage.filter.isHiddenPassAll = true;
  stage.Build();
  ASSERT_EQ(stage.GetRows(), "root[a]");

  EXPECT_EQ(Expand(stage, "root"), Names{"h[i]"});
}

TEST(ExpandNode, OfANodeThatTheHiddenTreeLacks_ChangesNothing)
{
  Stage stage("root[a[b] c]");
  stage.Hide({"b"});
  stage.LetThrough({"a"});
  stage.Build();
  // A row that has come from elsewhere.
  std::list<Node*> created;
  Node* const a = stage["a"];
  Node* const placeholder = OpenTree::AddPlaceholder(a);
  Node* const gone = Find(stage.tree->hfRoot, "a");
  gone->instance = stage.kernel["b"].Get();

  stage.tree->ExpandNode(placeholder, &created);

  EXPECT_TRUE(created.empty());
  EXPECT_EQ(a->lastChild, placeholder);
  EXPECT_EQ(stage.GetRows(), "root[a[...]]");
}

TEST(ExpandNode, ShowSiblings_HasNoPartInIt)
{
  Stage stage("root[a b]");
  stage.filter.showSiblings = true;
  stage.Build();

  EXPECT_EQ(Expand(stage, "root"), (Names{"a", "b"}));
}

TEST(ExpandNode, WaitsForAWriterAndReadsWithoutTheLock)
{
  CountedKernel kernel;
  const auto tree = du::MakeSmart<LoggedTree>();
  kernel.tree = tree;
  kernel.Add(kernel.Add(nullptr, "root"), "a");
  Stage stage("");
  stage.Build(kernel.GetRoot());
  tree->log.clear();
  kernel.onVisit = [&tree] { tree->log.emplace_back("visit"); };

  static_cast<void>(Expand(stage, "root"));

  EXPECT_EQ(tree->log, (Names{"lock", "unlock", "visit"}));
}

TEST(ExpandNode, NewNodes_KeepInstancesAliveThatTheKernelHasRemoved)
{
  Stage stage("root[a[b]]");
  stage.Build();
  static_cast<void>(Expand(stage, "root"));
  {
    const auto tree = stage.kernel.Get();
    const auto a = stage.kernel["a"];
    stage.kernel = testsupport::NamedTree("");
    tree->Remove(a);
  }

  EXPECT_EQ(stage.GetRows(), "root[a[b]]");
}

}  // namespace
}  // namespace filtertest
