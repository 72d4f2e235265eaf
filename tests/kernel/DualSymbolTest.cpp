#include "du/DualSymbol.h"

#include <gtest/gtest.h>

namespace {

TEST(DualSymbol, ByDefault_IsTwoEmptySymbols)
{
  const du::DualSymbol column;

  EXPECT_TRUE(column.GetFirst().IsEmpty());
  EXPECT_TRUE(column.GetSecond().IsEmpty());
  EXPECT_EQ(column, du::DualSymbol(du::Symbol::EMPTY, ""));
}

TEST(DualSymbol, KeepsBothSymbolsInOrder)
{
  const du::DualSymbol column("group", "name");
  const du::DualSymbol copy(column);

  EXPECT_TRUE(copy.GetFirst() == "group");
  EXPECT_TRUE(copy.GetSecond() == "name");
}

TEST(DualSymbol, IsEqualOnlyWhenBothAre)
{
  EXPECT_EQ(du::DualSymbol("group", "name"), du::DualSymbol("group", "name"));
  EXPECT_NE(du::DualSymbol("group", "name"), du::DualSymbol("name", "group"));
  EXPECT_NE(du::DualSymbol("group", "name"), du::DualSymbol("group", ""));
}

}  // namespace
