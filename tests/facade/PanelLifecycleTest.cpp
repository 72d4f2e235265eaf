#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "guitree/TreeController.h"
#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/RecordingSelectionManager.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::MakeView;
using testsupport::NamedTree;
using testsupport::Panel;
using testsupport::PlainShapeScene;
using testsupport::PlainShapeView;
using testsupport::RecordingHost;
using testsupport::RecordingSelectionManager;
using testsupport::ScriptedTreeState;

/// A panel whose world has a selection, not initialised.
class PanelLifecycle : public testing::Test {
protected:
  PanelLifecycle() { panel.world->selectionManager = manager; }
  ~PanelLifecycle() override
  {
    panel.host.onCall = nullptr;
    if (panel.state) {
      panel.state->onCall = nullptr;
    }
    if (panel.gui) {
      panel.gui->Reset();
      panel.gui->Close();
    }
  }

  /// Runs `action` once, inside the call of that line.
  template <typename Action>
  void OnCall(const std::string& wanted, Action action)
  {
    panel.host.onCall = [this, wanted, action](const std::string& line) {
      if (line == wanted) {
        ++callCount;
        action();
      }
    };
  }

  du::SmartPtr<RecordingSelectionManager> manager = du::MakeSmart<RecordingSelectionManager>();
  Panel panel{"root[a]"};
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeView> view = MakeView<PlainShapeView>(scene);
  int callCount = 0;
};

TEST_F(PanelLifecycle, TheSelectionIsBoundWhenTheHostIsPrepared)
{
  OnCall("InitialiseBeforePopulate()", [&] {
    EXPECT_THAT(manager->calls, ElementsAre("RegisterObserver(0)", "RegisterObserver(4)"));
    EXPECT_EQ(panel.gui->GetSelectionManager(), manager);
  });

  panel.gui->Initialise(panel.world);

  EXPECT_EQ(callCount, 1);
}

TEST_F(PanelLifecycle, TheTreeIsObservedBeforeTheHostMayReportScenes)
{
  OnCall("SetSceneManagerObserver(yes)",
         [&] { EXPECT_THAT(panel.state->calls, Contains("CreateAndRegisterTreeObserver()")); });

  panel.gui->Initialise(panel.world);

  EXPECT_EQ(callCount, 1);
}

TEST_F(PanelLifecycle, InitialiseTakesBackAViewThatTheHostReportsThroughTheNewObserver)
{
  du::SmartPtr<zelk::View> seen;
  panel.host.answers.onSceneManagerObserver = [&] {
    panel.host.answers.sceneManagerObserver->OnActiveViewChanged(view);
    seen = panel.gui->GetCurrentView();
  };

  panel.gui->Initialise(panel.world);

  EXPECT_EQ(seen, view);
  EXPECT_EQ(panel.gui->GetCurrentView(), nullptr);
  EXPECT_EQ(panel.gui->GetSelectionManager(), manager);
  EXPECT_NE(manager->selectionObserver, nullptr);
}

TEST_F(PanelLifecycle, Initialise_WithANullWorld_LeavesNoSelectionForTheNextChangeToNoView)
{
  panel.Initialise();
  panel.host.answers.sceneManagerObserver->OnActiveViewChanged(view);

  panel.gui->Initialise(nullptr);
  panel.host.answers.sceneManagerObserver->OnActiveViewChanged(nullptr);

  EXPECT_EQ(panel.gui->GetSelectionManager(), nullptr);
  EXPECT_EQ(manager->selectionObserver, nullptr);
}

TEST_F(PanelLifecycle, AfterASecondInitialise_TheFirstObserverReportsToNobody)
{
  panel.Initialise();
  const auto first = panel.host.answers.sceneManagerObserver;
  panel.Initialise();

  first->OnActiveViewChanged(view);
  first->OnSceneAdded(scene);
  first->OnSceneRemoved(scene);
  first->OnViewRemoved(view);

  EXPECT_THAT(panel.host.Calls(), IsEmpty());
  EXPECT_EQ(panel.gui->GetCurrentView(), nullptr);
  EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
}

