#pragma once

#include <functional>

#include "du/DualSymbol.h"
#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "guitree/FilteredTree.h"
#include "zelk/BaseInstance.h"

namespace guitree {

/// The order of rows by the text of one property, byte by byte. Rows without the property come last where the order
/// ascends and first where it descends; equal texts are equal rows.
class ColumnSortOrder {
public:
  ColumnSortOrder(const du::DualSymbol& column, bool isAscending) : m_column(column), m_isAscending(isAscending) {}

  /// Whether a filter sorts by that column at all. One with a single empty part is a column.
  [[nodiscard]] static bool IsColumn(const du::DualSymbol& column);

  [[nodiscard]] bool operator()(const du::SmartPtr<zelk::BaseInstance>& a,
                                const du::SmartPtr<zelk::BaseInstance>& b) const;
  [[nodiscard]] bool operator()(const FilteredTree::Node* a, const FilteredTree::Node* b) const;

  /// What is compared; a symbol without text for a row without the property and for null.
  [[nodiscard]] du::Symbol GetValue(const zelk::BaseInstance* instance) const;
  [[nodiscard]] bool OrdersBefore(const du::Symbol& a, const du::Symbol& b) const;

private:
  du::DualSymbol m_column;
  bool m_isAscending;
};

}  // namespace guitree
