#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

#include "dom/Observer.h"
#include "du/Symbol.h"
#include "du/UserData.h"

namespace zelk {

/// The completion of work that runs elsewhere.
///
/// An event completes exactly once: `OnComplete` runs on the thread of the `dom::ManagedObject` that manages the event,
/// in a later turn of its loop, whichever thread has asked for it and never from inside the call that did. A managed
/// event lives until `OnComplete` has ended, whoever lets go of it in the meantime. An event that completes before it
/// is managed waits for its manager.
class BaseAsyncEvent : public dom::Observer, public du::UserData {
public:
  /// Status of plain completion.
  static constexpr unsigned short StatusCompleted = 0;
  /// Status of an event without a worker that was cancelled.
  static constexpr unsigned short StatusCanceled = 0xffff;

  /// Owner's thread: the percentage, and whether the event has completed. Called when the percentage changed, in a
  /// later turn of the loop, and once with true after `OnComplete`.
  using ProgressListener = std::function<void(unsigned char percent, bool isCompleted)>;

  /// `hasWorker` tells that the work runs on a worker which will notice a cancel and complete the event by itself.
  explicit BaseAsyncEvent(bool hasWorker);
  ~BaseAsyncEvent() override;

  /// Any thread. Notes how far the work is, never waits for the owner, and answers whether the work is still wanted.
  virtual bool Progress(unsigned char percent);
  /// Any thread. With a worker only the flag is raised, so that nobody reads a result that is still being written;
  /// without one the event completes with `StatusCanceled`. Nothing after completion.
  virtual void Cancel();
  /// Any thread. The caller must not touch the event afterwards unless it holds a reference. Nothing if the event has
  /// completed already; the same for `CompleteWithError`.
  virtual void Complete();
  virtual void CompleteWithError(const du::Symbol& error, unsigned short status);
  /// Any thread. A text on what the work is doing, delivered to the event itself on the owner's thread.
  virtual void Status(du::Symbol text);

  /// Any thread.
  [[nodiscard]] bool IsCanceled() const noexcept { return m_isCanceled.load(std::memory_order_acquire); }
  /// Any thread: whether completion has been asked for. `OnComplete` may still be on its way.
  [[nodiscard]] bool IsCompleted() const;
  /// Any thread. 0 before the first report.
  [[nodiscard]] unsigned char GetProgress() const noexcept { return m_progress.load(std::memory_order_relaxed); }
  /// The error of `CompleteWithError`, else empty.
  [[nodiscard]] du::Symbol GetError() const;

  /// Owner's thread. Listeners are called in order and dropped after completion. One that comes after it is told of the
  /// completion in a later turn of the loop.
  void AddProgressListener(ProgressListener listener);

  void HandleMessage(const du::SmartPtr<dom::Message>& message) final;
  void OnManage() override;

protected:
  /// The work has ended, with `StatusCompleted` for plain completion. Owner's thread, once.
  virtual void OnComplete(unsigned short status);

private:
  class EventMessage;

  /// True lets `OnComplete` run on the completing worker instead of travelling to the owner's thread. The listeners are
  /// still told, and the event let go of, on the owner's thread. False by default.
  [[nodiscard]] virtual bool RunOnCompleteInTask() const;
  virtual void OnStatus(const du::Symbol& text);
  virtual void EventHandler(const du::SmartPtr<dom::Message>& message);

  void _Finish(unsigned short status, const du::Symbol& error);
  void _DeliverCompletion(const du::SmartPtr<dom::MessageQueue>& queue);
  void _RunOnComplete();
  void _EndCompletion();
  void _PostProgress();
  void _TellListeners(bool isCompleted);
  [[nodiscard]] du::SmartPtr<dom::MessageQueue> _GetQueue() const;

  const bool m_hasWorker;
  std::atomic<bool> m_isCanceled{false};
  std::atomic<bool> m_hasListeners{false};
  std::atomic<bool> m_isProgressPosted{false};
  std::atomic<unsigned char> m_progress{0};

  /// Guards the members below, which the worker and the owner share.
  mutable std::mutex m_mutex;
  bool m_isFinished = false;
  unsigned short m_status = StatusCompleted;
  du::Symbol m_error;
  du::SmartPtr<dom::MessageQueue> m_managingQueue;

  /// Owner's thread only.
  std::vector<ProgressListener> m_listeners;
  bool m_hasEnded = false;
};

}  // namespace zelk
