#include <gmock/gmock.h>

#include "SceneEventsFixture.h"
#include "testsupport/DisplaySwitches.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::PlainShapeInstance;

class ShapeInstanceCreate : public sceneinfotest::SceneEventsFixture {};

TEST_F(ShapeInstanceCreate, WithoutATreeInstance_ChangesNothing)
{
  for (unsigned short status = zelk::ShapeDataNone; status <= zelk::ShapeDataLoaded; ++status) {
    const auto shapeInstance = du::MakeSmart<PlainShapeInstance>(nullptr);
    shapeInstance->status = status;

    EXPECT_FALSE(Create(shapeInstance));
  }

  EXPECT_THAT(log.calls, IsEmpty());
  EXPECT_THAT(loader.Requests(), IsEmpty());
}

TEST_F(ShapeInstanceCreate, LoadedAndVisible_IsRecordedAsLoadedAndVisible)
{
  EXPECT_FALSE(Create(Make("a", zelk::ShapeDataLoaded)));

  EXPECT_THAT(log.calls, ElementsAre("SetLoaded(a, true)", "SetVisible(a, 1, propagate)"));
  EXPECT_EQ(log.GetCompVisibleState(panel.kernel["root"]), guitree::VisibleStateHiddenMixed);
  EXPECT_THAT(loader.Requests(), IsEmpty());
}

TEST_F(ShapeInstanceCreate, LoadedAndNotVisible_IsRecordedAsLoadedAndHiddenAndNotLoadedAgain)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataLoaded);
  shapeInstance->isVisible = false;

  EXPECT_FALSE(Create(shapeInstance));

  EXPECT_THAT(log.calls, ElementsAre("SetLoaded(a, true)", "SetVisible(a, 0, propagate)"));
  EXPECT_THAT(loader.Requests(), IsEmpty());
}

TEST_F(ShapeInstanceCreate, LoadedThumbnailThatIsVisible_IsRecordedAsAVisibleThumbnail)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataLoaded);
  shapeInstance->isThumbnail = true;

  EXPECT_FALSE(Create(shapeInstance));

  EXPECT_THAT(log.calls, ElementsAre("SetLoaded(a, true)", "SetVisible(a, 3, propagate)"));
}

TEST_F(ShapeInstanceCreate, LoadedThumbnailThatIsNotVisible_IsRecordedAsPlainHidden)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataLoaded);
  shapeInstance->isThumbnail = true;
  shapeInstance->isVisible = false;

  EXPECT_FALSE(Create(shapeInstance));

  EXPECT_THAT(log.calls, ElementsAre("SetLoaded(a, true)", "SetVisible(a, 0, propagate)"));
}

TEST_F(ShapeInstanceCreate, WithoutData_AsksTheLoaderForTheShapeAndLeavesTheLogAlone)
{
  const auto anchor = du::MakeSmart<zelk::Anchor>();
  panel.GetTree().SetAnchor(panel.kernel["a"], anchor);
  const auto shapeInstance = Make("a", zelk::ShapeDataNone);

  EXPECT_FALSE(Create(shapeInstance));

  ASSERT_EQ(loader.Requests().size(), 1U);
  EXPECT_EQ(loader.Requests()[0].shape, shapeInstance->shape);
  EXPECT_EQ(loader.Requests()[0].what, 1U);
  EXPECT_EQ(loader.Requests()[0].anchor, anchor.Get());
  EXPECT_EQ(loader.Requests()[0].event->GetObjectClass(), "guitree::WTShapeLoaderEvent");
  EXPECT_THAT(log.calls, IsEmpty());
}

TEST_F(ShapeInstanceCreate, TheEventOfALoadIsManagedBeforeTheLoaderIsAsked)
{
  EXPECT_FALSE(Create(Make("a", zelk::ShapeDataNone)));

  ASSERT_EQ(loader.Requests().size(), 1U);
  EXPECT_EQ(loader.Requests()[0].queue, loop);
}

