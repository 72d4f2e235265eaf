#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "dom/MessageQueue.h"
#include "dom/Observer.h"
#include "du/SmartPtr.h"

namespace memkernel {

/// The loop of one owner's thread, which is the thread that makes it. Any loop of a host can drive it: the wake-up
/// tells that something waits, and `RunDue` runs it. A program without a loop of its own uses `RunUntil` or
/// `WaitAndRun`.
///
///     loop->SetWakeUp([window] { window->PostRunDue(); });   // PostRunDue makes the window call loop->RunDue() soon
class OwnerLoop : public dom::MessageQueue {
public:
  OwnerLoop();
  ~OwnerLoop() override;

  /// Any thread. See `dom::MessageQueue`; false for a null receiver as well.
  bool Post(du::SmartPtr<dom::Observer> receiver, du::SmartPtr<dom::Message> message) override;
  /// Any thread. `function` is called and destroyed later on the owner's thread, in the order of what is posted. False,
  /// and the function destroyed here, when the loop is closed.
  bool Invoke(std::function<void()> function);
  [[nodiscard]] bool IsOwnerThread() const override;

  /// Owner's thread. `wakeUp` is called when something is posted to an empty loop, in the thread that posts, and at the
  /// end of `RunDue` when something waits for the next turn. It is called without a lock and must not run the loop
  /// itself. An empty function turns it off. What waits already is reported at once.
  void SetWakeUp(std::function<void()> wakeUp);
  /// Owner's thread. One turn: runs what was due at the call, oldest first, and returns how many. What is posted in the
  /// meantime waits for the next turn. May be called from inside a message; the order stays.
  std::size_t RunDue();
  /// Owner's thread. Runs turns until `isDone` answers true, which is asked before each; waits while nothing is due.
  /// False when the loop was closed before.
  bool RunUntil(const std::function<bool()>& isDone);
  /// Owner's thread. One turn, for which it waits no longer than `timeout`. Returns how many ran.
  std::size_t WaitAndRun(std::chrono::milliseconds timeout);

  /// Owner's thread, once nobody posts any more. What is still due is released without being run, and so is what the
  /// queue holds. The loop accepts nothing afterwards.
  void Close();
  /// Any thread.
  [[nodiscard]] bool IsClosed() const;

private:
  struct Entry {
    std::uint64_t number = 0;
    du::SmartPtr<dom::Observer> receiver;
    du::SmartPtr<dom::Message> message;
    std::function<void()> function;
  };

  bool _Enqueue(Entry& entry);
  bool _TakeDue(std::uint64_t lastNumber, Entry& out);
  void _WakeUpIfDue();

  const std::thread::id m_owner;
  mutable std::mutex m_mutex;
  std::condition_variable m_posted;
  std::deque<Entry> m_due;
  std::uint64_t m_lastNumber = 0;
  std::function<void()> m_wakeUp;
  bool m_isClosed = false;
};

}  // namespace memkernel
