#pragma once

#include <TDF_Label.hxx>
#include <TopoDS_Shape.hxx>

#include <memory>
#include <shared_mutex>
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
  /// By product, into `mutexes`.
  std::vector<std::size_t> groups;
  /// One for all shapes that have faces or edges in common.
  std::vector<std::unique_ptr<std::shared_mutex>> mutexes;
  /// For products that are not there.
  std::shared_mutex noMutex;
};

/// Held alone by whoever writes into the product's shapes.
[[nodiscard]] std::shared_mutex& GetShapeMutex(const ShapeStore& store, ProductIndex product);

/// Fills a `ShapeStore` during an import; the store is not changed once it has been taken.
class ShapeStoreBuilder {
public:
  ShapeStoreBuilder() : m_store(std::make_shared<ShapeStore>()) {}

  void AddDocument(XdeDocument document) { _Content().documents.push_back(std::move(document)); }
  void Set(ProductIndex product, ProductShape shape);
  /// `product` shows the geometry of `source`.
  void Share(ProductIndex product, ProductIndex source);

  /// Once all products are there.
  [[nodiscard]] std::shared_ptr<const ShapeStore> Take();

private:
  ShapeStore::Content& _Content() { return *m_store->m_content; }

  std::shared_ptr<ShapeStore> m_store;
};

}  // namespace stepimport
