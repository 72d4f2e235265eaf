// What the state of a structure panel costs beyond what it stands on: the icon of an instance against the bare
// questions to the kernel, a list in the order of a column against a sort of the same keys, the display switches
// against a plain population, and a wave of loads against the loader alone.

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "guitree/TreeController.h"
#include "memkernel/Instance.h"
#include "memkernel/Loader.h"
#include "memkernel/Shape.h"
#include "memkernel/View.h"
#include "support/FilterNames.h"
#include "support/FilterPanel.h"
#include "support/Measure.h"
#include "support/Shapes.h"
#include "support/StructurePanel.h"
#include "support/Walk.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelk/PropertyValue.h"
#include "zelloader/ShapeLoaderEvent.h"

namespace bench {
namespace {

using InstancePtr = du::ConstSmartPtr<zelk::Instance>;
using Instances = std::vector<InstancePtr>;
using ScenePtr = du::SmartPtr<memkernel::ShapeScene>;

constexpr unsigned short s_geometry = 1;

/// The kernel hands its instances out to be edited; only the walk reads.
du::SmartPtr<memkernel::Instance> GetEditable(const InstancePtr& instance)
{
  return du::SmartPtr<memkernel::Instance>(
      const_cast<memkernel::Instance*>(dynamic_cast<const memkernel::Instance*>(instance.Get())));
}

Instances ListInstances(const memkernel::Tree& tree)
{
  Instances instances;
  WalkDepthFirst(tree, [&](const zelk::BaseInstance& instance, std::size_t /*depth*/) {
    instances.emplace_back(&dynamic_cast<const zelk::Instance&>(instance));
  });
  return instances;
}

/// Leaves get a shape to load, as the parts of an assembly have.
void GiveSources(memkernel::Tree& tree, const Instances& instances)
{
  const memkernel::TreeBatch batch(tree);
  for (const auto& instance : instances) {
    if (!instance->HasChildren()) {
      tree.SetFlags(GetEditable(instance), memkernel::InstanceShapeSource, true);
    }
  }
}

/// Every part has a loaded shape there.
ScenePtr MakeScene(const du::SmartPtr<memkernel::Tree>& tree, const Instances& instances)
{
  const auto scene = du::MakeSmart<memkernel::ShapeScene>(du::SmartPtr<zelk::SelectionManager>(), tree);
  const auto shape = du::MakeSmart<memkernel::Shape>(nullptr, zelk::ShapeDataLoaded);
  for (const auto& instance : instances) {
    if (instance->HasShapeSource()) {
      scene->CreateShapeInstance(GetEditable(instance), {.shape = shape});
    }
  }
  return scene;
}

/// What the choice of an icon asks the kernel, without the choice.
unsigned int AskAboutShape(const InstancePtr& instance, const zelk::ShapeScene& scene)
{
  du::SmartPtr<zelk::ShapeInstance> shapeInstance;
  du::SmartPtr<zelk::Shape> shape;
  if (!scene.GetShapeInstance(instance, shapeInstance)) {
    return 0;
  }
  shapeInstance->GetShape(shape);
  return unsigned{shape && shape->IsFromTrask()} + unsigned{shape && shape->IsFailedFromTrask()}
         + shapeInstance->GetShapeDataStatus(s_geometry) + unsigned{shapeInstance->HasRejectedCopyrights()};
}

unsigned int AskAbout(const InstancePtr& instance, const zelk::ShapeScene* scene)
{
  const unsigned int answers =
      unsigned{instance->IsRootContainerRoot()} + unsigned{instance->HasProxyExpandFailed()}
      + unsigned{instance->IsProxyExpanded()} + unsigned{instance->IsProxy()} + unsigned{instance->IsBodyTypeInstance()}
      + unsigned{instance->IsConstructionBodyTypeInstance()} + unsigned{instance->IsPlainIconInstance()};
  const bool hasSource = instance->HasShapeSource();
  const unsigned int shape = hasSource && scene ? AskAboutShape(instance, *scene) : 0;
  return answers + unsigned{hasSource} + unsigned{instance->HasThumbnailSource()} + shape;
}

Figures ChooseIcons(std::size_t count, bool withScene)
{
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, count);
  const Instances instances = ListInstances(*tree);
  GiveSources(*tree, instances);
  const ScenePtr scene = withScene ? MakeScene(tree, instances) : nullptr;
  return RunRounds(count, [&](Figures& figures) {
    const double floor = Time([&] {
      for (const auto& instance : instances) {
        benchmark::DoNotOptimize(AskAbout(instance, scene.Get()));
      }
    });
    const double seconds = Time([&] {
      for (const auto& instance : instances) {
        benchmark::DoNotOptimize(guitree::StructureTreeState::GetUnloadedTypeIconStatic(instance, scene));
      }
    });
    figures["x_floor"] = seconds / floor;
    return seconds;
  });
}

std::vector<const char*> ReadKeys(const guitree::FilteredTree& tree, const du::DualSymbol& column)
{
  guitree::FilteredTree::CreatedSet items;
  tree.GetAllCreatedItems(items);
  std::vector<const char*> keys;
  for (const auto& item : items) {
    du::SmartPtr<zelk::PropertyValue> property;
    item->GetPropertyValue(property, column.GetFirst(), column.GetSecond(), du::Symbol::EMPTY);
    du::Symbol value;
    property->GetValueAsSymbol(value);
    keys.push_back(value.GetText());
  }
  return keys;
}

/// A name of its own for each instance, in no order, and with the word that the filter looks for in three of ten.
void GiveOwnNames(memkernel::Tree& tree)
{
  std::mt19937 random(1);
  const memkernel::TreeBatch batch(tree);
  for (const InstancePtr& instance : ListInstances(tree)) {
    const std::string name =
        std::string("Item ").append(std::to_string(random())).append(random() % 10 < 3 ? " bolt" : "");
    tree.Rename(GetEditable(instance), du::Symbol(std::string_view(name)));
  }
}

/// Three in ten instances match.
Figures ShowList(std::size_t matches, void (*giveNames)(memkernel::Tree&))
{
  const std::size_t count = matches * 10 / 3;
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, count);
  giveNames(*tree);
  StructurePanel panel(tree);
  zelremote::StructureFilterInfo& filter = panel.GetFilter();
  filter.SetText("bolt");
  filter.listMode = 1;
  const du::DualSymbol column(zelk::BaseInstanceDynamicPropertiesCache::s_GroupName,
                              memkernel::Instance::s_displayName);
  filter.SetSortColumn(column);
  panel.GetState().PopulateTree(false);
  panel.Settle();
  const du::SmartPtr<guitree::FilteredTree> result = panel.GetGuiTree().GetTreeController()->GetFilteredTree();
  const std::vector<const char*> keys = ReadKeys(*result, column);
  return RunRounds(keys.size(), [&](Figures& figures) {
    std::vector<const char*> sorted = keys;
    const double floor = Time([&] {
      std::stable_sort(sorted.begin(), sorted.end(),
                       [](const char* a, const char* b) { return std::strcmp(a, b) < 0; });
    });
    panel.GetHost().rows = 0;
    bool isList = false;
    const double seconds = Time([&] { isList = panel.GetState().ApplyFilterAsList(result->GetRoot(), {}); });
    Require(isList && panel.GetHost().rows == keys.size() + 1,
            "the list has a row for each match, and one for the root");
    figures["x_floor"] = seconds / floor;
    return seconds;
  });
}

