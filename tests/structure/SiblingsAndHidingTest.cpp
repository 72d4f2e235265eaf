// Siblings of a match come along unjudged, so what is hidden is sifted out in a pass of its own before.

#include <gmock/gmock.h>

#include "StructureStage.h"

namespace {

using structuretest::StructureStage;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class SiblingsAndHiding : public testing::Test {
protected:
  SiblingsAndHiding()
  {
    stage.SetFlag("solid", memkernel::InstanceBody);
    stage.GetFilter().SetShowSiblings(true);
    stage.GetFilter().hideBodies = true;
  }

  StructureStage stage{"root[plate[nut1 solid bolt frame[nut2 pin]]]"};
};

TEST_F(SiblingsAndHiding, WithoutAMatch_IsTheRowOfTheRootAlone)
{
  stage.Show("screw");

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root"));
  EXPECT_TRUE(stage.state->IsMatchedFilterEmpty());
  EXPECT_FALSE(stage.state->IsFilteredTreeContainItem(stage.kernel["bolt"]));
  EXPECT_EQ(stage.GetResult()->GetNumMatchedItems(), 0U);
}

TEST_F(SiblingsAndHiding, SiblingsOfAMatch_ComeAlongWithoutWhatIsHidden)
{
  stage.Show("nut1");

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "plate", "nut1", "bolt", "frame"));
  EXPECT_TRUE(stage.state->IsFilteredTreeContainItem(stage.kernel["bolt"]));
  EXPECT_FALSE(stage.state->IsFilteredTreeContainItem(stage.kernel["pin"]));
}

// What is right below the root is spared, which brings it along like a match.
TEST_F(SiblingsAndHiding, AsList_IsTheMatchesAndTheirSiblingsWithoutWhatIsHidden)
{
  stage.ShowAsList("nut1");

  EXPECT_THAT(stage.TakeRows(),
              UnorderedElementsAre("null/root", "root/plate", "root/nut1", "root/bolt", "root/frame"));
}

TEST_F(SiblingsAndHiding, MatchesAreCountedOnce)
{
  stage.Show("nut");

  EXPECT_EQ(stage.GetResult()->GetNumMatchedItems(), 2U);
}

TEST_F(SiblingsAndHiding, WhereNothingElseIsLookedFor_WhatIsNotHiddenIsTheResult)
{
  stage.GetFilter().collapseInstances = true;

  stage.Show("");

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "plate", "nut1", "bolt", "frame", "nut2", "pin"));
  EXPECT_FALSE(stage.state->IsMatchedFilterEmpty());
  EXPECT_TRUE(stage.state->IsFilteredTreeContainItem(stage.kernel["pin"]));
  EXPECT_FALSE(stage.state->IsFilteredTreeContainItem(stage.kernel["solid"]));
}

}  // namespace
