#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "guitree/SceneInfoLog.h"
#include "memkernel/OwnerLoop.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/PlainShapeInstance.h"
#include "testsupport/ScriptedLoader.h"
#include "testsupport/WorldPanel.h"

namespace sceneinfotest {

/// A filled panel on a loop that shows one of two scenes, with a scripted loader. Nothing is recorded.
class ShapeLoadingFixture : public testing::Test {
protected:
  using Scene = du::SmartPtr<testsupport::PlainShapeScene>;
  using ShapeInstance = du::SmartPtr<testsupport::PlainShapeInstance>;

  ShapeLoadingFixture()
  {
    panel.Initialise();
    GetReports().OnSceneAdded(scene);
    GetReports().OnSceneAdded(other);
    GetReports().OnActiveViewChanged(view);
    static_cast<void>(panel.host.TakeCalls());
    panel.state->AddStopWatch("wave");
  }
  ~ShapeLoadingFixture() override
  {
    panel.host.onCall = nullptr;
    if (panel.gui) {
      panel.gui->OnSceneRemoved(scene);
      panel.gui->OnSceneRemoved(other);
    }
    loop->Close();
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *panel.host.answers.sceneManagerObserver;
  }
  /// A new shape instance without data, as the kernel reports it; its load is asked for.
  ShapeInstance Create(const char* name, const Scene& in) const
  {
    auto shapeInstance = du::MakeSmart<testsupport::PlainShapeInstance>(panel.kernel[name]);
    in->observer->OnShapeInstanceCreate(shapeInstance);
    return shapeInstance;
  }
  ShapeInstance Create(const char* name) const { return Create(name, scene); }
  /// The load that was asked for as the `number`th ends; the loop runs.
  void End(std::size_t number, const ShapeInstance& shapeInstance, unsigned short status)
  {
    shapeInstance->status = status;
    loader.Requests().at(number).event->Complete();
    loop->RunDue();
  }
  [[nodiscard]] bool IsTiming() const { return panel.state->GetStopWatch().IsRunning(); }
  [[nodiscard]] guitree::SceneInfoLog& GetLog(const Scene& of) const { return *panel.gui->GetLog(of); }
  [[nodiscard]] guitree::VisibleState GetState(const char* name) const
  {
    return GetLog(scene).GetCompVisibleState(panel.kernel[name]);
  }
  /// 0 while nothing has asked for it.
  [[nodiscard]] int GetIcon(const char* name) const
  {
    int icon = 0;
    GetLog(scene).GetTypeIconMap()._Get(panel.kernel[name].Get(), icon);
    return icon;
  }
  [[nodiscard]] static bool HasChanges(const guitree::SceneInfoLog& log)
  {
    return !log.GetVisibleChangeMap().empty() || !log.GetTypeIconChangeMap().empty();
  }

  du::SmartPtr<memkernel::OwnerLoop> loop = du::MakeSmart<memkernel::OwnerLoop>();
  du::SmartPtr<dom::ManagedObject> manager = du::MakeSmart<dom::ManagedObject>(loop);
  testsupport::InstalledLoader loader;
  testsupport::WorldPanel panel{"root[a b c]", manager};
  Scene scene = du::MakeSmart<testsupport::PlainShapeScene>();
  Scene other = du::MakeSmart<testsupport::PlainShapeScene>();
  du::SmartPtr<testsupport::PlainShapeView> view = testsupport::MakeView<testsupport::PlainShapeView>(scene);
  du::SmartPtr<testsupport::PlainShapeView> otherView = testsupport::MakeView<testsupport::PlainShapeView>(other);
};

}  // namespace sceneinfotest
