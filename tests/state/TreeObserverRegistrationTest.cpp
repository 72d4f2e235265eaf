// When a world tree state observes its tree, and who keeps the observer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "testsupport/PlainScenes.h"
#include "testsupport/RecordingManagedObject.h"
#include "testsupport/WorldPanel.h"

namespace {

using guitree::WorldTreeStateTreeObserver;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::RecordingManagedObject;
using testsupport::ScriptedWorldTreeState;
using testsupport::WorldPanel;

/// An empty tree that writes down who registers.
class ObservedTree : public zelk::Tree {
public:
  ObservedTree() = default;
  ObservedTree(const ObservedTree&) = delete;
  ObservedTree& operator=(const ObservedTree&) = delete;
  ~ObservedTree() override { testsupport::DropObserver(observer); }

  std::vector<std::string> calls;
  /// Null while nobody is registered.
  zelk::TreeObserver* observer = nullptr;

  void GetBaseRoot(du::SmartPtr<zelk::BaseInstance>& out) const override { out.Reset(); }
  void GetRoot(du::SmartPtr<zelk::Instance>& out) const override { out.Reset(); }
  void GetNumInstances(unsigned int& out) const override { out = 0; }
  void Visit(zelk::BaseInstanceVisitor& /*visitor*/, VisitType /*type*/) const override {}
  bool RegisterObserver(zelk::TreeObserver& newObserver, bool withReplay) override
  {
    calls.emplace_back(withReplay ? "RegisterObserver(replay)" : "RegisterObserver()");
    observer = &newObserver;
    newObserver.AddRegistration();
    return true;
  }
  bool UnregisterObserver(zelk::BaseTreeObserver& oldObserver) override
  {
    calls.emplace_back("UnregisterObserver");
    if (observer != &oldObserver) {
      return false;
    }
    observer = nullptr;
    oldObserver.RemoveRegistration();
    return true;
  }
  [[nodiscard]] dp::ReadWriteLock* GetReadWriteLock() const override { return nullptr; }
};

/// A tree that is none of a world.
class OtherTree : public zelk::BaseTree {
public:
  std::vector<std::string> calls;

  void GetBaseRoot(du::SmartPtr<zelk::BaseInstance>& out) const override { out.Reset(); }
  void GetNumInstances(unsigned int& out) const override { out = 0; }
  void Visit(zelk::BaseInstanceVisitor& /*visitor*/, VisitType /*type*/) const override {}
  bool UnregisterObserver(zelk::BaseTreeObserver& /*observer*/) override
  {
    calls.emplace_back("UnregisterObserver");
    return false;
  }
  [[nodiscard]] dp::ReadWriteLock* GetReadWriteLock() const override { return nullptr; }
};

/// Counts its kind.
class CountedObserver : public WorldTreeStateTreeObserver {
public:
  CountedObserver(guitree::WorldTreeState* state, const du::SmartPtr<zelk::Tree>& observed, int& alive)
      : WorldTreeStateTreeObserver(state, observed), m_alive(alive)
  {
    ++m_alive;
  }
  CountedObserver(const CountedObserver&) = delete;
  CountedObserver& operator=(const CountedObserver&) = delete;
  ~CountedObserver() override { --m_alive; }

private:
  int& m_alive;
};

/// A state with an observer of its own class, which writes down what is called.
class CountingState : public ScriptedWorldTreeState {
public:
  CountingState(guitree::GuiTree& gui, int& alive) : ScriptedWorldTreeState(gui), m_alive(alive) {}
  CountingState(const CountingState&) = delete;
  CountingState& operator=(const CountingState&) = delete;
  ~CountingState() override = default;

  std::vector<std::string> calls;

  [[nodiscard]] du::SmartPtr<WorldTreeStateTreeObserver> CreateWorldTreeObserver() override
  {
    calls.emplace_back("CreateWorldTreeObserver");
    return du::MakeSmart<CountedObserver>(this, GetTree(), m_alive);
  }
  void DeregisterTreeObserver() override
  {
    calls.emplace_back("DeregisterTreeObserver");
    ScriptedWorldTreeState::DeregisterTreeObserver();
  }

private:
  int& m_alive;
};

/// A panel that is not initialised, whose current tree is that of the world.
class TreeObserverRegistration : public testing::Test {
protected:
  TreeObserverRegistration()
  {
    panel.world->tree = tree;
    panel.gui->SetBaseTree(tree);
    panel.gui->SetTreeState(state);
  }

