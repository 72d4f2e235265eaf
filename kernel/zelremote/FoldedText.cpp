#include "zelremote/FoldedText.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <utility>

namespace zelremote {
namespace {

constexpr char32_t s_firstNonAscii = 0x80;
constexpr char32_t s_codePointEnd = 0x110000;
/// More than any one code point becomes.
constexpr std::size_t s_longestFolding = 32;
/// How many values one byte of UTF-8 becomes at most, rounded up: a sequence of two bytes becomes three.
constexpr std::size_t s_valuesPerByte = 2;
/// No language writes so many accents on one letter. Longer runs stay out of order, so that ordering is never a burden.
constexpr std::size_t s_longestOrderedRun = 64;

constexpr char ToLower(char c)
{
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool IsAsciiText(std::string_view text)
{
  unsigned char all = 0;
  for (const char c : text) {
    all |= static_cast<unsigned char>(c);
  }
  return all < s_firstNonAscii;
}

utf8proc_category_t GetCategory(char32_t value)
{
  return utf8proc_category(static_cast<utf8proc_int32_t>(value));
}

bool IsCombiningCategory(utf8proc_category_t category)
{
  return category == UTF8PROC_CATEGORY_MN || category == UTF8PROC_CATEGORY_MC || category == UTF8PROC_CATEGORY_ME;
}

bool IsWordCategory(utf8proc_category_t category)
{
  const bool isLetter = category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_LO;
  const bool isNumber = category >= UTF8PROC_CATEGORY_ND && category <= UTF8PROC_CATEGORY_NO;
  return isLetter || isNumber || IsCombiningCategory(category);
}

int GetCombiningClass(char32_t value)
{
  return value < s_firstNonAscii
             ? 0
             : static_cast<int>(utf8proc_get_property(static_cast<utf8proc_int32_t>(value))->combining_class);
}

utf8proc_option_t GetOptions(bool matchCase)
{
  const unsigned int always = UTF8PROC_DECOMPOSE | UTF8PROC_IGNORE;
  return static_cast<utf8proc_option_t>(matchCase ? always : always | UTF8PROC_CASEFOLD);
}

}  // namespace

void FoldedText::Reserve(std::size_t bytes)
{
  m_narrow.reserve(bytes);
  m_wide.reserve(bytes * s_valuesPerByte);
  m_traits.reserve(bytes * s_valuesPerByte);
}

void FoldedText::Assign(std::string_view text, bool matchCase)
{
  m_isNarrowUsed = !matchCase;
  m_borrowed = text;
  m_isAscii = m_isNarrowUsed ? _FoldAscii(text) : IsAsciiText(text);
  if (m_isAscii) {
    return;
  }
  Clear();
  while (!text.empty()) {
    Append(TakeCharacter(text), matchCase);
  }
}

void FoldedText::Clear()
{
  m_isAscii = false;
  m_wide.clear();
  m_traits.clear();
}

void FoldedText::Append(char32_t character, bool matchCase)
{
  if (character < s_firstNonAscii) {
    const char c = static_cast<char>(character);
    m_wide.push_back(static_cast<unsigned char>(matchCase ? c : ToLower(c)));
    m_traits.push_back({.isInWord = IsAsciiInWord(c)});
    return;
  }
  if (character >= s_codePointEnd) {
    m_wide.push_back(character);
    m_traits.push_back({.isInWord = true});
    return;
  }
  std::array<utf8proc_int32_t, s_longestFolding> folded{};
  int boundClass = 0;
  const utf8proc_ssize_t count = utf8proc_decompose_char(static_cast<utf8proc_int32_t>(character), folded.data(),
                                                         folded.size(), GetOptions(matchCase), &boundClass);
  for (utf8proc_ssize_t i = 0; i < count; ++i) {
    _AppendFolded(static_cast<char32_t>(folded[static_cast<std::size_t>(i)]), i == 0);
  }
}

void FoldedText::AppendRaw(char32_t value)
{
  m_wide.push_back(value);
  m_traits.emplace_back();
}

bool FoldedText::_FoldAscii(std::string_view text)
{
  m_narrow.resize(text.size());
  unsigned char all = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    all |= static_cast<unsigned char>(text[i]);
    m_narrow[i] = ToLower(text[i]);
  }
  return all < s_firstNonAscii;
}

void FoldedText::_AppendFolded(char32_t value, bool isFirst)
{
  const utf8proc_category_t category = GetCategory(value);
  const bool isCombining = IsCombiningCategory(category);
  m_traits.push_back({.isInWord = IsWordCategory(category),
                      .isCombining = isCombining,
                      .isContinuation = !m_wide.empty() && (!isFirst || isCombining)});
  m_wide.push_back(value);
  if (isCombining) {
    _OrderLast();
  }
}

void FoldedText::_OrderLast()
{
  const int last = GetCombiningClass(m_wide.back());
  if (last == 0) {
    return;
  }
  const std::size_t end = m_wide.size() - 1;
  const std::size_t begin = end - std::min(end, s_longestOrderedRun);
  // The traits stay: what changes places is combining on both sides.
  for (std::size_t i = end; i > begin && GetCombiningClass(m_wide[i - 1]) > last; --i) {
    std::swap(m_wide[i], m_wide[i - 1]);
  }
}

char32_t TakeCharacter(std::string_view& rest)
{
  const unsigned char first = static_cast<unsigned char>(rest.front());
  if (first < s_firstNonAscii) {
    rest.remove_prefix(1);
    return first;
  }
  utf8proc_int32_t codePoint = 0;
  const utf8proc_ssize_t length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(rest.data()),
                                                   static_cast<utf8proc_ssize_t>(rest.size()), &codePoint);
  if (length <= 0) {
    rest.remove_prefix(1);
    return FoldedText::s_firstInvalidByte + first - s_firstNonAscii;
  }
  rest.remove_prefix(static_cast<std::size_t>(length));
  return static_cast<char32_t>(codePoint);
}

bool IsBlank(char32_t character)
{
  if (character < s_firstNonAscii) {
    return character == U' ' || (character >= U'\t' && character <= U'\r');
  }
  return character < s_codePointEnd && GetCategory(character) == UTF8PROC_CATEGORY_ZS;
}

}  // namespace zelremote
