#include <algorithm>

#include "CountedKernel.h"
#include "EngineStage.h"

namespace filtertest {
namespace {

constexpr std::size_t s_treeSize = 9;

/// A tree of nine whose nodes, in the order in which they are made, cancel the run at a given one.
struct CancelledRun {
  explicit CancelledRun(std::size_t cancelAtNode)
  {
    CountedInstance* const root = kernel.Add(nullptr, "root");
    CountedInstance* const a = kernel.Add(root, "a");
    kernel.Add(a, "b");
    CountedInstance* const c = kernel.Add(a, "c");
    kernel.Add(c, "d");
    kernel.Add(a, "e");
    CountedInstance* const f = kernel.Add(root, "f");
    kernel.Add(f, "g");
    kernel.Add(root, "h");
    stage.event = du::MakeSmart<ReportedEvent>();
    kernel.onVisit = [this, cancelAtNode] {
      if (kernel.reads.visits == cancelAtNode) {
        stage.event->Cancel();
      }
    };
  }
  CancelledRun(const CancelledRun&) = delete;
  CancelledRun& operator=(const CancelledRun&) = delete;

  void Build() { stage.Build(kernel.GetRoot()); }
  void ExpectUnfilledRoot() const
  {
    EXPECT_EQ(stage.GetRows(), "root[...]");
    ExpectLinked(stage.tree->root);
    EXPECT_EQ(stage.tree->hfRoot, nullptr);
    EXPECT_EQ(stage.tree->GetFirstFilteredNode(), nullptr);
    EXPECT_EQ(stage.tree->GetNumInsts(), 0u);
    EXPECT_EQ(stage.tree->GetNumHfInsts(), 0u);
    EXPECT_FALSE(stage.tree->rootIsHfTree);
    EXPECT_TRUE(stage.event->reports.empty());
  }

  CountedKernel kernel;
  Stage stage{""};
};

/// The matches among what has been asked about.
Names FindRecorded(const Names& asks, const std::set<std::string>& passing)
{
  std::set<std::string> found;
  std::copy_if(asks.begin(), asks.end(), std::inserter(found, found.end()),
               [&passing](const std::string& name) { return passing.contains(name); });
  return {found.begin(), found.end()};
}

Names BeginOf(const Names& names, std::size_t count)
{
  return {names.begin(), names.begin() + static_cast<std::ptrdiff_t>(std::min(count, names.size()))};
}

TEST(BuildTreeCancel, BeforeTheFirstNode_AsksNothingAndLeavesAnUnfilledRoot)
{
  CancelledRun run(0);
  run.stage.event->Cancel();

  run.Build();

  EXPECT_TRUE(run.stage.asks.empty());
  EXPECT_EQ(run.kernel.reads.visits, 0u);
  run.ExpectUnfilledRoot();
}

TEST(BuildTreeCancel, WithoutACancel_TheTreeOfTheseTestsIsVisitedAsAWhole)
{
  CancelledRun run(0);
  run.stage.LetThrough({"d", "h"});

  run.Build();

  EXPECT_EQ(run.kernel.reads.visits, s_treeSize);
  EXPECT_EQ(run.stage.GetRows(), "root[a[c[d]] h]");
  EXPECT_EQ(run.stage.event->reports, std::vector<int>{100});
}

/// With or without siblings, sorted or not, in the hidden pass or in the visible one.
class BuildTreeCancelAtNode : public testing::TestWithParam<std::tuple<bool, bool, bool>> {
protected:
  void Arrange(Stage& stage) const
  {
    const auto [showSiblings, isSorted, isHidden] = GetParam();
    stage.filter.showSiblings = showSiblings;
    stage.filter.sortColumn = isSorted ? du::DualSymbol("", "Mass") : du::DualSymbol();
    stage.filter.hasHiddenPass = isHidden;
    stage.filter.isHiddenPassAll = isHidden;
    stage.filter.filtersOut = [this](const Instance& instance, bool) {
      return !passing.contains(NameOf(instance.Get()));
    };
    stage.filter.onAsked = [&stage](const Instance& instance, std::set<Instance>&, bool, du::SmartPtr<du::RefCounted>&,
                                    unsigned int* count) {
      stage.asks.push_back(NameOf(instance.Get()));
      ++*count;
    };
  }

