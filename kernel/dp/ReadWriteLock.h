#pragma once

namespace dp {

/// Lock of a kernel tree: many readers or one writer. Supplied by the kernel.
///
/// A reader may lock again on its thread, also while a writer waits, and unlocks as often as it has locked.
class ReadWriteLock {
public:
  ReadWriteLock() = default;
  ReadWriteLock(const ReadWriteLock&) = delete;
  ReadWriteLock& operator=(const ReadWriteLock&) = delete;
  virtual ~ReadWriteLock() = default;

  /// Waits while a writer is at work. Any thread but the one that writes.
  virtual void ReadLock() = 0;
  /// In the thread that has locked.
  virtual void ReadUnlock() = 0;
};

/// Holds the read side of a lock for the length of a scope; a null lock is nothing to hold.
class ReadGuard {
public:
  explicit ReadGuard(ReadWriteLock* lock) : m_lock(lock)
  {
    if (m_lock) {
      m_lock->ReadLock();
    }
  }
  ~ReadGuard()
  {
    if (m_lock) {
      m_lock->ReadUnlock();
    }
  }
  ReadGuard(const ReadGuard&) = delete;
  ReadGuard& operator=(const ReadGuard&) = delete;

private:
  ReadWriteLock* m_lock;
};

}  // namespace dp
