#include "ScriptSource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

class ScriptSourceTest : public testing::Test {
protected:
  void SetUp() override { std::filesystem::create_directory(folder); }
  void TearDown() override { std::filesystem::remove_all(folder); }

  [[nodiscard]] std::filesystem::path Write(const std::string& text) const
  {
    std::ofstream(folder / "test.script") << text;
    return folder / "test.script";
  }

  static std::vector<std::string> ReadAll(ScriptSource& source)
  {
    std::vector<std::string> lines;
    while (const auto line = source.ReadLine()) {
      lines.push_back(*line);
    }
    return lines;
  }

  const std::filesystem::path folder =
      std::filesystem::temp_directory_path()
      / ("ScriptSourceTest-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
};

TEST_F(ScriptSourceTest, Lines_AreCountedAndLoseTheirEnds)
{
  ScriptSource source(Write("\xEF\xBB\xBFhide a\r\n\nshow a"));

  EXPECT_EQ(ReadAll(source), (std::vector<std::string>{"hide a", "", "show a"}));
  EXPECT_EQ(source.GetLineNumber(), 3U);
  EXPECT_EQ(source.GetError(), "");
  EXPECT_EQ(source.GetName(), (folder / "test.script").string());
}

TEST_F(ScriptSourceTest, EmptyFile_HasNoLines)
{
  ScriptSource source(Write(""));

  EXPECT_EQ(ReadAll(source), std::vector<std::string>{});
  EXPECT_EQ(source.GetError(), "");
}

TEST_F(ScriptSourceTest, FilesThatCannotBeRead_TellWhy)
{
  EXPECT_EQ(ScriptSource(folder).GetError(), "is a folder");

  ScriptSource missing(folder / "missing.script");
  EXPECT_EQ(missing.GetError(), "cannot be read: No such file or directory");
  EXPECT_EQ(missing.ReadLine(), std::nullopt);
}

TEST_F(ScriptSourceTest, Dash_IsTheStandardInput)
{
  std::istringstream input("hide a\n");
  std::streambuf* const former = std::cin.rdbuf(input.rdbuf());
  ScriptSource source("-");
  const auto lines = ReadAll(source);
  std::cin.rdbuf(former);
  std::cin.clear();

  EXPECT_EQ(lines, (std::vector<std::string>{"hide a"}));
  EXPECT_EQ(source.GetName(), "<stdin>");
}

}  // namespace
