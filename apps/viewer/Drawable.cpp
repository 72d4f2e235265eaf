#include "Drawable.h"

#include <BRep_Builder.hxx>
#include <BRep_CurveRepresentation.hxx>
#include <BRep_TEdge.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <StdPrs_ToolTriangulatedShape.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_DataMapOfShapeShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Iterator.hxx>

namespace viewer {

namespace {

// An empty copy of an edge has its curves alone, not the way that it takes along the triangles of its faces.
void CopyPolygons(const TopoDS_Shape& from, const TopoDS_Shape& to)
{
  const Handle(BRep_TEdge) source = Handle(BRep_TEdge)::DownCast(from.TShape());
  const Handle(BRep_TEdge) target = Handle(BRep_TEdge)::DownCast(to.TShape());
  for (const Handle(BRep_CurveRepresentation) & representation : source->Curves()) {
    if (representation->IsPolygonOnTriangulation()) {
      target->ChangeCurves().Append(representation->Copy());
    }
  }
}

/// Copies what shapes are made of down to the vertices, so that triangles which are put into the original afterwards do
/// not come into the copy. Parts that are shared stay shared.
class TopologyCopier {
public:
  TopoDS_Shape Copy(const TopoDS_Shape& shape)
  {
    const TopoDS_Shape original = shape.Located(TopLoc_Location()).Oriented(TopAbs_FORWARD);
    const TopoDS_Shape* const known = m_copies.Seek(original);
    const TopoDS_Shape copy = known != nullptr ? *known : _CopyContent(original);
    return copy.Located(shape.Location(), false).Oriented(shape.Orientation());
  }

private:
  TopoDS_Shape _CopyContent(const TopoDS_Shape& original)
  {
    TopoDS_Shape copy = original.EmptyCopied();
    const BRep_Builder builder;
    copy.Free(true);
    if (original.ShapeType() == TopAbs_FACE) {
      TopLoc_Location location;
      builder.UpdateFace(TopoDS::Face(copy), BRep_Tool::Triangulation(TopoDS::Face(original), location));
    } else if (original.ShapeType() == TopAbs_EDGE) {
      CopyPolygons(original, copy);
    }
    for (TopoDS_Iterator part(original, false, false); part.More(); part.Next()) {
      builder.Add(copy, Copy(part.Value()));
    }
    copy.Closed(original.Closed());
    m_copies.Bind(original, copy);
    return copy;
  }

  TopTools_DataMapOfShapeShape m_copies;
};

void AddAll(TopoDS_Compound& all, const TopoDS_Shape& shape, TopAbs_ShapeEnum what, TopAbs_ShapeEnum outside)
{
  const BRep_Builder builder;
  for (TopExp_Explorer part(shape, what, outside); part.More(); part.Next()) {
    builder.Add(all, part.Current());
  }
}

/// Null if the solids are all there is.
TopoDS_Shape FindAllButSolids(const TopoDS_Shape& shape)
{
  TopoDS_Compound rest;
  BRep_Builder().MakeCompound(rest);
  AddAll(rest, shape, TopAbs_SHELL, TopAbs_SOLID);
  AddAll(rest, shape, TopAbs_FACE, TopAbs_SHELL);
  AddAll(rest, shape, TopAbs_EDGE, TopAbs_FACE);
  return TopoDS_Iterator(rest).More() ? TopoDS_Shape(rest) : TopoDS_Shape();
}

TopoDS_Shape FindShape(const ShapeSource& source)
{
  if (source.body) {
    return source.store->GetBodyShape(source.product, *source.body);
  }
  const TopoDS_Shape& shape = source.store->GetProductShape(source.product);
  return source.hasBodies && !shape.IsNull() ? FindAllButSolids(shape) : shape;
}

void AddNormals(const TopoDS_Shape& shape)
{
  for (TopExp_Explorer face(shape, TopAbs_FACE); face.More(); face.Next()) {
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& triangles = BRep_Tool::Triangulation(TopoDS::Face(face.Current()), location);
    if (!triangles.IsNull() && !triangles->HasNormals()) {
      StdPrs_ToolTriangulatedShape::ComputeNormals(TopoDS::Face(face.Current()), triangles);
    }
  }
}

}  // namespace

TopoDS_Shape MakeDrawable(const ShapeSource& source)
{
  if (!source.store) {
    return {};
  }
  const auto hold = source.store->HoldShapes(source.product);
  const TopoDS_Shape shape = FindShape(source);
  if (shape.IsNull()) {
    return {};
  }
  AddNormals(shape);
  return TopologyCopier().Copy(shape);
}

}  // namespace viewer
