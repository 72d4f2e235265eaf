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

/// Everything with a shape at `top` and below it, in the order of the tree. `top` must have been filled from `assembly`
/// and `store`, and not have been edited since. Owner's thread; linear in the number of instances.
[[nodiscard]] std::vector<PlacedShape> FindPlacedShapes(const stepimport::Assembly& assembly,
                                                        const std::shared_ptr<const stepimport::ShapeStore>& store,
                                                        const du::SmartPtr<memkernel::Instance>& top);

}  // namespace viewer
