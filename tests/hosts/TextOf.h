#pragma once

#include <sstream>
#include <string>

#include "texthost/TextHost.h"

namespace hosttest {

inline std::string TextOf(const texthost::TextHost& host, const texthost::PrintStyle& style = {})
{
  std::ostringstream out;
  host.Print(out, style);
  return out.str();
}

}  // namespace hosttest
