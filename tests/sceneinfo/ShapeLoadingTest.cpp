// Loads come back in waves: what a finished load tells of its shape, and when the host hears of it.

#include <gmock/gmock.h>

#include "ShapeLoadingFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testsupport::PlainShapeInstance;

class ShapeLoading : public sceneinfotest::ShapeLoadingFixture {};

const char* const s_nothingNew =
    "UpdateVisAndTypeIconChanges(visible={}, visibleChanges={}, typeIcons=yes, typeIconChanges={})";

TEST_F(ShapeLoading, ThreeLoads_AreRecordedAndToldInOneCallWhenTheLastHasEnded)
{
  const ShapeInstance a = Create("a");
  const ShapeInstance b = Create("b");
  const ShapeInstance c = Create("c");

  End(1, b, zelk::ShapeDataLoaded);
  End(0, a, zelk::ShapeDataLoaded);
  EXPECT_THAT(GetLog(scene).GetVisibleMap(), IsEmpty());
  EXPECT_EQ(GetLog(scene).GetTypeIconMap().size(), 0U);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_TRUE(IsTiming());

  End(2, c, zelk::ShapeDataLoaded);
  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("UpdateVisAndTypeIconChanges(visible={a: 1, b: 1, c: 1, root: 6}, visibleChanges={a: 18, b: "
                          "18, c: 18, root: 98}, typeIcons=yes, typeIconChanges={a: 1, b: 1, c: 1})"));
  EXPECT_FALSE(IsTiming());
}

TEST_F(ShapeLoading, TheChangesOfADeliveredWaveAreForgotten)
{
  End(0, Create("a"), zelk::ShapeDataLoaded);

  EXPECT_FALSE(HasChanges(GetLog(scene)));
  EXPECT_THAT(GetLog(scene).GetVisibleMap(), SizeIs(2));
}

TEST_F(ShapeLoading, PartialData_CountsAsLoadedAlthoughAtTheCreationItAsksForALoad)
{
  const auto shapeInstance = du::MakeSmart<PlainShapeInstance>(panel.kernel["a"]);
  shapeInstance->status = zelk::ShapeDataPartial;
  scene->observer->OnShapeInstanceCreate(shapeInstance);
  EXPECT_EQ(GetState("a"), guitree::VisibleStateHidden);
  EXPECT_EQ(loader.Requests().size(), 1U);

  End(0, shapeInstance, zelk::ShapeDataPartial);

  EXPECT_EQ(GetState("a"), guitree::VisibleStateVisible);
  EXPECT_EQ(GetIcon("a"), 1);
}

TEST_F(ShapeLoading, AShapeThatIsNotVisible_IsLoadedAndHidden)
{
  const ShapeInstance a = Create("a");
  a->isVisible = false;

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_EQ(GetState("a"), guitree::VisibleStateHidden);
  EXPECT_EQ(GetIcon("a"), 1);
}

TEST_F(ShapeLoading, ALoadedThumbnail_IsAVisibleThumbnail)
{
  const ShapeInstance a = Create("a");
  a->isThumbnail = true;

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_EQ(GetState("a"), guitree::VisibleStateThumbnailVisible);
}

TEST_F(ShapeLoading, AThumbnailThatIsNotLoaded_CountsAsALoadOfTheWave)
{
  const ShapeInstance a = Create("a");
  const auto thumbnail = du::MakeSmart<PlainShapeInstance>(panel.kernel["b"]);
  thumbnail->isThumbnail = true;
  scene->observer->OnShapeInstanceCreate(thumbnail);
  thumbnail->status = zelk::ShapeDataLoaded;
  loop->RunDue();
  EXPECT_THAT(GetLog(scene).GetVisibleMap(), IsEmpty());

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_EQ(GetState("b"), guitree::VisibleStateThumbnailVisible);
}

TEST_F(ShapeLoading, AThumbnailThatIsNotLoaded_HoldsBackALoadThatEndsBeforeIt)
{
  Create("a")->status = zelk::ShapeDataLoaded;
  loader.Requests()[0].event->Complete();
  const auto thumbnail = du::MakeSmart<PlainShapeInstance>(panel.kernel["b"]);
  thumbnail->isThumbnail = true;
  scene->observer->OnShapeInstanceCreate(thumbnail);
  thumbnail->status = zelk::ShapeDataLoaded;

  loop->RunDue();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre(testing::HasSubstr("typeIconChanges={a: 1, b: 1}")));
}

