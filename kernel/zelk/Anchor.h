#pragma once

#include "zelk/Object.h"

namespace zelk {

/// Where in the assembly a shape is loaded for. Only handed from the instance to the loader.
class Anchor : public Object {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdAnchor, "zelk::Anchor", &Object::CLASS_TYPE};
  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
