// Rows that come for the nodes of a filtered tree, between others, as those of a placeholder that was opened.

#include <gmock/gmock.h>

#include <QSignalSpy>

#include "Stage.h"

namespace qthosttest {
namespace {

using Node = guitree::FilteredTree::Node;

/// A root with its children, and the children of the third one.
class ItemModelNodes : public testing::Test {
protected:
  ItemModelNodes()
  {
    Link(m_root, m_children, {"a", "b", "c", "d", "e"});
    Link(m_children[2], m_inner, {"x", "y", "z"});
    m_root.instance = kernel["root"].Get();
  }
  void Link(Node& parent, std::vector<Node>& children, const std::vector<std::string>& names)
  {
    children.resize(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
      children[i].instance = kernel[names[i]].Get();
      children[i].parent = &parent;
      children[i].prevSibling = i > 0 ? &children[i - 1] : nullptr;
      children[i].nextSibling = i + 1 < names.size() ? &children[i + 1] : nullptr;
    }
    parent.firstChild = &children.front();
    parent.lastChild = &children.back();
  }
  /// Fills the model with the root and these of its children.
  void Populate(std::initializer_list<std::size_t> children)
  {
    model.StartTreeUpdate();
    model.ClearTree();
    model.InstanceCreate(&m_root, {}, false);
    Create(children);
    model.RestoreExpandedAfterPopulate();
    model.FinishTreeUpdate();
  }
  void Create(std::initializer_list<std::size_t> children)
  {
    for (const std::size_t child : children) {
      model.InstanceCreate(&m_children[child], {}, false);
    }
  }
  [[nodiscard]] std::string GetText() const { return ReadText(model); }

  testsupport::NamedTree kernel{"root[a b c[x y z] d e]"};
  qthost::GuiTreeItemModel model;
  QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
  Node m_root;
  std::vector<Node> m_children;
  std::vector<Node> m_inner;
};

TEST_F(ItemModelNodes, BetweenRows_ComeInOneRun)
{
  Populate({0, 4});
  const QSignalSpy insertions(&model, &QAbstractItemModel::rowsInserted);

  model.StartTreeUpdate();
  Create({1, 2, 3});
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root[a b c d e]");
  EXPECT_EQ(insertions.count(), 1);
}

TEST_F(ItemModelNodes, BetweenNewRows_StandInTheOrderOfTheNodes)
{
  Populate({4});

  model.StartTreeUpdate();
  Create({0, 3, 1, 2});
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root[a b c d e]");
}

TEST_F(ItemModelNodes, InFrontOfAllRows_StandInTheOrderOfTheNodes)
{
  Populate({4});

  model.StartTreeUpdate();
  Create({1, 0});
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root[a b e]");
}

TEST_F(ItemModelNodes, BehindOnesWithoutARow_StandBehindTheLastThatHasOne)
{
  Populate({0, 4});

  model.StartTreeUpdate();
  Create({3});
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root[a d e]");
}

TEST_F(ItemModelNodes, BelowANewRow_ComeWithIt)
{
  Populate({0, 4});
  const QSignalSpy insertions(&model, &QAbstractItemModel::rowsInserted);

  model.StartTreeUpdate();
  Create({1, 2});
  for (const std::size_t inner : {0U, 2U, 1U}) {
    model.InstanceCreate(&m_inner[inner], {}, false);
  }
  Create({3});
  model.FinishTreeUpdate();

  EXPECT_EQ(GetText(), "root[a b c[x y z] d e]");
  EXPECT_EQ(insertions.count(), 1);
}

TEST_F(ItemModelNodes, ForARowThatIsThere_LeaveIt)
{
  Populate({0, 1, 2, 4});

  Create({1, 2});

  EXPECT_EQ(GetText(), "root[a b c e]");
}

}  // namespace
}  // namespace qthosttest
