#pragma once

#include "du/Symbol.h"

namespace zelk {

/// Names the group of the properties that the kernel works out for an instance itself, "Part ID" and "Display Name"
/// among them.
class BaseInstanceDynamicPropertiesCache {
public:
  static const du::Symbol s_GroupName;
};

}  // namespace zelk
