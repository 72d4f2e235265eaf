#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "du/SmartPtr.h"
#include "du/TaskPool.h"
#include "memkernel/OwnerLoop.h"

namespace memkernel {

/// Worker threads of a world. Tasks stand in lanes: those of one lane run one at a time in the order of insertion,
/// those of different lanes beside each other. `InsertTask` uses one lane for all, which is what jobs want that replace
/// each other; independent work goes in without a lane.
///
/// Every accepted task comes back to the owner's thread: after its run with `TaskComplete` and `FlushResults`, or with
/// `Abort` when the pool ends first, and is released there.
class TaskPool final : public du::TaskPool {
public:
  /// A lane number; `CreateLane` gives new ones.
  using Lane = unsigned int;
  static constexpr Lane s_defaultLane = 0;

  /// Owner's thread. 0 threads: as many as the machine runs at once, but at least two and at most eight.
  explicit TaskPool(const du::SmartPtr<OwnerLoop>& loop, unsigned int threads = 0);
  /// Shuts down.
  ~TaskPool() override;

  /// Into the default lane.
  bool InsertTask(const du::SmartPtr<du::Task>& task) override;
  bool InsertTaskInLane(const du::SmartPtr<du::Task>& task, Lane lane);
  /// Beside everything else, in any order. One worker is kept free for the lanes where the pool has more than one.
  bool InsertParallelTask(const du::SmartPtr<du::Task>& task);
  [[nodiscard]] Lane CreateLane();

  /// Owner's thread. Waits for the tasks that run, completes them, hands the others back by `Abort`, and accepts
  /// nothing afterwards. The second call does nothing.
  void Shutdown();
  /// Any thread. The tasks that were accepted and have not run to their end.
  [[nodiscard]] std::size_t GetUnfinishedCount() const;
  [[nodiscard]] std::size_t GetThreadCount() const noexcept { return m_threads.size(); }

private:
  friend class ParallelTaskPause;

  struct LaneQueue {
    std::deque<du::SmartPtr<du::Task>> waiting;
    bool isRunning = false;
  };
  struct Job {
    du::SmartPtr<du::Task> task;
    Lane lane = s_defaultLane;
    bool isParallel = false;
  };
  class Returner;

  void _Work();
  [[nodiscard]] bool _CanTake() const;
  [[nodiscard]] Job _Take();
  /// Moves the task out of `job` towards the owner, and lets the next one of its lane run.
  void _HandBack(Job& job);
  void _CollectFinished();
  void _StopThreads();
  void _AbortWaiting();
  void _ChangePauses(int by);

  const du::SmartPtr<OwnerLoop> m_loop;
  du::SmartPtr<Returner> m_returner;
  mutable std::mutex m_mutex;
  std::condition_variable m_inserted;
  std::map<Lane, LaneQueue> m_lanes;
  std::deque<Job> m_ready;
  std::deque<du::SmartPtr<du::Task>> m_parallel;
  std::vector<du::SmartPtr<du::Task>> m_finished;
  Lane m_lastLane = s_defaultLane;
  std::size_t m_parallelLimit = 1;
  std::size_t m_parallelRunning = 0;
  std::size_t m_unfinished = 0;
  int m_pauses = 0;
  bool m_isStopping = false;
  std::vector<std::thread> m_threads;
};

/// While it lives no parallel task of the pool begins; what runs goes on, and what is inserted waits. For an owner who
/// asks for much and wants nothing of it to end before all is asked for. May be nested. Ends before the pool; owner's
/// thread.
class ParallelTaskPause {
public:
  explicit ParallelTaskPause(TaskPool& pool) : m_pool(pool) { m_pool._ChangePauses(1); }
  ~ParallelTaskPause() { m_pool._ChangePauses(-1); }
  ParallelTaskPause(const ParallelTaskPause&) = delete;
  ParallelTaskPause& operator=(const ParallelTaskPause&) = delete;

private:
  TaskPool& m_pool;
};

}  // namespace memkernel
