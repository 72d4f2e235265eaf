#include <utility>

#include "CountedKernel.h"
#include "EngineStage.h"
#include "memkernel/ReadWriteLock.h"
#include "testsupport/ScriptedSelectionController.h"

namespace filtertest {
namespace {

/// Lets the hidden tree have unfilled branches under the nodes of those names when the second pass begins.
void PlantInHiddenTree(Stage& stage, const Names& names)
{
  stage.tree->onJudging = [&stage, names, isPlanted = false](bool hiddenPass) mutable {
    if (hiddenPass || std::exchange(isPlanted, true)) {
      return;
    }
    for (const std::string& name : names) {
      OpenTree::AddPlaceholder(Find(stage.tree->hfRoot, name));
    }
  };
}

TEST(BuildTreePasses, HiddenFilterAlone_BecomesTheRootAndCountsNothing)
{
  Stage stage("root[a[b c] d]");
  stage.Hide({"c", "d"});
  stage.filter.isHiddenPassAll = true;

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a[b]]");
  EXPECT_EQ(stage.tree->hfRoot, nullptr);
  EXPECT_TRUE(stage.tree->rootIsHfTree);
  EXPECT_EQ(stage.tree->GetNumInsts(), 0u);
  EXPECT_EQ(stage.GetFirst(), "root");
  EXPECT_EQ(stage.asks.front(), "root'");
  EXPECT_EQ(std::count(stage.asks.begin(), stage.asks.end(), "root"), 0);
}

TEST(BuildTreePasses, NoHiddenFilter_IsOneVisiblePass)
{
  Stage stage("root[a]");
  stage.filter.isHiddenPassAll = true;

  stage.Build();

  EXPECT_FALSE(stage.tree->rootIsHfTree);
  EXPECT_EQ(stage.tree->hfRoot, nullptr);
  EXPECT_EQ(stage.asks, (Names{"root", "a", "a"}));
}

TEST(BuildTreePasses, SecondPass_SeesOnlyWhatTheFirstHasLeft)
{
  Stage stage("root[a[b c] d]");
  stage.Hide({"b"});
  stage.LetThrough({"b", "c"});

  stage.Build();

  EXPECT_EQ(stage.GetHiddenRows(), "root[a[c] d]");
  EXPECT_EQ(stage.GetRows(), "root[a[c]]");
  EXPECT_FALSE(stage.tree->rootIsHfTree);
  EXPECT_EQ(std::count(stage.asks.begin(), stage.asks.end(), "b'"), 1);
  EXPECT_EQ(std::count(stage.asks.begin(), stage.asks.end(), "b"), 0);
  ExpectLinked(stage.tree->root);
  ExpectLinked(stage.tree->hfRoot);
}

TEST(BuildTreePasses, FirstFilteredNode_IsOneOfTheRootsTree)
{
  Stage stage("root[a b]");
  stage.Hide({});
  stage.LetThrough({"b"});

  stage.Build();

  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), stage["b"]);
}

TEST(BuildTreePasses, FirstFilteredNode_OfASecondPassWithoutAMatch_IsNull)
{
  Stage stage("root[a b]");
  stage.Hide({});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root");
  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), nullptr);
}

