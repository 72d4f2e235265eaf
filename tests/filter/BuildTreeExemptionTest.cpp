#include "EngineStage.h"

namespace filtertest {
namespace {

/// Keeps the names that `IsRootFilteredOut` is asked about, and rejects those of a list.
struct RootQuestions {
  explicit RootQuestions(Stage& stage)
  {
    stage.filter.filtersOutAtRoot = [this](const Instance& instance) {
      asked.push_back(NameOf(instance.Get()));
      return rejected.contains(asked.back());
    };
  }

  Names asked;
  std::set<std::string> rejected;
};

TEST(BuildTreeExemption, ExemptInstance_StaysWithItsChildrenAndIsNotRecorded)
{
  Stage stage("root[a[e[f g[h]] b] c]");
  stage.Spare("e");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a[e[f g]]]");
  EXPECT_TRUE(stage.tree->IsFilteredTreeEmpty());
  EXPECT_TRUE(stage.GetCreated().empty());
  EXPECT_EQ(stage.GetFirst(), "e");
}

TEST(BuildTreeExemption, ExemptInstanceThatTheFilterLetsThrough_IsRecorded)
{
  Stage stage("root[e[f]]");
  stage.Spare("e");
  stage.LetThrough({"e", "f"});

  stage.Build();

  EXPECT_EQ(stage.GetMatched(), (Names{"e", "f"}));
}

TEST(BuildTreeExemption, BodiesBelowAnExemptParent_AreFilteredAsUsualWhenBodiesAreHidden)
{
  Stage stage("root[e[body part matched]]");
  stage.kernel.Get()->SetFlags(stage.kernel["body"], memkernel::InstanceBody, true);
  stage.kernel.Get()->SetFlags(stage.kernel["matched"], memkernel::InstanceBody, true);
  stage.LetThrough({"matched"});
  stage.Spare("e");

  stage.Build();
  EXPECT_EQ(stage.GetRows(), "root[e[body part matched]]");

  stage.filter.hideBodies = true;
  stage.Build();
  EXPECT_EQ(stage.GetRows(), "root[e[part matched]]");
}

TEST(BuildTreeExemption, ExemptBody_StaysAlsoWhenBodiesAreHidden)
{
  Stage stage("root[a[body]]");
  stage.kernel.Get()->SetFlags(stage.kernel["body"], memkernel::InstanceBody, true);
  stage.filter.hideBodies = true;
  stage.Spare("body");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a[body]]");
}

TEST(BuildTreeExemption, ExemptRoot_KeepsAllOfTheFirstLevel)
{
  Stage stage("root[a[b] c]");
  stage.Spare("root");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a c]");
  EXPECT_EQ(stage.GetFirst(), "root");
}

TEST(BuildTreeExemption, WithNobodyExempt_RootQuestionsAreNeverAsked)
{
  Stage stage("root[a[b] c]");
  const RootQuestions questions(stage);

  stage.Build();

  EXPECT_TRUE(questions.asked.empty());
}

TEST(BuildTreeExemption, RootQuestions_AreAskedAtEachJudgingOfAFirstLevelThatIsNotExemptItself)
{
  Stage stage("root[a[b] c e[f]]");
  const RootQuestions questions(stage);
  stage.Spare("e");

  stage.Build();

  // Once before the node is made and once after, since nothing has passed yet.
  EXPECT_EQ(questions.asked, (Names{"a", "a", "c", "c"}));
  EXPECT_EQ(stage.GetRows(), "root[e[f]]");
}

TEST(BuildTreeExemption, RootQuestions_AnsweredWithYes_OverruleTheFilterAndTheExemptRoot)
{
  Stage stage("root[a b c]");
  RootQuestions questions(stage);
  questions.rejected = {"a", "b"};
  stage.LetThrough({"a"});
  stage.Spare("root");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[c]");
  // What the filter lets through is recorded all the same.
  EXPECT_EQ(stage.GetMatched(), Names{"a"});
}

TEST(BuildTreeExemption, RootQuestions_DoNotTouchTheExemptNorTheLevelsBelow)
{
  Stage stage("root[e[f] a[m]]");
  RootQuestions questions(stage);
  questions.rejected = {"e", "f", "a", "m", "root"};
  stage.LetThrough({"m"});
  stage.Spare("e");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[e[f] a[m]]");
  EXPECT_EQ(std::count(questions.asked.begin(), questions.asked.end(), "root"), 0);
  EXPECT_EQ(std::count(questions.asked.begin(), questions.asked.end(), "m"), 0);
}

TEST(BuildTreeExemption, RootQuestions_GoByTheChainOfParentsAndNotByTheTopOfTheBuild)
{
  Stage stage("top[root[a b]]");
  RootQuestions questions(stage);
  questions.rejected = {"a"};
  stage.LetThrough({"a"});
  stage.Spare("b");

  stage.Build(stage.kernel["root"]);

  EXPECT_EQ(stage.GetRows(), "root[a b]");
  EXPECT_EQ(questions.asked, Names{"root"});
}

TEST(BuildTreeExemption, ChildrenOfDifferentParents_AreToldApart)
{
  Stage stage("root[e[f[g] h] a[i]]");
  stage.Spare("e");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[e[f h]]");
}

TEST(BuildTreeExemption, WithoutForcedChecks_TheFilterIsNotAskedAboutTheSpared)
{
  Stage stage("root[e[f] a]");
  stage.tree->isForced = false;
  stage.Spare("e");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[e[f]]");
  EXPECT_EQ(stage.asks, (Names{"root", "a"}));
}

TEST(BuildTreeExemption, ForcedChecks_AskTheFilterAboutTheSparedToo)
{
  Stage stage("root[e[f] a]");
  stage.Spare("e");

  stage.Build();

  EXPECT_EQ(stage.asks, (Names{"root", "e", "e", "f", "a"}));
}

TEST(BuildTreeExemption, HoldsInBothPasses)
{
  Stage stage("root[e[f[g]] h]");
  stage.Hide({"e", "f", "h"});
  stage.Spare("e");

  stage.Build();

  EXPECT_EQ(stage.GetHiddenRows(), "root[e[f[g]]]");
  EXPECT_EQ(stage.GetRows(), "root[e[f]]");
}

TEST(BuildTreeExemption, MatchesThatAreFilteredOutAtTheRoot_AreCountedOnceAmongSiblings)
{
  Stage stage("root[a b[x] c]");
  stage.filter.showSiblings = true;
  stage.filter.filtersOutAtRoot = [](const Instance&) { return true; };
  stage.LetThrough({"a", "b"});
  stage.Spare("x");

  stage.Build();

  EXPECT_EQ(stage.GetMatched(), (Names{"a", "b"}));
  EXPECT_EQ(stage.tree->GetNumMatchedItems(), 2U);
}

}  // namespace
}  // namespace filtertest
