#include "memkernel/TaskPool.h"

#include <gmock/gmock.h>

#include <atomic>
#include <latch>
#include <numeric>
#include <set>
#include <thread>
#include <utility>

#include "Recorders.h"

namespace memkerneltest {
namespace {

using memkernel::OwnerLoop;
using memkernel::TaskPool;
using testing::ElementsAre;

/// Runs a function, and writes what happens to it on the owner's thread.
class FunctionTask : public du::Task {
public:
  FunctionTask(std::function<void()> work, Lines& lines, std::string name)
      : m_work(std::move(work)), m_lines(lines), m_name(std::move(name))
  {
  }
  ~FunctionTask() override { _Write("released"); }

  void Run() override { m_work(); }
  void TaskComplete() override { _Write("complete"); }
  void FlushResults() override { _Write("flush"); }
  void Abort() override { _Write("abort"); }

private:
  void _Write(const std::string& what)
  {
    m_lines.push_back((m_name + " ").append(what)
                      + (std::this_thread::get_id() == m_owner ? "" : " in the wrong thread"));
  }

  std::function<void()> m_work;
  Lines& m_lines;
  std::string m_name;
  std::thread::id m_owner = std::this_thread::get_id();
};

class TaskPoolTest : public testing::Test {
protected:
  ~TaskPoolTest() override
  {
    pool.Shutdown();
    loop->Close();
  }

  [[nodiscard]] du::SmartPtr<du::Task> MakeTask(
      const std::string& name, std::function<void()> work = [] {})
  {
    return du::MakeSmart<FunctionTask>(std::move(work), lines, name);
  }
  void RunUntilLines(std::size_t count)
  {
    loop->RunUntil([&] { return lines.size() >= count; });
  }

