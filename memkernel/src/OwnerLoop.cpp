#include "memkernel/OwnerLoop.h"

#include <utility>

namespace memkernel {

OwnerLoop::OwnerLoop() : m_owner(std::this_thread::get_id()) {}

OwnerLoop::~OwnerLoop() = default;

bool OwnerLoop::Post(du::SmartPtr<dom::Observer> receiver, du::SmartPtr<dom::Message> message)
{
  if (!receiver) {
    return false;
  }
  Entry entry;
  entry.receiver = std::move(receiver);
  entry.message = std::move(message);
  return _Enqueue(entry);
}

bool OwnerLoop::Invoke(std::function<void()> function)
{
  Entry entry;
  entry.function = std::move(function);
  return _Enqueue(entry);
}

bool OwnerLoop::IsOwnerThread() const
{
  return std::this_thread::get_id() == m_owner;
}

void OwnerLoop::SetWakeUp(std::function<void()> wakeUp)
{
  {
    const std::lock_guard lock(m_mutex);
    m_wakeUp = std::move(wakeUp);
  }
  _WakeUpIfDue();
}

std::size_t OwnerLoop::RunDue()
{
  const du::SmartPtr<OwnerLoop> self(this);
  std::uint64_t lastNumber = 0;
  {
    const std::lock_guard lock(m_mutex);
    lastNumber = m_lastNumber;
  }
  std::size_t count = 0;
  while (true) {
    // Made anew for each message, so that its references are let go of before the next one runs.
    Entry entry;
    if (!_TakeDue(lastNumber, entry)) {
      break;
    }
    ++count;
    if (entry.function) {
      entry.function();
    } else if (entry.receiver) {
      entry.receiver->HandleMessage(entry.message);
    }
  }
  _WakeUpIfDue();
  return count;
}

bool OwnerLoop::RunUntil(const std::function<bool()>& isDone)
{
  const du::SmartPtr<OwnerLoop> self(this);
  while (!isDone()) {
    {
      std::unique_lock lock(m_mutex);
      m_posted.wait(lock, [this] { return m_isClosed || !m_due.empty(); });
      if (m_isClosed) {
        return false;
      }
    }
    RunDue();
  }
  return true;
}

std::size_t OwnerLoop::WaitAndRun(std::chrono::milliseconds timeout)
{
  {
    std::unique_lock lock(m_mutex);
    m_posted.wait_for(lock, timeout, [this] { return m_isClosed || !m_due.empty(); });
  }
  return RunDue();
}

void OwnerLoop::Close()
{
  // Released at the end, outside of the lock: what dies may try to post.
  std::deque<Entry> due;
  std::function<void()> wakeUp;
  {
    const std::lock_guard lock(m_mutex);
    if (std::exchange(m_isClosed, true)) {
      return;
    }
    due.swap(m_due);
    wakeUp.swap(m_wakeUp);
  }
  m_posted.notify_all();
  _LetGoOfAll();
}

bool OwnerLoop::IsClosed() const
{
  const std::lock_guard lock(m_mutex);
  return m_isClosed;
}

bool OwnerLoop::_Enqueue(Entry& entry)
{
  std::function<void()> wakeUp;
  {
    const std::lock_guard lock(m_mutex);
    if (m_isClosed) {
      return false;
    }
    if (m_due.empty()) {
      wakeUp = m_wakeUp;
    }
    entry.number = ++m_lastNumber;
    m_due.push_back(std::move(entry));
    m_posted.notify_all();
  }
  if (wakeUp) {
    wakeUp();
  }
  return true;
}

bool OwnerLoop::_TakeDue(std::uint64_t lastNumber, Entry& out)
{
  const std::lock_guard lock(m_mutex);
  if (m_due.empty() || m_due.front().number > lastNumber) {
    return false;
  }
  out = std::move(m_due.front());
  m_due.pop_front();
  return true;
}

void OwnerLoop::_WakeUpIfDue()
{
  std::function<void()> wakeUp;
  {
    const std::lock_guard lock(m_mutex);
    if (!m_due.empty()) {
      wakeUp = m_wakeUp;
    }
  }
  if (wakeUp) {
    wakeUp();
  }
}

}  // namespace memkernel
