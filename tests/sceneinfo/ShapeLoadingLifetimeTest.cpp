// Loads that outlive those who have asked for them, and hosts that act while they are told.

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ShapeLoadingFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testsupport::PlainShapeInstance;

/// Notes when it ends.
class WatchedShapeInstance : public PlainShapeInstance {
public:
  WatchedShapeInstance(const du::SmartPtr<zelk::Instance>& ofInstance, int& alive)
      : PlainShapeInstance(ofInstance), m_alive(alive)
  {
    ++m_alive;
  }
  WatchedShapeInstance(const WatchedShapeInstance&) = delete;
  WatchedShapeInstance& operator=(const WatchedShapeInstance&) = delete;
  ~WatchedShapeInstance() override { --m_alive; }

private:
  int& m_alive;
};

class ShapeLoadingLifetime : public sceneinfotest::ShapeLoadingFixture {
protected:
  void CreateWatched(const char* name)
  {
    scene->observer->OnShapeInstanceCreate(du::MakeSmart<WatchedShapeInstance>(panel.kernel[name], alive));
  }
  void Complete(std::size_t number)
  {
    loader.Requests().at(number).event->Complete();
    loop->RunDue();
  }

  int alive = 0;
};

TEST_F(ShapeLoadingLifetime, ALoadHoldsItsShapeInstanceUntilTheWaveHasEnded)
{
  CreateWatched("a");
  CreateWatched("b");

  Complete(0);
  EXPECT_EQ(alive, 2);

  Complete(1);
  EXPECT_EQ(alive, 0);
}

