#include "qthost/LoopDriver.h"

#include <gmock/gmock.h>

#include <thread>

#include <QCoreApplication>

#include "memkernel/OwnerLoop.h"

namespace qthosttest {
namespace {

TEST(LoopDriver, WhatIsPostedToTheLoop_RunsInTheEventLoop)
{
  const auto loop = du::MakeSmart<memkernel::OwnerLoop>();
  const qthost::LoopDriver driver([&loop] { loop->RunDue(); });
  loop->SetWakeUp(driver.MakeWakeUp());
  int runs = 0;

  loop->Invoke([&] { ++runs; });
  const int runsBefore = runs;
  QCoreApplication::processEvents();

  EXPECT_EQ(runsBefore, 0);
  EXPECT_EQ(runs, 1);
}

TEST(LoopDriver, WhatAWorkerPosts_RunsOnTheThreadOfTheDriver)
{
  const auto loop = du::MakeSmart<memkernel::OwnerLoop>();
  const qthost::LoopDriver driver([&loop] { loop->RunDue(); });
  loop->SetWakeUp(driver.MakeWakeUp());
  std::thread::id ran;

  std::thread([&] { loop->Invoke([&] { ran = std::this_thread::get_id(); }); }).join();
  while (ran == std::thread::id()) {
    QCoreApplication::processEvents();
  }

  EXPECT_EQ(ran, std::this_thread::get_id());
}

TEST(LoopDriver, WhatARunPosts_HasATurnOfItsOwn)
{
  const auto loop = du::MakeSmart<memkernel::OwnerLoop>();
  int turns = 0;
  const qthost::LoopDriver driver([&] {
    ++turns;
    loop->RunDue();
  });
  loop->SetWakeUp(driver.MakeWakeUp());
  bool hasRun = false;

  loop->Invoke([&] { loop->Invoke([&] { hasRun = true; }); });
  while (!hasRun) {
    QCoreApplication::processEvents();
  }

  EXPECT_GE(turns, 2);
}

TEST(LoopDriver, WakeUpAfterTheEndOfTheDriver_DoesNothing)
{
  int runs = 0;
  std::function<void()> wakeUp;
  {
    const qthost::LoopDriver driver([&] { ++runs; });
    wakeUp = driver.MakeWakeUp();
    wakeUp();
  }

  wakeUp();
  QCoreApplication::processEvents();

  EXPECT_EQ(runs, 0);
}

}  // namespace
}  // namespace qthosttest
