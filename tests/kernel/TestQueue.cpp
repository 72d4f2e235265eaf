#include "TestQueue.h"

#include <utility>

namespace kerneltest {

bool TestQueue::Post(du::SmartPtr<dom::Observer> receiver, du::SmartPtr<dom::Message> message)
{
  const std::lock_guard lock(m_mutex);
  if (m_isClosed) {
    return false;
  }
  m_entries.push_back({std::move(receiver), std::move(message)});
  m_hasEntries.notify_one();
  return true;
}

std::size_t TestQueue::RunDue()
{
  std::deque<Entry> due = _TakeAll();
  const std::size_t count = due.size();
  while (!due.empty()) {
    const Entry entry = std::move(due.front());
    due.pop_front();
    entry.receiver->HandleMessage(entry.message);
  }
  return count;
}

bool TestQueue::RunUntil(const std::function<bool()>& isDone)
{
  // The system's clock, since ThreadSanitizer does not see the waits on the steady one.
  using Clock = std::chrono::system_clock;
  const auto giveUp = Clock::now() + std::chrono::minutes(2);
  while (!isDone()) {
    if (Clock::now() > giveUp) {
      return false;
    }
    RunDue();
    std::unique_lock lock(m_mutex);
    m_hasEntries.wait_until(lock, Clock::now() + std::chrono::milliseconds(1), [&] { return !m_entries.empty(); });
  }
  return true;
}

void TestQueue::Close()
{
  {
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
  }
  const std::deque<Entry> dropped = _TakeAll();
  _LetGoOfAll();
}

std::size_t TestQueue::CountWaiting() const
{
  const std::lock_guard lock(m_mutex);
  return m_entries.size();
}

std::deque<TestQueue::Entry> TestQueue::_TakeAll()
{
  const std::lock_guard lock(m_mutex);
  return std::exchange(m_entries, {});
}

}  // namespace kerneltest