TEST_F(ShapeLoadingLifetime, ALoadCompletesOnce)
{
  const ShapeInstance a = Create("a");
  End(0, a, zelk::ShapeDataLoaded);
  static_cast<void>(panel.host.TakeCalls());

  End(0, a, zelk::ShapeDataNone);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(ShapeLoadingLifetime, ALoadThatEndsAfterItsStateHasGone_TouchesNoneAndLetsGoOfItsShapeInstance)
{
  CreateWatched("a");
  panel.gui->SetTreeState(nullptr);
  panel.state.Reset();

  Complete(0);

  EXPECT_EQ(alive, 0);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(ShapeLoadingLifetime, ASecondLoadOfOneShapeInstanceThatNoMapKnows_TouchesNoStateThatHasGone)
{
  const ShapeInstance a = Create("a");
  scene->observer->OnShapeInstanceCreate(a);
  End(1, a, zelk::ShapeDataLoaded);
  panel.gui->SetTreeState(nullptr);
  panel.state.Reset();
  static_cast<void>(panel.host.TakeCalls());

  Complete(0);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(ShapeLoadingLifetime, AStateThatGoesInAWave_LetsGoOfWhatHasEnded)
{
  CreateWatched("a");
  CreateWatched("b");
  Complete(0);
  panel.gui->SetTreeState(nullptr);
  panel.state.Reset();

  EXPECT_EQ(alive, 1);
  Complete(1);
  EXPECT_EQ(alive, 0);
}

TEST_F(ShapeLoadingLifetime, ALoadThatEndsAfterThePanelHasGone_EndsTheWaveOfAStateThatIsKept)
{
  CreateWatched("a");
  panel.gui->OnSceneRemoved(scene);
  panel.gui->OnSceneRemoved(other);
  panel.gui.Reset();
  static_cast<void>(panel.host.TakeCalls());

  Complete(0);

  EXPECT_EQ(alive, 0);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_FALSE(IsTiming());
}

TEST_F(ShapeLoadingLifetime, ALoadThatEndsAfterAClose_TellsNobody)
{
  const ShapeInstance a = Create("a");
  panel.gui->OnSceneRemoved(scene);
  panel.gui->Close();
  static_cast<void>(panel.host.TakeCalls());

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(ShapeLoadingLifetime, ALoadThatTheKernelDropsUncompleted_IsForgotten)
{
  CreateWatched("a");
  loop->Close();

  loader.Requests().clear();

  EXPECT_EQ(alive, 0);
  EXPECT_TRUE(IsTiming());
}

TEST_F(ShapeLoadingLifetime, ASecondLoadOfOneShapeInstanceThatIsDropped_LeavesTheFirstUnderWay)
{
  const ShapeInstance a = Create("a");
  scene->observer->OnShapeInstanceCreate(a);
  const auto first = loader.Requests().at(0).event;
  loop->Close();

  loader.Requests().pop_back();
  scene->observer->OnShapeInstanceRemove(a);

  EXPECT_TRUE(first->IsCanceled());
}

TEST_F(ShapeLoadingLifetime, AHostThatShowsAnotherSceneWhileItIsTold_GetsNoChangeASecondTime)
{
  const ShapeInstance a = Create("a");
  panel.host.onCall = [this](const std::string& line) {
    if (line.starts_with("UpdateVisAndTypeIconChanges")) {
      GetReports().OnActiveViewChanged(otherView);
    }
  };

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_FALSE(HasChanges(GetLog(scene)));
  EXPECT_EQ(panel.gui->GetCurrentLog(), &GetLog(other));
}

TEST_F(ShapeLoadingLifetime, AHostThatRemovesTheSceneWhileItIsTold_IsNoTrouble)
{
  const ShapeInstance a = Create("a");
  panel.host.onCall = [this](const std::string& line) {
    if (line.starts_with("UpdateVisAndTypeIconChanges")) {
      GetReports().OnSceneRemoved(scene);
    }
  };

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
  EXPECT_FALSE(IsTiming());
}

TEST_F(ShapeLoadingLifetime, AHostThatEndsStateAndPanelWhileItIsTold_IsNoTrouble)
{
  const ShapeInstance a = Create("a");
  panel.host.onCall = [this](const std::string& line) {
    if (line.starts_with("UpdateVisAndTypeIconChanges")) {
      panel.gui->OnSceneRemoved(scene);
      panel.gui->OnSceneRemoved(other);
      panel.gui->SetTreeState(nullptr);
      panel.state.Reset();
      panel.gui.Reset();
    }
  };

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_THAT(panel.host.TakeCalls(), SizeIs(1));
}

TEST_F(ShapeLoadingLifetime, ALoadThatIsAskedForWhileTheHostIsTold_BelongsToTheNextWave)
{
  const ShapeInstance a = Create("a");
  ShapeInstance b;
  panel.host.onCall = [&](const std::string& /*line*/) {
    panel.host.onCall = nullptr;
    b = Create("b");
  };
  End(0, a, zelk::ShapeDataLoaded);
  static_cast<void>(panel.host.TakeCalls());
  ASSERT_TRUE(b);
  EXPECT_EQ(GetState("b"), guitree::VisibleStateHidden);

  End(1, b, zelk::ShapeDataLoaded);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre(testing::HasSubstr("visibleChanges={b: 18}")));
}

TEST_F(ShapeLoadingLifetime, AWaveThatEndsWhileTheHostIsTold_RecordsItsOwnLoadsAlone)
{
  const ShapeInstance a = Create("a");
  panel.host.onCall = [&](const std::string& /*line*/) {
    panel.host.onCall = nullptr;
    scene->observer->OnShapeInstanceRemove(a);
    End(1, Create("b"), zelk::ShapeDataLoaded);
  };

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_EQ(GetState("a"), guitree::VisibleStateHidden);
  EXPECT_EQ(GetState("b"), guitree::VisibleStateVisible);
}

/// Notes what it is told to forget.
class ForgettingLog : public guitree::SceneInfoLog {
public:
  ForgettingLog(guitree::GuiTree* tree, std::vector<std::string>& calls) : SceneInfoLog(tree), m_calls(calls) {}

  void ClearVisibleChangeMap() override
  {
    m_calls.emplace_back("visible changes");
    SceneInfoLog::ClearVisibleChangeMap();
  }
  void ClearTypeIconChangeMap() override
  {
    m_calls.emplace_back("icon changes");
    SceneInfoLog::ClearTypeIconChangeMap();
  }

private:
  std::vector<std::string>& m_calls;
};

TEST_F(ShapeLoadingLifetime, ADeliveredWave_HasTheLogForgetTheVisibleChangesAndThenThoseOfIcons)
{
  std::vector<std::string> calls;
  panel.state->makeSceneInfoLog = [&] { return std::make_unique<ForgettingLog>(panel.gui.Get(), calls).release(); };
  GetReports().OnSceneRemoved(scene);
  GetReports().OnSceneAdded(scene);
  GetReports().OnActiveViewChanged(nullptr);
  GetReports().OnActiveViewChanged(view);
  const ShapeInstance a = Create("a");
  calls.clear();
  panel.host.onCall = [&](const std::string& /*line*/) { calls.emplace_back("host"); };

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_THAT(calls, ElementsAre("host", "visible changes", "icon changes"));
}

/// Acts while it is asked for a load.
class ActingLoader : public zelloader::Loader {
public:
  std::function<void(zelloader::ShapeLoaderEvent&)> onLoad;

  bool LoadShape(const du::SmartPtr<zelk::Shape>& /*shape*/, du::Flags /*what*/, zelloader::ShapeLoaderEvent* event,
                 zelk::Anchor* /*anchor*/) override
  {
    onLoad(*event);
    return true;
  }
};

TEST_F(ShapeLoadingLifetime, AShapeInstanceThatIsRemovedWhileItsLoadIsAskedFor_HasItCancelled)
{
  const auto acting = du::MakeSmart<ActingLoader>();
  zelloader::Loader::Install(acting);
  const auto a = du::MakeSmart<PlainShapeInstance>(panel.kernel["a"]);
  bool isCanceled = false;
  acting->onLoad = [&](zelloader::ShapeLoaderEvent& event) {
    scene->observer->OnShapeInstanceRemove(a);
    isCanceled = event.IsCanceled();
    event.Complete();
  };

  scene->observer->OnShapeInstanceCreate(a);
  loop->RunDue();

  EXPECT_TRUE(isCanceled);
  EXPECT_FALSE(IsTiming());
}

TEST_F(ShapeLoadingLifetime, APanelThatEndsWhileALoadIsAskedFor_IsNoTrouble)
{
  const auto acting = du::MakeSmart<ActingLoader>();
  zelloader::Loader::Install(acting);
  acting->onLoad = [&](zelloader::ShapeLoaderEvent& event) {
    event.Complete();
    panel.gui->OnSceneRemoved(scene);
    panel.gui->OnSceneRemoved(other);
    panel.gui->SetTreeState(nullptr);
    panel.state.Reset();
    panel.gui.Reset();
    loop->RunDue();
  };

  CreateWatched("a");
  loop->RunDue();

  EXPECT_EQ(alive, 0);
}

}  // namespace
