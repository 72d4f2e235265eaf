#include "memkernel/ReadWriteLock.h"

#include <algorithm>
#include <vector>

namespace memkernel {
namespace {

/// How often the present thread holds the read side of a lock.
struct Hold {
  const void* lock = nullptr;
  unsigned int count = 0;
};

std::vector<Hold>& GetHolds()
{
  thread_local std::vector<Hold> t_holds;
  return t_holds;
}

std::vector<Hold>::iterator FindHold(const void* lock)
{
  auto& holds = GetHolds();
  return std::find_if(holds.begin(), holds.end(), [lock](const Hold& hold) { return hold.lock == lock; });
}

}  // namespace

void ReadWriteLock::ReadLock()
{
  const auto hold = FindHold(this);
  if (hold != GetHolds().end()) {
    ++hold->count;
    return;
  }
  GetHolds().push_back({this, 1});
  std::unique_lock lock(m_mutex);
  m_readable.wait(lock, [this] { return !m_isWritten && m_waitingWriters == 0; });
  ++m_readers;
}

void ReadWriteLock::ReadUnlock()
{
  const auto hold = FindHold(this);
  if (hold == GetHolds().end() || --hold->count != 0) {
    return;
  }
  GetHolds().erase(hold);
  const std::lock_guard lock(m_mutex);
  if (--m_readers == 0) {
    m_writable.notify_one();
  }
}

void ReadWriteLock::WriteLock()
{
  std::unique_lock lock(m_mutex);
  ++m_waitingWriters;
  m_writable.wait(lock, [this] { return !m_isWritten && m_readers == 0; });
  --m_waitingWriters;
  m_isWritten = true;
}

void ReadWriteLock::WriteUnlock()
{
  const std::lock_guard lock(m_mutex);
  m_isWritten = false;
  if (m_waitingWriters != 0) {
    m_writable.notify_one();
  } else {
    m_readable.notify_all();
  }
}

bool ReadWriteLock::IsReadByThisThread() const
{
  return FindHold(this) != GetHolds().end();
}

bool ReadWriteLock::IsRead() const
{
  const std::lock_guard lock(m_mutex);
  return m_readers != 0;
}

}  // namespace memkernel
