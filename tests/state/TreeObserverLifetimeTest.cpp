#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "testsupport/WorldPanel.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::ScriptedWorldTreeState;
using testsupport::WorldPanel;

using Observer = guitree::WorldTreeStateTreeObserver;

struct Callback {
  const char* name;
  std::function<void(Observer&, const WorldPanel&)> run;
};

void PrintTo(const Callback& callback, std::ostream* out)
{
  *out << callback.name;
}

[[nodiscard]] du::SmartPtr<zelk::ViewableData> MakeViewable(const WorldPanel& panel)
{
  const auto data = du::MakeSmart<zelk::ViewableData>();
  data->viewable = panel.kernel["b"];
  return data;
}

[[nodiscard]] std::vector<Callback> ListCallbacks()
{
  return {
      {"OnDestroy", [](Observer& observer, const WorldPanel&) { observer.OnDestroy(); }},
      {"OnEndUpdate",
       [](Observer& observer, const WorldPanel&) {
         observer.SetChanged();
         observer.SetRepopulateNeeded();
         observer.SetNodeNamesChanged();
         observer.OnEndUpdate();
       }},
      {"OnInstanceCreate",
       [](Observer& observer, const WorldPanel& panel) {
         observer.OnInstanceCreate(panel.kernel["a"], panel.kernel["root"], {});
       }},
      {"OnInstanceRemove",
       [](Observer& observer, const WorldPanel& panel) {
         observer.OnInstanceRemove(panel.kernel["a"], panel.kernel["root"]);
       }},
      {"OnInstanceRemoveWithARefillDue",
       [](Observer& observer, const WorldPanel& panel) {
         observer.SetRepopulateNeeded();
         observer.OnInstanceRemove(panel.kernel["a"], panel.kernel["root"]);
       }},
      {"OnInstanceName",
       [](Observer& observer, const WorldPanel& panel) { observer.OnInstanceName(panel.kernel["a"]); }},
      {"OnDisplayNamesChanged", [](Observer& observer, const WorldPanel&) { observer.OnDisplayNamesChanged(); }},
      {"OnTreeColumnsChanged", [](Observer& observer, const WorldPanel&) { observer.OnTreeColumnsChanged(); }},
      {"OnInstanceExpanded",
       [](Observer& observer, const WorldPanel& panel) { observer.OnInstanceExpanded(panel.kernel["a"]); }},
      {"OnInstanceCollapsed",
       [](Observer& observer, const WorldPanel& panel) { observer.OnInstanceCollapsed(panel.kernel["a"]); }},
      {"OnInstanceProxyToNode",
       [](Observer& observer, const WorldPanel& panel) { observer.OnInstanceProxyToNode(panel.kernel["a"]); }},
      {"OnInstanceAddViewable",
       [](Observer& observer, const WorldPanel& panel) {
         observer.OnInstanceAddViewable(panel.kernel["a"], MakeViewable(panel));
       }},
      {"OnInstanceRemoveViewable",
       [](Observer& observer, const WorldPanel& panel) {
         observer.OnInstanceRemoveViewable(panel.kernel["a"], MakeViewable(panel));
       }},
      {"OnPropertyGroupsLoaded", [](Observer& observer, const WorldPanel&) { observer.OnPropertyGroupsLoaded(); }},
      {"OnUnregister", [](Observer& observer, const WorldPanel&) { observer.OnUnregister(); }},
  };
}

/// A callback that comes when there is nobody to work for any more.
class LateCallback : public testing::TestWithParam<Callback> {
protected:
  LateCallback()
  {
    panel.Initialise();
    panel.host.answers.isShowingAltPartNames = true;
    observer = panel.observer;
    panel.observer.Reset();
  }

  void ExpectNothing()
  {
    static_cast<void>(panel.host.TakeCalls());

    GetParam().run(*observer, panel);

    EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  }

  WorldPanel panel{"root[a b]"};
  du::SmartPtr<Observer> observer;
};

TEST_P(LateCallback, AfterDeregistration_DoesNothing)
{
  panel.state->DeregisterTreeObserver();

  EXPECT_EQ(observer->GetTreeState(), nullptr);
  ExpectNothing();
}

TEST_P(LateCallback, AfterTheEndOfTheState_DoesNothing)
{
  panel.gui->SetTreeState(nullptr);
  panel.state.Reset();

  EXPECT_EQ(observer->GetTreeState(), nullptr);
  ExpectNothing();
}

TEST_P(LateCallback, AfterTheEndOfTheGuiTreeWhoseStateLives_DoesNothing)
{
  panel.gui.Reset();

  ExpectNothing();
}

TEST_P(LateCallback, AfterClosingAndTheEndOfEverything_DoesNothing)
{
  panel.gui->Close();
  panel.gui.Reset();
  panel.state.Reset();

  ExpectNothing();
}

TEST_P(LateCallback, AfterItsPlaceWasTaken_DoesNothing)
{
  panel.gui->Initialise(panel.world);
  panel.observer.Reset();

  ExpectNothing();
}

INSTANTIATE_TEST_SUITE_P(Callbacks, LateCallback, testing::ValuesIn(ListCallbacks()),
                         [](const auto& callback) { return callback.param.name; });

class TreeObserverLifetime : public testing::Test {
protected:
  TreeObserverLifetime()
  {
    panel.Initialise();
    panel.observer.Reset();
  }

  WorldPanel panel{"root[a b]"};
};

