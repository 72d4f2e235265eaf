#include "ShapeMesher.h"

#include <gtest/gtest.h>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRep_Builder.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Face.hxx>

#include <algorithm>
#include <climits>
#include <vector>

#include "SharedShapes.h"
#include "support/Triangles.h"

namespace {

using stepimport::ChooseDeflection;
using stepimport::MeshShape;
using stepimport::SharedShapes;

/// Nobody wants the result any more once it has been asked so many times.
class ScriptedContext : public memkernel::LoadContext {
public:
  explicit ScriptedContext(int wantedFor = INT_MAX) : m_wantedFor(wantedFor) {}

  [[nodiscard]] bool IsCanceled() const override { return ++asked > m_wantedFor; }
  void ReportProgress(unsigned char percent) override { percents.push_back(percent); }

  mutable int asked = 0;
  std::vector<int> percents;

private:
  const int m_wantedFor;
};

TopoDS_Shape MakeBox(double size)
{
  return BRepPrimAPI_MakeBox(size, size, size).Solid();
}

/// Nothing can be made of it.
TopoDS_Shape MakeFaceWithoutASurface()
{
  TopoDS_Face face;
  BRep_Builder().MakeFace(face);
  return face;
}

TopoDS_Shape MakeCompound(const std::vector<TopoDS_Shape>& parts)
{
  BRep_Builder builder;
  TopoDS_Compound compound;
  builder.MakeCompound(compound);
  for (const TopoDS_Shape& part : parts) {
    builder.Add(compound, part);
  }
  return compound;
}

int CountTriangles(const TopoDS_Shape& shape)
{
  int count = 0;
  for (const Poly_Triangulation* triangles : stepimporttest::GetTriangulations(shape)) {
    count += triangles == nullptr ? 0 : triangles->NbTriangles();
  }
  return count;
}

TEST(ShapeMesher, MeshShape_OfABox_GivesEachFaceTwoTriangles)
{
  const TopoDS_Shape box = MakeBox(10);
  ScriptedContext context;

  EXPECT_EQ(MeshShape(box, ChooseDeflection(box), context), zelk::ShapeDataLoaded);

  EXPECT_EQ(CountTriangles(box), 12);
}

TEST(ShapeMesher, MeshShape_TellsAProgressThatOnlyGrows)
{
  const TopoDS_Shape boxes = MakeCompound({MakeBox(1), MakeBox(2), MakeBox(3), MakeBox(4)});
  ScriptedContext context;

  EXPECT_EQ(MeshShape(boxes, ChooseDeflection(boxes), context), zelk::ShapeDataLoaded);

  EXPECT_GT(context.percents.size(), 2U);
  EXPECT_TRUE(std::is_sorted(context.percents.begin(), context.percents.end()));
  EXPECT_LE(context.percents.back(), 100);
}

TEST(ShapeMesher, MeshShape_OfAShapeOfWhichOneFaceIsGood_IsPartial)
{
  const TopoDS_Shape shape = MakeCompound({MakeBox(10), MakeFaceWithoutASurface()});
  ScriptedContext context;

  EXPECT_EQ(MeshShape(shape, ChooseDeflection(shape), context), zelk::ShapeDataPartial);

  EXPECT_EQ(CountTriangles(shape), 12);
}

TEST(ShapeMesher, MeshShape_OfAShapeWithoutAnyGoodFace_HasFailed)
{
  const TopoDS_Shape shape = MakeFaceWithoutASurface();
  ScriptedContext context;

  EXPECT_EQ(MeshShape(shape, ChooseDeflection(shape), context), zelk::ShapeDataFailed);
}

TEST(ShapeMesher, MeshShape_OfAShapeWithoutFaces_IsLoaded)
{
  const TopoDS_Shape edge = BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(1, 0, 0)).Shape();
  ScriptedContext context;

  EXPECT_EQ(MeshShape(edge, ChooseDeflection(edge), context), zelk::ShapeDataLoaded);
}

