#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::MakeView;
using testsupport::Panel;
using testsupport::PlainShapeScene;
using testsupport::PlainShapeView;

/// A log that counts its kind.
class CountedLog : public guitree::SceneInfoLog {
public:
  CountedLog(guitree::GuiTree* tree, int& alive) : SceneInfoLog(tree), m_alive(alive) { ++m_alive; }
  CountedLog(const CountedLog&) = delete;
  CountedLog& operator=(const CountedLog&) = delete;
  ~CountedLog() override { --m_alive; }

private:
  int& m_alive;
};

/// An initialised panel that shows one of two scenes with logs. Nothing is recorded.
class SceneEvents : public testing::Test {
protected:
  SceneEvents()
  {
    panel.Initialise();
    GetReports().OnSceneAdded(scene);
    GetReports().OnSceneAdded(other);
    GetReports().OnActiveViewChanged(view);
    static_cast<void>(panel.host.TakeCalls());
    panel.state->calls.clear();
    panel.state->tooltipsQuestions.clear();
  }
  ~SceneEvents() override
  {
    panel.host.onCall = nullptr;
    panel.state->onCall = nullptr;
    for (const auto& known : {scene, other, fresh}) {
      GetReports().OnSceneRemoved(known);
    }
    panel.gui->Reset();
    panel.gui->Close();
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *panel.host.answers.sceneManagerObserver;
  }
  void ChangeIn(const du::SmartPtr<PlainShapeScene>& changed) const
  {
    panel.gui->GetLog(changed)->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);
    panel.gui->GetLog(changed)->SetLoaded(panel.kernel["a"].Get(), true);
  }
  [[nodiscard]] bool HasChanges(const du::SmartPtr<PlainShapeScene>& changed) const
  {
    const guitree::SceneInfoLog* log = panel.gui->GetLog(changed);
    return !log->GetVisibleChangeMap().empty() || !log->GetTypeIconChangeMap().empty();
  }

  Panel panel{"root[a]"};
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeScene> other = du::MakeSmart<PlainShapeScene>();
  /// Not reported yet.
  du::SmartPtr<PlainShapeScene> fresh = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeView> view = MakeView<PlainShapeView>(scene);
  du::SmartPtr<PlainShapeView> otherView = MakeView<PlainShapeView>(other);
};

TEST_F(SceneEvents, AChangedIconAloneIsDeliveredOnce)
{
  panel.host.RememberName(*panel.kernel["a"]);
  panel.gui->GetLog(scene)->SetLoaded(panel.kernel["a"].Get(), true);

  scene->observer->OnEndUpdate();
  scene->observer->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateVisAndTypeIconChanges(visible={}, visibleChanges={}, "
                                                  "typeIcons=yes, typeIconChanges={a: 1})"));
}

TEST_F(SceneEvents, AFullRepaintCoversAllChanges)
{
  panel.state->answerToShapeEvents = true;
  ChangeIn(scene);

  scene->observer->OnShapeInstanceCreate(nullptr);
  scene->observer->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateVisAndTypeIcons(visible={a: 1}, typeIcons=yes)"));
  EXPECT_FALSE(HasChanges(scene));
}

TEST_F(SceneEvents, AViewsRepaintCoversAllChanges)
{
  ChangeIn(other);

  GetReports().OnActiveViewChanged(otherView);

  EXPECT_FALSE(HasChanges(other));
}

TEST_F(SceneEvents, ARemovalThatAsksForIt_EndsTheUpdateInAFullRepaint)
{
  panel.state->answerToShapeEvents = true;

  scene->observer->OnShapeInstanceRemove(nullptr);
  scene->observer->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateVisAndTypeIcons(visible={}, typeIcons=yes)"));
}

