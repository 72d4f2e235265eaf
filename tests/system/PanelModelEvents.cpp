// What the model does with what tree and selection tell.

#include <utility>

#include "PanelModel.h"
#include "guitree/WorldTreeState.h"
#include "zelk/ObjectSelectionItem.h"

namespace systemtest {

using guitree::WorldTreeState;

void PanelModel::OnInstanceCreate(const BasePtr& instance, const BasePtr& parent)
{
  for (auto& [scene, log] : m_logs) {
    log.Remove(*instance);
  }
  _CountEdit();
  if (m_repopulates) {
    return;
  }
  m_hasStarted = true;
  const FilterSettings& filter = _Filter();
  if (!filter.IsOn()) {
    _CreateRow(instance, Rows::ListFrom(parent));
  } else {
    m_repopulates = filter.isDynamic || m_shown.contains(parent.Get());
  }
  _CheckVisible(parent);
}

void PanelModel::OnInstanceRemove(const BasePtr& instance, const BasePtr& parent)
{
  _CountEdit();
  if (m_repopulates) {
    static_cast<void>(_Remove(instance));
    return;
  }
  m_hasStarted = true;
  m_repopulates = _Remove(instance);
  _CheckVisible(parent);
}

void PanelModel::OnInstanceName(const BasePtr& instance)
{
  _CountEdit();
  if (!m_repopulates) {
    m_hasStarted = true;
    m_repopulates = _CheckNameAndType(instance);
  }
}

void PanelModel::OnInstanceExpanded(const BasePtr& instance)
{
  if (m_repopulates) {
    _MarkIcon(instance);
    return;
  }
  m_hasStarted = true;
  m_repopulates = _CheckNameAndType(instance);
  _CheckVisible(instance);
  m_namesChanged = true;
}

void PanelModel::OnInstanceCollapsed(const BasePtr& instance)
{
  for (auto& [scene, log] : m_logs) {
    log.ForceHidden(*instance);
  }
  if (m_repopulates) {
    _MarkIcon(instance);
    return;
  }
  m_hasStarted = true;
  m_repopulates = _CheckNameAndType(instance);
  m_namesChanged = true;
}

void PanelModel::OnInstanceProxyToNode(const BasePtr& instance)
{
  if (!m_repopulates && _CheckNameAndType(instance)) {
    m_hasStarted = true;
  }
}

void PanelModel::OnDisplayNamesChanged()
{
  _ReadNames();
  const FilterSettings& filter = _Filter();
  m_repopulates |= filter.isDynamic && !filter.text.empty();
}

void PanelModel::OnTreeColumnsChanged()
{
  const FilterSettings& filter = _Filter();
  m_repopulates |= (filter.isDynamic && !filter.text.empty()) || filter.isSorted;
}

void PanelModel::OnTreeEndUpdate()
{
  m_edits = 0;
  if (!m_hasStarted && !m_repopulates && !m_namesChanged) {
    return;
  }
  m_hasStarted = false;
  _FinishBracket();
  LogModel* const log = _GetCurrentLog();
  const bool namesChanged = std::exchange(m_namesChanged, false);
  if (std::exchange(m_repopulates, false)) {
    Populate();
    if (log) {
      _PaintAll(*log);
    }
  } else {
    if (log && log->HasChanges()) {
      _PaintChanges(*log);
    }
    if (namesChanged) {
      _ReadNames();
    }
  }
  if (log) {
    log->ClearChanges();
  }
}

void PanelModel::OnSelected(const std::vector<du::SmartPtr<zelk::Object>>& items, bool isSelected)
{
  if (_Filter().IsDynamicSelection()) {
    return;
  }
  if (!m_isVisible) {
    m_needsSelection = true;
    return;
  }
  if (WorldTreeState::IsCollapsingInstances()) {
    m_isSelectionStale = true;
    return;
  }
  for (const auto& item : items) {
    const auto instance = du::DynamicCast<zelk::BaseInstance>(item);
    Rows::Row* const row = instance && m_shown.contains(instance.Get()) ? m_rows.Find(instance.Get()) : nullptr;
    if (row) {
      row->isSelected = isSelected;
    }
  }
}

void PanelModel::OnSelectionCleared()
{
  if (_Filter().IsDynamicSelection()) {
    return;
  }
  if (!m_isVisible) {
    m_needsSelection = true;
    return;
  }
  m_rows.ForEach([](Rows::Row& row) { row.isSelected = false; });
}

void PanelModel::OnSelectionEndUpdate()
{
  const FilterSettings& filter = _Filter();
  if (filter.isDynamic && filter.visibility != 0) {
    Populate();
  } else if (filter.IsDynamicSelection()) {
    if (m_isVisible) {
      Populate();
    } else {
      m_needsSelection = true;
    }
  }
  _FinishBracket();
}

void PanelModel::OnHighlightChanged(bool clearFirst, const Items& removed, const Items& added)
{
  if (m_isBusy) {
    return;
  }
  if (!m_isVisible) {
    m_needsHighlights = true;
    return;
  }
  if (clearFirst) {
    for (const auto* instance : std::set(m_highlighted)) {
      _SetHighlight(instance, false);
    }
  }
  const auto set = [this](const Items& items, bool on) {
    for (const auto& item : items) {
      if (const auto object = du::DynamicCast<zelk::ObjectSelectionItem>(item)) {
        _SetHighlight(dynamic_cast<const zelk::BaseInstance*>(object->GetObject().Get()), on);
      }
    }
  };
  set(removed, false);
  set(added, true);
}

bool PanelModel::_Remove(const BasePtr& instance)
{
  if (!m_shown.contains(instance.Get())) {
    return false;
  }
  const FilterSettings& filter = _Filter();
  if (filter.IsOn() && filter.isDynamic) {
    return true;
  }
  std::set<BasePtr> all;
  zelk::BaseInstance::GetInstancesAndDescendents({instance}, all);
  for (const BasePtr& gone : all) {
    m_shown.erase(gone.Get());
  }
  m_highlighted.erase(instance.Get());
  m_rows.RemoveBranch(*instance);
  return true;
}

bool PanelModel::_CheckNameAndType(const BasePtr& instance)
{
  if (!m_shown.contains(instance.Get())) {
    return false;
  }
  _MarkIcon(instance);
  if (Rows::Row* const row = m_rows.Find(instance.Get())) {
    row->name = instance->GetObjectName();
  }
  return m_refusesNames;
}

void PanelModel::_ReadNames()
{
  m_rows.ForEach([](Rows::Row& row) { row.name = row.instance->GetObjectName(); });
}

void PanelModel::_ReadSelection()
{
  std::set<du::SmartPtr<zelk::Instance>> selected;
  m_view.selection->GetSelectedInstances(zelk::SelectionManager::SelectionList, selected, zelk::ExpandRuleInstances);
  m_rows.ForEach([](Rows::Row& row) { row.isSelected = false; });
  for (const auto& instance : selected) {
    const bool isGrouped = WorldTreeState::IsCollapsingInstances() && instance->IsMultiInstancedSibling();
    const auto stands = isGrouped ? instance->GetFirstMultiInstancedSibling() : instance;
    Rows::Row* const row = m_rows.Find(stands.Get());
    if (row && m_shown.contains(stands.Get())) {
      row->isSelected = true;
    }
  }
}

void PanelModel::_FinishBracket()
{
  if (std::exchange(m_isSelectionStale, false)) {
    _ReadSelection();
  }
}

void PanelModel::_SetHighlight(const zelk::BaseInstance* instance, bool on)
{
  const bool hasChanged = on ? m_highlighted.insert(instance).second : m_highlighted.erase(instance) > 0;
  Rows::Row* const row = m_rows.Find(instance);
  if (hasChanged && row) {
    row->hasHighlight = on;
  }
}

void PanelModel::_HighlightAll()
{
  std::set<du::SmartPtr<zelk::Instance>> all;
  m_view.selection->GetSelectedInstances(zelk::SelectionManager::AssocHlightList, all, zelk::ExpandRuleInstances);
  for (const auto& instance : all) {
    _SetHighlight(instance.Get(), true);
  }
}

void PanelModel::_RefreshHighlights()
{
  for (const auto* instance : std::set(m_highlighted)) {
    _SetHighlight(instance, false);
  }
  _HighlightAll();
}

}  // namespace systemtest