TEST_F(PanelLifecycle, Reset_EndsTheRegistrationAtTheViewAndTheSelection)
{
  panel.Initialise();
  panel.host.answers.sceneManagerObserver->OnActiveViewChanged(view);
  scene->selectionManager = manager;
  panel.host.answers.sceneManagerObserver->OnActiveViewChanged(MakeView<PlainShapeView>(nullptr));
  panel.host.answers.sceneManagerObserver->OnActiveViewChanged(view);
  view->calls.clear();
  manager->calls.clear();

  panel.gui->Reset();

  EXPECT_THAT(view->calls, ElementsAre("UnregisterObserver"));
  EXPECT_EQ(view->observer, nullptr);
  EXPECT_THAT(manager->calls, ElementsAre("UnregisterObserver(0)", "UnregisterObserver(4)"));
  EXPECT_EQ(panel.gui->GetCurrentView(), view);
}

TEST_F(PanelLifecycle, Reset_EndsTheRegistrationAtTheTreeWhileItIsStillThere)
{
  panel.Initialise();
  int seen = 0;
  panel.state->onCall = [&](const std::string& call) {
    if (call == "DeregisterTreeObserver()") {
      ++seen;
      EXPECT_EQ(panel.gui->GetBaseTree(), panel.kernel.Get());
      EXPECT_EQ(panel.gui->GetSelectionManager(), manager);
    }
  };

  panel.gui->Reset();

  EXPECT_EQ(seen, 1);
  EXPECT_EQ(panel.gui->GetBaseTree(), nullptr);
}

TEST_F(PanelLifecycle, AnEndWithoutAClose_EndsTheLogsBeforeTheState)
{
  panel.Initialise();
  panel.host.answers.sceneManagerObserver->OnSceneAdded(scene);
  const std::unique_ptr<guitree::SceneInfoLog> log(panel.gui->GetLog(scene));
  bool isStateGone = false;
  panel.state->onEnd = [&] {
    isStateGone = true;
    EXPECT_EQ(log->GetScene(), nullptr);
    scene->observer->OnUnsyncInstances(true);
  };
  panel.state.Reset();
  static_cast<void>(panel.host.TakeCalls());

  panel.gui.Reset();

  EXPECT_TRUE(isStateGone);
  EXPECT_THAT(panel.host.Calls(), IsEmpty());
  EXPECT_EQ(log->GetUnloadedTypeIcon(panel.kernel["a"].Get()), -1);
}

TEST(PanelCopies, ACopyTellsOfItselfWhetherItLives)
{
  Panel panel("root");

  // Only one of the two may be destroyed, so the copy stays in memory that lives as long as the process.
  alignas(guitree::GuiTree) static std::byte memory[sizeof(guitree::GuiTree)];
  const auto* copy = new (memory) guitree::GuiTree(*panel.gui);
  const auto liveness = panel.gui->GetLiveness();
  panel.state.Reset();
  panel.gui->SetTreeState(nullptr);
  guitree::GuiTree* source = panel.gui.Get();

  EXPECT_EQ(*copy->GetLiveness(), copy);
  EXPECT_EQ(*liveness, source);
  panel.gui.Reset();
  EXPECT_EQ(*liveness, nullptr);
  EXPECT_EQ(*copy->GetLiveness(), copy);
}

TEST(PanelCopies, AStateOfAnAssignedPanel_KnowsThatThePanelHasGone)
{
  const NamedTree kernel("root");
  RecordingHost host;
  auto panel = du::MakeSmart<guitree::GuiTree>(nullptr);
  const auto state = du::MakeSmart<ScriptedTreeState>(*panel);
  // The assignment drops the controller, and the source may not be destroyed any more.
  const std::unique_ptr<guitree::TreeController> dropped(panel->GetTreeController());
  alignas(guitree::GuiTree) static std::byte memory[sizeof(guitree::GuiTree)];
  const auto* source = new (memory) guitree::GuiTree(nullptr);

  *panel = *source;
  panel->SetBaseTree(kernel.Get());
  panel->SetGuiInterface(&host);
  EXPECT_EQ(state->GetBaseRoot(), kernel["root"]);
  panel.Reset();

  EXPECT_EQ(state->GetBaseRoot(), nullptr);
  state->PopulateTree(false);
  EXPECT_THAT(host.Calls(), IsEmpty());
}

}  // namespace
