#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "JobStage.h"

namespace {

using filtertest::JobStage;
using filtertest::Show;
using testing::ElementsAre;
using testing::IsEmpty;

using Path = std::list<zelk::BaseInstance*>;

/// A panel whose job was cancelled, so that the root has a placeholder.
struct Stage : JobStage {
  explicit Stage(std::string_view treeText = "root[a[b c] d]") : JobStage(treeText)
  {
    LetThrough({"b"});
    state->filter.onAsked = [this](auto&&...) { host.events.at(0)->Cancel(); };
    state->PopulateTree(false);
    Finish();
    state->filter.onAsked = nullptr;
    static_cast<void>(host.TakeCalls());
  }

  [[nodiscard]] Path MakePath(const std::vector<std::string>& names) const
  {
    Path path;
    for (const std::string& name : names) {
      path.push_back(kernel[name].Get());
    }
    return path;
  }
};

/// Lets a test leave a placeholder where it wants one.
class OpenTree : public guitree::FilteredTree {
public:
  void Open(Node* parent) { _BuildTree(parent, nullptr, nullptr, false); }
};

TEST(ExpandFilterNode, MakesTheRowsOfThePlaceholderInOneBracket)
{
  Stage stage;

  EXPECT_TRUE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));

  EXPECT_THAT(
      stage.host.TakeCalls(),
      ElementsAre("StartTreeUpdate()", "InstanceCreate(node a, controller=no, assoc=false)",
                  "InstanceCreate(node b, controller=no, assoc=false)",
                  "InstanceCreate(node c, controller=no, assoc=false)",
                  "InstanceCreate(node d, controller=no, assoc=false)", "UpdateTreeTable()", "FinishTreeUpdate()"));
  EXPECT_EQ(Show(stage.gui->GetFilteredTree()), "root[a[b c] d]");
  EXPECT_TRUE(stage.state->GetNotFilteredSet().contains(stage.kernel["c"].Get()));
}

TEST(ExpandFilterNode, AsksTheSelectionForTheNewRows)
{
  Stage stage("root[a]");
  const auto selection = du::MakeSmart<testsupport::ScriptedSelectionController>();
  selection->highlighted = {stage.kernel["a"]};
  stage.state->selController = selection;
  stage.state->selControllerQuestions.clear();

  EXPECT_TRUE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));

  EXPECT_THAT(stage.host.Calls(), testing::Contains("InstanceCreate(node a, controller=yes, assoc=true)"));
  EXPECT_THAT(stage.state->selControllerQuestions, ElementsAre(true));
}

TEST(ExpandFilterNode, ASecondTime_ChangesNothing)
{
  Stage stage;
  EXPECT_TRUE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));
  static_cast<void>(stage.host.TakeCalls());

  EXPECT_FALSE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));

  EXPECT_THAT(stage.host.Calls(), IsEmpty());
}

TEST(ExpandFilterNode, LeadsNowhere_WithoutAHostCall)
{
  Stage stage;
  const testsupport::NamedTree other("other");
  const std::vector<Path> paths{{},
                                {other["other"].Get()},
                                {nullptr},
                                stage.MakePath({"a"}),
                                stage.MakePath({"root", "a"}),
                                stage.MakePath({"root", "root"}),
                                {stage.kernel["root"].Get(), nullptr, stage.kernel["a"].Get()}};
  for (const Path& path : paths) {
    EXPECT_FALSE(stage.state->ExpandFilterNode(path)) << path.size();
    EXPECT_THAT(stage.host.Calls(), IsEmpty());
  }
}

TEST(ExpandFilterNode, OfANodeThatIsCompleteOrALeaf_IsFalseWithoutAHostCall)
{
  JobStage stage;
  stage.LetThrough({"b", "d"});
  stage.state->PopulateTree(false);
  stage.Finish();
  static_cast<void>(stage.host.TakeCalls());

  EXPECT_FALSE(stage.state->ExpandFilterNode({stage.kernel["root"].Get()}));
  EXPECT_FALSE(stage.state->ExpandFilterNode({stage.kernel["root"].Get(), stage.kernel["d"].Get()}));
  EXPECT_FALSE(
      stage.state->ExpandFilterNode({stage.kernel["root"].Get(), stage.kernel["d"].Get(), stage.kernel["b"].Get()}));

  EXPECT_THAT(stage.host.Calls(), IsEmpty());
}

