// Loads on the workers of a whole kernel: they end, are cancelled, and outlive those who have asked for them.

#include <gmock/gmock.h>

#include <random>

#include "KernelLoadsFixture.h"
#include "zelloader/Loader.h"

namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// Ends each load on a thread of its own, which lets go of the event last.
class LateLoader : public zelloader::Loader {
public:
  LateLoader() = default;
  LateLoader(const LateLoader&) = delete;
  LateLoader& operator=(const LateLoader&) = delete;
  ~LateLoader() override { Join(); }

  std::atomic<bool> mayLetGo{false};

  bool LoadShape(const du::SmartPtr<zelk::Shape>& /*shape*/, du::Flags /*what*/, zelloader::ShapeLoaderEvent* event,
                 zelk::Anchor* /*anchor*/) override
  {
    m_workers.emplace_back([this, kept = du::SmartPtr<zelloader::ShapeLoaderEvent>(event)]() mutable {
      kept->Complete();
      while (!mayLetGo) {
        std::this_thread::yield();
      }
      kept.Reset();
    });
    return true;
  }
  void Join()
  {
    mayLetGo = true;
    for (std::thread& worker : m_workers) {
      worker.join();
    }
    m_workers.clear();
  }

private:
  std::vector<std::thread> m_workers;
};

class KernelLoads : public sceneinfotest::KernelLoadsFixture {};

TEST_F(KernelLoads, OfManyShapes_EndInOneWaveAndOneCall)
{
  constexpr std::size_t count = 300;
  const auto shown = Show(count);

  RunWave();
  RunOut();

  EXPECT_EQ(CountDeliveries(), 1);
  EXPECT_EQ(finished, static_cast<int>(count));
  EXPECT_THAT(GetLog().GetVisibleMap(), SizeIs(count + 1));
  EXPECT_EQ(GetState(root), guitree::VisibleStateHiddenAllChildren);
  EXPECT_THAT(GetLog().GetVisibleChangeMap(), IsEmpty());
}

TEST_F(KernelLoads, OfOneShapeForManyInstances_ShareOneRunOfItsWork)
{
  mayEnd = false;
  const Instance first = Add("bolt");
  std::vector<Instance> bolts{first};
  for (int i = 0; i < 20; ++i) {
    bolts.push_back(world->GetMemTree().AddChild(root, first->GetProduct()));
  }
  ShowAll(bolts);
  state->AddStopWatch("wave");
  mayEnd = true;

  RunWave();

  EXPECT_EQ(finished, 1);
  EXPECT_THAT(GetLog().GetVisibleMap(), SizeIs(bolts.size() + 1));
}

TEST_F(KernelLoads, ThatFail_ShowInTheIconAlone)
{
  result = zelk::ShapeDataFailed;
  const auto shown = Show(10);
  state->unloadedTypeIcon = 28;

  RunWave();

  EXPECT_EQ(CountDeliveries(), 1);
  EXPECT_THAT(GetLog().GetVisibleMap(), IsEmpty());
  int icon = 0;
  EXPECT_TRUE(GetLog().GetTypeIconMap()._Get(shown.front().Get(), icon));
  // A shape instance is there, its data is not.
  EXPECT_EQ(icon, 29);
}

TEST_F(KernelLoads, OfInstancesThatLeaveTheTree_AreCancelledAndLeaveNothing)
{
  mayEnd = false;
  const auto shown = Show(10);
  WaitForWorkers(1);

  for (const Instance& instance : shown) {
    world->GetMemTree().Remove(instance);
  }
  static_cast<void>(host.TakeCalls());
  RunWave();
  RunOut();

  EXPECT_EQ(CountDeliveries(), 0);
  EXPECT_EQ(finished, 0);
  EXPECT_THAT(GetLog().GetVisibleMap(), IsEmpty());
}

TEST_F(KernelLoads, OfShapeInstancesThatAreRemoved_HoldBackTheOthersOnlyUntilTheyHaveNoticed)
{
  mayEnd = false;
  const auto shown = Show(4);
  WaitForWorkers(1);

  scene->RemoveShapeInstance(shown[0]);
  scene->RemoveShapeInstance(shown[1]);
  static_cast<void>(host.TakeCalls());
  mayEnd = true;
  RunWave();

  EXPECT_EQ(CountDeliveries(), 1);
  EXPECT_EQ(GetState(shown[0]), guitree::VisibleStateHidden);
  EXPECT_EQ(GetState(shown[2]), guitree::VisibleStateVisible);
  EXPECT_EQ(GetState(shown[3]), guitree::VisibleStateVisible);
}

TEST_F(KernelLoads, OfAShapeInstanceThatIsRemovedWhileItWaitsForTheOthers_LeaveNothing)
{
  const Instance first = Add("first");
  ShowAll({first});
  state->AddStopWatch("wave");
  while (finished == 0) {
    std::this_thread::yield();
  }
  mayEnd = false;
  const Instance second = Add("second");
  ShowAll({second});
  while (world->GetMemTaskPool().GetUnfinishedCount() > 1) {
    std::this_thread::yield();
  }
  world->GetLoop().RunDue();

  scene->RemoveShapeInstance(first);
  mayEnd = true;
  RunWave();

  EXPECT_EQ(finished, 2);
  EXPECT_EQ(GetState(first), guitree::VisibleStateHidden);
  EXPECT_EQ(GetState(second), guitree::VisibleStateVisible);
}

