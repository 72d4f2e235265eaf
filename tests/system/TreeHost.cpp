#include "TreeHost.h"

#include <utility>

#include "guitree/SceneInfoLog.h"
#include "guitree/TypeIconMap.h"
#include "guitree/WorldTreeState.h"

namespace systemtest {

using guitree::WorldTreeState;

void TreeHost::FinishTreeUpdate()
{
  m_depth = m_depth > 0 ? m_depth - 1 : 0;
  if (m_depth == 0 && std::exchange(m_isSelectionStale, false)) {
    _ReadSelection();
  }
}

void TreeHost::ClearTree()
{
  ++clears;
  rows.Clear();
}

void TreeHost::MadeVisible(bool visible)
{
  if (visible) {
    _ReadSelection();
  }
}

void TreeHost::UpdateVisAndTypeIconChanges(
    const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* /*visibleMap*/,
    const du::HashMap<const zelk::BaseInstance*, int>* visibleChangeMap, guitree::TypeIconMap* /*typeIconMap*/,
    const du::HashMap<const zelk::BaseInstance*, int>* typeIconChangeMap)
{
  for (const auto& [instance, word] : *visibleChangeMap) {
    if (Rows::Row* const row = rows.Find(instance)) {
      row->state = word / 16;
    }
  }
  for (const auto& [instance, icon] : *typeIconChangeMap) {
    if (Rows::Row* const row = rows.Find(instance)) {
      row->icon = icon;
    }
  }
}

void TreeHost::UpdateVisAndTypeIcons(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* visibleMap,
                                     guitree::TypeIconMap* typeIconMap)
{
  rows.ForEach([&](Rows::Row& row) {
    row.state = guitree::VisibleStateHidden;
    if (visibleMap) {
      const auto known = visibleMap->find(row.instance.Get());
      row.state = known == visibleMap->end() ? guitree::VisibleStateHidden : known->second;
    }
    if (typeIconMap) {
      typeIconMap->Find(row.instance.Get(), row.icon, m_panel->GetCurrentLog()->GetScene());
    }
  });
}

bool TreeHost::CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  if (Rows::Row* const row = rows.Find(instance.Get())) {
    row->name = instance->GetObjectName();
  }
  return refusesNames;
}

void TreeHost::ClearSelection()
{
  rows.ForEach([](Rows::Row& row) { row.isSelected = false; });
}

bool TreeHost::SetAssocHlight(zelk::BaseInstance* instance, bool on)
{
  if (Rows::Row* const row = rows.Find(instance)) {
    row->hasHighlight = on;
  }
  return true;
}

void TreeHost::InstanceCreate(guitree::FilteredTree::Node* node,
                              const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  std::vector<BasePtr> ancestors;
  for (const auto* above = node->parent; above; above = above->parent) {
    ancestors.emplace_back(above->instance);
  }
  _Add(BasePtr(node->instance), ancestors, controller, assocHlight);
}

void TreeHost::InstanceCreate(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& parent,
                              const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  _Add(instance, Rows::ListFrom(parent), controller, assocHlight);
}

void TreeHost::InstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                              const du::SmartPtr<zelk::BaseInstance>& /*parent*/, bool /*repopulatePending*/)
{
  rows.RemoveBranch(*instance);
}

du::Symbol TreeHost::GetViewTypeString(const du::SmartPtr<zelk::View>& view) const
{
  return typeOf(view);
}

du::SmartPtr<zelk::ProgressCtrl> TreeHost::CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& event)
{
  jobs.push_back(event);
  return {};
}

void TreeHost::FilterNodeCreate(guitree::FilteredTree::Node* node)
{
  if (Rows::Row* const row = rows.Find(node->instance)) {
    row->canBeOpened = true;
  }
}

void TreeHost::_Add(const BasePtr& instance, const std::vector<BasePtr>& ancestors,
                    const du::SmartPtr<guitree::TreeSelectionController>& controller, bool isHighlighted)
{
  if (losesRow && losesRow(*instance)) {
    return;
  }
  Rows::Row& row = rows.Add(instance, ancestors);
  row.hasHighlight = isHighlighted;
  row.isSelected = controller && controller->ContainsItem(instance);
  if (guitree::SceneInfoLog* const log = m_panel->GetCurrentLog()) {
    row.state = log->GetCompVisibleState(instance);
    log->GetTypeIconMap().Find(instance.Get(), row.icon, log->GetScene());
  }
  m_isSelectionStale |= WorldTreeState::IsCollapsingInstances();
}

void TreeHost::_ReadNames()
{
  rows.ForEach([](Rows::Row& row) { row.name = row.instance->GetObjectName(); });
}

void TreeHost::_ReadSelection()
{
  std::set<BasePtr> selected;
  m_panel->GetTreeState()->GetSelectedComps(selected, false);
  ClearSelection();
  std::set<zelk::BaseInstance*> standing;
  m_panel->GetTreeState()->GetBaseInstFromSelItems({selected.begin(), selected.end()}, standing);
  for (const zelk::BaseInstance* instance : standing) {
    if (Rows::Row* const row = rows.Find(instance)) {
      row->isSelected = true;
    }
  }
}

void TreeHost::_Mark(const std::vector<du::SmartPtr<zelk::Object>>& items, bool isSelected)
{
  if (WorldTreeState::IsCollapsingInstances()) {
    m_isSelectionStale = true;
    return;
  }
  std::set<zelk::BaseInstance*> standing;
  m_panel->GetTreeState()->GetBaseInstFromSelItems(items, standing);
  for (const zelk::BaseInstance* instance : standing) {
    if (Rows::Row* const row = rows.Find(instance)) {
      row->isSelected = isSelected;
    }
  }
}

}  // namespace systemtest
