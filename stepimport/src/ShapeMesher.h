#pragma once

#include <TopoDS_Shape.hxx>

#include "memkernel/Shape.h"
#include "zelk/ShapeInstance.h"

namespace stepimport {

/// How far triangles may stand away from the surfaces of `shape`: a small part of its size, so that parts of any size
/// look alike. Above 0 for shapes without a size as well.
[[nodiscard]] double ChooseDeflection(const TopoDS_Shape& shape);

/// Gives each face of `shape` triangles that are no coarser than `deflection`; those that it has are kept if they are
/// good enough. Answers `ShapeDataLoaded` when all faces have some, which a shape without faces fulfils,
/// `ShapeDataPartial` when some have, `ShapeDataFailed` when none has, and `ShapeDataNone` when `context` has asked to
/// stop before. Writes into the faces and edges of the shape, which nobody else may read meanwhile.
[[nodiscard]] zelk::ShapeDataStatus MeshShape(const TopoDS_Shape& shape, double deflection,
                                              memkernel::LoadContext& context);

}  // namespace stepimport
