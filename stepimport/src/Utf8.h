#pragma once

#include <string>
#include <string_view>

namespace stepimport {

/// Whether `text` is well-formed UTF-8 throughout: no overlong forms, no surrogates, nothing beyond U+10FFFF.
[[nodiscard]] bool IsUtf8(std::string_view text);

/// `text` as a name on one line: control characters become spaces, and each byte that is no part of well-formed UTF-8
/// becomes U+FFFD. Other spaces are kept as they are.
[[nodiscard]] std::string MakeName(std::string_view text);

/// Nothing in it but spaces and control characters.
[[nodiscard]] bool IsBlank(std::string_view text);

}  // namespace stepimport
