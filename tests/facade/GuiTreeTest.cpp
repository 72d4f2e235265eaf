#include "guitree/GuiTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "guitree/TreeController.h"
#include "testsupport/Panel.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Panel;

const std::vector<std::string> s_initialiseCalls{
    "InitialiseBeforePopulate()",
    "SetSceneManagerObserver(yes)",
    "StoreExpandedAndFirstVisibleBeforePopulate(false)",
    "StartTreeUpdate()",
    "ClearTree()",
    "IsTreeVisibleInUI() -> true",
    "IsValidView(null) -> true",
    "InstanceCreate(root, parent=null, controller=no, assoc=false)",
    "InstanceCreate(a, parent=root, controller=no, assoc=false)",
    "UpdateTreeTable()",
    "RestoreExpandedAfterPopulate()",
    "FinishTreeUpdate()",
    "RestoreFirstVisible()",
    "UpdateMarkedInsts(null)",
    "ContentHasChanged()",
    "UpdateQuickSearchResults(true, view=null, filterNeeded=false)",
    "UpdateFilterUI()",
    "UpdateStatusBar()",
};

TEST(GuiTree, StartsEmptyWithAController)
{
  const auto manager = du::MakeSmart<dom::ManagedObject>();
  const guitree::GuiTree gui(manager);

  EXPECT_EQ(gui.GetGuiInterface(), nullptr);
  EXPECT_EQ(gui.GetTreeState(), nullptr);
  EXPECT_EQ(gui.GetBaseTree(), nullptr);
  EXPECT_EQ(gui.GetCurrentView(), nullptr);
  EXPECT_EQ(gui.GetManagedObject(), manager);
  EXPECT_EQ(gui.GetSelectionManager(), nullptr);
  EXPECT_EQ(gui.GetAssocHlightColor(), 0u);
  EXPECT_EQ(gui.GetFilteredTree(), nullptr);
  EXPECT_EQ(gui.GetCurShapeScene(), nullptr);
  EXPECT_EQ(gui.GetCurrentLog(), nullptr);
  EXPECT_NE(gui.GetTreeController(), nullptr);
}

TEST(GuiTree, StoresWhatItIsGiven)
{
  Panel panel("root");

  panel.gui->SetBaseTree(panel.kernel.Get());

  EXPECT_EQ(panel.gui->GetBaseTree(), panel.kernel.Get());
  EXPECT_EQ(panel.gui->GetGuiInterface(), &panel.host);
  EXPECT_EQ(panel.gui->GetTreeState(), panel.state.Get());
  EXPECT_THAT(panel.host.Calls(), IsEmpty());
}

TEST(GuiTree, Initialise_MakesItsCallsInOrder)
{
  Panel panel("root[a]");

  panel.gui->Initialise(panel.world);

  EXPECT_EQ(panel.host.TakeCalls(), s_initialiseCalls);
  EXPECT_THAT(panel.state->calls, ElementsAre("Initialise_GetZelkTree(null)", "CreateAndRegisterTreeObserver()"));
  EXPECT_EQ(panel.gui->GetBaseTree(), panel.kernel.Get());
}

TEST(GuiTree, Initialise_ObservesTheTreeAfterTheHostIsPrepared)
{
  Panel panel("root");
  std::vector<std::string> statesCalls;
  panel.host.onCall = [&](const std::string& line) {
    if (line == "InitialiseBeforePopulate()") {
      statesCalls = panel.state->calls;
    }
  };

  panel.gui->Initialise(panel.world);

  EXPECT_THAT(statesCalls, ElementsAre("Initialise_GetZelkTree(null)"));
}

TEST(GuiTree, Initialise_WithANullWorld_CallsNobody)
{
  Panel panel("root");

  panel.gui->Initialise(nullptr);

  EXPECT_THAT(panel.host.Calls(), IsEmpty());
  EXPECT_THAT(panel.state->calls, IsEmpty());
  EXPECT_EQ(panel.gui->GetBaseTree(), nullptr);
}

TEST(GuiTree, Initialise_WithANullWorldAfterAGoodOne_LeavesEverythingElse)
{
  Panel panel("root[a]");
  panel.Initialise();
  const auto observer = panel.host.answers.sceneManagerObserver;

  panel.gui->Initialise(nullptr);

  EXPECT_THAT(panel.host.Calls(), IsEmpty());
  EXPECT_THAT(panel.state->calls, IsEmpty());
  EXPECT_EQ(panel.gui->GetBaseTree(), panel.kernel.Get());
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "root"));
}

TEST(GuiTree, Initialise_AgainAfterClose_DoesTheSameWithANewObserver)
{
  Panel panel("root[a]");
  panel.Initialise();
  const auto observer = panel.host.answers.sceneManagerObserver;
  panel.gui->Close();

  panel.gui->Initialise(panel.world);

  EXPECT_EQ(panel.host.TakeCalls(), s_initialiseCalls);
  EXPECT_NE(panel.host.answers.sceneManagerObserver, observer);
}

TEST(GuiTree, Initialise_AgainWithoutClose_DoesTheSameWithANewObserver)
{
  Panel panel("root[a]");
  panel.Initialise();
  const auto observer = panel.host.answers.sceneManagerObserver;

  panel.gui->Initialise(panel.world);

  EXPECT_EQ(panel.host.TakeCalls(), s_initialiseCalls);
  EXPECT_NE(panel.host.answers.sceneManagerObserver, observer);
}

TEST(GuiTree, Initialise_FollowsTheTreeThatTheStateNames)
{
  Panel panel("root[a]");
  panel.Initialise();
  const testsupport::NamedTree other("other");
  panel.state->baseTree = other.Get();

  panel.gui->Initialise(panel.world);

  EXPECT_EQ(panel.gui->GetBaseTree(), other.Get());
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("other"));
}

