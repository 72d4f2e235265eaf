#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "zelremote/FoldedText.h"
#include "zelremote/TextPattern.h"

namespace {

bool Finds(std::string_view pattern, std::string_view field, bool matchCase = false)
{
  zelremote::TextSearch search;
  search.SetPattern(std::make_shared<const zelremote::TextPattern>(pattern, matchCase, false));
  search.Begin();
  return search.Add(field);
}

/// Whether each is found in the other.
bool AreOne(std::string_view a, std::string_view b)
{
  return Finds(a, b) && Finds(b, a);
}

TEST(TextFolding, Case_IsIgnoredInEveryScript)
{
  EXPECT_TRUE(AreOne("ÄRMEL", "ärmel"));
  EXPECT_TRUE(AreOne("STRASSE", "straße"));
  EXPECT_TRUE(AreOne("STRAẞE", "straße"));
  EXPECT_TRUE(AreOne("ΣΟΦΟΣ", "σοφος"));
  EXPECT_TRUE(AreOne("σοφοσ", "σοφος"));
  EXPECT_TRUE(AreOne("ГАЙКА", "гайка"));
  EXPECT_TRUE(AreOne("ՊՏՈՒՏԱԿ", "պտուտակ"));
  EXPECT_TRUE(AreOne("\U00010400", "\U00010428"));
  EXPECT_TRUE(AreOne("ŉ", "ʼn"));
  EXPECT_TRUE(AreOne("ﬁn", "FIN"));
}

TEST(TextFolding, LettersThatFoldIntoAscii_AreFoundInAscii)
{
  EXPECT_TRUE(AreOne("\u212a", "k"));
  EXPECT_TRUE(AreOne("\u017f", "S"));
  EXPECT_TRUE(Finds("ß", "CROSS"));
}

TEST(TextFolding, DottedAndDotlessI_AreLettersApart)
{
  EXPECT_FALSE(Finds("i", "İ"));
  EXPECT_FALSE(Finds("İ", "i"));
  EXPECT_FALSE(Finds("ı", "I"));
  EXPECT_TRUE(AreOne("İ", "i\u0307"));
  EXPECT_TRUE(AreOne("İZMİR", "i\u0307zmi\u0307r"));
}

TEST(TextFolding, ComposedAndDecomposedSpellings_AreOne)
{
  EXPECT_TRUE(AreOne("Å", "A\u030a"));
  EXPECT_TRUE(AreOne("\u212b", "å"));
  EXPECT_TRUE(AreOne("각", "\u1100\u1161\u11a8"));
  EXPECT_TRUE(AreOne("ệ", "e\u0302\u0323"));
  EXPECT_TRUE(AreOne("e\u0323\u0302", "e\u0302\u0323"));
  EXPECT_TRUE(AreOne("e\u0301\u0302\u0323", "e\u0323\u0301\u0302"));
  EXPECT_FALSE(AreOne("e\u0301\u0302", "e\u0302\u0301"));
}

TEST(TextFolding, WhatShowsNothing_DoesNotCount)
{
  EXPECT_TRUE(AreOne("Schrauben\u00adzieher", "schraubenzieher"));
  EXPECT_TRUE(AreOne("a\u200db", "ab"));
}

TEST(TextFolding, BytesThatAreNoUtf8_AreFoundByTheSameBytes)
{
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const std::string alone(1, static_cast<char>(byte));
    EXPECT_TRUE(Finds(alone, "nut " + alone + " m8")) << byte;
    EXPECT_FALSE(Finds(alone, "nut \u00e4 m8")) << byte;
    EXPECT_FALSE(Finds(alone, "nut")) << byte;
    EXPECT_FALSE(Finds(alone, byte == 0x80 ? "\x81" : "\x80")) << byte;
  }
}

