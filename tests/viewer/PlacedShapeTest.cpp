#include "PlacedShape.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "memkernel/Tree.h"
#include "stepimport/Import.h"

namespace {

using viewer::PlacedShape;
using viewer::PlacedShapeFinder;

class PlacedShapes : public testing::Test {
protected:
  void SetUp() override
  {
    read = stepimport::Import(SAMPLES_DIR "/nested-assembly.stp", *tree, {}, nullptr);
    ASSERT_TRUE(read.ok) << read.error;
    shapes = PlacedShapeFinder(read.assembly, read.shapes, read.instance).FindSome(s_all);
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

  static constexpr std::size_t s_all = 1000;

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

TEST_F(PlacedShapes, FoundInPortions_AreTheSameInTheSameOrder)
{
  PlacedShapeFinder finder(read.assembly, read.shapes, read.instance);
  std::vector<PlacedShape> found;
  int portions = 0;
  for (; !finder.IsDone(); ++portions) {
    const std::vector<PlacedShape> some = finder.FindSome(1);
    found.insert(found.end(), some.begin(), some.end());
  }

  ASSERT_EQ(found.size(), shapes.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    EXPECT_EQ(found[i].instance, shapes[i].instance);
    EXPECT_TRUE(found[i].place.TranslationPart().IsEqual(shapes[i].place.TranslationPart(), 0));
  }
  EXPECT_GE(portions, 25);
  EXPECT_EQ(finder.GetVisitedCount(), stepimport::CountInstances(read.assembly));
}

TEST_F(PlacedShapes, OfNothing_AreNone)
{
  PlacedShapeFinder withoutTop(read.assembly, read.shapes, {});
  EXPECT_TRUE(withoutTop.IsDone());
  EXPECT_TRUE(withoutTop.FindSome(s_all).empty());

  const stepimport::Assembly nothing;
  PlacedShapeFinder withoutProducts(nothing, read.shapes, read.instance);
  EXPECT_TRUE(withoutProducts.IsDone());
  EXPECT_TRUE(withoutProducts.FindSome(s_all).empty());
}

}  // namespace
