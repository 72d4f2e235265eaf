#include <set>

#include "RowName.h"
#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/TreeSelectionController.h"
#include "guitree/TreeStateBase.h"
#include "texthost/TextHost.h"
#include "zelk/Instance.h"
#include "zelk/ShapeInstance.h"

namespace texthost {

namespace {

guitree::VisibleState ReadState(const TextHost::VisibleMap* states, const zelk::BaseInstance* instance)
{
  if (!states) {
    return guitree::VisibleStateHidden;
  }
  const auto known = states->find(instance);
  return known != states->end() ? known->second : guitree::VisibleStateHidden;
}

/// What is picked in a scene comes as its presence there; the rows are those of the instances.
std::vector<du::SmartPtr<zelk::Object>> TakeToTree(const std::vector<du::SmartPtr<zelk::Object>>& items)
{
  std::vector<du::SmartPtr<zelk::Object>> objects = items;
  for (du::SmartPtr<zelk::Object>& object : objects) {
    if (const auto presence = du::DynamicCast<zelk::ShapeInstance>(object)) {
      du::SmartPtr<zelk::Instance> instance;
      presence->GetInstance(instance);
      object = instance;
    }
  }
  return objects;
}

void SetMember(std::unordered_set<const zelk::BaseInstance*>& set, const zelk::BaseInstance* instance, bool isMember)
{
  if (isMember) {
    set.insert(instance);
  } else {
    set.erase(instance);
  }
}

}  // namespace

template <typename Visit>
void TextHost::_ForEachRow(Visit visit)
{
  Row* row = m_top.firstChild;
  while (row) {
    visit(*row);
    if (row->firstChild) {
      row = row->firstChild;
      continue;
    }
    while (row != &m_top && !row->next) {
      row = row->parent;
    }
    row = row->next;
  }
}

void TextHost::UpdateVisAndTypeIcons(const VisibleMap* visibleMap, guitree::TypeIconMap* typeIconMap)
{
  m_showsScene = visibleMap != nullptr;
  _ForEachRow([&](Row& row) {
    row.visible = visibleMap ? ReadState(visibleMap, row.instance.Get()) : guitree::VisibleStateNone;
    row.icon = typeIconMap ? _ReadIcon(*typeIconMap, row.instance.Get()) : std::nullopt;
  });
}

void TextHost::UpdateVisAndTypeIconChanges(const VisibleMap* visibleMap, const ChangeMap* visibleChangeMap,
                                           guitree::TypeIconMap* typeIconMap, const ChangeMap* typeIconChangeMap)
{
  m_showsScene = m_showsScene || visibleMap;
  if (visibleChangeMap) {
    for (const auto& change : *visibleChangeMap) {
      if (Row* row = _FindRow(change.first)) {
        row->visible = ReadState(visibleMap, change.first);
      }
    }
  }
  if (typeIconChangeMap) {
    for (const auto& change : *typeIconChangeMap) {
      if (Row* row = _FindRow(change.first)) {
        const auto icon = typeIconMap ? _ReadIcon(*typeIconMap, change.first) : std::nullopt;
        row->icon = icon.value_or(change.second);
      }
    }
  }
}

// An icon that was never asked for is worked out now: a change of it is told only from then on.
std::optional<int> TextHost::_ReadIcon(guitree::TypeIconMap& icons, const zelk::BaseInstance* instance) const
{
  int icon = 0;
  const guitree::SceneInfoLog* log = m_panel ? m_panel->GetCurrentLog() : nullptr;
  const bool isKnown = log ? icons.Find(instance, icon, log->GetScene()) : icons._Get(instance, icon);
  return isKnown ? std::optional(icon) : std::nullopt;
}

void TextHost::_Begin(Row& row, const du::SmartPtr<guitree::TreeSelectionController>& controller, bool assocHlight)
{
  const zelk::BaseInstance* instance = row.instance.Get();
  row.text = ReadRowText(*instance);
  m_showsScene = m_showsScene || (m_panel && m_panel->GetCurrentLog());
  _BeginLook(row);
  SetMember(m_selected, instance, controller && controller->ContainsItem(row.instance));
  SetMember(m_highlighted, instance, assocHlight);
}

void TextHost::_BeginLook(Row& row) const
{
  guitree::SceneInfoLog* log = m_panel ? m_panel->GetCurrentLog() : nullptr;
  if (log) {
    row.visible = log->GetCompVisibleState(row.instance);
    row.icon = _ReadIcon(log->GetTypeIconMap(), row.instance.Get());
    return;
  }
  row.visible = m_showsScene && !m_panel ? guitree::VisibleStateHidden : guitree::VisibleStateNone;
  row.icon.reset();
}

void TextHost::SelectItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  _Mark(items, true);
}

void TextHost::DeselectItems(std::vector<du::SmartPtr<zelk::Object>>& items)
{
  _Mark(items, false);
}

void TextHost::_Mark(const std::vector<du::SmartPtr<zelk::Object>>& items, bool isSelected)
{
  for (const zelk::BaseInstance* instance : _FindInstances(items)) {
    if (_FindRow(instance)) {
      SetMember(m_selected, instance, isSelected);
    }
  }
}

// The panel knows which row stands for an instance that has none of its own.
std::set<zelk::BaseInstance*> TextHost::_FindInstances(const std::vector<du::SmartPtr<zelk::Object>>& items) const
{
  const auto objects = TakeToTree(items);
  std::set<zelk::BaseInstance*> found;
  if (guitree::TreeStateBase* state = m_panel ? m_panel->GetTreeState() : nullptr) {
    state->GetBaseInstFromSelItems(objects, found);
    return found;
  }
  for (const auto& item : objects) {
    if (auto* instance = dynamic_cast<zelk::BaseInstance*>(item.Get())) {
      found.insert(instance);
    }
  }
  return found;
}

void TextHost::ClearSelection()
{
  m_selected.clear();
}

void TextHost::RefreshSelection()
{
  _ReadSelection();
}

void TextHost::MadeVisible(bool visible)
{
  if (visible) {
    _ReadSelection();
  }
}

void TextHost::_ReadSelection()
{
  const guitree::TreeStateBase* state = m_panel ? m_panel->GetTreeState() : nullptr;
  if (!state) {
    return;
  }
  m_selected.clear();
  const auto controller = state->GetSelController(false);
  if (!controller) {
    return;
  }
  std::set<du::SmartPtr<zelk::BaseInstance>> selected;
  controller->GetSelectedInstances(selected);
  for (const auto& instance : selected) {
    if (_FindRow(instance.Get())) {
      m_selected.insert(instance.Get());
    }
  }
}

bool TextHost::SetAssocHlight(zelk::BaseInstance* instance, bool on)
{
  const Row* row = _FindRow(instance);
  if (row) {
    SetMember(m_highlighted, instance, on);
  }
  return row != nullptr;
}

bool TextHost::CheckAndUpdateNodeNameAndType(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  if (Row* row = _FindRow(instance.Get())) {
    row->text = ReadRowText(*instance);
  }
  return false;
}

void TextHost::UpdateNodeNames()
{
  _ForEachRow([](Row& row) { row.text = ReadRowText(*row.instance); });
}

void TextHost::UpdateDisplayNames()
{
  UpdateNodeNames();
}

}  // namespace texthost
