#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::MakeView;
using testsupport::Panel;
using testsupport::PlainScene;
using testsupport::PlainShapeScene;
using testsupport::PlainShapeView;

/// An initialised panel with nothing recorded, whose host reports a shape scene.
class SceneTracking : public testing::Test {
protected:
  SceneTracking() { panel.Initialise(); }
  ~SceneTracking() override
  {
    // What `Close` leaves taken is not of interest here.
    for (const auto& known : {du::SmartPtr<zelk::Scene>(scene), du::SmartPtr<zelk::Scene>(other)}) {
      GetReports().OnSceneRemoved(known);
    }
    panel.gui->Close();
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *panel.host.answers.sceneManagerObserver;
  }
  void AddAndShow()
  {
    GetReports().OnSceneAdded(scene);
    GetReports().OnActiveViewChanged(view);
    static_cast<void>(panel.host.TakeCalls());
    panel.state->calls.clear();
  }

  Panel panel{"root[a]"};
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeScene> other = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeView> view = MakeView<PlainShapeView>(scene);
};

TEST_F(SceneTracking, AnAddedShapeSceneGetsALogAndIsListenedTo)
{
  GetReports().OnSceneAdded(scene);

  guitree::SceneInfoLog* log = panel.gui->GetLog(scene);
  ASSERT_NE(log, nullptr);
  EXPECT_EQ(log->GetShapeScene(), scene);
  EXPECT_THAT(scene->calls, ElementsAre("RegisterObserver(11, replay)"));
  EXPECT_EQ(scene->observer->GetObjectClass(), "guitree::ShapeSceneObserver");
  EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(SceneTracking, ASceneThatIsNoShapeSceneGetsALogOnly)
{
  const auto plain = du::MakeSmart<PlainScene>();
  GetReports().OnSceneAdded(plain);

  std::vector<guitree::SceneInfoLog*> logs;
  panel.gui->GetLogs(logs);
  ASSERT_EQ(logs.size(), 1u);
  EXPECT_EQ(logs[0]->GetScene(), plain);
  EXPECT_EQ(logs[0]->GetShapeScene(), nullptr);
  GetReports().OnSceneRemoved(plain);
}

TEST_F(SceneTracking, TheShownSceneIsNullWhileItIsNoShapeScene)
{
  const auto plain = du::MakeSmart<PlainScene>();
  GetReports().OnSceneAdded(plain);
  GetReports().OnActiveViewChanged(MakeView<PlainShapeView>(plain));

  EXPECT_NE(panel.gui->GetCurrentLog(), nullptr);
  EXPECT_EQ(panel.gui->GetCurShapeScene(), nullptr);
  GetReports().OnSceneRemoved(plain);
}

TEST_F(SceneTracking, AnIncompatibleSceneGetsNeitherLogNorObserver)
{
  panel.state->isCompatibleScene = false;
  panel.state->needsTooltips = true;

  GetReports().OnSceneAdded(scene);

  EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
  EXPECT_THAT(scene->calls, IsEmpty());
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateTooltips()"));
}

TEST_F(SceneTracking, ASceneThatIsAddedAgainKeepsItsLogAndIsRegisteredOnce)
{
  GetReports().OnSceneAdded(scene);
  const guitree::SceneInfoLog* log = panel.gui->GetLog(scene);

  GetReports().OnSceneAdded(scene);

  EXPECT_EQ(panel.gui->GetLog(scene), log);
  EXPECT_THAT(scene->calls, ElementsAre("RegisterObserver(11, replay)"));
}

TEST_F(SceneTracking, LogsComeInTheOrderOfTheirScenesAddresses)
{
  GetReports().OnSceneAdded(scene);
  GetReports().OnSceneAdded(other);
  std::vector<guitree::SceneInfoLog*> logs{nullptr, nullptr, nullptr};

  panel.gui->GetLogs(logs);

  auto* ofScene = panel.gui->GetLog(scene);
  auto* ofOther = panel.gui->GetLog(other);
  EXPECT_THAT(logs, scene < other ? ElementsAre(ofScene, ofOther) : ElementsAre(ofOther, ofScene));
}

TEST_F(SceneTracking, ARemovedSceneLosesLogAndObserver)
{
  AddAndShow();
  panel.state->needsTooltips = true;

  GetReports().OnSceneRemoved(scene);

  EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
  EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
  EXPECT_EQ(panel.gui->GetCurrentView(), view);
  EXPECT_THAT(scene->calls, ElementsAre("RegisterObserver(11, replay)", "UnregisterObserver"));
  EXPECT_THAT(panel.state->calls, ElementsAre("OnSceneRemoved"));
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateTooltips()"));
}

TEST_F(SceneTracking, RemovingASceneWithoutALogTellsNobody)
{
  panel.state->needsTooltips = true;

  GetReports().OnSceneRemoved(scene);

  EXPECT_THAT(panel.state->calls, IsEmpty());
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(SceneTracking, EventsOfASceneReachTheStateWithItsLog)
{
  GetReports().OnSceneAdded(scene);

  scene->observer->OnShapeInstanceCreate(nullptr);
  scene->observer->OnShapeInstanceRemove(nullptr);
  scene->observer->OnShapeInstanceVisibility(nullptr, true);
  scene->observer->OnShapeInstanceVisibility(nullptr, false);
  scene->observer->OnInstanceCompared(nullptr);

  EXPECT_THAT(panel.state->calls,
              ElementsAre("OnShapeInstanceCreate", "OnShapeInstanceRemove", "OnShapeInstanceVisibility(true)",
                          "OnShapeInstanceVisibility(false)", "OnInstanceCompared"));
  EXPECT_EQ(panel.state->lastLog, panel.gui->GetLog(scene));
}

TEST_F(SceneTracking, EventsOfASceneWithoutALogReachNobody)
{
  EXPECT_FALSE(panel.gui->OnShapeInstanceCreate(other, nullptr));
  EXPECT_FALSE(panel.gui->OnShapeInstanceRemove(other, nullptr));
  panel.gui->OnShapeInstanceVisibility(other, nullptr, true);
  panel.gui->OnShapeInstanceCompared(other, nullptr);

  EXPECT_THAT(panel.state->calls, IsEmpty());
}

TEST_F(SceneTracking, AnEventThatAsksForIt_EndsTheUpdateInOneFullRepaint)
{
  AddAndShow();
  panel.state->answerToShapeEvents = true;

  scene->observer->OnShapeInstanceCreate(nullptr);
  scene->observer->OnEndUpdate();
  scene->observer->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateVisAndTypeIcons(visible={}, typeIcons=yes)"));
}

TEST_F(SceneTracking, ChangesOfTheShownSceneAreDeliveredOnceAtTheEndOfItsUpdate)
{
  AddAndShow();
  panel.gui->GetLog(scene)->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);

  scene->observer->OnEndUpdate();
  scene->observer->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("UpdateVisAndTypeIconChanges(visible={a: 1}, visibleChanges={a: 18}, typeIcons=yes, "
                          "typeIconChanges={})"));
}

