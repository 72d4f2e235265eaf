#include "memkernel/World.h"

#include <gmock/gmock.h>

#include <latch>
#include <thread>

#include "Recorders.h"

namespace memkerneltest {
namespace {

using memkernel::World;
using testing::ElementsAre;
using testing::IsEmpty;

/// Completes its event in `Run`, or in `Abort`.
class EventTask : public du::Task {
public:
  explicit EventTask(const du::SmartPtr<zelk::AsyncEvent>& event) : m_event(event) {}

  void Run() override { m_event->Complete(); }
  void Abort() override { m_event->CompleteWithError("aborted", 7); }

private:
  du::SmartPtr<zelk::AsyncEvent> m_event;
};

class EndEvent : public zelk::AsyncEvent {
public:
  explicit EndEvent(std::vector<int>& ends) : AsyncEvent(true), m_ends(ends) {}

  std::function<void()> onComplete;

protected:
  void OnComplete(unsigned short status) override
  {
    m_ends.push_back(status);
    if (onComplete) {
      onComplete();
    }
  }

private:
  std::vector<int>& m_ends;
};

TEST(World, InstallForProcess_AnswersWorldAndLoaderUntilItIsRemoved)
{
  const auto world = du::MakeSmart<World>(1U);
  EXPECT_FALSE(zelk::World::GetWorld());

  world->InstallForProcess();
  EXPECT_EQ(zelk::World::GetWorld(), world);
  EXPECT_EQ(zelloader::Loader::GetLoader().Get(), &world->GetMemLoader());

  world->RemoveFromProcess();
  EXPECT_FALSE(zelk::World::GetWorld());
  EXPECT_FALSE(zelloader::Loader::GetLoader());
}

TEST(World, RemoveFromProcess_OfAnotherWorld_LeavesTheInstalledOne)
{
  const auto installed = du::MakeSmart<World>(1U);
  const auto other = du::MakeSmart<World>(1U);
  installed->InstallForProcess();

  other->RemoveFromProcess();
  other->Shutdown();

  EXPECT_EQ(zelk::World::GetWorld(), installed);
  installed->Shutdown();
  EXPECT_FALSE(zelk::World::GetWorld());
}

TEST(World, Shutdown_OfAWorldThatTheProcessAloneHolds_DestroysIt)
{
  auto world = du::MakeSmart<World>(1U);
  World* const raw = world.Get();
  const du::SmartPtr<memkernel::OwnerLoop> loop = world->GetLoopPtr();
  world->InstallForProcess();
  world.Reset();

  raw->Shutdown();

  EXPECT_FALSE(zelk::World::GetWorld());
  EXPECT_TRUE(loop->IsClosed());
}

TEST(World, IsWholeFromTheStart)
{
  const auto world = du::MakeSmart<World>(1U);

  EXPECT_EQ(world->tree.Get(), &world->GetMemTree());
  EXPECT_EQ(world->selectionManager.Get(), &world->GetMemSelectionManager());
  EXPECT_TRUE(world->GetTaskPool());
  EXPECT_TRUE(world->GetProgressController());
  EXPECT_TRUE(world->GetPreferences());
  EXPECT_EQ(world->CreateManagedObject()->GetMessageQueue(), world->GetLoopPtr());
}

TEST(World, Scenes_HaveASelectionOfTheirOwnUnlessTheyAreGivenOne)
{
  const auto world = du::MakeSmart<World>(1U);
  du::SmartPtr<zelk::SelectionManager> own;
  du::SmartPtr<zelk::SelectionManager> given;

  world->CreateShapeScene()->GetSelectionManager(own);
  world->CreateGeometryCompareScene(world->selectionManager)->GetSelectionManager(given);

  EXPECT_TRUE(own);
  EXPECT_NE(own, world->selectionManager);
  EXPECT_EQ(given, world->selectionManager);
}

TEST(World, Shutdown_CompletesWhatRunsAndHandsBackWhatWaitsAndDeliversBoth)
{
  const auto world = du::MakeSmart<World>(2U);
  const auto host = world->CreateManagedObject();
  std::vector<int> ends;
  for (int i = 0; i < 50; ++i) {
    const auto event = du::MakeSmart<EndEvent>(ends);
    host->ManageObject(event);
    EXPECT_TRUE(world->GetTaskPool()->InsertTask(du::MakeSmart<EventTask>(event)));
  }

  world->Shutdown();

  EXPECT_EQ(ends.size(), 50U);
  EXPECT_THAT(ends, testing::Each(testing::AnyOf(0, 7)));
}

TEST(World, Shutdown_DeliversWhatTheLastMessagesAskFor)
{
  const auto world = du::MakeSmart<World>(1U);
  const auto host = world->CreateManagedObject();
  std::vector<int> ends;
  const auto first = du::MakeSmart<EndEvent>(ends);
  const auto second = du::MakeSmart<EndEvent>(ends);
  host->ManageObject(first);
  host->ManageObject(second);
  first->onComplete = [&] {
    EXPECT_FALSE(world->GetTaskPool()->InsertTask(du::MakeSmart<EventTask>(second)));
    second->CompleteWithError("too late", 9);
  };
  first->Complete();

  world->Shutdown();

  EXPECT_THAT(ends, ElementsAre(0, 9));
}

TEST(World, Shutdown_ReleasesEventsThatNobodyCompletes)
{
  const auto world = du::MakeSmart<World>(1U);
  const auto host = world->CreateManagedObject();
  std::vector<int> ends;
  bool isDead = false;
  {
    auto witness = du::MakeSmart<TracedObject>([&] { isDead = true; });
    const auto event = du::MakeSmart<EndEvent>(ends);
    event->onComplete = [kept = std::move(witness)] {};
    host->ManageObject(event);
  }
  EXPECT_FALSE(isDead);

  world->Shutdown();

  EXPECT_TRUE(isDead);
  EXPECT_THAT(ends, IsEmpty());
}

TEST(World, Shutdown_TellsTheObserversOfTheTreeAndLeavesTheTreeReadable)
{
  const auto world = du::MakeSmart<World>(1U);
  auto& tree = world->GetMemTree();
  const auto recorder = du::MakeSmart<TreeRecorder>();
  tree.CreateRoot(tree.CreateProduct({.name = "R"}));
  tree.RegisterObserver(*recorder, false);

  world->Shutdown();
  world->Shutdown();

  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "destroy", "end", "unregister"));
  EXPECT_TRUE(tree.GetRootInstance());
}

TEST(World, WakeUp_ComesFromTheWorkerThatHasSomethingForTheOwner)
{
  const auto world = du::MakeSmart<World>(1U);
  const auto host = world->CreateManagedObject();
  std::latch isWoken(1);
  std::atomic<bool> wasWoken{false};
  world->GetLoop().SetWakeUp([&] {
    if (!wasWoken.exchange(true)) {
      isWoken.count_down();
    }
  });
  std::vector<int> ends;
  const auto event = du::MakeSmart<EndEvent>(ends);
  host->ManageObject(event);

  world->GetTaskPool()->InsertTask(du::MakeSmart<EventTask>(event));
  isWoken.wait();
  world->GetLoop().RunUntil([&] { return !ends.empty(); });

  EXPECT_THAT(ends, ElementsAre(0));
  world->Shutdown();
}

}  // namespace
}  // namespace memkerneltest
