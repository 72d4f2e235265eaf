#pragma once

#include <stdexcept>

namespace script {

/// A line of a script that cannot be read, or a command that cannot be played. The text is the cause alone, without
/// file and line, and may hold whatever the line holds.
class ScriptError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

}  // namespace script