/// Sets a switch and takes it back, beside a population of the same rows. Collapsed instances are a filter: its worker
/// counts for itself.
template <typename Switch>
Figures ToggleSwitch(std::size_t count, const Switch& toggle)
{
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, count);
  StructurePanel panel(tree);
  static_cast<void>(panel.GetFilter());
  const auto fill = [&] {
    panel.GetHost().rows = 0;
    const double seconds = Time([&] {
      panel.GetState().PopulateTree(true);
      panel.Settle();
    });
    Require(panel.GetHost().rows == count, "a population makes a row of each instance");
    return seconds;
  };
  return RunRounds(count, [&](Figures& figures) {
    const double plain = fill();
    double worker = 0;
    const double on = Time([&] {
      const WorkerTimer timer;
      toggle(panel, true);
      panel.Settle();
      worker = timer.GetSeconds();
    });
    const double off = Time([&] {
      toggle(panel, false);
      panel.Settle();
    });
    figures["x_on"] = (on - worker) / plain;
    figures["x_on_worker"] = worker / plain;
    figures["x_off"] = off / plain;
    return off;
  });
}

void ToggleBodies(const StructurePanel& panel, bool isHiding)
{
  guitree::WorldTreeState::SetIsShowingBodies(!isHiding);
  panel.GetState().ShowBodiesChanged();
}

