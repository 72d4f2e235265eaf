#include "structure_utils/TreeFilterInfoBase.h"

namespace structure_utils {

bool TreeFilterInfoBase::IsRootFilteredOut(const du::SmartPtr<zelk::BaseInstance>& /*instance*/)
{
  return false;
}

bool TreeFilterInfoBase::IsFilteringUsingView()
{
  return GetFilteringVis() || GetFilteringIssues();
}

}  // namespace structure_utils
