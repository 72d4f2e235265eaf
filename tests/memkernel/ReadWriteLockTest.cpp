#include "memkernel/ReadWriteLock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>
#include <vector>

namespace memkerneltest {
namespace {

using memkernel::ReadWriteLock;
using memkernel::WriteGuard;

/// Runs a writer in a thread of its own, and tells whether it has got the lock.
class WaitingWriter {
public:
  explicit WaitingWriter(ReadWriteLock& lock)
      : m_thread([this, &lock] {
          m_isStarted.count_down();
          const WriteGuard guard(lock);
          hasWritten = true;
        })
  {
    m_isStarted.wait();
    // Long enough that the writer waits inside the lock; if it is not there yet the test proves less, but does not
    // fail.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  void Join() { m_thread.join(); }

  std::atomic<bool> hasWritten{false};

private:
  std::latch m_isStarted{1};
  std::thread m_thread;
};

TEST(ReadWriteLock, ReadLock_AgainWhileAWriterWaits_DoesNotWait)
{
  ReadWriteLock lock;
  lock.ReadLock();
  WaitingWriter writer(lock);

  lock.ReadLock();
  EXPECT_FALSE(writer.hasWritten);
  lock.ReadUnlock();
  EXPECT_FALSE(writer.hasWritten);
  lock.ReadUnlock();

  writer.Join();
  EXPECT_TRUE(writer.hasWritten);
}

TEST(ReadWriteLock, ReadLock_OfANewThread_LetsAWaitingWriterGoFirst)
{
  ReadWriteLock lock;
  lock.ReadLock();
  WaitingWriter writer(lock);
  std::atomic<bool> hasRead{false};
  bool wasWrittenBefore = false;
  std::thread reader([&] {
    const dp::ReadGuard guard(&lock);
    wasWrittenBefore = writer.hasWritten;
    hasRead = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(20));

  EXPECT_FALSE(hasRead);
  lock.ReadUnlock();

  reader.join();
  writer.Join();
  EXPECT_TRUE(wasWrittenBefore);
}

TEST(ReadWriteLock, ReadLock_FromSeveralThreads_LetsThemInTogether)
{
  ReadWriteLock lock;
  std::latch allInside(3);
  std::vector<std::thread> readers;
  for (int i = 0; i < 3; ++i) {
    readers.emplace_back([&] {
      const dp::ReadGuard guard(&lock);
      allInside.arrive_and_wait();
    });
  }

  for (std::thread& reader : readers) {
    reader.join();
  }

  EXPECT_TRUE(allInside.try_wait());
}

TEST(ReadWriteLock, IsReadByThisThread_FollowsTheNumberOfLocks)
{
  ReadWriteLock lock;
  ReadWriteLock other;
  lock.ReadLock();
  lock.ReadLock();

  EXPECT_TRUE(lock.IsReadByThisThread());
  EXPECT_FALSE(other.IsReadByThisThread());
  lock.ReadUnlock();
  EXPECT_TRUE(lock.IsReadByThisThread());
  lock.ReadUnlock();
  EXPECT_FALSE(lock.IsReadByThisThread());
}

TEST(ReadWriteLock, WriteLock_KeepsAPlainCounterRightAgainstReadersAndWriters)
{
  constexpr int threads = 3;
  constexpr int rounds = 300;
  ReadWriteLock lock;
  int counter = 0;
  std::atomic<bool> hasSeenHalf{false};
  std::vector<std::thread> workers;
  for (int i = 0; i < threads; ++i) {
    workers.emplace_back([&] {
      for (int k = 0; k < rounds; ++k) {
        {
          const WriteGuard guard(lock);
          ++counter;
          ++counter;
        }
        const dp::ReadGuard outer(&lock);
        const dp::ReadGuard inner(&lock);
        hasSeenHalf = hasSeenHalf || counter % 2 != 0;
      }
    });
  }

  for (std::thread& worker : workers) {
    worker.join();
  }

  EXPECT_EQ(counter, 2 * threads * rounds);
  EXPECT_FALSE(hasSeenHalf);
}

TEST(ReadGuard, WithoutALock_IsNothingToHold)
{
  EXPECT_NO_THROW(const dp::ReadGuard guard(nullptr));
}

}  // namespace
}  // namespace memkerneltest