TEST_F(ShapeLoading, AThumbnailAlone_IsAWaveThatLeavesItWithoutItsDataUntouched)
{
  const auto thumbnail = du::MakeSmart<PlainShapeInstance>(panel.kernel["b"]);
  thumbnail->isThumbnail = true;
  scene->observer->OnShapeInstanceCreate(thumbnail);

  loop->RunDue();

  EXPECT_FALSE(IsTiming());
  EXPECT_EQ(GetState("b"), guitree::VisibleStateHidden);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(ShapeLoading, ALoadThatBringsNothing_LeavesLoadedAndVisibleAsTheyWereAndTellsNobody)
{
  GetLog(scene).SetLoaded(panel.kernel["a"].Get(), true);
  GetLog(scene).SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);
  const ShapeInstance a = Create("a");

  End(0, a, zelk::ShapeDataNone);

  EXPECT_EQ(GetState("a"), guitree::VisibleStateVisible);
  EXPECT_EQ(GetIcon("a"), 1);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_FALSE(IsTiming());
}

TEST_F(ShapeLoading, ALoadWithAnUnknownStatus_ChangesNothing)
{
  End(0, Create("a"), 4);

  EXPECT_FALSE(HasChanges(GetLog(scene)));
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(ShapeLoading, ACancelledLoad_TakesTheSameWayByItsStatus)
{
  const ShapeInstance a = Create("a");
  scene->observer->OnShapeInstanceRemove(a);
  static_cast<void>(panel.host.TakeCalls());

  loader.Requests()[0].event->CompleteWithError("cancelled", zelk::BaseAsyncEvent::StatusCanceled);
  loop->RunDue();

  EXPECT_EQ(GetState("a"), guitree::VisibleStateHidden);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_FALSE(IsTiming());
}

TEST_F(ShapeLoading, AFailedLoad_HasTheIconWorkedOutAgainAndIsTold)
{
  const ShapeInstance a = Create("a");
  panel.state->unloadedTypeIcon = 28;

  End(0, a, zelk::ShapeDataFailed);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateVisAndTypeIconChanges(visible={}, visibleChanges={}, "
                                                  "typeIcons=yes, typeIconChanges={a: 28})"));
}

TEST_F(ShapeLoading, AFailedLoadOfTheNativeFormatThatHasNotFailedThere_IsNoFailure)
{
  const ShapeInstance a = Create("a");
  a->shape->isFromTrask = true;

  End(0, a, zelk::ShapeDataFailed);

  EXPECT_FALSE(HasChanges(GetLog(scene)));
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(ShapeLoading, AFailedLoadThatHasFailedInTheNativeFormat_IsAFailure)
{
  const ShapeInstance a = Create("a");
  a->shape->isFromTrask = true;
  a->shape->isFailedFromTrask = true;

  End(0, a, zelk::ShapeDataFailed);

  EXPECT_THAT(panel.host.TakeCalls(), SizeIs(1));
}

TEST_F(ShapeLoading, AFailedLoadWhoseShapeHasGone_IsAFailure)
{
  const ShapeInstance a = Create("a");
  a->shape.Reset();

  End(0, a, zelk::ShapeDataFailed);

  EXPECT_THAT(panel.host.TakeCalls(), SizeIs(1));
}

TEST_F(ShapeLoading, AWaveThatChangesNothing_IsToldAllTheSameWithEmptyChanges)
{
  const ShapeInstance a = Create("a");
  GetLog(scene).SetLoaded(panel.kernel["a"].Get(), true);
  GetLog(scene).ClearTypeIconChangeMap();
  a->isVisible = false;

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre(s_nothingNew));
}

TEST_F(ShapeLoading, AWaveDeliversWhatElseHasChangedInTheScene)
{
  const ShapeInstance a = Create("a");
  GetLog(scene).SetLoaded(panel.kernel["b"].Get(), true);

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre(testing::HasSubstr("typeIconChanges={a: 1, b: 1}")));
}

TEST_F(ShapeLoading, AWaveOfAnotherScene_IsRecordedAndTellsNobodyAndTheTimingStops)
{
  End(0, Create("a", other), zelk::ShapeDataLoaded);

  EXPECT_EQ(GetLog(other).GetCompVisibleState(panel.kernel["a"]), guitree::VisibleStateVisible);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_FALSE(IsTiming());
}

TEST_F(ShapeLoading, TheChangesOfAnotherSceneStayUntilItsViewIsShown)
{
  End(0, Create("a", other), zelk::ShapeDataLoaded);
  EXPECT_TRUE(HasChanges(GetLog(other)));

  GetReports().OnActiveViewChanged(otherView);

  EXPECT_THAT(panel.host.TakeCalls(),
              testing::Contains("UpdateVisAndTypeIcons(visible={a: 1, root: 4}, typeIcons=yes)"));
  EXPECT_FALSE(HasChanges(GetLog(other)));
}

TEST_F(ShapeLoading, AWaveOfSeveralScenes_IsRecordedInEachAndToldOfTheShownOneAlone)
{
  const ShapeInstance a = Create("a");
  const ShapeInstance b = Create("b", other);
  const ShapeInstance c = Create("c");
  End(0, a, zelk::ShapeDataLoaded);
  End(1, b, zelk::ShapeDataLoaded);

  End(2, c, zelk::ShapeDataLoaded);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre(testing::HasSubstr("visible={a: 1, c: 1, root: 4}")));
  EXPECT_EQ(GetLog(other).GetCompVisibleState(panel.kernel["b"]), guitree::VisibleStateVisible);
  EXPECT_TRUE(HasChanges(GetLog(other)));
}