TEST(TextFolding, BrokenSequences_AreReadByteByByte)
{
  for (const char* broken : {"\xc3", "\xe2\x82", "\xf0\x9f\x94", "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80",
                             "\xf8\x88\x80\x80\x80", "\xe4rmel", "\xc3\x28"}) {
    const std::string text(broken);
    EXPECT_TRUE(Finds(text, text));
    EXPECT_TRUE(Finds(text, "x" + text + "y"));
    EXPECT_TRUE(Finds("?*", text));
    EXPECT_TRUE(Finds("NUT", text + "nut")) << "what follows is read";
  }
}

TEST(TextFolding, TakeCharacter_CutsOffOneCodePointOrOneByte)
{
  std::string_view rest = "aä€\U0001F529\xff\xc3";

  EXPECT_EQ(zelremote::TakeCharacter(rest), U'a');
  EXPECT_EQ(zelremote::TakeCharacter(rest), U'ä');
  EXPECT_EQ(zelremote::TakeCharacter(rest), U'€');
  EXPECT_EQ(zelremote::TakeCharacter(rest), U'\U0001F529');
  EXPECT_EQ(zelremote::TakeCharacter(rest), zelremote::FoldedText::s_firstInvalidByte + 0x7f);
  EXPECT_EQ(zelremote::TakeCharacter(rest), zelremote::FoldedText::s_firstInvalidByte + 0x43);
  EXPECT_TRUE(rest.empty());
}

TEST(TextFolding, RandomBytes_NeitherCrashNorMissThemselves)
{
  std::mt19937 random(20240607);
  for (int round = 0; round < 3000; ++round) {
    std::string text(random() % 40, '\0');
    for (char& c : text) {
      c = static_cast<char>(random() % 256);
    }
    SCOPED_TRACE(testing::PrintToString(text));
    const zelremote::TextPattern any(text, (round & 1) != 0, (round & 2) != 0);
    zelremote::TextSearch search;
    search.SetPattern(std::make_shared<const zelremote::TextPattern>(any));
    search.Begin();
    static_cast<void>(search.Add(text));

    EXPECT_TRUE(Finds("*", text, (round & 1) != 0));
  }
}

TEST(TextFolding, Ascii_GoesTheNarrowWay)
{
  zelremote::FoldedText folded;

  folded.Assign("Hex NUT [8] ~@", false);
  EXPECT_TRUE(folded.IsAscii());
  EXPECT_EQ(folded.GetAscii(), "hex nut [8] ~@");

  folded.Assign("Hex NUT", true);
  EXPECT_TRUE(folded.IsAscii());
  EXPECT_EQ(folded.GetAscii(), "Hex NUT");

  folded.Assign("Ä", true);
  EXPECT_FALSE(folded.IsAscii());
  EXPECT_EQ(folded.GetWide(), U"A\u0308");

  folded.Assign("Ä", false);
  EXPECT_EQ(folded.GetWide(), U"a\u0308");
}

TEST(TextFolding, TheNarrowAndTheWideWay_FoldAsciiAlike)
{
  for (char c = 1; c > 0 && c < 127; ++c) {
    for (const bool matchCase : {false, true}) {
      const std::string alone(1, c);
      const std::string beside = alone + "€";
      zelremote::FoldedText narrow;
      zelremote::FoldedText wide;

      narrow.Assign(alone, matchCase);
      wide.Assign(beside, matchCase);

      ASSERT_EQ(static_cast<char32_t>(narrow.GetAscii().front()), wide.GetWide().front()) << static_cast<int>(c);
      ASSERT_EQ(zelremote::IsAsciiInWord(narrow.GetAscii().front()), wide.IsInWord(0)) << static_cast<int>(c);
    }
  }
}

TEST(TextFolding, ACopy_KeepsItsTextWhenTheOriginalGetsAnother)
{
  zelremote::FoldedText original;
  original.Assign("HEX", false);

  const zelremote::FoldedText copy = original;
  original.Assign("nut", false);

  EXPECT_EQ(copy.GetAscii(), "hex");
}

}  // namespace
