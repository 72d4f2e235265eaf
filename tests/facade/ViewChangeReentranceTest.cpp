#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/RecordingSelectionManager.h"

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testsupport::MakeView;
using testsupport::Panel;
using testsupport::PlainShapeScene;
using testsupport::PlainShapeView;
using testsupport::RecordingSelectionManager;

/// An initialised panel with a highlighted row, and a scene with a log. The registration of a view replays its colours,
/// with `replays`.
struct Stage {
  explicit Stage(bool reloads = false, bool replays = true)
  {
    panel.UseSelController()->highlighted = {panel.kernel["a"]};
    scene->selectionManager = du::MakeSmart<RecordingSelectionManager>();
    panel.Initialise();
    panel.state->reloadsOnViewChange = reloads;
    GetReports().OnSceneAdded(scene);
    if (replays) {
      view->replay = otherView->replay = [](zelk::ShapeViewObserver& observer) { observer.OnHighlightColorsChange(); };
    }
    view->settings.name = "view";
    otherView->settings.name = "otherView";
    static_cast<void>(panel.host.TakeCalls());
  }
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  ~Stage()
  {
    panel.host.onCall = nullptr;
    GetReports().OnSceneRemoved(scene);
    if (panel.gui) {
      panel.gui->Reset();
      panel.gui->Close();
    }
  }

  /// Runs `action` once, inside the call with this index.
  template <typename Action>
  void OnCallAt(std::size_t wanted, Action action)
  {
    panel.host.onCall = [this, wanted, action](const std::string&) {
      if (++callCount == wanted + 1) {
        action();
      }
    };
  }
  /// Runs `action` once, inside the first call of that line.
  template <typename Action>
  void OnFirst(const std::string& wanted, Action action)
  {
    panel.host.onCall = [this, wanted, action](const std::string& line) {
      if (line == wanted && ++callCount == 1) {
        action();
      }
    };
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *panel.host.answers.sceneManagerObserver;
  }

  Panel panel{"root[a]"};
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeView> view = MakeView<PlainShapeView>(scene);
  du::SmartPtr<PlainShapeView> otherView = MakeView<PlainShapeView>(scene);
  std::size_t callCount = 0;
};

[[nodiscard]] std::vector<std::string> ListCallsOfAViewChange(bool reloads, bool replays = true)
{
  Stage stage(reloads, replays);
  stage.GetReports().OnActiveViewChanged(stage.view);
  return stage.panel.host.TakeCalls();
}

/// One view change for each call that it makes.
class ViewChangeReentrance : public testing::TestWithParam<bool> {
protected:
  const std::vector<std::string> expected = ListCallsOfAViewChange(GetParam());
  /// A replay asks the state that is current, which is not always the one of the view change.
  const std::vector<std::string> expectedWithoutReplay = ListCallsOfAViewChange(GetParam(), false);
};

TEST_P(ViewChangeReentrance, AHostMayDropPanelAndStateFromInsideAnyCall)
{
  ASSERT_GT(expected.size(), 10u);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    Stage stage(GetParam());
    stage.OnCallAt(i, [&] {
      stage.panel.gui.Reset();
      stage.panel.state.Reset();
    });

    stage.GetReports().OnActiveViewChanged(stage.view);

    EXPECT_EQ(stage.panel.host.TakeCalls(), expected);
    EXPECT_EQ(stage.panel.gui, nullptr);
  }
}

TEST_P(ViewChangeReentrance, AHostThatCallsThePanelItself_MayDropItFromInsideAnyCall)
{
  for (std::size_t i = 0; i < expected.size(); ++i) {
    Stage stage(GetParam());
    stage.OnCallAt(i, [&] {
      stage.panel.gui.Reset();
      stage.panel.state.Reset();
    });
    guitree::GuiTree* gui = stage.panel.gui.Get();

    gui->OnActiveViewChanged(stage.view);

    EXPECT_EQ(stage.panel.host.TakeCalls(), expected);
  }
}

TEST_P(ViewChangeReentrance, AStateThatIsTakenAwayFromInsideAnyCall_SeesTheChangeToItsEnd)
{
  for (std::size_t i = 0; i < expectedWithoutReplay.size(); ++i) {
    Stage stage(GetParam(), false);
    bool isGone = false;
    stage.panel.state->onEnd = [&] { isGone = true; };
    stage.OnCallAt(i, [&] {
      stage.panel.gui->SetTreeState(nullptr);
      stage.panel.state.Reset();
      EXPECT_FALSE(isGone) << expectedWithoutReplay[i];
    });

    stage.GetReports().OnActiveViewChanged(stage.view);

    EXPECT_EQ(stage.panel.host.TakeCalls(), expectedWithoutReplay);
    EXPECT_TRUE(isGone);
  }
}

TEST_P(ViewChangeReentrance, AStateMayTakeItselfAwayWhenItIsAskedForItsFilter)
{
  Stage stage(GetParam(), false);
  bool isGone = false;
  stage.panel.state->onEnd = [&] { isGone = true; };
  stage.panel.state->onCall = [&](const std::string& call) {
    if (call == "GetFilter") {
      stage.panel.gui->SetTreeState(nullptr);
      stage.panel.state.Reset();
      EXPECT_FALSE(isGone);
    }
  };

  stage.GetReports().OnActiveViewChanged(stage.view);

  EXPECT_EQ(stage.panel.host.TakeCalls(), expectedWithoutReplay);
  EXPECT_TRUE(isGone);
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutARefill, ViewChangeReentrance, testing::Bool());