TEST(ShapeMesher, MeshShape_StoppedAnywhere_HasNothingToTellAndCanBeRepeated)
{
  ScriptedContext counting;
  EXPECT_EQ(MeshShape(MakeBox(10), 0.1, counting), zelk::ShapeDataLoaded);
  ASSERT_GT(counting.asked, 10);

  for (const int wantedFor : {0, 1, counting.asked / 4, counting.asked / 2}) {
    const TopoDS_Shape box = MakeBox(10);
    ScriptedContext stopped(wantedFor);
    ScriptedContext again;

    EXPECT_EQ(MeshShape(box, 0.1, stopped), zelk::ShapeDataNone) << wantedFor;
    EXPECT_LT(stopped.asked, counting.asked + 10);
    EXPECT_EQ(MeshShape(box, 0.1, again), zelk::ShapeDataLoaded) << wantedFor;
    EXPECT_EQ(CountTriangles(box), 12);
  }
}

TEST(ShapeMesher, MeshShape_OfWhatHasTrianglesAlready_MakesNone)
{
  const TopoDS_Shape box = MakeBox(10);
  ScriptedContext first;
  ScriptedContext second;
  EXPECT_EQ(MeshShape(box, 0.1, first), zelk::ShapeDataLoaded);

  EXPECT_EQ(MeshShape(box, 0.1, second), zelk::ShapeDataLoaded);

  EXPECT_TRUE(second.percents.empty());
}

TEST(ShapeMesher, ChooseDeflection_GrowsWithTheShape_SoThatAllSizesLookAlike)
{
  const TopoDS_Shape small = BRepPrimAPI_MakeSphere(0.01).Solid();
  const TopoDS_Shape large = BRepPrimAPI_MakeSphere(1000).Solid();
  ScriptedContext context;

  EXPECT_NEAR(ChooseDeflection(large) / ChooseDeflection(small), 1e5, 1e3);
  EXPECT_EQ(MeshShape(small, ChooseDeflection(small), context), zelk::ShapeDataLoaded);
  EXPECT_EQ(MeshShape(large, ChooseDeflection(large), context), zelk::ShapeDataLoaded);

  EXPECT_NEAR(CountTriangles(small), CountTriangles(large), 10);
  EXPECT_GT(CountTriangles(large), 100);
}

TEST(ShapeMesher, ChooseDeflection_OfAShapeWithoutASize_IsStillAboveZero)
{
  EXPECT_GT(ChooseDeflection(MakeFaceWithoutASurface()), 0);
  EXPECT_GT(ChooseDeflection(TopoDS_Shape()), 0);
}

TEST(SharedShapes, MakeGroups_PutsWhatSharesAFaceIntoOneGroup)
{
  const TopoDS_Shape box = MakeBox(1);
  const TopoDS_Shape other = MakeBox(1);
  const TopoDS_Shape third = MakeBox(1);
  SharedShapes shared;
  shared.Add(box);
  shared.Add(other);
  shared.Add(third);
  shared.Add({});
  shared.Add({});

  shared.Add(MakeCompound({other, box}));

  EXPECT_EQ(shared.MakeGroups(), (std::vector<std::size_t>{0, 0, 1, 2, 3, 0}));
}

TEST(SharedShapes, MakeGroups_KnowsASharedPartInAnotherPlace)
{
  TopTools_IndexedMapOfShape faces;
  const TopoDS_Shape box = MakeBox(1);
  TopExp::MapShapes(box, TopAbs_FACE, faces);
  gp_Trsf move;
  move.SetTranslation(gp_Vec(5, 0, 0));
  SharedShapes shared;

  shared.Add(box);
  shared.Add(faces(1).Reversed().Moved(move));
  shared.Add(MakeBox(1));

  EXPECT_EQ(shared.MakeGroups(), (std::vector<std::size_t>{0, 0, 1}));
}

TEST(SharedShapes, MakeGroups_OfNothing_IsEmpty)
{
  EXPECT_TRUE(SharedShapes().MakeGroups().empty());
}

}  // namespace
