#pragma once

#include <string>

#include "texthost/TextHost.h"

namespace texthost {

[[nodiscard]] RowText ReadRowText(const zelk::BaseInstance& instance);

/// The parts of a row's text, printable as they are.
[[nodiscard]] std::string ShowName(const RowText& text, bool ascii);
/// Empty for a plain row.
[[nodiscard]] std::string ShowState(const RowText& text, bool ascii);
/// As for a failed row, with its file if there is one.
[[nodiscard]] std::string ShowFailure(const RowText& text, bool ascii);

}  // namespace texthost
