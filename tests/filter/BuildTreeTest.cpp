#include "EngineStage.h"

namespace filtertest {
namespace {

TEST(BuildTree, NoMatch_LeavesTheRootAlone)
{
  Stage stage("root[a[b] c]");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root");
  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), nullptr);
  EXPECT_TRUE(stage.tree->IsFilteredTreeEmpty());
  EXPECT_TRUE(stage.GetCreated().empty());
}

TEST(BuildTree, EverythingMatches_KeepsTheKernelsTree)
{
  Stage stage("root[a[b c] d]");
  stage.LetThrough({"root", "a", "b", "c", "d"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a[b c] d]");
  EXPECT_EQ(stage.GetFirst(), "root");
  EXPECT_EQ(stage.GetMatched(), (Names{"a", "b", "c", "d", "root"}));
  EXPECT_EQ(stage.GetCreated(), stage.GetMatched());
  ExpectLinked(stage.tree->GetRoot());
}

TEST(BuildTree, RejectedParentsOfAMatch_AreKeptAndInNeitherSet)
{
  Stage stage("root[x a[x b[m x] x] x]");
  stage.LetThrough({"m"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a[b[m]]]");
  EXPECT_EQ(stage.GetMatched(), Names{"m"});
  EXPECT_EQ(stage.GetCreated(), Names{"m"});
  EXPECT_FALSE(stage.tree->IsContainItem(stage.kernel["a"]));
  ExpectLinked(stage.tree->GetRoot());
}

TEST(BuildTree, MatchWithRejectedChildren_ShowsAsALeaf)
{
  Stage stage("root[m[a[b] c]]");
  stage.LetThrough({"m"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[m]");
  EXPECT_EQ(stage["m"]->firstChild, nullptr);
  EXPECT_EQ(stage["m"]->lastChild, nullptr);
}

TEST(BuildTree, Pruning_MendsTheLinksAtTheBeginInTheMiddleAndAtTheEnd)
{
  Stage stage("root[x m[x m x m x] x m x]");
  stage.LetThrough({"m"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[m[m m] m]");
  ExpectLinked(stage.tree->GetRoot());
}

TEST(BuildTree, RootThatIsALeaf_IsJudgedOnceAndKept)
{
  Stage stage("root");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root");
  EXPECT_EQ(stage.asks, Names{"root"});
}

TEST(BuildTree, InstanceBelowTheRoot_CanBeTheTopOfTheTree)
{
  Stage stage("root[a[b c] d]");
  stage.LetThrough({"c", "d"});

  stage.Build(stage.kernel["a"]);

  EXPECT_EQ(stage.GetRows(), "a[c]");
}

TEST(BuildTree, FirstFilteredNode_IsTheFirstMatchInTheOrderOfRows)
{
  Stage stage("root[a[x m] m2]");
  stage.LetThrough({"m", "m2"});

  stage.Build();

  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), stage["m"]);
}

TEST(BuildTree, FirstFilteredNode_IsAParentBeforeItsChildren)
{
  Stage stage("root[a[b]]");
  stage.LetThrough({"b", "a"});

  stage.Build();

  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), stage["a"]);
}

TEST(BuildTree, FirstFilteredNode_CountsTheExemptAsWell)
{
  Stage stage("root[a b]");
  stage.LetThrough({"b"});
  stage.Spare("a");

  stage.Build();

  EXPECT_EQ(stage.GetFirst(), "a");
}

TEST(BuildTree, FirstFilteredNode_WhoseNodeIsPruned_GivesItsPlaceToTheNextMatch)
{
  Stage stage("root[fickle b m]");
  // Rejected when it is to be kept, and let through when it has its node.
  int asksAboutFickle = 0;
  stage.filter.filtersOut = [&asksAboutFickle](const Instance& instance, bool) {
    const std::string name = NameOf(instance.Get());
    return name == "fickle" ? ++asksAboutFickle == 1 : name != "m";
  };

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[m]");
  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), stage["m"]);
  EXPECT_EQ(stage.GetMatched(), (Names{"fickle", "m"}));
}

TEST(BuildTree, FirstFilteredNode_WhoseNodeIsPrunedWithNoOtherMatch_IsNull)
{
  Stage stage("root[a[fickle] b]");
  int asksAboutFickle = 0;
  stage.filter.filtersOut = [&asksAboutFickle](const Instance& instance, bool) {
    return NameOf(instance.Get()) != "fickle" || ++asksAboutFickle == 1;
  };

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root");
  EXPECT_EQ(stage.tree->GetFirstFilteredNode(), nullptr);
  EXPECT_EQ(stage.GetMatched(), Names{"fickle"});
}

