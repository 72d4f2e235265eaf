#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "du/InstalledObject.h"
#include "du/SmartPtr.h"

namespace {

constexpr int s_threads = 4;

class Counter : public virtual du::RefCounted {
public:
  explicit Counter(std::atomic<int>& alive) : m_alive(alive) { ++m_alive; }
  Counter(const Counter&) = delete;
  Counter& operator=(const Counter&) = delete;
  ~Counter() override
  {
    // Plain on purpose: every write of the other holders must be visible here.
    m_seenAtTheEnd = m_value;
    --m_alive;
  }

  void SetValue(std::size_t index) { m_value[index] = 1; }

private:
  std::atomic<int>& m_alive;
  std::vector<int> m_value = std::vector<int>(s_threads);
  std::vector<int> m_seenAtTheEnd;
};

void RunInThreads(const std::function<void(std::size_t)>& work)
{
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < s_threads; ++i) {
    threads.emplace_back(work, i);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

TEST(RefCountedThreads, CopiesInManyThreads_LeaveTheCountRight)
{
  std::atomic<int> alive{0};
  const auto shared = du::MakeSmart<Counter>(alive);

  RunInThreads([&](std::size_t) {
    for (int i = 0; i < 10000; ++i) {
      const du::SmartPtr<Counter> copy(shared);
      const du::ConstSmartPtr<Counter> another(copy);
    }
  });

  EXPECT_EQ(shared->AddReference(nullptr), 2);
  shared->RemoveReference(nullptr);
}

TEST(RefCountedThreads, HoldersThatLetGoInDifferentThreads_DestroyOnceAfterAllWrites)
{
  std::atomic<int> alive{0};
  for (int round = 0; round < 500; ++round) {
    std::vector<du::SmartPtr<Counter>> holders(s_threads, du::MakeSmart<Counter>(alive));

    RunInThreads([&](std::size_t i) {
      holders[i]->SetValue(i);
      holders[i].Reset();
    });

    ASSERT_EQ(alive, 0);
  }
}

TEST(RefCountedThreads, AnInstalledObject_IsAskedAndReplacedFromAnyThread)
{
  std::atomic<int> alive{0};
  du::InstalledObject<Counter> place;

  RunInThreads([&](std::size_t i) {
    for (int round = 0; round < 500; ++round) {
      if (i == 0) {
        place.Set(round % 3 == 0 ? du::SmartPtr<Counter>() : du::MakeSmart<Counter>(alive));
      } else if (const auto object = place.Get()) {
        EXPECT_GE(alive, 1);
      }
    }
  });
  place.Set(nullptr);

  EXPECT_EQ(alive, 0);
}

}  // namespace
