#pragma once

#include "zelk/Object.h"

namespace zelk {

/// The geometry of a product, shared by all its shape instances. Its queries may be asked from any thread. Where
/// nobody else holds it, it ends with a shape instance, so on any thread.
class Shape : public Object {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdShape, "zelk::Shape", &Object::CLASS_TYPE};

  /// Whether the shape comes from the kernel's native CAD format.
  [[nodiscard]] virtual bool IsFromTrask() const = 0;
  /// Whether loading from that format has failed.
  [[nodiscard]] virtual bool IsFailedFromTrask() const = 0;

  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
