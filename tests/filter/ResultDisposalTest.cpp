#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "EngineStage.h"
#include "guitree/GenerateFilteredTreeTask.h"
#include "memkernel/World.h"
#include "testsupport/PlainBaseInstance.h"

namespace filtertest {
namespace {

/// Tells in which thread it has ended.
class MortalInstance : public testsupport::PlainBaseInstance {
public:
  MortalInstance(std::string_view name, std::vector<std::thread::id>& deaths)
      : PlainBaseInstance(name), m_deaths(deaths)
  {
  }
  ~MortalInstance() override { m_deaths.push_back(std::this_thread::get_id()); }

private:
  std::vector<std::thread::id>& m_deaths;
};

/// Keeps tasks until a test takes them, or refuses them.
class KeepingPool : public du::TaskPool {
public:
  std::vector<du::SmartPtr<du::Task>> tasks;
  bool isOpen = true;

  bool InsertTask(const du::SmartPtr<du::Task>& task) override
  {
    if (isOpen) {
      tasks.push_back(task);
    }
    return isOpen;
  }
};

class PoolWorld : public zelk::World {
public:
  mutable KeepingPool pool;
  bool hasPool = true;

  [[nodiscard]] du::TaskPool* GetTaskPool() const override { return hasPool ? &pool : nullptr; }
  [[nodiscard]] du::SmartPtr<zelk::ProgressController> GetProgressController() override { return {}; }
  [[nodiscard]] du::SmartPtr<zelk::Preferences> GetPreferences() override { return {}; }
};

/// How many hold an object of the test, the test apart.
int CountHolders(const du::RefCounted& object)
{
  const int held = object.AddReference(nullptr) - 2;
  static_cast<void>(object.RemoveReference(nullptr));
  return held;
}

/// A result with so many instances.
class ResultDisposal : public testing::Test {
protected:
  static constexpr std::size_t s_small = 20000;
  static constexpr std::size_t s_large = s_small + 1;

  ResultDisposal() { zelk::World::Install(world); }
  ~ResultDisposal() override { zelk::World::Install(nullptr); }

  void Fill(std::size_t count)
  {
    for (std::size_t number = 0; number < count; ++number) {
      instances.push_back(du::MakeSmart<MortalInstance>("n" + std::to_string(number), deaths));
      tree->AddMatchedFilterItem(instances.back(), true);
    }
  }
  void RunInThread(const du::SmartPtr<du::Task>& task)
  {
    std::thread worker([&task] { task->Run(); });
    worker.join();
  }