TEST(ViewChangeInsideAnother, AHighlightThatIsShownMeanwhile_MayBringTheEndOfAllViews)
{
  Stage stage;
  bool isViewNew = false;
  bool isDone = false;
  stage.panel.host.onCall = [&](const std::string& line) {
    isViewNew = isViewNew || line == "UpdateFilterUI()";
    if (isViewNew && !isDone && line == "StartTreeUpdate()") {
      isDone = true;
      stage.GetReports().OnActiveViewChanged(nullptr);
    }
  };

  stage.GetReports().OnActiveViewChanged(stage.view);

  EXPECT_TRUE(isDone);
  EXPECT_EQ(stage.panel.gui->GetCurrentView(), nullptr);
  EXPECT_EQ(stage.view->observer, nullptr);
}

TEST(ViewChangeInsideAnother, FromTheClearedSelection_LeavesNoObserverWhenTheOuterOneEndsAllViews)
{
  Stage stage;
  stage.GetReports().OnActiveViewChanged(stage.view);
  stage.OnFirst("ClearSelection()", [&] { stage.GetReports().OnActiveViewChanged(stage.otherView); });

  stage.GetReports().OnActiveViewChanged(nullptr);

  EXPECT_EQ(stage.panel.gui->GetCurrentView(), nullptr);
  EXPECT_THAT(stage.otherView->calls, Contains("RegisterObserver(replay)"));
  EXPECT_EQ(stage.otherView->observer, nullptr);
  EXPECT_EQ(stage.view->observer, nullptr);
}

TEST(ViewChangeInsideAnother, FromTheClearedSelection_IsTheOneThatTheOuterOneComesFrom)
{
  Stage stage;
  const auto clashReport = MakeView<testsupport::PlainClashReportView>(stage.scene);
  stage.OnFirst("ClearSelection()", [&] { stage.GetReports().OnActiveViewChanged(clashReport); });

  stage.GetReports().OnActiveViewChanged(stage.view);

  EXPECT_EQ(stage.panel.host.TakeCalls().back(), "PostOnActiveViewChanged(view, wasClashReport=true)");
}

TEST(ViewChangeInsideAnother, FromTheClearedSelection_LeavesNoObserverWhenTheOuterViewIsOfAnIncompatibleScene)
{
  Stage stage;
  stage.OnFirst("ClearSelection()", [&] {
    stage.GetReports().OnActiveViewChanged(stage.otherView);
    stage.panel.state->isCompatibleScene = false;
  });

  stage.GetReports().OnActiveViewChanged(stage.view);

  EXPECT_EQ(stage.panel.gui->GetCurrentView(), stage.view);
  EXPECT_THAT(stage.otherView->calls, Contains("RegisterObserver(replay)"));
  EXPECT_EQ(stage.otherView->observer, nullptr);
  EXPECT_EQ(stage.view->observer, nullptr);
}

TEST(ViewChangeInsideAnother, AtTheStatusBar_LeavesTheOuterOneItsOwnViewForTheLastCall)
{
  Stage stage;
  stage.OnFirst("UpdateStatusBar()", [&] { stage.GetReports().OnActiveViewChanged(stage.otherView); });

  stage.GetReports().OnActiveViewChanged(stage.view);

  EXPECT_THAT(stage.panel.host.Calls(), Contains("PostOnActiveViewChanged(otherView, wasClashReport=false)"));
  EXPECT_EQ(stage.panel.host.Calls().back(), "PostOnActiveViewChanged(view, wasClashReport=false)");
  EXPECT_EQ(stage.panel.gui->GetCurrentView(), stage.otherView);
  EXPECT_NE(stage.otherView->observer, nullptr);
  EXPECT_EQ(stage.view->observer, nullptr);
}

TEST(ViewChangeInsideAnother, AtAnyCall_LeavesAtMostTheObserverOfTheCurrentView)
{
  for (const bool reloads : {false, true}) {
    const std::size_t count = ListCallsOfAViewChange(reloads).size();
    for (std::size_t i = 0; i < count; ++i) {
      Stage stage(reloads);
      stage.OnCallAt(i, [&] { stage.GetReports().OnActiveViewChanged(stage.otherView); });

      stage.GetReports().OnActiveViewChanged(stage.view);

      for (const auto& view : {stage.view, stage.otherView}) {
        EXPECT_EQ(view->observer != nullptr, view == stage.panel.gui->GetCurrentView()) << i;
      }
    }
  }
}

TEST(ViewChangeInsideAnother, ASceneThatIsRemovedMeanwhile_IsNotRepainted)
{
  Stage stage;
  stage.OnFirst("UpdateStatusBar()", [&] { stage.GetReports().OnSceneRemoved(stage.scene); });

  stage.GetReports().OnActiveViewChanged(stage.view);

  EXPECT_EQ(stage.panel.gui->GetCurrentLog(), nullptr);
  EXPECT_THAT(stage.panel.host.Calls(), Not(Contains("UpdateVisAndTypeIcons(visible={}, typeIcons=yes)")));
}

TEST(ViewChangeInsideAnother, ASceneThatIsRemovedByItsRepaint_TakesItsChangesAlong)
{
  Stage stage;
  stage.OnFirst("UpdateVisAndTypeIcons(visible={}, typeIcons=yes)",
                [&] { stage.GetReports().OnSceneRemoved(stage.scene); });

  stage.GetReports().OnActiveViewChanged(stage.view);

  std::vector<guitree::SceneInfoLog*> logs;
  stage.panel.gui->GetLogs(logs);
  EXPECT_THAT(logs, IsEmpty());
  EXPECT_EQ(stage.panel.gui->GetCurrentLog(), nullptr);
  EXPECT_EQ(stage.panel.host.Calls().back(), "PostOnActiveViewChanged(view, wasClashReport=false)");
}

}  // namespace
