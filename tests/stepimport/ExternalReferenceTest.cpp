#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "stepimport/ReadAssembly.h"
#include "support/Outline.h"
#include "support/StepWriter.h"
#include "support/TempFolder.h"

namespace {

using stepimport::ReadAssembly;
using stepimport::ReadResult;
using stepimporttest::MakeOutline;
using stepimporttest::StepWriter;
using stepimporttest::TempFolder;

/// An assembly `name` of one product that stands for `target`.
std::string WriteReference(const std::string& name, const std::string& target)
{
  StepWriter writer;
  const int top = writer.AddProduct(name);
  const int placeholder = writer.AddProduct("placeholder");
  writer.AddReference(placeholder, target);
  writer.AddOccurrence(top, placeholder, "use of " + target);
  return writer.GetText();
}

std::string WriteAxle()
{
  StepWriter writer;
  const int axle = writer.AddProduct("axle");
  const int wheel = writer.AddProduct("wheel");
  writer.AddOccurrence(axle, wheel, "left");
  writer.AddOccurrence(axle, wheel, "right");
  return writer.GetText();
}

constexpr const char* AxleBelow =
    "    left [wheel]\n"
    "    right [wheel]\n";

class ExternalReference : public testing::Test {
protected:
  [[nodiscard]] std::string GetPath(const std::string& name) const { return (m_folder.GetPath() / name).string(); }

  TempFolder m_folder;
};

TEST_F(ExternalReference, ReadAssembly_WithTheFileBesideIt_ShowsWhatItHolds)
{
  m_folder.Write("axle.stp", WriteAxle());
  const std::filesystem::path cart = m_folder.Write("cart.stp", WriteReference("cart", "axle.stp"));

  const ReadResult result = ReadAssembly(cart, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly),
            std::string("cart [cart]\n  use of axle.stp [placeholder] from axle.stp\n") + AxleBelow);
  EXPECT_TRUE(result.warnings.empty());
}

TEST_F(ExternalReference, ReadAssembly_WithARelativePath_LooksBesideTheFileAndNotInTheCurrentFolder)
{
  m_folder.Write("axle.stp", WriteAxle());
  m_folder.Write("cart.stp", WriteReference("cart", "axle.stp"));
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(m_folder.GetPath().parent_path());
  const std::filesystem::path relative = m_folder.GetPath().filename() / "cart.stp";

  const ReadResult result = ReadAssembly(relative, nullptr);
  std::filesystem::current_path(m_folder.GetPath());
  const ReadResult bare = ReadAssembly("cart.stp", nullptr);
  std::filesystem::current_path(before);

  EXPECT_EQ(CountInstances(result.assembly), 4U) << result.error;
  EXPECT_EQ(CountInstances(bare.assembly), 4U) << bare.error;
}

TEST_F(ExternalReference, ReadAssembly_WithAMissingFile_KeepsTheProductAsFailedAndWarns)
{
  const std::filesystem::path cart = m_folder.Write("cart.stp", WriteReference("cart", "axle.stp"));

  const ReadResult result = ReadAssembly(cart, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly), "cart [cart]\n  use of axle.stp [placeholder] failed axle.stp\n");
  ASSERT_EQ(result.warnings.size(), 1U);
  EXPECT_EQ(result.warnings.front(), cart.string() + ": 'axle.stp', referred to by 'placeholder', does not exist");
}

TEST_F(ExternalReference, ReadAssembly_WithADamagedFile_ShowsTheRestAndSaysWhy)
{
  m_folder.Write("axle.stp", "");
  const std::filesystem::path cart = m_folder.Write("cart.stp", WriteReference("cart", "axle.stp"));

  const ReadResult result = ReadAssembly(cart, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly), "cart [cart]\n  use of axle.stp [placeholder] failed axle.stp\n");
  ASSERT_EQ(result.warnings.size(), 1U);
  EXPECT_EQ(result.warnings.front(), cart.string() + ": 'axle.stp', referred to by 'placeholder', is empty");
}