TEST_F(ShapeLoading, AWaveWhileNoSceneIsShown_IsRecordedAndTellsNobody)
{
  const ShapeInstance a = Create("a");
  GetReports().OnActiveViewChanged(nullptr);
  static_cast<void>(panel.host.TakeCalls());

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_EQ(GetState("a"), guitree::VisibleStateVisible);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_FALSE(IsTiming());
}

TEST_F(ShapeLoading, AWaveWhoseSceneHasGone_IsDroppedWithoutALogAndEnds)
{
  const ShapeInstance a = Create("a");
  GetReports().OnSceneRemoved(scene);
  static_cast<void>(panel.host.TakeCalls());

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_FALSE(IsTiming());
  End(1, Create("b", other), zelk::ShapeDataLoaded);
  EXPECT_THAT(GetLog(other).GetVisibleMap(), SizeIs(2));
}

TEST_F(ShapeLoading, ALoadThatIsAskedForMeanwhile_ProlongsTheWave)
{
  const ShapeInstance a = Create("a");
  const ShapeInstance b = Create("b");
  End(0, a, zelk::ShapeDataLoaded);
  const ShapeInstance c = Create("c");

  End(1, b, zelk::ShapeDataLoaded);
  EXPECT_THAT(GetLog(scene).GetVisibleMap(), IsEmpty());

  End(2, c, zelk::ShapeDataLoaded);
  EXPECT_THAT(GetLog(scene).GetVisibleMap(), SizeIs(4));
}

TEST_F(ShapeLoading, AWaveAfterAnother_BeginsAnew)
{
  End(0, Create("a"), zelk::ShapeDataLoaded);
  static_cast<void>(panel.host.TakeCalls());
  panel.state->AddStopWatch("second");

  End(1, Create("b"), zelk::ShapeDataLoaded);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre(testing::HasSubstr("visibleChanges={b: 18}")));
  EXPECT_FALSE(IsTiming());
  EXPECT_EQ(panel.state->GetStopWatch().GetName(), "second");
}

TEST_F(ShapeLoading, TwoLoadsOfOneShapeInstance_EndTheWaveWithTheFirst)
{
  const ShapeInstance a = Create("a");
  scene->observer->OnShapeInstanceCreate(a);

  End(1, a, zelk::ShapeDataLoaded);
  EXPECT_EQ(GetState("a"), guitree::VisibleStateVisible);
  EXPECT_FALSE(IsTiming());
  static_cast<void>(panel.host.TakeCalls());

  End(0, a, zelk::ShapeDataLoaded);
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre(testing::HasSubstr("visibleChanges={}")));
}

TEST_F(ShapeLoading, TheFirstOfTwoLoadsThatEndsAfterTheSecond_WaitsForTheWaveThatIsUnderWayThen)
{
  const ShapeInstance a = Create("a");
  scene->observer->OnShapeInstanceCreate(a);
  End(1, a, zelk::ShapeDataLoaded);
  const ShapeInstance b = Create("b");
  static_cast<void>(panel.host.TakeCalls());

  End(0, a, zelk::ShapeDataLoaded);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());

  End(2, b, zelk::ShapeDataLoaded);
  EXPECT_THAT(panel.host.TakeCalls(), SizeIs(1));
}

TEST_F(ShapeLoading, AShapeInstanceThatEndsTwiceInAWave_CountsForTheSceneThatItEndedInFirst)
{
  const ShapeInstance a = Create("a");
  const ShapeInstance b = Create("b");
  other->observer->OnShapeInstanceCreate(a);
  End(0, a, zelk::ShapeDataLoaded);
  End(2, a, zelk::ShapeDataLoaded);

  End(1, b, zelk::ShapeDataLoaded);

  EXPECT_EQ(GetState("a"), guitree::VisibleStateVisible);
  EXPECT_THAT(GetLog(other).GetVisibleMap(), IsEmpty());
}

TEST_F(ShapeLoading, TheTimingOfAWave_CoversTheCallOfTheHost)
{
  const ShapeInstance a = Create("a");
  bool wasTiming = false;
  panel.host.onCall = [&](const std::string& /*line*/) { wasTiming = IsTiming(); };

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_TRUE(wasTiming);
  EXPECT_FALSE(IsTiming());
}

TEST_F(ShapeLoading, ALoadWhoseTreeInstanceHasGone_IsSkipped)
{
  for (const zelk::ShapeDataStatus status : {zelk::ShapeDataLoaded, zelk::ShapeDataFailed}) {
    const ShapeInstance a = Create("a");
    a->instance.Reset();

    End(loader.Requests().size() - 1, a, status);

    EXPECT_FALSE(HasChanges(GetLog(scene)));
    EXPECT_THAT(panel.host.TakeCalls(), testing::IsEmpty());
  }
}

}  // namespace
