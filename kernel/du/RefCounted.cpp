#include "du/RefCounted.h"

namespace du {

RefCounted::~RefCounted() = default;

bool RefCounted::ZeroReferenceCountHook() const
{
  return true;
}

bool detail::DestroyUnlessRefused(const RefCounted* object, void* owner)
{
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
