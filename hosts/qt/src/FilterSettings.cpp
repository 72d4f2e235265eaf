#include "qthost/FilterSettings.h"

#include <array>
#include <optional>
#include <utility>

#include <QStringList>

#include "guitree/WorldTreeState.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelremote/TextPattern.h"

namespace qthost {

namespace {

struct Flag {
  const char* key;
  bool FilterSettings::*isOn;
};

constexpr std::array s_flags{
    Flag{"match_case", &FilterSettings::matchesCase},   Flag{"whole_words", &FilterSettings::matchesWholeWords},
    Flag{"search_name", &FilterSettings::searchesName}, Flag{"selected", &FilterSettings::selectedOnly},
    Flag{"issues", &FilterSettings::issuesOnly},        Flag{"parts", &FilterSettings::partsOnly},
    Flag{"siblings", &FilterSettings::showsSiblings},   Flag{"list", &FilterSettings::isList},
    Flag{"follow", &FilterSettings::follows},           Flag{"ascending", &FilterSettings::isAscending},
};

constexpr std::array<std::pair<const char*, FilterSettings::Visibility>, 3> s_visibilityWords{{
    {"any", FilterSettings::Visibility::Any},
    {"visible", FilterSettings::Visibility::Visible},
    {"hidden", FilterSettings::Visibility::Hidden},
}};

constexpr auto s_text = "text";
constexpr auto s_visibility = "visibility";
constexpr auto s_columns = "columns";
constexpr auto s_sort = "sort";

// Files keep them as words, the platform's stores as what they are.
std::optional<bool> ReadFlag(const QVariant& value)
{
  const QString word = value.toString();
  if (word == QLatin1String("true") || word == QLatin1String("false")) {
    return word == QLatin1String("true");
  }
  return {};
}

std::optional<FilterSettings::Visibility> ReadVisibility(const QVariant& value)
{
  for (const auto& [word, visibility] : s_visibilityWords) {
    if (value.toString() == QLatin1String(word)) {
      return visibility;
    }
  }
  return {};
}

QString WriteVisibility(FilterSettings::Visibility wanted)
{
  for (const auto& [word, visibility] : s_visibilityWords) {
    if (visibility == wanted) {
      return QLatin1String(word);
    }
  }
  return {};
}

QString ToText(const du::Symbol& symbol)
{
  return QString::fromUtf8(symbol.GetText());
}

du::Symbol ToSymbol(const QString& text)
{
  return du::Symbol(text.toStdString().c_str());
}

/// Group and name of each column in turn.
QStringList WriteColumns(const std::vector<du::DualSymbol>& columns)
{
  QStringList parts;
  for (const du::DualSymbol& column : columns) {
    parts << ToText(column.GetFirst()) << ToText(column.GetSecond());
  }
  return parts;
}

std::optional<std::vector<du::DualSymbol>> ReadColumns(const QVariant& value)
{
  const QStringList parts = value.toStringList();
  if (parts.size() % 2 != 0) {
    return {};
  }
  std::vector<du::DualSymbol> columns;
  for (qsizetype i = 0; i < parts.size(); i += 2) {
    if (parts[i].isEmpty() || parts[i + 1].isEmpty()) {
      return {};
    }
    columns.emplace_back(ToSymbol(parts[i]), ToSymbol(parts[i + 1]));
  }
  return columns;
}

bool LooksForText(const FilterSettings& settings)
{
  const zelremote::TextPattern pattern(settings.text.toStdString(), false, false);
  return !pattern.IsEmpty() && (settings.searchesName || !settings.columns.empty());
}

void ApplyText(const FilterSettings& settings, zelremote::StructureFilterInfo& filter)
{
  const bool findsAll = !settings.HasCriterion() && (settings.isList || settings.sortColumn != du::DualSymbol());
  filter.SetText(findsAll ? "*" : settings.text.toStdString());
  filter.SetSearchName(findsAll || settings.searchesName);
  filter.SetColumns(findsAll ? std::vector<du::DualSymbol>() : settings.columns);
  filter.SetMatchCase(settings.matchesCase);
  filter.SetMatchWholeWord(!findsAll && settings.matchesWholeWords);
}

}  // namespace

const du::DualSymbol& FilterSettings::GetNameColumn()
{
  static const du::DualSymbol s_nameColumn(zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, "Display Name");
  return s_nameColumn;
}

du::DualSymbol FilterSettings::CompleteColumn(const du::DualSymbol& column)
{
  const bool isComplete = !column.GetFirst().IsEmpty();
  return isComplete ? column
                    : du::DualSymbol(zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, column.GetSecond());
}

// The keys, by which a list is in order otherwise, tell users nothing.
du::DualSymbol FilterSettings::GetSortColumn() const
{
  return isList && sortColumn == du::DualSymbol() ? GetNameColumn() : sortColumn;
}

bool FilterSettings::HasCriterion() const
{
  return LooksForText(*this) || selectedOnly || issuesOnly || partsOnly || visibility != Visibility::Any;
}

void FilterSettings::ApplyTo(zelremote::StructureFilterInfo& filter) const
{
  ApplyText(*this, filter);
  filter.SetSelectedOnly(selectedOnly);
  filter.SetVisibility(visibility);
  filter.SetIssuesOnly(issuesOnly);
  filter.SetPartsOnly(partsOnly);
  filter.SetShowSiblings(showsSiblings);
  filter.listMode = isList ? 1 : 0;
  filter.SetDynamicUpdate(follows);
  filter.SetSortColumn(GetSortColumn());
  filter.SetSortDirection(isAscending);
  filter.hideBodies = !guitree::WorldTreeState::IsShowingBodies();
  filter.collapseInstances = guitree::WorldTreeState::IsCollapsingInstances();
}

void FilterSettings::Save(QSettings& settings) const
{
  for (const Flag& flag : s_flags) {
    settings.setValue(flag.key, this->*flag.isOn);
  }
  settings.setValue(s_text, text);
  settings.setValue(s_visibility, WriteVisibility(visibility));
  settings.setValue(s_columns, WriteColumns(columns));
  settings.setValue(s_sort, sortColumn == du::DualSymbol() ? QStringList() : WriteColumns({sortColumn}));
}

FilterSettings FilterSettings::Restore(const QSettings& settings)
{
  FilterSettings restored;
  for (const Flag& flag : s_flags) {
    restored.*flag.isOn = ReadFlag(settings.value(flag.key)).value_or(restored.*flag.isOn);
  }
  restored.text = settings.value(s_text).toString();
  restored.visibility = ReadVisibility(settings.value(s_visibility)).value_or(Visibility::Any);
  restored.columns = ReadColumns(settings.value(s_columns)).value_or(std::vector<du::DualSymbol>());
  const auto sort = ReadColumns(settings.value(s_sort));
  restored.sortColumn = sort && sort->size() == 1 ? sort->front() : du::DualSymbol();
  return restored;
}

}  // namespace qthost
