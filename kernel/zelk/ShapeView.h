#pragma once

#include "zelk/View.h"

namespace zelk {

class ShapeViewObserver;

/// A view of a shape scene. Owner's thread.
class ShapeView : public View {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdShapeView, "zelk::ShapeView", &View::CLASS_TYPE};

  /// With `replay` the observer is first told of the present settings. False, and nothing done, if it is registered
  /// already.
  virtual bool RegisterObserver(ShapeViewObserver& observer, bool replay) = 0;
  /// False if the observer is not registered. Inside an open run of events the observer's `OnEndUpdate` is called
  /// first.
  virtual bool UnregisterObserver(ShapeViewObserver& observer) = 0;

  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
