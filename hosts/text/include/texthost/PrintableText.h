#pragma once

#include <string>
#include <string_view>

namespace texthost {

/// U+FFFD in UTF-8.
inline constexpr std::string_view s_replacementCharacter = "\xEF\xBF\xBD";

/// `text`, which should be UTF-8, as something that stays on one line and does not steer a terminal. Control
/// characters, line separators and marks that turn the direction of writing become `\n`, `\t`, `\x1B` or `\u2028`;
/// bytes that are no UTF-8 become `replacement`, one each. All else stays as it is, backslashes too. Any thread;
/// linear.
[[nodiscard]] std::string MakePrintable(std::string_view text, std::string_view replacement = s_replacementCharacter);

}  // namespace texthost
