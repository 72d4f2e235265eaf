#include "zelk/Instance.h"

#include "zelk/Descendents.h"

namespace zelk {

const ClassType& Instance::GetClassTypes() const
{
  return CLASS_TYPE;
}

void Instance::GetInstancesAndDescendents(const std::set<du::SmartPtr<Instance>>& in,
                                          std::set<du::SmartPtr<Instance>>& out)
{
  std::set<du::SmartPtr<Instance>> found;
  detail::VisitDescendents(in, [&](const du::SmartPtr<BaseInstance>& base) {
    if (auto instance = du::DynamicCast<Instance>(base)) {
      found.insert(found.end(), std::move(instance));
    }
  });
  if (out.empty()) {
    out.swap(found);
  } else {
    out.merge(found);
  }
}

}  // namespace zelk
