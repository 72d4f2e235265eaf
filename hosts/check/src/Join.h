#pragma once

#include <string>
#include <vector>

namespace hostcheck {

[[nodiscard]] inline std::string Join(const std::vector<std::string>& texts, char open, char close)
{
  std::string joined(1, open);
  for (const std::string& text : texts) {
    joined += (joined.size() > 1 ? ", " : "") + text;
  }
  return joined + close;
}

}  // namespace hostcheck
