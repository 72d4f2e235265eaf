#include <gtest/gtest.h>

#include <string>

#include "Utf8.h"
#include "stepimport/ReadAssembly.h"
#include "support/StepWriter.h"
#include "support/TempFolder.h"

namespace {

using stepimport::ReadAssembly;
using stepimport::ReadResult;
using stepimporttest::StepWriter;
using stepimporttest::TempFolder;

struct Spelling {
  const char* written;
  const char* meant;
};

/// The name under which an occurrence of "part" is read when it is written as `raw`, quotes included.
std::string ReadOccurrenceName(const std::string& raw, const std::string& other = "other")
{
  StepWriter writer;
  const int top = writer.AddProduct("top");
  const int part = writer.AddProduct("part");
  writer.AddRawOccurrence(top, part, raw);
  writer.AddOccurrence(top, part, other);
  const TempFolder folder;
  const ReadResult result = ReadAssembly(folder.Write("names.stp", writer.GetText()), nullptr);
  EXPECT_TRUE(result.ok) << result.error;
  return result.ok ? result.assembly.products[result.assembly.root].occurrences.at(0).name : "";
}

std::string ReadRootName(const std::string& rawId, const std::string& rawName)
{
  StepWriter writer;
  const int top = writer.AddRawProduct(rawId, rawName);
  writer.AddOccurrence(top, writer.AddProduct("part"), "a");
  const TempFolder folder;
  const ReadResult result = ReadAssembly(folder.Write("names.stp", writer.GetText()), nullptr);
  EXPECT_TRUE(result.ok) << result.error;
  return result.ok ? result.assembly.products[result.assembly.root].name : "";
}

class Spellings : public testing::TestWithParam<Spelling> {};

TEST_P(Spellings, ReadAssembly_OfAName_GivesWhatWasMeantAsUtf8)
{
  const std::string written = "'" + std::string(GetParam().written) + "'";

  EXPECT_EQ(ReadOccurrenceName(written), GetParam().meant);
}

INSTANTIATE_TEST_SUITE_P(
    Names, Spellings,
    testing::Values(Spelling{"корпус насоса", "корпус насоса"}, Spelling{"外壳", "外壳"}, Spelling{"ポンプ", "ポンプ"},
                    Spelling{"مضخة", "مضخة"}, Spelling{"משאבה", "משאבה"}, Spelling{"Αντλία", "Αντλία"},
                    Spelling{"gear 😀", "gear 😀"}, Spelling{"e\xCC\x81 combined", "e\xCC\x81 combined"},
                    Spelling{"it''s a \"quoted\" name", "it's a \"quoted\" name"}, Spelling{"a\\\\b", "a\\b"},
                    Spelling{"  spaces  ", "  spaces  "}, Spelling{"#12=A('';/*x*/),$;", "#12=A(';/*x*/),$;"},
                    Spelling{"\\X2\\00E400F63042\\X0\\end", "äöあend"}, Spelling{"\\X4\\0001F600\\X0\\!", "😀!"},
                    Spelling{"Gr\\X\\F6\\X\\DFe", "Größe"}, Spelling{"Gr\\S\\v\\S\\_e", "Größe"},
                    Spelling{"\\PE\\\\S\\_x", "пx"}, Spelling{"\\X2\\D83DDE00\\X0\\", "😀"},
                    Spelling{"Gr\xF6\xDF"
                             "e",
                             "Größe"},
                    Spelling{"\xE9t\xE9", "été"}, Spelling{"caf\xE9", "café"}, Spelling{"5 \x80", "5 €"},
                    Spelling{"split\nover lines", "splitover lines"}));

TEST(Names, ReadAssembly_OfAVeryLongName_KeepsAllOfIt)
{
  const std::string name(10000, 'n');

  EXPECT_TRUE(ReadOccurrenceName('\'' + name + '\'') == name);
}

TEST(Names, ReadAssembly_OfAnOccurrenceWithoutAName_CallsItLikeItsProduct)
{
  EXPECT_EQ(ReadOccurrenceName("''"), "part");
  EXPECT_EQ(ReadOccurrenceName("' '"), "part");
  EXPECT_EQ(ReadOccurrenceName("$"), "part");
}

TEST(Names, ReadAssembly_OfAProductWithoutAName_CallsItByItsId)
{
  EXPECT_EQ(ReadRootName("'id-7'", "''"), "id-7");
  EXPECT_EQ(ReadRootName("'id-7'", "$"), "id-7");
  EXPECT_EQ(ReadRootName("' '", "' '"), "Unnamed");
  EXPECT_EQ(ReadRootName("$", "$"), "Unnamed");
}

TEST(Names, ReadAssembly_OfBrokenEscapes_GivesValidUtf8)
{
  for (const char* const raw : {"'\\X2\\D83D\\X0\\z'", "'\\X2\\12'", "'\\X2\\'", "'\\X\\'", "'\\S\\'", "'\\'",
                                "'\\X2\\ZZZZ\\X0\\'", "'\\X4\\FFFFFFFF\\X0\\'", "'\\N\\ line'", "'\\X\\00'"}) {
    const std::string name = ReadOccurrenceName(raw);
    EXPECT_TRUE(stepimport::IsUtf8(name)) << raw;
    EXPECT_FALSE(stepimport::IsBlank(name)) << raw;
  }
}

TEST(Names, ReadAssembly_OfAFileWithBothUtf8AndOldBytes_GivesValidUtf8)
{
  const std::string name = ReadOccurrenceName(
      "'Gr\xF6\xDF"
      "e'",
      "корпус");

  EXPECT_TRUE(stepimport::IsUtf8(name));
  EXPECT_EQ(name, "Größe");
}

}  // namespace
