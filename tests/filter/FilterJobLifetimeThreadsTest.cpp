#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

#include "LiveStage.h"
#include "structure_utils/TreeFilterAdditionalInfo.h"

namespace {

using filtertest::LiveStage;
using structure_utils::TreeFilterAdditionalInfo;

/// Holds the worker inside the first question of a filter, so that a job runs for as long as a test wants it to.
class Gate {
public:
  /// Worker: each question.
  void Pass()
  {
    if (!m_hasBegun.exchange(true)) {
      m_begun.set_value();
      m_opened.get_future().wait();
    }
    ++m_passed;
  }
  void WaitForTheWorker() { m_begun.get_future().wait(); }
  void Open() { m_opened.set_value(); }
  [[nodiscard]] int GetPassed() const { return m_passed; }

private:
  std::atomic<bool> m_hasBegun{false};
  std::atomic<int> m_passed{0};
  std::promise<void> m_begun;
  std::promise<void> m_opened;
};

/// A stage with a job that stands inside its first question.
class RunningJob : public testing::Test {
protected:
  RunningJob()
  {
    stage->gui->Initialise(stage->world);
    stage->SetFilterText("bolt");
    stage->state->filter.onAsked = [this](auto&&...) { gate.Pass(); };
    stage->state->PopulateTree(false);
    gate.WaitForTheWorker();
  }
  /// Opens the gate and ends the world, which waits for the job.
  void EndTheWorld()
  {
    gate.Open();
    stage->world->Shutdown();
  }

