#include "guitree/WorldTreeState.h"

#include <atomic>

#include "facade/Pin.h"
#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/WorldTreeStateTreeObserver.h"
#include "sceneinfo/WTShapeLoaderEvent.h"
#include "zelk/World.h"

namespace guitree {
namespace {

// The switches stand alone, so their readers on workers need no order.
[[nodiscard]] bool ReadSwitch(bool& value)
{
  return std::atomic_ref<bool>(value).load(std::memory_order_relaxed);
}

void WriteSwitch(bool& value, bool on)
{
  std::atomic_ref<bool>(value).store(on, std::memory_order_relaxed);
}

[[nodiscard]] du::SmartPtr<zelk::Tree> GetWorldTree()
{
  const du::SmartPtr<zelk::World> world = zelk::World::GetWorld();
  return world ? world->tree : nullptr;
}

}  // namespace

bool WorldTreeState::s_bShowBodies = true;
bool WorldTreeState::s_bCollapseInstances = false;

WorldTreeState::WorldTreeState(GuiTree& tree) : TreeStateBase(tree) {}

WorldTreeState::~WorldTreeState()
{
  for (WTShapeLoaderEvent* const event : m_liveLoads) {
    event->treeState = nullptr;
  }
  if (treeObserver) {
    treeObserver->_Detach();
  }
}

bool WorldTreeState::IsShowingBodies()
{
  return ReadSwitch(s_bShowBodies);
}

void WorldTreeState::SetIsShowingBodies(bool isShowing)
{
  WriteSwitch(s_bShowBodies, isShowing);
}

bool WorldTreeState::IsCollapsingInstances()
{
  return ReadSwitch(s_bCollapseInstances);
}

void WorldTreeState::SetIsCollapsingInstances(bool isCollapsing)
{
  WriteSwitch(s_bCollapseInstances, isCollapsing);
}

du::SmartPtr<zelk::BaseTree> WorldTreeState::Initialise_GetZelkTree(const du::SmartPtr<zelk::View>& /*view*/)
{
  return GetWorldTree();
}

du::SmartPtr<TreeSelectionController> WorldTreeState::GetSelController(bool /*forRows*/) const
{
  return GetWTSelController();
}

bool WorldTreeState::HaveSelController() const
{
  return _HasGuiTree() && GetGuiTree().GetSelectionManager();
}

bool WorldTreeState::HasInstGotThumbnail(const du::SmartPtr<zelk::BaseInstance>& instance) const
{
  const auto* kernelInstance = dynamic_cast<const zelk::Instance*>(instance.Get());
  return kernelInstance && kernelInstance->HasThumbnailSource();
}

void WorldTreeState::CreateAndRegisterTreeObserver()
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &GetGuiTree());
  du::SmartPtr<WorldTreeStateTreeObserver> replaced;
  do {
    replaced = treeObserver;
    DeregisterTreeObserver();
    // The end of a run, which that handles, may have registered another one.
  } while (treeObserver && treeObserver != replaced);
  if (!GetWorldTree()) {
    return;
  }
  treeObserver = CreateWorldTreeObserver();
  const du::SmartPtr<WorldTreeStateTreeObserver> observer = treeObserver;
  if (!observer) {
    return;
  }
  if (const auto& manager = GetGuiTree().GetManagedObject()) {
    manager->ManageObject(observer);
  }
  // Null when the panel shows a tree of another kind.
  if (const du::SmartPtr<zelk::Tree> tree = observer->GetTree()) {
    tree->RegisterObserver(*observer, false);
  }
}

void WorldTreeState::DeregisterTreeObserver()
{
  const du::SmartPtr<WorldTreeStateTreeObserver> observer = treeObserver;
  if (!observer) {
    return;
  }
  const Pin self(this);
  if (const du::SmartPtr<zelk::Tree> tree = observer->GetTree()) {
    tree->UnregisterObserver(*observer);
  }
  observer->_Detach();
  // The end of a run may have registered another one.
  if (treeObserver == observer) {
    treeObserver.Reset();
  }
}

bool WorldTreeState::IsInstLoaded(const zelk::BaseInstance* instance)
{
  const du::SmartPtr<zelk::ShapeScene> scene = _HasGuiTree() ? GetGuiTree().GetCurShapeScene() : nullptr;
  if (!scene) {
    return false;
  }
  du::SmartPtr<zelk::ShapeInstance> shapeInstance;
  const du::ConstSmartPtr<zelk::Instance> kernelInstance(dynamic_cast<const zelk::Instance*>(instance));
  return scene->GetShapeInstance(kernelInstance, shapeInstance);
}

void WorldTreeState::GetBaseInstFromSelItems(const std::vector<du::SmartPtr<zelk::Object>>& items,
                                             std::set<zelk::BaseInstance*>& out)
{
  const bool isCollapsing = IsCollapsingInstances();
  for (const auto& item : items) {
    auto instance = du::DynamicCast<zelk::Instance>(item);
    if (instance && isCollapsing && instance->IsMultiInstancedSibling()) {
      instance = instance->GetFirstMultiInstancedSibling();
    }
    if (instance && GetNotFilteredSet().contains(instance.Get())) {
      out.insert(instance.Get());
    }
  }
}

SceneInfoLog* WorldTreeState::CreateSceneInfoLog()
{
  return new SceneInfoLog(&GetGuiTree());
}

bool WorldTreeState::IsInstHidden(zelk::BaseInstance* instance) const
{
  return TreeStateBase::IsInstHidden(instance);
}

bool WorldTreeState::HasNoneHiddenChildren(const du::SmartPtr<zelk::BaseInstance>& instance) const
{
  return TreeStateBase::HasNoneHiddenChildren(instance);
}

du::SmartPtr<WorldTreeStateTreeObserver> WorldTreeState::CreateWorldTreeObserver()
{
  return du::MakeSmart<WorldTreeStateTreeObserver>(this, GetTree());
}

du::SmartPtr<zelk::Tree> WorldTreeState::GetTree() const
{
  return _HasGuiTree() ? du::DynamicCast<zelk::Tree>(GetGuiTree().GetBaseTree()) : nullptr;
}

du::SmartPtr<WorldTreeSelectionController> WorldTreeState::GetWTSelController() const
{
  return HaveSelController() ? du::MakeSmart<WorldTreeSelectionController>(GetGuiTree().GetSelectionManager())
                             : nullptr;
}

// NOLINTNEXTLINE(readability-make-member-function-const): as the one over base instances, which a state may override
void WorldTreeState::GetSelectedComps(std::set<du::SmartPtr<zelk::Instance>>& out, bool withDescendents)
{
  if (!GetSelController(false)) {
    return;
  }
  const du::SmartPtr<WorldTreeSelectionController> selController = GetWTSelController();
  if (!selController) {
    return;
  }
  if (!withDescendents) {
    selController->GetSelectedInstances(out);
    return;
  }
  std::set<du::SmartPtr<zelk::Instance>> selected;
  selController->GetSelectedInstances(selected);
  zelk::Instance::GetInstancesAndDescendents(selected, out);
}

void WorldTreeState::AddStopWatch(const std::string& name)
{
  stopwatch = du::Stopwatch::StopwatchEntry(name, du::Stopwatch::InitRunning);
}

}  // namespace guitree
