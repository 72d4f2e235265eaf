#include "zelk/BaseInstance.h"

#include "zelk/Descendents.h"

namespace zelk {

const ClassType& BaseInstance::GetClassTypes() const
{
  return CLASS_TYPE;
}

void BaseInstance::GetInstancesAndDescendents(const std::set<du::SmartPtr<BaseInstance>>& in,
                                              std::set<du::SmartPtr<BaseInstance>>& out)
{
  std::set<du::SmartPtr<BaseInstance>> found;
  detail::VisitDescendents(in,
                           [&](const du::SmartPtr<BaseInstance>& instance) { found.insert(found.end(), instance); });
  if (out.empty()) {
    out.swap(found);
  } else {
    out.merge(found);
  }
}

}  // namespace zelk
