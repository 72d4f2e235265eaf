#include "zelk/BaseAsyncEvent.h"

#include <utility>

namespace zelk {

/// What an event sends to itself on the owner's thread.
class BaseAsyncEvent::EventMessage : public dom::Message {
public:
  enum class Kind { Completion, EndOfCompletion, Progress, Status };

  explicit EventMessage(Kind messageKind, const du::Symbol& statusText = {}) : kind(messageKind), text(statusText) {}

  const Kind kind;
  const du::Symbol text;
};

BaseAsyncEvent::BaseAsyncEvent(bool hasWorker) : m_hasWorker(hasWorker) {}

BaseAsyncEvent::~BaseAsyncEvent() = default;

bool BaseAsyncEvent::Progress(unsigned char percent)
{
  const bool isChanged = m_progress.exchange(percent, std::memory_order_relaxed) != percent;
  if (isChanged && m_hasListeners.load(std::memory_order_acquire)) {
    _PostProgress();
  }
  return !IsCanceled();
}

void BaseAsyncEvent::Cancel()
{
  {
    const std::lock_guard lock(m_mutex);
    if (m_isFinished) {
      return;
    }
    m_isCanceled.store(true, std::memory_order_release);
  }
  if (!m_hasWorker) {
    _Finish(StatusCanceled, {});
  }
}

void BaseAsyncEvent::Complete()
{
  _Finish(StatusCompleted, {});
}

void BaseAsyncEvent::CompleteWithError(const du::Symbol& error, unsigned short status)
{
  _Finish(status, error);
}

void BaseAsyncEvent::Status(du::Symbol text)
{
  if (const auto queue = _GetQueue()) {
    queue->Post(du::SmartPtr<dom::Observer>(this), du::MakeSmart<EventMessage>(EventMessage::Kind::Status, text));
  }
}

bool BaseAsyncEvent::IsCompleted() const
{
  const std::lock_guard lock(m_mutex);
  return m_isFinished;
}

du::Symbol BaseAsyncEvent::GetError() const
{
  const std::lock_guard lock(m_mutex);
  return m_error;
}

void BaseAsyncEvent::AddProgressListener(ProgressListener listener)
{
  m_listeners.push_back(std::move(listener));
  m_hasListeners.store(true, std::memory_order_release);
  if (m_hasEnded
      && !GetMessageQueue()->Post(du::SmartPtr<dom::Observer>(this),
                                  du::MakeSmart<EventMessage>(EventMessage::Kind::EndOfCompletion))) {
    m_listeners.clear();
  }
}

void BaseAsyncEvent::HandleMessage(const du::SmartPtr<dom::Message>& message)
{
  EventHandler(message);
}

void BaseAsyncEvent::OnManage()
{
  const du::SmartPtr<dom::MessageQueue>& queue = GetMessageQueue();
  queue->Hold(du::SmartPtr<dom::ManagedObject>(this));
  {
    const std::lock_guard lock(m_mutex);
    m_managingQueue = queue;
    if (!m_isFinished) {
      return;
    }
  }
  _DeliverCompletion(queue);
}

void BaseAsyncEvent::OnComplete(unsigned short /*status*/) {}

bool BaseAsyncEvent::RunOnCompleteInTask() const
{
  return false;
}

void BaseAsyncEvent::OnStatus(const du::Symbol& /*text*/) {}

void BaseAsyncEvent::EventHandler(const du::SmartPtr<dom::Message>& message)
{
  const auto own = du::DynamicCast<EventMessage>(message);
  if (!own) {
    return;
  }
  const du::SmartPtr<BaseAsyncEvent> self(this);
  switch (own->kind) {
    case EventMessage::Kind::Completion:
      _RunOnComplete();
      _EndCompletion();
      break;
    case EventMessage::Kind::EndOfCompletion:
      _EndCompletion();
      break;
    case EventMessage::Kind::Progress:
      // An exchange, since it makes the percentage of the last report visible that found this one under way.
      m_isProgressPosted.exchange(false);
      _TellListeners(false);
      break;
    case EventMessage::Kind::Status:
      OnStatus(own->text);
      break;
  }
}

void BaseAsyncEvent::_Finish(unsigned short status, const du::Symbol& error)
{
  du::SmartPtr<dom::MessageQueue> queue;
  {
    const std::lock_guard lock(m_mutex);
    if (m_isFinished) {
      return;
    }
    m_isFinished = true;
    m_status = status;
    m_error = error;
    queue = m_managingQueue;
  }
  if (queue) {
    _DeliverCompletion(queue);
  }
}

void BaseAsyncEvent::_DeliverCompletion(const du::SmartPtr<dom::MessageQueue>& queue)
{
  auto kind = EventMessage::Kind::Completion;
  if (RunOnCompleteInTask() && !queue->IsOwnerThread()) {
    _RunOnComplete();
    // Listeners belong to the owner, and so does the end of the event.
    kind = EventMessage::Kind::EndOfCompletion;
  }
  // The owner may run and release everything before this returns: the reference is handed over, and no member is
  // touched afterwards.
  queue->Post(du::SmartPtr<dom::Observer>(this), du::MakeSmart<EventMessage>(kind));
}

void BaseAsyncEvent::_RunOnComplete()
{
  unsigned short status = StatusCompleted;
  {
    const std::lock_guard lock(m_mutex);
    status = m_status;
  }
  OnComplete(status);
}

void BaseAsyncEvent::_EndCompletion()
{
  m_hasEnded = true;
  _TellListeners(true);
  m_listeners.clear();
  m_hasListeners.store(false, std::memory_order_release);
  GetMessageQueue()->LetGo(*this);
}

void BaseAsyncEvent::_PostProgress()
{
  const du::SmartPtr<dom::MessageQueue> queue = _GetQueue();
  // One report under way is enough: the owner reads the newest percentage when it arrives.
  if (queue && !m_isProgressPosted.exchange(true)) {
    queue->Post(du::SmartPtr<dom::Observer>(this), du::MakeSmart<EventMessage>(EventMessage::Kind::Progress));
  }
}

void BaseAsyncEvent::_TellListeners(bool isCompleted)
{
  // A listener may add another one.
  for (std::size_t i = 0; i < m_listeners.size(); ++i) {
    const ProgressListener listener = m_listeners[i];
    listener(GetProgress(), isCompleted);
  }
}

du::SmartPtr<dom::MessageQueue> BaseAsyncEvent::_GetQueue() const
{
  const std::lock_guard lock(m_mutex);
  return m_managingQueue;
}

}  // namespace zelk
