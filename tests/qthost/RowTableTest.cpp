#include "RowTable.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <vector>

#include "testsupport/PlainBaseInstance.h"

namespace qthosttest {
namespace {

using qthost::RowTable;
using Instance = du::SmartPtr<zelk::BaseInstance>;
using Id = RowTable::Id;

Instance MakeInstance()
{
  return du::MakeSmart<testsupport::PlainBaseInstance>("part");
}

std::vector<Id> ListChildren(const RowTable& table, Id parent)
{
  std::vector<Id> children;
  for (std::size_t i = 0; i < table.GetChildCount(parent); ++i) {
    children.push_back(table.GetChild(parent, i));
  }
  return children;
}

TEST(RowTable, RowsOfAFilling_StandInTheOrderInWhichTheyCame)
{
  RowTable table;
  const Id root = table.Append(MakeInstance(), RowTable::s_top);
  const Id first = table.Append(MakeInstance(), root);
  const Id below = table.Append(MakeInstance(), first);
  const Id second = table.Append(MakeInstance(), root);

  table.FinishFilling();

  EXPECT_EQ(ListChildren(table, RowTable::s_top), std::vector{root});
  EXPECT_EQ(ListChildren(table, root), (std::vector{first, second}));
  EXPECT_EQ(ListChildren(table, first), std::vector{below});
  EXPECT_EQ(table.GetPosition(second), 1U);
  EXPECT_EQ(table.GetCount(), 4U);
}

TEST(RowTable, Find_KnowsEachInstanceUntilItsRowIsErased)
{
  RowTable table;
  std::vector<Instance> instances;
  std::vector<Id> rows;
  for (int i = 0; i < 5000; ++i) {
    instances.push_back(MakeInstance());
    rows.push_back(table.Append(instances.back(), RowTable::s_top));
  }
  table.FinishFilling();

  for (std::size_t i = 0; i < rows.size(); i += 2) {
    table.Unlink(RowTable::s_top, table.GetPosition(rows[i]), 1);
    table.Erase(rows[i]);
  }

  for (std::size_t i = 0; i < rows.size(); ++i) {
    ASSERT_EQ(table.Find(instances[i].Get()), i % 2 == 0 ? RowTable::s_none : rows[i]);
  }
  EXPECT_EQ(table.Find(nullptr), RowTable::s_none);
  EXPECT_EQ(table.GetCount(), 2500U);
}

TEST(RowTable, Find_KnowsAllThatHaveComeAtEachMomentOfAFilling)
{
  RowTable table;
  std::vector<Instance> instances;
  for (std::size_t count = 1; count <= 200; ++count) {
    instances.push_back(MakeInstance());
    table.Append(instances.back(), RowTable::s_top);
    if (count % 50 == 0) {
      table.Reserve(count * 2);
    }
    for (std::size_t i = 0; i < count; ++i) {
      ASSERT_EQ(table.Find(instances[i].Get()), static_cast<Id>(i + 1));
    }
  }
}

TEST(RowTable, Clear_ForgetsWhatHasJustCome)
{
  RowTable table;
  const Instance instance = MakeInstance();
  table.Append(instance, RowTable::s_top);

  table.Clear();
  const Id other = table.Append(MakeInstance(), RowTable::s_top);
  table.FinishFilling();

  EXPECT_EQ(table.Find(instance.Get()), RowTable::s_none);
  EXPECT_EQ(table.GetInstance(other)->GetObjectName(), du::Symbol("part"));
}

TEST(RowTable, Erase_TakesAllBelowAlongAndLetsGoOfTheInstances)
{
  RowTable table;
  const Instance instance = MakeInstance();
  const Id root = table.Append(MakeInstance(), RowTable::s_top);
  table.Append(instance, table.Append(MakeInstance(), root));
  table.FinishFilling();

  table.Unlink(RowTable::s_top, 0, 1);
  table.Erase(root);

  EXPECT_EQ(table.GetCount(), 0U);
  EXPECT_EQ(table.Find(instance.Get()), RowTable::s_none);
  EXPECT_EQ(instance->AddReference(nullptr), 2);
  instance->RemoveReference(nullptr);
}

TEST(RowTable, NumberOfAnErasedRow_IsUsedAgainForARowWithoutMarks)
{
  RowTable table;
  const Id row = table.Append(MakeInstance(), RowTable::s_top);
  table.Append(MakeInstance(), row);
  table.Set(row, RowTable::HasPlaceholder, true);
  table.FinishFilling();
  table.Unlink(RowTable::s_top, 0, 1);
  table.Erase(row);

  const Id first = table.Append(MakeInstance(), RowTable::s_top);
  const Id second = table.Append(MakeInstance(), RowTable::s_top);

  EXPECT_EQ(table.GetLastId(), 2U);
  for (const Id again : {first, second}) {
    EXPECT_FALSE(table.Has(again, RowTable::HasPlaceholder));
    EXPECT_EQ(table.GetChildCount(again), 0U);
  }
}

// Against a plain list, through edits at any place of a long one.
TEST(RowTable, Positions_AreRightAfterAnyEditsOfALongList)
{
  std::mt19937 random(7);
  RowTable table;
  std::vector<Id> expected;
  for (int i = 0; i < 6000; ++i) {
    expected.push_back(table.Append(MakeInstance(), RowTable::s_top));
  }
  table.FinishFilling();

  for (int step = 0; step < 6000; ++step) {
    const std::size_t place = random() % expected.size();
    const std::size_t count = std::min<std::size_t>(random() % 3 + 1, expected.size() - place);
    const auto from = expected.begin() + static_cast<std::ptrdiff_t>(place);
    if (random() % 2 == 0) {
      table.Unlink(RowTable::s_top, place, count);
      for (auto row = from; row != from + static_cast<std::ptrdiff_t>(count); ++row) {
        table.Erase(*row);
      }
      expected.erase(from, from + static_cast<std::ptrdiff_t>(count));
    } else {
      std::vector<Id> rows(count);
      std::generate(rows.begin(), rows.end(), [&] { return table.Make(MakeInstance(), RowTable::s_top); });
      table.Link(RowTable::s_top, place, rows);
      expected.insert(from, rows.begin(), rows.end());
    }
    const std::size_t asked = random() % expected.size();
    ASSERT_EQ(table.GetPosition(expected[asked]), asked) << "after step " << step;
  }

  EXPECT_EQ(ListChildren(table, RowTable::s_top), expected);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_EQ(table.GetPosition(expected[i]), i);
  }
}

}  // namespace
}  // namespace qthosttest
