#pragma once

#include <gp_Trsf.hxx>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "du/SmartPtr.h"
#include "memkernel/Instance.h"
#include "stepimport/Assembly.h"
#include "stepimport/ShapeStore.h"

namespace viewer {

/// What the instances of one product, or of one of its bodies, are drawn from.
struct ShapeSource {
  std::shared_ptr<const stepimport::ShapeStore> store;
  stepimport::ProductIndex product = 0;
  /// Empty for the product itself, of which only what belongs to no body is drawn where it has bodies.
  std::optional<std::size_t> body;
  bool hasBodies = false;
  /// "#RRGGBB", or empty.
  std::string color;
};

/// An instance with a shape, and where it stands in the room.
struct PlacedShape {
  du::SmartPtr<memkernel::Instance> instance;
  std::shared_ptr<const ShapeSource> source;
  gp_Trsf place;
};

/// Finds everything with a shape at an instance and below it, in the order of the tree, a portion at a time: walks the
/// branch beside the products that it was filled from. Refers to these until it ends. Owner's thread.
class PlacedShapeFinder {
public:
  /// `top` must have been filled from `assembly` and `store`, and the branch must not be edited before the end. Null
  /// for nothing.
  PlacedShapeFinder(const stepimport::Assembly& assembly, const std::shared_ptr<const stepimport::ShapeStore>& store,
                    const du::SmartPtr<memkernel::Instance>& top);
  PlacedShapeFinder(const PlacedShapeFinder&) = delete;
  PlacedShapeFinder& operator=(const PlacedShapeFinder&) = delete;
  ~PlacedShapeFinder();

  /// What there is among the next `count` instances and the bodies of the last one.
  [[nodiscard]] std::vector<PlacedShape> FindSome(std::size_t count);
  [[nodiscard]] bool IsDone() const noexcept;
  [[nodiscard]] std::size_t GetVisitedCount() const noexcept;

private:
  class Walk;

  const std::unique_ptr<Walk> m_walk;
};

}  // namespace viewer
