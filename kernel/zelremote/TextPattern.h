#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "zelremote/FoldedText.h"

namespace zelremote {

/// What a user looks for, made ready once and then only read, in any thread.
///
/// The text is words with blanks between them. All words have to be found, in any order; they may overlap, and each may
/// be found in another field.
/// - A word without wildcards is found anywhere in the field: `nut` in "Hex nut M8" and in "Donut".
/// - A word with `*` (any characters, also none) or `?` (one character) has to match the field from its beginning to
///   its end, as in the filters of file dialogs: `hex*`, `*nut*m?`.
/// - A quotation mark at the beginning of a word makes everything up to the next one stand for itself, blanks and
///   wildcards as well: `"hex nut"` is one word, `"hex nut"*` begins a field, `"*"` is a star. Where the second mark is
///   missing, because it has not been typed yet, the quotation goes on to the end. Anywhere else a quotation mark is an
///   ordinary character: 3/4".
/// - To match whole words alone, the stretch that a word matches has to begin and end where no two letters or digits
///   stand side by side: `nut` in "Hex nut" and "nut_M8", not in "Donut". A word with wildcards then matches such a
///   stretch instead of the whole field, and its wildcards stand for letters and digits alone: `nut*` finds "Hex nuts".
///
/// Case is ignored after Unicode's rules for all languages: "STRASSE" finds "straße", "ΣΟΦΟΣ" finds "σοφος" in any of
/// its spellings. Turkish has rules of its own, which are not used: "I" is "i", and "ı" and "İ" are letters apart.
/// Accents count always, and composed and decomposed spellings are the same: "a" does not find "ä", whether that is one
/// code point or two.
///
/// The cost is that of a walk through the field, times the length of a word at worst.
class TextPattern {
public:
  TextPattern() = default;
  TextPattern(std::string_view text, bool matchCase, bool matchWholeWord);

  /// Whether there is no word, so that nothing is looked for.
  [[nodiscard]] bool IsEmpty() const noexcept { return m_words.empty(); }
  [[nodiscard]] std::size_t GetWordCount() const noexcept { return m_words.size(); }
  [[nodiscard]] bool GetMatchCase() const noexcept { return m_matchCase; }
  /// Whether `field`, folded as `GetMatchCase` says, has the word.
  [[nodiscard]] bool IsWordIn(std::size_t word, const FoldedText& field) const;

private:
  /// Folded, and with values for the wildcards that no text contains.
  struct Word {
    std::u32string wide;
    /// The same for fields of ASCII; empty where the word has other characters and so cannot be in one.
    std::string narrow;
    bool hasWildcards = false;
  };

  void _AddWord(const FoldedText& folded);

  std::vector<Word> m_words;
  bool m_matchCase = false;
  bool m_matchWholeWord = false;
};

/// Looks for a pattern in the fields of one thing after another. Copies share the pattern; each belongs to one thread
/// at a time. Memory is kept from field to field, and is not copied.
class TextSearch {
public:
  void SetPattern(std::shared_ptr<const TextPattern> pattern);
  [[nodiscard]] const TextPattern& GetPattern() const noexcept { return *m_pattern; }

  /// Makes room, so that fields of up to so many bytes allocate nothing.
  void Reserve(std::size_t bytes);
  /// Before the fields of the next thing.
  void Begin();
  /// Answers whether every word has been found by now, in this field or one before.
  [[nodiscard]] bool Add(std::string_view field);

private:
  std::shared_ptr<const TextPattern> m_pattern = std::make_shared<TextPattern>();
  FoldedText m_field;
  /// One flag a word.
  std::vector<unsigned char> m_isFound;
  std::size_t m_missing = 0;
};

}  // namespace zelremote
