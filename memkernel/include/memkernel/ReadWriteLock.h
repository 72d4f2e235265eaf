#pragma once

#include <condition_variable>
#include <mutex>

#include "dp/ReadWriteLock.h"

namespace memkernel {

/// The lock of a tree. A writer that waits goes before threads that begin to read, so that a stream of readers cannot
/// starve it; a thread that reads already may lock again without waiting. The locking itself works from any thread.
class ReadWriteLock final : public dp::ReadWriteLock {
public:
  void ReadLock() override;
  void ReadUnlock() override;

  /// Waits until nobody reads or writes. Not recursive, and not for a thread that holds the read side.
  void WriteLock();
  void WriteUnlock();
  /// Whether the calling thread holds the read side.
  [[nodiscard]] bool IsReadByThisThread() const;
  /// Whether any thread holds the read side now.
  [[nodiscard]] bool IsRead() const;

private:
  mutable std::mutex m_mutex;
  std::condition_variable m_readable;
  std::condition_variable m_writable;
  unsigned int m_readers = 0;
  unsigned int m_waitingWriters = 0;
  bool m_isWritten = false;
};

/// Holds the write side of a lock for the length of a scope.
class WriteGuard {
public:
  explicit WriteGuard(ReadWriteLock& lock) : m_lock(lock) { m_lock.WriteLock(); }
  ~WriteGuard() { m_lock.WriteUnlock(); }
  WriteGuard(const WriteGuard&) = delete;
  WriteGuard& operator=(const WriteGuard&) = delete;

private:
  ReadWriteLock& m_lock;
};

}  // namespace memkernel
