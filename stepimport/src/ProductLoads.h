#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "memkernel/Shape.h"
#include "stepimport/Assembly.h"
#include "stepimport/ShapeStore.h"

namespace stepimport {

/// The work behind the shapes of one product, of its own one and of those of its bodies. They share one precision, so
/// that it does not matter which is asked for first. Holds the store; may be used from any thread.
class ProductLoads {
public:
  ProductLoads(std::shared_ptr<const ShapeStore> store, ProductIndex product);

  [[nodiscard]] zelk::ShapeDataStatus LoadProduct(memkernel::LoadContext& context);
  [[nodiscard]] zelk::ShapeDataStatus LoadBody(std::size_t body, memkernel::LoadContext& context);

private:
  [[nodiscard]] zelk::ShapeDataStatus _Load(const TopoDS_Shape& shape, memkernel::LoadContext& context);

  const std::shared_ptr<const ShapeStore> m_store;
  const ProductIndex m_product;
  /// Chosen by the first load; guarded by the mutex of the product's shapes.
  double m_deflection = 0;
};

}  // namespace stepimport
