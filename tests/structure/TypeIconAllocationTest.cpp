#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "CountedMemory.h"
#include "IconSubject.h"
#include "testsupport/DisplaySwitches.h"

namespace {

using structuretest::CountAllocations;
using structuretest::SceneKind;

class TypeIconAllocation : public testing::Test {
protected:
  /// In scenes of all kinds, with groups open and collapsed.
  int CountOfAll()
  {
    const int before = CountAllocations();
    for (const bool isCollapsing : {false, true}) {
      const testsupport::DisplaySwitches switches(isCollapsing);
      for (const SceneKind kind : {SceneKind::None, SceneKind::NoShapes, SceneKind::ComparisonWithoutShapes,
                                   SceneKind::Shapes, SceneKind::Comparison}) {
        subject.ShowIn(kind);
        sum += subject.GetIcon();
      }
    }
    return CountAllocations() - before;
  }

  structuretest::IconSubject subject;
  structuretest::IconInstance& instance = *subject.instance;
  int sum = 0;
};

TEST_F(TypeIconAllocation, TheCounter_Counts)
{
  const int before = CountAllocations();

  const auto memory = std::make_unique<std::string>(1000, 'x');

  EXPECT_GE(CountAllocations() - before, 2) << memory->size();
}

TEST_F(TypeIconAllocation, AFailedShape_AllocatesNothing)
{
  instance.hasShapeSource = true;
  subject.shapeInstance->status = zelk::ShapeDataFailed;

  EXPECT_EQ(CountOfAll(), 0);
  EXPECT_EQ(sum, 2 * (28 + 28));

  subject.shapeInstance->isCompared = true;
  EXPECT_EQ(CountOfAll(), 0);
}

TEST_F(TypeIconAllocation, AProxy_AllocatesNothing)
{
  instance.isProxyExpanded = true;
  instance.hasShapeSource = true;
  subject.shapeInstance->isRejected = true;

  EXPECT_EQ(CountOfAll(), 0);
  EXPECT_EQ(sum, 2 * (3 * 10 + 2 * 12));
}

TEST_F(TypeIconAllocation, ASiblingWithoutASource_AllocatesNothing)
{
  instance.isSibling = true;
  instance.isBody = true;

  EXPECT_EQ(CountOfAll(), 0);
  EXPECT_EQ(sum, 5 * (48 + 34));
}

}  // namespace
