#include "zelk/FindBehind.h"

#include <gtest/gtest.h>

#include "SmallTree.h"

namespace {

using kerneltest::SmallTree;
using zelk::FindBehind;

class FindBehindTest : public testing::Test {
protected:
  SmallTree m_tree;
};

TEST_F(FindBehindTest, WithASibling_IsTheNextOne)
{
  EXPECT_EQ(FindBehind(*m_tree.a1, nullptr), m_tree.a2);
}

TEST_F(FindBehindTest, PassesOverAllBelow)
{
  EXPECT_EQ(FindBehind(*m_tree.a, nullptr), m_tree.b);
}

TEST_F(FindBehindTest, OfTheLastChild_IsWhatFollowsItsParent)
{
  EXPECT_EQ(FindBehind(*m_tree.a2, nullptr), m_tree.b);
  EXPECT_EQ(FindBehind(*m_tree.a2, m_tree.root.Get()), m_tree.b);
}

TEST_F(FindBehindTest, AtTheEndOfTheBranch_IsNull)
{
  EXPECT_FALSE(FindBehind(*m_tree.a2, m_tree.a.Get()));
  EXPECT_FALSE(FindBehind(*m_tree.b1, m_tree.root.Get()));
}

TEST_F(FindBehindTest, AtTheEndOfTheTree_IsNull)
{
  EXPECT_FALSE(FindBehind(*m_tree.b1, nullptr));
  EXPECT_FALSE(FindBehind(*m_tree.root, nullptr));
}

TEST_F(FindBehindTest, OfWhatDoesNotLieBelowTheTop_EndsWithTheTree)
{
  EXPECT_EQ(FindBehind(*m_tree.a2, m_tree.b.Get()), m_tree.b);
  EXPECT_FALSE(FindBehind(*m_tree.b1, m_tree.a.Get()));
}

}  // namespace
