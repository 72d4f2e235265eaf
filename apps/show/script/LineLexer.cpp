#include "script/LineLexer.h"

#include <charconv>
#include <optional>

#include "script/ScriptError.h"

namespace script {

namespace {

bool IsBlank(char character)
{
  return character == ' ' || character == '\t';
}

std::string EncodeUtf8(unsigned int code)
{
  const auto byte = [](unsigned int bits) { return static_cast<char>(static_cast<unsigned char>(bits)); };
  if (code < 0x80) {
    return {byte(code)};
  }
  if (code < 0x800) {
    return {byte(0xC0U | (code >> 6U)), byte(0x80U | (code & 0x3FU))};
  }
  return {byte(0xE0U | (code >> 12U)), byte(0x80U | ((code >> 6U) & 0x3FU)), byte(0x80U | (code & 0x3FU))};
}

/// Goes through one line from its start to its end.
class LineLexer {
public:
  explicit LineLexer(std::string_view line) : m_line(line) {}

  /// Nothing at the end of the line and at its comment.
  [[nodiscard]] std::optional<Word> ReadWord()
  {
    while (!_IsAtEnd() && IsBlank(_Look())) {
      ++m_place;
    }
    if (_IsAtEnd() || _Look() == '#') {
      return std::nullopt;
    }
    const std::size_t start = m_place;
    Word word;
    word.path.isFromRoot = _Skip('/');
    do {
      word.path.steps.push_back(_ReadStep(word.isPlain));
    } while (_Skip('/'));
    if (!_IsAtWordEnd()) {
      throw ScriptError("a name with '#' must be in quotes");
    }
    word.text = m_line.substr(start, m_place - start);
    return word;
  }

private:
  [[nodiscard]] bool _IsAtEnd() const { return m_place == m_line.size(); }
  [[nodiscard]] char _Look() const { return m_line[m_place]; }
  [[nodiscard]] bool _IsAtWordEnd() const { return _IsAtEnd() || IsBlank(_Look()); }
  [[nodiscard]] bool _IsAtStepEnd() const { return _IsAtWordEnd() || _Look() == '/' || _Look() == '#'; }

  bool _Skip(char character)
  {
    const bool isThere = !_IsAtEnd() && _Look() == character;
    m_place += isThere ? 1 : 0;
    return isThere;
  }

  PathStep _ReadStep(bool& isPlain)
  {
    PathStep step;
    bool isQuoted = false;
    while (!_IsAtStepEnd()) {
      if (_Skip('"')) {
        isQuoted = true;
        step.name += _ReadQuoted();
      } else {
        step.name += m_line[m_place++];
      }
    }
    if (step.name.empty() && !isQuoted) {
      throw ScriptError("a name is missing beside '/' or '#'; an empty one is \"\"");
    }
    isPlain = isPlain && !isQuoted;
    step.number = _Skip('#') ? _ReadNumber() : 0;
    return step;
  }

  std::size_t _ReadNumber()
  {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(m_line.data() + m_place, m_line.data() + m_line.size(), number);
    if (error != std::errc() || number == 0) {
      throw ScriptError("a number from 1 on must follow '#'; a name with '#' must be in quotes");
    }
    m_place = static_cast<std::size_t>(end - m_line.data());
    return number;
  }

  std::string _ReadQuoted()
  {
    std::string text;
    while (!_IsAtEnd()) {
      if (_Skip('"')) {
        return text;
      }
      text += _Skip('\\') ? _ReadEscape() : std::string(1, m_line[m_place++]);
    }
    throw ScriptError("a quote is not closed");
  }

  std::string _ReadEscape()
  {
    const char kind = _IsAtEnd() ? '\0' : m_line[m_place++];
    switch (kind) {
      case '"':
      case '\\':
        return {kind};
      case 'n':
        return "\n";
      case 'r':
        return "\r";
      case 't':
        return "\t";
      case 'x':
        return {static_cast<char>(static_cast<unsigned char>(_ReadHex(2)))};
      case 'u':
        return EncodeUtf8(_ReadHex(4));
      default:
        throw ScriptError("'\\' in quotes must be written '\\\\'");
    }
  }

  unsigned int _ReadHex(std::size_t digits)
  {
    const std::string_view text = m_line.substr(m_place, digits);
    unsigned int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (error != std::errc() || end != text.data() + digits) {
      throw ScriptError("two hexadecimal digits must follow '\\x', and four '\\u'");
    }
    m_place += digits;
    return value;
  }

  const std::string_view m_line;
  std::size_t m_place = 0;
};

}  // namespace

std::vector<Word> SplitLine(std::string_view line)
{
  LineLexer lexer(line);
  std::vector<Word> words;
  while (std::optional<Word> word = lexer.ReadWord()) {
    words.push_back(std::move(*word));
  }
  return words;
}

}  // namespace script
