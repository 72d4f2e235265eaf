#include "Utf8.h"

#include <algorithm>
#include <cstddef>

namespace stepimport {

namespace {

constexpr std::string_view ReplacementCharacter = "\xEF\xBF\xBD";

unsigned char ByteAt(std::string_view text, std::size_t at)
{
  return static_cast<unsigned char>(text[at]);
}

/// The bounds of the byte after a leading byte shut out overlong forms, surrogates and what lies beyond Unicode.
struct Sequence {
  std::size_t length;
  unsigned char secondFrom;
  unsigned char secondTo;
};

Sequence GetSequence(unsigned char lead)
{
  if (lead < 0x80) {
    return {1, 0, 0};
  }
  if (lead >= 0xC2 && lead <= 0xDF) {
    return {2, 0x80, 0xBF};
  }
  if (lead == 0xE0) {
    return {3, 0xA0, 0xBF};
  }
  if (lead == 0xED) {
    return {3, 0x80, 0x9F};
  }
  if (lead >= 0xE1 && lead <= 0xEF) {
    return {3, 0x80, 0xBF};
  }
  if (lead == 0xF0) {
    return {4, 0x90, 0xBF};
  }
  if (lead >= 0xF1 && lead <= 0xF3) {
    return {4, 0x80, 0xBF};
  }
  if (lead == 0xF4) {
    return {4, 0x80, 0x8F};
  }
  return {0, 0, 0};
}

/// How many bytes the character at `at` has; 0 when none begins or ends well there.
std::size_t GetCharacterLength(std::string_view text, std::size_t at)
{
  const Sequence sequence = GetSequence(ByteAt(text, at));
  if (sequence.length <= 1) {
    return sequence.length;
  }
  if (at + sequence.length > text.size()) {
    return 0;
  }
  const unsigned char second = ByteAt(text, at + 1);
  if (second < sequence.secondFrom || second > sequence.secondTo) {
    return 0;
  }
  for (std::size_t i = at + 2; i < at + sequence.length; ++i) {
    if ((ByteAt(text, i) & 0xC0U) != 0x80U) {
      return 0;
    }
  }
  return sequence.length;
}

bool IsControl(unsigned char byte)
{
  return byte < 0x20 || byte == 0x7F;
}

}  // namespace

bool IsUtf8(std::string_view text)
{
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = GetCharacterLength(text, at);
    if (length == 0) {
      return false;
    }
    at += length;
  }
  return true;
}

std::string MakeName(std::string_view text)
{
  std::string name;
  name.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = GetCharacterLength(text, at);
    if (length == 0) {
      name += ReplacementCharacter;
    } else if (IsControl(ByteAt(text, at))) {
      name += ' ';
    } else {
      name += text.substr(at, length);
    }
    at += std::max<std::size_t>(length, 1);
  }
  return name;
}

bool IsBlank(std::string_view text)
{
  return std::all_of(text.begin(), text.end(), [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte == ' ' || IsControl(byte);
  });
}

}  // namespace stepimport
