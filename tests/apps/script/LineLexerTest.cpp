#include "script/LineLexer.h"

#include <gtest/gtest.h>

#include <string>

#include "script/ScriptError.h"

namespace {

using script::Path;
using script::ScriptError;
using script::SplitLine;

Path PathOf(const std::string& line)
{
  const auto words = SplitLine(line);
  EXPECT_EQ(words.size(), 1U) << line;
  return words.at(0).path;
}

std::string NameOf(const std::string& line)
{
  const Path path = PathOf(line);
  EXPECT_EQ(path.steps.size(), 1U) << line;
  return path.steps.at(0).name;
}

TEST(SplitLine, LinesWithoutWords_GiveNone)
{
  EXPECT_TRUE(SplitLine("").empty());
  EXPECT_TRUE(SplitLine(" \t ").empty());
  EXPECT_TRUE(SplitLine("# a comment").empty());
  EXPECT_TRUE(SplitLine("  #").empty());
}

TEST(SplitLine, Words_StandBetweenBlanksAndTabs)
{
  const auto words = SplitLine("  add part\tbolt:1  # and a comment");

  ASSERT_EQ(words.size(), 3U);
  EXPECT_EQ(words[0].text, "add");
  EXPECT_EQ(words[1].text, "part");
  EXPECT_EQ(words[2].text, "bolt:1");
}

TEST(SplitLine, Path_HasAStepForEachName)
{
  EXPECT_EQ(PathOf("pump/frame:1"), (Path{.steps = {{"pump"}, {"frame:1"}}}));
  EXPECT_EQ(PathOf("/pump"), (Path{.isFromRoot = true, .steps = {{"pump"}}}));
  EXPECT_EQ(PathOf("pump/bolt#2/nut#13"), (Path{.steps = {{"pump"}, {"bolt", 2}, {"nut", 13}}}));
}

TEST(SplitLine, Quotes_MakeAnyCharacterAPartOfTheName)
{
  EXPECT_EQ(NameOf("\"bolt set:1\""), "bolt set:1");
  EXPECT_EQ(NameOf("\"a/b #1\""), "a/b #1");
  EXPECT_EQ(NameOf("bolt\" set\":1"), "bolt set:1");
  EXPECT_EQ(NameOf("\"\""), "");
  EXPECT_EQ(PathOf("\"a b\"#2/\"c d\""), (Path{.steps = {{"a b", 2}, {"c d"}}}));
}

TEST(SplitLine, Escapes_AreReadInQuotesAlone)
{
  EXPECT_EQ(NameOf(R"("say \"x\" \\ \n\r\t\x1B\u2028\u00E9\u0041")"), "say \"x\" \\ \n\r\t\x1B\u2028\u00E9\u0041");
  EXPECT_EQ(NameOf(R"(back\slash\n)"), R"(back\slash\n)");
}

TEST(SplitLine, WordWithQuotes_IsNotPlain)
{
  const auto words = SplitLine("hide \"hide\" a/\"b\"");

  EXPECT_TRUE(words.at(0).isPlain);
  EXPECT_FALSE(words.at(1).isPlain);
  EXPECT_FALSE(words.at(2).isPlain);
}

TEST(SplitLine, Faults_AreNamed)
{
  const auto faultOf = [](const std::string& line) {
    try {
      static_cast<void>(SplitLine(line));
    } catch (const ScriptError& error) {
      return std::string(error.what());
    }
    return std::string("none");
  };

  EXPECT_EQ(faultOf("hide \"bolt"), "a quote is not closed");
  EXPECT_EQ(faultOf("hide \"bolt\\"), "'\\' in quotes must be written '\\\\'");
  EXPECT_EQ(faultOf("hide \"a\\b\""), "'\\' in quotes must be written '\\\\'");
  EXPECT_EQ(faultOf("hide \"\\x1\""), "two hexadecimal digits must follow '\\x', and four '\\u'");
  EXPECT_EQ(faultOf("hide \"\\u12"), "two hexadecimal digits must follow '\\x', and four '\\u'");
  EXPECT_EQ(faultOf("hide a//b"), "a name is missing beside '/' or '#'; an empty one is \"\"");
  EXPECT_EQ(faultOf("hide /"), "a name is missing beside '/' or '#'; an empty one is \"\"");
  EXPECT_EQ(faultOf("hide a/"), "a name is missing beside '/' or '#'; an empty one is \"\"");
  EXPECT_EQ(faultOf("hide a#b"), "a number from 1 on must follow '#'; a name with '#' must be in quotes");
  EXPECT_EQ(faultOf("hide a#0"), "a number from 1 on must follow '#'; a name with '#' must be in quotes");
  EXPECT_EQ(faultOf("hide a#99999999999999999999"),
            "a number from 1 on must follow '#'; a name with '#' must be in quotes");
  EXPECT_EQ(faultOf("hide a#1b"), "a name with '#' must be in quotes");
}

}  // namespace
