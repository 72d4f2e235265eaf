#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <utility>

#include "Cases.h"
#include "TestTree.h"
#include "zelk/AsyncEvent.h"

namespace kernelcontract {
namespace {

/// What events and tasks write down; it outlives them.
struct Record {
  void Write(const std::string& line)
  {
    const std::lock_guard lock(mutex);
    lines.push_back(line);
  }
  [[nodiscard]] std::vector<std::string> Read()
  {
    const std::lock_guard lock(mutex);
    return lines;
  }
  [[nodiscard]] std::size_t Count(const std::string& line)
  {
    const auto all = Read();
    return static_cast<std::size_t>(std::count(all.begin(), all.end(), line));
  }

  const std::thread::id owner = std::this_thread::get_id();
  std::mutex mutex;
  std::vector<std::string> lines;
  std::atomic<int> strayCalls{0};
  std::atomic<int> alive{0};
};

/// Lives in a test; notes every call that comes on a thread where it must not.
class RecordingEvent : public zelk::AsyncEvent {
public:
  RecordingEvent(Record& record, std::string name, bool hasWorker = true)
      : AsyncEvent(hasWorker), m_record(record), m_name(std::move(name))
  {
    ++m_record.alive;
  }
  ~RecordingEvent() override
  {
    m_record.strayCalls += std::this_thread::get_id() != m_record.owner ? 1 : 0;
    --m_record.alive;
  }

protected:
  void OnComplete(unsigned short status) override
  {
    m_record.strayCalls += std::this_thread::get_id() != m_record.owner ? 1 : 0;
    m_record.Write(m_name + " " + std::to_string(status));
  }

private:
  Record& m_record;
  const std::string m_name;
};

class RecordingTask : public du::Task {
public:
  RecordingTask(Record& record, std::string name) : m_record(record), m_name(std::move(name)) { ++m_record.alive; }
  RecordingTask(const RecordingTask&) = delete;
  RecordingTask& operator=(const RecordingTask&) = delete;
  ~RecordingTask() override
  {
    _ExpectOwner();
    --m_record.alive;
  }

  void Run() override
  {
    m_record.strayCalls += std::this_thread::get_id() == m_record.owner ? 1 : 0;
    while (isHeld && *isHeld) {
      std::this_thread::yield();
    }
    m_record.Write("run " + m_name);
  }
  void TaskComplete() override
  {
    _ExpectOwner();
    m_record.Write("complete " + m_name);
  }
  void FlushResults() override
  {
    _ExpectOwner();
    m_record.Write("flush " + m_name);
  }
  void Abort() override
  {
    _ExpectOwner();
    m_record.Write("abort " + m_name);
  }

  std::atomic<bool>* isHeld = nullptr;

private:
  void _ExpectOwner() { m_record.strayCalls += std::this_thread::get_id() != m_record.owner ? 1 : 0; }

