#include "zelremote/TextPattern.h"

#include <algorithm>
#include <utility>

namespace zelremote {
namespace {

/// Cut down to a `char`, they are no ASCII either.
constexpr char32_t s_anyCharacters = 0xffffffff;
constexpr char32_t s_oneCharacter = 0xfffffffe;
constexpr char32_t s_firstNonAscii = 0x80;
constexpr std::size_t s_none = std::u32string_view::npos;

constexpr bool IsWildcard(char32_t value)
{
  return value >= s_oneCharacter;
}

/// The two forms of a field, as the matching sees them.
struct NarrowField {
  using Char = char;
  std::string_view chars;
  explicit NarrowField(const FoldedText& text) : chars(text.GetAscii()) {}
  [[nodiscard]] bool IsInWord(std::size_t index) const { return IsAsciiInWord(chars[index]); }
  [[nodiscard]] static bool IsCombining(std::size_t /*index*/) { return false; }
  [[nodiscard]] static bool IsContinuation(std::size_t /*index*/) { return false; }
};

struct WideField {
  using Char = char32_t;
  std::u32string_view chars;
  const FoldedText& text;
  explicit WideField(const FoldedText& folded) : chars(folded.GetWide()), text(folded) {}
  [[nodiscard]] bool IsInWord(std::size_t index) const { return text.IsInWord(index); }
  [[nodiscard]] bool IsCombining(std::size_t index) const { return text.IsCombining(index); }
  [[nodiscard]] bool IsContinuation(std::size_t index) const { return text.IsContinuation(index); }
};

template <typename Field>
class WordMatcher {
public:
  using Word = std::basic_string_view<typename Field::Char>;

  WordMatcher(const Field& field, Word word, bool wholeWord)
      : m_field(field), m_word(word), m_size(field.chars.size()), m_wholeWord(wholeWord)
  {
  }

  [[nodiscard]] bool Find() const
  {
    for (std::size_t at = m_field.chars.find(m_word); at != Word::npos; at = m_field.chars.find(m_word, at + 1)) {
      const std::size_t end = at + m_word.size();
      if (_IsCharacterEnd(end) && (!m_wholeWord || (_IsWordEdge(at) && _IsWordEdge(end)))) {
        return true;
      }
    }
    return false;
  }

  [[nodiscard]] bool FindByWildcards() const
  {
    if (!m_wholeWord) {
      return _MatchFrom(0);
    }
    for (std::size_t start = 0; start <= m_size; ++start) {
      if (_IsWordEdge(start) && _MatchFrom(start)) {
        return true;
      }
    }
    return false;
  }

private:
  static constexpr auto s_any = static_cast<typename Field::Char>(s_anyCharacters);
  static constexpr auto s_one = static_cast<typename Field::Char>(s_oneCharacter);

  /// An accent belongs to its letter, so no match ends between the two.
  [[nodiscard]] bool _IsCharacterEnd(std::size_t at) const
  {
    return at == 0 || at == m_size || !m_field.IsCombining(at);
  }

  [[nodiscard]] bool _IsWordEdge(std::size_t at) const
  {
    return at == 0 || at == m_size || !m_field.IsInWord(at - 1) || !m_field.IsInWord(at);
  }

  [[nodiscard]] bool _IsEnd(std::size_t at) const
  {
    return m_wholeWord ? _IsWordEdge(at) && _IsCharacterEnd(at) : at == m_size;
  }

  [[nodiscard]] bool _MayStandFor(std::size_t at) const
  {
    return at < m_size && (!m_wholeWord || m_field.IsInWord(at));
  }

  [[nodiscard]] bool _IsStar(std::size_t index) const { return index < m_word.size() && m_word[index] == s_any; }

  /// Where the field goes on after what one value of the word matches; `s_none` if that is nothing.
  [[nodiscard]] std::size_t _Step(std::size_t index, std::size_t at) const
  {
    if (index == m_word.size() || at == m_size) {
      return s_none;
    }
    if (m_word[index] == s_one) {
      return _MayStandFor(at) && _IsCharacterEnd(at) ? _GetNextCharacter(at) : s_none;
    }
    return m_field.chars[at] == m_word[index] ? at + 1 : s_none;
  }

  [[nodiscard]] std::size_t _GetNextCharacter(std::size_t at) const
  {
    do {
      ++at;
    } while (at < m_size && m_field.IsContinuation(at));
    return at;
  }