TEST(ExpandFilterNode, FindsItsWayAmongSiblings)
{
  OpenTree* tree = nullptr;
  JobStage stage("root[a[b] x[y] z[b] d[e[f g]]]");
  stage.state->makeFilteredTree = [&] { return tree = new OpenTree; };
  stage.LetThrough({"b", "y", "f"});
  stage.Request();
  stage.Finish();
  ASSERT_EQ(Show(tree->GetRoot()), "root[a[b] x[y] z[b] d[e[f]]]");
  tree->Open(tree->GetRoot()->lastChild->firstChild);
  static_cast<void>(stage.host.TakeCalls());

  EXPECT_TRUE(
      stage.state->ExpandFilterNode({stage.kernel["root"].Get(), stage.kernel["d"].Get(), stage.kernel["e"].Get()}));

  EXPECT_EQ(Show(tree->GetRoot()), "root[a[b] x[y] z[b] d[e[f g]]]");
  EXPECT_THAT(stage.TakeRows(), ElementsAre("g"));
}

/// A result with a placeholder in its first branch, which the host opens from inside the row behind that branch.
struct OpenedOnTheWay : JobStage {
  OpenedOnTheWay() : JobStage("root[a[b c] d e[f]]")
  {
    state->makeFilteredTree = [this] { return tree = new OpenTree; };
    LetThrough({"b", "d", "f"});
    state->PopulateTree(false);
    GetPool().Run(0);
    tree->Open(tree->GetRoot()->firstChild);
    host.onCall = [this](const std::string& call) {
      if (call.starts_with("InstanceCreate(node d,")) {
        onRow();
      }
    };
  }
  [[nodiscard]] bool OpenBranch() const { return state->ExpandFilterNode({kernel["root"].Get(), kernel["a"].Get()}); }

  OpenTree* tree = nullptr;
  std::function<void()> onRow;
};

TEST(ExpandFilterNode, FromInsideARowOfTheResult_AddsItsRowsThere)
{
  OpenedOnTheWay stage;
  stage.onRow = [&] { EXPECT_TRUE(stage.OpenBranch()); };
  static_cast<void>(stage.host.TakeCalls());

  stage.Deliver();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "a", "b", "...a", "d", "c", "e", "f"));
}

TEST(ExpandFilterNode, FromInsideARowOfTheResult_LeavesTheWatchForWhatGoesToIt)
{
  OpenedOnTheWay stage;
  stage.onRow = [&] {
    EXPECT_TRUE(stage.OpenBranch());
    const auto e = stage.kernel["e"];
    stage.kernel.Get()->Remove(e);
    stage.state->InstanceRemove(e, stage.kernel["root"], false);
  };
  static_cast<void>(stage.host.TakeCalls());

  stage.Deliver();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "a", "b", "...a", "d", "c"));
}

TEST(ExpandFilterNode, FromInsideTheRowThatItOpens_BringsTheRowsBelowItOnce)
{
  for (const std::string row : {"a", "b", "d"}) {
    SCOPED_TRACE(row);
    OpenedOnTheWay stage;
    static_cast<void>(stage.host.TakeCalls());
    stage.host.onCall = [&](const std::string& call) {
      if (call.starts_with("InstanceCreate(node " + row + ",")) {
        EXPECT_TRUE(stage.OpenBranch());
      }
    };

    stage.Deliver();

    std::vector<std::string> rows = stage.TakeRows();
    std::erase(rows, "...a");
    EXPECT_THAT(rows, testing::UnorderedElementsAre("root", "a", "b", "c", "d", "e", "f"));
  }
}

