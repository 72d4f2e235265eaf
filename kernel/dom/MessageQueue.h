#pragma once

#include <mutex>
#include <unordered_map>

#include "dom/Message.h"
#include "du/SmartPtr.h"

namespace dom {

class ManagedObject;
class Observer;

/// The road to one owner's thread. A kernel supplies one for each thread that owns managed objects.
class MessageQueue : public virtual du::RefCounted {
public:
  /// Any thread. `receiver->HandleMessage(message)` is called later, in a turn of the owner's loop of its own and never
  /// from inside this call, after everything that was posted before. Both references are moved into the queue and
  /// released on the owner's thread, so that the caller is done with them when this returns. False when the queue is
  /// closed, in which case nothing is delivered.
  virtual bool Post(du::SmartPtr<Observer> receiver, du::SmartPtr<Message> message) = 0;

  /// Any thread.
  [[nodiscard]] virtual bool IsOwnerThread() const = 0;

  /// Keeps an object alive until `LetGo`, whoever else lets go of it: an event under way has a worker that knows it by
  /// address only. Nothing after the end of the queue. Any thread.
  void Hold(const du::SmartPtr<ManagedObject>& object);
  /// Ends a `Hold`; nothing for an object that is not held. Owner's thread.
  void LetGo(const ManagedObject& object);

protected:
  /// For the end of a queue: lets go of everything that is still held. Owner's thread, after the last worker has gone.
  void _LetGoOfAll();

private:
  std::mutex m_mutex;
  std::unordered_map<const ManagedObject*, du::SmartPtr<ManagedObject>> m_held;
  bool m_hasEnded = false;
};

}  // namespace dom
