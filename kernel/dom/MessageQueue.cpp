#include "dom/MessageQueue.h"

#include <utility>

#include "dom/ManagedObject.h"

namespace dom {

void MessageQueue::Hold(const du::SmartPtr<ManagedObject>& object)
{
  const std::lock_guard lock(m_mutex);
  if (!m_hasEnded) {
    m_held.emplace(object.Get(), object);
  }
}

void MessageQueue::LetGo(const ManagedObject& object)
{
  // Declared before the lock, so that the object dies after it is released.
  du::SmartPtr<ManagedObject> held;
  const std::lock_guard lock(m_mutex);
  const auto entry = m_held.find(&object);
  if (entry != m_held.end()) {
    held = std::move(entry->second);
    m_held.erase(entry);
  }
}

void MessageQueue::_LetGoOfAll()
{
  decltype(m_held) held;
  {
    const std::lock_guard lock(m_mutex);
    held.swap(m_held);
    m_hasEnded = true;
  }
  // Objects die here, outside of the lock, since their destructors may reach the queue.
}

}  // namespace dom