  const std::set<std::string> passing{"b", "d", "g"};
};

TEST_P(BuildTreeCancelAtNode, EndsAtTheNextNodeWithAnUnfilledRootAndKeepsWhatWasRecorded)
{
  CancelledRun whole(0);
  Arrange(whole.stage);
  whole.Build();
  ASSERT_EQ(whole.kernel.reads.visits, s_treeSize);

  for (std::size_t node = 1; node <= s_treeSize; ++node) {
    SCOPED_TRACE(node);
    CancelledRun run(node);
    Arrange(run.stage);

    run.Build();

    EXPECT_EQ(run.kernel.reads.visits, node);
    run.ExpectUnfilledRoot();
    EXPECT_EQ(run.stage.asks, BeginOf(whole.stage.asks, run.stage.asks.size()));
    EXPECT_EQ(run.stage.GetMatched(), FindRecorded(run.stage.asks, passing));
    const Names created = run.stage.GetCreated();
    const Names matched = run.stage.GetMatched();
    const Names createdInAll = whole.stage.GetCreated();
    if (!run.stage.filter.showSiblings) {
      EXPECT_EQ(created, matched);
    }
    EXPECT_TRUE(std::includes(created.begin(), created.end(), matched.begin(), matched.end()));
    EXPECT_TRUE(std::includes(createdInAll.begin(), createdInAll.end(), created.begin(), created.end()));
  }
}

INSTANTIATE_TEST_SUITE_P(AllWays, BuildTreeCancelAtNode,
                         testing::Combine(testing::Bool(), testing::Bool(), testing::Bool()));

TEST(BuildTreeCancel, AtAnyAskOfTwoPasses_EndsAtTheNextNodeWithAnUnfilledRoot)
{
  for (const bool showSiblings : {false, true}) {
    CancelledRun whole(0);
    whole.stage.filter.showSiblings = showSiblings;
    whole.stage.Hide({"c", "h"});
    whole.stage.LetThrough({"d", "g"});
    whole.Build();
    ASSERT_EQ(whole.stage.GetRows(), "root[a[c[d]] f[g]]");
    const Names& all = whole.stage.asks;
    ASSERT_FALSE(all.back().ends_with('\''));

    for (std::size_t ask = 1; ask <= all.size(); ++ask) {
      SCOPED_TRACE(ask);
      CancelledRun run(0);
      run.stage.filter.showSiblings = showSiblings;
      run.stage.Hide({"c", "h"});
      run.stage.LetThrough({"d", "g"});
      run.stage.onAsk = [&run, ask](std::size_t number) {
        if (number == ask) {
          run.stage.event->Cancel();
        }
      };

      run.Build();

      // Up to the next node there is the rest of a list, at most, and one more judging.
      EXPECT_GE(run.stage.asks.size(), ask);
      EXPECT_LE(run.stage.asks.size(), ask + (showSiblings ? 4 : 1));
      EXPECT_EQ(run.stage.asks, BeginOf(all, run.stage.asks.size()));
      run.ExpectUnfilledRoot();
    }
  }
}

TEST(BuildTreeCancel, InTheFirstOfTwoPasses_RefusesTheSecondAtItsFirstNode)
{
  for (std::size_t node = 1; node <= s_treeSize; ++node) {
    CancelledRun run(node);
    run.stage.Hide({"c"});
    run.stage.LetThrough({"d"});
    Names questions;
    run.stage.tree->onJudging = [&questions](bool hiddenPass) {
      questions.emplace_back(hiddenPass ? "first" : "second");
    };

    run.Build();

    EXPECT_EQ(std::count(questions.begin(), questions.end(), "second"), 0);
    EXPECT_FALSE(questions.empty());
    run.ExpectUnfilledRoot();
  }
}

/// Keeps with what it was asked whether there is a hidden pass.
class QuestionedFilter : public testsupport::ScriptedFilter {
public:
  mutable std::vector<bool> questions;

  [[nodiscard]] bool IsHiddenFilter(bool hiddenOnly) const override
  {
    questions.push_back(hiddenOnly);
    return ScriptedFilter::IsHiddenFilter(hiddenOnly);
  }
};

TEST(BuildTreeCancel, InTheFirstOfTwoPasses_StillAsksWhetherThatPassIsAllUnlessItHasNoRoot)
{
  for (const bool isBeforeTheFirstNode : {true, false}) {
    Stage stage("root[a b]");
    QuestionedFilter filter;
    filter.hasHiddenPass = true;
    stage.event = du::MakeSmart<ReportedEvent>();
    filter.onAsked = [&stage](const Instance&, std::set<Instance>&, bool, du::SmartPtr<du::RefCounted>&,
                              unsigned int*) { stage.event->Cancel(); };
    if (isBeforeTheFirstNode) {
      stage.event->Cancel();
    }

    stage.tree->BuildTree(filter, stage.kernel["root"], nullptr, stage.additionalInfo, {}, stage.event.Get());

    EXPECT_EQ(filter.questions, isBeforeTheFirstNode ? std::vector<bool>{false} : (std::vector<bool>{false, true}));
    EXPECT_EQ(stage.GetRows(), "root[...]");
    EXPECT_FALSE(stage.tree->rootIsHfTree);
  }
}

TEST(BuildTreeCancel, AfterTheLastNode_StillLeavesAnUnfilledRoot)
{
  Stage stage("root[a]");
  stage.LetThrough({"a"});
  stage.event = du::MakeSmart<ReportedEvent>();
  stage.onAsk = [&stage](std::size_t ask) {
    if (ask == 3) {
      stage.event->Cancel();
    }
  };

  stage.Build();

  EXPECT_EQ(stage.asks.size(), 3u);
  EXPECT_EQ(stage.GetRows(), "root[...]");
  EXPECT_EQ(stage.GetMatched(), Names{"a"});
  EXPECT_TRUE(stage.event->reports.empty());
}

TEST(BuildTreeCancel, ARunAfterACancelledOne_BuildsTheTree)
{
  Stage stage("root[a b]");
  stage.LetThrough({"b"});
  stage.Cancel();
  stage.Build();
  ASSERT_EQ(stage.GetRows(), "root[...]");
  stage.event.Reset();

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[b]");
  EXPECT_EQ(stage.GetFirst(), "b");
}

TEST(BuildTreeCancel, ARunThatIsCancelled_ThrowsAwayTheFormerTree)
{
  Stage stage("root[a b]");
  stage.Hide({"a"});
  stage.LetThrough({"b"});
  stage.Build();
  ASSERT_EQ(stage.GetRows(), "root[b]");

  stage.Cancel();
  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[...]");
  EXPECT_EQ(stage.GetHiddenRows(), "none");
  EXPECT_EQ(stage.GetMatched(), (Names{"b", "root"}));
}

}  // namespace
}  // namespace filtertest
