#pragma once

#include <string>

/// Writes `text` to stdout, and at once. False where it cannot be written; the cause is on stderr then.
[[nodiscard]] bool WriteOut(const std::string& text);
