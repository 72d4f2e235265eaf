#include "zelremote/TextPattern.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

namespace {

struct Options {
  bool matchCase = false;
  bool wholeWord = false;
};

bool Finds(std::string_view pattern, std::string_view field, Options options = {})
{
  zelremote::TextSearch search;
  search.SetPattern(std::make_shared<const zelremote::TextPattern>(pattern, options.matchCase, options.wholeWord));
  search.Begin();
  return search.Add(field);
}

bool FindsWhole(std::string_view pattern, std::string_view field)
{
  return Finds(pattern, field, {.wholeWord = true});
}

bool FindsExact(std::string_view pattern, std::string_view field)
{
  return Finds(pattern, field, {.matchCase = true});
}

TEST(TextPattern, TextWithoutAWord_IsEmpty)
{
  for (const char* text : {"", " ", "\t \n", "\"\"", "\"", "\u00a0", "\u3000 \u2003", "\u00ad"}) {
    EXPECT_TRUE(zelremote::TextPattern(text, false, false).IsEmpty()) << text;
  }
  EXPECT_TRUE(zelremote::TextPattern().IsEmpty());
}

TEST(TextPattern, Words_AreSeparatedByBlanks)
{
  EXPECT_EQ(zelremote::TextPattern("a b", false, false).GetWordCount(), 2U);
  EXPECT_EQ(zelremote::TextPattern("  a\t\tb\u3000c\u00a0", false, false).GetWordCount(), 3U);
  EXPECT_EQ(zelremote::TextPattern("\"a b\" c", false, false).GetWordCount(), 2U);
  EXPECT_EQ(zelremote::TextPattern("\"a\" \"\" b", false, false).GetWordCount(), 2U);
}

TEST(TextPattern, AWord_IsFoundAnywhere)
{
  EXPECT_TRUE(Finds("nut", "nut"));
  EXPECT_TRUE(Finds("nut", "Hex nut M8"));
  EXPECT_TRUE(Finds("nut", "Donut"));
  EXPECT_FALSE(Finds("nut", "nu"));
  EXPECT_FALSE(Finds("nut", "n ut"));
  EXPECT_FALSE(Finds("nut", ""));
}

TEST(TextPattern, AllWords_MustBeFoundInAnyOrder)
{
  EXPECT_TRUE(Finds("nut hex", "Hex nut M8"));
  EXPECT_TRUE(Finds("hexnut nut", "hexnut"));
  EXPECT_FALSE(Finds("nut bolt", "Hex nut M8"));
}

TEST(TextPattern, WordsInSeveralFields_AddUp)
{
  zelremote::TextSearch search;
  search.SetPattern(std::make_shared<const zelremote::TextPattern>("hex nut steel", false, false));

  search.Begin();
  EXPECT_FALSE(search.Add("hex"));
  EXPECT_FALSE(search.Add("hex"));
  EXPECT_FALSE(search.Add("steel"));
  EXPECT_TRUE(search.Add("a nut"));

  search.Begin();
  EXPECT_FALSE(search.Add("a nut"));
}

TEST(TextPattern, AStar_StandsForAnyCharactersOfTheWholeField)
{
  EXPECT_TRUE(Finds("hex*", "Hex nut"));
  EXPECT_FALSE(Finds("hex*", "a hex nut"));
  EXPECT_TRUE(Finds("*nut", "Hex nut"));
  EXPECT_FALSE(Finds("*nut", "nuts"));
  EXPECT_TRUE(Finds("h*t", "Hex nut"));
  EXPECT_TRUE(Finds("*nut*m?", "Hex nut M8"));
  EXPECT_FALSE(Finds("*nut*m?", "Hex nut M10"));
  EXPECT_TRUE(Finds("hex*nut", "hexnut"));
  EXPECT_TRUE(Finds("*", ""));
  EXPECT_TRUE(Finds("***", "anything"));
  EXPECT_TRUE(Finds("*a*b*a*b", "abcabab"));
  EXPECT_FALSE(Finds("*a*b*a*b", "abcaba"));
}

TEST(TextPattern, AQuestionMark_StandsForOneCharacter)
{
  EXPECT_TRUE(Finds("m?", "M8"));
  EXPECT_FALSE(Finds("m?", "M"));
  EXPECT_FALSE(Finds("m?", "M10"));
  EXPECT_TRUE(Finds("???", "abc"));
  EXPECT_FALSE(Finds("?", ""));
  EXPECT_TRUE(Finds("b?r", "bär"));
  EXPECT_TRUE(Finds("b?r", "ba\u0308r"));
  EXPECT_TRUE(Finds("b?r", "b\U0001F529r"));
  EXPECT_TRUE(Finds("gro?", "groß"));
  EXPECT_FALSE(Finds("gro??", "groß"));
  EXPECT_TRUE(Finds("b?r", "b\xffr"));
}

TEST(TextPattern, AQuotation_StandsForItself)
{
  EXPECT_TRUE(Finds("\"hex nut\"", "a Hex nut M8"));
  EXPECT_FALSE(Finds("\"hex nut\"", "nut hex"));
  EXPECT_TRUE(Finds("\"*\"", "a * b"));
  EXPECT_FALSE(Finds("\"*\"", "a b"));
  EXPECT_FALSE(Finds("\"?\"", "a"));
  EXPECT_TRUE(Finds("\"hex nut\"*", "Hex nuts"));
  EXPECT_FALSE(Finds("\"hex nut\"*", "a hex nut"));
  EXPECT_TRUE(Finds("\"hex nut\"m8 brass", "brass hex nutM8"));
}

TEST(TextPattern, AQuotationWithoutAnEnd_GoesToTheEnd)
{
  EXPECT_TRUE(Finds("\"hex nu", "a hex nut"));
  EXPECT_FALSE(Finds("\"hex nu", "hex, nu"));
}

TEST(TextPattern, AQuotationMarkInsideAWord_IsOrdinary)
{
  EXPECT_TRUE(Finds("3/4\"", "pipe 3/4\" long"));
  EXPECT_FALSE(Finds("3/4\"", "pipe 3/4 long"));
  EXPECT_TRUE(Finds("\"a\"\"b", "a\"b"));
}

TEST(TextPattern, MatchCase_TellsCasesApart)
{
  EXPECT_TRUE(FindsExact("Nut", "Hex Nut"));
  EXPECT_FALSE(FindsExact("nut", "Hex Nut"));
  EXPECT_FALSE(FindsExact("ärmel", "ÄRMEL"));
  EXPECT_TRUE(FindsExact("ÄRMEL", "A\u0308RMEL"));
  EXPECT_FALSE(FindsExact("STRASSE", "STRAßE"));
  EXPECT_TRUE(FindsExact("N*t", "Nut"));
  EXPECT_FALSE(FindsExact("n*", "Nut"));
}

TEST(TextPattern, AWholeWord_HasNoLetterOrDigitBesideIt)
{
  EXPECT_TRUE(FindsWhole("nut", "Hex nut"));
  EXPECT_TRUE(FindsWhole("nut", "nut_M8"));
  EXPECT_TRUE(FindsWhole("nut", "(nut)"));
  EXPECT_TRUE(FindsWhole("nut", "nut-nuts"));
  EXPECT_FALSE(FindsWhole("nut", "Donut"));
  EXPECT_FALSE(FindsWhole("nut", "nuts"));
  EXPECT_FALSE(FindsWhole("nut", "nut8"));
  EXPECT_TRUE(FindsWhole("nut", "donut nut"));
  EXPECT_TRUE(FindsWhole("hex nut", "nut, hex"));
  EXPECT_TRUE(FindsWhole("\"hex nut\"", "a hex nut."));
  EXPECT_FALSE(FindsWhole("\"hex nut\"", "a hex nuts"));
  EXPECT_TRUE(FindsWhole("a-a", "xa-a-a")) << "which overlaps one that is no whole word";
}

TEST(TextPattern, AWholeWord_HasNoLetterOfAnyScriptBesideIt)
{
  EXPECT_FALSE(FindsWhole("nut", "nutä"));
  EXPECT_FALSE(FindsWhole("nut", "änut"));
  EXPECT_FALSE(FindsWhole("nut", "Жnut"));
  EXPECT_FALSE(FindsWhole("nut", "nut٣"));
  EXPECT_FALSE(FindsWhole("nut", "nut\u0308"));
  EXPECT_FALSE(FindsWhole("nut", "nut\xe4"));
  EXPECT_FALSE(FindsWhole("nut", "nut螺"));
  EXPECT_TRUE(FindsWhole("nut", "nut\u2013ä"));
  EXPECT_TRUE(FindsWhole("nut", "«nut»"));
  EXPECT_TRUE(FindsWhole("nut", "ä\u00a0nut"));
  EXPECT_TRUE(FindsWhole("schraube", "große Schraube"));
  EXPECT_TRUE(FindsWhole("мутер", "мутер-М8"));
  EXPECT_FALSE(FindsWhole("мутер", "мутеры"));
}

TEST(TextPattern, WholeWordsWithWildcards_MatchAStretchOfLettersAndDigits)
{
  EXPECT_TRUE(FindsWhole("nut*", "Hex nuts"));
  EXPECT_FALSE(FindsWhole("nut*", "donuts"));
  EXPECT_TRUE(FindsWhole("*nut", "donut ring"));
  EXPECT_FALSE(FindsWhole("h*t", "hex nut"));
  EXPECT_TRUE(FindsWhole("m??", "nut M10 x"));
  EXPECT_FALSE(FindsWhole("m?", "nut M10 x"));
  EXPECT_FALSE(FindsWhole("m?", "nut M_"));
  EXPECT_TRUE(FindsWhole("gr*e", "das große Rad"));
  EXPECT_TRUE(FindsWhole("r?der", "vier ra\u0308der"));
  EXPECT_TRUE(FindsWhole("\"hex n\"*", "a hex nut b"));
}

TEST(TextPattern, WordsThatAreNoLetters_StandAnywhere)
{
  EXPECT_TRUE(FindsWhole("+", "a+b"));
  EXPECT_TRUE(FindsWhole("+b", "a+b"));
  EXPECT_FALSE(FindsWhole("+b", "a+bc"));
}

TEST(TextPattern, AnAccent_BelongsToItsLetter)
{
  EXPECT_FALSE(Finds("a", "ä"));
  EXPECT_FALSE(Finds("a", "a\u0308"));
  EXPECT_TRUE(Finds("a", "äa"));
  EXPECT_TRUE(Finds("ä", "a\u0308"));
  EXPECT_TRUE(Finds("a\u0308", "Ä"));
  EXPECT_FALSE(Finds("a*", "ä"));
  EXPECT_FALSE(Finds("*a", "a\u0308"));
  EXPECT_FALSE(Finds("a?", "ä"));
  EXPECT_FALSE(Finds("a", "a\u20dd")) << "in a circle";
  EXPECT_FALSE(Finds("क", "का")) << "a vowel sign that takes room";
  EXPECT_TRUE(FindsWhole("?=", "a="));
  EXPECT_FALSE(FindsWhole("?=", "a≠")) << "a stroke through the sign";
  EXPECT_FALSE(Finds("b?", "b\u0308a"));
}

/// No pattern of stars may take more than field times word: each of these would not end within a lifetime if every star
/// were tried again for each place of the one before.
TEST(TextPattern, ManyStars_EndOnALongField)
{
  std::string stars;
  for (int i = 0; i < 40; ++i) {
    stars += "*a";
  }
  const std::string field(20000, 'a');
  const std::string wide = field + "ä";

  EXPECT_TRUE(Finds(stars, field));
  EXPECT_FALSE(Finds(stars + "b", field));
  EXPECT_FALSE(Finds(stars + "*b*", wide));
  EXPECT_FALSE(FindsWhole(stars + "b", field));
  EXPECT_FALSE(FindsWhole(stars + "b", wide));
}

TEST(TextPattern, ALongRunOfAccents_Ends)
{
  std::string field = "a";
  for (int i = 0; i < 100000; ++i) {
    field += "\u0301";
  }
  for (int i = 0; i < 100000; ++i) {
    field += "\u0323";
  }

  EXPECT_FALSE(Finds("b", field));
  EXPECT_TRUE(Finds("?", field));
}

}  // namespace
