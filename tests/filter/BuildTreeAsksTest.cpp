#include "CountedKernel.h"
#include "EngineStage.h"

namespace filtertest {
namespace {

TEST(BuildTreeAsks, WithoutAMatch_EachInstanceIsAskedAboutTwiceInTheOrderOfRowsAndTheRootOnce)
{
  Stage stage("root[a[b c[d]] e]");

  stage.Build();

  EXPECT_EQ(stage.asks, (Names{"root", "a", "a", "b", "b", "c", "c", "d", "d", "e", "e"}));
  EXPECT_EQ(stage.asks.size(), 2u * 6u - 1u);
}

TEST(BuildTreeAsks, WithSiblingsAndWithoutAMatch_EachListIsAskedAboutFirst)
{
  Stage stage("root[a[b c[d]] e]");
  stage.filter.showSiblings = true;

  stage.Build();

  EXPECT_EQ(stage.asks, (Names{"root", "a", "e", "a", "a", "b", "c", "b", "b", "c", "c", "d", "d", "d", "e", "e"}));
  EXPECT_EQ(stage.asks.size(), 3u * 6u - 2u);
}

TEST(BuildTreeAsks, AfterTheFirstMatch_EachInstanceIsAskedAboutOnce)
{
  Stage stage("root[a m b[c]]");
  stage.LetThrough({"m"});

  stage.Build();

  EXPECT_EQ(stage.asks, (Names{"root", "a", "a", "m", "m", "b", "c"}));
}

TEST(BuildTreeAsks, SiblingsOfAMatch_AreNotAskedAboutAgain)
{
  Stage stage("root[m a b[c]]");
  stage.filter.showSiblings = true;
  stage.LetThrough({"m"});

  stage.Build();

  // Where nothing among siblings matches, each of them is judged once more.
  EXPECT_EQ(stage.asks, (Names{"root", "m", "a", "b", "m", "c", "c"}));
}

TEST(BuildTreeAsks, RootThatMatches_IsTheOnlyOneAskedAboutForTheFirstNode)
{
  Stage stage("root[a b]");
  stage.LetThrough({"root"});

  stage.Build();

  EXPECT_EQ(stage.asks, (Names{"root", "a", "b"}));
}

/// Counts questions that are for the tree state and not for a build.
class CountingFilter : public testsupport::ScriptedFilter {
public:
  unsigned int questions = 0;

  [[nodiscard]] bool GetEnsureExpanded() override { return _Count(); }
  [[nodiscard]] bool IsFilteringUsingView() override { return _Count(); }

private:
  bool _Count()
  {
    ++questions;
    return true;
  }
};

TEST(BuildTreeAsks, ExpansionAndViews_AreNoConcernOfABuild)
{
  const testsupport::NamedTree kernel("root[a b]");
  CountingFilter filter;
  filter.hasHiddenPass = true;
  filter.showSiblings = true;
  filter.sortColumn = du::DualSymbol("", "Mass");
  const auto tree = du::MakeSmart<OpenTree>();
  du::SmartPtr<du::RefCounted> none;

  tree->BuildTree(filter, kernel["root"], nullptr, none, {}, nullptr);

  EXPECT_EQ(Show(tree->root), "root[a b]");
  EXPECT_EQ(filter.questions, 0u);
}

TEST(BuildTreeAsks, Kernel_IsAskedOnceForEachListAndForEachVisit)
{
  CountedKernel kernel;
  CountedInstance* const root = kernel.Add(nullptr, "root");
  for (const char* name : {"a", "b", "c"}) {
    kernel.Add(kernel.Add(root, name), name);
  }
  Stage stage("");
  stage.filter.showSiblings = true;
  stage.LetThrough({"b"});

  stage.Build(kernel.GetRoot());

  EXPECT_EQ(kernel.reads.lists, 4u);
  EXPECT_EQ(kernel.reads.visits, 7u);
  EXPECT_EQ(kernel.reads.parents, 0u);
  EXPECT_EQ(kernel.reads.properties, 0u);
  EXPECT_EQ(stage.GetRows(), "root[a b[b] c]");
}

TEST(BuildTreeAsks, SecondPass_DoesNotReadTheKernelsLists)
{
  CountedKernel kernel;
  CountedInstance* const root = kernel.Add(nullptr, "root");
  kernel.Add(kernel.Add(root, "a"), "b");
  Stage stage("");
  stage.Hide({});
  stage.LetThrough({"b"});

  stage.Build(kernel.GetRoot());

  EXPECT_EQ(kernel.reads.lists, 2u);
  EXPECT_EQ(kernel.reads.visits, 3u);
  EXPECT_EQ(stage.GetRows(), "root[a[b]]");
}

}  // namespace
}  // namespace filtertest