  /// Only the last star is ever tried again: what lies before it has been matched as early as possible, and this star
  /// can take whatever an earlier one could give up.
  [[nodiscard]] bool _MatchFrom(std::size_t start) const
  {
    std::size_t at = start;
    std::size_t next = 0;
    std::size_t afterStar = s_none;
    std::size_t starEnd = start;
    while (next < m_word.size() || !_IsEnd(at)) {
      const std::size_t step = _Step(next, at);
      if (_IsStar(next) && _IsCharacterEnd(at)) {
        afterStar = ++next;
        starEnd = at;
      } else if (step != s_none) {
        at = step;
        ++next;
      } else if (afterStar != s_none && _MayStandFor(starEnd)) {
        at = ++starEnd;
        next = afterStar;
      } else {
        return false;
      }
    }
    return true;
  }

  const Field m_field;
  const Word m_word;
  const std::size_t m_size;
  const bool m_wholeWord;
};

template <typename Field, typename Text>
bool Matches(const FoldedText& text, const Text& word, bool hasWildcards, bool wholeWord)
{
  const WordMatcher<Field> matcher(Field(text), word, wholeWord);
  return hasWildcards ? matcher.FindByWildcards() : matcher.Find();
}

/// Cuts a text into its words.
class WordReader {
public:
  WordReader(std::string_view text, bool matchCase) : m_rest(text), m_matchCase(matchCase) {}

  /// False at the end of the text.
  bool Read(FoldedText& word)
  {
    word.Clear();
    while (!m_rest.empty() && IsBlank(_Peek())) {
      _Take();
    }
    if (m_rest.empty()) {
      return false;
    }
    if (_Peek() == U'"') {
      _ReadQuotation(word);
    }
    while (!m_rest.empty() && !IsBlank(_Peek())) {
      _AppendPlain(word, _Take());
    }
    return true;
  }

private:
  [[nodiscard]] char32_t _Peek() const
  {
    std::string_view rest = m_rest;
    return TakeCharacter(rest);
  }
  char32_t _Take() { return TakeCharacter(m_rest); }

  void _ReadQuotation(FoldedText& word)
  {
    _Take();
    while (!m_rest.empty()) {
      const char32_t character = _Take();
      if (character == U'"') {
        return;
      }
      word.Append(character, m_matchCase);
    }
  }

  void _AppendPlain(FoldedText& word, char32_t character) const
  {
    if (character == U'*') {
      word.AppendRaw(s_anyCharacters);
    } else if (character == U'?') {
      word.AppendRaw(s_oneCharacter);
    } else {
      word.Append(character, m_matchCase);
    }
  }

  std::string_view m_rest;
  bool m_matchCase;
};

}  // namespace

TextPattern::TextPattern(std::string_view text, bool matchCase, bool matchWholeWord)
    : m_matchCase(matchCase), m_matchWholeWord(matchWholeWord)
{
  WordReader reader(text, matchCase);
  FoldedText folded;
  while (reader.Read(folded)) {
    _AddWord(folded);
  }
}

void TextPattern::_AddWord(const FoldedText& folded)
{
  Word word;
  word.wide = folded.GetWide();
  if (word.wide.empty()) {
    return;
  }
  word.hasWildcards = std::any_of(word.wide.begin(), word.wide.end(), IsWildcard);
  const auto isNarrow = [](char32_t value) { return value < s_firstNonAscii || IsWildcard(value); };
  if (std::all_of(word.wide.begin(), word.wide.end(), isNarrow)) {
    std::transform(word.wide.begin(), word.wide.end(), std::back_inserter(word.narrow),
                   [](char32_t value) { return static_cast<char>(value); });
  }
  m_words.push_back(std::move(word));
}

bool TextPattern::IsWordIn(std::size_t word, const FoldedText& field) const
{
  const Word& wanted = m_words[word];
  if (!field.IsAscii()) {
    return Matches<WideField>(field, wanted.wide, wanted.hasWildcards, m_matchWholeWord);
  }
  return !wanted.narrow.empty() && Matches<NarrowField>(field, wanted.narrow, wanted.hasWildcards, m_matchWholeWord);
}

void TextSearch::SetPattern(std::shared_ptr<const TextPattern> pattern)
{
  m_pattern = std::move(pattern);
}

void TextSearch::Reserve(std::size_t bytes)
{
  m_field.Reserve(bytes);
  m_isFound.reserve(m_pattern->GetWordCount());
}

void TextSearch::Begin()
{
  m_missing = m_pattern->GetWordCount();
  m_isFound.assign(m_missing, 0);
}

bool TextSearch::Add(std::string_view field)
{
  m_field.Assign(field, m_pattern->GetMatchCase());
  for (std::size_t word = 0; word < m_isFound.size(); ++word) {
    if (m_isFound[word] == 0 && m_pattern->IsWordIn(word, m_field)) {
      m_isFound[word] = 1;
      --m_missing;
    }
  }
  return m_missing == 0;
}

}  // namespace zelremote
