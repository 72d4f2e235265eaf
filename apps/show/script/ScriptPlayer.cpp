#include "script/ScriptPlayer.h"

#include <set>

#include "script/ScriptError.h"
#include "zelk/ObjectSelectionItem.h"

namespace script {

namespace {

using zelk::SelectionManager;

bool IsAddition(Verb verb)
{
  return verb == Verb::AddPart || verb == Verb::AddAssembly || verb == Verb::AddProxy;
}

memkernel::ProductInfo MakeProductInfo(Verb verb, const std::string& name)
{
  memkernel::ProductInfo info{.name = du::Symbol(name)};
  if (verb == Verb::AddPart) {
    info.shape = du::MakeSmart<memkernel::Shape>(memkernel::Shape::Work(), zelk::ShapeDataLoaded);
  } else {
    info.flags = verb == Verb::AddProxy ? memkernel::InstanceProxy : memkernel::InstancePlainIcon;
  }
  return info;
}

void Replace(memkernel::ShapeScene& scene, const memkernel::ShapeInstance& before, bool isThumbnail)
{
  du::SmartPtr<zelk::Instance> instance;
  before.GetInstance(instance);
  const bool isVisible = before.IsVisible();
  scene.RemoveShapeInstance(instance);
  scene.CreateShapeInstance(du::DynamicCast<memkernel::Instance>(instance),
                            {.isVisible = isVisible, .isThumbnail = isThumbnail});
}

/// Empty for a row that was opened.
std::string DescribeFault(PanelControl::Expansion expansion, const std::string& path)
{
  switch (expansion) {
    case PanelControl::Expansion::Done:
      return {};
    case PanelControl::Expansion::FilterAtWork:
      return "a filter is at work: nothing can be opened before it has ended";
    case PanelControl::Expansion::NoRow:
      return path + " has no row";
    case PanelControl::Expansion::NothingLeftOut:
      return "nothing is left out below " + path;
  }
  return {};
}

}  // namespace

/// One update of the tree and of all scenes. That of the tree ends first: a panel then shows the changes of both in
/// one.
class ScriptPlayer::Batch {
public:
  Batch(memkernel::Tree& tree, const std::vector<Stage::ScenePtr>& scenes) : m_scenes(BeginEach(scenes)), m_tree(tree)
  {
  }

private:
  using SceneBatches = std::vector<std::unique_ptr<memkernel::ShapeSceneBatch>>;

  static SceneBatches BeginEach(const std::vector<Stage::ScenePtr>& scenes)
  {
    SceneBatches batches;
    for (const Stage::ScenePtr& scene : scenes) {
      batches.push_back(std::make_unique<memkernel::ShapeSceneBatch>(*scene));
    }
    return batches;
  }

