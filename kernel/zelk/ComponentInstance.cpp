#include "zelk/ComponentInstance.h"

namespace zelk {

const ClassType& ComponentInstance::GetClassTypes() const
{
  return CLASS_TYPE;
}

}  // namespace zelk