TEST_F(TreeObserverLifetime, Close_LeavesTheRowsFollowingTheTree)
{
  panel.gui->Close();

  panel.kernel.Add("a", "n");

  EXPECT_THAT(panel.GetShownNames(), Contains("n"));
}

TEST_F(TreeObserverLifetime, WithoutAPanel_TheKernelGoesOnAlone)
{
  panel.gui.Reset();
  panel.state.Reset();

  panel.kernel.Add("a", "n");
  panel.GetTree().Remove(panel.kernel["a"]);
  panel.GetTree().NotifyDisplayNamesChanged();

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(TreeObserverLifetime, AnObserverWhoseStateHasEnded_DoesNotKeepTheTree)
{
  const auto tree = du::MakeSmart<memkernel::Tree>();
  du::SmartPtr<guitree::WorldTreeStateTreeObserver> observer;
  panel.gui->SetBaseTree(tree);
  panel.state->onObserver = [&](const auto& made) { observer = made; };
  panel.state->CreateAndRegisterTreeObserver();
  ASSERT_EQ(observer->GetTree(), tree);
  EXPECT_TRUE(observer->IsRegistered());

  panel.gui->SetTreeState(nullptr);
  panel.state.Reset();

  EXPECT_EQ(observer->GetTree(), nullptr);
  EXPECT_TRUE(observer->IsRegistered());
}

TEST_F(TreeObserverLifetime, AKernelThatClosesItsTree_LeavesThePanelAlone)
{
  panel.GetTree().Close();

  panel.gui->Reset();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("Reset()", "UpdateTreeTable()"));
}

TEST_F(TreeObserverLifetime, AKernelThatClosesItsTreeInsideABurst_EndsTheBurst)
{
  {
    const memkernel::TreeBatch batch(panel.GetTree());
    panel.kernel.Add("a", "n");
    panel.GetTree().Close();
  }

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StartTreeUpdate()", "InstanceCreate(n, parent=a, controller=no, assoc=false)",
                          "FinishTreeUpdate()", "UpdateFilterUI()", "ContentHasChanged()", "UpdateTreeTable()"));
}

TEST_F(TreeObserverLifetime, DeregistrationInsideABurst_HandlesItsEndFirst)
{
  const memkernel::TreeBatch batch(panel.GetTree());
  panel.kernel.Add("a", "n");
  static_cast<void>(panel.host.TakeCalls());

  panel.state->DeregisterTreeObserver();

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("FinishTreeUpdate()", "UpdateFilterUI()", "ContentHasChanged()", "UpdateTreeTable()"));
  panel.kernel.Add("a", "m");
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(TreeObserverLifetime, AStateThatEndsInsideABurst_ClosesTheBracketAndDoesNoMore)
{
  const memkernel::TreeBatch batch(panel.GetTree());
  panel.GetTree().Remove(panel.kernel["a"]);
  static_cast<void>(panel.host.TakeCalls());

  panel.gui->SetTreeState(nullptr);
  panel.state.Reset();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("FinishTreeUpdate()"));
}

TEST_F(TreeObserverLifetime, AGuiTreeThatEndsInsideABurst_ClosesTheBracketWhetherItsStateLivesOrNot)
{
  for (const bool isStateKept : {false, true}) {
    WorldPanel other("root[a]");
    other.Initialise();
    const memkernel::TreeBatch batch(other.GetTree());
    other.kernel.Add("a", "n");
    static_cast<void>(other.host.TakeCalls());
    if (!isStateKept) {
      other.state.Reset();
    }

    other.gui.Reset();
    other.kernel.Add("a", "m");

    EXPECT_THAT(other.host.TakeCalls(), ElementsAre("FinishTreeUpdate()"));
  }
}

TEST_F(TreeObserverLifetime, AGuiTreeThatEndsAfterABurst_ClosesNothing)
{
  panel.kernel.Add("a", "n");
  static_cast<void>(panel.host.TakeCalls());

  panel.gui.Reset();
  panel.state.Reset();

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(TreeObserverLifetime, AStateThatReplacesAnother_FollowsTheTreeInItsPlace)
{
  const auto next = du::MakeSmart<ScriptedWorldTreeState>(*panel.gui);
  panel.gui->SetTreeState(next);
  panel.state = next;
  panel.gui->Initialise(panel.world);
  static_cast<void>(panel.host.TakeCalls());

  panel.kernel.Add("a", "n");

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StartTreeUpdate()", "InstanceCreate(n, parent=a, controller=no, assoc=false)",
                          "FinishTreeUpdate()", "UpdateFilterUI()", "ContentHasChanged()", "UpdateTreeTable()"));
  EXPECT_THAT(panel.GetShownNames(), Contains("n"));
}

TEST_F(TreeObserverLifetime, AStateMayTakeItselfAwayWhenAnObserverAsksForItsFilter)
{
  for (const bool isAboutNames : {true, false}) {
    WorldPanel other("root[a]");
    other.Initialise();
    other.observer.Reset();
    bool isGone = false;
    other.state->onEnd = [&] { isGone = true; };
    other.state->onGetFilter = [&] {
      other.state->onGetFilter = nullptr;
      other.gui->SetTreeState(nullptr);
      other.state.Reset();
      EXPECT_FALSE(isGone);
    };

    if (isAboutNames) {
      other.GetTree().NotifyDisplayNamesChanged();
    } else {
      other.GetTree().NotifyTreeColumnsChanged();
    }

    EXPECT_TRUE(isGone);
  }
}

}  // namespace
