#pragma once

#include <cerrno>
#include <string>
#include <system_error>

/// What the last call of the C library that failed says of itself, in English.
[[nodiscard]] inline std::string GetErrnoText()
{
  return std::generic_category().message(errno);
}
