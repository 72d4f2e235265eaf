#include "du/RefCounted.h"

namespace du {

RefCounted::~RefCounted() = default;

int RefCounted::AddReference(void* /*owner*/) const noexcept
{
  return m_count.fetch_add(1, std::memory_order_relaxed) + 1;
}

int RefCounted::RemoveReference(void* /*owner*/) const noexcept
{
  return m_count.fetch_sub(1, std::memory_order_acq_rel) - 1;
}

bool RefCounted::ZeroReferenceCountHook() const
{
  return true;
}

bool ReleaseReference(const RefCounted* object, void* owner)
{
  if (object->RemoveReference(owner) != 0) {
    return false;
  }
  // The hook may hand out references to the object, so it must find it alive.
  object->AddReference(owner);
  if (!object->ZeroReferenceCountHook()) {
    return false;
  }
  if (object->RemoveReference(owner) != 0) {
    return false;
  }
  delete object;
  return true;
}

}  // namespace du
