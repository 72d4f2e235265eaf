#pragma once

#include "du/SmartPtr.h"
#include "zelk/Instance.h"
#include "zelk/Shape.h"

namespace zelk {

/// What `ShapeInstance::GetShapeDataStatus` answers.
enum ShapeDataStatus : unsigned short {
  /// The data is not there; it can be asked for.
  ShapeDataNone = 0,
  /// The data could not be had.
  ShapeDataFailed = 1,
  /// A part of the data is there.
  ShapeDataPartial = 2,
  ShapeDataLoaded = 3,
};

/// The presence of a tree instance in one scene. Its queries may be asked from any thread. It may end on any thread as
/// well: a filter by visibility holds one for as long as it asks it.
class ShapeInstance : public Object {
public:
  static constexpr ClassType CLASS_TYPE{ClassIdShapeInstance, "zelk::ShapeInstance", &Object::CLASS_TYPE};

  /// Overwrites `out`; null when the tree instance has gone, and once all have been told that the scene has let go of
  /// the shape instance. A load of it may end after that, and must not show it again.
  virtual void GetInstance(du::SmartPtr<Instance>& out) const = 0;
  /// Overwrites `out`; may be null.
  virtual void GetShape(du::SmartPtr<Shape>& out) const = 0;
  /// One of `ShapeDataStatus`. `what` names the kind of data; 1 is the geometry that is drawn.
  [[nodiscard]] virtual unsigned short GetShapeDataStatus(unsigned short what) const = 0;
  [[nodiscard]] virtual bool HasRejectedCopyrights() const = 0;
  [[nodiscard]] virtual bool IsCompared() const = 0;
  /// Whether the instance belongs to the first of two things that are compared.
  [[nodiscard]] virtual bool IsComparedFirstItem() const = 0;
  [[nodiscard]] virtual bool IsThumbnail() const = 0;
  [[nodiscard]] virtual bool IsVisible() const = 0;

  [[nodiscard]] const ClassType& GetClassTypes() const override { return CLASS_TYPE; }
};

}  // namespace zelk
