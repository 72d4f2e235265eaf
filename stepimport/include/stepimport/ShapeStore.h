#pragma once

#include <cstddef>
#include <memory>
#include <shared_mutex>

#include "stepimport/Assembly.h"

class TDF_Label;
class TopoDS_Shape;

namespace stepimport {

/// The geometry of an imported assembly, by product. It lives as long as anybody holds it, apart from the kernel that
/// was filled; every operation may be called from any thread. What it holds does not change after the import, but for
/// the triangles: the loads of the imported shapes write them into the faces and edges, on workers, whenever they are
/// asked for. Bodies share faces with their product, and products may share some with each other, so a load may write
/// into more shapes than the one that is loaded. Whoever looks into a shape while loads may run holds it still:
///
///     const auto hold = store.HoldShapes(product);
///     for (TopExp_Explorer face(store.GetProductShape(product), TopAbs_FACE); face.More(); face.Next()) {
///       // Null for a face that has no triangles, or has none yet.
///       const Handle(Poly_Triangulation) triangles = BRep_Tool::Triangulation(TopoDS::Face(face.Current()),
///       location);
///     }
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

  /// Keeps the shapes of the product and of its bodies as they are while the lock is held, for any number of readers at
  /// once. Waits for a load that is at work on them, which may take seconds; once the status of the kernel's shapes of
  /// the product says that they are loaded, there is none to wait for, unless another product shares faces with it.
  /// What is read is good longer than the lock: triangles are replaced, never changed.
  [[nodiscard]] std::shared_lock<std::shared_mutex> HoldShapes(ProductIndex product) const;

private:
  friend class ShapeStoreBuilder;
  friend std::shared_mutex& GetShapeMutex(const ShapeStore& store, ProductIndex product);
  struct Content;

  std::unique_ptr<Content> m_content;
};

}  // namespace stepimport
