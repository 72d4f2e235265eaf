#include "dom/ManagedObject.h"

namespace dom {

ManagedObject::ManagedObject(const du::SmartPtr<MessageQueue>& queue) : m_queue(queue) {}

ManagedObject::~ManagedObject() = default;

bool ManagedObject::ManageObject(const du::SmartPtr<ManagedObject>& object)
{
  if (!object || object == this || !m_queue || object->m_queue) {
    return false;
  }
  object->m_queue = m_queue;
  object->OnManage();
  return true;
}

du::Symbol ManagedObject::GetBaseClass(unsigned int /*index*/) const
{
  return {};
}

unsigned int ManagedObject::GetBaseClassCount() const
{
  return 0;
}

du::Symbol ManagedObject::GetBaseClassParent(unsigned int /*index*/) const
{
  return {};
}

int ManagedObject::BaseClassOffsetByName(const du::Symbol& /*name*/) const
{
  return -1;
}

du::Symbol ManagedObject::GetObjectClass() const
{
  return {};
}

void ManagedObject::HandleTimeoutEvent() {}

void ManagedObject::HandleOnIdleEvent() {}

void ManagedObject::OnManage() {}

}  // namespace dom
