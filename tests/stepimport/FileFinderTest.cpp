#include "FileFinder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "support/TempFolder.h"

namespace {

using stepimport::FileFinder;
using stepimporttest::TempFolder;

class Finding : public testing::Test {
protected:
  /// Looks from a file in the folder `from`; the answer is relative to the whole, "none" without one.
  std::string Find(const std::string& from, const std::string& target)
  {
    const std::optional<std::filesystem::path> found = m_finder.Find(m_folder.GetPath() / from / "root.stp", target);
    return found ? found->lexically_normal().lexically_relative(m_folder.GetPath()).string() : "none";
  }

  TempFolder m_folder;
  FileFinder m_finder;
};

TEST_F(Finding, Find_OfANameBesideTheReferrer_GivesIt)
{
  m_folder.Write("a/part.stp", "x");
  m_folder.Write("part.stp", "x");

  EXPECT_EQ(Find("a", "part.stp"), "a/part.stp");
  EXPECT_EQ(Find("", "part.stp"), "part.stp");
  EXPECT_EQ(Find("a", "../part.stp"), "part.stp");
}

TEST_F(Finding, Find_OfAPathWithBackslashes_TakesThemForSlashes)
{
  m_folder.Write("sub/part.stp", "x");

  EXPECT_EQ(Find("", "sub\\part.stp"), "sub/part.stp");
}

TEST_F(Finding, Find_InAnotherCase_IsForgivenOnlyWithoutAnExactMatch)
{
  m_folder.Write("Sub/Part.STP", "x");
  m_folder.Write("one.stp", "x");
  m_folder.Write("ONE.stp", "x");

  EXPECT_EQ(Find("", "sub/part.stp"), "Sub/Part.STP");
  EXPECT_EQ(Find("", "one.stp"), "one.stp");
  EXPECT_EQ(Find("", "ONE.stp"), "ONE.stp");
}

TEST_F(Finding, Find_OfAPathOfAnotherMachine_TriesTheNameBesideTheReferrer)
{
  m_folder.Write("a/part.stp", "x");

  EXPECT_EQ(Find("a", "C:\\Users\\me\\part.stp"), "a/part.stp");
  EXPECT_EQ(Find("a", "/home/somebody/else/part.stp"), "a/part.stp");
  EXPECT_EQ(Find("a", "file:///home/somebody/else/part.stp"), "a/part.stp");
}

TEST_F(Finding, Find_OfAnAbsolutePath_GivesIt)
{
  const std::filesystem::path file = m_folder.Write("far/part.stp", "x");
  m_folder.Write("a/root.stp", "x");

  EXPECT_EQ(Find("a", file.string()), "far/part.stp");
  EXPECT_EQ(Find("a", "file://" + file.string()), "far/part.stp");
}

TEST_F(Finding, Find_OfAFolderOrOfNothing_GivesNone)
{
  m_folder.Write("sub/part.stp", "x");

  EXPECT_EQ(Find("", "sub"), "none");
  EXPECT_EQ(Find("", "missing.stp"), "none");
  EXPECT_EQ(Find("", "no/such/folder/missing.stp"), "none");
  EXPECT_EQ(Find("", ""), "none");
  EXPECT_EQ(Find("", "/"), "none");
  EXPECT_EQ(Find("no-such-folder", "part.stp"), "none");
}

}  // namespace
