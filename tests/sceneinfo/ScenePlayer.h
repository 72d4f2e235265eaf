#pragma once

#include <rapidcheck.h>

#include <memory>
#include <optional>
#include <vector>

#include "PanelModel.h"
#include "RowHost.h"
#include "memkernel/OwnerLoop.h"
#include "memkernel/Preferences.h"
#include "memkernel/ShapeScene.h"
#include "memkernel/View.h"
#include "testsupport/ScriptedLoader.h"
#include "testsupport/WorldPanel.h"

namespace sceneinfotest {

/// Drawn from the whole range from the first run on.
[[nodiscard]] inline std::size_t DrawBelow(std::size_t end)
{
  return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange<std::size_t>(0, end));
}

/// Draws by weight.
template <typename Event>
[[nodiscard]] const Event& DrawEvent(const std::vector<std::pair<std::size_t, Event>>& events)
{
  std::size_t total = 0;
  for (const auto& [weight, event] : events) {
    total += weight;
  }
  std::size_t drawn = DrawBelow(total);
  auto entry = events.begin();
  while (drawn >= entry->first) {
    drawn -= entry->first;
    ++entry;
  }
  return entry->second;
}

/// Plays events of a kernel at random to a panel and to the model beside it: those of a scene, and of its loads.
class ScenePlayer {
public:
  using Instance = du::SmartPtr<memkernel::Instance>;
  using ShapeInstance = du::SmartPtr<memkernel::ShapeInstance>;

  ScenePlayer()
  {
    panel.world->preferences = du::MakeSmart<memkernel::Preferences>();
    panel.world->preferences->SetBool("Model Viewer/show_3d_thumbnails", !thumbnailsAreFlat);
    Grow(1 + DrawBelow(25));
    panel.gui->SetGuiInterface(&host);
    panel.gui->Initialise(panel.world);
    host.sceneManagerObserver->OnSceneAdded(scene);
    host.sceneManagerObserver->OnSceneAdded(other);
    host.scene = scene;
    host.onTold = [this] { _OnTold(); };
    panel.GetTree().RegisterObserver(*treeListener, false);
    scene->RegisterObserver(*sceneListener, du::Flags(0xb), true);
    ShowScene(true);
  }
  ~ScenePlayer()
  {
    host.onTold = nullptr;
    m_batch.reset();
    panel.gui->OnSceneRemoved(scene);
    panel.gui->OnSceneRemoved(other);
    panel.gui->Reset();
    scene->UnregisterObserver(*sceneListener);
    panel.GetTree().Close();
    loop->Close();
  }
  ScenePlayer(const ScenePlayer&) = delete;
  ScenePlayer& operator=(const ScenePlayer&) = delete;

  /// Under random instances of the tree, some of them 3D symbols or proxies.
  void Grow(std::size_t count)
  {
    for (std::size_t i = 0; i < count; ++i) {
      const auto flags = *rc::gen::weightedElement<unsigned int>(
          {{10, 0U}, {2, memkernel::Instance3dSymbol}, {2, memkernel::InstanceProxy}});
      const auto product = panel.GetTree().CreateProduct({.name = "part", .flags = flags});
      instances.push_back(panel.GetTree().AddChild(Pick(), product));
    }
  }
  [[nodiscard]] const Instance& Pick() const { return instances[DrawBelow(instances.size())]; }
  [[nodiscard]] ShapeInstance PickShapeInstance() const { return scene->FindShapeInstance(Pick().Get()); }
  [[nodiscard]] guitree::SceneInfoLog& GetLog() const { return *panel.gui->GetLog(scene); }
  [[nodiscard]] bool IsShown() const { return panel.gui->GetCurrentLog() == &GetLog(); }
  [[nodiscard]] bool IsInRun() const { return m_batch != nullptr; }
  /// The visible map at the last delivery.
  [[nodiscard]] const WalkingModel::States& GetDelivered() const { return m_delivered; }
  template <typename Table>
  [[nodiscard]] static WalkingModel::States ToMap(const Table& table)
  {
    return {table.begin(), table.end()};
  }

