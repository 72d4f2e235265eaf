#pragma once

#include <atomic>

namespace du {

/// Base of every object that is shared through `du::SmartPtr`. Always inherited virtually, so that an object has one
/// count however many paths lead to it. The count may be changed from any thread.
class RefCounted {
public:
  RefCounted() noexcept = default;
  /// A copy starts with a count of its own: references are held on objects, not on their values.
  RefCounted(const RefCounted&) noexcept {}
  RefCounted& operator=(const RefCounted&) noexcept { return *this; }

  /// Adds a reference and returns the new count. `owner` is the address of the holding pointer, for the book-keeping
  /// of a kernel that does any; it may be null.
  int AddReference(void* /*owner*/) const noexcept { return m_count.fetch_add(1, std::memory_order_relaxed) + 1; }

  /// Takes a reference away and returns the remaining count. It never destroys the object: that is
  /// `du::ReleaseReference`.
  int RemoveReference(void* /*owner*/) const noexcept { return m_count.fetch_sub(1, std::memory_order_acq_rel) - 1; }

  /// Asked when the count has reached zero, while one reference is held again. False refuses to die: the object lives
  /// on with a count of one that no holder owns, and whoever refused sees to its end.
  [[nodiscard]] virtual bool ZeroReferenceCountHook() const;

  virtual ~RefCounted();

private:
  mutable std::atomic<int> m_count{0};
};

namespace detail {

/// The last reference of `object` has gone.
bool DestroyUnlessRefused(const RefCounted* object, void* owner);

}  // namespace detail

/// Lets go of one reference of `object`, which must not be null, and destroys the object when it was the last one and
/// `ZeroReferenceCountHook` agrees. Returns true if the object was destroyed. Any thread; the destructor runs in the
/// calling one.
inline bool ReleaseReference(const RefCounted* object, void* owner)
{
  return object->RemoveReference(owner) == 0 && detail::DestroyUnlessRefused(object, owner);
}

}  // namespace du
