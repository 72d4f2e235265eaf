// Removal, visibility and comparison of shape instances, and the removal of a scene.

#include <gmock/gmock.h>

#include <ostream>

#include "SceneEventsFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::PlainShapeInstance;
using testsupport::PlainShapeScene;

class ShapeInstanceEvents : public sceneinfotest::SceneEventsFixture {
protected:
  [[nodiscard]] bool Remove(const du::SmartPtr<PlainShapeInstance>& shapeInstance)
  {
    return panel.state->UpdateSceneInfoLog_OnShapeInstanceRemove(&log, shapeInstance);
  }
};

TEST_F(ShapeInstanceEvents, ARemoval_ClearsLoadedThenVisibleThenAsksTheHostAndMarksNoIconUnlessItSaysSo)
{
  panel.host.onCall = [this](const std::string& line) { log.calls.push_back(line); };

  EXPECT_FALSE(Remove(Make("a", zelk::ShapeDataLoaded)));

  EXPECT_THAT(log.calls, ElementsAre("SetLoaded(a, false)", "SetVisible(a, 0, propagate)",
                                     "HasTypeIconChangedOnShapeInstanceRemove(yes, shapeInstance=a) -> false"));
}

TEST_F(ShapeInstanceEvents, ARemovalOnWhichTheHostSaysSo_MarksTheIconLastAndAsksForARepaint)
{
  panel.host.answers.hasTypeIconChangedOnShapeInstanceRemove = true;
  panel.host.onCall = [this](const std::string& line) { log.calls.push_back(line); };

  EXPECT_TRUE(Remove(Make("a", zelk::ShapeDataLoaded)));

  EXPECT_THAT(log.calls, ElementsAre("SetLoaded(a, false)", "SetVisible(a, 0, propagate)",
                                     "HasTypeIconChangedOnShapeInstanceRemove(yes, shapeInstance=a) -> true",
                                     "MarkTypeIconChanged(a)"));
}

TEST_F(ShapeInstanceEvents, ARemoval_HidesAThumbnailAsAnyOther)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataLoaded);
  shapeInstance->isThumbnail = true;
  EXPECT_FALSE(Create(shapeInstance));
  EXPECT_EQ(log.GetCompVisibleState(panel.kernel["a"]), guitree::VisibleStateThumbnailVisible);

  EXPECT_FALSE(Remove(shapeInstance));

  EXPECT_THAT(log.GetVisibleMap(), IsEmpty());
}

TEST_F(ShapeInstanceEvents, ARemovalWithALoadUnderWay_CancelsItAndStillClearsLoadedAndVisible)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataNone);
  EXPECT_FALSE(Create(shapeInstance));

  EXPECT_FALSE(Remove(shapeInstance));

  EXPECT_TRUE(loader.Requests()[0].event->IsCanceled());
  EXPECT_THAT(log.calls, ElementsAre("SetLoaded(a, false)", "SetVisible(a, 0, propagate)"));
}

TEST_F(ShapeInstanceEvents, ARemovalWithALoadUnderWay_LeavesTheEndOfTheWaveToTheCompletion)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataNone);
  EXPECT_FALSE(Create(shapeInstance));
  EXPECT_FALSE(Create(Make("b", zelk::ShapeDataNone)));
  panel.state->AddStopWatch("wave");
  EXPECT_FALSE(Remove(shapeInstance));

  loader.Requests()[1].event->Complete();
  loop->RunDue();
  EXPECT_TRUE(panel.state->GetStopWatch().IsRunning());

  loader.Requests()[0].event->Complete();
  loop->RunDue();
  EXPECT_FALSE(panel.state->GetStopWatch().IsRunning());
}

TEST_F(ShapeInstanceEvents, ARemovalCancelsNoLoadOfAnotherShapeInstance)
{
  EXPECT_FALSE(Create(Make("a", zelk::ShapeDataNone)));

  EXPECT_FALSE(Remove(Make("a", zelk::ShapeDataNone)));

  EXPECT_FALSE(loader.Requests()[0].event->IsCanceled());
}

