#include "texthost/PrintableText.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace texthost {

namespace {

struct Character {
  char32_t code = 0;
  /// 0 for bytes that are no character.
  std::size_t size = 0;
};

// The smallest code that needs this many bytes: longer forms of smaller codes are not UTF-8.
constexpr std::array<char32_t, 5> s_smallest{0, 0, 0x80, 0x800, 0x10000};

std::size_t GetSize(unsigned char lead)
{
  if (lead < 0x80) {
    return 1;
  }
  if (lead < 0xC0 || lead > 0xF7) {
    return 0;
  }
  return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

Character ReadCharacter(std::string_view text)
{
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t size = GetSize(lead);
  if (size == 0 || size > text.size()) {
    return {};
  }
  char32_t code = size == 1 ? lead : lead & (0x7FU >> size);
  for (const char next : text.substr(1, size - 1)) {
    const auto byte = static_cast<unsigned char>(next);
    if ((byte & 0xC0U) != 0x80U) {
      return {};
    }
    code = (code << 6U) | (byte & 0x3FU);
  }
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < s_smallest.at(size) || code > 0x10FFFF || isSurrogate ? Character{} : Character{code, size};
}

bool MustBeEscaped(char32_t code)
{
  const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
  const bool isSeparator = code == 0x2028 || code == 0x2029;
  const bool turnsDirection = code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E)
                              || (code >= 0x2066 && code <= 0x2069);
  return isControl || isSeparator || turnsDirection;
}

std::string Escape(char32_t code)
{
  switch (code) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), code < 0x80 ? "\\x%02X" : "\\u%04X", static_cast<unsigned int>(code));
  return text.data();
}

}  // namespace

std::string MakePrintable(std::string_view text, std::string_view replacement)
{
  std::string printable;
  printable.reserve(text.size());
  while (!text.empty()) {
    const Character character = ReadCharacter(text);
    const std::size_t size = character.size > 0 ? character.size : 1;
    if (character.size == 0) {
      printable += replacement;
    } else if (MustBeEscaped(character.code)) {
      printable += Escape(character.code);
    } else {
      printable += text.substr(0, size);
    }
    text.remove_prefix(size);
  }
  return printable;
}

}  // namespace texthost
