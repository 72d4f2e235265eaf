// Filters that ask for the status of instances on workers, while the state that knows it changes or goes.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "LiveStage.h"
#include "guitree/StructureTreeState.h"
#include "structure_utils/TreeFilterAdditionalInfo.h"
#include "testsupport/DisplaySwitches.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/PlainShapeInstance.h"
#include "zelremote/StructureFilterInfo.h"

namespace {

using structure_utils::TreeFilterAdditionalInfo;
using Lookup = TreeFilterAdditionalInfo::TreeFilterStatusLookup;

/// Shows every instance, with a shape that has failed, and counts the questions.
class FailedScene : public testsupport::PlainShapeScene {
public:
  mutable std::atomic<int> questions{0};

  bool GetShapeInstance(const du::ConstSmartPtr<zelk::Instance>& /*instance*/,
                        du::SmartPtr<zelk::ShapeInstance>& out) const override
  {
    ++questions;
    out = m_failed;
    return true;
  }

private:
  [[nodiscard]] static du::SmartPtr<testsupport::PlainShapeInstance> _MakeFailed()
  {
    auto failed = du::MakeSmart<testsupport::PlainShapeInstance>(nullptr);
    failed->status = zelk::ShapeDataFailed;
    return failed;
  }

  const du::SmartPtr<testsupport::PlainShapeInstance> m_failed = _MakeFailed();
};

/// A panel with workers, whose filter looks for issues among many instances.
class StatusLookupThreads : public testing::Test {
protected:
  static constexpr std::size_t s_instances = 5000;

  StatusLookupThreads()
  {
    world->InstallForProcess();
    memkernel::Tree& tree = world->GetMemTree();
    const auto part = tree.CreateProduct({.name = "part", .flags = memkernel::InstanceShapeSource});
    root = tree.CreateRoot(part);
    for (std::size_t i = 1; i < s_instances; ++i) {
      tree.AddChild(root, part);
    }
    gui->SetGuiInterface(&host);
    gui->SetTreeState(state);
    gui->Initialise(world);
    gui->OnSceneAdded(scene);
    gui->OnActiveViewChanged(view);
    dynamic_cast<zelremote::StructureFilterInfo&>(state->GetFilter(view)).SetIssuesOnly(true);
  }
  ~StatusLookupThreads() override
  {
    EndPanel();
    EndState();
    root.Reset();
    world->Shutdown();
  }

  void EndPanel()
  {
    if (gui) {
      gui->OnSceneRemoved(scene);
      gui->SetTreeState(nullptr);
      gui->Close();
    }
    gui.Reset();
  }
  void EndState() { state.Reset(); }
  /// Populates, and returns in the middle of the filter's run.
  void BeginRun()
  {
    scene->questions = 0;
    state->PopulateTree(false);
    while (scene->questions < 100) {
      std::this_thread::yield();
    }
  }
  void EndRun()
  {
    EXPECT_TRUE(world->GetLoop().RunUntil([this] { return host.underWay.empty(); }));
  }

  void ExpectNoQuestionsAfterPanelAndState()
  {
    EndPanel();
    EndState();
    const int questions = scene->questions;
    EndRun();

    EXPECT_EQ(scene->questions, questions);
  }

  const testsupport::DisplaySwitches switches;
  filtertest::BookingHost host;
  du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>(2U);
  du::SmartPtr<FailedScene> scene = du::MakeSmart<FailedScene>();
  du::SmartPtr<testsupport::PlainShapeView> view = testsupport::MakeView<testsupport::PlainShapeView>(scene);
  du::SmartPtr<guitree::GuiTree> gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  du::SmartPtr<guitree::StructureTreeState> state = du::MakeSmart<guitree::StructureTreeState>(*gui, true);
  du::SmartPtr<memkernel::Instance> root;
};

TEST_F(StatusLookupThreads, AFilterOnIssues_FindsThem)
{
  BeginRun();
  EndRun();

  EXPECT_EQ(host.rows.size(), s_instances);
  EXPECT_FALSE(state->IsMatchedFilterEmpty());
}

TEST_F(StatusLookupThreads, AStateThatGoesInARun_IsNotAskedAgain)
{
  BeginRun();

  gui->SetTreeState(nullptr);
  EndState();
  const int questions = scene->questions;
  EndRun();

  EXPECT_EQ(scene->questions, questions);
  EXPECT_TRUE(host.rows.empty());
}

TEST_F(StatusLookupThreads, APanelAndAStateThatGoInARun_AreNotAskedAgain)
{
  BeginRun();

  ExpectNoQuestionsAfterPanelAndState();
}

TEST_F(StatusLookupThreads, AStateThatGoesWithSeveralRunsUnderWay_IsNotAskedAgain)
{
  for (int run = 0; run < 5; ++run) {
    BeginRun();
  }

  ExpectNoQuestionsAfterPanelAndState();
}

TEST_F(StatusLookupThreads, AStateThatOutlivesItsPanelInARun_GoesOnAnswering)
{
  BeginRun();
  EndPanel();
  const du::ConstSmartPtr<zelk::Instance> asked(root.Get());
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(state->TreeFilterGetItemStatus(asked, scene), Lookup::TFStatusShapeFailed);
  }

  EndRun();
}

TEST_F(StatusLookupThreads, TheOwnerResetsFiltersAndTurnsSwitchesInARun)
{
  BeginRun();
  for (int i = 0; i < 8; ++i) {
    guitree::WorldTreeState::SetIsCollapsingInstances(i % 2 == 0);
    state->UpdateFiltersForCollapsingInstances(i % 2 == 0);
    state->SetResultsComps(nullptr);
    static_cast<void>(state->GetAdditionalFilterInfo());
    if (i == 5) {
      state->Reset();
    }
  }

  EndRun();

  state->PopulateTree(false);
  EndRun();
  EXPECT_FALSE(host.rows.empty());
}

TEST_F(StatusLookupThreads, InfosThatEndOnOtherThreadsWhileTheirStateGoes_AreNoTrouble)
{
  const du::ConstSmartPtr<zelk::Instance> asked(root.Get());
  for (int round = 0; round < 20; ++round) {
    auto going = du::MakeSmart<guitree::StructureTreeState>(*gui, true);
    std::atomic<int> answered{0};
    std::vector<std::thread> workers;
    for (int worker = 0; worker < 3; ++worker) {
      std::vector<du::SmartPtr<TreeFilterAdditionalInfo>> infos;
      for (int i = 0; i < 50; ++i) {
        infos.push_back(du::DynamicCast<TreeFilterAdditionalInfo>(going->GetAdditionalFilterInfo()));
      }
      workers.emplace_back([&answered, &asked, own = std::move(infos)]() mutable {
        while (!own.empty()) {
          const Lookup::TFStatus status = own.back()->GetItemStatus(asked);
          EXPECT_TRUE(status == Lookup::TFStatusShapeFailed || status == Lookup::TFStatusNone);
          ++answered;
          own.pop_back();
        }
      });
    }
    while (answered < 10) {
      std::this_thread::yield();
    }

    going.Reset();

    for (std::thread& worker : workers) {
      worker.join();
    }
    EXPECT_EQ(answered, 150);
  }
}

}  // namespace
