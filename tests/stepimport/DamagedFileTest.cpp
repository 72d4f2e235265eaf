#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "stepimport/ReadAssembly.h"
#include "support/StepWriter.h"
#include "support/TempFolder.h"

namespace {

using stepimport::ReadAssembly;
using stepimport::ReadResult;
using stepimporttest::LoadBytes;
using stepimporttest::StepWriter;
using stepimporttest::TempFolder;

const std::filesystem::path Sample = std::filesystem::path(SAMPLES_DIR) / "nested-assembly.stp";

void ExpectFailure(const std::filesystem::path& file, const std::string& cause)
{
  const ReadResult result = ReadAssembly(file, nullptr);

  EXPECT_FALSE(result.ok);
  EXPECT_FALSE(result.cancelled);
  EXPECT_EQ(result.error, file.string() + ": " + cause);
  EXPECT_TRUE(result.assembly.products.empty());
  EXPECT_EQ(result.shapes, nullptr);
}

/// Gives up what root may do for its lifetime: root may read everything.
class OrdinaryUser {
public:
  OrdinaryUser()
  {
    if (m_user == 0) {
      EXPECT_EQ(seteuid(s_nobody), 0);
    }
  }
  ~OrdinaryUser() { EXPECT_EQ(seteuid(m_user), 0); }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
  static constexpr uid_t s_nobody = 65534;

  const uid_t m_user = geteuid();
};

class DamagedFile : public testing::Test {
protected:
  void ExpectFailureOfBytes(std::string_view bytes, const std::string& cause) const
  {
    ExpectFailure(m_folder.Write("bad.stp", bytes), cause);
  }

  TempFolder m_folder;
};

TEST_F(DamagedFile, ReadAssembly_OfAMissingFile_SaysSo)
{
  ExpectFailure(m_folder.GetPath() / "missing.stp", "does not exist");
}

TEST_F(DamagedFile, ReadAssembly_BelowAFile_SaysSo)
{
  const std::filesystem::path file = m_folder.Write("file", "x");

  ExpectFailure(file / "below.stp", "does not exist");
}

TEST_F(DamagedFile, ReadAssembly_OfAFolder_SaysSo)
{
  ExpectFailure(m_folder.GetPath(), "is a folder");
}

TEST_F(DamagedFile, ReadAssembly_OfAPipe_DoesNotWaitForIt)
{
  const std::filesystem::path pipe = m_folder.GetPath() / "pipe.stp";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);

  ExpectFailure(pipe, "is not a regular file");
}

TEST_F(DamagedFile, ReadAssembly_OfAFileThatMustNotBeRead_SaysWhy)
{
  const std::filesystem::path file = m_folder.Write("locked.stp", LoadBytes(Sample));
  std::filesystem::permissions(file, std::filesystem::perms::none);
  std::filesystem::permissions(m_folder.GetPath(), std::filesystem::perms::all);

  const OrdinaryUser user;
  ExpectFailure(file, "cannot be read: Permission denied");
}

TEST_F(DamagedFile, ReadAssembly_OfAnEmptyFile_SaysSo)
{
  ExpectFailureOfBytes("", "is empty");
}

TEST_F(DamagedFile, ReadAssembly_OfOtherContent_SaysThatItIsNoStepFile)
{
  const std::string cause = "is not a STEP file: it does not begin with ISO-10303-21";
  using namespace std::string_view_literals;
  ExpectFailureOfBytes("solid cube\nfacet normal 0 0 1\n", cause);
  ExpectFailureOfBytes("\0\0\0\0\x7f"sv, cause);
  ExpectFailureOfBytes("/* a comment without an end", cause);
  ExpectFailureOfBytes(" \r\n ", cause);
  ExpectFailureOfBytes("END-ISO-10303-21;", cause);
}