TEST(BuildTree, ShowSiblings_KeepsAllSiblingsOfAMatchAsCreatedItems)
{
  Stage stage("root[a[x m y] b]");
  stage.filter.showSiblings = true;
  stage.LetThrough({"m"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a[x m y]]");
  EXPECT_EQ(stage.GetMatched(), Names{"m"});
  EXPECT_EQ(stage.GetCreated(), (Names{"m", "x", "y"}));
  EXPECT_EQ(stage.GetFirst(), "m");
}

TEST(BuildTree, ShowSiblings_CountsEachMatchOnce)
{
  for (const char* const tree : {"root[a b c x]", "root[x a[b c] d]", "root[x[y a] b[c x]]"}) {
    Stage stage(tree);
    stage.filter.showSiblings = true;
    stage.LetThrough({"a", "b", "c"});

    stage.Build();

    EXPECT_EQ(stage.GetMatched(), (Names{"a", "b", "c"})) << tree;
    EXPECT_EQ(stage.tree->GetNumMatchedItems(), 3U) << tree;
  }
}

TEST(BuildTree, ShowSiblings_BringsTheSiblingsAndNotTheirChildren)
{
  Stage stage("root[m x[y z] w]");
  stage.filter.showSiblings = true;
  stage.LetThrough({"m"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[m x w]");
}

TEST(BuildTree, ShowSiblings_WithoutAMatchAmongThem_StillKeepsTheAncestorsOfOne)
{
  Stage stage("root[a[b[m]] c]");
  stage.filter.showSiblings = true;
  stage.LetThrough({"m"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a[b[m]]]");
  EXPECT_EQ(stage.GetCreated(), Names{"m"});
}

TEST(BuildTree, ShowSiblings_AnExemptChildMakesItsSiblingsCreatedItemsAndIsOneToo)
{
  Stage stage("root[x e y]");
  stage.filter.showSiblings = true;
  stage.Spare("e");

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[x e y]");
  EXPECT_TRUE(stage.tree->IsFilteredTreeEmpty());
  EXPECT_EQ(stage.GetCreated(), (Names{"e", "x", "y"}));
}

TEST(BuildTree, AdditionalCheck_IsAskedAboutRejectedOnesAloneAndMakesThemMatches)
{
  Stage stage("root[a b c]");
  stage.LetThrough({"a"});
  Names checked;
  stage.tree->isRejectedToo = [&checked](const Instance& instance) {
    checked.push_back(NameOf(instance.Get()));
    return checked.back() != "b";
  };

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a b]");
  EXPECT_EQ(stage.GetMatched(), (Names{"a", "b"}));
  EXPECT_EQ(stage.GetCreated(), (Names{"a", "b"}));
  EXPECT_EQ(checked, (Names{"root", "b", "c"}));
}

TEST(BuildTree, WithoutForcedChecks_FindsTheSameRowsAndRecordsNothing)
{
  Stage stage("root[a[x m] y]");
  stage.tree->isForced = false;
  stage.LetThrough({"m"});
  bool isAskedFurther = false;
  stage.tree->isRejectedToo = [&isAskedFurther](const Instance&) { return isAskedFurther = true; };

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a[m]]");
  EXPECT_EQ(stage.GetFirst(), "m");
  EXPECT_TRUE(stage.tree->IsFilteredTreeEmpty());
  EXPECT_TRUE(stage.GetCreated().empty());
  EXPECT_FALSE(isAskedFurther);
}

TEST(BuildTree, WithoutForcedChecks_TheSearchAmongSiblingsEndsAtTheFirstMatch)
{
  Stage stage("root[x m y z]");
  stage.filter.showSiblings = true;
  stage.tree->isForced = false;
  stage.LetThrough({"m", "y"});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[x m y z]");
  // Then the root's children come to their nodes; the first match is one of them.
  EXPECT_EQ(stage.asks, (Names{"root", "x", "m", "x", "m"}));
  EXPECT_TRUE(stage.GetCreated().empty());
}

TEST(BuildTree, ASecondBuild_ReplacesTheTreeAndAddsToTheSets)
{
  Stage stage("root[a b[c]]");
  stage.LetThrough({"a"});
  stage.Build();
  const unsigned int asksOfTheFirst = stage.tree->GetNumInsts();
  stage.asks.clear();

  stage.LetThrough({"c"});
  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[b[c]]");
  EXPECT_EQ(stage.GetFirst(), "c");
  EXPECT_EQ(stage.GetMatched(), (Names{"a", "c"}));
  EXPECT_EQ(stage.GetCreated(), (Names{"a", "c"}));
  EXPECT_EQ(stage.tree->GetNumInsts(), stage.asks.size());
  EXPECT_EQ(asksOfTheFirst, 5u);
}

TEST(BuildTree, ASecondBuild_ForgetsTheHiddenTreeOfTheFirst)
{
  Stage stage("root[a b]");
  stage.Hide({"b"});
  stage.Build();
  ASSERT_EQ(stage.tree->GetNumHfInsts(), 2u);

  stage.filter.hasHiddenPass = false;
  stage.Build();

  EXPECT_EQ(stage.tree->hfRoot, nullptr);
  EXPECT_EQ(stage.tree->GetNumHfInsts(), 0u);
}

}  // namespace
}  // namespace filtertest
