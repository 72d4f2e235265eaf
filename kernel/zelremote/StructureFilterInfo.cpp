#include "zelremote/StructureFilterInfo.h"

#include <string>

#include "zelk/World.h"

namespace zelremote {

using structure_utils::TreeFilterInfoBase;

StructureFilterInfo::StructureFilterInfo(const du::Symbol& name) : m_name(name) {}

void StructureFilterInfo::LoadFromPreferences()
{
  const du::SmartPtr<zelk::World> world = zelk::World::GetWorld();
  const du::SmartPtr<zelk::Preferences> preferences = world ? world->GetPreferences() : nullptr;
  if (!preferences) {
    return;
  }
  const std::string group = "Structure Filter/" + std::string(m_name) + "/";
  const auto load = [&](const char* key, bool& member) {
    preferences->GetBool(du::Symbol(std::string_view(group + key)), member, nullptr);
  };
  preferences->GetInt(du::Symbol(std::string_view(group + "list_mode")), listMode, nullptr);
  load("collapse_instances", collapseInstances);
  load("hide_bodies", hideBodies);
  load("use_results_list", useResultsList);
  load("results_list_live", resultsListLive);
}

TreeFilterInfoBase* StructureFilterInfo::Duplicate()
{
  return new StructureFilterInfo(*this);
}

bool StructureFilterInfo::IsFiltering(bool /*withHidden*/) const
{
  return false;
}

bool StructureFilterInfo::IsHiddenFilter(bool /*hiddenOnly*/) const
{
  return false;
}

bool StructureFilterInfo::IsFilteringBase(bool /*withHidden*/) const
{
  return false;
}

bool StructureFilterInfo::IsRootFilteredOut(const du::SmartPtr<zelk::BaseInstance>& /*instance*/)
{
  return false;
}

bool StructureFilterInfo::IsFilteredOut(const du::SmartPtr<zelk::BaseInstance>& /*instance*/,
                                        std::set<du::SmartPtr<zelk::BaseInstance>>& /*selected*/, bool /*hiddenPass*/,
                                        du::SmartPtr<du::RefCounted>& /*additionalInfo*/, unsigned int* /*count*/)
{
  return false;
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
  return false;
}

bool StructureFilterInfo::GetFilteringParts()
{
  return false;
}

bool StructureFilterInfo::GetFilteringBodies()
{
  return false;
}

bool StructureFilterInfo::GetFilteringColumns()
{
  return false;
}

bool StructureFilterInfo::GetFilteringSel()
{
  return false;
}

bool StructureFilterInfo::GetEnsureExpanded()
{
  return false;
}

bool StructureFilterInfo::GetShowSiblings()
{
  return false;
}

bool StructureFilterInfo::GetFilteringVis()
{
  return false;
}

bool StructureFilterInfo::GetFilteringIssues()
{
  return false;
}

bool StructureFilterInfo::GetNotSyncPartsStatus() const
{
  return false;
}

bool StructureFilterInfo::IsFilteringUsingView()
{
  return false;
}

bool StructureFilterInfo::GetSortDirection() const
{
  return true;
}

bool StructureFilterInfo::GetMatchCase() const
{
  return false;
}

bool StructureFilterInfo::GetMatchWholeWord() const
{
  return false;
}

du::DualSymbol StructureFilterInfo::GetSortColumn()
{
  return {};
}

bool StructureFilterInfo::GetCollapseInstances() const
{
  return collapseInstances;
}

bool StructureFilterInfo::GetHideBodies() const
{
  return hideBodies;
}

}  // namespace zelremote
