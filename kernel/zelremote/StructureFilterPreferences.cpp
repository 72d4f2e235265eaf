#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "dp/ZelTracer.h"
#include "zelk/Preferences.h"
#include "zelk/World.h"
#include "zelremote/StructureFilterInfo.h"

namespace zelremote {
namespace {

using Visibility = StructureFilterInfo::Visibility;
using Columns = std::vector<du::DualSymbol>;

constexpr dp::ZelTracer s_tracer("structurefilter", "StructureFilterInfo");

constexpr std::array<std::pair<std::string_view, Visibility>, 3> s_visibilityWords{{
    {"any", Visibility::Any},
    {"visible", Visibility::Visible},
    {"hidden", Visibility::Hidden},
}};

std::string WriteVisibility(Visibility visibility)
{
  for (const auto& [word, value] : s_visibilityWords) {
    if (value == visibility) {
      return std::string(word);
    }
  }
  return {};
}

std::optional<Visibility> ReadVisibility(std::string_view text)
{
  for (const auto& [word, value] : s_visibilityWords) {
    if (word == text) {
      return value;
    }
  }
  return {};
}

/// Each column is written as `group/name;`, with a backslash before what does not end a part.
constexpr char s_afterName = ';';
constexpr char s_afterGroup = '/';
constexpr char s_escape = '\\';

void WriteEscaped(std::string& out, std::string_view text)
{
  for (const char c : text) {
    if (c == s_afterName || c == s_afterGroup || c == s_escape) {
      out += s_escape;
    }
    out += c;
  }
}

std::string WriteColumns(const Columns& columns)
{
  std::string text;
  for (const du::DualSymbol& column : columns) {
    WriteEscaped(text, column.GetFirst().GetView());
    text += s_afterGroup;
    WriteEscaped(text, column.GetSecond().GetView());
    text += s_afterName;
  }
  return text;
}

/// Cuts off all up to the first bare `end` and answers it without that and its escapes. Nothing if there is none, or
/// what ends the other part comes first.
std::optional<std::string> TakePart(std::string_view& rest, char end)
{
  std::string part;
  while (!rest.empty()) {
    char c = rest.front();
    rest.remove_prefix(1);
    if (c == end) {
      return part;
    }
    if (c == s_afterName || c == s_afterGroup || (c == s_escape && rest.empty())) {
      return {};
    }
    if (c == s_escape) {
      c = rest.front();
      rest.remove_prefix(1);
    }
    part += c;
  }
  return {};
}

std::optional<Columns> ReadColumns(std::string_view text)
{
  Columns columns;
  while (!text.empty()) {
    const auto group = TakePart(text, s_afterGroup);
    const auto name = group ? TakePart(text, s_afterName) : std::nullopt;
    if (!name) {
      return {};
    }
    columns.emplace_back(du::Symbol(std::string_view(*group)), du::Symbol(std::string_view(*name)));
  }
  return columns;
}

std::string WriteSortColumn(const du::DualSymbol& column)
{
  return column == du::DualSymbol() ? std::string() : WriteColumns({column});
}

std::optional<du::DualSymbol> ReadSortColumn(std::string_view text)
{
  const auto columns = ReadColumns(text);
  if (!columns || columns->size() > 1) {
    return {};
  }
  return columns->empty() ? du::DualSymbol() : columns->front();
}

/// The settings of one filter in the preferences of the running world.
class Store {
public:
  explicit Store(const du::Symbol& filter) : m_prefix("Structure Filter/" + std::string(filter) + "/")
  {
    const du::SmartPtr<zelk::World> world = zelk::World::GetWorld();
    m_preferences = world ? world->GetPreferences() : nullptr;
  }

  [[nodiscard]] bool IsThere() const { return static_cast<bool>(m_preferences); }

  void Load(const char* key, bool& value, bool fallback) const
  {
    _Load(key, value, fallback, &zelk::Preferences::GetBool);
  }
  void Load(const char* key, int& value, int fallback) const
  {
    _Load(key, value, fallback, &zelk::Preferences::GetInt);
  }
  void Load(const char* key, std::string& value, const std::string& fallback) const
  {
    _Load(key, value, fallback, &zelk::Preferences::GetString);
  }
  void Load(const char* key, Visibility& value, Visibility fallback) const
  {
    _LoadText(key, value, fallback, ReadVisibility);
  }
  void Load(const char* key, Columns& value, const Columns& fallback) const
  {
    _LoadText(key, value, fallback, ReadColumns);
  }
  void Load(const char* key, du::DualSymbol& value, const du::DualSymbol& fallback) const
  {
    _LoadText(key, value, fallback, ReadSortColumn);
  }

