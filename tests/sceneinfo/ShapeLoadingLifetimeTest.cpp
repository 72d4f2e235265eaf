// Loads that outlive those who have asked for them, and hosts that act while they are told.

#include <gmock/gmock.h>

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

}  // namespace
