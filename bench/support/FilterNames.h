#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "memkernel/Tree.h"

namespace bench {

/// A text to filter by, and how much of the tree it finds once `GiveFilterNames` has named the products.
struct FilterText {
  /// For the name of a benchmark.
  std::string name;
  /// In another case than the names, as users type.
  std::string text;
};

/// No match, about 1 % and 30 % of the instances, all of them.
[[nodiscard]] const std::vector<FilterText>& GetFilterTexts();

/// Names the products of the tree anew. What a text finds is spread over the whole tree.
void GiveFilterNames(memkernel::Tree& tree);

}  // namespace bench
