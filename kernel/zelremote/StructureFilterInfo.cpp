#include "zelremote/StructureFilterInfo.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "zelk/Instance.h"
#include "zelk/ShapeScene.h"

namespace zelremote {

using structure_utils::TreeFilterAdditionalInfo;
using structure_utils::TreeFilterInfoBase;

namespace {

/// Room for nearly every name and value that people write.
constexpr std::size_t s_usualTextSize = 1024;

bool IsPart(const zelk::BaseInstance& instance)
{
  if (instance.IsBodyInstance()) {
    return false;
  }
  const auto* part = zelk::AsInstance(&instance);
  return part ? !part->HasNoneBodyChildren() : !instance.HasChildren();
}

bool HasVisibility(const du::ConstSmartPtr<zelk::Instance>& instance, const du::SmartPtr<zelk::ShapeScene>& scene,
                   bool isVisible)
{
  // A scene may let go of it meanwhile: it is not edited under the lock of the tree. Shape instances may end here.
  du::SmartPtr<zelk::ShapeInstance> shape;
  return scene && scene->GetShapeInstance(instance, shape) && shape->IsVisible() == isVisible;
}

}  // namespace

StructureFilterInfo::StructureFilterInfo(const du::Symbol& name) : m_name(name) {}

void StructureFilterInfo::SetText(const std::string& text)
{
  m_text = text;
  _PreparePattern();
}

void StructureFilterInfo::SetColumns(std::vector<du::DualSymbol> columns)
{
  m_columns = std::move(columns);
}

void StructureFilterInfo::SetMatchCase(bool on)
{
  m_matchCase = on;
  _PreparePattern();
}

void StructureFilterInfo::SetMatchWholeWord(bool on)
{
  m_matchWholeWord = on;
  _PreparePattern();
}

void StructureFilterInfo::ClearCriteria()
{
  SetText({});
  m_partsOnly = false;
  m_bodiesOnly = false;
  m_selectedOnly = false;
  m_visibility = Visibility::Any;
  m_issuesOnly = false;
  useResultsList = false;
}

TreeFilterInfoBase* StructureFilterInfo::Duplicate()
{
  auto duplicate = std::make_unique<StructureFilterInfo>(*this);
  if (duplicate->_IsHiding()) {
    duplicate->m_hiddenBranches.BeginToRemember();
  }
  if (duplicate->_HasTextCriterion()) {
    duplicate->m_search.Reserve(s_usualTextSize);
    duplicate->m_value.reserve(s_usualTextSize);
  }
  return duplicate.release();
}

bool StructureFilterInfo::IsFiltering(bool countHiddenBodies) const
{
  return _HasCriterion() || collapseInstances || (countHiddenBodies && hideBodies);
}

bool StructureFilterInfo::IsHiddenFilter(bool hiddenOnly) const
{
  return _IsHiding() && (!_HasCriterion() || (!hiddenOnly && m_showSiblings));
}

bool StructureFilterInfo::IsFilteringBase(bool countHiddenBodies) const
{
  return _HasOtherCriterion() || collapseInstances || (countHiddenBodies && hideBodies);
}

bool StructureFilterInfo::IsFilteredOut(const du::SmartPtr<zelk::BaseInstance>& instance, Instances& selected,
                                        bool hiddenPass, du::SmartPtr<du::RefCounted>& additionalInfo,
                                        unsigned int* count)
{
  m_pass.isHidden = hiddenPass;
  if (!instance) {
    return true;
  }
  if (hiddenPass) {
    return _IsHidden(instance);
  }
  // What is hidden costs a climb, so it is asked about matches alone.
  const bool isMatch = _MeetsCriteria(instance, selected, additionalInfo.Get()) && !_IsHidden(instance);
  if (isMatch && count) {
    ++*count;
  }
  return !isMatch;
}

bool StructureFilterInfo::HasDynamicUpdateOption()
{
  return true;
}

bool StructureFilterInfo::GetDynamicUpdate()
{
  return m_dynamicUpdate;
}

void StructureFilterInfo::SetDynamicUpdate(bool dynamicUpdate)
{
  m_dynamicUpdate = dynamicUpdate;
}

bool StructureFilterInfo::GetFilteringName()
{
  return _HasTextCriterion() && m_searchName;
}

bool StructureFilterInfo::GetFilteringParts()
{
  return m_partsOnly;
}

bool StructureFilterInfo::GetFilteringBodies()
{
  return m_bodiesOnly;
}

bool StructureFilterInfo::GetFilteringColumns()
{
  return _HasTextCriterion() && !m_columns.empty();
}

bool StructureFilterInfo::GetFilteringSel()
{
  return m_selectedOnly;
}

bool StructureFilterInfo::GetEnsureExpanded()
{
  return m_ensureExpanded;
}

bool StructureFilterInfo::GetShowSiblings()
{
  return m_showSiblings && !m_pass.isHidden;
}

bool StructureFilterInfo::GetFilteringVis()
{
  return m_visibility != Visibility::Any;
}

bool StructureFilterInfo::GetFilteringIssues()
{
  return m_issuesOnly;
}

bool StructureFilterInfo::GetNotSyncPartsStatus() const
{
  return false;
}

bool StructureFilterInfo::GetSortDirection() const
{
  return m_isAscending;
}

bool StructureFilterInfo::GetMatchCase() const
{
  return m_matchCase;
}

bool StructureFilterInfo::GetMatchWholeWord() const
{
  return m_matchWholeWord;
}

du::DualSymbol StructureFilterInfo::GetSortColumn()
{
  return m_sortColumn;
}

bool StructureFilterInfo::GetCollapseInstances() const
{
  return collapseInstances;
}

bool StructureFilterInfo::GetHideBodies() const
{
  return hideBodies;
}

void StructureFilterInfo::_PreparePattern()
{
  m_verdicts.Clear();
  m_search.SetPattern(std::make_shared<const TextPattern>(m_text, m_matchCase, m_matchWholeWord));
}

bool StructureFilterInfo::_HasOtherCriterion() const
{
  return _HasTextCriterion() || m_partsOnly || m_bodiesOnly || m_selectedOnly || useResultsList;
}

bool StructureFilterInfo::_IsHidden(const du::SmartPtr<zelk::BaseInstance>& instance)
{
  return m_hiddenBranches.IsHidden(instance, {.bodies = hideBodies, .laterSiblings = collapseInstances});
}

bool StructureFilterInfo::_IsOfKind(const zelk::BaseInstance& instance) const
{
  return (m_bodiesOnly && instance.IsBodyInstance()) || (m_partsOnly && IsPart(instance));
}

bool StructureFilterInfo::_HasAllIn(const du::Symbol& name)
{
  m_search.Begin();
  return m_search.Add(name.GetView());
}

bool StructureFilterInfo::_HasAllInFields(const zelk::BaseInstance& instance)
{
  m_search.Begin();
  if (m_searchName && m_search.Add(instance.GetObjectName().GetView())) {
    return true;
  }
  du::SmartPtr<zelk::PropertyValue> value;
  for (const du::DualSymbol& column : m_columns) {
    instance.GetPropertyValue(value, column.GetFirst(), column.GetSecond(), du::Symbol::EMPTY);
    if (!value) {
      continue;
    }
    // As a string: a value that is put together when it is read would be interned for ever as a symbol.
    value->GetValueAsString(m_value);
    if (m_search.Add(m_value)) {
      return true;
    }
  }
  return false;
}

bool StructureFilterInfo::_HasSiblingAmong(const zelk::BaseInstance& instance, const Instances& instances)
{
  const auto* const part = zelk::AsInstance(&instance);
  if (!part || !part->IsFirstMultiInstancedSibling()) {
    return false;
  }
  part->GetAllMultiInstancedSibling(m_siblings);
  const bool isFound = std::any_of(m_siblings.begin(), m_siblings.end(),
                                   [&](const auto& sibling) { return instances.contains(sibling); });
  m_siblings.clear();
  return isFound;
}

bool StructureFilterInfo::_MeetsInfo(const du::SmartPtr<zelk::BaseInstance>& instance,
                                     const du::RefCounted* additionalInfo)
{
  const auto* info = dynamic_cast<const TreeFilterAdditionalInfo*>(additionalInfo);
  if (!info) {
    return false;
  }
  const auto& list = info->GetResultsList();
  if (useResultsList && (!list || !_StandsForOneOf(instance, list->GetInstances()))) {
    return false;
  }
  if (!_HasViewCriterion()) {
    return true;
  }
  const auto part = du::DynamicCast<zelk::Instance>(instance);
  return part && _MeetsView(du::ConstSmartPtr<zelk::Instance>(part), *info);
}

bool StructureFilterInfo::_MeetsView(const du::ConstSmartPtr<zelk::Instance>& instance,
                                     const TreeFilterAdditionalInfo& info) const
{
  if (m_visibility != Visibility::Any
      && !HasVisibility(instance, info.GetScene(), m_visibility == Visibility::Visible)) {
    return false;
  }
  return !m_issuesOnly
         || info.GetItemStatus(instance) != TreeFilterAdditionalInfo::TreeFilterStatusLookup::TFStatusNone;
}

}  // namespace zelremote
