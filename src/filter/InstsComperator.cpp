#include "guitree/InstsComperator.h"

#include <functional>

namespace guitree {

bool InstsComperator::operator()(const du::SmartPtr<zelk::BaseInstance>& a,
                                 const du::SmartPtr<zelk::BaseInstance>& b) const
{
  const du::Symbol keyOfA = a ? a->GetInstanceKey() : du::Symbol();
  const du::Symbol keyOfB = b ? b->GetInstanceKey() : du::Symbol();
  // Interned: equal texts are one symbol.
  if (keyOfA != keyOfB) {
    return keyOfA.GetView() < keyOfB.GetView();
  }
  const du::Symbol subKeyOfA = a ? a->GetInstanceSubKey() : du::Symbol();
  const du::Symbol subKeyOfB = b ? b->GetInstanceSubKey() : du::Symbol();
  return std::less<>()(subKeyOfA.GetText(), subKeyOfB.GetText());
}

}  // namespace guitree