TEST_F(ShapeInstanceEvents, ARemovalInWhichTheHostRemovesTheScene_TouchesItsLogNoMore)
{
  const auto reports = panel.host.answers.sceneManagerObserver;
  reports->OnSceneAdded(scene);
  guitree::SceneInfoLog* doomed = panel.gui->GetLog(scene);
  panel.host.answers.hasTypeIconChangedOnShapeInstanceRemove = true;
  panel.host.onCall = [&](const std::string& /*line*/) { reports->OnSceneRemoved(scene); };

  EXPECT_TRUE(panel.state->UpdateSceneInfoLog_OnShapeInstanceRemove(doomed, Make("a", zelk::ShapeDataLoaded)));

  EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
}

TEST_F(ShapeInstanceEvents, ARemovalInWhichTheHostEndsStateAndPanel_IsNoTrouble)
{
  panel.host.answers.hasTypeIconChangedOnShapeInstanceRemove = true;
  panel.host.onCall = [this](const std::string& /*line*/) {
    panel.host.onCall = nullptr;
    panel.gui->SetTreeState(nullptr);
    panel.state.Reset();
    panel.gui.Reset();
  };

  EXPECT_TRUE(Remove(Make("a", zelk::ShapeDataLoaded)));

  EXPECT_FALSE(panel.gui);
}

struct VisibilityCase {
  bool visible;
  unsigned short status;
  bool isThumbnail;
  int expected;

  friend void PrintTo(const VisibilityCase& row, std::ostream* out)
  {
    *out << (row.visible ? "visible" : "hidden") << (row.isThumbnail ? " thumbnail" : "") << " of status "
         << row.status;
  }
};

class ShapeInstanceVisibility : public ShapeInstanceEvents, public testing::WithParamInterface<VisibilityCase> {};

INSTANTIATE_TEST_SUITE_P(Table, ShapeInstanceVisibility,
                         testing::Values(VisibilityCase{true, zelk::ShapeDataLoaded, false, 1},
                                         VisibilityCase{true, zelk::ShapeDataLoaded, true, 3},
                                         VisibilityCase{true, zelk::ShapeDataNone, false, 0},
                                         VisibilityCase{true, zelk::ShapeDataFailed, false, 0},
                                         VisibilityCase{true, zelk::ShapeDataPartial, false, 0},
                                         VisibilityCase{true, zelk::ShapeDataPartial, true, 0},
                                         VisibilityCase{false, zelk::ShapeDataLoaded, false, 0},
                                         VisibilityCase{false, zelk::ShapeDataLoaded, true, 0},
                                         VisibilityCase{false, zelk::ShapeDataNone, true, 0}));

TEST_P(ShapeInstanceVisibility, IsThatOfTheEventAndHiddenWithoutAllData)
{
  const auto shapeInstance = Make("a", GetParam().status);
  shapeInstance->isThumbnail = GetParam().isThumbnail;
  // The event says what holds, not the shape instance.
  shapeInstance->isVisible = !GetParam().visible;

  panel.state->UpdateSceneInfoLog_OnShapeInstanceVisibility(&log, shapeInstance, GetParam().visible);

  EXPECT_THAT(log.calls, ElementsAre("SetVisible(a, " + std::to_string(GetParam().expected) + ", propagate)"));
}

TEST_F(ShapeInstanceEvents, AComparison_HasTheIconWorkedOutAgainWithoutItsLoadedForm)
{
  panel.state->unloadedTypeIcon = 10;
  log.SetLoaded(panel.kernel["a"].Get(), true);
  log.ClearTypeIconChangeMap();
  log.calls.clear();
  panel.state->unloadedTypeIcon = 24;
  const auto shapeInstance = Make("a", zelk::ShapeDataLoaded);
  shapeInstance->isCompared = true;

  panel.state->UpdateSceneInfoLog_OnInstanceCompared(&log, shapeInstance);

  int icon = 0;
  EXPECT_TRUE(log.GetTypeIconMap()._Get(panel.kernel["a"].Get(), icon));
  EXPECT_EQ(icon, 24);
  EXPECT_EQ(log.GetTypeIconChangeMap().size(), 1U);
  EXPECT_THAT(log.calls, IsEmpty());
}

