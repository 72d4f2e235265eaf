#include <gtest/gtest.h>

#include <deque>
#include <vector>

#include "TestInstance.h"
#include "TextOf.h"

namespace {

using guitree::FilteredTree;
using hosttest::Instance;
using hosttest::Make;
using hosttest::TextOf;

/// Nodes under one root, as a filter leaves them.
class TextHostFiltered : public testing::Test {
protected:
  void ShowWithoutAFilter(const std::vector<Instance>& instances)
  {
    for (const Instance& instance : instances) {
      hosttest::Create(host, instance);
    }
  }

  /// A null instance makes a placeholder. Before `next`, or last for null.
  FilteredTree::Node* Add(FilteredTree::Node* parent, const Instance& instance, FilteredTree::Node* next = nullptr)
  {
    FilteredTree::Node& node = nodes.emplace_back();
    node.instance = instance.Get();
    node.parent = parent;
    if (!parent) {
      return &node;
    }
    node.nextSibling = next;
    node.prevSibling = next ? next->prevSibling : parent->lastChild;
    (node.prevSibling ? node.prevSibling->nextSibling : parent->firstChild) = &node;
    (next ? next->prevSibling : parent->lastChild) = &node;
    return &node;
  }

  void Show(FilteredTree::Node* node) { host.InstanceCreate(node, {}, false); }

  void RemoveLast(FilteredTree::Node* parent)
  {
    parent->lastChild = parent->lastChild->prevSibling;
    (parent->lastChild ? parent->lastChild->nextSibling : parent->firstChild) = nullptr;
  }

  std::deque<FilteredTree::Node> nodes;
  texthost::TextHost host;
  const Instance root = Make("root");
  const Instance a = Make("a", root);
  const Instance b = Make("b", root);
  const Instance c = Make("c", root);
  const Instance d = Make("d", root);
  FilteredTree::Node* rootNode = Add(nullptr, root);
};

TEST_F(TextHostFiltered, Nodes_StandUnderTheirParentNodes)
{
  auto* nodeA = Add(rootNode, a);
  auto* nodeB = Add(nodeA, b);
  auto* nodeC = Add(rootNode, c);

  for (auto* node : {rootNode, nodeA, nodeB, nodeC}) {
    Show(node);
  }

  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ a\n"
            "│  └─ b\n"
            "└─ c\n");
}

TEST_F(TextHostFiltered, NodeOfAHiddenParent_GoesUnderTheNearestNodeWithARow)
{
  auto* hidden = Add(rootNode, a);
  auto* nodeB = Add(hidden, b);
  auto* nodeC = Add(rootNode, c);

  for (auto* node : {rootNode, nodeB, nodeC}) {
    Show(node);
  }

  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ b\n"
            "└─ c\n");
}

TEST_F(TextHostFiltered, Placeholder_IsTheLastRowOfItsBranch)
{
  auto* nodeA = Add(rootNode, a);
  Add(rootNode, {});
  Show(rootNode);
  Show(nodeA);

  host.FilterNodeCreate(rootNode);

  EXPECT_TRUE(host.HasPlaceholder(*root));
  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ a\n"
            "└─ …\n");
  EXPECT_EQ(TextOf(host, {.ascii = true}),
            "root\n"
            "|- a\n"
            "`- ...\n");
}

TEST_F(TextHostFiltered, Placeholder_AloneInItsBranch_IsStillShown)
{
  auto* nodeA = Add(rootNode, a);
  Add(nodeA, {});
  auto* nodeB = Add(rootNode, b);
  Show(rootNode);
  Show(nodeA);
  host.FilterNodeCreate(nodeA);
  Show(nodeB);

  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ a\n"
            "│  └─ …\n"
            "└─ b\n");
  EXPECT_EQ(TextOf(host, {.depth = 1}),
            "root\n"
            "├─ a [+…]\n"
            "└─ b\n");
}

TEST_F(TextHostFiltered, OpenedPlaceholder_GivesWayToItsRows)
{
  auto* nodeA = Add(rootNode, a);
  Add(rootNode, {});
  Show(rootNode);
  Show(nodeA);
  host.FilterNodeCreate(rootNode);

  RemoveLast(rootNode);
  Show(Add(rootNode, b));

  EXPECT_FALSE(host.HasPlaceholder(*root));
  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ a\n"
            "└─ b\n");
}

TEST_F(TextHostFiltered, RowsOfAnOpenedPlaceholder_StandWhereTheirNodesStand)
{
  auto* nodeC = Add(rootNode, c);
  Show(rootNode);
  Show(nodeC);

  auto* nodeA = Add(rootNode, a, nodeC);
  auto* nodeB = Add(rootNode, b, nodeC);
  auto* nodeD = Add(rootNode, d);
  for (auto* node : {nodeA, nodeB, nodeD}) {
    Show(node);
  }

  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ a\n"
            "├─ b\n"
            "├─ c\n"
            "└─ d\n");
}

TEST_F(TextHostFiltered, NodeOfARowThatIsThere_LeavesItWhereItStands)
{
  ShowWithoutAFilter({root, a, b, c});

  Show(rootNode);
  Show(Add(rootNode, c));
  Show(Add(rootNode, a));

  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ a\n"
            "├─ b\n"
            "└─ c\n");
}

TEST_F(TextHostFiltered, NodeOfARowUnderAnotherParent_TakesItThere)
{
  ShowWithoutAFilter({root, a, b, c});

  Show(rootNode);
  auto* nodeC = Add(rootNode, c);
  Show(nodeC);
  Show(Add(nodeC, a));

  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ b\n"
            "└─ c\n"
            "   └─ a\n");
}

TEST_F(TextHostFiltered, PlaceholderOfANodeWithoutARow_IsPassedOver)
{
  host.FilterNodeCreate(rootNode);
  host.FilterNodeCreate(nullptr);

  EXPECT_EQ(TextOf(host), "");
  EXPECT_FALSE(host.HasPlaceholder(*root));
}

TEST_F(TextHostFiltered, SecondCreate_TakesThePlaceholderOffTheRow)
{
  Show(rootNode);
  host.FilterNodeCreate(rootNode);

  hosttest::Create(host, root);

  EXPECT_FALSE(host.HasPlaceholder(*root));
}

}  // namespace
