#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "dom/MessageQueue.h"
#include "dom/Observer.h"
#include "du/SmartPtr.h"

namespace kerneltest {

/// A message queue whose owner is the thread that makes it. Nothing runs by itself: the owner asks for turns.
class TestQueue : public dom::MessageQueue {
public:
  bool Post(du::SmartPtr<dom::Observer> receiver, du::SmartPtr<dom::Message> message) override;
  [[nodiscard]] bool IsOwnerThread() const override { return std::this_thread::get_id() == m_owner; }

  /// Owner's thread. Delivers what stands in the queue now, and returns how many messages that were.
  std::size_t RunDue();
  /// Owner's thread. Delivers messages until the condition holds; false if that takes longer than a test may take.
  bool RunUntil(const std::function<bool()>& isDone);
  /// Owner's thread. Drops what was not delivered and lets go of what was held.
  void Close();

  [[nodiscard]] std::size_t CountWaiting() const;

private:
  struct Entry {
    du::SmartPtr<dom::Observer> receiver;
    du::SmartPtr<dom::Message> message;
  };

  [[nodiscard]] std::deque<Entry> _TakeAll();

  const std::thread::id m_owner = std::this_thread::get_id();
  mutable std::mutex m_mutex;
  std::condition_variable m_hasEntries;
  std::deque<Entry> m_entries;
  bool m_isClosed = false;
};

}  // namespace kerneltest
