#include "EngineStage.h"
#include "filter/BuildTreeInfo.h"
#include "filter/ColumnSortOrder.h"

namespace filtertest {
namespace {

/// Judges single instances outside of a build.
struct Judge {
  explicit Judge(Stage& stage) : info(stage.filter, stage.additionalInfo, nullptr, nullptr, stage.spared)
  {
    stage.filter.onAsked = [this](const Instance&, std::set<Instance>&, bool, du::SmartPtr<du::RefCounted>&,
                                  unsigned int* count) { counters.push_back(count); };
  }

  OpenTree::BuildTreeInfo info;
  std::vector<unsigned int*> counters;
};

TEST(ItemJudging, WithoutATree_AsksTheFilterWithoutACounter)
{
  Stage stage("root[a b]");
  stage.LetThrough({"a"});
  Judge judge(stage);

  EXPECT_FALSE(judge.info._IsItemFilteredOut(stage.kernel["a"], false, nullptr));
  EXPECT_TRUE(judge.info._IsItemFilteredOut(stage.kernel["b"], false, nullptr));

  EXPECT_EQ(judge.counters, (std::vector<unsigned int*>{nullptr, nullptr}));
}

TEST(ItemJudging, WithoutATree_SparesAsWithOne)
{
  Stage stage("root[a[b[c]]]");
  stage.Spare("a");
  Judge judge(stage);

  EXPECT_FALSE(judge.info._IsItemFilteredOut(stage.kernel["a"], false, nullptr));
  EXPECT_FALSE(judge.info._IsItemFilteredOut(stage.kernel["b"], false, nullptr));
  EXPECT_TRUE(judge.info._IsItemFilteredOut(stage.kernel["c"], false, nullptr));
  EXPECT_EQ(judge.counters.size(), 1u);
}

TEST(ItemJudging, OfNoInstance_IsLeftToTheFilterAlsoWhereOthersAreSpared)
{
  Stage stage("root[a]");
  stage.Spare("a");
  Judge judge(stage);
  stage.filter.filtersOut = [](const Instance& instance, bool) { return !instance; };

  EXPECT_TRUE(judge.info._IsItemFilteredOut(Instance(), false, nullptr));

  EXPECT_EQ(judge.counters.size(), 1u);
}

TEST(ItemJudging, OfInstancesInAnyOrder_LooksUpTheirOwnParents)
{
  Stage stage("root[a[b] c[d]]");
  stage.Spare("a");
  stage.filter.filtersOutAtRoot = [](const Instance&) { return true; };
  Judge judge(stage);

  for (int round = 0; round < 2; ++round) {
    EXPECT_FALSE(judge.info._IsItemFilteredOut(stage.kernel["b"], false, nullptr));
    EXPECT_TRUE(judge.info._IsItemFilteredOut(stage.kernel["d"], false, nullptr));
    EXPECT_TRUE(judge.info._IsItemFilteredOut(stage.kernel["c"], false, nullptr));
    EXPECT_TRUE(judge.info._IsItemFilteredOut(stage.kernel["root"], false, nullptr));
  }
}

/// Two rows of those values; an empty one is none.
struct TwoRows {
  TwoRows(const char* valueOfA, const char* valueOfB)
  {
    kernel.Get()->SetProperty(kernel["a"], "Physical", "Mass", valueOfA);
    kernel.Get()->SetProperty(kernel["b"], "Physical", "Mass", valueOfB);
  }

  [[nodiscard]] bool IsABefore(bool isAscending) const { return _IsBefore("a", "b", isAscending); }
  [[nodiscard]] bool IsBBefore(bool isAscending) const { return _IsBefore("b", "a", isAscending); }

  testsupport::NamedTree kernel{"root[a b]"};

private:
  /// Asks with instances and with nodes, which must agree.
  [[nodiscard]] bool _IsBefore(const char* one, const char* other, bool isAscending) const
  {
    const guitree::ColumnSortOrder order({"Physical", "Mass"}, isAscending);
    const Instance first = kernel[one];
    const Instance second = kernel[other];
    const Node firstNode{.instance = first.Get()};
    const Node secondNode{.instance = second.Get()};
    const bool isBefore = order(first, second);
    EXPECT_EQ(order(&firstNode, &secondNode), isBefore);
    return isBefore;
  }
};

TEST(ColumnSortOrder, OfTwoTexts_GoesByTheirBytes)
{
  const TwoRows rows("10", "9");

  EXPECT_TRUE(rows.IsABefore(true));
  EXPECT_FALSE(rows.IsBBefore(true));
  EXPECT_FALSE(rows.IsABefore(false));
  EXPECT_TRUE(rows.IsBBefore(false));
}

TEST(ColumnSortOrder, OfEqualTextsOrNone_IsEqual)
{
  for (const char* value : {"x", ""}) {
    const TwoRows rows(value, value);
    for (const bool isAscending : {true, false}) {
      EXPECT_FALSE(rows.IsABefore(isAscending));
      EXPECT_FALSE(rows.IsBBefore(isAscending));
    }
  }
}

TEST(ColumnSortOrder, OfOneText_PutsItFirstAscendingAndLastDescending)
{
  const TwoRows rows("x", "");

  EXPECT_TRUE(rows.IsABefore(true));
  EXPECT_FALSE(rows.IsBBefore(true));
  EXPECT_FALSE(rows.IsABefore(false));
  EXPECT_TRUE(rows.IsBBefore(false));
}

TEST(ColumnSortOrder, OfNull_IsThatOfARowWithoutAValue)
{
  const testsupport::NamedTree kernel("root[a]");
  kernel.Get()->SetProperty(kernel["a"], "", "Mass", "x");
  const guitree::ColumnSortOrder order({"", "Mass"}, true);

  EXPECT_TRUE(order(Instance(kernel["a"]), Instance()));
  EXPECT_FALSE(order(Instance(), Instance(kernel["a"])));
  EXPECT_FALSE(order(Instance(), Instance()));
}

}  // namespace
}  // namespace filtertest