TEST_F(SceneEvents, EventsThatAskForNothing_RepaintNothing)
{
  scene->observer->OnShapeInstanceCreate(nullptr);
  scene->observer->OnShapeInstanceRemove(nullptr);
  scene->observer->OnShapeInstanceVisibility(nullptr, true);
  scene->observer->OnInstanceCompared(nullptr);
  scene->observer->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(SceneEvents, WhatASceneMarks_IsMarkedForTheSceneThatIsShown)
{
  other->observer->OnApplyTreeUpdate();
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateMarkedInsts(unnamed)"));

  GetReports().OnActiveViewChanged(nullptr);
  static_cast<void>(panel.host.TakeCalls());
  other->observer->OnApplyTreeUpdate();
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateMarkedInsts(null)"));
}

TEST_F(SceneEvents, WhatIsReplayedAtTheRegistrationReachesTheLog)
{
  fresh->replay = [](zelk::ShapeSceneObserver& observer) { observer.OnShapeInstanceCreate(nullptr); };

  GetReports().OnSceneAdded(fresh);

  EXPECT_THAT(panel.state->calls, ElementsAre("OnShapeInstanceCreate"));
  EXPECT_EQ(panel.state->lastLog, panel.gui->GetLog(fresh));
}

TEST_F(SceneEvents, TooltipsComeBeforeTheLogOfANewScene)
{
  panel.state->needsTooltips = true;
  panel.host.onCall = [&](const std::string&) { EXPECT_EQ(panel.gui->GetLog(fresh), nullptr); };

  GetReports().OnSceneAdded(fresh);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateTooltips()"));
  EXPECT_THAT(panel.state->tooltipsQuestions, ElementsAre(fresh));
}

TEST_F(SceneEvents, TooltipsComeAfterTheStateHasHeardOfTheRemoval)
{
  panel.state->needsTooltips = true;
  panel.host.onCall = [&](const std::string&) { EXPECT_THAT(panel.state->calls, ElementsAre("OnSceneRemoved")); };

  GetReports().OnSceneRemoved(scene);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateTooltips()"));
  EXPECT_THAT(panel.state->tooltipsQuestions, ElementsAre(scene));
}

TEST_F(SceneEvents, TheStateHearsOfTheRemovalWhenTheLogHasGone)
{
  int seen = 0;
  panel.state->onCall = [&](const std::string& call) {
    if (call == "OnSceneRemoved") {
      ++seen;
      EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
      EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
      EXPECT_EQ(scene->observer, nullptr);
    }
  };

  GetReports().OnSceneRemoved(scene);

  EXPECT_EQ(seen, 1);
}

TEST_F(SceneEvents, ASceneThatIsAddedAgain_IsAskedAboutTooltipsAgain)
{
  panel.state->needsTooltips = true;

  GetReports().OnSceneAdded(scene);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateTooltips()"));
}

TEST_F(SceneEvents, ASceneHasOneLogHoweverOftenItIsAddedAndNoneOnceItIsRemoved)
{
  int alive = 0;
  panel.state->makeSceneInfoLog = [&] { return new CountedLog(panel.gui.Get(), alive); };

  GetReports().OnSceneAdded(fresh);
  GetReports().OnSceneAdded(fresh);
  EXPECT_EQ(alive, 1);

  GetReports().OnSceneRemoved(fresh);
  EXPECT_EQ(alive, 0);
}

TEST_F(SceneEvents, ALogOutlivesTheClose)
{
  int alive = 0;
  panel.state->makeSceneInfoLog = [&] { return new CountedLog(panel.gui.Get(), alive); };
  GetReports().OnSceneAdded(fresh);
  const std::unique_ptr<guitree::SceneInfoLog> log(panel.gui->GetLog(fresh));

  panel.gui->Close();

  EXPECT_EQ(alive, 1);
  EXPECT_EQ(log->GetScene(), nullptr);
}

TEST_F(SceneEvents, AStateThatMakesNoLog_LeavesTheSceneWithoutOne)
{
  panel.state->makeSceneInfoLog = [] { return nullptr; };

  GetReports().OnSceneAdded(fresh);

  EXPECT_EQ(panel.gui->GetLog(fresh), nullptr);
  EXPECT_THAT(fresh->calls, IsEmpty());
}

TEST_F(SceneEvents, AHostThatShowsAnotherSceneFromInsideADelivery_KeepsThatOnesChanges)
{
  ChangeIn(scene);
  ChangeIn(other);
  // So that the view change itself leaves the changes.
  panel.state->reloadsOnViewChange = true;
  panel.host.onCall = [&](const std::string& line) {
    if (line.starts_with("UpdateVisAndTypeIconChanges")) {
      panel.host.onCall = nullptr;
      GetReports().OnActiveViewChanged(otherView);
    }
  };

  scene->observer->OnEndUpdate();

  EXPECT_EQ(panel.gui->GetCurrentLog(), panel.gui->GetLog(other));
  EXPECT_FALSE(HasChanges(scene));
  EXPECT_TRUE(HasChanges(other));
}

TEST_F(SceneEvents, AHostMayRemoveTheSceneFromInsideADelivery)
{
  for (const bool isFull : {false, true}) {
    GetReports().OnSceneAdded(scene);
    GetReports().OnActiveViewChanged(nullptr);
    GetReports().OnActiveViewChanged(view);
    ChangeIn(scene);
    panel.host.onCall = [&](const std::string& line) {
      if (line.starts_with("UpdateVisAndTypeIcon")) {
        panel.host.onCall = nullptr;
        GetReports().OnSceneRemoved(scene);
      }
    };
    panel.state->answerToShapeEvents = isFull;
    scene->observer->OnShapeInstanceCreate(nullptr);

    scene->observer->OnEndUpdate();

    EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
    EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
  }
}

TEST_F(SceneEvents, AStateMayHaveTheSceneRemovedByAnEventOfIt)
{
  panel.state->answerToShapeEvents = true;
  using Event = void (*)(zelk::ShapeSceneObserver&);
  const Event events[] = {
      [](zelk::ShapeSceneObserver& observer) { observer.OnShapeInstanceCreate(nullptr); },
      [](zelk::ShapeSceneObserver& observer) { observer.OnShapeInstanceRemove(nullptr); },
      [](zelk::ShapeSceneObserver& observer) { observer.OnShapeInstanceVisibility(nullptr, true); },
      [](zelk::ShapeSceneObserver& observer) { observer.OnInstanceCompared(nullptr); },
  };
  for (const Event event : events) {
    GetReports().OnSceneAdded(scene);
    panel.state->onCall = [&](const std::string& call) {
      if (call != "OnSceneRemoved") {
        GetReports().OnSceneRemoved(scene);
      }
    };

    event(*scene->observer);

    EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
    EXPECT_EQ(scene->observer, nullptr);
  }
}

TEST_F(SceneEvents, AReferenceToTheSceneThatEndsMeanwhile_IsNotReadAgain)
{
  panel.state->needsTooltips = true;
  du::SmartPtr<zelk::Scene> given = fresh;
  panel.host.onCall = [&](const std::string&) { given.Reset(); };

  panel.gui->OnSceneAdded(given);
  EXPECT_NE(panel.gui->GetLog(fresh), nullptr);

  panel.host.onCall = nullptr;
  panel.state->tooltipsQuestions.clear();
  panel.state->onCall = [&](const std::string&) { given.Reset(); };
  given = fresh;
  panel.gui->OnSceneRemoved(given);
  EXPECT_THAT(panel.state->tooltipsQuestions, ElementsAre(fresh));
}

}  // namespace