  const SceneBatches m_scenes;
  const memkernel::TreeBatch m_tree;
};

ScriptPlayer::ScriptPlayer(const du::SmartPtr<memkernel::World>& world, Stage& stage, PanelControl& panel)
    : m_world(world), m_stage(stage), m_panel(panel), m_finder(world->GetMemTree())
{
}

ScriptPlayer::~ScriptPlayer() = default;

void ScriptPlayer::Play(const Command& command)
{
  if (IsAddition(command.verb)) {
    _Add(command);
    return;
  }
  for (std::size_t time = 0; time < command.times; ++time) {
    _PlayOnce(command);
  }
}

void ScriptPlayer::_PlayOnce(const Command& command)
{
  switch (command.verb) {
    case Verb::Select:
      return _ChangeSelection(command, SelectionManager::SelectionList, SelectionManager::OperationAdd);
    case Verb::Deselect:
      return _ChangeSelection(command, SelectionManager::SelectionList, SelectionManager::OperationRemove);
    case Verb::Highlight:
      return _ChangeSelection(command, SelectionManager::AssocHlightList, SelectionManager::OperationAdd);
    case Verb::Unhighlight:
      return _ChangeSelection(command, SelectionManager::AssocHlightList, SelectionManager::OperationRemove);
    case Verb::Hide:
      return _SetVisible(command, false);
    case Verb::Show:
      return _SetVisible(command, true);
    case Verb::ThumbnailOn:
      return _SetThumbnail(command, true);
    case Verb::ThumbnailOff:
      return _SetThumbnail(command, false);
    case Verb::Rename:
      return _Rename(command);
    case Verb::Remove:
      return _Remove(command);
    case Verb::ExpandProxy:
      return _ChangeProxies(command, &memkernel::Tree::ExpandProxy);
    case Verb::CollapseProxy:
      return _ChangeProxies(command, &memkernel::Tree::CollapseProxy);
    case Verb::FailProxy:
      return _ChangeProxies(command, &memkernel::Tree::FailProxy);
    case Verb::SettleProxy:
      return _ChangeProxies(command, &memkernel::Tree::TurnProxyToNode);
    case Verb::ActivateView:
      return _ActivateView(command.number);
    case Verb::ActivateNoView:
      return _ActivateNoView();
    case Verb::RemoveView:
      return _RemoveView(command.number);
    case Verb::SetViewType:
      return m_panel.SetViewType(m_stage.GetView(command.number), command.name);
    case Verb::AddScene:
      return m_stage.AddSceneOfAll();
    case Verb::RemoveScene:
      return m_stage.RemoveScene(command.number);
    case Verb::HidePanel:
      return m_panel.SetInSight(false);
    case Verb::ShowPanel:
      return m_panel.SetInSight(true);
    case Verb::ShowBodies:
      return m_panel.SetShowingBodies(true);
    case Verb::LeaveBodiesOut:
      return m_panel.SetShowingBodies(false);
    case Verb::Collapse:
      return m_panel.SetCollapsing(true);
    case Verb::Uncollapse:
      return m_panel.SetCollapsing(false);
    case Verb::Filter:
      return _Filter(command.filter);
    case Verb::FilterOff:
      return _Filter({});
    case Verb::Sort:
    case Verb::SortOff:
      return _Sort(command.filter);
    case Verb::SetResults:
      return _SetResults(command);
    case Verb::ResultsOff:
      return m_panel.SetResults({});
    case Verb::Expand:
      return _Expand(command);
    case Verb::HoldFilter:
      return m_panel.HoldFilters(true);
    case Verb::ResumeFilter:
      return m_panel.HoldFilters(false);
    case Verb::CancelFilter:
      return _CancelFilter();
    case Verb::BeginBatch:
      return _BeginBatch();
    case Verb::EndBatch:
      return _EndBatch();
    case Verb::AddPart:
    case Verb::AddAssembly:
    case Verb::AddProxy:
    case Verb::Print:
      return;
  }
}

ScriptPlayer::Instances ScriptPlayer::_FindAll(const Command& command) const
{
  Instances found;
  for (const Path& path : command.paths) {
    found.push_back(m_finder.Find(path));
  }
  return found;
}

const Stage::ScenePtr& ScriptPlayer::_FindScene(const Command& command) const
{
  return command.scene > 0 ? m_stage.GetScene(command.scene) : m_stage.GetCurrentScene();
}

// As in the panel, the selection is that of the world while no view is current.
du::SmartPtr<SelectionManager> ScriptPlayer::_FindSelection(const Command& command) const
{
  if (command.scene == 0 && !m_stage.HasCurrentView()) {
    return m_world->selectionManager;
  }
  du::SmartPtr<SelectionManager> manager;
  _FindScene(command)->GetSelectionManager(manager);
  return manager;
}

void ScriptPlayer::_ChangeSelection(const Command& command, unsigned int list,
                                    SelectionManager::Operation operation) const
{
  SelectionManager::ItemSet items;
  for (const InstancePtr& instance : _FindAll(command)) {
    items.insert(du::MakeSmart<zelk::ObjectSelectionItem>(instance));
  }
  _FindSelection(command)->ApplyItems(list, items, items.empty() ? SelectionManager::OperationSet : operation);
}

void ScriptPlayer::_SetVisible(const Command& command, bool isVisible) const
{
  const Instances tops = _FindAll(command);
  const Stage::ScenePtr scene = _FindScene(command);
  const memkernel::ShapeSceneBatch batch(*scene);
  for (const InstancePtr& top : tops) {
    for (const InstancePtr& instance : ListSubtree(top)) {
      scene->SetVisible(scene->FindShapeInstance(instance.Get()), isVisible);
    }
  }
}

void ScriptPlayer::_SetThumbnail(const Command& command, bool isThumbnail) const
{
  const Instances tops = _FindAll(command);
  const Stage::ScenePtr scene = _FindScene(command);
  const memkernel::ShapeSceneBatch batch(*scene);
  for (const InstancePtr& top : tops) {
    for (const InstancePtr& instance : ListSubtree(top)) {
      const auto before = scene->FindShapeInstance(instance.Get());
      if (before && before->IsThumbnail() != isThumbnail) {
        Replace(*scene, *before, isThumbnail);
      }
    }
  }
}

void ScriptPlayer::_Rename(const Command& command) const
{
  m_world->GetMemTree().Rename(m_finder.Find(command.paths.front()), du::Symbol(command.name));
}

// The parent is found once for all repetitions: each search is a walk through the tree.
void ScriptPlayer::_Add(const Command& command)
{
  const Path& path = command.paths.front();
  if (path.steps.back().number > 0) {
    throw ScriptError("a new instance has no '#': " + ToText(path));
  }
  const InstancePtr parent = _FindParent(path);
  const du::SmartPtr<memkernel::Product>& product = _GetProduct(command.verb, path.steps.back().name);
  memkernel::Tree& tree = m_world->GetMemTree();
  for (std::size_t time = 0; time < command.times; ++time) {
    const InstancePtr added = parent ? tree.AddChild(parent, product) : tree.CreateRoot(product);
    if (!added) {
      throw ScriptError("there is a root already");
    }
    _AddToScenes(added);
  }
}

ScriptPlayer::InstancePtr ScriptPlayer::_FindParent(const Path& path) const
{
  Path parent = path;
  parent.steps.pop_back();
  if (!parent.steps.empty()) {
    return m_finder.Find(parent);
  }
  if (!path.isFromRoot) {
    throw ScriptError("name the parent of a new instance before it: PARENT/" + ToText(path));
  }
  return {};
}

void ScriptPlayer::_AddToScenes(const InstancePtr& added) const
{
  if (added->HasShapeSource()) {
    for (const Stage::ScenePtr& scene : m_stage.GetScenes()) {
      scene->CreateShapeInstance(added);
    }
  }
}

const du::SmartPtr<memkernel::Product>& ScriptPlayer::_GetProduct(Verb verb, const std::string& name)
{
  du::SmartPtr<memkernel::Product>& product = m_products[{verb, name}];
  if (!product) {
    product = m_world->GetMemTree().CreateProduct(MakeProductInfo(verb, name));
  }
  return product;
}

void ScriptPlayer::_Remove(const Command& command) const
{
  // What stands below another one of them has gone with it: the tree refuses it, and there is nothing left to do.
  for (const InstancePtr& instance : _FindAll(command)) {
    m_world->GetMemTree().Remove(instance);
  }
}

void ScriptPlayer::_ChangeProxies(const Command& command, bool (memkernel::Tree::*change)(const InstancePtr&)) const
{
  const Instances proxies = _FindAll(command);
  for (std::size_t i = 0; i < proxies.size(); ++i) {
    if (!proxies[i]->IsProxy()) {
      throw ScriptError(ToText(command.paths[i]) + " is no proxy");
    }
  }
  for (const InstancePtr& proxy : proxies) {
    (m_world->GetMemTree().*change)(proxy);
  }
}

// One that says nothing of the order leaves it as it is.
void ScriptPlayer::_Filter(const FilterSettings& settings) const
{
  if (const std::string need = FindNeedOfAFilter(settings); !need.empty() && !m_panel.IsCollapsing()) {
    throw ScriptError(need);
  }
  FilterSettings next = settings;
  if (!next.sort) {
    next.sort = m_panel.GetFilter().sort;
    next.descending = m_panel.GetFilter().descending;
  }
  m_panel.SetFilter(next);
}

void ScriptPlayer::_Sort(const FilterSettings& sorting) const
{
  FilterSettings next = m_panel.GetFilter();
  next.sort = sorting.sort;
  next.descending = sorting.descending;
  m_panel.SetFilter(next);
}

void ScriptPlayer::_SetResults(const Command& command) const
{
  const Instances found = _FindAll(command);
  m_panel.SetResults(du::MakeSmart<structure_utils::TreeResultsList>(
      std::set<du::SmartPtr<zelk::BaseInstance>>(found.begin(), found.end())));
}

void ScriptPlayer::_ActivateView(std::size_t number) const
{
  m_panel.PrepareView(m_stage.GetView(number));
  m_stage.ActivateView(number);
}

void ScriptPlayer::_ActivateNoView() const
{
  m_panel.PrepareView({});
  m_stage.ActivateNoView();
}

void ScriptPlayer::_RemoveView(std::size_t number) const
{
  if (m_stage.IsCurrentView(number)) {
    m_panel.PrepareView({});
  }
  m_stage.RemoveView(number);
}

void ScriptPlayer::_CancelFilter() const
{
  if (!m_panel.CancelFilter()) {
    throw ScriptError("no filter is at work");
  }
}

void ScriptPlayer::_Expand(const Command& command) const
{
  const Instances instances = _FindAll(command);
  for (std::size_t i = 0; i < instances.size(); ++i) {
    const std::string fault = DescribeFault(m_panel.Expand(*instances[i]), ToText(command.paths[i]));
    if (!fault.empty()) {
      throw ScriptError(fault);
    }
  }
}

void ScriptPlayer::_BeginBatch()
{
  if (m_batch) {
    throw ScriptError("a batch is under way already: 'end' comes first");
  }
  m_batch = std::make_unique<Batch>(m_world->GetMemTree(), m_stage.GetScenes());
}

void ScriptPlayer::_EndBatch()
{
  if (!m_batch) {
    throw ScriptError("no batch is under way");
  }
  m_batch.reset();
}

}  // namespace script
