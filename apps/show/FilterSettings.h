#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "zelremote/StructureFilterInfo.h"

/// What the panel is filtered by, as a command line or a script says it.
struct FilterSettings {
  /// The text to look for; none where only the other criteria are meant.
  std::optional<std::string> text{};
  /// Where it is looked for; the names where there is none.
  std::vector<std::string> columns{};
  bool matchCase = false;
  bool wholeWord = false;
  bool selected = false;
  bool visible = false;
  bool hidden = false;
  bool parts = false;
  bool bodies = false;
  bool issues = false;
  /// Only what is on the panel's list of results.
  bool results = false;
  bool siblings = false;
  /// One list below the topmost row in place of a tree.
  bool list = false;
  /// The panel filters anew when the tree has changed, or the selection or the results that it looks at.
  bool follow = false;
  /// The column by which the rows of the result are sorted; none for their order in the assembly, or for a list by
  /// name.
  std::optional<std::string> sort{};
  bool descending = false;

  friend bool operator==(const FilterSettings&, const FilterSettings&) = default;

  /// Whether anything is left out.
  [[nodiscard]] bool IsOn() const;
};

/// An option without a value.
struct FilterFlag {
  /// With the hyphens before it.
  std::string_view name;
  bool FilterSettings::*isOn;
  std::string_view summary;
};

/// In the order in which they are best explained.
[[nodiscard]] std::span<const FilterFlag> GetFilterFlags();

/// Why these settings do not go together, or name a column that is none; empty where all is well.
[[nodiscard]] std::string FindFault(const FilterSettings& settings);
/// Which of these settings says nothing without anything to filter by, where they have nothing; empty where all is
/// well. No fault in a panel that filters all the same, since it collapses equal siblings.
[[nodiscard]] std::string FindNeedOfAFilter(const FilterSettings& settings);
/// Why the name of a column is none.
[[nodiscard]] std::string FindFaultInColumn(std::string_view column);

/// What there is to look for and to sort by, as in `Name, Layer`.
[[nodiscard]] std::string ListColumns();

/// Makes the filter one of these settings, in which there is no fault.
void Apply(const FilterSettings& settings, zelremote::StructureFilterInfo& filter);
