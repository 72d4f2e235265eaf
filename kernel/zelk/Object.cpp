#include "zelk/Object.h"

namespace zelk {

bool Object::IsATypeOf(const ClassType& type) const
{
  for (const ClassType* own = &GetClassTypes(); own; own = own->base) {
    if (own == &type) {
      return true;
    }
  }
  return false;
}

bool Object::IsATypeOfId(unsigned int id) const
{
  for (const ClassType* own = &GetClassTypes(); own; own = own->base) {
    if (own->id == id) {
      return true;
    }
  }
  return false;
}

std::string Object::GetDebugClassName() const
{
  return GetClassTypes().name;
}

std::string Object::GetObjectDescription() const
{
  return {};
}

du::Symbol Object::GetObjectName() const
{
  return {};
}

void* Object::GetUserData(const du::Symbol& /*key*/) const
{
  return nullptr;
}

bool Object::AddUserData(const du::Symbol& /*key*/, void* /*data*/)
{
  return false;
}

bool Object::RemoveUserData(const du::Symbol& /*key*/)
{
  return false;
}

const ClassType& Object::GetClassTypes() const
{
  return CLASS_TYPE;
}

du::SmartPtr<du::RefCounted> Object::GetRefCountedUserData(const du::Symbol& /*key*/) const
{
  return {};
}

bool Object::AddRefCountedUserData(const du::Symbol& /*key*/, const du::SmartPtr<du::RefCounted>& /*data*/)
{
  return false;
}

}  // namespace zelk
