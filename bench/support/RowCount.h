#pragma once

#include <cstddef>
#include <string>

#include "zelk/BaseTree.h"

namespace bench {

/// What a filter by name leaves besides the matches and what is above them.
struct RowRule {
  /// With a match come its siblings.
  bool takesSiblings = false;
  /// But bodies and what is below them never do, and are no matches.
  bool hidesBodies = false;
};

/// The rows that a filter leaves, counted in the plain way and without anything of the filter but its search. The root
/// always has one.
[[nodiscard]] std::size_t CountRows(const zelk::BaseTree& tree, const std::string& text, RowRule rule);

}  // namespace bench