  void Save(const char* key, bool value) const { m_preferences->SetBool(_GetKey(key), value); }
  void Save(const char* key, int value) const { m_preferences->SetInt(_GetKey(key), value); }
  void Save(const char* key, const std::string& value) const { m_preferences->SetString(_GetKey(key), value); }
  void Save(const char* key, Visibility value) const { Save(key, WriteVisibility(value)); }
  void Save(const char* key, const Columns& value) const { Save(key, WriteColumns(value)); }
  void Save(const char* key, const du::DualSymbol& value) const { Save(key, WriteSortColumn(value)); }

private:
  [[nodiscard]] du::Symbol _GetKey(const char* key) const { return du::Symbol(std::string_view(m_prefix + key)); }

  template <typename T>
  void _Load(const char* key, T& value, const T& fallback,
             bool (zelk::Preferences::*get)(const du::Symbol&, T&, bool*) const) const
  {
    T stored{};
    bool isFound = false;
    if ((*m_preferences.*get)(_GetKey(key), stored, &isFound)) {
      value = std::move(stored);
    } else if (isFound) {
      value = fallback;
      _TraceFallback(key);
    }
  }

  template <typename T, typename Read>
  void _LoadText(const char* key, T& value, const T& fallback, Read read) const
  {
    std::string text;
    bool isFound = false;
    const bool isText = m_preferences->GetString(_GetKey(key), text, &isFound);
    auto understood = isText ? read(text) : std::nullopt;
    if (understood) {
      value = *std::move(understood);
    } else if (isFound) {
      value = fallback;
      _TraceFallback(key);
    }
  }

  void _TraceFallback(const char* key) const
  {
    s_tracer(dp::TraceType::Warning) << "Not understood, so the default stands: " << _GetKey(key).GetView() << " = "
                                     << _Describe(_GetKey(key));
  }

  [[nodiscard]] std::string _Describe(const du::Symbol& key) const
  {
    bool flag = false;
    if (m_preferences->GetBool(key, flag, nullptr)) {
      return flag ? "true" : "false";
    }
    int number = 0;
    if (m_preferences->GetInt(key, number, nullptr)) {
      return std::to_string(number);
    }
    std::string text;
    return m_preferences->GetString(key, text, nullptr) ? '"' + text + '"' : "a value of another type";
  }

  const std::string m_prefix;
  du::SmartPtr<zelk::Preferences> m_preferences;
};

}  // namespace

template <typename Visitor>
void StructureFilterInfo::_ForEachSetting(const Visitor& visit)
{
  visit("text", &StructureFilterInfo::m_text);
  visit("search_name", &StructureFilterInfo::m_searchName);
  visit("columns", &StructureFilterInfo::m_columns);
  visit("match_case", &StructureFilterInfo::m_matchCase);
  visit("match_whole_word", &StructureFilterInfo::m_matchWholeWord);
  visit("parts_only", &StructureFilterInfo::m_partsOnly);
  visit("bodies_only", &StructureFilterInfo::m_bodiesOnly);
  visit("selected_only", &StructureFilterInfo::m_selectedOnly);
  visit("visibility", &StructureFilterInfo::m_visibility);
  visit("issues_only", &StructureFilterInfo::m_issuesOnly);
  visit("use_results_list", &StructureFilterInfo::useResultsList);
  visit("results_list_live", &StructureFilterInfo::resultsListLive);
  visit("collapse_instances", &StructureFilterInfo::collapseInstances);
  visit("hide_bodies", &StructureFilterInfo::hideBodies);
  visit("list_mode", &StructureFilterInfo::listMode);
  visit("show_siblings", &StructureFilterInfo::m_showSiblings);
  visit("ensure_expanded", &StructureFilterInfo::m_ensureExpanded);
  visit("sort_column", &StructureFilterInfo::m_sortColumn);
  visit("sort_ascending", &StructureFilterInfo::m_isAscending);
  visit("dynamic_update", &StructureFilterInfo::m_dynamicUpdate);
}

void StructureFilterInfo::LoadFromPreferences()
{
  const Store store(m_name);
  if (!store.IsThere()) {
    return;
  }
  const StructureFilterInfo defaults(m_name);
  _ForEachSetting([&](const char* key, auto member) { store.Load(key, this->*member, defaults.*member); });
  _PreparePattern();
}

void StructureFilterInfo::StoreToPreferences() const
{
  const Store store(m_name);
  if (store.IsThere()) {
    _ForEachSetting([&](const char* key, auto member) { store.Save(key, this->*member); });
  }
}

}  // namespace zelremote
