#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "stepimport/ShapeStore.h"
#include "support/LoadStage.h"
#include "support/StepWriter.h"
#include "support/TempFolder.h"
#include "support/Triangles.h"

namespace {

using memkernel::Loader;
using stepimporttest::GetTriangulations;
using stepimporttest::LoadEvent;
using stepimporttest::LoadStage;
using stepimporttest::StepWriter;
using stepimporttest::TempFolder;
using testing::Each;
using testing::SizeIs;

const std::filesystem::path Sample = std::filesystem::path(SAMPLES_DIR) / "nested-assembly.stp";

class ShapeLoad : public LoadStage {
protected:
  void ReadText(const StepWriter& writer) { Read(m_folder.Write("file.stp", writer.GetText())); }
  [[nodiscard]] stepimport::ProductIndex FindProduct(const std::string& name) const
  {
    const auto& products = read.assembly.products;
    const auto found =
        std::find_if(products.begin(), products.end(), [&](const auto& product) { return product.name == name; });
    EXPECT_NE(found, products.end()) << name;
    return static_cast<stepimport::ProductIndex>(found - products.begin());
  }

  TempFolder m_folder;
};

TEST_F(ShapeLoad, OfAllShapesOfAnAssembly_GivesAllOfThemTriangles)
{
  Read(Sample);
  const std::vector<Shape> shapes = GetShapes();
  ASSERT_THAT(shapes, SizeIs(testing::Gt(10U)));

  std::vector<du::SmartPtr<LoadEvent>> events;
  for (const Shape& shape : shapes) {
    events.push_back(Ask(shape));
  }
  for (const auto& event : events) {
    RunUntilEnd(event);
    EXPECT_EQ(event->end, zelk::BaseAsyncEvent::StatusCompleted);
  }

  for (const Shape& shape : shapes) {
    EXPECT_EQ(shape->GetDataStatus(), zelk::ShapeDataLoaded);
  }
  for (stepimport::ProductIndex i = 0; i < read.assembly.products.size(); ++i) {
    const auto hold = read.shapes->HoldShapes(i);
    EXPECT_THAT(GetTriangulations(read.shapes->GetProductShape(i)), Each(testing::NotNull()));
  }
}

TEST_F(ShapeLoad, OfOneShape_LeavesTheOthersWithoutTriangles)
{
  Read(Sample);

  Load(GetShape("frame:1"));

  EXPECT_EQ(GetShape("frame:1")->GetDataStatus(), zelk::ShapeDataLoaded);
  EXPECT_EQ(GetShape("valve block:1")->GetDataStatus(), zelk::ShapeDataNone);
  EXPECT_THAT(GetTriangulations(read.shapes->GetProductShape(FindProduct("valve block"))), Each(testing::IsNull()));
}

TEST_F(ShapeLoad, OfAWireframe_IsComplete)
{
  StepWriter writer;
  writer.AddEdge(writer.AddProduct("bolt"));
  ReadText(writer);

  Load(GetShape("bolt"));

  EXPECT_EQ(GetShape("bolt")->GetDataStatus(), zelk::ShapeDataLoaded);
}

TEST_F(ShapeLoad, OfADamagedSolid_FailsAndLeavesTheRestLoaded)
{
  StepWriter writer;
  const auto pump = writer.AddProduct("pump");
  const auto torn = writer.AddProduct("torn");
  const auto plate = writer.AddProduct("plate");
  writer.AddDamagedSolid(torn);
  writer.AddSurface(plate, writer.MakeTriangles({"0.,1."}));
  writer.AddOccurrence(pump, torn, "torn:1");
  writer.AddOccurrence(pump, plate, "plate:1");
  ReadText(writer);

  const auto tornEvent = Ask(GetShape("torn:1"));
  Load(GetShape("plate:1"));
  RunUntilEnd(tornEvent);

  EXPECT_EQ(tornEvent->end, Loader::StatusFailed);
  EXPECT_EQ(GetShape("torn:1")->GetDataStatus(), zelk::ShapeDataFailed);
  EXPECT_EQ(GetShape("plate:1")->GetDataStatus(), zelk::ShapeDataLoaded);
}

TEST_F(ShapeLoad, OfAShapeOfWhichOneFaceIsDamaged_IsPartial)
{
  StepWriter writer;
  writer.AddSurface(writer.AddProduct("plate"), writer.MakeTriangles({"0.,1.", "2.,0."}));
  ReadText(writer);

  const auto event = Ask(GetShape("plate"));
  RunUntilEnd(event);

  EXPECT_EQ(event->end, zelk::BaseAsyncEvent::StatusCompleted);
  EXPECT_EQ(GetShape("plate")->GetDataStatus(), zelk::ShapeDataPartial);
}

TEST_F(ShapeLoad, OfAShapeOfWhichNoFaceIsGood_Fails)
{
  StepWriter writer;
  writer.AddSurface(writer.AddProduct("plate"), writer.MakeTriangles({"2.,0."}));
  ReadText(writer);

  const auto event = Ask(GetShape("plate"));
  RunUntilEnd(event);

  EXPECT_EQ(event->end, Loader::StatusFailed);
  EXPECT_EQ(GetShape("plate")->GetDataStatus(), zelk::ShapeDataFailed);
}

TEST_F(ShapeLoad, OfAProductAndOfItsBodies_MakesTheSameTrianglesInAnyOrder)
{
  Read(Sample);
  const TopoDS_Shape& block = read.shapes->GetProductShape(FindProduct("valve block"));

  Load(GetShape("core"));
  const auto ofTheBody = GetTriangulations(block);
  Load(GetShape("valve block:1"));
  const auto ofTheProduct = GetTriangulations(block);
  Load(GetShape("Body 3"));

  EXPECT_EQ(std::count(ofTheBody.begin(), ofTheBody.end(), nullptr), 12);
  EXPECT_THAT(ofTheProduct, Each(testing::NotNull()));
  for (std::size_t i = 0; i < ofTheBody.size(); ++i) {
    EXPECT_TRUE(ofTheBody[i] == nullptr || ofTheBody[i] == ofTheProduct[i]) << "face " << i << " was made anew";
  }
  EXPECT_EQ(GetTriangulations(block), ofTheProduct);
  EXPECT_EQ(GetShape("Body 3")->GetDataStatus(), zelk::ShapeDataLoaded);
}

TEST_F(ShapeLoad, OfShapesThatAreHeld_WaitsUntilTheyAreLetGo)
{
  Read(Sample);
  auto hold = read.shapes->HoldShapes(FindProduct("valve block"));

  const auto event = Ask(GetShape("core"));
  Load(GetShape("frame:1"));

  EXPECT_EQ(GetShape("frame:1")->GetDataStatus(), zelk::ShapeDataLoaded);
  EXPECT_EQ(event->end, LoadEvent::UnderWay);
  hold.unlock();
  RunUntilEnd(event);
  EXPECT_EQ(GetShape("core")->GetDataStatus(), zelk::ShapeDataLoaded);
}

TEST_F(ShapeLoad, CancelledWhileItWaits_EndsAndCanBeRepeated)
{
  Read(Sample);
  auto hold = read.shapes->HoldShapes(FindProduct("frame"));
  const auto event = Ask(GetShape("frame:1"));

  event->Cancel();
  RunUntilEnd(event);

  EXPECT_EQ(event->end, zelk::BaseAsyncEvent::StatusCanceled);
  EXPECT_EQ(GetShape("frame:1")->GetDataStatus(), zelk::ShapeDataNone);
  hold.unlock();
  Load(GetShape("frame:1"));
  EXPECT_EQ(GetShape("frame:1")->GetDataStatus(), zelk::ShapeDataLoaded);
}

TEST_F(ShapeLoad, AtTheEndOfTheWorld_IsCancelledThoughItsShapesAreHeld)
{
  Read(Sample);
  const auto hold = read.shapes->HoldShapes(FindProduct("frame"));
  const auto event = Ask(GetShape("frame:1"));

  world->Shutdown();

  EXPECT_EQ(event->end, zelk::BaseAsyncEvent::StatusCanceled);
  EXPECT_EQ(GetShape("frame:1")->GetDataStatus(), zelk::ShapeDataNone);
}

TEST_F(ShapeLoad, OfAProductThatSharesASurface_WaitsUntilTheOtherIsLetGo)
{
  StepWriter writer;
  const auto pump = writer.AddProduct("pump");
  const auto left = writer.AddProduct("left");
  const auto right = writer.AddProduct("right");
  const int surface = writer.MakeTriangles({"0.,1."});
  writer.AddSurface(left, surface);
  writer.AddSurface(right, surface);
  writer.AddOccurrence(pump, left, "left:1");
  writer.AddOccurrence(pump, right, "right:1");
  const auto apart = writer.AddProduct("apart");
  writer.AddSurface(apart, writer.MakeTriangles({"0.,1."}));
  writer.AddOccurrence(pump, apart, "apart:1");
  ReadText(writer);
  auto hold = read.shapes->HoldShapes(FindProduct("right"));

  const auto event = Ask(GetShape("left:1"));
  Load(GetShape("apart:1"));

  EXPECT_EQ(event->end, LoadEvent::UnderWay);
  hold.unlock();
  RunUntilEnd(event);
  EXPECT_THAT(GetTriangulations(read.shapes->GetProductShape(FindProduct("right"))), Each(testing::NotNull()));
}

TEST_F(ShapeLoad, KeepsWhatItReadsFrom_AsLongAsTheShapeLives)
{
  Read(Sample);
  const std::weak_ptr<const stepimport::ShapeStore> store = read.shapes;
  Shape frame = GetShape("frame:1");
  ASSERT_TRUE(world->GetMemTree().Remove(read.instance));
  read = {};
  EXPECT_FALSE(store.expired());

  Load(frame);

  EXPECT_EQ(frame->GetDataStatus(), zelk::ShapeDataLoaded);
  frame.Reset();
  world->GetLoop().RunUntil([&] { return store.expired() || world->GetLoop().IsClosed(); });
  EXPECT_TRUE(store.expired());
}

TEST_F(ShapeLoad, OfATreeThatWasFilledWithoutItsGeometry_Fails)
{
  Read(Sample);
  const auto tree = du::MakeSmart<memkernel::Tree>();
  const auto top = stepimport::FillTree(read.assembly, {}, *tree, {});
  ASSERT_TRUE(top);
  du::SmartPtr<zelk::BaseInstance> frame;
  top->GetBaseFirstChild(frame);
  const Shape shape = du::DynamicCast<memkernel::Instance>(frame)->GetProduct()->GetShape();
  ASSERT_EQ(shape->GetDataStatus(), zelk::ShapeDataNone);

  Load(shape);

  EXPECT_EQ(shape->GetDataStatus(), zelk::ShapeDataFailed);
}

}  // namespace
