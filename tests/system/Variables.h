#pragma once

#include <cstdlib>
#include <string>

namespace systemtest {

/// The number in a variable of the environment. Nothing here changes the environment.
[[nodiscard]] inline std::size_t ReadNumber(const char* variable, std::size_t otherwise)
{
  const char* const text = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): see above
  return text ? std::stoull(text) : otherwise;
}

}  // namespace systemtest
