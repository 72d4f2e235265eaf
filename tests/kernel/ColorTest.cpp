#include "dg/Color.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(Color, KeepsItsComponents)
{
  const dg::Color color(0.1F, 0.2F, 0.3F, 0.4F);

  EXPECT_EQ(color.red, 0.1F);
  EXPECT_EQ(color.green, 0.2F);
  EXPECT_EQ(color.blue, 0.3F);
  EXPECT_EQ(color.alpha, 0.4F);
}

TEST(Color, AsHex_PutsRedGreenAndBlueIntoTheLowerThreeBytes)
{
  EXPECT_EQ(dg::Color(1, 0, 0, 1).GetAsHexUI(), 0xff0000U);
  EXPECT_EQ(dg::Color(0, 1, 0, 1).GetAsHexUI(), 0x00ff00U);
  EXPECT_EQ(dg::Color(0, 0, 1, 1).GetAsHexUI(), 0x0000ffU);
  EXPECT_EQ(dg::Color(0, 0, 0, 1).GetAsHexUI(), 0U);
  EXPECT_EQ(dg::Color(1, 1, 1, 0).GetAsHexUI(), 0xffffffU);
}

TEST(Color, AsHex_RoundsToTheNearestStep)
{
  EXPECT_EQ(dg::Color(0.5F, 0, 0, 1).GetAsHexUI(), 0x800000U);
  EXPECT_EQ(dg::Color(0, 0, 0.4F / 255.0F, 1).GetAsHexUI(), 0U);
  EXPECT_EQ(dg::Color(0, 0, 0.6F / 255.0F, 1).GetAsHexUI(), 1U);
  for (unsigned int step = 0; step < 256; ++step) {
    EXPECT_EQ(dg::Color(0, 0, static_cast<float>(step) / 255.0F, 1).GetAsHexUI(), step);
  }
}

TEST(Color, AsHex_TakesWhatIsOutsideTheRangeToItsNearerEnd)
{
  constexpr float infinity = std::numeric_limits<float>::infinity();

  EXPECT_EQ(dg::Color(-1, 2, 0, 1).GetAsHexUI(), 0x00ff00U);
  EXPECT_EQ(dg::Color(-infinity, infinity, 1e30F, 1).GetAsHexUI(), 0x00ffffU);
}

TEST(Color, AsHex_ReadsAComponentThatIsNoNumberAsZero)
{
  constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

  EXPECT_EQ(dg::Color(notANumber, 1, notANumber, 1).GetAsHexUI(), 0x00ff00U);
}

}  // namespace
