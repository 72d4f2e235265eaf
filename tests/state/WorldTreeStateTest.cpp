#include "guitree/WorldTreeState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <type_traits>

#include "guitree/SceneInfoLog.h"
#include "memkernel/SelectionManager.h"
#include "testsupport/PlainBaseInstance.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/PlainShapeInstance.h"
#include "testsupport/RecordingSelectionManager.h"
#include "testsupport/WorldPanel.h"

namespace {

using guitree::WorldTreeState;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testsupport::PlainBaseInstance;
using testsupport::PlainShapeInstance;
using testsupport::RecordingSelectionManager;
using testsupport::ScriptedWorldTreeState;
using testsupport::WorldPanel;
using Instances = std::set<du::SmartPtr<zelk::Instance>>;

static_assert(std::is_abstract_v<WorldTreeState>);

/// A tree of another kind than a world has.
class OtherTree : public zelk::BaseTree {
public:
  void GetBaseRoot(du::SmartPtr<zelk::BaseInstance>& out) const override { out.Reset(); }
  void GetNumInstances(unsigned int& out) const override { out = 0; }
  void Visit(zelk::BaseInstanceVisitor& /*visitor*/, VisitType /*type*/) const override {}
  bool UnregisterObserver(zelk::BaseTreeObserver& /*observer*/) override { return false; }
  [[nodiscard]] dp::ReadWriteLock* GetReadWriteLock() const override { return nullptr; }
};

/// A shape scene that writes down which instances it is asked about, and answers with a new shape instance for one.
class AskedScene : public testsupport::PlainShapeScene {
public:
  class Watched : public PlainShapeInstance {
  public:
    explicit Watched(int& alive) : PlainShapeInstance(nullptr), m_alive(alive) { ++m_alive; }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
    ~Watched() override { --m_alive; }

  private:
    int& m_alive;
  };

  mutable std::vector<const zelk::Instance*> questions;
  const zelk::Instance* known = nullptr;
  mutable int alive = 0;

  bool GetShapeInstance(const du::ConstSmartPtr<zelk::Instance>& instance,
                        du::SmartPtr<zelk::ShapeInstance>& out) const override
  {
    questions.push_back(instance.Get());
    out.Reset();
    if (known && instance.Get() == known) {
      out = du::MakeSmart<Watched>(alive);
    }
    return static_cast<bool>(out);
  }
};

/// An initialised panel that shows `scene`.
class WorldTreeStateInAScene : public testing::Test {
protected:
  WorldTreeStateInAScene()
  {
    panel.Initialise();
    panel.host.answers.sceneManagerObserver->OnSceneAdded(scene);
    panel.host.answers.sceneManagerObserver->OnActiveViewChanged(
        testsupport::MakeView<testsupport::PlainShapeView>(scene));
  }
  ~WorldTreeStateInAScene() override { panel.host.answers.sceneManagerObserver->OnSceneRemoved(scene); }

