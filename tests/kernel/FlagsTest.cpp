#include "du/Flags.h"

#include <gtest/gtest.h>

namespace {

TEST(Flags, KeepTheirBits)
{
  EXPECT_EQ(du::Flags().GetBits(), 0U);
  EXPECT_EQ(du::Flags(0xb).GetBits(), 0xbU);
}

TEST(Flags, HasAsksForAllOfTheBits)
{
  constexpr du::Flags flags(0xb);

  EXPECT_TRUE(flags.Has(0x1));
  EXPECT_TRUE(flags.Has(0xa));
  EXPECT_FALSE(flags.Has(0x4));
  EXPECT_FALSE(flags.Has(0xf));
  EXPECT_TRUE(flags.Has(0));
  EXPECT_TRUE(du::Flags().Has(0));
}

TEST(Flags, AreEqualByTheirBits)
{
  EXPECT_EQ(du::Flags(3), du::Flags(3));
  EXPECT_NE(du::Flags(3), du::Flags(2));
}

}  // namespace
