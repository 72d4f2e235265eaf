#include "zelk/SelectionManager.h"

#include "zelk/ComponentInstance.h"

namespace zelk {

const std::set<du::Symbol>& SelectionManager::GetInstanceTypes()
{
  static const std::set<du::Symbol> s_types{Instance::CLASS_TYPE.name, ComponentInstance::CLASS_TYPE.name};
  return s_types;
}

}  // namespace zelk
