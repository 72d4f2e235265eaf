#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "zelremote/TextPattern.h"

namespace {

/// One character as a reader sees it: its spelling, what it folds to, and whether it makes words.
struct Letter {
  std::string spelling;
  std::string folded;
  bool isInWord;
};

/// Letters of one folded value each, so that the model need not know how longer foldings fall apart.
const std::vector<Letter> s_letters{{"a", "a", true},  {"A", "a", true},  {"b", "b", true},      {"-", "-", false},
                                    {" ", " ", false}, {"7", "7", true},  {"ж", "ж", true},      {"Ж", "ж", true},
                                    {"ω", "ω", true},  {"–", "–", false}, {"\xff", "\xff", true}};

constexpr std::size_t s_star = 100;
constexpr std::size_t s_anyOne = 101;

/// Indexes of letters; in a pattern also the two above.
using Letters = std::vector<std::size_t>;

std::string Spell(const Letters& letters)
{
  std::string text;
  for (const std::size_t letter : letters) {
    text += letter == s_star ? "*" : letter == s_anyOne ? "?" : s_letters[letter].spelling;
  }
  return text;
}

class Model {
public:
  Model(const Letters& pattern, const Letters& field, bool matchCase, bool wholeWord)
      : m_pattern(pattern), m_field(field), m_matchCase(matchCase), m_wholeWord(wholeWord)
  {
  }

  [[nodiscard]] bool Finds() const
  {
    bool hasWildcards = false;
    for (const std::size_t value : m_pattern) {
      hasWildcards = hasWildcards || value >= s_star;
    }
    for (std::size_t begin = 0; begin <= m_field.size(); ++begin) {
      for (std::size_t end = begin; end <= m_field.size(); ++end) {
        const bool isWhole = begin == 0 && end == m_field.size();
        const bool isAllowed = m_wholeWord ? IsEdge(begin) && IsEdge(end) : isWhole || !hasWildcards;
        if (isAllowed && Matches(0, begin, end)) {
          return true;
        }
      }
    }
    return false;
  }

private:
  /// Whether the rest of the pattern matches all between the two places of the field.
  [[nodiscard]] bool Matches(std::size_t next, std::size_t begin, std::size_t end) const
  {
    if (next == m_pattern.size()) {
      return begin == end;
    }
    if (m_pattern[next] == s_star && Matches(next + 1, begin, end)) {
      return true;
    }
    const bool isAfter = begin < end && Fits(m_pattern[next], m_field[begin]);
    return isAfter && Matches(m_pattern[next] == s_star ? next : next + 1, begin + 1, end);
  }
  [[nodiscard]] bool Fits(std::size_t value, std::size_t letter) const
  {
    if (value >= s_star) {
      return !m_wholeWord || s_letters[letter].isInWord;
    }
    return m_matchCase ? s_letters[value].spelling == s_letters[letter].spelling
                       : s_letters[value].folded == s_letters[letter].folded;
  }
  [[nodiscard]] bool IsEdge(std::size_t at) const
  {
    return at == 0 || at == m_field.size() || !s_letters[m_field[at - 1]].isInWord || !s_letters[m_field[at]].isInWord;
  }

  const Letters& m_pattern;
  const Letters& m_field;
  const bool m_matchCase;
  const bool m_wholeWord;
};

bool Finds(const std::string& pattern, const std::string& field, bool matchCase, bool wholeWord)
{
  zelremote::TextSearch search;
  search.SetPattern(std::make_shared<const zelremote::TextPattern>(pattern, matchCase, wholeWord));
  search.Begin();
  return search.Add(field);
}

/// The blank separates words, so it is in fields alone.
constexpr std::size_t s_blank = 4;

rc::Gen<Letters> MakeField(std::size_t letterCount)
{
  return rc::gen::container<Letters>(rc::gen::inRange<std::size_t>(0, letterCount));
}

rc::Gen<Letters> MakePattern(std::size_t letterCount)
{
  const auto letter = rc::gen::suchThat(rc::gen::inRange<std::size_t>(0, letterCount),
                                        [](std::size_t value) { return value != s_blank; });
  const auto value =
      rc::gen::weightedOneOf<std::size_t>({{4, letter}, {2, rc::gen::just(s_star)}, {1, rc::gen::just(s_anyOne)}});
  return rc::gen::resize(8, rc::gen::nonEmpty(rc::gen::container<Letters>(value)));
}

void CheckAgainstModel(std::size_t letterCount)
{
  const Letters pattern = *MakePattern(letterCount);
  const Letters field = *rc::gen::resize(14, MakeField(letterCount));
  const bool matchCase = *rc::gen::arbitrary<bool>();
  const bool wholeWord = *rc::gen::arbitrary<bool>();

  const bool isFound = Finds(Spell(pattern), Spell(field), matchCase, wholeWord);

  RC_TAG(isFound);
  RC_LOG() << "pattern '" << Spell(pattern) << "', field '" << Spell(field) << "'";
  RC_ASSERT(isFound == Model(pattern, field, matchCase, wholeWord).Finds());
}

/// Three letters alone, so that many of the patterns match.
RC_GTEST_PROP(TextPatternModel, OnAFewLetters_ThePatternFindsWhatTheModelFinds, ())
{
  CheckAgainstModel(3);
}

RC_GTEST_PROP(TextPatternModel, OnAscii_ThePatternFindsWhatTheModelFinds, ())
{
  CheckAgainstModel(6);
}

RC_GTEST_PROP(TextPatternModel, OnAllLetters_ThePatternFindsWhatTheModelFinds, ())
{
  CheckAgainstModel(s_letters.size());
}

/// Quotations and blanks: each word by itself is what the model says, all of them together what all of them say.
RC_GTEST_PROP(TextPatternModel, SeveralWords_AreFoundIfEachIs, ())
{
  const auto words = *rc::gen::resize(4, rc::gen::container<std::vector<Letters>>(MakePattern(s_letters.size())));
  const Letters field = *rc::gen::resize(14, MakeField(s_letters.size()));
  std::string text;
  bool isExpected = true;
  for (const Letters& word : words) {
    text += Spell(word) + "  ";
    isExpected = isExpected && Model(word, field, false, false).Finds();
  }

  RC_LOG() << "pattern '" << text << "', field '" << Spell(field) << "'";
  RC_ASSERT(Finds(text, Spell(field), false, false) == isExpected);
}

RC_GTEST_PROP(TextPatternModel, AQuotation_IsFoundWhereTheFieldHoldsIt, ())
{
  Letters quoted = *rc::gen::resize(5, rc::gen::nonEmpty(MakeField(s_letters.size())));
  const Letters field = *rc::gen::resize(20, MakeField(s_letters.size()));
  const bool wholeWord = *rc::gen::arbitrary<bool>();

  RC_LOG() << "quotation '" << Spell(quoted) << "', field '" << Spell(field) << "'";
  RC_ASSERT(Finds('"' + Spell(quoted) + '"', Spell(field), false, wholeWord)
            == Model(quoted, field, false, wholeWord).Finds());
}

}  // namespace