  void CreateShapeInstance(zelk::ShapeDataStatus status)
  {
    const auto shape = du::MakeSmart<memkernel::Shape>(nullptr, status);
    scene->CreateShapeInstance(Pick(),
                               {.shape = shape, .isVisible = DrawBelow(3) != 0, .isThumbnail = DrawBelow(4) == 0});
  }
  void RemoveShapeInstance() { scene->RemoveShapeInstance(Pick()); }
  void ToggleVisible()
  {
    if (const ShapeInstance shapeInstance = PickShapeInstance()) {
      scene->SetVisible(shapeInstance, !shapeInstance->IsVisible());
    }
  }
  /// Counts from the next event of the shape instance on.
  void ToggleThumbnail()
  {
    if (const ShapeInstance shapeInstance = PickShapeInstance()) {
      scene->SetThumbnail(shapeInstance, !shapeInstance->IsThumbnail());
    }
  }
  void ToggleCompared()
  {
    if (const ShapeInstance shapeInstance = PickShapeInstance()) {
      scene->SetCompared(shapeInstance, !shapeInstance->IsCompared(), DrawBelow(2) == 0);
    }
  }
  void EndLoad(zelk::ShapeDataStatus status)
  {
    auto& requests = loader.Requests();
    if (requests.empty()) {
      return;
    }
    const auto request = requests.begin() + static_cast<std::ptrdiff_t>(DrawBelow(requests.size()));
    du::DynamicCast<memkernel::Shape>(request->shape)->SetDataStatus(status);
    model.OnLoadEnded(*request->shape);
    request->event->Complete();
    requests.erase(request);
  }
  /// Opens a run of events of the scene, or ends it.
  void TurnRun()
  {
    if (m_batch) {
      m_batch.reset();
    } else {
      m_batch = std::make_unique<memkernel::ShapeSceneBatch>(*scene);
    }
  }
  void ShowScene(bool isShown) { host.sceneManagerObserver->OnActiveViewChanged(isShown ? view : otherView); }
  void RunLoop()
  {
    model.OnLoop();
    loop->RunDue();
  }

  const bool thumbnailsAreFlat = DrawBelow(2) == 0;
  const du::SmartPtr<memkernel::OwnerLoop> loop = du::MakeSmart<memkernel::OwnerLoop>();
  const testsupport::InstalledLoader loader;
  RowHost host;
  const testsupport::WorldPanel panel{"root", du::MakeSmart<dom::ManagedObject>(loop)};
  /// Those in the tree, the root first.
  std::vector<Instance> instances{panel.kernel["root"]};
  const du::SmartPtr<memkernel::ShapeScene> scene = du::MakeSmart<memkernel::ShapeScene>(nullptr, panel.kernel.Get());
  const du::SmartPtr<memkernel::ShapeScene> other = du::MakeSmart<memkernel::ShapeScene>(nullptr, panel.kernel.Get());
  const du::SmartPtr<memkernel::ShapeView> view = du::MakeSmart<memkernel::ShapeView>(scene);
  const du::SmartPtr<memkernel::ShapeView> otherView = du::MakeSmart<memkernel::ShapeView>(other);
  PanelModel model;
  const du::SmartPtr<SceneListener> sceneListener = du::MakeSmart<SceneListener>(model, thumbnailsAreFlat);
  const du::SmartPtr<TreeListener> treeListener = du::MakeSmart<TreeListener>(model);

private:
  void _OnTold()
  {
    if (IsShown()) {
      model.ClearChanges();
      m_delivered = ToMap(GetLog().GetVisibleMap());
    }
  }

  WalkingModel::States m_delivered;
  std::unique_ptr<memkernel::ShapeSceneBatch> m_batch;
};

}  // namespace sceneinfotest
