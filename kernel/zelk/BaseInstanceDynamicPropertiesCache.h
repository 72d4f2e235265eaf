#pragma once

#include "du/Symbol.h"

namespace zelk {

/// Names the group of the properties that the kernel works out for an instance itself, "Part ID" and "Display Name"
/// among them.
class BaseInstanceDynamicPropertiesCache {
public:
  /// Defined here, so that the static objects of every file that knows the name find it made.
  static inline const du::Symbol s_GroupName{"Instance"};
};

}  // namespace zelk
