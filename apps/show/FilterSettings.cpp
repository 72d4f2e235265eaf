#include "FilterSettings.h"

#include <algorithm>
#include <array>

#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelremote/TextPattern.h"

namespace {

constexpr std::array s_flags{
    FilterFlag{"--match-case", &FilterSettings::matchCase, "Tell upper and lower case apart in the text"},
    FilterFlag{"--whole-word", &FilterSettings::wholeWord, "Find the words of the text as whole words only"},
    FilterFlag{"--parts", &FilterSettings::parts, "Only parts: what has no children, or bodies alone"},
    FilterFlag{"--bodies", &FilterSettings::bodies, "Only bodies; with --parts, either"},
    FilterFlag{"--selected", &FilterSettings::selected, "Only what is selected"},
    FilterFlag{"--visible", &FilterSettings::visible, "Only what is visible in the scene"},
    FilterFlag{"--hidden", &FilterSettings::hidden, "Only what is hidden in the scene"},
    FilterFlag{"--issues", &FilterSettings::issues, "Only what has failed: shapes, and files that could not be read"},
    FilterFlag{"--results", &FilterSettings::results, "Only what is on the list of results, which a script fills"},
    FilterFlag{"--siblings", &FilterSettings::siblings, "Show what stands beside a match as well"},
    FilterFlag{"--list", &FilterSettings::list, "Show it as one list, by name unless --sort says more"},
    FilterFlag{"--follow", &FilterSettings::follow, "Filter again when tree, selection or results have changed"},
    FilterFlag{"--descending", &FilterSettings::descending, "Sort from the last to the first"},
};

/// What users call a property, which the kernel has under its own name.
struct Column {
  std::string_view name;
  std::string_view property;
};

constexpr std::string_view s_nameColumn = "Name";

constexpr std::array s_columns{
    Column{s_nameColumn, "Display Name"},
    Column{"Product Name", "Product Name"},
    Column{"Color", "Color"},
    Column{"Layer", "Layer"},
    Column{"Source File", "Source File"},
    Column{"Referenced File", "Referenced File"},
    Column{"Reference Failure", "Reference Failure"},
};

char ToLower(char c)
{
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsSame(std::string_view a, std::string_view b)
{
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char left, char right) { return ToLower(left) == ToLower(right); });
}

const Column* FindColumn(std::string_view name)
{
  const auto* const found = std::find_if(s_columns.begin(), s_columns.end(),
                                         [name](const Column& column) { return IsSame(column.name, name); });
  return found != s_columns.end() ? found : nullptr;
}

du::DualSymbol MakeSymbol(const Column& column)
{
  return {zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, du::Symbol(std::string(column.property))};
}

void ApplyColumns(const std::vector<std::string>& names, zelremote::StructureFilterInfo& filter)
{
  bool searchesName = names.empty();
  std::vector<du::DualSymbol> columns;
  for (const std::string& name : names) {
    const Column* const column = FindColumn(name);
    if (column->name == s_nameColumn) {
      searchesName = true;
    } else {
      columns.push_back(MakeSymbol(*column));
    }
  }
  filter.SetSearchName(searchesName);
  filter.SetColumns(std::move(columns));
}

zelremote::StructureFilterInfo::Visibility GetVisibility(const FilterSettings& settings)
{
  using enum zelremote::StructureFilterInfo::Visibility;
  return settings.visible ? Visible : settings.hidden ? Hidden : Any;
}

std::string FindFaultInText(const FilterSettings& settings)
{
  if (settings.text) {
    const bool isEmpty = zelremote::TextPattern(*settings.text, false, false).IsEmpty();
    return isEmpty ? "the text to look for has no word in it" : "";
  }
  const char* const option = settings.matchCase          ? "--match-case"
                             : settings.wholeWord        ? "--whole-word"
                             : !settings.columns.empty() ? "--column"
                                                         : nullptr;
  return option ? std::string(option) + " needs a text to look for" : "";
}

std::string FindFaultInResult(const FilterSettings& settings)
{
  return settings.descending && !settings.sort ? "--descending needs --sort" : "";
}

std::string FindFaultInColumns(const FilterSettings& settings)
{
  for (const std::string& column : settings.columns) {
    if (std::string fault = FindFaultInColumn(column); !fault.empty()) {
      return fault;
    }
  }
  return settings.sort ? FindFaultInColumn(*settings.sort) : "";
}

}  // namespace

bool FilterSettings::IsOn() const
{
  return text || selected || visible || hidden || parts || bodies || issues || results;
}

std::span<const FilterFlag> GetFilterFlags()
{
  return s_flags;
}

std::string FindFault(const FilterSettings& settings)
{
  if (settings.visible && settings.hidden) {
    return "--visible and --hidden contradict each other";
  }
  for (const auto& find : {FindFaultInText, FindFaultInResult, FindFaultInColumns}) {
    if (std::string fault = find(settings); !fault.empty()) {
      return fault;
    }
  }
  return {};
}

std::string FindNeedOfAFilter(const FilterSettings& settings)
{
  const char* const option = settings.siblings ? "--siblings"
                             : settings.list   ? "--list"
                             : settings.follow ? "--follow"
                             : settings.sort   ? "--sort"
                                               : nullptr;
  return option && !settings.IsOn() ? std::string(option) + " needs something to filter by, such as a text" : "";
}

std::string FindFaultInColumn(std::string_view column)
{
  return FindColumn(column) ? "" : "there is no column '" + std::string(column) + "', only " + ListColumns();
}

std::string ListColumns()
{
  std::string list;
  for (const Column& column : s_columns) {
    list.append(list.empty() ? "" : ", ").append(column.name);
  }
  return list;
}

void Apply(const FilterSettings& settings, zelremote::StructureFilterInfo& filter)
{
  filter.SetText(settings.text.value_or(""));
  filter.SetMatchCase(settings.matchCase);
  filter.SetMatchWholeWord(settings.wholeWord);
  ApplyColumns(settings.columns, filter);
  filter.SetPartsOnly(settings.parts);
  filter.SetBodiesOnly(settings.bodies);
  filter.SetSelectedOnly(settings.selected);
  filter.SetVisibility(GetVisibility(settings));
  filter.SetIssuesOnly(settings.issues);
  filter.useResultsList = settings.results;
  filter.resultsListLive = settings.follow;
  filter.SetShowSiblings(settings.siblings);
  filter.listMode = settings.list ? 1 : 0;
  filter.SetDynamicUpdate(settings.follow);
  // The keys, by which a list is in order otherwise, tell users nothing.
  const Column* const sort = settings.sort   ? FindColumn(*settings.sort)
                             : settings.list ? FindColumn(s_nameColumn)
                                             : nullptr;
  filter.SetSortColumn(sort ? MakeSymbol(*sort) : du::DualSymbol());
  filter.SetSortDirection(!settings.descending);
}
