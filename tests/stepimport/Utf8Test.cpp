#include "Utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using stepimport::IsBlank;
using stepimport::IsUtf8;
using stepimport::MakeName;

TEST(Utf8, IsUtf8_OfWellFormedText_IsTrue)
{
  EXPECT_TRUE(IsUtf8(""));
  EXPECT_TRUE(IsUtf8("plain"));
  EXPECT_TRUE(IsUtf8("\xC2\x80 \xDF\xBF \xE0\xA0\x80 \xEF\xBF\xBF \xF0\x90\x80\x80 \xF4\x8F\xBF\xBF"));
}

TEST(Utf8, IsUtf8_OfBytesOutsideTheRules_IsFalse)
{
  const std::vector<std::string> bads = {"\x80",
                                         "\xC0\x80",
                                         "\xC1\xBF",
                                         "\xC2",
                                         "\xC2 ",
                                         "\xE0\x9F\xBF",
                                         "\xED\xA0\x80",
                                         "\xE2\x82",
                                         "\xE2\x82 ",
                                         "\xF0\x8F\xBF\xBF",
                                         "\xF4\x90\x80\x80",
                                         "\xF5\x80\x80\x80",
                                         "\xF0\x9F\x98",
                                         "\xFF",
                                         "Gr\xF6\xDF."};
  for (const std::string& bad : bads) {
    EXPECT_FALSE(IsUtf8(bad)) << bad;
  }
}

TEST(Utf8, MakeName_ReplacesWhatIsNoUtf8)
{
  EXPECT_EQ(MakeName("a\xFF"
                     "b"),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(MakeName("\xE2\x82"), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_TRUE(IsUtf8(MakeName("\xF0\x9F\x98 \xED\xA0\x80 \xC0\x80")));
}

TEST(Utf8, MakeName_KeepsOneLine)
{
  EXPECT_EQ(MakeName("a\nb\tc\r\x7F"), "a b c  ");
  EXPECT_EQ(MakeName(std::string("a\0b", 3)), "a b");
  EXPECT_EQ(MakeName("  kept  "), "  kept  ");
}

TEST(Utf8, IsBlank_OfSpacesAndControls_IsTrue)
{
  EXPECT_TRUE(IsBlank(""));
  EXPECT_TRUE(IsBlank(" \t\r\n"));
  EXPECT_FALSE(IsBlank(" . "));
  EXPECT_FALSE(IsBlank("\xD0\xBA"));
}

}  // namespace
