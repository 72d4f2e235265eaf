#pragma once

#include "du/Symbol.h"

namespace du {

/// A pair of symbols. As the sort column of a filter: the group of a property and its name; both empty mean no column.
class DualSymbol {
public:
  DualSymbol() = default;
  DualSymbol(const Symbol& first, const Symbol& second) : m_first(first), m_second(second) {}

  [[nodiscard]] const Symbol& GetFirst() const noexcept { return m_first; }
  [[nodiscard]] const Symbol& GetSecond() const noexcept { return m_second; }

  friend bool operator==(const DualSymbol&, const DualSymbol&) noexcept = default;

private:
  Symbol m_first;
  Symbol m_second;
};

}  // namespace du
