#pragma once

/// What the streams of the process are connected to, and what the user wants to see there.
namespace terminal {

[[nodiscard]] bool IsStdoutTerminal();
[[nodiscard]] bool IsStderrTerminal();
/// Whether the locale's characters are UTF-8. Reads the environment; to be called before other threads are started.
[[nodiscard]] bool IsLocaleUtf8();
/// False where NO_COLOR is set to anything but an empty text, and on terminals without colours.
[[nodiscard]] bool AllowsColor();

}  // namespace terminal
