#include "ReadingLine.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>

namespace {

/// Catches what goes to stderr by way of the stream.
class ReadingLineTest : public testing::Test {
protected:
  void SetUp() override { former = std::cerr.rdbuf(written.rdbuf()); }
  void TearDown() override { std::cerr.rdbuf(former); }

  std::ostringstream written;
  std::streambuf* former = nullptr;
};

TEST_F(ReadingLineTest, Shown_OverwritesItselfAndIsGoneAtTheEnd)
{
  {
    ReadingLine line(true);
    EXPECT_TRUE(line.Report(0, "Reading pump.stp"));
    EXPECT_TRUE(line.Report(7, "Reading pump.stp"));
  }

  EXPECT_EQ(written.str(), "\r\x1B[KReading pump.stp 0%\r\x1B[KReading pump.stp 7%\r\x1B[K");
}

TEST_F(ReadingLineTest, SameReport_IsWrittenOnce)
{
  ReadingLine line(true);
  line.Report(7, "Reading");
  line.Report(7, "Reading");

  EXPECT_EQ(written.str(), "\r\x1B[KReading 7%");
}

TEST_F(ReadingLineTest, NotShown_WritesNothing)
{
  {
    ReadingLine line(false);
    EXPECT_TRUE(line.Report(50, "Reading"));
  }

  EXPECT_EQ(written.str(), "");
}

TEST_F(ReadingLineTest, WithoutAReport_WritesNothing)
{
  {
    const ReadingLine line(true);
  }

  EXPECT_EQ(written.str(), "");
}

TEST_F(ReadingLineTest, LongStage_IsCutBetweenCharacters)
{
  ReadingLine line(true);
  line.Report(1, std::string(69, 'a') + "ößü");

  EXPECT_EQ(written.str(), "\r\x1B[K" + std::string(69, 'a') + "... 1%");
}

TEST_F(ReadingLineTest, StageWithControlCharacters_StaysOnItsLine)
{
  ReadingLine line(true);
  line.Report(1, "Reading a\nb");

  EXPECT_EQ(written.str(), "\r\x1B[KReading a\\nb 1%");
}

}  // namespace
