#include "PanelModel.h"

#include <algorithm>
#include <utility>

#include "guitree/WorldTreeState.h"
#include "zelk/ObjectSelectionItem.h"
#include "zelk/SchematicScene.h"

namespace systemtest {
namespace {

using guitree::WorldTreeState;

bool IsHidden(const BasePtr& instance)
{
  const auto& part = dynamic_cast<const zelk::Instance&>(*instance);
  return part.IsBodyInstance() ? !WorldTreeState::IsShowingBodies() : part.Is3dSymbol();
}

FilterResult::Node CopyBranch(const BasePtr& instance)
{
  FilterResult::Node node{instance, {}};
  std::vector<BasePtr> children;
  instance->GetBaseChildren(children);
  for (const BasePtr& child : children) {
    node.children.push_back(CopyBranch(child));
  }
  return node;
}

}  // namespace

PanelModel::PanelModel(const du::SmartPtr<zelk::Tree>& tree, const View& start) : m_tree(tree), m_view(start)
{
  Populate();
}

void PanelModel::SetFilter(const FilterSettings& settings)
{
  FilterSettings& filter = _Filter();
  const bool hideBodies = filter.hideBodies;
  const bool collapse = filter.collapse;
  filter = settings;
  filter.hideBodies = hideBodies;
  filter.collapse = collapse;
  Populate();
}

void PanelModel::ChangeView(const View& view)
{
  if (view.number == m_view.number) {
    return;
  }
  OnSelectionCleared();
  const bool wasOn = _Filter().IsOn();
  const bool isOtherType = view.type != m_view.type;
  const bool hadLog = _GetCurrentLog() != nullptr;
  m_view = view;
  const FilterSettings& filter = _Filter();
  m_current = _GetLog(view.scene) ? view.scene : nullptr;
  if (view.number != 0) {
    _HighlightAll();
  }
  LogModel* const log = _GetCurrentLog();
  if (filter.IsViewDependent() || (isOtherType && (wasOn || filter.IsOn()))) {
    Populate();
    if (log) {
      _PaintAll(*log);
    }
    return;
  }
  if (log) {
    _PaintAll(*log);
    log->ClearChanges();
  } else if (hadLog) {
    m_rows.ForEach([](Rows::Row& row) { row.state = guitree::VisibleStateHidden; });
  }
  _ReadSelection();
  _RefreshHighlights();
}

void PanelModel::AddScene(const du::SmartPtr<zelk::Scene>& scene)
{
  if (!du::DynamicCast<zelk::SchematicScene>(scene)) {
    m_logs.try_emplace(scene, scene);
  }
}

void PanelModel::RemoveScene(const du::SmartPtr<zelk::Scene>& scene)
{
  m_logs.erase(scene);
  m_fullRepaint.erase(scene.Get());
  if (m_current == scene) {
    m_current = nullptr;
  }
}

void PanelModel::SetVisible(bool visible)
{
  m_isVisible = visible;
  if (!visible) {
    return;
  }
  if (m_needsRedraw) {
    Populate();
    return;
  }
  if (m_needsHighlights) {
    _RefreshHighlights();
  }
  if (!m_needsSelection) {
    return;
  }
  if (_Filter().IsDynamicSelection()) {
    Populate();
  } else {
    _ReadSelection();
  }
}

void PanelModel::ShowBodiesChanged()
{
  for (auto& [type, filter] : m_filters) {
    filter.hideBodies = !WorldTreeState::IsShowingBodies();
  }
  Populate();
}

void PanelModel::CollapseChanged()
{
  bool hasChanged = false;
  for (auto& [type, filter] : m_filters) {
    hasChanged |= filter.collapse != WorldTreeState::IsCollapsingInstances();
    filter.collapse = WorldTreeState::IsCollapsingInstances();
  }
  if (!hasChanged) {
    return;
  }
  std::set<BasePtr> all;
  zelk::BaseInstance::GetInstancesAndDescendents({_GetRoot()}, all);
  for (const BasePtr& instance : all) {
    if (dynamic_cast<const zelk::Instance&>(*instance).IsMultiInstancedSibling()) {
      _MarkIcon(instance);
    }
  }
  Populate();
}

void PanelModel::SetResults(std::shared_ptr<const std::set<BasePtr>> results)
{
  m_results = std::move(results);
  if (_Filter().resultsLive && _Filter().useResults) {
    Populate();
  }
}

bool PanelModel::CanOpenBranch() const
{
  return !m_isBusy && m_areRowsOfResult && m_result.hasPlaceholder && !GetFilter().list
         && m_result.root->instance == _GetRoot();
}

void PanelModel::OpenBranch()
{
  m_result.hasPlaceholder = false;
  *m_result.root = CopyBranch(m_result.root->instance);
  for (const FilterResult::Node& child : m_result.root->children) {
    _Visit(child, {m_result.root->instance});
  }
  if (Rows::Row* const row = m_rows.Find(m_result.root->instance.Get())) {
    row->canBeOpened = false;
  }
  _FinishBracket();
}

void PanelModel::CancelJob()
{
  if (!m_jobs.empty()) {
    m_jobs.back().isCancelled = true;
  }
}

void PanelModel::Populate()
{
  ++m_populations;
  m_highlighted.clear();
  m_shown.clear();
  m_rows.Clear();
  m_areRowsOfResult = false;
  const FilterSettings& filter = _Filter();
  if (!m_isVisible) {
    m_needsRedraw = true;
    return;
  }
  m_needsSelection = m_needsHighlights = m_needsRedraw = false;
  if (filter.IsOn()) {
    m_isBusy = true;
    if (m_arePropsLoaded) {
      for (Job& job : m_jobs) {
        job.isCancelled = true;
      }
      m_jobs.push_back({.run = {filter, m_view.selection, _GetShownScene(), m_results}, .result = {}});
      m_isCalculating = true;
    }
    return;
  }
  m_isBusy = false;
  if (const BasePtr root = _GetRoot()) {
    _CreateAll(root);
  }
  _FinishBracket();
}

void PanelModel::WorkOnJob(bool isCancelled)
{
  Job& job = m_jobs.front();
  if (!job.isCancelled) {
    job.result = job.run.Work(_GetRoot(), isCancelled);
  }
}

void PanelModel::EndJob()
{
  m_result = std::move(m_jobs.front().result);
  m_jobs.pop_front();
  if (!m_jobs.empty()) {
    return;
  }
  m_isBusy = m_isCalculating = false;
  m_result.matched.erase(_GetRoot());
  if (m_result.root) {
    _ShowResult();
  }
  _FinishBracket();
}

const LogModel* PanelModel::FindLog(const du::SmartPtr<zelk::Scene>& scene) const
{
  const auto log = m_logs.find(scene);
  return log == m_logs.end() ? nullptr : &log->second;
}

BasePtr PanelModel::_GetRoot() const
{
  BasePtr root;
  m_tree->GetBaseRoot(root);
  return root;
}

LogModel* PanelModel::_GetLog(const du::SmartPtr<zelk::Scene>& scene)
{
  const auto log = m_logs.find(scene);
  return log == m_logs.end() ? nullptr : &log->second;
}

LogModel* PanelModel::_GetCurrentLog()
{
  return m_current ? _GetLog(m_current) : nullptr;
}

du::SmartPtr<zelk::ShapeScene> PanelModel::_GetShownScene()
{
  return _GetCurrentLog() ? du::DynamicCast<zelk::ShapeScene>(m_current) : nullptr;
}

bool PanelModel::_IsListed(unsigned int list, const BasePtr& instance) const
{
  return m_view.selection->ContainsItem(
      list, du::MakeSmart<zelk::ObjectSelectionItem>(du::DynamicCast<zelk::Instance>(instance)),
      zelk::ExpandRuleInstances);
}

void PanelModel::_CreateAll(const BasePtr& instance)
{
  BasePtr parent;
  instance->GetBaseParent(parent);
  _CreateRow(instance, Rows::ListFrom(parent));
  std::vector<BasePtr> children;
  instance->GetBaseChildren(children);
  for (const BasePtr& child : children) {
    _CreateAll(child);
  }
}

void PanelModel::_CreateRow(const BasePtr& instance, const std::vector<BasePtr>& ancestors)
{
  if (IsHidden(instance)) {
    return;
  }
  m_shown.insert(instance.Get());
  const bool isHighlighted = _IsListed(zelk::SelectionManager::AssocHlightList, instance);
  if (isHighlighted) {
    m_highlighted.insert(instance.Get());
  }
  _AddRow(instance, ancestors, isHighlighted);
}

void PanelModel::_AddRow(const BasePtr& instance, const std::vector<BasePtr>& ancestors, bool isHighlighted)
{
  Rows::Row& row = m_rows.Add(instance, ancestors);
  row.hasHighlight = isHighlighted;
  row.isSelected = _IsListed(zelk::SelectionManager::SelectionList, instance);
  if (LogModel* const log = _GetCurrentLog()) {
    row.state = log->GetState(instance.Get());
    row.icon = log->FindIcon(instance.Get(), _GetShownScene());
  }
  m_isSelectionStale |= WorldTreeState::IsCollapsingInstances();
}

void PanelModel::_ShowResult()
{
  m_areRowsOfResult = true;
  if (_Filter().list && _Filter().IsOn()) {
    _WriteList();
  } else if (m_result.matched.empty() && _Filter().IsOn()) {
    _AddRow(m_result.root->instance, {}, false);
  } else {
    _Visit(*m_result.root, {});
  }
}

void PanelModel::_WriteList()
{
  const BasePtr top = m_result.root->instance;
  if (m_result.created.contains(top)) {
    _CreateRow(top, {});
  } else {
    _AddRow(top, {}, false);
  }
  std::vector<BasePtr> items(m_result.created.begin(), m_result.created.end());
  if (_Filter().isSorted) {
    SortByPartId(items, _Filter().isDescending);
  }
  for (const BasePtr& item : items) {
    if (item != _GetRoot()) {
      _CreateRow(item, Rows::ListFrom(top));
    }
  }
}

void PanelModel::_Visit(const FilterResult::Node& node, std::vector<BasePtr> ancestors)
{
  _CreateRow(node.instance, ancestors);
  ancestors.insert(ancestors.begin(), node.instance);
  for (const FilterResult::Node& child : node.children) {
    _Visit(child, ancestors);
  }
  const bool isTop = m_result.root && &node == m_result.root.get();
  Rows::Row* const row = m_rows.Find(node.instance.Get());
  if (isTop && m_result.hasPlaceholder && row) {
    row->canBeOpened = true;
  }
}

}  // namespace systemtest
