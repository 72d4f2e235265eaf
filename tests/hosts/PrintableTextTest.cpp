#include "texthost/PrintableText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using texthost::MakePrintable;

TEST(MakePrintable, OrdinaryText_StaysAsItIs)
{
  EXPECT_EQ(MakePrintable(""), "");
  EXPECT_EQ(MakePrintable("M8 bolt\\left"), "M8 bolt\\left");
  EXPECT_EQ(MakePrintable("Größe 軸受 🔩 e\u0301"), "Größe 軸受 🔩 e\u0301");
}

TEST(MakePrintable, ControlCharacters_BecomeVisible)
{
  EXPECT_EQ(MakePrintable("a\nb\rc\td"), "a\\nb\\rc\\td");
  EXPECT_EQ(MakePrintable("\x1B[31mred\x7F"), "\\x1B[31mred\\x7F");
  EXPECT_EQ(MakePrintable(std::string_view("a\0b", 3)), "a\\x00b");
  EXPECT_EQ(MakePrintable("\u0085"), "\\u0085");
}

TEST(MakePrintable, LineSeparatorsAndMarksThatTurnTheLine_BecomeVisible)
{
  EXPECT_EQ(MakePrintable("a\u2028b\u2029c"), "a\\u2028b\\u2029c");
  // NOLINTNEXTLINE(misc-misleading-bidirectional): that is what it is about
  EXPECT_EQ(MakePrintable("a\u202Eb\u2066c\u200Fd"), "a\\u202Eb\\u2066c\\u200Fd");
}

TEST(MakePrintable, LettersWrittenFromRightToLeft_StayAsTheyAre)
{
  const std::string text = "\u0645\u0633\u0645\u0627\u0631 \u05D1\u05D5\u05E8\u05D2";

  EXPECT_EQ(MakePrintable(text), text);
}

TEST(MakePrintable, BytesThatAreNoUtf8_AreReplacedOneByOne)
{
  EXPECT_EQ(MakePrintable("a\xFF"
                          "b"),
            "a\uFFFDb");
  EXPECT_EQ(MakePrintable("\x80"), "\uFFFD");
  EXPECT_EQ(MakePrintable("\xC3"), "\uFFFD") << "cut off after the first byte";
  EXPECT_EQ(MakePrintable("\xC3("), "\uFFFD(") << "the second byte is another character";
  EXPECT_EQ(MakePrintable("\xC0\xAF"), "\uFFFD\uFFFD") << "a longer form of a smaller code";
  EXPECT_EQ(MakePrintable("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD") << "half of a surrogate pair";
  EXPECT_EQ(MakePrintable("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD") << "above the last code";
  EXPECT_EQ(MakePrintable("\xF8\x88\x80\x80\x80").size(), 15U) << "five bytes are none";
}

TEST(MakePrintable, Replacement_IsTheCallersChoice)
{
  EXPECT_EQ(MakePrintable("Gr\xF6\xDF"
                          "e",
                          "?"),
            "Gr??e");
}

TEST(MakePrintable, FirstAndLastCodeOfEachLength_StayAsTheyAre)
{
  const std::string text = "\u00A0\u07FF\u0800\uFFFF\U00010000\U0010FFFF";

  EXPECT_EQ(MakePrintable(text), text);
}

}  // namespace
