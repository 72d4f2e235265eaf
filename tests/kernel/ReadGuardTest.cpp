#include <gtest/gtest.h>

#include "dp/ReadWriteLock.h"

namespace {

class CountingLock : public dp::ReadWriteLock {
public:
  void ReadLock() override { ++locks; }
  void ReadUnlock() override { ++unlocks; }

  int locks = 0;
  int unlocks = 0;
};

TEST(ReadGuard, HoldsTheReadSideForItsScope)
{
  CountingLock lock;

  {
    const dp::ReadGuard guard(&lock);
    EXPECT_EQ(lock.locks, 1);
    EXPECT_EQ(lock.unlocks, 0);
  }

  EXPECT_EQ(lock.locks, 1);
  EXPECT_EQ(lock.unlocks, 1);
}

TEST(ReadGuard, InsideAnother_LocksAgain)
{
  CountingLock lock;

  {
    const dp::ReadGuard outer(&lock);
    const dp::ReadGuard inner(&lock);
    EXPECT_EQ(lock.locks, 2);
  }

  EXPECT_EQ(lock.unlocks, 2);
}

TEST(ReadGuard, WithoutALock_LeavesOtherLocksAlone)
{
  CountingLock lock;

  {
    const dp::ReadGuard outer(&lock);
    const dp::ReadGuard none(nullptr);
  }

  EXPECT_EQ(lock.locks, 1);
  EXPECT_EQ(lock.unlocks, 1);
}

}  // namespace
