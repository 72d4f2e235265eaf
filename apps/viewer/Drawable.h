#pragma once

#include <TopoDS_Shape.hxx>

#include "PlacedShape.h"

namespace viewer {

/// What is drawn of `source`, as it is now: a shape of its own that shares surfaces and triangles with the store, and
/// which no load writes into any more. Its triangles have normals. A null shape where there is nothing to draw. Waits
/// for loads of the same faces, so it is work for a worker; two calls must not run at the same time, since they may
/// meet at the same triangles.
[[nodiscard]] TopoDS_Shape MakeDrawable(const ShapeSource& source);

}  // namespace viewer
