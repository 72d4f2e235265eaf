#pragma once

#include <Poly_Triangulation.hxx>
#include <TopoDS_Shape.hxx>

#include <vector>

namespace stepimporttest {

/// Of each face, in the order of the shape; null for a face without triangles.
[[nodiscard]] std::vector<const Poly_Triangulation*> GetTriangulations(const TopoDS_Shape& shape);

}  // namespace stepimporttest
