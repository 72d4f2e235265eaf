#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "script/Command.h"

namespace script {

/// The largest number that `repeat` takes.
inline constexpr std::size_t s_maxTimes = 1'000'000;

/// Reads one line, without its end. Nothing for a line that is empty or a comment; throws `ScriptError` for one that is
/// no command. Any thread.
[[nodiscard]] std::optional<Command> ParseLine(std::string_view line);

/// The line that `ParseLine` reads this command from.
[[nodiscard]] std::string ToText(const Command& command);

}  // namespace script
