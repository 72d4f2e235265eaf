#pragma once

#include "zelk/Instance.h"

namespace zelk {

/// A component of an assembly: the instances that the world's tree is made of.
class ComponentInstance : public Instance {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdComponentInstance, "zelk::ComponentInstance", &Instance::CLASS_TYPE};

  /// The "Part ID" of the base root of every tree, and of no other instance. Not empty. Defined here, so
  /// that the static objects of every file that knows the name find it made.
  static inline const du::Symbol ROOT_INSTANCE_ID{"#root"};

  [[nodiscard]] const ClassType& GetClassTypes() const override;
};

}  // namespace zelk
