#pragma once

#include <span>
#include <string>

#include "FilterSettings.h"
#include "script/LineLexer.h"

namespace script {

/// A word that must be one name, and no path; `what` says in an error what it is for. Throws `ScriptError`.
[[nodiscard]] std::string ParseName(const Word& word, const std::string& what);

/// What stands behind `filter` and `sort`. Throws `ScriptError`.
[[nodiscard]] FilterSettings ParseFilter(std::span<const Word> words);
[[nodiscard]] FilterSettings ParseSorting(std::span<const Word> words);

/// The words that these are read from, each with a blank before it.
[[nodiscard]] std::string FilterToText(const FilterSettings& settings);
[[nodiscard]] std::string SortingToText(const FilterSettings& settings);

}  // namespace script
