#include <map>

#include "CountedKernel.h"
#include "EngineStage.h"

namespace filtertest {
namespace {

/// The values of a column for a tree whose instances all pass.
void SortBy(Stage& stage, const du::DualSymbol& column, const std::map<std::string, const char*>& values)
{
  stage.filter.sortColumn = column;
  stage.filter.filtersOut = nullptr;
  for (const auto& [name, value] : values) {
    stage.kernel.Get()->SetProperty(stage.kernel[name], column.GetFirst(), column.GetSecond(), value);
  }
}

TEST(BuildTreeSort, WithoutAColumn_KeepsTheKernelsOrderAndReadsNoProperty)
{
  CountedKernel kernel;
  CountedInstance* const root = kernel.Add(nullptr, "root");
  for (const char* name : {"c", "a", "b"}) {
    kernel.Add(root, name);
  }
  Stage stage("");
  stage.LetThrough({"a", "b", "c"});
  stage.filter.sortColumn = du::DualSymbol("", "");

  stage.Build(kernel.GetRoot());

  EXPECT_EQ(stage.GetRows(), "root[c a b]");
  EXPECT_EQ(kernel.reads.properties, 0u);
}

TEST(BuildTreeSort, EachPropertyIsReadOnceAList)
{
  CountedKernel kernel;
  CountedInstance* const root = kernel.Add(nullptr, "root");
  for (int count = 0; count < 100; ++count) {
    kernel.Add(root, "leaf");
  }
  Stage stage("");
  stage.filter.sortColumn = du::DualSymbol("Physical", "Mass");
  stage.filter.showSiblings = true;

  stage.Build(kernel.GetRoot());

  EXPECT_EQ(kernel.reads.properties, 100u);
}

TEST(BuildTreeSort, Ascending_OrdersByTheTextAndPutsThoseWithoutAValueLast)
{
  Stage stage("root[none d b ten none2 two]");
  SortBy(stage, {"Physical", "Mass"}, {{"d", "d"}, {"b", "b"}, {"ten", "10"}, {"two", "2"}});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[ten two b d none none2]");
}

TEST(BuildTreeSort, Descending_PutsThoseWithoutAValueFirst)
{
  Stage stage("root[none d b ten none2 two]");
  SortBy(stage, {"Physical", "Mass"}, {{"d", "d"}, {"b", "b"}, {"ten", "10"}, {"two", "2"}});
  stage.filter.sortAscending = false;

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[none none2 d b two ten]");
}

TEST(BuildTreeSort, ComparesBytes)
{
  Stage stage("root[lower upper umlaut prefix longer]");
  SortBy(stage, {"Physical", "Mass"},
         {{"lower", "a"}, {"upper", "B"}, {"umlaut", "\xc3\x84"}, {"prefix", "a"}, {"longer", "aa"}});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[upper lower prefix longer umlaut]");
}

TEST(BuildTreeSort, EmptyValue_IsNoValue)
{
  Stage stage("root[empty none z]");
  SortBy(stage, {"Physical", "Mass"}, {{"empty", ""}, {"z", "z"}});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[z empty none]");
}

TEST(BuildTreeSort, ColumnWithOneEmptyPart_IsAColumn)
{
  for (const du::DualSymbol& column : {du::DualSymbol("Physical", ""), du::DualSymbol("", "Mass")}) {
    Stage stage("root[b a]");
    SortBy(stage, column, {{"a", "1"}, {"b", "2"}});

    stage.Build();

    EXPECT_EQ(stage.GetRows(), "root[a b]");
  }
}

TEST(BuildTreeSort, ManyRowsOfEqualValue_KeepTheKernelsOrder)
{
  std::string rows = "root[n0";
  for (int number = 1; number < 100; ++number) {
    rows += " n" + std::to_string(number);
  }
  rows += "]";
  for (const bool isAscending : {true, false}) {
    Stage stage(rows);
    stage.filter.filtersOut = nullptr;
    stage.filter.sortAscending = isAscending;
    stage.filter.sortColumn = du::DualSymbol("", "Mass");

    stage.Build();

    EXPECT_EQ(stage.GetRows(), rows);
  }
}

TEST(BuildTreeSort, EveryLevelIsSortedByItself)
{
  Stage stage("root[b[y x] a[q p]]");
  SortBy(stage, {"", "Mass"}, {{"a", "1"}, {"b", "2"}, {"x", "3"}, {"y", "4"}, {"p", "5"}, {"q", "6"}});

  stage.Build();

  EXPECT_EQ(stage.GetRows(), "root[a[p q] b[x y]]");
  ExpectLinked(stage.tree->root);
}

TEST(BuildTreeSort, FirstFilteredNode_IsTheFirstInTheSortedOrder)
{
  Stage stage("root[b a]");
  SortBy(stage, {"", "Mass"}, {{"a", "1"}, {"b", "2"}});
  stage.LetThrough({"a", "b"});

  stage.Build();

  EXPECT_EQ(stage.GetFirst(), "a");
}

TEST(BuildTreeSort, AsksComeInTheSortedOrder)
{
  Stage stage("root[b a]");
  SortBy(stage, {"", "Mass"}, {{"a", "1"}, {"b", "2"}});
  stage.filter.showSiblings = true;
  stage.LetThrough({});

  stage.Build();

  EXPECT_EQ(stage.asks, (Names{"root", "a", "b", "a", "a", "b", "b"}));
}

TEST(BuildTreeSort, BothPassesSort)
{
  Stage stage("root[c b a]");
  SortBy(stage, {"", "Mass"}, {{"a", "1"}, {"b", "2"}, {"c", "3"}});
  stage.Hide({"b"});
  stage.LetThrough({"a", "c"});

  stage.Build();

  EXPECT_EQ(stage.GetHiddenRows(), "root[a c]");
  EXPECT_EQ(stage.GetRows(), "root[a c]");
}

TEST(BuildTreeSort, SecondPass_SortsAnewByWhatTheColumnSaysThen)
{
  Stage stage("root[a b]");
  SortBy(stage, {"", "Mass"}, {{"a", "1"}, {"b", "2"}});
  stage.Hide({});
  stage.LetThrough({"a", "b"});
  stage.tree->onJudging = [&stage](bool hiddenPass) { stage.filter.sortAscending = hiddenPass; };

  stage.Build();

  EXPECT_EQ(stage.GetHiddenRows(), "root[a b]");
  EXPECT_EQ(stage.GetRows(), "root[b a]");
}

}  // namespace
}  // namespace filtertest