TEST(ExpandFilterNode, FromInsideARowOfTheResult_ShowsWhatTakesThePlaceOfWhatHasGone)
{
  JobStage stage("root");
  const auto root = stage.kernel["root"];
  const auto& tree = stage.kernel.Get();
  const auto product = tree->CreateProduct({.name = "part"});
  stage.LetThrough({});
  stage.state->filter.onAsked = [&](auto&&...) { stage.host.events.at(0)->Cancel(); };
  stage.state->PopulateTree(false);
  stage.host.onCall = [&](const std::string& call) {
    if (!call.starts_with("InstanceCreate(node root,")) {
      return;
    }
    for (int number = 0; number < 20; ++number) {
      const auto gone = tree->AddChild(root, product, "gone");
      tree->Remove(gone);
      stage.state->InstanceRemove(gone, root, false);
    }
    for (int number = 0; number < 20; ++number) {
      tree->AddChild(root, product, "new");
    }
    EXPECT_TRUE(stage.state->ExpandFilterNode({root.Get()}));
  };

  stage.Finish();

  const std::vector<std::string> rows = stage.TakeRows();
  EXPECT_EQ(std::count(rows.begin(), rows.end(), "new"), 20);
}

TEST(ExpandFilterNode, FromInsideARowOfAResult_DoesNotReviveOneThatIsOvertaken)
{
  OpenedOnTheWay stage;
  stage.onRow = [&] {
    stage.state->filter.isFiltering = false;
    stage.state->PopulateTree(false);
    static_cast<void>(stage.host.TakeCalls());
    EXPECT_TRUE(stage.OpenBranch());
  };

  stage.Deliver();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("c"));
}

TEST(ExpandFilterNode, OfABranchThatTheHostOpensItselfMeanwhile_FindsNothingLeft)
{
  Stage stage("root[a]");
  stage.kernel.Get()->Remove(stage.kernel["a"]);
  bool isFirst = true;
  stage.host.onCall = [&](const std::string& call) {
    if (call == "StartTreeUpdate()" && std::exchange(isFirst, false)) {
      EXPECT_TRUE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));
    }
  };

  EXPECT_TRUE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));

  EXPECT_EQ(Show(stage.gui->GetFilteredTree()), "root");
}

TEST(ExpandFilterNode, WhileAJobRuns_IsFalseWithoutAHostCall)
{
  Stage stage;
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());

  EXPECT_FALSE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));

  EXPECT_THAT(stage.host.Calls(), IsEmpty());
  stage.Finish();
}

TEST(ExpandFilterNode, WithoutAResultOrWithoutARoot_IsFalse)
{
  JobStage stage;
  EXPECT_FALSE(stage.state->ExpandFilterNode({stage.kernel["root"].Get()}));
  stage.Request();
  stage.host.events.at(0)->Cancel();
  stage.Finish();
  ASSERT_EQ(Show(stage.gui->GetFilteredTree()), "none");

  EXPECT_FALSE(stage.state->ExpandFilterNode({stage.kernel["root"].Get()}));
}

TEST(ExpandFilterNode, AfterTheEndOfThePanel_IsFalse)
{
  Stage stage;
  stage.gui.Reset();

  EXPECT_FALSE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));
}

TEST(ExpandFilterNode, WorksOnTheLastResultAlsoAfterTheFilterWentOff)
{
  Stage stage;
  stage.state->filter.isFiltering = false;
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());

  EXPECT_TRUE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));

  EXPECT_THAT(stage.TakeRows(), ElementsAre("a", "b", "c", "d"));
}

TEST(ExpandFilterNode, ALostPlaceholderStaysReadableForTheHostThatKnowsIt)
{
  Stage stage;
  guitree::FilteredTree::Node* const placeholder = stage.gui->GetFilteredTree()->GetRoot()->lastChild;

  EXPECT_TRUE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));
  stage.state->filter.isFiltering = true;
  stage.Request();
  stage.Finish();

  EXPECT_EQ(placeholder->instance, nullptr);
  EXPECT_EQ(placeholder->parent, nullptr);
  EXPECT_EQ(placeholder->nextSibling, nullptr);
}

TEST(ExpandFilterNode, OfARootThatHasLostItsChildren_MakesNoRowAndIsTrueAllTheSame)
{
  Stage stage;
  stage.kernel.Get()->Remove(stage.kernel["a"]);
  stage.kernel.Get()->Remove(stage.kernel["d"]);
  static_cast<void>(stage.host.TakeCalls());

  EXPECT_TRUE(stage.state->ExpandFilterNode(stage.MakePath({"root"})));

  EXPECT_THAT(stage.host.TakeCalls(), ElementsAre("StartTreeUpdate()", "UpdateTreeTable()", "FinishTreeUpdate()"));
}

}  // namespace
