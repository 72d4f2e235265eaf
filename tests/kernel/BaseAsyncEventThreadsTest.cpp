#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <thread>
#include <vector>

#include "ProbeEvent.h"
#include "TestQueue.h"

namespace {

using kerneltest::EventRecord;
using kerneltest::ProbeEvent;
using kerneltest::TestQueue;

constexpr int s_rounds = 300;

class BaseAsyncEventThreads : public testing::Test {
protected:
  ~BaseAsyncEventThreads() override { queue->Close(); }

  [[nodiscard]] du::SmartPtr<ProbeEvent> MakeManagedEvent(EventRecord& record, bool hasWorker, bool runsInTask = false)
  {
    auto event = du::MakeSmart<ProbeEvent>(record, hasWorker, runsInTask);
    EXPECT_TRUE(owner->ManageObject(event));
    return event;
  }

  void ExpectThatItEndedOnceOnThisThread(const EventRecord& record)
  {
    EXPECT_EQ(record.completions.size(), 1U);
    EXPECT_EQ(record.completingThread, std::this_thread::get_id());
    EXPECT_EQ(record.destroyingThread, std::this_thread::get_id());
  }

  du::SmartPtr<TestQueue> queue = du::MakeSmart<TestQueue>();
  du::SmartPtr<dom::ManagedObject> owner = du::MakeSmart<dom::ManagedObject>(queue);
};

TEST_F(BaseAsyncEventThreads, CompleteOnAWorker_IsDeliveredOnTheOwnersThread)
{
  EventRecord record;
  auto event = MakeManagedEvent(record, true);

  std::thread worker([address = event.Get()] { address->Complete(); });
  event.Reset();
  ASSERT_TRUE(queue->RunUntil([&] { return record.isDestroyed.load(); }));
  worker.join();

  ExpectThatItEndedOnceOnThisThread(record);
}

TEST_F(BaseAsyncEventThreads, WithoutAnyHolder_TheEventEndsOnTheOwnersThreadEachTime)
{
  for (int round = 0; round < s_rounds; ++round) {
    EventRecord record;
    ProbeEvent* address = MakeManagedEvent(record, true).Get();

    std::thread worker([address] { address->Complete(); });
    ASSERT_TRUE(queue->RunUntil([&] { return record.isDestroyed.load(); }));
    worker.join();

    ExpectThatItEndedOnceOnThisThread(record);
  }
}

TEST_F(BaseAsyncEventThreads, CompleteAndCancelRacing_CompleteOnce)
{
  for (int round = 0; round < s_rounds; ++round) {
    EventRecord record;
    auto event = MakeManagedEvent(record, false);
    std::barrier start(2);

    std::thread completer([&start, event] {
      start.arrive_and_wait();
      event->Complete();
    });
    std::thread canceller([&start, event] {
      start.arrive_and_wait();
      event->Cancel();
    });
    completer.join();
    canceller.join();
    const bool wasCanceled = event->IsCanceled();
    event.Reset();
    ASSERT_TRUE(queue->RunUntil([&] { return record.isDestroyed.load(); }));

    ExpectThatItEndedOnceOnThisThread(record);
    EXPECT_TRUE(wasCanceled || record.completions.front() == zelk::BaseAsyncEvent::StatusCompleted);
  }
}

TEST_F(BaseAsyncEventThreads, ManyThreadsCompleting_CompleteOnceWithTheStatusOfOneOfThem)
{
  for (int round = 0; round < s_rounds / 10; ++round) {
    EventRecord record;
    auto event = MakeManagedEvent(record, true);
    std::vector<std::thread> threads;
    for (unsigned short status = 1; status <= 4; ++status) {
      threads.emplace_back([event, status] { event->CompleteWithError("error", status); });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    threads.clear();
    event.Reset();
    ASSERT_TRUE(queue->RunUntil([&] { return record.isDestroyed.load(); }));

    ExpectThatItEndedOnceOnThisThread(record);
    EXPECT_GE(record.completions.front(), 1);
    EXPECT_LE(record.completions.front(), 4);
  }
}

TEST_F(BaseAsyncEventThreads, CompletingAndManagingRacing_CompleteOnce)
{
  for (int round = 0; round < s_rounds; ++round) {
    EventRecord record;
    auto event = du::MakeSmart<ProbeEvent>(record, true);
    std::barrier start(2);

    std::thread worker([&start, held = event] {
      start.arrive_and_wait();
      held->Complete();
    });
    start.arrive_and_wait();
    owner->ManageObject(event);
    worker.join();
    event.Reset();
    ASSERT_TRUE(queue->RunUntil([&] { return record.isDestroyed.load(); }));

    ExpectThatItEndedOnceOnThisThread(record);
  }
}

TEST_F(BaseAsyncEventThreads, ACancelledWorker_NoticesAndCompletesByItself)
{
  EventRecord record;
  auto event = MakeManagedEvent(record, true);
  std::atomic<bool> isResultWritten{false};
  bool sawResult = false;
  record.onComplete = [&] { sawResult = isResultWritten; };

  std::thread worker([&, address = event.Get()] {
    while (address->Progress(1)) {
      std::this_thread::yield();
    }
    isResultWritten = true;
    address->Complete();
  });
  event->Cancel();
  event.Reset();
  ASSERT_TRUE(queue->RunUntil([&] { return record.isDestroyed.load(); }));
  worker.join();

  EXPECT_TRUE(sawResult);
  ExpectThatItEndedOnceOnThisThread(record);
}

TEST_F(BaseAsyncEventThreads, TheManagerGoingWhileTheWorkerRuns_DoesNotMatter)
{
  for (int round = 0; round < s_rounds / 10; ++round) {
    EventRecord record;
    auto manager = du::MakeSmart<dom::ManagedObject>(queue);
    auto event = du::MakeSmart<ProbeEvent>(record, true);
    manager->ManageObject(event);

    std::thread worker([address = event.Get()] {
      address->Status("working");
      address->Complete();
    });
    manager.Reset();
    event.Reset();
    ASSERT_TRUE(queue->RunUntil([&] { return record.isDestroyed.load(); }));
    worker.join();

    ExpectThatItEndedOnceOnThisThread(record);
    EXPECT_EQ(record.texts, (std::vector<std::string>{"working"}));
  }
}

TEST_F(BaseAsyncEventThreads, Progress_NeverWaitsForAnOwnerThatDoesNotRunItsLoop)
{
  EventRecord record;
  const auto event = MakeManagedEvent(record, true);
  event->AddProgressListener([](unsigned char, bool) {});

  std::thread worker([address = event.Get()] {
    for (int percent = 0; percent <= 200; ++percent) {
      address->Progress(static_cast<unsigned char>(percent));
    }
  });
  worker.join();

  EXPECT_EQ(queue->CountWaiting(), 1U);
  EXPECT_EQ(event->GetProgress(), 200);
  queue->Close();
}

TEST_F(BaseAsyncEventThreads, Progress_WhileTheOwnerListens_RisesAndEndsWithTheLastReport)
{
  EventRecord record;
  auto event = MakeManagedEvent(record, true);
  std::vector<int> heard;
  int atTheEnd = -1;
  event->AddProgressListener([&](unsigned char percent, bool isCompleted) {
    EXPECT_TRUE(queue->IsOwnerThread());
    heard.push_back(percent);
    if (isCompleted) {
      atTheEnd = percent;
    }
  });

  std::thread worker([address = event.Get()] {
    for (int percent = 1; percent <= 100; ++percent) {
      address->Progress(static_cast<unsigned char>(percent));
    }
    address->Complete();
  });
  event.Reset();
  ASSERT_TRUE(queue->RunUntil([&] { return record.isDestroyed.load(); }));
  worker.join();

  EXPECT_TRUE(std::is_sorted(heard.begin(), heard.end()));
  EXPECT_EQ(atTheEnd, 100);
}

TEST_F(BaseAsyncEventThreads, TheLastReportOfAWorkerThatGoesOn_IsHeard)
{
  EventRecord record;
  const auto event = MakeManagedEvent(record, true);
  int last = 0;
  event->AddProgressListener([&](unsigned char percent, bool) { last = percent; });
  for (int round = 0; round < s_rounds; ++round) {
    std::thread worker([address = event.Get(), round] {
      address->Progress(static_cast<unsigned char>(round % 100 + 1));
      address->Progress(static_cast<unsigned char>(round % 100 + 101));
    });

    EXPECT_TRUE(queue->RunUntil([&] { return last == round % 100 + 101; }));
    worker.join();
  }
  queue->Close();
}

TEST_F(BaseAsyncEventThreads, RunOnCompleteInTask_RunsOnTheWorkerButEndsOnTheOwnersThread)
{
  for (int round = 0; round < s_rounds; ++round) {
    EventRecord record;
    auto event = MakeManagedEvent(record, true, true);
    std::thread::id listenersThread;
    event->AddProgressListener([&](unsigned char, bool isCompleted) {
      EXPECT_TRUE(isCompleted);
      listenersThread = std::this_thread::get_id();
    });

    std::thread worker([address = event.Get()] { address->Complete(); });
    const std::thread::id workersId = worker.get_id();
    event.Reset();
    ASSERT_TRUE(queue->RunUntil([&] { return record.isDestroyed.load(); }));
    worker.join();

    EXPECT_EQ(record.completions.size(), 1U);
    EXPECT_EQ(record.completingThread, workersId);
    EXPECT_EQ(listenersThread, std::this_thread::get_id());
    EXPECT_EQ(record.destroyingThread, std::this_thread::get_id());
  }
}

TEST_F(BaseAsyncEventThreads, RunOnCompleteInTask_CompletedByTheOwner_WaitsForALaterTurn)
{
  EventRecord record;
  const auto event = MakeManagedEvent(record, true, true);

  event->Complete();
  EXPECT_TRUE(record.completions.empty());

  queue->RunDue();
  EXPECT_EQ(record.completingThread, std::this_thread::get_id());
}

TEST_F(BaseAsyncEventThreads, TheQueueClosingWhileWorkersComplete_LosesNoEventAndCompletesNoneTwice)
{
  constexpr int events = 50;
  std::vector<EventRecord> records(events);
  {
    std::vector<std::thread> workers;
    for (EventRecord& record : records) {
      workers.emplace_back([address = MakeManagedEvent(record, true).Get()] { address->Complete(); });
    }
    queue->RunDue();
    for (std::thread& worker : workers) {
      worker.join();
    }
  }
  queue->Close();

  for (const EventRecord& record : records) {
    EXPECT_TRUE(record.isDestroyed);
    EXPECT_LE(record.completions.size(), 1U);
    EXPECT_EQ(record.destroyingThread, std::this_thread::get_id());
  }
}

}  // namespace