  WorldPanel panel{"root[a]"};
  du::SmartPtr<AskedScene> scene = du::MakeSmart<AskedScene>();
};

TEST(WorldTreeState, ItsTreeIsThatOfTheInstalledWorldWhateverTheView)
{
  const WorldPanel panel("root");

  EXPECT_EQ(panel.state->Initialise_GetZelkTree(nullptr), panel.kernel.Get());
  EXPECT_EQ(panel.state->Initialise_GetZelkTree(testsupport::MakeView<testsupport::PlainView>(nullptr)),
            panel.kernel.Get());

  panel.world->tree.Reset();
  EXPECT_FALSE(panel.state->Initialise_GetZelkTree(nullptr));
  zelk::World::Install(nullptr);
  EXPECT_FALSE(panel.state->Initialise_GetZelkTree(nullptr));
}

TEST(WorldTreeState, GetTree_IsTheCurrentTreeIfItIsOneOfAWorld)
{
  const WorldPanel panel("root");

  EXPECT_FALSE(panel.state->GetTree());
  panel.gui->SetBaseTree(panel.kernel.Get());
  EXPECT_EQ(panel.state->GetTree(), panel.kernel.Get());
  panel.gui->SetBaseTree(du::MakeSmart<OtherTree>());
  EXPECT_FALSE(panel.state->GetTree());
}

TEST(WorldTreeState, WithoutASelectionManager_ThereIsNoController)
{
  const WorldPanel panel("root");

  EXPECT_FALSE(panel.state->HaveSelController());
  EXPECT_FALSE(panel.state->GetSelController(false));
  EXPECT_FALSE(panel.state->GetSelController(true));
  EXPECT_FALSE(panel.state->GetWTSelController());
}

TEST(WorldTreeState, EachCallMakesAnotherControllerOnTheSameManagerWhateverItIsFor)
{
  WorldPanel panel("root");
  const auto manager = du::MakeSmart<RecordingSelectionManager>();
  panel.world->selectionManager = manager;
  panel.Initialise();

  const auto first = panel.state->GetSelController(false);
  const auto second = panel.state->GetSelController(true);
  const auto third = panel.state->GetWTSelController();

  EXPECT_TRUE(panel.state->HaveSelController());
  EXPECT_NE(first, second);
  EXPECT_FALSE(first.Get() == third.Get() || second.Get() == third.Get());
  for (const guitree::TreeSelectionController* controller : {first.Get(), second.Get()}) {
    EXPECT_TRUE(dynamic_cast<const guitree::WorldTreeSelectionController*>(controller));
    EXPECT_EQ(controller->GetZelkSelectionManager(), manager);
  }
  EXPECT_EQ(third->GetZelkSelectionManager(), manager);
}

TEST(WorldTreeState, HasInstGotThumbnail_LooksAtTheInstanceAlone)
{
  const WorldPanel panel("root[a b]");
  panel.GetTree().SetFlags(panel.kernel["a"], memkernel::InstanceThumbnailSource, true);

  EXPECT_TRUE(panel.state->HasInstGotThumbnail(panel.kernel["a"]));
  EXPECT_FALSE(panel.state->HasInstGotThumbnail(panel.kernel["b"]));
}

TEST(WorldTreeState, HasInstGotThumbnail_OfWhatIsNoInstance_IsFalse)
{
  const WorldPanel panel("root");

  EXPECT_FALSE(panel.state->HasInstGotThumbnail(du::MakeSmart<PlainBaseInstance>("other")));
  EXPECT_FALSE(panel.state->HasInstGotThumbnail(nullptr));
}

TEST(WorldTreeState, IsInstLoaded_WithoutACurrentShapeScene_IsFalse)
{
  WorldPanel panel("root");
  panel.Initialise();

  EXPECT_FALSE(panel.state->IsInstLoaded(panel.kernel["root"].Get()));
}

TEST_F(WorldTreeStateInAScene, IsInstLoaded_IsTrueForAnyShapeInstanceAndKeepsNone)
{
  scene->known = panel.kernel["a"].Get();

  EXPECT_TRUE(panel.state->IsInstLoaded(panel.kernel["a"].Get()));
  EXPECT_FALSE(panel.state->IsInstLoaded(panel.kernel["root"].Get()));

  EXPECT_EQ(scene->alive, 0);
  EXPECT_THAT(scene->questions, ElementsAre(panel.kernel["a"].Get(), panel.kernel["root"].Get()));
}

TEST_F(WorldTreeStateInAScene, IsInstLoaded_OfWhatIsNoInstance_AsksTheSceneAboutNothing)
{
  const auto other = du::MakeSmart<PlainBaseInstance>("other");

  EXPECT_FALSE(panel.state->IsInstLoaded(other.Get()));

  EXPECT_THAT(scene->questions, ElementsAre(nullptr));
}

TEST_F(WorldTreeStateInAScene, CreateSceneInfoLog_MakesANewLogOfThisPanelForTheCaller)
{
  const std::unique_ptr<guitree::SceneInfoLog> first(panel.state->CreateSceneInfoLog());
  const std::unique_ptr<guitree::SceneInfoLog> second(panel.state->CreateSceneInfoLog());
  panel.state->unloadedTypeIcon = 20;

  EXPECT_NE(first, second);
  EXPECT_EQ(first->GetUnloadedTypeIcon(panel.kernel["a"].Get()), 20);
  EXPECT_NE(panel.gui->GetLog(scene), first.get());
}

TEST(WorldTreeState, CreateWorldTreeObserver_IsOnTheStateAndItsCurrentTreeAndNotRegistered)
{
  const WorldPanel panel("root");
  panel.gui->SetBaseTree(panel.kernel.Get());

  const auto observer = panel.state->WorldTreeState::CreateWorldTreeObserver();

  EXPECT_EQ(observer->GetTreeState(), panel.state.Get());
  EXPECT_EQ(observer->GetTree(), panel.kernel.Get());
  EXPECT_FALSE(observer->IsRegistered());
}

TEST(WorldTreeState, GetSelectedComps_WithoutASelectionManager_LeavesTheSetAsItWas)
{
  const WorldPanel panel("root[a]");
  Instances out{panel.kernel["a"]};

  panel.state->GetSelectedComps(out, false);
  panel.state->GetSelectedComps(out, true);

  EXPECT_THAT(out, ElementsAre(panel.kernel["a"]));
}

TEST(WorldTreeState, GetSelectedComps_AddsTheSelectedInstances)
{
  WorldPanel panel("root[a[b] c]");
  const auto manager = du::MakeSmart<RecordingSelectionManager>();
  manager->instances[zelk::SelectionManager::SelectionList] = {panel.kernel["a"]};
  panel.world->selectionManager = manager;
  panel.Initialise();
  manager->calls.clear();
  Instances out{panel.kernel["c"]};

  panel.state->GetSelectedComps(out, false);

  EXPECT_THAT(out, UnorderedElementsAre(panel.kernel["a"], panel.kernel["c"]));
  EXPECT_THAT(manager->calls, ElementsAre("GetSelectedInstances(0, 2)"));
}

TEST(WorldTreeState, GetSelectedComps_WithDescendents_AddsAllBelowTheSelectedButNotBelowWhatWasThere)
{
  WorldPanel panel("root[a[b[c]] d[e]]");
  const auto manager = du::MakeSmart<RecordingSelectionManager>();
  manager->instances[zelk::SelectionManager::SelectionList] = {panel.kernel["a"]};
  panel.world->selectionManager = manager;
  panel.Initialise();
  Instances out{panel.kernel["d"]};

  panel.state->GetSelectedComps(out, true);

  EXPECT_THAT(out, UnorderedElementsAre(panel.kernel["a"], panel.kernel["b"], panel.kernel["c"], panel.kernel["d"]));
}

TEST(WorldTreeState, GetSelectedComps_AsksTheStatesOwnControllerOnlyWhetherThereIsOne)
{
  class SelectionlessState : public ScriptedWorldTreeState {
  public:
    using ScriptedWorldTreeState::ScriptedWorldTreeState;
    mutable std::vector<bool> questions;

    [[nodiscard]] du::SmartPtr<guitree::TreeSelectionController> GetSelController(bool forRows) const override
    {
      questions.push_back(forRows);
      return {};
    }
  };
  WorldPanel panel("root[a]");
  const auto manager = du::MakeSmart<RecordingSelectionManager>();
  manager->instances[zelk::SelectionManager::SelectionList] = {panel.kernel["a"]};
  panel.world->selectionManager = manager;
  panel.Initialise();
  const auto state = du::MakeSmart<SelectionlessState>(*panel.gui);
  Instances out;

  state->GetSelectedComps(out, false);

  EXPECT_THAT(out, IsEmpty());
  EXPECT_THAT(state->questions, ElementsAre(false));
}

TEST(WorldTreeState, TheFormOverBaseInstances_ReplacesUnlikeThatOverInstances)
{
  WorldPanel panel("root[a b]");
  const auto manager = du::MakeSmart<RecordingSelectionManager>();
  manager->instances[zelk::SelectionManager::SelectionList] = {panel.kernel["a"]};
  panel.world->selectionManager = manager;
  panel.Initialise();
  std::set<du::SmartPtr<zelk::BaseInstance>> out{panel.kernel["b"]};

  panel.state->GetSelectedComps(out, false);

  EXPECT_THAT(out, ElementsAre(panel.kernel["a"]));
}

TEST(WorldTreeState, BeginsWithATimingThatHasNoNameAndNeverRan)
{
  const WorldPanel panel("root");

  EXPECT_EQ(panel.state->GetStopWatch().GetName(), "");
  EXPECT_FALSE(panel.state->GetStopWatch().IsRunning());
  EXPECT_EQ(panel.state->GetStopWatch().GetElapsed().count(), 0);
}

TEST(WorldTreeState, AddStopWatch_Twice_KeepsOnlyTheSecondTimingWhichRuns)
{
  const WorldPanel panel("root");

  panel.state->AddStopWatch("first");
  panel.state->AddStopWatch("second");

  EXPECT_EQ(panel.state->GetStopWatch().GetName(), "second");
  EXPECT_TRUE(panel.state->GetStopWatch().IsRunning());
}

TEST(WorldTreeState, ThatOutlivesItsPanel_AnswersNothing)
{
  WorldPanel panel("root[a]");
  panel.world->selectionManager = du::MakeSmart<RecordingSelectionManager>();
  panel.Initialise();
  panel.gui.Reset();
  Instances out;

  EXPECT_FALSE(panel.state->HaveSelController());
  EXPECT_FALSE(panel.state->GetSelController(true));
  EXPECT_FALSE(panel.state->GetWTSelController());
  EXPECT_FALSE(panel.state->GetTree());
  EXPECT_FALSE(panel.state->IsInstLoaded(panel.kernel["a"].Get()));
  panel.state->GetSelectedComps(out, true);
  EXPECT_THAT(out, IsEmpty());
  panel.state->CreateAndRegisterTreeObserver();
  panel.state->DeregisterTreeObserver();
}

}  // namespace
