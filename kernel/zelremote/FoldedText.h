#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zelremote {

/// A text in the form in which texts are compared: canonically decomposed, with upper and lower case folded unless case
/// matters, and without code points that show nothing (soft hyphens, joiners). Bytes that are no UTF-8 are characters
/// of their own, each equal to the same byte alone.
///
/// It keeps its memory from text to text. One thread at a time.
class FoldedText {
public:
  /// The byte 0x80 that is no UTF-8; the others follow. Beyond all code points.
  static constexpr char32_t s_firstInvalidByte = 0x110080;

  /// Makes room, so that texts of up to so many bytes allocate nothing. A longer one makes room for itself once.
  void Reserve(std::size_t bytes);
  /// Takes the place of the former text. ASCII goes without any look-up; the text itself must then live on for as long
  /// as this one is read.
  void Assign(std::string_view text, bool matchCase);
  /// For texts that are put together.
  void Clear();
  /// Appends one character of a text, as `TakeCharacter` has answered it.
  void Append(char32_t character, bool matchCase);
  /// Appends a value that stays as it is and belongs to no character before it.
  void AppendRaw(char32_t value);

  [[nodiscard]] bool IsAscii() const noexcept { return m_isAscii; }
  /// The characters of a text of ASCII alone.
  [[nodiscard]] std::string_view GetAscii() const noexcept { return m_isNarrowUsed ? m_narrow : m_borrowed; }
  /// The characters of any other text.
  [[nodiscard]] std::u32string_view GetWide() const noexcept { return m_wide; }

  /// The next three are for the wide form. Letters, digits and what is written above, below or around them make words;
  /// so do bytes that are no UTF-8, which as a rule are letters of some older encoding.
  [[nodiscard]] bool IsInWord(std::size_t index) const noexcept { return m_traits[index].isInWord; }
  /// Written with the letter before it: an accent, an enclosing circle.
  [[nodiscard]] bool IsCombining(std::size_t index) const noexcept { return m_traits[index].isCombining; }
  /// Not the first of what one character of the text has become.
  [[nodiscard]] bool IsContinuation(std::size_t index) const noexcept { return m_traits[index].isContinuation; }

private:
  struct Traits {
    bool isInWord = false;
    bool isCombining = false;
    bool isContinuation = false;
  };

  [[nodiscard]] bool _FoldAscii(std::string_view text);
  void _AppendFolded(char32_t value, bool isFirst);
  /// Brings the last value, if it is combining, to its place in the canonical order.
  void _OrderLast();

  bool m_isAscii = true;
  /// Whether folding has changed the text, or could have.
  bool m_isNarrowUsed = false;
  std::string m_narrow;
  std::string_view m_borrowed;
  std::u32string m_wide;
  std::vector<Traits> m_traits;
};

/// Cuts the first character off `rest`, which is not empty, and answers its code point. A byte that begins no valid
/// sequence is cut off alone and gives `FoldedText::s_firstInvalidByte` and up.
[[nodiscard]] char32_t TakeCharacter(std::string_view& rest);

/// Whether words are separated by this character: white space of ASCII, and the spaces of Unicode.
[[nodiscard]] bool IsBlank(char32_t character);

[[nodiscard]] constexpr bool IsAsciiInWord(char c) noexcept
{
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

}  // namespace zelremote
