#pragma once

#include <cstddef>
#include <memory>

#include "stepimport/Assembly.h"

class TDF_Label;
class TopoDS_Shape;

namespace stepimport {

/// The geometry of an imported assembly, by product. It lives as long as anybody holds it, apart from the kernel that
/// was filled, and does not change after the import: every operation may be called from any thread. The shapes
/// themselves are shared: whoever computes something that is stored in a shape, such as its triangles, works on one
/// shape on one thread at a time.
class ShapeStore {
public:
  ShapeStore();
  ~ShapeStore();
  ShapeStore(const ShapeStore&) = delete;
  ShapeStore& operator=(const ShapeStore&) = delete;

  /// The product's own geometry in millimetres, without its occurrences; a null shape when it has none or there is no
  /// such product. Valid as long as the store.
  [[nodiscard]] const TopoDS_Shape& GetProductShape(ProductIndex product) const;

  /// The solid behind `Product::bodies[body]`; a null shape when there is none. Valid as long as the store.
  [[nodiscard]] const TopoDS_Shape& GetBodyShape(ProductIndex product, std::size_t body) const;

  /// Where the product stands in the document that was read, with its colours and layers; a null label when it has no
  /// geometry. The document lives as long as the store.
  [[nodiscard]] TDF_Label GetProductLabel(ProductIndex product) const;

private:
  friend class ShapeStoreBuilder;
  struct Content;

  std::unique_ptr<Content> m_content;
};

}  // namespace stepimport