TEST_F(KernelLoads, OfASceneThatIsRemoved_AreCancelledAndToldToNobody)
{
  mayEnd = false;
  const auto shown = Show(10);
  WaitForWorkers(1);

  GetReports().OnSceneRemoved(scene);
  RunWave();
  RunOut();

  EXPECT_EQ(finished, 0);
  EXPECT_EQ(CountDeliveries(), 0);
}

TEST_F(KernelLoads, OfASceneThatIsRemovedWhileTheyEnd_EndTheirWaveAllTheSame)
{
  const auto shown = Show(50);

  GetReports().OnSceneRemoved(scene);
  RunWave();
  RunOut();

  EXPECT_EQ(CountDeliveries(), 0);
}

TEST_F(KernelLoads, OfAStateThatHasGone_EndWithoutIt)
{
  mayEnd = false;
  const auto shown = Show(10);
  WaitForWorkers(1);
  state->DeregisterTreeObserver();

  gui->SetTreeState(nullptr);
  state.Reset();
  mayEnd = true;
  RunOut();

  EXPECT_EQ(CountDeliveries(), 0);
  EXPECT_EQ(finished, 10);
}

TEST_F(KernelLoads, OfAPanelThatHasGone_EndWithoutIt)
{
  mayEnd = false;
  const auto shown = Show(10);
  WaitForWorkers(1);
  gui->OnSceneRemoved(scene);
  gui->Reset();
  gui->Close();
  static_cast<void>(host.TakeCalls());

  gui.Reset();
  mayEnd = true;
  RunOut();

  EXPECT_THAT(host.TakeCalls(), IsEmpty());
  EXPECT_FALSE(state->GetStopWatch().IsRunning());
}

TEST_F(KernelLoads, OfAPanelThatEndsUnclosed_EndWithoutIt)
{
  mayEnd = false;
  const auto shown = Show(10);
  WaitForWorkers(1);
  static_cast<void>(host.TakeCalls());

  gui.Reset();
  state.Reset();
  mayEnd = true;
  RunOut();

  EXPECT_THAT(host.TakeCalls(), IsEmpty());
}

TEST_F(KernelLoads, OfAWorldThatShutsDown_EndTheirWaveOnceAndChangeNothing)
{
  mayEnd = false;
  const auto shown = Show(100);
  WaitForWorkers(1);

  world->Shutdown();

  EXPECT_FALSE(state->GetStopWatch().IsRunning());
  EXPECT_EQ(finished, 0);
  EXPECT_EQ(CountDeliveries(), 0);
  EXPECT_THAT(GetLog().GetVisibleMap(), IsEmpty());
}

TEST_F(KernelLoads, OfAWorldThatShutsDownWithItsPanelGone_LeaveNothing)
{
  mayEnd = false;
  const auto shown = Show(20);
  WaitForWorkers(1);
  gui->OnSceneRemoved(scene);
  gui.Reset();
  state.Reset();
  static_cast<void>(host.TakeCalls());

  world->Shutdown();

  EXPECT_THAT(host.TakeCalls(), IsEmpty());
}

TEST_F(KernelLoads, WhoseLastHolderIsAWorker_EndThereAndLeaveTheStateAlone)
{
  const auto loader = du::MakeSmart<LateLoader>();
  zelloader::Loader::Install(loader);
  const auto first = Show(5);
  RunWave();

  loader->mayLetGo = true;
  const auto second = Show(20);
  RunWave();

  loader->Join();
  zelloader::Loader::Install(nullptr);
  EXPECT_EQ(CountDeliveries(), 0);
}

TEST_F(KernelLoads, WhileInstancesComeAndGo_LeaveEachThatStayedLoadedAndVisible)
{
  std::mt19937 random(1);
  std::vector<Instance> shown;
  const auto pick = [&](std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); };
  state->AddStopWatch("wave");

  for (int round = 0; round < 200; ++round) {
    if (shown.empty() || pick(3) != 0) {
      shown.push_back(Add("part" + std::to_string(round)));
      ShowAll({shown.back()});
    } else {
      const auto gone = shown.begin() + static_cast<std::ptrdiff_t>(pick(shown.size()));
      pick(2) == 0 ? world->GetMemTree().Remove(*gone) : scene->RemoveShapeInstance(*gone);
      shown.erase(gone);
    }
    if (pick(4) == 0) {
      world->GetLoop().RunDue();
    }
  }
  RunOut();

  for (const Instance& instance : shown) {
    EXPECT_EQ(GetState(instance), guitree::VisibleStateVisible);
  }
  EXPECT_THAT(GetLog().GetVisibleChangeMap(), IsEmpty());
}

}  // namespace