TEST(GuiTree, Initialise_WithoutATree_PopulatesNothing)
{
  Panel panel("root");
  panel.state->baseTree = nullptr;

  panel.gui->Initialise(panel.world);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InitialiseBeforePopulate()", "SetSceneManagerObserver(yes)",
                                                  "UpdateFilterUI()", "UpdateStatusBar()"));
}

TEST(GuiTree, Initialise_WithoutAState_StoresTheWorldAndStops)
{
  Panel panel("root");
  panel.gui->SetTreeState(nullptr);

  panel.gui->Initialise(panel.world);

  EXPECT_THAT(panel.host.Calls(), IsEmpty());
}

TEST(GuiTree, GetLogs_WithNoScene_LeavesANonEmptyVector)
{
  Panel panel("root");
  panel.Initialise();
  guitree::SceneInfoLog log(panel.gui.Get());
  std::vector<guitree::SceneInfoLog*> logs{&log};

  panel.gui->GetLogs(logs);

  EXPECT_THAT(logs, ElementsAre(&log));
  EXPECT_EQ(panel.gui->GetLog(nullptr), nullptr);
}

TEST(GuiTree, Close_TwiceIsHarmless)
{
  Panel panel("root[a]");
  panel.Initialise();

  panel.gui->Close();
  panel.gui->Close();

  EXPECT_THAT(panel.host.Calls(), IsEmpty());
  EXPECT_EQ(panel.gui->GetBaseTree(), panel.kernel.Get());
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "root"));
}

TEST(GuiTree, Close_BeforeInitialise_DoesNothing)
{
  Panel panel("root");

  panel.gui->Close();

  EXPECT_THAT(panel.host.Calls(), IsEmpty());
}

TEST(GuiTree, Close_LeavesTheHostsObserverWithoutEffect)
{
  Panel panel("root");
  panel.Initialise();
  const auto observer = panel.host.answers.sceneManagerObserver;
  panel.gui->Close();
  panel.gui.Reset();
  panel.state.Reset();

  observer->OnActiveViewChanged(nullptr);
  observer->OnSceneAdded(nullptr);
  observer->OnSceneRemoved(nullptr);
  observer->OnViewRemoved(nullptr);

  EXPECT_THAT(panel.host.Calls(), IsEmpty());
}

TEST(GuiTree, Reset_TakesThePanelOffItsTree)
{
  Panel panel("root[a]");
  panel.Initialise();

  panel.gui->Reset();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("Reset()", "UpdateTreeTable()"));
  EXPECT_THAT(panel.state->calls, ElementsAre("DeregisterTreeObserver()"));
  EXPECT_EQ(panel.gui->GetBaseTree(), nullptr);
  EXPECT_THAT(panel.GetShownNames(), IsEmpty());
}

TEST(GuiTree, Reset_WithoutAState_LetsGoOfTheTree)
{
  Panel panel("root");
  panel.ShowTree();
  panel.gui->SetTreeState(nullptr);

  panel.gui->Reset();

  EXPECT_EQ(panel.gui->GetBaseTree(), nullptr);
}

TEST(GuiTree, ACopySharesEveryMember)
{
  Panel panel("root");
  panel.Initialise();

  // Only one of the two may be destroyed, so the copy stays in memory that lives as long as the process.
  alignas(guitree::GuiTree) static std::byte memory[sizeof(guitree::GuiTree)];
  const auto* copy = new (memory) guitree::GuiTree(*panel.gui);

  EXPECT_EQ(copy->GetBaseTree(), panel.gui->GetBaseTree());
  EXPECT_EQ(copy->GetTreeState(), panel.gui->GetTreeState());
  EXPECT_EQ(copy->GetTreeController(), panel.gui->GetTreeController());
  EXPECT_EQ(copy->GetGuiInterface(), panel.gui->GetGuiInterface());
}

/// Runs `Initialise` once for each call that it makes, and lets the host drop its last reference from inside that call.
TEST(GuiTree, AHostMayDropItsLastReferenceFromInsideAnyCallOfInitialise)
{
  for (std::size_t i = 0; i < s_initialiseCalls.size(); ++i) {
    Panel panel("root[a]");
    std::size_t index = 0;
    panel.host.onCall = [&](const std::string&) {
      if (index++ == i) {
        panel.gui.Reset();
        panel.state.Reset();
      }
    };
    guitree::GuiTree* gui = panel.gui.Get();

    gui->Initialise(panel.world);

    EXPECT_EQ(panel.host.TakeCalls(), s_initialiseCalls);
    EXPECT_EQ(panel.gui, nullptr);
  }
}

TEST(GuiTree, AHostMayTakeTheStateAwayWhileItIsPrepared)
{
  Panel panel("root");
  panel.host.onCall = [&](const std::string& line) {
    if (line == "InitialiseBeforePopulate()") {
      panel.gui->SetTreeState(nullptr);
    }
  };

  panel.gui->Initialise(panel.world);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InitialiseBeforePopulate()", "SetSceneManagerObserver(yes)",
                                                  "UpdateFilterUI()", "UpdateStatusBar()"));
}

TEST(GuiTree, MayLiveOnTheStack)
{
  const testsupport::NamedTree kernel("root[a]");
  testsupport::RecordingHost host;
  const auto world = du::MakeSmart<testsupport::PlainWorld>();
  guitree::GuiTree gui(nullptr);
  const auto state = du::MakeSmart<testsupport::ScriptedTreeState>(gui);
  state->baseTree = kernel.Get();
  gui.SetGuiInterface(&host);
  gui.SetTreeState(state);

  gui.Initialise(world);
  gui.Close();

  EXPECT_EQ(host.TakeCalls(), s_initialiseCalls);
}

}  // namespace
