#pragma once

#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"

namespace zelk {

/// What follows `instance` and all below it in a walk of the branch of `top`; null at its end. A null `top` stands for
/// the whole tree; `instance` itself must lie below `top`, or else the walk ends with the tree. The tree is read: its
/// lock is held, or the caller is in its owner's thread. Costs a step for each level it goes up.
[[nodiscard]] du::SmartPtr<BaseInstance> FindBehind(const BaseInstance& instance, const BaseInstance* top);

}  // namespace zelk