TEST_F(ExternalReference, ReadAssembly_OfReferencesInReferences_LooksBesideEachReferringFile)
{
  m_folder.Write("parts/deep/axle.stp", WriteAxle());
  m_folder.Write("parts/frame.stp", WriteReference("frame", "deep/axle.stp"));
  const std::filesystem::path cart = m_folder.Write("cart.stp", WriteReference("cart", "parts/frame.stp"));

  const ReadResult result = ReadAssembly(cart, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly),
            "cart [cart]\n"
            "  use of parts/frame.stp [placeholder] from parts/frame.stp\n"
            "    use of deep/axle.stp [placeholder] from deep/axle.stp\n"
            "      left [wheel]\n"
            "      right [wheel]\n");
}

TEST_F(ExternalReference, ReadAssembly_OfTwoReferencesToOneFile_ReadsItOnce)
{
  m_folder.Write("axle.stp", WriteAxle());
  StepWriter writer;
  const int cart = writer.AddProduct("cart");
  const int front = writer.AddProduct("front");
  const int back = writer.AddProduct("back");
  writer.AddReference(front, "axle.stp");
  writer.AddReference(back, "./AXLE.STP");
  writer.AddOccurrence(cart, front, "1");
  writer.AddOccurrence(cart, back, "2");

  const ReadResult result = ReadAssembly(m_folder.Write("cart.stp", writer.GetText()), nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly), std::string("cart [cart]\n  1 [front] from axle.stp\n") + AxleBelow
                                              + "  2 [back] from ./AXLE.STP\n" + AxleBelow);
  EXPECT_EQ(result.assembly.products.size(), 5U);
}

TEST_F(ExternalReference, ReadAssembly_OfAFileThatRefersToItself_FailsTheReference)
{
  const std::filesystem::path loop = m_folder.Write("loop.stp", WriteReference("loop", "loop.stp"));

  const ReadResult result = ReadAssembly(loop, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly), "loop [loop]\n  use of loop.stp [placeholder] failed loop.stp\n");
  ASSERT_EQ(result.warnings.size(), 1U);
  EXPECT_NE(result.warnings.front().find("contains the file that refers to it"), std::string::npos);
}

TEST_F(ExternalReference, ReadAssembly_OfFilesThatReferToEachOther_StopsWhereTheCircleCloses)
{
  const std::filesystem::path a = m_folder.Write("a.stp", WriteReference("a", "b.stp"));
  m_folder.Write("b.stp", WriteReference("b", "c.stp"));
  m_folder.Write("c.stp", WriteReference("c", "a.stp"));

  const ReadResult result = ReadAssembly(a, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly),
            "a [a]\n"
            "  use of b.stp [placeholder] from b.stp\n"
            "    use of c.stp [placeholder] from c.stp\n"
            "      use of a.stp [placeholder] failed a.stp\n");
}

TEST_F(ExternalReference, ReadAssembly_OfAFileWithSeveralTops_ShowsThemUnderTheReference)
{
  StepWriter tops;
  const int part = tops.AddProduct("part");
  const int first = tops.AddProduct("first");
  const int second = tops.AddProduct("second");
  tops.AddOccurrence(first, part, "1");
  tops.AddOccurrence(second, part, "2");
  m_folder.Write("tops.stp", tops.GetText());

  const ReadResult result = ReadAssembly(m_folder.Write("cart.stp", WriteReference("cart", "tops.stp")), nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly),
            "cart [cart]\n"
            "  use of tops.stp [placeholder] from tops.stp\n"
            "    first [first]\n"
            "      1 [part]\n"
            "    second [second]\n"
            "      2 [part]\n");
}

TEST_F(ExternalReference, ReadAssembly_OfAnAssemblyWithADocument_TakesItForNoReference)
{
  StepWriter writer;
  const int top = writer.AddProduct("top");
  const int part = writer.AddProduct("part");
  writer.AddOccurrence(top, part, "a");
  writer.AddReference(top, "drawing.pdf");

  const ReadResult result = ReadAssembly(m_folder.Write("top.stp", writer.GetText()), nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly), "top [top]\n  a [part]\n");
  EXPECT_TRUE(result.warnings.empty());
}

}  // namespace