TEST_F(DamagedFile, ReadAssembly_OfAFileCutAnywhere_SaysThatItIsTruncated)
{
  const std::string whole = LoadBytes(Sample);
  ASSERT_GT(whole.size(), 1000U);
  const std::string cause = "is truncated: its end mark END-ISO-10303-21 is missing";

  for (const std::size_t size : {std::size_t{13}, whole.size() / 4, whole.size() / 2, whole.size() - 20}) {
    ExpectFailureOfBytes(std::string_view(whole).substr(0, size), cause);
  }
}

TEST_F(DamagedFile, ReadAssembly_OfOneEntityThatBreaksTheRules_ReadsTheRestAndWarns)
{
  std::string text = LoadBytes(Sample);
  const std::size_t middle = text.find(" = ADVANCED_FACE", text.size() / 2);
  ASSERT_NE(middle, std::string::npos);
  text.replace(middle, 20, "((((,;'=$");
  const std::filesystem::path file = m_folder.Write("bad.stp", text);

  const ReadResult result = ReadAssembly(file, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(result.assembly.products[result.assembly.root].occurrences.size(), 5U);
  ASSERT_EQ(result.warnings.size(), 1U);
  EXPECT_EQ(result.warnings.front(),
            file.string() + ": is damaged: some of it breaks the rules of a STEP file and is left out");
}

TEST_F(DamagedFile, ReadAssembly_OfTextWithoutAnyOrder_SaysThatItIsDamaged)
{
  ExpectFailureOfBytes("ISO-10303-21;\nDATA;\nHEADER;\n((('\nEND-ISO-10303-21;\n",
                       "is damaged: its text breaks the rules of a STEP file");
}

TEST_F(DamagedFile, ReadAssembly_WithoutADataSection_GivesAnError)
{
  const ReadResult result =
      ReadAssembly(m_folder.Write("bad.stp", "ISO-10303-21;\nHEADER;\nENDSEC;\nEND-ISO-10303-21;\n"), nullptr);

  EXPECT_FALSE(result.ok);
  EXPECT_NE(result.error.find("bad.stp: "), std::string::npos) << result.error;
}

TEST_F(DamagedFile, ReadAssembly_WithoutAnyProduct_SaysSo)
{
  ExpectFailureOfBytes(StepWriter().GetText(), "holds no assembly and no part");
}

TEST_F(DamagedFile, ReadAssembly_OfAProductThatHoldsNothing_SaysThatThereIsNone)
{
  StepWriter writer;
  writer.AddProduct("nothing");

  ExpectFailureOfBytes(writer.GetText(), "holds no assembly and no part");
}

TEST_F(DamagedFile, ReadAssembly_OfAProductInItself_NamesTheProduct)
{
  StepWriter writer;
  const int top = writer.AddProduct("top");
  const int snake = writer.AddProduct("snake");
  const int tail = writer.AddProduct("tail");
  writer.AddOccurrence(top, snake, "a");
  writer.AddOccurrence(snake, tail, "b");
  writer.AddOccurrence(tail, snake, "c");

  ExpectFailureOfBytes(writer.GetText(), "is damaged: the product 'snake' contains itself");
}

TEST_F(DamagedFile, ReadAssembly_OfABadFile_PrintsNothing)
{
  const std::filesystem::path file = m_folder.Write("bad.stp", LoadBytes(Sample).substr(0, 5000) + "END-ISO-10303-21;");
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();

  const ReadResult result = ReadAssembly(file, nullptr);

  EXPECT_FALSE(result.ok);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DamagedFile, ReadAssembly_OfLinesThatEndAsOnWindows_ReadsThem)
{
  std::string text;
  for (const char letter : LoadBytes(Sample)) {
    text += letter == '\n' ? "\r\n" : std::string(1, letter);
  }
  const std::filesystem::path file = m_folder.Write("windows.stp", "\xEF\xBB\xBF" + text + "\r\n\r\n");

  const ReadResult result = ReadAssembly(file, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(CountInstances(result.assembly), CountInstances(ReadAssembly(Sample, nullptr).assembly));
}

}  // namespace
