#include "zelk/FindBehind.h"

namespace zelk {

du::SmartPtr<BaseInstance> FindBehind(const BaseInstance& instance, const BaseInstance* top)
{
  du::SmartPtr<BaseInstance> next;
  instance.GetBaseNextSibling(next);
  du::SmartPtr<BaseInstance> above;
  instance.GetBaseParent(above);
  while (!next && above && above != top) {
    above->GetBaseNextSibling(next);
    above->GetBaseParent(above);
  }
  return next;
}

}  // namespace zelk
