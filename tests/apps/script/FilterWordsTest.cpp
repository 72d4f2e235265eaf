#include "script/FilterWords.h"

#include <gtest/gtest.h>

#include <string>

#include "FaultOf.h"
#include "script/ScriptParser.h"

namespace {

using script::ParseLine;
using script::Verb;
using scripttest::FaultOf;

FilterSettings FilterOf(const std::string& line)
{
  return ParseLine(line)->filter;
}

TEST(ParseFilter, Text_IsOneWordOrInQuotes)
{
  EXPECT_EQ(FilterOf("filter nut"), FilterSettings{.text = "nut"});
  EXPECT_EQ(FilterOf("filter \"hex nut\""), FilterSettings{.text = "hex nut"});
  EXPECT_EQ(FilterOf(R"(filter "\"hex nut\"*")"), FilterSettings{.text = "\"hex nut\"*"});
  EXPECT_EQ(FaultOf("filter hex nut"), "several words to look for must be in quotes, as one text");
  EXPECT_EQ(FaultOf("filter a/b"), "a text to look for with '/' or '#' must be in quotes");
}

TEST(ParseFilter, Options_MayStandAnywhere)
{
  const FilterSettings expected{
      .text = "nut", .columns = {"Layer", "source file"}, .matchCase = true, .sort = "Name", .descending = true};

  EXPECT_EQ(FilterOf("filter nut --match-case --column Layer --column \"source file\" --sort Name --descending"),
            expected);
  EXPECT_EQ(FilterOf("filter --sort Name --descending --column Layer nut --column \"source file\" --match-case"),
            expected);
}

TEST(ParseFilter, EachFlag_SetsItsOwn)
{
  for (const FilterFlag& flag : GetFilterFlags()) {
    FilterSettings expected{.text = "nut", .sort = "Name"};
    expected.*(flag.isOn) = true;

    EXPECT_EQ(FilterOf("filter nut --sort Name " + std::string(flag.name)), expected) << flag.name;
  }
}

TEST(ParseFilter, WordsOfOtherCommands_AreTextsInQuotes)
{
  EXPECT_EQ(ParseLine("filter off")->verb, Verb::FilterOff);
  EXPECT_EQ(ParseLine("filter hold")->verb, Verb::HoldFilter);
  EXPECT_EQ(FilterOf("filter \"off\""), FilterSettings{.text = "off"});
  EXPECT_EQ(FilterOf("filter \"--parts\""), FilterSettings{.text = "--parts"});
}

TEST(ParseFilter, Faults_AreNamed)
{
  EXPECT_EQ(FaultOf("filter"), "write: filter [TEXT] [OPTIONS]");
  EXPECT_EQ(FaultOf("filter nut --bogus"), "unknown option '--bogus': a text that begins so must be in quotes");
  EXPECT_EQ(FaultOf("filter nut --column"), "write: --column COLUMN");
  EXPECT_EQ(FaultOf("filter nut --column Colour"), FindFaultInColumn("Colour"));
  EXPECT_EQ(FaultOf("filter nut --sort \"\""), FindFaultInColumn(""));
  EXPECT_EQ(FaultOf("filter nut --sort Name --sort Layer"), "--sort may stand here only once");
  EXPECT_EQ(FaultOf("filter nut --sort Name --parts --sort Name"), "--sort may stand here only once");
  EXPECT_EQ(FaultOf("filter --match-case"), "--match-case needs a text to look for");
  EXPECT_EQ(FaultOf("filter --visible --hidden"), "--visible and --hidden contradict each other");
}

TEST(ParseSorting, Column_MayHaveADirection)
{
  EXPECT_EQ(FilterOf("sort Name"), FilterSettings{.sort = "Name"});
  EXPECT_EQ(FilterOf("sort \"product name\" descending"), (FilterSettings{.sort = "product name", .descending = true}));
  EXPECT_EQ(ParseLine("sort off")->verb, Verb::SortOff);
}

TEST(ParseSorting, Faults_AreNamed)
{
  EXPECT_EQ(FaultOf("sort"), "write: sort COLUMN [descending]");
  EXPECT_EQ(FaultOf("sort Name descending twice"), "write: sort COLUMN [descending]");
  EXPECT_EQ(FaultOf("sort Name down"), "'down' is no direction: write descending, or nothing");
  EXPECT_EQ(FaultOf("sort Weight"), FindFaultInColumn("Weight"));
  EXPECT_EQ(FaultOf("sort \"\""), FindFaultInColumn(""));
}

}  // namespace