  Lines lines;
  const du::SmartPtr<OwnerLoop> loop = du::MakeSmart<OwnerLoop>();
  TaskPool pool{loop, 3};
};

TEST_F(TaskPoolTest, InsertTask_RunsItElsewhereAndReleasesItOnTheOwnersThread)
{
  std::thread::id worker;
  EXPECT_TRUE(pool.InsertTask(MakeTask("A", [&] { worker = std::this_thread::get_id(); })));

  RunUntilLines(3);

  EXPECT_NE(worker, std::this_thread::get_id());
  EXPECT_THAT(lines, ElementsAre("A complete", "A flush", "A released"));
  EXPECT_EQ(pool.GetUnfinishedCount(), 0U);
}

TEST_F(TaskPoolTest, InsertTask_WhoseCallerHoldsTheTask_DoesNotReleaseItForHim)
{
  auto task = MakeTask("A");
  pool.InsertTask(task);

  RunUntilLines(2);
  EXPECT_THAT(lines, ElementsAre("A complete", "A flush"));

  task.Reset();
  EXPECT_EQ(lines.back(), "A released");
}

TEST_F(TaskPoolTest, InsertTask_RunsAllInTheOrderOfInsertionAndNoTwoAtATime)
{
  constexpr int count = 200;
  std::vector<int> order;
  std::atomic<int> running{0};
  bool haveOverlapped = false;
  for (int i = 0; i < count; ++i) {
    pool.InsertTask(MakeTask("T", [&, i] {
      haveOverlapped = haveOverlapped || ++running != 1;
      order.push_back(i);
      --running;
    }));
  }

  RunUntilLines(std::size_t{3} * count);

  std::vector<int> expected(count);
  std::iota(expected.begin(), expected.end(), 0);
  EXPECT_EQ(order, expected);
  EXPECT_FALSE(haveOverlapped);
}

TEST_F(TaskPoolTest, InsertTaskInLane_LetsLanesRunBesideEachOther)
{
  std::latch bothRun(2);
  const auto lane = pool.CreateLane();
  EXPECT_NE(lane, pool.CreateLane());

  pool.InsertTask(MakeTask("A", [&] { bothRun.arrive_and_wait(); }));
  pool.InsertTaskInLane(MakeTask("B", [&] { bothRun.arrive_and_wait(); }), lane);
  RunUntilLines(6);

  EXPECT_TRUE(bothRun.try_wait());
}

TEST_F(TaskPoolTest, InsertParallelTask_LeavesAWorkerForTheLanes)
{
  std::latch isJobDone(1);
  for (int i = 0; i < 3; ++i) {
    pool.InsertParallelTask(MakeTask("P", [&] { isJobDone.wait(); }));
  }

  pool.InsertTask(MakeTask("J", [&] { isJobDone.count_down(); }));
  RunUntilLines(12);

  EXPECT_EQ(lines.size(), 12U);
}

TEST_F(TaskPoolTest, Pause_LetsParallelTasksWaitAndTheLanesGoOn)
{
  std::atomic<bool> isPaused{true};
  {
    const memkernel::ParallelTaskPause pause(pool);
    const memkernel::ParallelTaskPause nested(pool);
    for (int i = 0; i < 3; ++i) {
      pool.InsertParallelTask(MakeTask("P", [&] { EXPECT_FALSE(isPaused); }));
    }
    pool.InsertTask(MakeTask("J"));
    RunUntilLines(3);
    EXPECT_THAT(lines, ElementsAre("J complete", "J flush", "J released"));
    isPaused = false;
  }

  RunUntilLines(12);

  EXPECT_EQ(lines.size(), 12U);
}

TEST_F(TaskPoolTest, Shutdown_InsideAPause_HandsBackWhatWaits)
{
  const memkernel::ParallelTaskPause pause(pool);
  pool.InsertParallelTask(MakeTask("P"));

  pool.Shutdown();

  EXPECT_THAT(lines, ElementsAre("P abort", "P released"));
}

TEST_F(TaskPoolTest, InsertTask_OfNothing_IsRefused)
{
  EXPECT_FALSE(pool.InsertTask(nullptr));
  EXPECT_FALSE(pool.InsertParallelTask(nullptr));
}

TEST_F(TaskPoolTest, Shutdown_EndsWhatRunsAndHandsBackTheRestOnTheOwnersThread)
{
  std::latch isRunning(1);
  std::latch mayEnd(1);
  pool.InsertTask(MakeTask("A", [&] {
    isRunning.count_down();
    mayEnd.wait();
  }));
  isRunning.wait();
  pool.InsertTask(MakeTask("B"));
  pool.InsertTask(MakeTask("C"));
  std::thread later([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    mayEnd.count_down();
  });

  pool.Shutdown();
  later.join();

  EXPECT_THAT(lines,
              ElementsAre("A complete", "A flush", "A released", "B abort", "B released", "C abort", "C released"));
  EXPECT_EQ(pool.GetUnfinishedCount(), 0U);
}

TEST_F(TaskPoolTest, InsertTask_AfterShutdown_IsRefused)
{
  pool.Shutdown();

  EXPECT_FALSE(pool.InsertTask(MakeTask("A")));
  EXPECT_FALSE(pool.InsertParallelTask(MakeTask("B")));
  EXPECT_THAT(lines, ElementsAre("A released", "B released"));
}

TEST_F(TaskPoolTest, Shutdown_OfAPoolWithFinishedTasks_CompletesThemOnce)
{
  std::latch hasRun(1);
  pool.InsertTask(MakeTask("A", [&] { hasRun.count_down(); }));
  hasRun.wait();

  pool.Shutdown();
  loop->RunDue();

  EXPECT_THAT(lines, ElementsAre("A complete", "A flush", "A released"));
}

TEST_F(TaskPoolTest, Pool_WithoutAGivenNumber_HasAtLeastTwoWorkers)
{
  const TaskPool other(loop);

  EXPECT_GE(other.GetThreadCount(), 2U);
}

}  // namespace
}  // namespace memkerneltest
