#include "script/ScriptParser.h"

#include <algorithm>
#include <charconv>
#include <span>
#include <utility>
#include <vector>

#include "script/FilterWords.h"
#include "script/Forms.h"
#include "script/LineLexer.h"
#include "script/ScriptError.h"

namespace script {

namespace {

constexpr std::string_view s_repeat = "repeat";
constexpr std::string_view s_in = "in";

bool IsKeyword(const Word& word, std::string_view keyword)
{
  return word.isPlain && word.text == keyword;
}

/// Reads the words of one line.
class LineParser {
public:
  explicit LineParser(std::vector<Word> words) : m_words(std::move(words)) {}

  [[nodiscard]] Command Parse()
  {
    _ParsePrefixes();
    const Form& form = _ParseForm();
    m_command.verb = form.verb;
    _CheckPrefixes(form);
    _ParseArguments(form);
    return std::move(m_command);
  }

private:
  [[nodiscard]] std::size_t _CountLeft() const { return m_words.size() - m_next; }

  void _ParsePrefixes()
  {
    while (_CountLeft() > 0) {
      if (IsKeyword(m_words[m_next], s_repeat)) {
        m_command.times = _ParsePrefix("repeat N COMMAND");
      } else if (IsKeyword(m_words[m_next], s_in)) {
        m_command.scene = _ParsePrefix("in N COMMAND");
      } else {
        return;
      }
    }
  }

  std::size_t _ParsePrefix(const char* usage)
  {
    ++m_next;
    if (_CountLeft() < 2) {
      throw ScriptError(std::string("write: ") + usage);
    }
    return _ParseNumber();
  }

  std::size_t _ParseNumber()
  {
    const Word& word = m_words[m_next++];
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(word.text.data(), word.text.data() + word.text.size(), number);
    if (error != std::errc() || end != word.text.data() + word.text.size() || number == 0) {
      throw ScriptError(word.text + " is no number from 1 on");
    }
    return number;
  }

  const Form& _ParseForm()
  {
    const Form* longest = nullptr;
    for (const Form& form : GetForms()) {
      if (_StartsWith(form.words) && (!longest || longest->words.size() < form.words.size())) {
        longest = &form;
      }
    }
    if (!longest) {
      throw ScriptError(_DescribeUnknown());
    }
    m_next += static_cast<std::size_t>(std::count(longest->words.begin(), longest->words.end(), ' ')) + 1;
    return *longest;
  }

  [[nodiscard]] bool _StartsWith(std::string_view words) const
  {
    std::size_t next = m_next;
    while (!words.empty()) {
      const std::string_view word = words.substr(0, words.find(' '));
      if (next == m_words.size() || !IsKeyword(m_words[next], word)) {
        return false;
      }
      ++next;
      words.remove_prefix(std::min(words.size(), word.size() + 1));
    }
    return true;
  }

  [[nodiscard]] std::string _DescribeUnknown() const
  {
    const std::string word = m_words[m_next].text;
    std::string similar;
    for (const Form& form : GetForms()) {
      if (form.words.starts_with(word + ' ')) {
        similar += (similar.empty() ? "; write: " : ", or ") + GetUsage(form);
      }
    }
    const bool isIncomplete = !similar.empty() && _CountLeft() == 1;
    return isIncomplete ? similar.substr(2) : "unknown command '" + word + '\'' + similar;
  }

  void _CheckPrefixes(const Form& form) const
  {
    const bool isBracket = form.verb == Verb::BeginBatch || form.verb == Verb::EndBatch;
    if (isBracket && m_command.times > 1) {
      throw ScriptError('\'' + std::string(form.words) + "' cannot be repeated");
    }
    if (m_command.times > s_maxTimes) {
      throw ScriptError("more than " + std::to_string(s_maxTimes) + " times is too often");
    }
    if (m_command.scene > 0 && !form.isAboutScene) {
      throw ScriptError('\'' + std::string(form.words) + "' is not about one scene: leave out 'in'");
    }
  }

  void _ParseArguments(const Form& form)
  {
    if (!_IsRightCount(form.arguments)) {
      throw ScriptError("write: " + GetUsage(form));
    }
    switch (form.arguments) {
      case Arguments::Number:
        m_command.number = _ParseNumber();
        return;
      case Arguments::NumberAndName:
        m_command.number = _ParseNumber();
        m_command.name = ParseName(m_words.back(), "a type");
        return;
      case Arguments::Filter:
        m_command.filter = ParseFilter(std::span(m_words).subspan(m_next));
        return;
      case Arguments::Sorting:
        m_command.filter = ParseSorting(std::span(m_words).subspan(m_next));
        return;
      case Arguments::PathAndName:
        m_command.name = ParseName(m_words.back(), "a new name");
        m_words.pop_back();
        break;
      default:
        break;
    }
    for (; m_next < m_words.size(); ++m_next) {
      m_command.paths.push_back(std::move(m_words[m_next].path));
    }
  }

  [[nodiscard]] bool _IsRightCount(Arguments arguments) const
  {
    switch (arguments) {
      case Arguments::None:
        return _CountLeft() == 0;
      case Arguments::OnePath:
      case Arguments::Number:
        return _CountLeft() == 1;
      case Arguments::Paths:
      case Arguments::Filter:
        return _CountLeft() > 0;
      case Arguments::AnyPaths:
        return true;
      case Arguments::PathAndName:
      case Arguments::NumberAndName:
        return _CountLeft() == 2;
      case Arguments::Sorting:
        return _CountLeft() == 1 || _CountLeft() == 2;
    }
    return false;
  }

  std::vector<Word> m_words;
  std::size_t m_next = 0;
  Command m_command;
};

}  // namespace

std::optional<Command> ParseLine(std::string_view line)
{
  std::vector<Word> words = SplitLine(line);
  if (words.empty()) {
    return std::nullopt;
  }
  return LineParser(std::move(words)).Parse();
}

namespace {

/// In quotes where the word would make another command of the line.
std::string PathToText(const Form& form, const Path& path)
{
  const std::string text = ToText(path);
  const std::string words = std::string(form.words) + ' ' + text;
  const auto forms = GetForms();
  const bool isTaken = std::any_of(forms.begin(), forms.end(), [&](const Form& other) { return other.words == words; });
  return isTaken ? '"' + text + '"' : text;
}

}  // namespace

std::string ToText(const Command& command)
{
  const Form& form = GetForm(command.verb);
  std::string text = command.times > 1 ? "repeat " + std::to_string(command.times) + ' ' : "";
  text += command.scene > 0 ? "in " + std::to_string(command.scene) + ' ' : "";
  text += form.words;
  for (const Path& path : command.paths) {
    text += ' ' + PathToText(form, path);
  }
  const bool hasNumber = form.arguments == Arguments::Number || form.arguments == Arguments::NumberAndName;
  const bool hasName = form.arguments == Arguments::PathAndName || form.arguments == Arguments::NumberAndName;
  text += hasNumber ? ' ' + std::to_string(command.number) : "";
  text += hasName ? ' ' + QuoteName(command.name) : "";
  text += form.arguments == Arguments::Filter ? FilterToText(command.filter) : "";
  text += form.arguments == Arguments::Sorting ? SortingToText(command.filter) : "";
  return text;
}

}  // namespace script
