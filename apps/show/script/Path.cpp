#include "script/Path.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace script {

namespace {

bool IsControl(char character)
{
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7F;
}

bool NeedsQuotes(char character)
{
  return IsControl(character) || character == ' ' || character == '/' || character == '#' || character == '"';
}

std::string Escape(char character)
{
  switch (character) {
    case '"':
      return "\\\"";
    case '\\':
      return "\\\\";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  if (!IsControl(character)) {
    return {character};
  }
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "\\x%02X", static_cast<unsigned int>(static_cast<unsigned char>(character)));
  return text.data();
}

}  // namespace

std::string QuoteName(std::string_view name)
{
  if (!name.empty() && std::none_of(name.begin(), name.end(), NeedsQuotes)) {
    return std::string(name);
  }
  std::string text(1, '"');
  for (const char character : name) {
    text += Escape(character);
  }
  return text + '"';
}

std::string ToText(const Path& path)
{
  std::string text;
  for (const PathStep& step : path.steps) {
    text += !text.empty() || path.isFromRoot ? "/" : "";
    text += QuoteName(step.name);
    text += step.number > 0 ? '#' + std::to_string(step.number) : "";
  }
  return text;
}

}  // namespace script