TEST_F(ShapeInstanceEvents, TheEndOfAComparison_HasTheIconWorkedOutAgainAsItsBeginning)
{
  panel.state->unloadedTypeIcon = 24;
  const auto shapeInstance = Make("a", zelk::ShapeDataLoaded);
  panel.state->UpdateSceneInfoLog_OnInstanceCompared(&log, shapeInstance);
  panel.state->unloadedTypeIcon = 10;

  panel.state->UpdateSceneInfoLog_OnInstanceCompared(&log, shapeInstance);

  int icon = 0;
  EXPECT_TRUE(log.GetTypeIconMap()._Get(panel.kernel["a"].Get(), icon));
  EXPECT_EQ(icon, 10);
}

TEST_F(ShapeInstanceEvents, WithoutATreeInstance_AreSkipped)
{
  const auto shapeInstance = du::MakeSmart<PlainShapeInstance>(nullptr);
  shapeInstance->status = zelk::ShapeDataLoaded;
  panel.host.answers.hasTypeIconChangedOnShapeInstanceRemove = true;

  EXPECT_FALSE(Remove(shapeInstance));
  panel.state->UpdateSceneInfoLog_OnShapeInstanceVisibility(&log, shapeInstance, true);
  panel.state->UpdateSceneInfoLog_OnInstanceCompared(&log, shapeInstance);

  EXPECT_THAT(log.calls, IsEmpty());
  EXPECT_THAT(log.GetVisibleMap(), IsEmpty());
  EXPECT_THAT(log.GetTypeIconChangeMap(), IsEmpty());
}

TEST_F(ShapeInstanceEvents, ARemovalWithoutATreeInstance_StillCancelsTheLoad)
{
  const auto shapeInstance = Make("a", zelk::ShapeDataNone);
  EXPECT_FALSE(Create(shapeInstance));
  shapeInstance->instance.Reset();

  EXPECT_FALSE(Remove(shapeInstance));

  EXPECT_TRUE(loader.Requests()[0].event->IsCanceled());
}

TEST_F(ShapeInstanceEvents, TheRemovalOfAScene_CancelsAllItsLoadsAndNoOthers)
{
  const auto otherScene = du::MakeSmart<PlainShapeScene>();
  sceneinfotest::RecordingLog otherLog(panel.gui.Get());
  otherLog.Initialise(otherScene);
  EXPECT_FALSE(Create(Make("a", zelk::ShapeDataNone)));
  panel.state->UpdateSceneInfoLog_OnShapeInstanceCreate(&otherLog, Make("b", zelk::ShapeDataNone));
  EXPECT_FALSE(Create(Make("c", zelk::ShapeDataNone)));

  EXPECT_FALSE(panel.state->UpdateSceneInfoLog_OnSceneRemoved(scene));

  ASSERT_EQ(loader.Requests().size(), 3U);
  EXPECT_TRUE(loader.Requests()[0].event->IsCanceled());
  EXPECT_FALSE(loader.Requests()[1].event->IsCanceled());
  EXPECT_TRUE(loader.Requests()[2].event->IsCanceled());
}

TEST_F(ShapeInstanceEvents, TheRemovalOfASceneWithoutLoads_CancelsNothing)
{
  EXPECT_FALSE(Create(Make("a", zelk::ShapeDataNone)));

  EXPECT_FALSE(panel.state->UpdateSceneInfoLog_OnSceneRemoved(du::MakeSmart<PlainShapeScene>()));
  EXPECT_FALSE(panel.state->UpdateSceneInfoLog_OnSceneRemoved(nullptr));

  EXPECT_FALSE(loader.Requests()[0].event->IsCanceled());
}

TEST_F(ShapeInstanceEvents, TheRemovalOfASceneThatThePanelKnows_CancelsItsLoads)
{
  const auto reports = panel.host.answers.sceneManagerObserver;
  reports->OnSceneAdded(scene);
  scene->observer->OnShapeInstanceCreate(Make("a", zelk::ShapeDataNone));

  reports->OnSceneRemoved(scene);

  EXPECT_TRUE(loader.Requests()[0].event->IsCanceled());
}

TEST_F(ShapeInstanceEvents, OfAStateThatOutlivesItsPanel_AskNobody)
{
  panel.gui.Reset();

  EXPECT_FALSE(Remove(Make("a", zelk::ShapeDataLoaded)));
  EXPECT_FALSE(Create(Make("a", zelk::ShapeDataNone)));

  EXPECT_THAT(loader.Requests(), IsEmpty());
}

}  // namespace
