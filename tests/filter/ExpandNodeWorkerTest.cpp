#include <gmock/gmock.h>

#include "EngineStage.h"

namespace filtertest {
namespace {

TEST(ExpandNodeWorker, WithoutAPlaceholderAndWithAsManyChildrenAsTheSource_LeavesTheNodeAlone)
{
  for (const bool isHidden : {false, true}) {
    Stage stage("root[a b]");
    if (isHidden) {
      stage.Hide({});
    }
    stage.LetThrough({"a", "b"});
    stage.Build();
    if (!isHidden) {
      stage.kernel.Get()->Remove(stage.kernel["a"]);
      stage.kernel.Add("root", "c");
    }
    std::list<Node*> created;

    stage.tree->_ExpandNode(stage.tree->root, &created);

    EXPECT_TRUE(created.empty());
    EXPECT_EQ(stage.GetRows(), "root[a b]");
  }
}

TEST(ExpandNodeWorker, WithoutAPlaceholderAndWithFewerChildren_AddsTheMissingOnes)
{
  for (const bool isHidden : {false, true}) {
    Stage stage("root[a[x] b c]");
    if (isHidden) {
      stage.Hide({"x"});
    }
    stage.LetThrough({"b"});
    stage.Build();
    std::list<Node*> created;

    stage.tree->_ExpandNode(stage.tree->root, &created);

    EXPECT_EQ(NamesOf(created), isHidden ? (Names{"a", "c"}) : (Names{"a[x]", "c"}));
    ExpectLinked(stage.tree->root);
  }
}

TEST(ExpandNodeWorker, WithoutAPlaceholderAndWithMoreChildrenThanTheSource_AddsTheMissingOnes)
{
  Stage stage("root[a b]");
  stage.LetThrough({"a", "b"});
  stage.Build();
  for (const char* const name : {"a", "b"}) {
    stage.kernel.Get()->Remove(stage.kernel[name]);
  }
  stage.kernel.Add("root", "c");
  std::list<Node*> created;

  stage.tree->_ExpandNode(stage.tree->root, &created);

  EXPECT_EQ(NamesOf(created), Names{"c"});
  EXPECT_EQ(stage.GetRows(), "root[a b c]");
}

TEST(ExpandNodeWorker, OfAFilledNode_DoesNothingAgain)
{
  Stage stage("root[a b]");
  stage.Build();
  std::list<Node*> created;
  stage.tree->_ExpandNode(stage.tree->root, &created);
  ASSERT_EQ(created.size(), 2u);

  stage.tree->_ExpandNode(stage.tree->root, &created);

  EXPECT_EQ(created.size(), 2u);
  EXPECT_EQ(stage.GetRows(), "root[a b]");
}

TEST(ExpandNodeWorker, OfAPlaceholder_DoesNothing)
{
  Stage stage("root[a]");
  stage.Cancel();
  stage.Build();
  std::list<Node*> created;

  stage.tree->_ExpandNode(stage.tree->root->lastChild, &created);

  EXPECT_TRUE(created.empty());
  EXPECT_EQ(stage.GetRows(), "root[...]");
}

TEST(FindMatchingHFTreeNode, OfTheRootAndOfNodesBelow_IsTheNodeOfTheSameChain)
{
  Stage stage("root[a[b[c]] d]");
  stage.Hide({});
  stage.LetThrough({"c", "d"});
  stage.Build();

  EXPECT_EQ(stage.tree->_FindMatchingHFTreeNode(stage.tree->root), stage.tree->hfRoot);
  for (const char* name : {"a", "b", "c", "d"}) {
    EXPECT_EQ(stage.tree->_FindMatchingHFTreeNode(stage[name]), Find(stage.tree->hfRoot, name));
  }
}

TEST(FindMatchingHFTreeNode, WithoutAHiddenTreeOrUnderAnotherRoot_IsNull)
{
  Stage stage("root[a[b]]");
  stage.LetThrough({"b"});
  stage.Build();
  EXPECT_EQ(stage.tree->_FindMatchingHFTreeNode(stage.tree->root), nullptr);

  stage.Hide({});
  stage.Build();
  EXPECT_EQ(stage.tree->_FindMatchingHFTreeNode(nullptr), nullptr);
  Node top{.instance = stage.kernel["a"].Get()};
  EXPECT_EQ(stage.tree->_FindMatchingHFTreeNode(&top), nullptr);
  Node below{.instance = stage.kernel["b"].Get(), .parent = &top};
  EXPECT_EQ(stage.tree->_FindMatchingHFTreeNode(&below), nullptr);
}

TEST(FindMatchingHFTreeNode, OfAPlaceholderOrOfAnInstanceInAnotherPlace_IsNull)
{
  Stage stage("root[a[b] c]");
  stage.Hide({});
  stage.LetThrough({"b", "c"});
  stage.Build();
  Node misplaced{.instance = stage.kernel["b"].Get(), .parent = stage["c"]};

  EXPECT_EQ(stage.tree->_FindMatchingHFTreeNode(OpenTree::AddPlaceholder(stage["a"])), nullptr);
  EXPECT_EQ(stage.tree->_FindMatchingHFTreeNode(&misplaced), nullptr);
}

}  // namespace
}  // namespace filtertest
