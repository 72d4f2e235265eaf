#include "script/FilterWords.h"

#include <algorithm>
#include <string_view>

#include "script/Path.h"
#include "script/ScriptError.h"

namespace script {

namespace {

constexpr std::string_view s_column = "--column";
constexpr std::string_view s_sort = "--sort";
constexpr std::string_view s_descending = "descending";

bool IsOption(const Word& word)
{
  return word.isPlain && word.text.starts_with("--");
}

void ThrowIfFaulty(const std::string& fault)
{
  if (!fault.empty()) {
    throw ScriptError(fault);
  }
}

/// Reads the words of one filter.
class FilterParser {
public:
  explicit FilterParser(std::span<const Word> words) : m_words(words) {}

  [[nodiscard]] FilterSettings Parse()
  {
    while (!m_words.empty()) {
      const Word& word = _Take();
      if (IsOption(word)) {
        _ParseOption(word.text);
      } else {
        _ParseText(word);
      }
    }
    ThrowIfFaulty(FindFault(m_settings));
    return std::move(m_settings);
  }

private:
  const Word& _Take()
  {
    const Word& word = m_words.front();
    m_words = m_words.subspan(1);
    return word;
  }

  void _ParseOption(const std::string& option)
  {
    if (option == s_column) {
      m_settings.columns.push_back(_TakeColumn(option));
      return;
    }
    if (option == s_sort) {
      ThrowIfFaulty(m_settings.sort ? option + " may stand here only once" : "");
      m_settings.sort = _TakeColumn(option);
      return;
    }
    const auto flags = GetFilterFlags();
    const auto flag = std::find_if(flags.begin(), flags.end(), [&](const FilterFlag& f) { return f.name == option; });
    if (flag == flags.end()) {
      throw ScriptError("unknown option '" + option + "': a text that begins so must be in quotes");
    }
    m_settings.*(flag->isOn) = true;
  }

  [[nodiscard]] std::string _TakeColumn(const std::string& option)
  {
    if (m_words.empty()) {
      throw ScriptError("write: " + option + " COLUMN");
    }
    return ParseName(_Take(), "a column");
  }

  void _ParseText(const Word& word)
  {
    if (m_settings.text) {
      throw ScriptError("several words to look for must be in quotes, as one text");
    }
    m_settings.text = ParseName(word, "a text to look for");
  }

  std::span<const Word> m_words;
  FilterSettings m_settings;
};

std::string QuoteText(const std::string& text)
{
  // Such words mean something else where a text may stand.
  const bool isTaken =
      text.starts_with("--") || text == "off" || text == "hold" || text == "resume" || text == "cancel";
  return isTaken ? '"' + text + '"' : QuoteName(text);
}

}  // namespace

std::string ParseName(const Word& word, const std::string& what)
{
  if (word.path.isFromRoot || word.path.steps.size() > 1 || word.path.steps.front().number > 0) {
    throw ScriptError(what + " with '/' or '#' must be in quotes");
  }
  return word.path.steps.front().name;
}

FilterSettings ParseFilter(std::span<const Word> words)
{
  return FilterParser(words).Parse();
}

FilterSettings ParseSorting(std::span<const Word> words)
{
  FilterSettings settings;
  settings.sort = ParseName(words.front(), "a column");
  ThrowIfFaulty(FindFaultInColumn(*settings.sort));
  if (words.size() > 1) {
    if (!words[1].isPlain || words[1].text != s_descending) {
      throw ScriptError("'" + words[1].text + "' is no direction: write descending, or nothing");
    }
    settings.descending = true;
  }
  return settings;
}

std::string FilterToText(const FilterSettings& settings)
{
  std::string text = settings.text ? ' ' + QuoteText(*settings.text) : "";
  for (const std::string& column : settings.columns) {
    text.append(" ").append(s_column).append(" ").append(QuoteName(column));
  }
  if (settings.sort) {
    text.append(" ").append(s_sort).append(" ").append(QuoteName(*settings.sort));
  }
  for (const FilterFlag& flag : GetFilterFlags()) {
    if (settings.*(flag.isOn)) {
      text.append(" ").append(flag.name);
    }
  }
  return text;
}

std::string SortingToText(const FilterSettings& settings)
{
  return ' ' + QuoteName(settings.sort.value_or("")) + (settings.descending ? " descending" : "");
}

}  // namespace script
