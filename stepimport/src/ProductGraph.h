#pragma once

#include <vector>

#include "stepimport/Assembly.h"

namespace stepimport {

/// A road on which a product contains itself: each of the result holds an occurrence of the next, and the last one of
/// the first. Empty when there is none. Visits each product once, without recursion.
[[nodiscard]] std::vector<ProductIndex> FindCycle(const std::vector<Product>& products);

}  // namespace stepimport
