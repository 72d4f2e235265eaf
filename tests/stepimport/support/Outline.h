#pragma once

#include <string>

#include "stepimport/Assembly.h"

namespace stepimporttest {

/// The unfolded assembly as text, one line an instance, two blanks a level: the name of the occurrence and, in
/// brackets, of the product, then colour, layers and reference where there are any. Bodies come first, with a star.
[[nodiscard]] std::string MakeOutline(const stepimport::Assembly& assembly);

}  // namespace stepimporttest
