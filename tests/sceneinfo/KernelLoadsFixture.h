#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "guitree/SceneInfoLog.h"
#include "memkernel/World.h"
#include "testsupport/RecordingHost.h"
#include "testsupport/ScriptedWorldTreeState.h"

namespace sceneinfotest {

/// A whole kernel with workers, and a panel that shows one of its scenes. The work of each shape waits until `mayEnd`,
/// or until nobody wants it, and then brings `result`.
class KernelLoadsFixture : public testing::Test {
protected:
  using Instance = du::SmartPtr<memkernel::Instance>;

  KernelLoadsFixture()
  {
    world->InstallForProcess();
    gui->SetGuiInterface(&host);
    gui->SetTreeState(state);
    gui->Initialise(world);
    GetReports().OnSceneAdded(scene);
    GetReports().OnActiveViewChanged(du::MakeSmart<memkernel::ShapeView>(scene));
    static_cast<void>(host.TakeCalls());
  }
  ~KernelLoadsFixture() override
  {
    mayEnd = true;
    if (gui) {
      gui->OnSceneRemoved(scene);
      gui->Reset();
      gui->Close();
    }
    world->Shutdown();
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *host.answers.sceneManagerObserver;
  }
  [[nodiscard]] memkernel::Shape::Work MakeWork()
  {
    return [this](memkernel::LoadContext& context) {
      ++started;
      while (!mayEnd && !context.IsCanceled()) {
        std::this_thread::yield();
      }
      if (context.IsCanceled()) {
        return zelk::ShapeDataNone;
      }
      ++finished;
      return result.load();
    };
  }
  /// An instance of a new product whose shape is not loaded.
  Instance Add(const std::string& name)
  {
    const auto product = world->GetMemTree().CreateProduct(
        {.name = du::Symbol(std::string_view(name)), .shape = du::MakeSmart<memkernel::Shape>(MakeWork())});
    return world->GetMemTree().AddChild(root, product);
  }
  /// So many instances, shown in the scene in one run of events: their loads begin.
  std::vector<Instance> Show(std::size_t count)
  {
    std::vector<Instance> shown;
    for (std::size_t i = 0; i < count; ++i) {
      shown.push_back(Add("part" + std::to_string(shown.size())));
    }
    ShowAll(shown);
    static_cast<void>(host.TakeCalls());
    state->AddStopWatch("wave");
    return shown;
  }
  void ShowAll(const std::vector<Instance>& instances) const
  {
    const memkernel::ShapeSceneBatch batch(*scene);
    for (const Instance& instance : instances) {
      EXPECT_TRUE(scene->CreateShapeInstance(instance));
    }
  }
  void WaitForWorkers(int count) const
  {
    while (started < count) {
      std::this_thread::yield();
    }
  }
  /// Runs the loop until the wave under way has ended.
  void RunWave()
  {
    EXPECT_TRUE(world->GetLoop().RunUntil([this] { return !state->GetStopWatch().IsRunning(); }));
  }
  /// Runs the loop until the kernel has no load left, and everything that comes of it.
  void RunOut()
  {
    while (world->GetMemTaskPool().GetUnfinishedCount() != 0) {
      world->GetLoop().WaitAndRun(std::chrono::milliseconds(1));
    }
    while (world->GetLoop().RunDue() != 0) {}
  }
  [[nodiscard]] long CountDeliveries()
  {
    const std::vector<std::string> calls = host.TakeCalls();
    return std::count_if(calls.begin(), calls.end(),
                         [](const std::string& call) { return call.starts_with("UpdateVisAndTypeIconChanges"); });
  }
  [[nodiscard]] guitree::SceneInfoLog& GetLog() const { return *gui->GetLog(scene); }
  [[nodiscard]] guitree::VisibleState GetState(const Instance& instance) const
  {
    return GetLog().GetCompVisibleState(instance);
  }

  std::atomic<bool> mayEnd{true};
  std::atomic<zelk::ShapeDataStatus> result{zelk::ShapeDataLoaded};
  /// How many runs of work have begun, and how many have not been cancelled.
  std::atomic<int> started{0};
  std::atomic<int> finished{0};
  du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>(3U);
  Instance root = world->GetMemTree().CreateRoot(world->GetMemTree().CreateProduct({.name = "root"}));
  du::SmartPtr<memkernel::ShapeScene> scene = world->CreateShapeScene();
  testsupport::RecordingHost host;
  du::SmartPtr<guitree::GuiTree> gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  du::SmartPtr<testsupport::ScriptedWorldTreeState> state = du::MakeSmart<testsupport::ScriptedWorldTreeState>(*gui);
};

}  // namespace sceneinfotest
