#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "script/Path.h"

namespace script {

/// One word of a line.
struct Word {
  /// As it is written.
  std::string text;
  /// What it says where an instance is meant.
  Path path;
  /// False where a part of it is in quotes: it is then a name, and no command or number.
  bool isPlain = true;
};

/// The words of a line, without its comment; empty for a line that has none. Throws `ScriptError`.
///
/// Words are separated by blanks and tabs. A word is a row of names separated by `/`, each with `#` and a number behind
/// it or not. In double quotes a name may hold any character; `\"`, `\\`, `\n`, `\r`, `\t`, `\x1B` and `\u2028` stand
/// there for what cannot be typed. A `#` at the start of a word begins a comment.
[[nodiscard]] std::vector<Word> SplitLine(std::string_view line);

}  // namespace script
