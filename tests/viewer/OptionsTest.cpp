#include "Options.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using viewer::ParsedOptions;

ParsedOptions Parse(std::vector<std::string> arguments)
{
  arguments.insert(arguments.begin(), "guitree-viewer");
  std::vector<char*> argv;
  for (std::string& argument : arguments) {
    argv.push_back(argument.data());
  }
  return viewer::ParseOptions(static_cast<int>(argv.size()), argv.data());
}

TEST(Options, WithoutArguments_NoFileIsOpened)
{
  const ParsedOptions parsed = Parse({});

  ASSERT_TRUE(parsed.options);
  EXPECT_TRUE(parsed.options->files.isEmpty());
}

TEST(Options, Files_AreKeptInTheirOrder)
{
  const ParsedOptions parsed = Parse({"pump.stp", "Gehäuse.stp"});

  ASSERT_TRUE(parsed.options);
  EXPECT_EQ(parsed.options->files, (QStringList{"pump.stp", "Gehäuse.stp"}));
}

TEST(Options, AnUnknownOption_IsNamedAndEndsTheProgram)
{
  testing::internal::CaptureStderr();

  const ParsedOptions parsed = Parse({"--bogus"});

  EXPECT_FALSE(parsed.options);
  EXPECT_EQ(parsed.exitCode, 2);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("--bogus"), std::string::npos);
}

TEST(Options, Version_IsPrintedAndEndsTheProgram)
{
  testing::internal::CaptureStdout();

  const ParsedOptions parsed = Parse({"--version"});

  EXPECT_FALSE(parsed.options);
  EXPECT_EQ(parsed.exitCode, 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout().rfind("guitree-viewer ", 0), 0U);
}

}  // namespace
