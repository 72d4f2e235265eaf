#include "guitree/StructureTreeState.h"

#include <mutex>
#include <set>
#include <utility>

#include "facade/Pin.h"
#include "facade/Retirement.h"
#include "guitree/GuiInterface.h"
#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/StructureFilteredTree.h"
#include "guitree/TypeIcon.h"
#include "state/StructureFilterInfos.h"
#include "zelremote/StructureFilterInfo.h"

namespace guitree {
namespace {

/// Where the filters of a state that has ended without a `Reset` stay, since hosts may refer to them.
void LeaveToProcess(zelremote::StructureFilterInfo* filter)
{
  static std::mutex s_mutex;
  static auto* const s_filters = new std::set<zelremote::StructureFilterInfo*>;
  // Panels may have owners of their own.
  const std::lock_guard lock(s_mutex);
  s_filters->insert(filter);
}

/// The length of a flag.
class FlagScope {
public:
  explicit FlagScope(bool& flag) : m_flag(flag) { flag = true; }
  ~FlagScope() { m_flag = false; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;

private:
  bool& m_flag;
};

}  // namespace

StructureTreeState::StructureTreeState(GuiTree& tree, bool allowsResultsFilter)
    : WorldTreeState(tree), allowResultsFilter(allowsResultsFilter), m_filterInfos(std::make_shared<FilterInfos>())
{
}

StructureTreeState::~StructureTreeState()
{
  _DetachStatusLookups();
  for (const auto& [viewType, filter] : filters) {
    LeaveToProcess(filter);
  }
}

void StructureTreeState::_DetachStatusLookups() const
{
  m_filterInfos->DetachAll();
}

bool StructureTreeState::GetDisplayRoot()
{
  return false;
}

bool StructureTreeState::IsDoingFilterAsList()
{
  const zelremote::StructureFilterInfo* const filter = GetStructureFilter();
  return filter && filter->listMode == 1 && filter->IsFiltering(false);
}

void StructureTreeState::Reset()
{
  const Pin self(this);
  for (const auto& [viewType, filter] : filters) {
    Retirement::Retire(std::shared_ptr<const zelremote::StructureFilterInfo>(filter));
  }
  filters.clear();
  TreeStateBase::Reset();
}

void StructureTreeState::OnEndUpdate()
{
  if (!_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &GetGuiTree());
  structure_utils::TreeFilterInfoBase& filter = _GetCurrentFilter();
  if (filter.GetDynamicUpdate() && filter.GetFilteringVis()) {
    PopulateTree(true);
  } else {
    TreeStateBase::OnEndUpdate();
  }
}

du::SmartPtr<du::RefCounted> StructureTreeState::GetAdditionalFilterInfo() const
{
  const SceneInfoLog* const log = _HasGuiTree() ? GetGuiTree().GetCurrentLog() : nullptr;
  const du::SmartPtr<zelk::ShapeScene> scene = log ? log->GetShapeScene() : nullptr;
  // The status is asked for by a filter, which is none of this object's concerns that are const.
  auto& lookup = const_cast<StructureTreeState&>(*this);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  return du::MakeSmart<FilterInfo>(scene, resultsComps, lookup, m_filterInfos);
}

structure_utils::TreeFilterInfoBase& StructureTreeState::GetFilter(const du::SmartPtr<zelk::View>& view)
{
  const Pins pins(this, _HasGuiTree() ? &GetGuiTree() : nullptr);
  if (filters.empty()) {
    _TellOfFirstFilter(view);
  }
  GuiInterface* const gui = _HasGuiTree() ? GetGuiTree().GetGuiInterface() : nullptr;
  const du::Symbol viewType = gui ? gui->GetViewTypeString(view) : du::Symbol::EMPTY;
  const auto known = filters.find(viewType);
  if (known != filters.end()) {
    return *known->second;
  }
  auto filter = std::make_unique<zelremote::StructureFilterInfo>(viewType);
  filter->LoadFromPreferences();
  if (!allowResultsFilter) {
    filter->useResultsList = false;
  }
  return *filters.insert({viewType, filter.release()}).first->second;
}

void StructureTreeState::_TellOfFirstFilter(const du::SmartPtr<zelk::View>& view)
{
  GuiInterface* const gui = _HasGuiTree() ? GetGuiTree().GetGuiInterface() : nullptr;
  if (!gui || m_isTellingOfFilter) {
    return;
  }
  const FlagScope telling(m_isTellingOfFilter);
  gui->UpdateQuickSearchResults(false, view, true);
}

FilteredTree* StructureTreeState::CreateFilteredTree()
{
  return std::make_unique<StructureFilteredTree>().release();
}

zelremote::StructureFilterInfo* StructureTreeState::GetStructureFilter()
{
  return _HasGuiTree() ? dynamic_cast<zelremote::StructureFilterInfo*>(&_GetCurrentFilter()) : nullptr;
}

bool StructureTreeState::IsInstHidden(zelk::BaseInstance* instance) const
{
  const auto* const part = zelk::AsInstance(instance);
  if (!part) {
    return false;
  }
  return part->IsBodyInstance() ? !IsShowingBodies() : part->Is3dSymbol();
}

bool StructureTreeState::HasNoneHiddenChildren(const du::SmartPtr<zelk::BaseInstance>& instance) const
{
  if (!instance->HasChildren()) {
    return false;
  }
  if (IsShowingBodies()) {
    return true;
  }
  const auto* const part = zelk::AsInstance(instance.Get());
  return part && part->HasNoneBodyChildren();
}

bool StructureTreeState::IsCompatibleShapeSceneType(const du::SmartPtr<zelk::Scene>& scene)
{
  return !scene->IsATypeOfId(zelk::ClassIdSchematicScene);
}

StructureTreeState::TFStatus StructureTreeState::TreeFilterGetItemStatus(
    const du::ConstSmartPtr<zelk::Instance>& instance, const du::SmartPtr<zelk::Scene>& scene)
{
  const int icon = GetUnloadedTypeIconStatic(instance, scene);
  const bool isLoadedVariant = icon % 2 == 1;
  switch (isLoadedVariant ? icon - 1 : icon) {
    case IconShapeFailed:
      return TFStatusShapeFailed;
    case IconBodyFailed:
      return TFStatusBodyFailed;
    case IconConstructionBodyFailed:
      return TFStatusConstructionBodyFailed;
    case IconCollapsedSiblingFailed:
      return TFStatusCollapsedSiblingFailed;
    case IconProxyShapeFailed:
      return TFStatusProxyShapeFailed;
    case IconProxyExpandFailed:
      return TFStatusProxyExpandFailed;
    default:
      return TFStatusNone;
  }
}

bool StructureTreeState::InstHasIssue(const du::ConstSmartPtr<zelk::Instance>& instance,
                                      const du::SmartPtr<zelk::Scene>& scene)
{
  return TreeFilterGetItemStatus(instance, scene) != TFStatusNone;
}

bool StructureTreeState::IsFilteredTreeContainItem(const du::SmartPtr<zelk::BaseInstance>& instance) const
{
  const du::SmartPtr<FilteredTree> result = _GetResult();
  return result && result->IsContainItem(instance);
}

bool StructureTreeState::IsMatchedFilterEmpty()
{
  const du::SmartPtr<FilteredTree> result = _GetResult();
  return result && result->IsFilteredTreeEmpty() && _GetCurrentFilter().IsFiltering(false);
}

du::SmartPtr<FilteredTree> StructureTreeState::_GetResult() const
{
  du::SmartPtr<FilteredTree> result;
  GetFilteredTree(result);
  return result;
}

void StructureTreeState::SetResultsComps(du::SmartPtr<structure_utils::TreeResultsList> results)
{
  const Pin self(this);
  resultsComps = std::move(results);
  const zelremote::StructureFilterInfo* const filter = GetStructureFilter();
  if (filter && filter->resultsListLive && filter->useResultsList) {
    PopulateTree(true);
  }
}

void StructureTreeState::ShowBodiesChanged()
{
  const bool hidesBodies = !IsShowingBodies();
  for (const auto& [viewType, filter] : filters) {
    filter->hideBodies = hidesBodies;
  }
  PopulateTree(true);
}

void StructureTreeState::UpdateFiltersForCollapsingInstances(bool /*isCollapsing*/)
{
  const bool isCollapsing = IsCollapsingInstances();
  bool hasChanged = false;
  for (const auto& [viewType, filter] : filters) {
    hasChanged = hasChanged || filter->collapseInstances != isCollapsing;
    filter->collapseInstances = isCollapsing;
  }
  if (!hasChanged || !_HasGuiTree()) {
    return;
  }
  const Pins pins(this, &GetGuiTree());
  _MarkSiblings();
  PopulateTree(false);
}

void StructureTreeState::_MarkSiblings()
{
  const du::SmartPtr<zelk::Tree> tree = GetTree();
  if (!tree) {
    return;
  }
  du::SmartPtr<zelk::Instance> root;
  tree->GetRoot(root);
  std::set<du::SmartPtr<zelk::Instance>> all;
  zelk::Instance::GetInstancesAndDescendents({root}, all);
  for (const auto& instance : all) {
    if (instance->IsMultiInstancedSibling()) {
      GetGuiTree().MarkTypeIconChanged(instance.Get());
    }
  }
}

}  // namespace guitree
