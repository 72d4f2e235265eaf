#include "zelk/ObjectSelectionItem.h"

namespace zelk {

du::Symbol ObjectSelectionItem::GetSelectionType() const
{
  return m_object ? du::Symbol(m_object->GetClassTypes().name) : du::Symbol();
}

}  // namespace zelk