TEST_F(SceneTracking, ChangesOfAnotherSceneWaitForItsView)
{
  AddAndShow();
  GetReports().OnSceneAdded(other);
  panel.gui->GetLog(other)->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);

  other->observer->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_EQ(panel.gui->GetLog(other)->GetVisibleChangeMap().size(), 1u);
}

TEST_F(SceneTracking, UnsyncedInstancesAreToldToTheHost)
{
  GetReports().OnSceneAdded(scene);

  scene->observer->OnUnsyncInstances(true);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UnsyncInstances(true)"));
}

TEST_F(SceneTracking, WhatASceneMarks_IsMarkedInAPlainTreeAndRefillsAFilteredOne)
{
  AddAndShow();

  scene->observer->OnApplyTreeUpdate();
  EXPECT_EQ(panel.host.TakeCalls().size(), 1u);

  panel.state->filter.isFiltering = true;
  scene->observer->OnApplyTreeUpdate();
  EXPECT_EQ(panel.host.TakeCalls().front(), "StoreExpandedAndFirstVisibleBeforePopulate(true)");
}

TEST_F(SceneTracking, AfterItWasDropped_AnObserverDoesNothing)
{
  AddAndShow();
  const du::SmartPtr<zelk::ShapeSceneObserver> observer(scene->observer);
  panel.state->answerToShapeEvents = true;
  GetReports().OnSceneRemoved(scene);
  panel.state->calls.clear();
  static_cast<void>(panel.host.TakeCalls());

  observer->OnShapeInstanceCreate(nullptr);
  observer->OnShapeInstanceRemove(nullptr);
  observer->OnShapeInstanceVisibility(nullptr, true);
  observer->OnInstanceCompared(nullptr);
  observer->OnUnsyncInstances(true);
  observer->OnApplyTreeUpdate();
  observer->OnEndUpdate();

  EXPECT_THAT(panel.state->calls, IsEmpty());
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(SceneTracking, AnObserverThatTheKernelUnregistersDoesNothing)
{
  AddAndShow();

  scene->observer->OnUnregister();
  scene->observer->OnUnsyncInstances(true);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(SceneTracking, TheFourOperationsOnAllLogsReachEachOfThem)
{
  GetReports().OnSceneAdded(scene);
  GetReports().OnSceneAdded(other);
  const auto root = panel.kernel["root"];
  const auto a = panel.kernel["a"];
  guitree::SceneInfoLog* logs[] = {panel.gui->GetLog(scene), panel.gui->GetLog(other)};
  for (guitree::SceneInfoLog* log : logs) {
    log->SetVisible(a.Get(), guitree::VisibleStateVisible);
  }

  panel.gui->CheckVisibleIcon(root);
  for (guitree::SceneInfoLog* log : logs) {
    EXPECT_EQ(log->GetCompVisibleState(root), guitree::VisibleStateHiddenAllChildren);
  }
  panel.gui->ForceVisibleIconHidden(root);
  for (guitree::SceneInfoLog* log : logs) {
    EXPECT_EQ(log->GetCompVisibleState(root), guitree::VisibleStateHidden);
  }
  panel.gui->MarkTypeIconChanged(a.Get());
  for (guitree::SceneInfoLog* log : logs) {
    EXPECT_EQ(log->GetTypeIconChangeMap().size(), 1u);
  }
  panel.gui->RemoveFromLogs(a);
  for (guitree::SceneInfoLog* log : logs) {
    EXPECT_EQ(log->GetVisibleMap().size(), 0u);
  }
}

TEST_F(SceneTracking, ANameCheckMarksTheIconInAllLogs)
{
  GetReports().OnSceneAdded(scene);
  GetReports().OnSceneAdded(other);

  static_cast<void>(panel.state->CheckAndUpdateNodeNameAndType(panel.kernel["a"]));

  EXPECT_EQ(panel.gui->GetLog(scene)->GetTypeIconChangeMap().size(), 1u);
  EXPECT_EQ(panel.gui->GetLog(other)->GetTypeIconChangeMap().size(), 1u);
}

}  // namespace