TEST_F(ShapeInstanceCreate, OfAnInstanceWithoutAnAnchor_AsksTheLoaderWithoutOne)
{
  EXPECT_FALSE(Create(Make("a", zelk::ShapeDataNone)));

  ASSERT_EQ(loader.Requests().size(), 1U);
  EXPECT_EQ(loader.Requests()[0].anchor, nullptr);
}

TEST_F(ShapeInstanceCreate, WithPartialData_AsksForALoadAlthoughItCountsAsLoadedOnceALoadHasEnded)
{
  EXPECT_FALSE(Create(Make("a", zelk::ShapeDataPartial)));

  EXPECT_EQ(loader.Requests().size(), 1U);
  EXPECT_THAT(log.calls, IsEmpty());
}

TEST_F(ShapeInstanceCreate, WhateverTheLoaderAnswers_AsksForNoRepaint)
{
  loader->answer = false;

  EXPECT_FALSE(Create(Make("a", zelk::ShapeDataNone)));
}

TEST_F(ShapeInstanceCreate, WithoutDataAndWithoutAShape_ChangesNothing)
{
  for (const unsigned short status : {zelk::ShapeDataNone, zelk::ShapeDataPartial}) {
    const auto shapeInstance = Make("a", status);
    shapeInstance->shape.Reset();

    EXPECT_FALSE(Create(shapeInstance));
  }

  EXPECT_THAT(loader.Requests(), IsEmpty());
  EXPECT_THAT(log.calls, IsEmpty());
}

TEST_F(ShapeInstanceCreate, TwiceForOneShapeInstance_KeepsTheFirstLoadAsTheOneThatARemovalCancels)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataNone);
  EXPECT_FALSE(Create(shapeInstance));
  EXPECT_FALSE(Create(shapeInstance));
  ASSERT_EQ(loader.Requests().size(), 2U);

  panel.state->UpdateSceneInfoLog_OnShapeInstanceRemove(&log, shapeInstance);

  EXPECT_TRUE(loader.Requests()[0].event->IsCanceled());
  EXPECT_FALSE(loader.Requests()[1].event->IsCanceled());
}

TEST_F(ShapeInstanceCreate, OfAThumbnailWhileThumbnailsAreFlat_CompletesAtOnceWithoutALoadAndAsksForARepaint)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataNone);
  shapeInstance->isThumbnail = true;
  ShowThumbnailsIn3d(false);

  EXPECT_TRUE(Create(shapeInstance));

  EXPECT_THAT(loader.Requests(), IsEmpty());
  EXPECT_THAT(log.calls, IsEmpty());
  EXPECT_EQ(loop->RunDue(), 1U);
}

TEST_F(ShapeInstanceCreate, OfAThumbnail_TakesThumbnailsForFlatWhereNoSettingSaysOtherwise)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataPartial);
  shapeInstance->isThumbnail = true;

  EXPECT_TRUE(Create(shapeInstance));
  panel.world->preferences.Reset();
  EXPECT_TRUE(Create(shapeInstance));
  zelk::World::Install(nullptr);
  EXPECT_TRUE(Create(shapeInstance));

  EXPECT_THAT(loader.Requests(), IsEmpty());
}

TEST_F(ShapeInstanceCreate, OfAThumbnailWhileThumbnailsAreLoaded_GoesToTheLoader)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataNone);
  shapeInstance->isThumbnail = true;
  ShowThumbnailsIn3d(true);

  EXPECT_FALSE(Create(shapeInstance));

  EXPECT_EQ(loader.Requests().size(), 1U);
}

TEST_F(ShapeInstanceCreate, OfAFullShape_GoesToTheLoaderWhateverTheSettingForThumbnails)
{
  for (const bool isShown : {false, true}) {
    ShowThumbnailsIn3d(isShown);

    EXPECT_FALSE(Create(Make("a", zelk::ShapeDataNone)));
  }

  EXPECT_EQ(loader.Requests().size(), 2U);
}

