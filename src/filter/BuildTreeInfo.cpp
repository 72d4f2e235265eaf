#include "filter/BuildTreeInfo.h"

#include <algorithm>

namespace guitree {

FilteredTree::BuildTreeInfo::BuildTreeInfo(structure_utils::TreeFilterInfoBase& filterOfRun,
                                           du::SmartPtr<du::RefCounted>& additional, zelk::AsyncEvent* event,
                                           dp::ReadWriteLock* lock, const std::set<zelk::BaseInstance*>& notFiltered)
    : filter(filterOfRun),
      additionalInfo(additional),
      asyncEvent(event),
      treeReadGuard(lock),
      notFilteredSet(notFiltered)
{
}

FilteredTree::BuildTreeInfo::Exemption FilteredTree::BuildTreeInfo::_FindExemption(
    const du::SmartPtr<zelk::BaseInstance>& item)
{
  if (notFilteredSet.contains(item.Get())) {
    return Exemption::Spared;
  }
  du::SmartPtr<zelk::BaseInstance> parent;
  if (item) {
    item->GetBaseParent(parent);
  }
  if (!parent) {
    return Exemption::None;
  }
  _LookAtParent(parent);
  // A child of the top stands where the root of the display is when the top itself is not displayed.
  if (m_isParentTop && filter.IsRootFilteredOut(item)) {
    return Exemption::FilteredOut;
  }
  const bool isHiddenBody = m_isParentSpared && filter.GetHideBodies() && item->IsBodyInstance();
  return m_isParentSpared && !isHiddenBody ? Exemption::Spared : Exemption::None;
}

void FilteredTree::BuildTreeInfo::_LookAtParent(const du::SmartPtr<zelk::BaseInstance>& parent)
{
  if (parent.Get() == m_parent) {
    return;
  }
  du::SmartPtr<zelk::BaseInstance> parentOfParent;
  parent->GetBaseParent(parentOfParent);
  m_parent = parent.Get();
  m_isParentTop = !parentOfParent;
  m_isParentSpared = notFilteredSet.contains(parent.Get());
}

void FilteredTree::BuildTreeInfo::_Report()
{
  m_nodesToReport = s_nodesBetweenReports;
  if (!asyncEvent) {
    return;
  }
  // A tree that says it has no instances gives an infinite percentage.
  const double percent = nodesCreated / totalInstances * 100.0;
  asyncEvent->Progress(static_cast<unsigned char>(std::clamp(percent, 0.0, 255.0)));
}

}  // namespace guitree
