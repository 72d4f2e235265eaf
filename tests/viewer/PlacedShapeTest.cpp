#include "PlacedShape.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "memkernel/Tree.h"
#include "stepimport/Import.h"

namespace {

using viewer::FindPlacedShapes;
using viewer::PlacedShape;

class PlacedShapes : public testing::Test {
protected:
  void SetUp() override
  {
    read = stepimport::Import(SAMPLES_DIR "/nested-assembly.stp", *tree, {}, nullptr);
    ASSERT_TRUE(read.ok) << read.error;
    shapes = FindPlacedShapes(read.assembly, read.shapes, read.instance);
  }
  [[nodiscard]] std::vector<const PlacedShape*> FindAll(const std::string& name) const
  {
    std::vector<const PlacedShape*> found;
    for (const PlacedShape& placed : shapes) {
      if (placed.instance->GetObjectName().GetView() == name) {
        found.push_back(&placed);
      }
    }
    return found;
  }

  const du::SmartPtr<memkernel::Tree> tree = du::MakeSmart<memkernel::Tree>();
  stepimport::ImportResult read;
  std::vector<PlacedShape> shapes;
};

TEST_F(PlacedShapes, OfTheSample_AreAllInstancesWithAShape)
{
  // The block of three bodies has a shape as well.
  EXPECT_EQ(shapes.size(), 27U);
  for (const PlacedShape& placed : shapes) {
    EXPECT_TRUE(placed.instance->HasShapeSource());
  }
}

TEST_F(PlacedShapes, OfOneProduct_ShareTheirSource)
{
  const auto bolts = FindAll("bolt:1");
  ASSERT_EQ(bolts.size(), 2U);

  EXPECT_EQ(bolts[0]->source, bolts[1]->source);
  EXPECT_EQ(bolts[0]->source->color, "#CC9933");
}

TEST_F(PlacedShapes, InTwoUsesOfOneAssembly_StandAsFarApartAsTheseDo)
{
  const auto first = FindAll("bolt:1");
  const auto third = FindAll("bolt:3");
  ASSERT_EQ(first.size(), 2U);
  ASSERT_EQ(third.size(), 2U);

  const gp_XYZ between = first[1]->place.TranslationPart() - first[0]->place.TranslationPart();
  EXPECT_GT(between.Modulus(), 1);
  EXPECT_TRUE(between.IsEqual(third[1]->place.TranslationPart() - third[0]->place.TranslationPart(), 1e-9));
}

TEST_F(PlacedShapes, OfBodies_StandWhereTheirPartStands)
{
  const auto part = FindAll("valve block:1");
  const auto body = FindAll("core");
  ASSERT_EQ(part.size(), 1U);
  ASSERT_EQ(body.size(), 1U);

  EXPECT_TRUE(part[0]->source->hasBodies);
  EXPECT_EQ(body[0]->source->body, 0U);
  EXPECT_EQ(body[0]->source->color, "#FF0000");
  EXPECT_TRUE(body[0]->place.TranslationPart().IsEqual(part[0]->place.TranslationPart(), 0));
}

TEST_F(PlacedShapes, OfNothing_AreNone)
{
  EXPECT_TRUE(FindPlacedShapes(read.assembly, read.shapes, {}).empty());
  EXPECT_TRUE(FindPlacedShapes({}, read.shapes, read.instance).empty());
}

}  // namespace
