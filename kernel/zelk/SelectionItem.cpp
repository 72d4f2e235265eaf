#include "zelk/SelectionItem.h"

#include <functional>

namespace zelk {
namespace {

const void* GetIdentity(const du::SmartPtr<SelectionItem>& item)
{
  return item ? item->GetIdentity() : nullptr;
}

}  // namespace

bool selection_compare_objects::operator()(const du::SmartPtr<SelectionItem>& a,
                                           const du::SmartPtr<SelectionItem>& b) const
{
  return std::less<>{}(GetIdentity(a), GetIdentity(b));
}

}  // namespace zelk
