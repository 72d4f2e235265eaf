#pragma once

#include <TDF_Label.hxx>
#include <TopoDS_Shape.hxx>

#include <memory>
#include <utility>
#include <vector>

#include "XdeDocument.h"
#include "stepimport/Assembly.h"
#include "stepimport/ShapeStore.h"

namespace stepimport {

/// The geometry of one product while it is read.
struct ProductShape {
  TopoDS_Shape shape;
  TDF_Label label;
  std::vector<TopoDS_Shape> bodies;
};

/// What stands behind a `ShapeStore`. The documents come first: the labels point into them.
struct ShapeStore::Content {
  std::vector<XdeDocument> documents;
  std::vector<ProductShape> products;
};

/// Fills a `ShapeStore` during an import; the store is not changed once it has been taken.
class ShapeStoreBuilder {
public:
  ShapeStoreBuilder() : m_store(std::make_shared<ShapeStore>()) {}

  void AddDocument(XdeDocument document) { _Content().documents.push_back(std::move(document)); }
  void Set(ProductIndex product, ProductShape shape);
  /// `product` shows the geometry of `source`.
  void Share(ProductIndex product, ProductIndex source);

  [[nodiscard]] std::shared_ptr<const ShapeStore> Take() { return std::move(m_store); }

private:
  ShapeStore::Content& _Content() { return *m_store->m_content; }

  std::shared_ptr<ShapeStore> m_store;
};

}  // namespace stepimport
