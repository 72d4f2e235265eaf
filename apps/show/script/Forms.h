#pragma once

#include <span>
#include <string>
#include <string_view>

#include "script/Command.h"

namespace script {

/// What stands behind the words of a command.
enum class Arguments {
  None,
  OnePath,
  /// At least one.
  Paths,
  /// None stands for all.
  AnyPaths,
  PathAndName,
  Number,
  NumberAndName,
  /// A text and options, at least one of them.
  Filter,
  /// A column, and a word for the direction or none.
  Sorting,
};

/// How a command is written, and what it is for.
struct Form {
  std::string_view words;
  Verb verb;
  Arguments arguments;
  /// `in N` may stand before it.
  bool isAboutScene;
  std::string_view summary;
};

/// All commands, in the order in which they are best explained.
[[nodiscard]] std::span<const Form> GetForms();
[[nodiscard]] const Form& GetForm(Verb verb);
/// `rename PATH NAME`.
[[nodiscard]] std::string GetUsage(const Form& form);

}  // namespace script
