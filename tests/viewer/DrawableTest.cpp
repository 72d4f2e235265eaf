#include "Drawable.h"

#include <gtest/gtest.h>

#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>

#include <string>

#include "stepimport/ReadAssembly.h"

namespace {

using viewer::MakeDrawable;
using viewer::ShapeSource;

class Drawable : public testing::Test {
protected:
  void SetUp() override
  {
    read = stepimport::ReadAssembly(SAMPLES_DIR "/nested-assembly.stp", nullptr);
    ASSERT_TRUE(read.ok) << read.error;
  }
  [[nodiscard]] ShapeSource FindSource(const std::string& name) const
  {
    for (std::size_t i = 0; i < read.assembly.products.size(); ++i) {
      if (read.assembly.products[i].name == name) {
        return {read.shapes, i, std::nullopt, !read.assembly.products[i].bodies.empty(), {}};
      }
    }
    ADD_FAILURE() << "there is no " << name;
    return {};
  }
  [[nodiscard]] const TopoDS_Shape& GetOriginal(const ShapeSource& source) const
  {
    return read.shapes->GetProductShape(source.product);
  }
  static void Mesh(const TopoDS_Shape& shape, double deflection)
  {
    const BRepMesh_IncrementalMesh mesher(shape, deflection);
  }
  static Handle(Poly_Triangulation) GetTriangles(const TopoDS_Shape& shape)
  {
    TopLoc_Location location;
    return BRep_Tool::Triangulation(TopoDS::Face(TopExp_Explorer(shape, TopAbs_FACE).Current()), location);
  }
  static int Count(const TopoDS_Shape& shape, TopAbs_ShapeEnum what)
  {
    TopTools_IndexedMapOfShape parts;
    TopExp::MapShapes(shape, what, parts);
    return parts.Extent();
  }

  stepimport::ReadResult read;
};

TEST_F(Drawable, MakeDrawable_CopiesAllPartsAndSharesTheTriangles)
{
  const ShapeSource source = FindSource("washer");
  Mesh(GetOriginal(source), 0.1);

  const TopoDS_Shape copy = MakeDrawable(source);

  ASSERT_FALSE(copy.IsNull());
  EXPECT_FALSE(copy.IsPartner(GetOriginal(source)));
  for (const TopAbs_ShapeEnum what : {TopAbs_FACE, TopAbs_EDGE, TopAbs_VERTEX}) {
    EXPECT_EQ(Count(copy, what), Count(GetOriginal(source), what));
  }
  ASSERT_FALSE(GetTriangles(copy).IsNull());
  EXPECT_EQ(GetTriangles(copy), GetTriangles(GetOriginal(source)));
  EXPECT_TRUE(GetTriangles(copy)->HasNormals());
}

TEST_F(Drawable, MakeDrawable_KeepsTheEdgesOfTheTriangles)
{
  const ShapeSource source = FindSource("washer");
  Mesh(GetOriginal(source), 0.1);

  const TopoDS_Shape copy = MakeDrawable(source);

  TopExp_Explorer face(copy, TopAbs_FACE);
  TopLoc_Location location;
  const Handle(Poly_Triangulation) triangles = BRep_Tool::Triangulation(TopoDS::Face(face.Current()), location);
  const TopExp_Explorer edge(face.Current(), TopAbs_EDGE);
  EXPECT_FALSE(BRep_Tool::PolygonOnTriangulation(TopoDS::Edge(edge.Current()), triangles, location).IsNull());
}

TEST_F(Drawable, ALaterLoad_DoesNotReachTheCopy)
{
  const ShapeSource source = FindSource("washer");
  Mesh(GetOriginal(source), 0.5);
  const TopoDS_Shape copy = MakeDrawable(source);
  const Handle(Poly_Triangulation) before = GetTriangles(copy);

  Mesh(GetOriginal(source), 0.001);

  ASSERT_NE(GetTriangles(GetOriginal(source)), before);
  EXPECT_EQ(GetTriangles(copy), before);
}

TEST_F(Drawable, MakeDrawable_OfAPartWhoseBodiesAreAllThereIs_IsNothing)
{
  EXPECT_TRUE(MakeDrawable(FindSource("valve block")).IsNull());
}

TEST_F(Drawable, MakeDrawable_OfABody_IsThatBodyAlone)
{
  ShapeSource source = FindSource("valve block");
  source.body = 1;

  const TopoDS_Shape copy = MakeDrawable(source);

  ASSERT_FALSE(copy.IsNull());
  EXPECT_EQ(Count(copy, TopAbs_SOLID), 1);
  EXPECT_EQ(Count(copy, TopAbs_FACE), 6);
  Bnd_Box copyBox;
  Bnd_Box originalBox;
  BRepBndLib::Add(copy, copyBox, false);
  BRepBndLib::Add(read.shapes->GetBodyShape(source.product, 1), originalBox, false);
  EXPECT_TRUE(copyBox.CornerMin().IsEqual(originalBox.CornerMin(), 1e-9));
}

TEST_F(Drawable, MakeDrawable_WithoutAStore_IsNothing)
{
  EXPECT_TRUE(MakeDrawable({}).IsNull());
}

}  // namespace
