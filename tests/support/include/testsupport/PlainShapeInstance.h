#pragma once

#include "zelk/Shape.h"
#include "zelk/ShapeInstance.h"

namespace testsupport {

/// A shape that is what its members say.
class PlainShape : public zelk::Shape {
public:
  bool isFromTrask = false;
  bool isFailedFromTrask = false;

  [[nodiscard]] bool IsFromTrask() const override { return isFromTrask; }
  [[nodiscard]] bool IsFailedFromTrask() const override { return isFailedFromTrask; }
};

/// A shape instance that is what its members say: visible and without data at the start.
class PlainShapeInstance : public zelk::ShapeInstance {
public:
  explicit PlainShapeInstance(const du::SmartPtr<zelk::Instance>& ofInstance) : instance(ofInstance) {}

  du::SmartPtr<zelk::Instance> instance;
  du::SmartPtr<PlainShape> shape = du::MakeSmart<PlainShape>();
  /// May be none of `zelk::ShapeDataStatus`.
  unsigned short status = zelk::ShapeDataNone;
  bool isVisible = true;
  bool isThumbnail = false;
  bool isCompared = false;
  bool isComparedFirstItem = false;

  [[nodiscard]] du::Symbol GetObjectName() const override
  {
    return instance ? instance->GetObjectName() : du::Symbol();
  }
  void GetInstance(du::SmartPtr<zelk::Instance>& out) const override { out = instance; }
  void GetShape(du::SmartPtr<zelk::Shape>& out) const override { out = shape; }
  /// Of any other data than the geometry nothing is there.
  [[nodiscard]] unsigned short GetShapeDataStatus(unsigned short what) const override
  {
    return what == 1 ? status : static_cast<unsigned short>(zelk::ShapeDataNone);
  }
  [[nodiscard]] bool HasRejectedCopyrights() const override { return false; }
  [[nodiscard]] bool IsCompared() const override { return isCompared; }
  [[nodiscard]] bool IsComparedFirstItem() const override { return isComparedFirstItem; }
  [[nodiscard]] bool IsThumbnail() const override { return isThumbnail; }
  [[nodiscard]] bool IsVisible() const override { return isVisible; }
};

}  // namespace testsupport