  Gate gate;
  std::unique_ptr<LiveStage> stage = std::make_unique<LiveStage>(200);
};

TEST_F(RunningJob, PanelAndStateMayGo_NobodyIsTold)
{
  const auto observer = stage->observer;
  stage->gui.Reset();
  stage->state.Reset();

  EndTheWorld();

  EXPECT_EQ(observer->count, 0U);
  EXPECT_GT(gate.GetPassed(), 100);
  EXPECT_TRUE(stage->host.rows.empty());
}

TEST_F(RunningJob, TheStateMayGoAlone_ThePanelStillBooksTheEnd)
{
  stage->gui->SetTreeState(nullptr);
  stage->state.Reset();
  gate.Open();

  ASSERT_TRUE(stage->RunUntilIdle());

  EXPECT_TRUE(stage->IsInStep());
  EXPECT_EQ(stage->observer->count, 1U);
  EXPECT_TRUE(stage->host.rows.empty());
}

TEST_F(RunningJob, TheWorldMayEnd_TheResultArrivesOnTheWay)
{
  EndTheWorld();

  EXPECT_EQ(stage->observer->count, 1U);
  EXPECT_TRUE(stage->IsInStep());
  EXPECT_FALSE(stage->host.isCalculating);
  EXPECT_EQ(stage->ListRows(), stage->ListExpectedRows("bolt"));
}

TEST_F(RunningJob, TheWorldMayEndWithMoreJobsInTheQueue)
{
  stage->state->PopulateTree(false);
  stage->state->PopulateTree(false);

  EndTheWorld();
  stage->gui.Reset();
  stage->state.Reset();

  EXPECT_EQ(stage->host.started, 3U);
}

TEST_F(RunningJob, ThePanelMayBeReset_TheResultMakesNoRow)
{
  stage->gui->Reset();
  gate.Open();

  ASSERT_TRUE(stage->RunUntilIdle());

  EXPECT_TRUE(stage->host.rows.empty());
  EXPECT_FALSE(stage->state->IsBusy());
  EXPECT_FALSE(stage->host.isCalculating);
}

TEST_F(RunningJob, IsCancelledByANewerOneWithoutAWaitForIt)
{
  stage->state->filter.onAsked = nullptr;
  stage->SetFilterText("nut");
  stage->state->PopulateTree(false);
  EXPECT_EQ(stage->host.underWay.size(), 2U);
  EXPECT_EQ(stage->host.bursts, 0U);
  gate.Open();

  ASSERT_TRUE(stage->RunUntilIdle());

  EXPECT_LE(gate.GetPassed(), 2);
  EXPECT_EQ(stage->observer->count, 1U);
  EXPECT_EQ(stage->ListRows(), stage->ListExpectedRows("nut"));
}

TEST_F(RunningJob, LetsARemovalRunBeforeItsResultArrives_WhichMayBeStale)
{
  const zelk::BaseInstance* const removed = stage->all[1].Get();
  auto top = stage->all[1];
  stage->all.resize(1);
  std::thread opener([this] { gate.Open(); });
  stage->GetTree().Remove(std::exchange(top, nullptr));
  opener.join();

  ASSERT_TRUE(stage->RunUntilIdle());

  EXPECT_EQ(stage->host.rows.count(removed), 1U);
  EXPECT_EQ(removed->GetObjectName(), LiveStage::MakeName(1));
}

TEST(FilterJobLifetimeThreads, ATreeOfItsOwnMayGo_TheJobKeepsItToItsEnd)
{
  LiveStage stage(10);
  Gate gate;
  auto tree = du::MakeSmart<memkernel::Tree>();
  const auto product = tree->CreateProduct({.name = "part"});
  auto root = tree->CreateRoot(product, "root");
  for (int i = 0; i < 100; ++i) {
    tree->AddChild(root, product, "bolt");
  }
  root.Reset();
  stage.SetFilterText("bolt");
  stage.state->filter.onAsked = [&](auto&&...) { gate.Pass(); };
  stage.gui->SetBaseTree(tree);
  stage.state->PopulateTree(false);
  gate.WaitForTheWorker();
  stage.gui->SetBaseTree(nullptr);
  tree.Reset();
  gate.Open();

  ASSERT_TRUE(stage.RunUntilIdle());

  guitree::FilteredTree::InstanceSet matches;
  stage.gui->GetFilteredTree()->GetMatchedFilterItems(matches);
  EXPECT_EQ(matches.size(), 100U);
  EXPECT_TRUE(stage.IsInStep());
  EXPECT_TRUE(stage.host.rows.empty());
}

TEST(FilterJobLifetimeThreads, TheHostMayGoAfterThePanel)
{
  LiveStage stage(200);
  Gate gate;
  auto host = std::make_unique<testsupport::ScriptedHost>();
  stage.gui->SetGuiInterface(host.get());
  stage.gui->Initialise(stage.world);
  stage.SetFilterText("bolt");
  stage.state->filter.onAsked = [&](auto&&...) { gate.Pass(); };
  stage.state->PopulateTree(false);
  gate.WaitForTheWorker();
  stage.gui->Reset();
  stage.gui->Close();
  stage.gui.Reset();
  stage.state.Reset();
  host.reset();
  gate.Open();

  stage.world->Shutdown();

  EXPECT_GT(gate.GetPassed(), 100);
  EXPECT_EQ(stage.observer->count, 0U);
}

/// Answers for issues of instances, and detaches what it has handed out when it ends.
class LookupState final : public testsupport::ScriptedWorldTreeState,
                          private TreeFilterAdditionalInfo::TreeFilterStatusLookup {
public:
  explicit LookupState(guitree::GuiTree& tree, Gate& gate) : ScriptedWorldTreeState(tree), m_gate(gate) {}
  LookupState(const LookupState&) = delete;
  LookupState& operator=(const LookupState&) = delete;
  ~LookupState() override
  {
    for (const auto& info : m_infos) {
      info->DetachStatusLookup();
    }
  }

  [[nodiscard]] du::SmartPtr<du::RefCounted> GetAdditionalFilterInfo() const override
  {
    const auto info = du::MakeSmart<TreeFilterAdditionalInfo>(
        nullptr, nullptr, const_cast<TreeFilterStatusLookup*>(static_cast<const TreeFilterStatusLookup*>(this)));
    m_infos.push_back(info);
    return info;
  }

private:
  TFStatus TreeFilterGetItemStatus(const du::ConstSmartPtr<zelk::Instance>& /*instance*/,
                                   const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    m_gate.Pass();
    return TFStatusShapeFailed;
  }

  Gate& m_gate;
  mutable std::vector<du::SmartPtr<TreeFilterAdditionalInfo>> m_infos;
};

TEST(FilterJobLifetimeThreads, AFilterThatAsksAStateForIssuesFindsOutThatItHasGone)
{
  Gate gate;
  LiveStage stage(200);
  auto state = du::MakeSmart<LookupState>(*stage.gui, gate);
  stage.gui->SetTreeState(state);
  stage.gui->Initialise(stage.world);
  std::atomic<int> withIssue{0};
  std::atomic<int> without{0};
  state->filter.isFiltering = true;
  state->filter.onAsked = [&](const auto& instance, auto&, bool, auto& info, unsigned int*) {
    const auto known = du::DynamicCast<TreeFilterAdditionalInfo>(info);
    const du::ConstSmartPtr<zelk::Instance> asked(dynamic_cast<const zelk::Instance*>(instance.Get()));
    ++(known->GetItemStatus(asked) == TreeFilterAdditionalInfo::TreeFilterStatusLookup::TFStatusNone ? without
                                                                                                     : withIssue);
  };
  state->PopulateTree(false);
  gate.WaitForTheWorker();

  std::thread opener([&] { gate.Open(); });
  stage.gui->SetTreeState(nullptr);
  // Waits for the look-up that stands in the gate.
  state.Reset();
  EXPECT_GE(gate.GetPassed(), 1);
  const int seen = gate.GetPassed();
  ASSERT_TRUE(stage.RunUntilIdle());
  opener.join();

  EXPECT_EQ(gate.GetPassed(), seen);
  EXPECT_EQ(withIssue, seen);
  EXPECT_GT(withIssue + without, 199);
  EXPECT_TRUE(stage.IsInStep());
}

TEST(FilterJobLifetimeThreads, PanelsComeAndGoWhileTheirJobsRun)
{
  LiveStage stage(300);
  stage.gui->Initialise(stage.world);
  for (int i = 0; i < 100; ++i) {
    filtertest::BookingHost host;
    auto gui = du::MakeSmart<guitree::GuiTree>(stage.world->CreateManagedObject());
    auto state = du::MakeSmart<testsupport::ScriptedWorldTreeState>(*gui);
    gui->SetGuiInterface(&host);
    gui->SetTreeState(state);
    gui->Initialise(stage.world);
    stage.SetFilterText("nut");
    state->filter = stage.state->filter;
    state->PopulateTree(false);
    stage.state->PopulateTree(false);
    if (i % 3 == 0) {
      state->PopulateTree(false);
    }
    if (i % 2 == 0) {
      std::this_thread::yield();
      stage.RunTurn();
    }
    gui->Reset();
    gui->Close();
    gui.Reset();
    state.Reset();
    ASSERT_TRUE(stage.world->GetLoop().RunUntil([&] { return host.underWay.empty(); }));
  }

  ASSERT_TRUE(stage.RunUntilIdle());
  EXPECT_TRUE(stage.IsInStep());
  EXPECT_EQ(stage.ListRows(), stage.ListExpectedRows("nut"));
}

}  // namespace
