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
  // A tree of an own class that leaves a placeholder where the test wants one.
  class OpenTree : public guitree::FilteredTree {
  public:
    void Open(Node* parent) { _BuildTree(parent, nullptr, nullptr, false); }
  };
  JobStage stage("root[a[b] d[e[f g]]]");
  OpenTree* tree = nullptr;
  stage.state->makeFilteredTree = [&] { return tree = new OpenTree; };
  stage.LetThrough({"b", "f"});
  stage.Request();
  stage.Finish();
  ASSERT_EQ(Show(tree->GetRoot()), "root[a[b] d[e[f]]]");
  tree->Open(tree->GetRoot()->lastChild->firstChild);
  static_cast<void>(stage.host.TakeCalls());

  EXPECT_TRUE(
      stage.state->ExpandFilterNode({stage.kernel["root"].Get(), stage.kernel["d"].Get(), stage.kernel["e"].Get()}));

  EXPECT_EQ(Show(tree->GetRoot()), "root[a[b] d[e[f g]]]");
  EXPECT_THAT(stage.TakeRows(), ElementsAre("g"));
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