  std::vector<std::thread::id> deaths;
  std::vector<du::SmartPtr<MortalInstance>> instances;
  du::SmartPtr<OpenTree> tree = du::MakeSmart<OpenTree>();
  du::SmartPtr<PoolWorld> world = du::MakeSmart<PoolWorld>();
};

TEST_F(ResultDisposal, OfASmallResult_IsDoneAtOnce)
{
  Fill(s_small);

  tree.Reset();

  EXPECT_TRUE(world->pool.tasks.empty());
  EXPECT_EQ(CountHolders(*instances[0]), 0);
}

TEST_F(ResultDisposal, OfALargeResult_ReleasesOnAWorkerWhatOthersHoldAsWell)
{
  Fill(s_large);

  tree.Reset();
  ASSERT_EQ(world->pool.tasks.size(), 1u);
  EXPECT_EQ(CountHolders(*instances[0]), 1);

  RunInThread(world->pool.tasks[0]);
  EXPECT_EQ(CountHolders(*instances[0]), 0);
  EXPECT_TRUE(deaths.empty());
}

TEST_F(ResultDisposal, OfALargeResult_LeavesLastReferencesToTheOwnersThread)
{
  Fill(s_large);
  const auto kept = instances.back();
  instances.clear();
  tree.Reset();
  ASSERT_EQ(world->pool.tasks.size(), 1u);

  RunInThread(world->pool.tasks[0]);
  EXPECT_TRUE(deaths.empty());

  world->pool.tasks[0]->TaskComplete();
  EXPECT_EQ(deaths, std::vector<std::thread::id>(s_large - 1, std::this_thread::get_id()));
  EXPECT_EQ(CountHolders(*kept), 0);
}

TEST_F(ResultDisposal, OfAHugeResult_LetsOtherTasksHaveTheirTurn)
{
  constexpr std::size_t s_slice = 100'000;
  Fill(2 * s_slice + 2);
  tree.Reset();
  std::vector<int> released;

  for (std::size_t next = 0; next < world->pool.tasks.size(); ++next) {
    RunInThread(world->pool.tasks[next]);
    world->pool.tasks[next]->TaskComplete();
    int holders = 0;
    for (const auto& instance : instances) {
      holders += CountHolders(*instance);
    }
    released.push_back(static_cast<int>(instances.size()) - holders);
  }

  EXPECT_EQ(released, (std::vector<int>{100'000, 200'000, 200'002}));
}

TEST_F(ResultDisposal, OfAHugeResult_EndsWithThePool)
{
  Fill(100'001);
  instances.clear();
  tree.Reset();
  RunInThread(world->pool.tasks[0]);
  world->pool.isOpen = false;

  world->pool.tasks[0]->TaskComplete();

  EXPECT_EQ(deaths, std::vector<std::thread::id>(100'001, std::this_thread::get_id()));
}

TEST_F(ResultDisposal, OfWhatACancelledRunHasBuilt_IsATaskOfItsOwn)
{
  const auto kernel = du::MakeSmart<memkernel::Tree>();
  const auto product = kernel->CreateProduct({.name = "part"});
  const auto root = kernel->CreateRoot(product);
  for (std::size_t count = 0; count < 2 * s_large; ++count) {
    kernel->AddChild(root, product);
  }
  const auto event = du::MakeSmart<ReportedEvent>();
  testsupport::ScriptedFilter filter;
  std::size_t asks = 0;
  filter.onAsked = [&](const auto&, auto&, bool, auto&, auto) {
    if (++asks == 2 * s_large) {
      event->Cancel();
    }
  };
  const auto task = du::MakeSmart<guitree::GenerateFilteredTreeTask>(nullptr, filter, nullptr, nullptr, kernel, nullptr,
                                                                     nullptr, false, event.Get());

  RunInThread(task);
  EXPECT_TRUE(event->IsCompleted());
  EXPECT_TRUE(world->pool.tasks.empty());

  task->TaskComplete();
  ASSERT_EQ(world->pool.tasks.size(), 1u);
  EXPECT_EQ(Show(task->GetFilteredTreeResult()->GetRoot()), "part[...]");
  RunInThread(world->pool.tasks[0]);
  world->pool.tasks[0]->TaskComplete();
  EXPECT_EQ(world->pool.tasks.size(), 1u);
}

TEST_F(ResultDisposal, OfALargeResultThatIsHandedBack_IsDoneByTheOwner)
{
  Fill(s_large);
  instances.clear();
  tree.Reset();

  world->pool.tasks[0]->Abort();
  world->pool.tasks.clear();

  EXPECT_EQ(deaths, std::vector<std::thread::id>(s_large, std::this_thread::get_id()));
}

TEST_F(ResultDisposal, WithAPoolThatIsClosed_IsDoneAtOnce)
{
  world->pool.isOpen = false;
  Fill(s_large);
  instances.clear();

  tree.Reset();

  EXPECT_EQ(deaths.size(), s_large);
}

TEST_F(ResultDisposal, WithoutAPool_IsDoneAtOnce)
{
  world->hasPool = false;
  Fill(s_large);
  instances.clear();

  tree.Reset();

  EXPECT_EQ(deaths.size(), s_large);
}

TEST_F(ResultDisposal, WithoutAWorld_IsDoneAtOnce)
{
  zelk::World::Install(nullptr);
  Fill(s_large);
  instances.clear();

  tree.Reset();

  EXPECT_EQ(deaths.size(), s_large);
}

TEST_F(ResultDisposal, OfTwoResultsOfOneTree_LeavesTheLastReferencesToTheOwnersThread)
{
  Fill(s_large);
  auto other = du::MakeSmart<OpenTree>(*tree);
  instances.clear();
  tree.Reset();
  other.Reset();
  ASSERT_EQ(world->pool.tasks.size(), 2u);

  std::thread first([this] { world->pool.tasks[0]->Run(); });
  std::thread second([this] { world->pool.tasks[1]->Run(); });
  first.join();
  second.join();
  EXPECT_TRUE(deaths.empty());

  world->pool.tasks[0]->TaskComplete();
  world->pool.tasks[1]->TaskComplete();
  EXPECT_EQ(deaths, std::vector<std::thread::id>(s_large, std::this_thread::get_id()));
}

TEST(ResultDisposalInAWorld, OfALargeTree_EndsTheInstancesThatTheKernelHasRemoved)
{
  const auto world = du::MakeSmart<memkernel::World>(1U);
  world->InstallForProcess();
  memkernel::Tree& kernel = world->GetMemTree();
  const auto product = kernel.CreateProduct({.name = "part"});
  const int holdersWithoutInstances = CountHolders(*product);
  const auto root = kernel.CreateRoot(product);
  std::vector<du::SmartPtr<memkernel::Instance>> children;
  for (int count = 0; count < 15000; ++count) {
    children.push_back(kernel.AddChild(root, product));
  }
  auto tree = du::MakeSmart<OpenTree>();
  testsupport::ScriptedFilter filter;
  du::SmartPtr<du::RefCounted> none;
  tree->BuildTree(filter, root, nullptr, none, {}, nullptr);
  for (std::size_t number = 0; number < children.size(); number += 2) {
    kernel.Remove(children[number]);
  }
  children.clear();
  ASSERT_EQ(CountHolders(*product), holdersWithoutInstances + 15001);

  tree.Reset();
  world->Shutdown();

  EXPECT_EQ(CountHolders(*product), holdersWithoutInstances + 7501);
}

}  // namespace
}  // namespace filtertest