TEST(BuildTreePasses, BothPasses_RecordIntoTheSameSets)
{
  Stage stage("root[a b c]");
  stage.Hide({"b", "root"});
  stage.LetThrough({"c"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[c]");
  EXPECT_EQ(stage.GetMatched(), (Names{"a", "c"}));
}

TEST(BuildTreePasses, BothPasses_CountOn)
{
  Stage stage("root[a b c]");
  stage.Hide({"b"});

  stage.Build();

  // The first pass: the root, which passes, and once each child. The second: the root and twice each child.
  EXPECT_EQ(stage.asks, (Names{"root'", "a'", "b'", "c'", "root", "a", "a", "c", "c"}));
  EXPECT_EQ(stage.tree->GetNumInsts(), 9u);
}

TEST(BuildTreePasses, SiblingsAreBroughtInEachPassFromWhatItWalks)
{
  Stage stage("root[a[x y] b]");
  stage.filter.showSiblings = true;
  stage.Hide({"x", "y"});
  stage.LetThrough({"a"});

  stage.Build();

  EXPECT_EQ(stage.GetHiddenRows(), "root[a b]");
  EXPECT_EQ(stage.GetRows(), "root[a b]");
}

TEST(BuildTreePasses, APlaceholderInTheHiddenTree_MakesItsParentsBranchTheLastOfItsSiblings)
{
  Stage stage("root[a[x] b c]");
  stage.Hide({});
  stage.LetThrough({"...", "a", "b", "c"});
  PlantInHiddenTree(stage, {"a"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[b c a[...]]");
  EXPECT_EQ(stage.GetMatched(), (Names{"a", "b", "c", "root", "x"}));
  ExpectLinked(stage.tree->root);
}

TEST(BuildTreePasses, OfSeveralUnfilledBranches_TheLastOneMovesToTheEnd)
{
  for (const bool isSorted : {false, true}) {
    Stage stage("root[a b c]");
    stage.Hide({});
    stage.LetThrough({"...", "a", "b", "c"});
    stage.filter.sortColumn = du::DualSymbol("", isSorted ? "Mass" : "");
    PlantInHiddenTree(stage, {"a", "b"});

    stage.Build();

    EXPECT_EQ(stage.GetRows(), isSorted ? "root[a[...] b[...] c]" : "root[a[...] c b[...]]");
    ExpectLinked(stage.tree->root);
  }
}

TEST(BuildTreePasses, UnfilledBranch_MovesAmongItsSiblingsAlone)
{
  Stage stage("root[p[a b] q[c d]]");
  stage.Hide({});
  stage.LetThrough({"...", "p", "a", "b", "q", "c", "d"});
  PlantInHiddenTree(stage, {"a"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[p[b a[...]] q[c d]]");
  ExpectLinked(stage.tree->root);
}

TEST(BuildTreePasses, UnfilledBranchAtTheEnd_StaysWhereItIs)
{
  Stage stage("root[a b]");
  stage.Hide({});
  stage.LetThrough({"...", "a", "b"});
  PlantInHiddenTree(stage, {"b"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a b[...]]");
  ExpectLinked(stage.tree->root);
}

TEST(BuildTreePasses, RejectedBranchesWithNothingButAPlaceholder_ArePruned)
{
  Stage stage("root[a b[x] c]");
  stage.Hide({});
  stage.LetThrough({"...", "x", "c"});
  PlantInHiddenTree(stage, {"a", "b"});

  stage.Build();

  // One with a real child before its placeholder stays, where it was: it is an ancestor and not kept for itself.
  EXPECT_EQ(stage.GetRows(), "root[b[x ...] c]");
  ExpectLinked(stage.tree->root);
}

TEST(BuildTreePasses, RejectedPlaceholders_ArePruned)
{
  Stage stage("root[a b]");
  stage.Hide({});
  stage.LetThrough({"a", "b"});
  PlantInHiddenTree(stage, {"a"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a b]");
}

TEST(BuildTreePasses, Selection_IsReadOnceAndHandedToEachAskWithTheAdditionalInfo)
{
  Stage stage("root[a b]");
  const auto controller = du::MakeSmart<testsupport::ScriptedSelectionController>();
  controller->selected = {stage.kernel["b"]};
  stage.selection = controller;
  stage.additionalInfo = du::MakeSmart<OpenTree>();
  unsigned int asks = 0;
  stage.filter.onAsked = [&](const Instance&, std::set<Instance>& selected, bool, du::SmartPtr<du::RefCounted>& info,
                             unsigned int* count) {
    ++asks;
    EXPECT_EQ(NamesOf(selected), Names{"b"});
    EXPECT_EQ(info, stage.additionalInfo);
    *count = 40 + asks;
    // A change on the way is not seen by the run.
    controller->selected.clear();
  };

  stage.Build();

  EXPECT_EQ(asks, 5u);
  EXPECT_EQ(stage.tree->GetNumInsts(), 45u);
}

TEST(BuildTreePasses, WithoutASelection_NothingIsSelected)
{
  Stage stage("root");
  stage.filter.onAsked = [&stage](const Instance&, std::set<Instance>& selected, bool,
                                  du::SmartPtr<du::RefCounted>& info, unsigned int*) {
    EXPECT_TRUE(selected.empty());
    EXPECT_FALSE(info);
    stage.asks.emplace_back("asked");
  };

  stage.Build();

  EXPECT_EQ(stage.asks.size(), 1u);
}

TEST(BuildTreePasses, ReadLock_IsHeldInEachAskAndNotAfterwards)
{
  Stage stage("root[a b]");
  stage.Hide({});
  auto* const lock = static_cast<memkernel::ReadWriteLock*>(stage.kernel.Get()->GetReadWriteLock());
  stage.onAsk = [lock](std::size_t) { EXPECT_TRUE(lock->IsReadByThisThread()); };

  stage.Build();

  EXPECT_FALSE(stage.asks.empty());
  EXPECT_FALSE(lock->IsReadByThisThread());
}

TEST(BuildTreePasses, ReadLock_IsTakenAndReleasedBeforeTheLongReadAndAfterTheLastUse)
{
  CountedKernel kernel;
  const auto tree = du::MakeSmart<LoggedTree>();
  tree->count = 2;
  kernel.tree = tree;
  kernel.Add(kernel.Add(nullptr, "root"), "a");
  kernel.onVisit = [&tree] { tree->log.emplace_back("visit"); };
  Stage stage("");
  stage.onAsk = [&tree](std::size_t) { tree->log.emplace_back("ask"); };

  stage.Build(kernel.GetRoot());

  EXPECT_EQ(tree->log, (Names{"lock", "unlock", "lock", "ask", "visit", "ask", "ask", "visit", "unlock"}));
}

TEST(BuildTreePasses, SelectedInstances_AreReadOnceUnderTheLock)
{
  class Watched : public testsupport::ScriptedSelectionController {
  public:
    memkernel::ReadWriteLock* lock = nullptr;
    std::vector<bool> readings;

    void GetSelectedInstances(InstanceSet& out) override
    {
      readings.push_back(lock->IsReadByThisThread());
      ScriptedSelectionController::GetSelectedInstances(out);
    }
  };
  Stage stage("root[a b]");
  const auto controller = du::MakeSmart<Watched>();
  controller->lock = static_cast<memkernel::ReadWriteLock*>(stage.kernel.Get()->GetReadWriteLock());
  stage.selection = controller;

  stage.Build();

  EXPECT_EQ(controller->readings, std::vector<bool>{true});
}

TEST(BuildTreePasses, HiddenPassThatIsNotForced_EndsItsSearchesAtAMatchAndRecordsNothing)
{
  Stage stage("root[a b[c d]]");
  stage.filter.showSiblings = true;
  stage.tree->isHiddenPassForced = false;
  stage.Hide({});

  stage.Build();

  EXPECT_EQ(stage.GetHiddenRows(), "root[a b[c d]]");
  EXPECT_EQ(stage.GetRows(), "root");
  EXPECT_EQ(std::count(stage.asks.begin(), stage.asks.end(), "b'"), 0);
  EXPECT_EQ(std::count(stage.asks.begin(), stage.asks.end(), "d'"), 0);
  EXPECT_TRUE(stage.tree->IsFilteredTreeEmpty());
  EXPECT_EQ(stage.GetCreated(), Names{});
}

TEST(BuildTreePasses, MatchesOfBothPasses_AreCountedOnce)
{
  Stage stage("root[a b c]");
  stage.filter.showSiblings = true;
  stage.Hide({"c"});
  stage.LetThrough({"a", "b"});

  stage.Build();

  EXPECT_EQ(stage.GetMatched(), (Names{"a", "b", "root"}));
  EXPECT_EQ(stage.tree->GetNumMatchedItems(), 3U);
}

TEST(BuildTreePasses, SelectedInstances_AreNotHeldByTheWorkerAloneWhenTheLockIsReleased)
{
  Stage stage("root[a b]");
  const auto controller = du::MakeSmart<testsupport::ScriptedSelectionController>();
  controller->selected = {stage.kernel["b"]};
  stage.selection = controller;
  zelk::BaseInstance* const gone = stage.kernel["b"].Get();
  // Left by the kernel and the selection while the run still holds it.
  stage.onAsk = [&](std::size_t) { controller->selected.clear(); };

  stage.Build();

  const int others = gone->AddReference(nullptr) - 1;
  static_cast<void>(gone->RemoveReference(nullptr));
  // The kernel's parent, the stage's list of names and the result.
  EXPECT_EQ(others, 3);
  EXPECT_EQ(stage.GetRows(), "root");
}

TEST(BuildTreePasses, InstanceWithoutATree_IsBuiltWithoutALock)
{
  CountedKernel kernel;
  kernel.Add(kernel.Add(nullptr, "root"), "a");
  Stage stage("");
  stage.LetThrough({"a"});
  stage.event = du::MakeSmart<ReportedEvent>();

  stage.Build(kernel.GetRoot());

  EXPECT_EQ(stage.GetRows(), "root[a]");
  EXPECT_EQ(stage.event->reports, std::vector<int>{100});
}

}  // namespace
}  // namespace filtertest
