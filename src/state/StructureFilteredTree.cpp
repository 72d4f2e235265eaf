#include "guitree/StructureFilteredTree.h"

namespace guitree {

bool StructureFilteredTree::ForceCheckFilteringForAllItems(bool hiddenPass)
{
  if (hiddenPass && !m_isHiddenPassAll) {
    m_isHiddenPassAll = !GetFilterOfRun() || GetFilterOfRun()->IsHiddenFilter(true);
  }
  m_isSifting = hiddenPass && !*m_isHiddenPassAll;
  // Each instance is judged all the same: by that the filter knows which pass is under way.
  return true;
}

void StructureFilteredTree::AddMatchedFilterItem(const du::SmartPtr<zelk::BaseInstance>& instance, bool matched)
{
  if (!m_isSifting) {
    FilteredTree::AddMatchedFilterItem(instance, matched);
  }
}

}  // namespace guitree
