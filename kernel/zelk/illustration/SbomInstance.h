#pragma once

#include "zelk/BaseInstance.h"

namespace zelk::illustration {

/// An instance of a service bill of materials, which arranges the assembly in an order of its own.
class SbomInstance : public BaseInstance {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdSbomInstance, "zelk::illustration::SbomInstance",
                                        &BaseInstance::CLASS_TYPE};
  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk::illustration