void ToggleCollapsing(const StructurePanel& panel, bool isCollapsing)
{
  guitree::WorldTreeState::SetIsCollapsingInstances(isCollapsing);
  panel.GetState().UpdateFiltersForCollapsingInstances(isCollapsing);
}

constexpr std::size_t s_loads = 10'000;

/// A scene of so many shapes of their own, none of which has been loaded.
struct UnloadedScene {
  ScenePtr scene;
  std::vector<du::SmartPtr<zelk::Shape>> shapes;
};

UnloadedScene MakeUnloadedScene(const du::SmartPtr<memkernel::Tree>& tree, const Instances& instances, bool isSpread)
{
  UnloadedScene made{du::MakeSmart<memkernel::ShapeScene>(du::SmartPtr<zelk::SelectionManager>(), tree), {}};
  const std::size_t step = isSpread ? instances.size() / s_loads : 1;
  for (std::size_t number = 0; number < s_loads; ++number) {
    const auto shape =
        du::MakeSmart<memkernel::Shape>([](memkernel::LoadContext& /*context*/) { return zelk::ShapeDataLoaded; });
    made.scene->CreateShapeInstance(GetEditable(instances[number * step]), {.shape = shape});
    made.shapes.emplace_back(shape);
  }
  return made;
}

/// The same loads, asked for by somebody who does nothing with them.
void LoadAlone(memkernel::World& world, dom::ManagedObject& manager, const UnloadedScene& unloaded)
{
  for (const auto& shape : unloaded.shapes) {
    const auto event = du::MakeSmart<zelloader::ShapeLoaderEvent>();
    manager.ManageObject(event);
    world.GetMemLoader().LoadShape(shape, du::Flags(zelloader::Loader::LoadGeometry), event.Get(), nullptr);
  }
}

/// Of instances that stand together in the tree, or far apart: then each of them is the only one of its assembly.
Figures LoadWave(std::size_t count, bool isSpread)
{
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, count);
  const Instances instances = ListInstances(*tree);
  StructurePanel panel(tree);
  const auto manager = panel.GetWorld().CreateManagedObject();
  return RunRounds(s_loads, [&](Figures& figures) {
    const UnloadedScene others = MakeUnloadedScene(tree, instances, isSpread);
    const double alone = Time([&] {
      LoadAlone(panel.GetWorld(), *manager, others);
      panel.Settle();
    });
    const ScenePtr scene = MakeUnloadedScene(tree, instances, isSpread).scene;
    const auto view = du::MakeSmart<memkernel::ShapeView>(scene);
    panel.GetHost().sceneUpdates = 0;
    const double seconds = Time([&] {
      panel.GetGuiTree().OnSceneAdded(scene);
      panel.GetGuiTree().OnActiveViewChanged(view);
      panel.Settle();
    });
    Require(panel.GetHost().sceneUpdates == 1, "the host hears of a wave once");
    panel.GetGuiTree().OnSceneRemoved(scene);
    figures["us_beyond"] = (seconds - alone) / static_cast<double>(s_loads) * 1e6;
    figures["x_loader"] = seconds / alone;
    return seconds;
  });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  using namespace bench;
  Register("Icon/alone", {100'000, 1'000'000}, [](std::size_t count) { return ChooseIcons(count, false); });
  Register("Icon/scene", {100'000, 1'000'000}, [](std::size_t count) { return ChooseIcons(count, true); });
  Register("List/sorted", {30'000, 300'000}, [](std::size_t count) { return ShowList(count, GiveFilterNames); });
  Register("List/names", {30'000, 300'000}, [](std::size_t count) { return ShowList(count, GiveOwnNames); });
  Register("Switch/bodies", {100'000, 1'000'000}, [](std::size_t count) { return ToggleSwitch(count, ToggleBodies); });
  Register("Switch/collapse", {100'000, 1'000'000},
           [](std::size_t count) { return ToggleSwitch(count, ToggleCollapsing); });
  Register("Wave/together", {10'000, 100'000, 1'000'000}, [](std::size_t count) { return LoadWave(count, false); });
  Register("Wave/spread", {100'000, 1'000'000}, [](std::size_t count) { return LoadWave(count, true); });
  return RunAll(argc, argv);
}