  int alive = 0;
  du::SmartPtr<RecordingManagedObject> manager = du::MakeSmart<RecordingManagedObject>();
  WorldPanel panel{"root[a]", manager};
  du::SmartPtr<ObservedTree> tree = du::MakeSmart<ObservedTree>();
  du::SmartPtr<CountingState> state = du::MakeSmart<CountingState>(*panel.gui, alive);
};

TEST_F(TreeObserverRegistration, CreateAndRegister_ManagesTheObserverAndThenRegistersItWithoutReplay)
{
  state->CreateAndRegisterTreeObserver();

  EXPECT_THAT(state->calls, ElementsAre("DeregisterTreeObserver", "CreateWorldTreeObserver"));
  ASSERT_EQ(manager->managed.size(), 1U);
  EXPECT_EQ(manager->managed[0].object, static_cast<dom::ManagedObject*>(tree->observer));
  EXPECT_FALSE(manager->managed[0].wasRegistered);
  EXPECT_THAT(tree->calls, ElementsAre("RegisterObserver()"));
}

TEST_F(TreeObserverRegistration, CreateAndRegister_Twice_LeavesTheSecondObserverAlone)
{
  state->CreateAndRegisterTreeObserver();
  const zelk::TreeObserver* first = tree->observer;
  const du::SmartPtr<zelk::TreeObserver> kept(tree->observer);

  state->CreateAndRegisterTreeObserver();

  EXPECT_NE(tree->observer, first);
  EXPECT_THAT(tree->calls, ElementsAre("RegisterObserver()", "UnregisterObserver", "RegisterObserver()"));
  EXPECT_FALSE(kept->IsRegistered());
  EXPECT_EQ(alive, 2);
}

TEST_F(TreeObserverRegistration, CreateAndRegister_WithoutATreeOfTheWorld_DropsTheEarlierObserverAndLeavesNone)
{
  state->CreateAndRegisterTreeObserver();
  panel.world->tree.Reset();

  state->CreateAndRegisterTreeObserver();

  EXPECT_EQ(tree->observer, nullptr);
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(manager->managed.size(), 1U);
}

TEST_F(TreeObserverRegistration, CreateAndRegister_WithoutAWorld_DropsTheEarlierObserverAndLeavesNone)
{
  state->CreateAndRegisterTreeObserver();
  zelk::World::Install(nullptr);

  state->CreateAndRegisterTreeObserver();

  EXPECT_EQ(tree->observer, nullptr);
  EXPECT_EQ(alive, 0);
}

TEST_F(TreeObserverRegistration, CreateAndRegister_ObservesTheCurrentTreeWhateverThatOfTheWorldIs)
{
  panel.world->tree = panel.kernel.Get();

  state->CreateAndRegisterTreeObserver();

  EXPECT_THAT(tree->calls, ElementsAre("RegisterObserver()"));
}

TEST_F(TreeObserverRegistration, CreateAndRegister_WithoutACurrentTree_ManagesTheObserverAndRegistersItNowhere)
{
  panel.gui->SetBaseTree(nullptr);

  state->CreateAndRegisterTreeObserver();
  EXPECT_EQ(alive, 1);
  EXPECT_EQ(manager->managed.size(), 1U);
  EXPECT_THAT(tree->calls, IsEmpty());

  state->DeregisterTreeObserver();
  EXPECT_EQ(alive, 0);
  EXPECT_THAT(tree->calls, IsEmpty());
}

TEST_F(TreeObserverRegistration, CreateAndRegister_OnATreeOfAnotherKind_ManagesTheObserverAndRegistersItNowhere)
{
  const auto other = du::MakeSmart<OtherTree>();
  panel.gui->SetBaseTree(other);

  state->CreateAndRegisterTreeObserver();
  EXPECT_EQ(alive, 1);
  EXPECT_EQ(manager->managed.size(), 1U);
  EXPECT_THAT(tree->calls, IsEmpty());

  state->DeregisterTreeObserver();
  EXPECT_EQ(alive, 0);
  EXPECT_THAT(other->calls, IsEmpty());
}

TEST_F(TreeObserverRegistration, CreateAndRegister_OnAPanelWithoutAManager_RegistersAllTheSame)
{
  const auto gui = du::MakeSmart<guitree::GuiTree>(nullptr);
  gui->SetBaseTree(tree);
  const auto unmanaged = du::MakeSmart<CountingState>(*gui, alive);

  unmanaged->CreateAndRegisterTreeObserver();

  EXPECT_THAT(tree->calls, ElementsAre("RegisterObserver()"));
  EXPECT_THAT(manager->managed, IsEmpty());
  unmanaged->DeregisterTreeObserver();
}

TEST_F(TreeObserverRegistration, CreateAndRegister_OfAStateThatMakesNoObserver_ManagesAndRegistersNothing)
{
  panel.state->makesObserver = false;

  panel.state->CreateAndRegisterTreeObserver();
  panel.state->DeregisterTreeObserver();

  EXPECT_THAT(manager->managed, IsEmpty());
  EXPECT_THAT(tree->calls, IsEmpty());
}

TEST_F(TreeObserverRegistration, Deregister_UnregistersAndLetsGoOnce)
{
  state->CreateAndRegisterTreeObserver();

  state->DeregisterTreeObserver();
  state->DeregisterTreeObserver();

  EXPECT_THAT(tree->calls, ElementsAre("RegisterObserver()", "UnregisterObserver"));
  EXPECT_EQ(alive, 0);
}

TEST_F(TreeObserverRegistration, Deregister_BeforeAnyRegistration_DoesNothing)
{
  state->DeregisterTreeObserver();

  EXPECT_THAT(tree->calls, IsEmpty());
}

TEST_F(TreeObserverRegistration, Deregister_UnregistersFromTheTreeThatWasObserved)
{
  state->CreateAndRegisterTreeObserver();
  panel.gui->SetBaseTree(panel.kernel.Get());

  state->DeregisterTreeObserver();

  EXPECT_EQ(tree->observer, nullptr);
}

TEST_F(TreeObserverRegistration, ADeregisteredObserverThatIsKeptKnowsNoStateAndDoesNothing)
{
  state->CreateAndRegisterTreeObserver();
  const du::SmartPtr<zelk::TreeObserver> kept(tree->observer);
  state->DeregisterTreeObserver();
  static_cast<void>(panel.host.TakeCalls());

  kept->OnInstanceCreate(panel.kernel["a"], panel.kernel["root"], {});
  kept->OnDisplayNamesChanged();
  kept->OnEndUpdate();

  EXPECT_FALSE(du::DynamicCast<WorldTreeStateTreeObserver>(kept)->GetTreeState());
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(TreeObserverRegistration, AStateThatEndsRegistered_HearsNoLateEventAndItsObserverEndsWithTheTree)
{
  state->CreateAndRegisterTreeObserver();
  panel.gui->SetTreeState(panel.state);
  state.Reset();
  static_cast<void>(panel.host.TakeCalls());
  ASSERT_NE(tree->observer, nullptr);

  tree->observer->OnBeginUpdate();
  tree->observer->OnInstanceCreate(panel.kernel["a"], panel.kernel["root"], {});
  tree->observer->OnInstanceName(panel.kernel["a"]);
  tree->observer->OnInstanceCollapsed(panel.kernel["a"]);
  tree->observer->OnInstanceRemove(panel.kernel["a"], panel.kernel["root"]);
  tree->observer->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_THAT(tree->calls, ElementsAre("RegisterObserver()"));
  EXPECT_EQ(alive, 1);
  panel.gui->SetBaseTree(nullptr);
  panel.world->tree.Reset();
  tree.Reset();
  EXPECT_EQ(alive, 0);
}

TEST(TreeObserverOfAKernel, OfAStateThatEndedRegistered_DoesNothingAndEndsWhenTheTreeCloses)
{
  WorldPanel panel("root[a]");
  panel.Initialise();
  panel.observer.Reset();
  panel.state->onObserver = nullptr;
  panel.gui->SetTreeState(nullptr);
  panel.state.Reset();

  panel.kernel.Add("a", "b");
  panel.GetTree().Remove(panel.kernel["b"]);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  panel.GetTree().Close();
}

TEST(TreeObserverOfAKernel, RegisteredTwice_HandlesEachEventOnce)
{
  WorldPanel panel("root[a]");
  panel.Initialise();
  panel.state->CreateAndRegisterTreeObserver();

  panel.kernel.Add("a", "b");

  EXPECT_THAT(panel.host.TakeCalls(),
              testing::Contains("InstanceCreate(b, parent=a, controller=no, assoc=false)").Times(1));
}

TEST(TreeObserverOfAKernel, RegisteredAgainByTheHostAtTheEndOfTheRunThatThisHandles_HandlesEachEventOnce)
{
  WorldPanel panel("root[a]");
  panel.Initialise();
  {
    const memkernel::TreeBatch batch(panel.GetTree());
    panel.kernel.Add("a", "b");
    panel.host.onCall = [&](const std::string& line) {
      if (line == "ContentHasChanged()") {
        panel.host.onCall = nullptr;
        panel.state->CreateAndRegisterTreeObserver();
      }
    };

    panel.state->CreateAndRegisterTreeObserver();
  }
  static_cast<void>(panel.host.TakeCalls());

  panel.kernel.Add("a", "c");

  EXPECT_THAT(panel.host.TakeCalls(),
              testing::Contains("InstanceCreate(c, parent=a, controller=no, assoc=false)").Times(1));
}

TEST(TreeObserverOfAKernel, DeregisteredInsideARun_HandlesItsEndFirst)
{
  WorldPanel panel("root[a]");
  panel.Initialise();
  {
    const memkernel::TreeBatch batch(panel.GetTree());
    panel.kernel.Add("a", "b");
    static_cast<void>(panel.host.TakeCalls());

    panel.state->DeregisterTreeObserver();

    EXPECT_THAT(panel.host.TakeCalls(),
                ElementsAre("FinishTreeUpdate()", "UpdateFilterUI()", "ContentHasChanged()", "UpdateTreeTable()"));
    panel.kernel.Add("a", "c");
  }
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

}  // namespace
