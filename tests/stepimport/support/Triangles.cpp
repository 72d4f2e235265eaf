#include "support/Triangles.h"

#include <BRep_Tool.hxx>
#include <TopExp.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>

namespace stepimporttest {

std::vector<const Poly_Triangulation*> GetTriangulations(const TopoDS_Shape& shape)
{
  TopTools_IndexedMapOfShape faces;
  TopExp::MapShapes(shape, TopAbs_FACE, faces);
  std::vector<const Poly_Triangulation*> all;
  for (int i = 1; i <= faces.Extent(); ++i) {
    TopLoc_Location location;
    all.push_back(BRep_Tool::Triangulation(TopoDS::Face(faces(i)), location).get());
  }
  return all;
}

}  // namespace stepimporttest