TEST_F(ShapeInstanceCreate, ReadsTheSettingForThumbnailsAtEachCreation)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataNone);
  shapeInstance->isThumbnail = true;
  ShowThumbnailsIn3d(true);
  EXPECT_FALSE(Create(shapeInstance));

  ShowThumbnailsIn3d(false);

  EXPECT_TRUE(Create(shapeInstance));
}

TEST_F(ShapeInstanceCreate, WithoutALoader_EndsTheLoadByItself)
{
  zelloader::Loader::Install(nullptr);
  panel.state->AddStopWatch("wave");

  EXPECT_FALSE(Create(Make("a", zelk::ShapeDataNone)));
  loop->RunDue();

  EXPECT_FALSE(panel.state->GetStopWatch().IsRunning());
}

TEST_F(ShapeInstanceCreate, OfAShapeThatHasFailed_HasTheIconWorkedOutAgainAndAsksForARepaint)
{
  EXPECT_TRUE(Create(Make("a", zelk::ShapeDataFailed)));

  EXPECT_THAT(log.calls, ElementsAre("MarkTypeIconChanged(a)"));
  EXPECT_THAT(loader.Requests(), IsEmpty());
}

TEST_F(ShapeInstanceCreate, OfAFailedShapeInstanceWithoutAShape_HasTheIconWorkedOutAgain)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataFailed);
  shapeInstance->shape.Reset();

  EXPECT_TRUE(Create(shapeInstance));

  EXPECT_THAT(log.calls, ElementsAre("MarkTypeIconChanged(a)"));
}

TEST_F(ShapeInstanceCreate, OfAFailedShapeOfTheNativeFormatThatHasNotFailedThere_IsNoFailure)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataFailed);
  shapeInstance->shape->isFromTrask = true;

  EXPECT_FALSE(Create(shapeInstance));

  EXPECT_THAT(log.calls, IsEmpty());
}

TEST_F(ShapeInstanceCreate, OfAShapeThatHasFailedInTheNativeFormat_HasTheIconWorkedOutAgain)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataFailed);
  shapeInstance->shape->isFromTrask = true;
  shapeInstance->shape->isFailedFromTrask = true;

  EXPECT_TRUE(Create(shapeInstance));

  EXPECT_THAT(log.calls, ElementsAre("MarkTypeIconChanged(a)"));
}

TEST_F(ShapeInstanceCreate, WithAnyOtherStatus_ChangesNothing)
{
  const unsigned short others[] = {4, 6, 255, 0xffff};
  for (const unsigned short status : others) {
    EXPECT_FALSE(Create(Make("a", status)));
  }

  EXPECT_THAT(log.calls, IsEmpty());
  EXPECT_THAT(loader.Requests(), IsEmpty());
}

TEST_F(ShapeInstanceCreate, OfABodyAndOfALaterSibling_IsAccountedAsAnyOther)
{
  const testsupport::DisplaySwitches switches(true);
  guitree::WorldTreeState::SetIsShowingBodies(false);
  panel.GetTree().SetFlags(panel.kernel["b"], memkernel::InstanceBody | memkernel::InstanceBodyType, true);
  const auto sibling = panel.GetTree().AddChild(panel.kernel["root"], panel.kernel["a"]->GetProduct(), "a2");
  const auto ofSibling = du::MakeSmart<PlainShapeInstance>(sibling);
  ofSibling->status = zelk::ShapeDataLoaded;

  EXPECT_FALSE(Create(Make("b", zelk::ShapeDataLoaded)));
  EXPECT_FALSE(Create(ofSibling));

  EXPECT_THAT(log.calls, ElementsAre("SetLoaded(b, true)", "SetVisible(b, 1, propagate)", "SetLoaded(a2, true)",
                                     "SetVisible(a2, 1, propagate)"));
}

}  // namespace
