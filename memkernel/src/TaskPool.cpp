#include "memkernel/TaskPool.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace memkernel {
namespace {

unsigned int ChooseThreadCount(unsigned int threads)
{
  return threads != 0 ? threads : std::clamp(std::thread::hardware_concurrency(), 2U, 8U);
}

}  // namespace

/// Stands on the owner's thread for the pool, which may have gone when a message arrives.
class TaskPool::Returner : public dom::Observer {
public:
  explicit Returner(TaskPool* owner) : pool(owner) {}

  void HandleMessage(const du::SmartPtr<dom::Message>& /*message*/) override
  {
    if (pool) {
      pool->_CollectFinished();
    }
  }

  /// Owner's thread only.
  TaskPool* pool;
};

TaskPool::TaskPool(const du::SmartPtr<OwnerLoop>& loop, unsigned int threads)
    : m_loop(loop), m_returner(du::MakeSmart<Returner>(this))
{
  const unsigned int count = ChooseThreadCount(threads);
  m_parallelLimit = count > 1 ? count - 1 : 1;
  m_threads.reserve(count);
  for (unsigned int i = 0; i < count; ++i) {
    m_threads.emplace_back([this] { _Work(); });
  }
}

TaskPool::~TaskPool()
{
  Shutdown();
}

bool TaskPool::InsertTask(const du::SmartPtr<du::Task>& task)
{
  return InsertTaskInLane(task, s_defaultLane);
}

bool TaskPool::InsertTaskInLane(const du::SmartPtr<du::Task>& task, Lane lane)
{
  const std::lock_guard lock(m_mutex);
  if (!task || m_isStopping) {
    return false;
  }
  ++m_unfinished;
  LaneQueue& queue = m_lanes[lane];
  if (std::exchange(queue.isRunning, true)) {
    queue.waiting.push_back(task);
    return true;
  }
  m_ready.push_back({task, lane, false});
  m_inserted.notify_one();
  return true;
}

bool TaskPool::InsertParallelTask(const du::SmartPtr<du::Task>& task)
{
  const std::lock_guard lock(m_mutex);
  if (!task || m_isStopping) {
    return false;
  }
  ++m_unfinished;
  m_parallel.push_back(task);
  m_inserted.notify_one();
  return true;
}

TaskPool::Lane TaskPool::CreateLane()
{
  const std::lock_guard lock(m_mutex);
  return ++m_lastLane;
}

void TaskPool::Shutdown()
{
  if (!m_returner->pool) {
    return;
  }
  _StopThreads();
  _CollectFinished();
  _AbortWaiting();
  m_returner->pool = nullptr;
}

std::size_t TaskPool::GetUnfinishedCount() const
{
  const std::lock_guard lock(m_mutex);
  return m_unfinished;
}

void TaskPool::_Work()
{
  while (true) {
    Job job;
    {
      std::unique_lock lock(m_mutex);
      m_inserted.wait(lock, [this] { return m_isStopping || _CanTake(); });
      if (m_isStopping) {
        return;
      }
      job = _Take();
    }
    job.task->Run();
    _HandBack(job);
  }
}

bool TaskPool::_CanTake() const
{
  return !m_ready.empty() || (!m_parallel.empty() && m_pauses == 0 && m_parallelRunning < m_parallelLimit);
}

TaskPool::Job TaskPool::_Take()
{
  if (!m_ready.empty()) {
    Job job = std::move(m_ready.front());
    m_ready.pop_front();
    return job;
  }
  ++m_parallelRunning;
  Job job{std::move(m_parallel.front()), s_defaultLane, true};
  m_parallel.pop_front();
  return job;
}

void TaskPool::_HandBack(Job& job)
{
  bool isFirst = false;
  {
    const std::lock_guard lock(m_mutex);
    isFirst = m_finished.empty();
    m_finished.push_back(std::move(job.task));
    --m_unfinished;
    if (job.isParallel) {
      --m_parallelRunning;
    } else {
      LaneQueue& queue = m_lanes[job.lane];
      queue.isRunning = !queue.waiting.empty();
      if (queue.isRunning) {
        m_ready.push_back({std::move(queue.waiting.front()), job.lane, false});
        queue.waiting.pop_front();
      }
    }
    // A task whose turn has come meanwhile may be one that this worker's kind could not take before.
    m_inserted.notify_one();
  }
  if (isFirst) {
    m_loop->Post(m_returner, nullptr);
  }
}

void TaskPool::_CollectFinished()
{
  std::vector<du::SmartPtr<du::Task>> finished;
  {
    const std::lock_guard lock(m_mutex);
    finished.swap(m_finished);
  }
  for (auto& task : finished) {
    task->TaskComplete();
    task->FlushResults();
    task.Reset();
  }
}

void TaskPool::_StopThreads()
{
  {
    const std::lock_guard lock(m_mutex);
    m_isStopping = true;
  }
  m_inserted.notify_all();
  for (std::thread& thread : m_threads) {
    thread.join();
  }
}

void TaskPool::_AbortWaiting()
{
  std::deque<du::SmartPtr<du::Task>> waiting;
  {
    const std::lock_guard lock(m_mutex);
    for (Job& job : m_ready) {
      waiting.push_back(std::move(job.task));
    }
    m_ready.clear();
    for (auto& [lane, queue] : m_lanes) {
      std::move(queue.waiting.begin(), queue.waiting.end(), std::back_inserter(waiting));
    }
    m_lanes.clear();
    std::move(m_parallel.begin(), m_parallel.end(), std::back_inserter(waiting));
    m_parallel.clear();
    m_unfinished = 0;
  }
  for (auto& task : waiting) {
    task->Abort();
    task.Reset();
  }
}

void TaskPool::_ChangePauses(int by)
{
  {
    const std::lock_guard lock(m_mutex);
    m_pauses += by;
  }
  m_inserted.notify_all();
}

}  // namespace memkernel
