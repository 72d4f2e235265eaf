#include <gtest/gtest.h>

#include <BRepPrimAPI_MakeBox.hxx>
#include <IFSelect_ReturnStatus.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopLoc_Location.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include <cstddef>
#include <string>

#include "stepimport/ReadAssembly.h"
#include "support/StepWriter.h"
#include "support/TempFolder.h"

namespace {

using stepimport::NoPlacement;
using stepimport::Placement;
using stepimport::Product;
using stepimport::ReadAssembly;
using stepimport::ReadResult;
using stepimporttest::StepWriter;
using stepimporttest::TempFolder;

const Product* FindProduct(const ReadResult& result, const std::string& name)
{
  for (const Product& product : result.assembly.products) {
    if (product.name == name) {
      return &product;
    }
  }
  return nullptr;
}

gp_Trsf MakeTurn(const gp_Dir& axis, double angle, const gp_Vec& offset)
{
  gp_Trsf turn;
  turn.SetRotation(gp_Ax1(gp::Origin(), axis), angle);
  turn.SetTranslationPart(offset);
  return turn;
}

void ExpectPlacement(const Placement& placement, const gp_Trsf& expected)
{
  for (int row = 1; row <= 3; ++row) {
    for (int column = 1; column <= 4; ++column) {
      EXPECT_NEAR(placement.at(static_cast<std::size_t>(4 * (row - 1) + column - 1)), expected.Value(row, column), 1e-6)
          << "row " << row << ", column " << column;
    }
  }
}

/// A stand holds an arm twice, and the arm holds a finger.
class Stand {
public:
  const gp_Trsf left = MakeTurn(gp::DX(), 0.5, {10, 20, 30});
  const gp_Trsf right = MakeTurn(gp::DZ(), -2, {-1, 0, 5});
  const gp_Trsf finger = MakeTurn(gp_Dir(1, 1, 1), 1.25, {0, 7, 0});

  void Write(const std::filesystem::path& file) const
  {
    const Handle(TDocStd_Document) document = new TDocStd_Document("BinXCAF");
    const Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    const TDF_Label fingerPart = shapes->AddShape(BRepPrimAPI_MakeBox(1, 2, 3).Shape(), false);
    const TDF_Label arm = shapes->NewShape();
    const TDF_Label stand = shapes->NewShape();
    TDataStd_Name::Set(fingerPart, "finger");
    TDataStd_Name::Set(arm, "arm");
    TDataStd_Name::Set(stand, "stand");
    shapes->AddComponent(arm, fingerPart, TopLoc_Location(finger));
    shapes->AddComponent(stand, arm, TopLoc_Location(left));
    shapes->AddComponent(stand, arm, TopLoc_Location(right));
    shapes->UpdateAssemblies();
    STEPCAFControl_Writer writer;
    ASSERT_TRUE(writer.Transfer(document));
    ASSERT_EQ(writer.Write(file.c_str()), IFSelect_RetDone);
  }
};

TEST(Placement, ReadAssembly_OfTurnedOccurrences_TellsWhereEachStandsInItsParent)
{
  const TempFolder folder;
  const Stand stand;
  stand.Write(folder.GetPath() / "stand.stp");

  const ReadResult result = ReadAssembly(folder.GetPath() / "stand.stp", nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  const Product* const top = FindProduct(result, "stand");
  const Product* const arm = FindProduct(result, "arm");
  ASSERT_TRUE(top != nullptr && arm != nullptr);
  ASSERT_EQ(top->occurrences.size(), 2U);
  ASSERT_EQ(arm->occurrences.size(), 1U);
  ExpectPlacement(top->occurrences[0].placement, stand.left);
  ExpectPlacement(top->occurrences[1].placement, stand.right);
  ExpectPlacement(arm->occurrences[0].placement, stand.finger);
}

TEST(Placement, ReadAssembly_OfOccurrencesWithoutAPlacement_GivesNone)
{
  StepWriter writer;
  const int wheel = writer.AddProduct("wheel");
  writer.AddOccurrence(writer.AddProduct("cart"), wheel, "front");
  const TempFolder folder;

  const ReadResult result = ReadAssembly(folder.Write("cart.stp", writer.GetText()), nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  const Product* const cart = FindProduct(result, "cart");
  ASSERT_NE(cart, nullptr);
  ASSERT_EQ(cart->occurrences.size(), 1U);
  EXPECT_EQ(cart->occurrences[0].placement, NoPlacement);
}

TEST(Placement, ReadAssembly_OfTheNestedSample_StacksTheBoltsOfASet)
{
  const ReadResult result = ReadAssembly(SAMPLES_DIR "/nested-assembly.stp", nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  const Product* const set = FindProduct(result, "bolt set");
  ASSERT_NE(set, nullptr);
  ASSERT_EQ(set->occurrences.size(), 4U);
  EXPECT_NE(set->occurrences[0].placement, set->occurrences[2].placement);
  EXPECT_NE(set->occurrences[2].placement, set->occurrences[3].placement);
}

}  // namespace
