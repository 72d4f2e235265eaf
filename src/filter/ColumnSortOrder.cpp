#include "filter/ColumnSortOrder.h"

#include <cstring>

#include "zelk/PropertyValue.h"

namespace guitree {

bool ColumnSortOrder::IsColumn(const du::DualSymbol& column)
{
  return !column.GetFirst().IsEmpty() || !column.GetSecond().IsEmpty();
}

bool ColumnSortOrder::operator()(const du::SmartPtr<zelk::BaseInstance>& a,
                                 const du::SmartPtr<zelk::BaseInstance>& b) const
{
  return OrdersBefore(GetValue(a.Get()), GetValue(b.Get()));
}

bool ColumnSortOrder::operator()(const FilteredTree::Node* a, const FilteredTree::Node* b) const
{
  return OrdersBefore(GetValue(a->instance), GetValue(b->instance));
}

du::Symbol ColumnSortOrder::GetValue(const zelk::BaseInstance* instance) const
{
  du::Symbol value = du::Symbol::EMPTY;
  du::SmartPtr<zelk::PropertyValue> property;
  if (instance) {
    instance->GetPropertyValue(property, m_column.GetFirst(), m_column.GetSecond(), du::Symbol::EMPTY);
  }
  if (property) {
    property->GetValueAsSymbol(value);
  }
  return value;
}

bool ColumnSortOrder::OrdersBefore(const du::Symbol& a, const du::Symbol& b) const
{
  const char* const textOfA = a.GetText();
  const char* const textOfB = b.GetText();
  if (!textOfA || !textOfB) {
    return (m_isAscending ? textOfA : textOfB) != nullptr;
  }
  return m_isAscending ? std::strcmp(textOfB, textOfA) > 0 : std::strcmp(textOfA, textOfB) > 0;
}

}  // namespace guitree
