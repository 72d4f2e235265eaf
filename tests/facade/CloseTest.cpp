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

/// A panel that shows a scene. The log of a scene that is still there at the close keeps its memory for good; that leak
/// is meant, and listed for the leak checker.
class CloseWithScenes : public testing::Test {
protected:
  CloseWithScenes()
  {
    panel.Initialise();
    reports = panel.host.answers.sceneManagerObserver;
    reports->OnSceneAdded(scene);
    reports->OnSceneAdded(other);
    reports->OnActiveViewChanged(view);
    static_cast<void>(panel.host.TakeCalls());
  }

  Panel panel{"root[a]"};
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeScene> other = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeView> view = MakeView<PlainShapeView>(scene);
  du::SmartPtr<guitree::GuiInterface::SceneManagerObserver> reports;
};

TEST_F(CloseWithScenes, EndsTheLogsAndKeepsTheRest)
{
  guitree::SceneInfoLog* log = panel.gui->GetLog(scene);

  panel.gui->Close();

  EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
  EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
  EXPECT_EQ(log->GetScene(), nullptr);
  EXPECT_THAT(scene->calls, ElementsAre("RegisterObserver(11, replay)", "UnregisterObserver"));
  EXPECT_THAT(other->calls, ElementsAre("RegisterObserver(11, replay)", "UnregisterObserver"));
  EXPECT_EQ(panel.gui->GetCurrentView(), view);
  EXPECT_EQ(panel.gui->GetBaseTree(), panel.kernel.Get());
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(CloseWithScenes, LeavesLateReportsWithoutEffect)
{
  panel.gui->Close();

  reports->OnSceneRemoved(scene);
  reports->OnSceneAdded(scene);
  reports->OnActiveViewChanged(nullptr);
  reports->OnViewRemoved(view);

  EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
  EXPECT_EQ(panel.gui->GetCurrentView(), view);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(CloseWithScenes, FromInsideTheReportOfAScene_LeavesThatSceneAlone)
{
  const auto fresh = du::MakeSmart<PlainShapeScene>();
  panel.state->needsTooltips = true;
  panel.host.onCall = [this](const std::string& line) {
    if (line == "UpdateTooltips()") {
      panel.gui->Close();
    }
  };

  reports->OnSceneAdded(fresh);

  EXPECT_EQ(panel.gui->GetLog(fresh), nullptr);
  EXPECT_THAT(fresh->calls, IsEmpty());
}

TEST_F(CloseWithScenes, InitialiseAgain_TakesTheScenesOnAnew)
{
  panel.gui->Close();
  panel.gui->Initialise(panel.world);

  panel.host.answers.sceneManagerObserver->OnSceneAdded(scene);

  EXPECT_NE(panel.gui->GetLog(scene), nullptr);
  EXPECT_NE(scene->observer, nullptr);
  panel.gui->Close();
}

TEST_F(CloseWithScenes, APanelThatEndsWithoutAClose_LeavesItsObserversWithoutEffect)
{
  panel.gui.Reset();
  panel.state.Reset();

  scene->observer->OnShapeInstanceCreate(nullptr);
  scene->observer->OnEndUpdate();
  view->observer->OnHighlightColorsChange();
  reports->OnActiveViewChanged(nullptr);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

}  // namespace
