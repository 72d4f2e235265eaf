#include "du/Stopwatch.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using Entry = du::Stopwatch::StopwatchEntry;
using Time = std::chrono::steady_clock::duration;

TEST(Stopwatch, TheTwoWaysToStart_HaveTheirNumbers)
{
  EXPECT_EQ(static_cast<int>(du::Stopwatch::InitStopped), 1);
  EXPECT_EQ(static_cast<int>(du::Stopwatch::InitRunning), 2);
}

TEST(Stopwatch, AnEntryThatStandsStill_HasNoTimeAndCannotBeStopped)
{
  Entry entry("load", du::Stopwatch::InitStopped);

  EXPECT_EQ(entry.GetName(), "load");
  EXPECT_FALSE(entry.IsRunning());
  EXPECT_EQ(entry.GetElapsed(), Time::zero());
  EXPECT_FALSE(entry.Stop());
  EXPECT_EQ(entry.GetElapsed(), Time::zero());
}

TEST(Stopwatch, ARunningEntry_StopsOnceAndKeepsItsTime)
{
  Entry entry("load", du::Stopwatch::InitRunning);
  const Time whileRunning = entry.GetElapsed();

  EXPECT_TRUE(entry.IsRunning());
  EXPECT_TRUE(entry.Stop());

  const Time atTheStop = entry.GetElapsed();
  EXPECT_GE(atTheStop, whileRunning);
  EXPECT_FALSE(entry.IsRunning());
  EXPECT_FALSE(entry.Stop());
  EXPECT_EQ(entry.GetElapsed(), atTheStop);
}

TEST(Stopwatch, MoveAssignment_BringsNameAndState)
{
  Entry entry("before", du::Stopwatch::InitStopped);

  entry = Entry("after", du::Stopwatch::InitRunning);

  EXPECT_EQ(entry.GetName(), "after");
  EXPECT_TRUE(entry.Stop());
}

}  // namespace
