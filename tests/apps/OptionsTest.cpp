#include "Options.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace {

ParsedOptions Parse(std::initializer_list<std::string> arguments)
{
  std::vector<std::string> texts{"guitree-show"};
  texts.insert(texts.end(), arguments);
  std::vector<char*> pointers;
  pointers.reserve(texts.size());
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  return ParseOptions(static_cast<int>(pointers.size()), pointers.data());
}

TEST(ParseOptions, FileAlone_ShowsEverythingWithoutExtras)
{
  const ParsedOptions parsed = Parse({"pump.stp"});

  ASSERT_TRUE(parsed.options);
  EXPECT_EQ(parsed.options->files, (std::vector<std::filesystem::path>{"pump.stp"}));
  EXPECT_EQ(parsed.options->style.depth, texthost::PrintStyle::s_allLevels);
  EXPECT_FALSE(parsed.options->trace || parsed.options->check || parsed.options->verbose);
}

TEST(ParseOptions, Options_MayStandBetweenFiles)
{
  const ParsedOptions parsed = Parse({"a.stp", "--depth", "3", "b.stp", "--trace", "--check", "--verbose"});

  ASSERT_TRUE(parsed.options);
  EXPECT_EQ(parsed.options->files, (std::vector<std::filesystem::path>{"a.stp", "b.stp"}));
  EXPECT_EQ(parsed.options->style.depth, 3U);
  EXPECT_TRUE(parsed.options->trace && parsed.options->check && parsed.options->verbose);
}

TEST(ParseOptions, DoubleDash_EndsTheOptions)
{
  const ParsedOptions parsed = Parse({"--", "--depth"});

  ASSERT_TRUE(parsed.options);
  EXPECT_EQ(parsed.options->files, (std::vector<std::filesystem::path>{"--depth"}));
}

TEST(ParseOptions, AsciiAndUnicode_ChooseTheLinesWhereverTheyGo)
{
  EXPECT_TRUE(Parse({"--ascii", "a.stp"}).options->style.ascii);
  EXPECT_FALSE(Parse({"--unicode", "a.stp"}).options->style.ascii);
}

TEST(ParseOptions, Rows_TellTheirStateUnlessTheyAreToBePlain)
{
  EXPECT_TRUE(Parse({"a.stp"}).options->style.states);
  EXPECT_FALSE(Parse({"--plain", "a.stp"}).options->style.states);
}

TEST(ParseOptions, Script_IsAFileOrTheStandardInput)
{
  EXPECT_EQ(Parse({"a.stp"}).options->script, std::nullopt);
  EXPECT_EQ(Parse({"a.stp", "--script", "b.script", "c.stp"}).options->script, "b.script");
  EXPECT_EQ(Parse({"--script", "-", "a.stp"}).options->script, "-");
}

TEST(ParseOptions, WithoutAFilter_NothingIsLeftOut)
{
  EXPECT_EQ(Parse({"a.stp"}).options->filter, FilterSettings{});
}

TEST(ParseOptions, Filter_TakesItsTextAndLeavesFilesAlone)
{
  const ParsedOptions parsed =
      Parse({"--filter", "hex nut", "--column", "Layer", "a.stp", "--column=name", "b.stp", "--sort", "Name", "c.stp"});

  ASSERT_TRUE(parsed.options);
  EXPECT_EQ(parsed.options->files, (std::vector<std::filesystem::path>{"a.stp", "b.stp", "c.stp"}));
  EXPECT_EQ(parsed.options->filter, (FilterSettings{.text = "hex nut", .columns = {"Layer", "name"}, .sort = "Name"}));
}

TEST(ParseOptions, OptionInPlaceOfAFiltersText_IsAFaultUnlessAnEqualsSignSaysWhatItIs)
{
  for (const char* option : {"--parts", "-h", "--depth=3"}) {
    const ParsedOptions parsed = Parse({"a.stp", "--filter", option});
    EXPECT_FALSE(parsed.options) << option;
    EXPECT_EQ(parsed.exitCode, ExitUsage) << option;
  }

  EXPECT_EQ(Parse({"a.stp", "--filter=--parts"}).options->filter, FilterSettings{.text = "--parts"});
  EXPECT_EQ(Parse({"a.stp", "--filter", "--part"}).options->filter, FilterSettings{.text = "--part"});
  EXPECT_EQ(Parse({"a.stp", "--filter", "FILE"}).options->filter, FilterSettings{.text = "FILE"});
  EXPECT_TRUE(Parse({"--", "--filter", "--parts"}).options);
}

TEST(ParseOptions, EachFilterFlag_SetsItsOwn)
{
  for (const FilterFlag& flag : GetFilterFlags()) {
    FilterSettings expected{.text = "nut", .sort = "Name"};
    expected.*(flag.isOn) = true;

    const ParsedOptions parsed = Parse({"--filter", "nut", "--sort", "Name", std::string(flag.name), "a.stp"});

    ASSERT_TRUE(parsed.options) << flag.name;
    EXPECT_EQ(parsed.options->filter, expected) << flag.name;
  }
}

TEST(ParseOptions, Collapsing_IsAFilterForOptionsThatNeedOne)
{
  const ParsedOptions parsed = Parse({"--collapse", "--sort", "Name", "--descending", "--list", "--siblings", "a.stp"});

  ASSERT_TRUE(parsed.options);
  EXPECT_TRUE(parsed.options->collapse);
  EXPECT_EQ(parsed.options->filter,
            (FilterSettings{.siblings = true, .list = true, .sort = "Name", .descending = true}));
}

TEST(ParseOptions, FaultsOfAFilter_AreFaultsOfUsage)
{
  for (const ParsedOptions& parsed :
       {Parse({"--filter", "", "a.stp"}), Parse({"--filter", "a", "--filter", "b", "a.stp"}),
        Parse({"--filter", "a", "--column", "Weight", "a.stp"}), Parse({"--filter", "a", "--sort", "", "a.stp"}),
        Parse({"--whole-word", "a.stp"}), Parse({"--visible", "--hidden", "a.stp"}),
        Parse({"--parts", "--descending", "a.stp"}), Parse({"--siblings", "a.stp"}), Parse({"a.stp", "--sort"})}) {
    EXPECT_FALSE(parsed.options);
    EXPECT_EQ(parsed.exitCode, ExitUsage);
  }
}

TEST(ParseOptions, Faults_GiveNoOptionsAndTheCodeForUsage)
{
  for (const ParsedOptions& parsed :
       {Parse({}), Parse({"--bogus", "a.stp"}), Parse({"--depth", "-1", "a.stp"}), Parse({"--depth", "x", "a.stp"}),
        Parse({"--depth", "99999999999999999999999", "a.stp"}), Parse({"--ascii", "--unicode", "a.stp"}),
        Parse({"a.stp", "--script"}), Parse({"--script", "a", "--script", "b", "a.stp"})}) {
    EXPECT_FALSE(parsed.options);
    EXPECT_EQ(parsed.exitCode, ExitUsage);
  }
}

TEST(ParseOptions, HelpAndVersion_GiveNoOptionsAndNoFailure)
{
  for (const ParsedOptions& parsed : {Parse({"--help"}), Parse({"--version"}), Parse({"-h", "--bogus"})}) {
    EXPECT_FALSE(parsed.options);
    EXPECT_EQ(parsed.exitCode, ExitOk);
  }
}

}  // namespace
