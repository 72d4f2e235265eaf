#pragma once

#include <mutex>

#include "du/SmartPtr.h"

namespace du {

/// Holds the one object of a kind that a kernel offers to the whole process. Any thread. Objects of this class are
/// never destroyed, so that what is still installed when the process ends does not die among static objects.
template <typename T>
class InstalledObject {
public:
  /// Null while nothing is installed.
  [[nodiscard]] SmartPtr<T> Get() const
  {
    const std::lock_guard lock(m_mutex);
    return m_object;
  }

  /// Replaces the object; null takes it away. The former one is released in the calling thread.
  void Set(const SmartPtr<T>& object)
  {
    // Declared before the lock, so that the former object dies after it is released.
    SmartPtr<T> former = object;
    const std::lock_guard lock(m_mutex);
    m_object.Swap(former);
  }

private:
  mutable std::mutex m_mutex;
  SmartPtr<T> m_object;
};

}  // namespace du
