#pragma once

#include <string>

#include "script/ScriptError.h"
#include "script/ScriptParser.h"

namespace scripttest {

/// What the parser says against a line; "none" where it takes it.
[[nodiscard]] inline std::string FaultOf(const std::string& line)
{
  try {
    static_cast<void>(script::ParseLine(line));
  } catch (const script::ScriptError& error) {
    return error.what();
  }
  return "none";
}

}  // namespace scripttest
