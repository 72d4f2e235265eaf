#include "ShapeMesher.h"

#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <IMeshTools_Parameters.hxx>
#include <Message_ProgressIndicator.hxx>
#include <Poly_Triangulation.hxx>
#include <Precision.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>

#include <algorithm>
#include <cmath>

namespace stepimport {

namespace {

constexpr double DeflectionOfSize = 0.002;
/// Twenty degrees.
constexpr double AngularDeflection = 0.35;

/// Passes the progress of a meshing on, and the wish to stop back.
class LoadProgress : public Message_ProgressIndicator {
public:
  explicit LoadProgress(memkernel::LoadContext& context) : m_context(context) {}

protected:
  Standard_Boolean UserBreak() override { return m_context.IsCanceled(); }
  void Show(const Message_ProgressScope& /*scope*/, Standard_Boolean /*isForced*/) override
  {
    const int percent = std::clamp(static_cast<int>(100 * GetPosition()), 0, 100);
    if (percent != m_percent) {
      m_percent = percent;
      m_context.ReportProgress(static_cast<unsigned char>(percent));
    }
  }

private:
  memkernel::LoadContext& m_context;
  int m_percent = 0;
};

bool HasTriangles(const TopoDS_Shape& face)
{
  TopLoc_Location location;
  const Handle(Poly_Triangulation)& triangles = BRep_Tool::Triangulation(TopoDS::Face(face), location);
  return !triangles.IsNull() && triangles->NbTriangles() > 0;
}

void FillWithTriangles(const TopoDS_Shape& shape, double deflection, memkernel::LoadContext& context)
{
  IMeshTools_Parameters parameters;
  parameters.Deflection = deflection;
  parameters.Angle = AngularDeflection;
  const Handle(LoadProgress) progress = new LoadProgress(context);
  const BRepMesh_IncrementalMesh mesher(shape, parameters, progress->Start());
}

zelk::ShapeDataStatus FindStatus(const TopoDS_Shape& shape, const memkernel::LoadContext& context)
{
  TopTools_IndexedMapOfShape faces;
  TopExp::MapShapes(shape, TopAbs_FACE, faces);
  const auto filled = std::count_if(faces.cbegin(), faces.cend(), HasTriangles);
  if (filled == faces.Extent()) {
    return zelk::ShapeDataLoaded;
  }
  if (context.IsCanceled()) {
    return zelk::ShapeDataNone;
  }
  return filled > 0 ? zelk::ShapeDataPartial : zelk::ShapeDataFailed;
}

}  // namespace

double ChooseDeflection(const TopoDS_Shape& shape)
{
  Bnd_Box box;
  // By the exact geometry: triangles that are there already must not count.
  BRepBndLib::Add(shape, box, false);
  const double size = box.HasFinitePart() ? std::sqrt(box.FinitePart().SquareExtent()) : 0;
  return std::max(DeflectionOfSize * size, Precision::Confusion());
}

zelk::ShapeDataStatus MeshShape(const TopoDS_Shape& shape, double deflection, memkernel::LoadContext& context)
{
  try {
    if (!BRepTools::Triangulation(shape, deflection, true)) {
      FillWithTriangles(shape, deflection, context);
    }
  } catch (const Standard_Failure&) {
    // What some faces did not survive may have left triangles in others.
  }
  return FindStatus(shape, context);
}

}  // namespace stepimport