  Record& m_record;
  const std::string m_name;
};

void ACompletion_IsNeverDeliveredInsideTheCallThatAskedForIt(KernelUnderTest& kernel)
{
  Record record;
  const auto manager = kernel.CreateManagedObject();
  const auto first = du::MakeSmart<RecordingEvent>(record, "first");
  const auto second = du::MakeSmart<RecordingEvent>(record, "second", false);
  ASSERT_TRUE(manager->ManageObject(first));
  ASSERT_TRUE(manager->ManageObject(second));

  first->Complete();
  second->Cancel();
  EXPECT_TRUE(record.Read().empty());

  ASSERT_TRUE(RunUntil(kernel, [&] { return record.Read().size() == 2; }));
  EXPECT_EQ(record.Read(), (std::vector<std::string>{"first 0", "second 65535"})) << "in the order of asking";
}

void ACompletionOfAWorker_ArrivesOnTheOwnersThreadAndTheEventEndsThere(KernelUnderTest& kernel)
{
  Record record;
  const auto manager = kernel.CreateManagedObject();
  std::vector<std::thread> workers;
  for (int i = 0; i < 20; ++i) {
    const auto event = du::MakeSmart<RecordingEvent>(record, "event");
    manager->ManageObject(event);
    workers.emplace_back([address = event.Get()] {
      address->Progress(50);
      address->Complete();
    });
  }

  EXPECT_TRUE(RunUntil(kernel, [&] { return record.alive == 0; }));
  for (std::thread& worker : workers) {
    worker.join();
  }

  EXPECT_EQ(record.Count("event 0"), 20U);
  EXPECT_EQ(record.strayCalls, 0);
}

void AnEventWhoseManagerHasGone_StillCompletes(KernelUnderTest& kernel)
{
  Record record;
  auto manager = kernel.CreateManagedObject();
  auto event = du::MakeSmart<RecordingEvent>(record, "event");
  manager->ManageObject(event);
  RecordingEvent* address = event.Get();

  manager.Reset();
  event.Reset();
  std::thread([address] { address->Complete(); }).join();

  EXPECT_TRUE(RunUntil(kernel, [&] { return record.alive == 0; }));
  EXPECT_EQ(record.Count("event 0"), 1U);
}

void TheQueue_KnowsItsOwner(KernelUnderTest& kernel)
{
  const auto manager = kernel.CreateManagedObject();
  ASSERT_TRUE(manager->GetMessageQueue());

  bool isOwnerElsewhere = true;
  std::thread([&] { isOwnerElsewhere = manager->GetMessageQueue()->IsOwnerThread(); }).join();

  EXPECT_TRUE(manager->GetMessageQueue()->IsOwnerThread());
  EXPECT_FALSE(isOwnerElsewhere);
}

void Tasks_RunOnAWorkerInTheOrderOfInsertion(KernelUnderTest& kernel)
{
  du::TaskPool* pool = kernel.GetWorld().GetTaskPool();
  if (!pool) {
    GTEST_SKIP() << "this kernel has no workers";
  }
  Record record;
  std::vector<std::string> runs;
  for (int i = 0; i < 30; ++i) {
    EXPECT_TRUE(pool->InsertTask(du::MakeSmart<RecordingTask>(record, std::to_string(i))));
    runs.push_back("run " + std::to_string(i));
  }

  EXPECT_TRUE(RunUntil(kernel, [&] { return record.alive == 0; }));

  std::vector<std::string> lines = record.Read();
  lines.erase(std::remove_if(lines.begin(), lines.end(), [](const auto& line) { return line.rfind("run ", 0) != 0; }),
              lines.end());
  EXPECT_EQ(lines, runs);
  EXPECT_EQ(record.strayCalls, 0) << "run on a worker, everything else on the owner's thread";
}

void AFinishedTask_IsCompletedFlushedAndReleasedOnTheOwnersThread(KernelUnderTest& kernel)
{
  du::TaskPool* pool = kernel.GetWorld().GetTaskPool();
  if (!pool) {
    GTEST_SKIP() << "this kernel has no workers";
  }
  Record record;

  pool->InsertTask(du::MakeSmart<RecordingTask>(record, "task"));

  EXPECT_TRUE(RunUntil(kernel, [&] { return record.alive == 0; }));
  EXPECT_EQ(record.Read(), (std::vector<std::string>{"run task", "complete task", "flush task"}));
  EXPECT_EQ(record.strayCalls, 0);
}

void TheEndOfTheWorld_RunsOrHandsBackEachTask(KernelUnderTest& kernel)
{
  du::TaskPool* pool = kernel.GetWorld().GetTaskPool();
  if (!pool) {
    GTEST_SKIP() << "this kernel has no workers";
  }
  Record record;
  std::atomic<bool> isHeld{true};
  for (int i = 0; i < 10; ++i) {
    const auto task = du::MakeSmart<RecordingTask>(record, std::to_string(i));
    task->isHeld = &isHeld;
    pool->InsertTask(task);
  }

  std::thread releaser([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    isHeld = false;
  });
  kernel.EndWorld();
  releaser.join();

  for (int i = 0; i < 10; ++i) {
    const std::string name = std::to_string(i);
    EXPECT_EQ(record.Count("run " + name) + record.Count("abort " + name), 1U) << "task " << name;
    EXPECT_EQ(record.Count("run " + name), record.Count("complete " + name)) << "task " << name;
  }
  EXPECT_EQ(record.alive, 0);
  EXPECT_EQ(record.strayCalls, 0);
}

void ANullTask_IsRefused(KernelUnderTest& kernel)
{
  du::TaskPool* pool = kernel.GetWorld().GetTaskPool();
  if (!pool) {
    GTEST_SKIP() << "this kernel has no workers";
  }

  EXPECT_FALSE(pool->InsertTask(nullptr));
}

class RecordingCtrl : public zelk::ProgressCtrl {
public:
  RecordingCtrl(Record& record, const du::SmartPtr<zelk::AsyncEvent>& event) : ProgressCtrl(event), m_record(record) {}
  void OnProgress(unsigned char percent) override { m_record.Write("progress " + std::to_string(percent)); }
  void OnFinished() override { m_record.Write("finished"); }

private:
  Record& m_record;
};

void AProgressControl_IsHeldAndCalledUntilItsEventHasCompleted(KernelUnderTest& kernel)
{
  const auto controller = kernel.GetWorld().GetProgressController();
  if (!controller) {
    GTEST_SKIP() << "this kernel shows no progress";
  }
  Record record;
  const auto manager = kernel.CreateManagedObject();
  const auto event = du::MakeSmart<RecordingEvent>(record, "event");
  manager->ManageObject(event);
  controller->AddCtrl(nullptr);
  controller->AddCtrl(du::MakeSmart<zelk::ProgressCtrl>(nullptr));
  controller->AddCtrl(du::MakeSmart<RecordingCtrl>(record, event));

  event->Progress(30);
  ASSERT_TRUE(RunUntil(kernel, [&] { return record.Count("progress 30") != 0; }));
  event->Complete();
  ASSERT_TRUE(RunUntil(kernel, [&] { return record.Count("finished") != 0; }));

  EXPECT_EQ(record.Read().back(), "finished");
  EXPECT_EQ(record.Count("finished"), 1U);
}

}  // namespace

std::vector<ContractCase> GetAsyncCases()
{
  return {
      {"Event", "ACompletion_IsNeverDeliveredInsideTheCallThatAskedForIt",
       &ACompletion_IsNeverDeliveredInsideTheCallThatAskedForIt},
      {"Event", "ACompletionOfAWorker_ArrivesOnTheOwnersThreadAndTheEventEndsThere",
       &ACompletionOfAWorker_ArrivesOnTheOwnersThreadAndTheEventEndsThere},
      {"Event", "AnEventWhoseManagerHasGone_StillCompletes", &AnEventWhoseManagerHasGone_StillCompletes},
      {"Event", "TheQueue_KnowsItsOwner", &TheQueue_KnowsItsOwner},
      {"Event", "AProgressControl_IsHeldAndCalledUntilItsEventHasCompleted",
       &AProgressControl_IsHeldAndCalledUntilItsEventHasCompleted},
      {"TaskPool", "Tasks_RunOnAWorkerInTheOrderOfInsertion", &Tasks_RunOnAWorkerInTheOrderOfInsertion},
      {"TaskPool", "AFinishedTask_IsCompletedFlushedAndReleasedOnTheOwnersThread",
       &AFinishedTask_IsCompletedFlushedAndReleasedOnTheOwnersThread},
      {"TaskPool", "TheEndOfTheWorld_RunsOrHandsBackEachTask", &TheEndOfTheWorld_RunsOrHandsBackEachTask},
      {"TaskPool", "ANullTask_IsRefused", &ANullTask_IsRefused},
  };
}

}  // namespace kernelcontract
