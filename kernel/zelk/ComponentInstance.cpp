#include "zelk/ComponentInstance.h"

namespace zelk {

const du::Symbol ComponentInstance::ROOT_INSTANCE_ID("#root");

const ClassType& ComponentInstance::GetClassTypes() const
{
  return CLASS_TYPE;
}

}  // namespace zelk
