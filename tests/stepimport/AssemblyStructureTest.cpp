#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
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

ReadResult ReadText(const std::string& text)
{
  const TempFolder folder;
  return ReadAssembly(folder.Write("test.stp", text), nullptr);
}

std::string WriteCart(const std::string& schema)
{
  StepWriter writer(schema);
  const int wheel = writer.AddProduct("wheel");
  const int cart = writer.AddProduct("cart");
  const int axle = writer.AddProduct("axle");
  writer.AddOccurrence(cart, axle, "front");
  writer.AddOccurrence(axle, wheel, "right");
  writer.AddOccurrence(axle, wheel, "left");
  writer.AddOccurrence(cart, axle, "back");
  return writer.GetText();
}

constexpr const char* CartOutline =
    "cart [cart]\n"
    "  front [axle]\n"
    "    right [wheel]\n"
    "    left [wheel]\n"
    "  back [axle]\n"
    "    right [wheel]\n"
    "    left [wheel]\n";

class Schemas : public testing::TestWithParam<const char*> {};

TEST_P(Schemas, ReadAssembly_OfAnySchema_GivesOccurrencesInTheOrderOfTheFile)
{
  const std::string text = WriteCart(GetParam());

  const ReadResult result = ReadText(text);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly), CartOutline);
  EXPECT_TRUE(result.warnings.empty());
}

INSTANTIATE_TEST_SUITE_P(Ap, Schemas,
                         testing::Values("CONFIG_CONTROL_DESIGN", "AUTOMOTIVE_DESIGN { 1 0 10303 214 1 1 1 1 }",
                                         "AP242_MANAGED_MODEL_BASED_3D_ENGINEERING_MIM_LF { 1 0 10303 442 1 1 4 }"));

TEST(AssemblyStructure, ReadAssembly_OfRepeatedOccurrences_HoldsTheirProductOnce)
{
  const ReadResult result = ReadText(WriteCart("AUTOMOTIVE_DESIGN"));

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(result.assembly.products.size(), 3U);
  EXPECT_EQ(CountInstances(result.assembly), 7U);
}

TEST(AssemblyStructure, ReadAssembly_OfOneProductAlone_GivesIt)
{
  StepWriter writer;
  const int part = writer.AddProduct("part");
  const int holder = writer.AddProduct("holder");
  writer.AddOccurrence(holder, part, "only");

  const ReadResult result = ReadText(writer.GetText());

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly), "holder [holder]\n  only [part]\n");
}

TEST(AssemblyStructure, ReadAssembly_OfSeveralTopProducts_PutsThemUnderTheNameOfTheFile)
{
  StepWriter writer;
  const int part = writer.AddProduct("part");
  const int first = writer.AddProduct("first");
  const int second = writer.AddProduct("second");
  writer.AddOccurrence(second, part, "b");
  writer.AddOccurrence(first, part, "a");

  const ReadResult result = ReadText(writer.GetText());

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly),
            "test [test]\n"
            "  first [first]\n"
            "    a [part]\n"
            "  second [second]\n"
            "    b [part]\n");
}

TEST(AssemblyStructure, ReadAssembly_OfAnOccurrenceOfNoProduct_LeavesItOutAndWarns)
{
  StepWriter writer;
  const int part = writer.AddProduct("part");
  const int holder = writer.AddProduct("holder");
  writer.AddOccurrence(holder, 4711, "broken");
  writer.AddOccurrence(holder, part, "whole");

  const ReadResult result = ReadText(writer.GetText());

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly), "holder [holder]\n  whole [part]\n");
  ASSERT_EQ(result.warnings.size(), 2U);
  EXPECT_NE(result.warnings[0].find("test.stp: is damaged"), std::string::npos) << result.warnings[0];
  EXPECT_NE(result.warnings[1].find("test.stp: 1 occurrence"), std::string::npos) << result.warnings[1];
}

TEST(AssemblyStructure, ReadAssembly_OfAVeryDeepAssembly_ReadsItToTheBottom)
{
  constexpr int Depth = 4000;
  StepWriter writer;
  int parent = writer.AddProduct("top");
  for (int level = 1; level < Depth; ++level) {
    const int child = writer.AddProduct("level");
    writer.AddOccurrence(parent, child, "down");
    parent = child;
  }

  const ReadResult result = ReadText(writer.GetText());

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(CountInstances(result.assembly), static_cast<std::size_t>(Depth));
}

TEST(AssemblyStructure, ReadAssembly_OfManyOccurrencesOfOneProduct_KeepsTheirOrder)
{
  constexpr int Count = 5000;
  StepWriter writer;
  const int part = writer.AddProduct("part");
  const int holder = writer.AddProduct("holder");
  for (int number = 0; number < Count; ++number) {
    writer.AddOccurrence(holder, part, "part:" + std::to_string(number));
  }

  const ReadResult result = ReadText(writer.GetText());

  ASSERT_TRUE(result.ok) << result.error;
  const stepimport::Product& root = result.assembly.products[result.assembly.root];
  ASSERT_EQ(root.occurrences.size(), static_cast<std::size_t>(Count));
  for (int number = 0; number < Count; ++number) {
    ASSERT_EQ(root.occurrences[static_cast<std::size_t>(number)].name, "part:" + std::to_string(number));
  }
}

TEST(AssemblyStructure, CountInstances_OfDoublingAssemblies_StopsAtTheLargestNumber)
{
  stepimport::Assembly assembly;
  assembly.products.resize(100);
  for (std::size_t i = 0; i + 1 < assembly.products.size(); ++i) {
    assembly.products[i].occurrences = {{"a", i + 1}, {"b", i + 1}};
  }

  const std::size_t count = CountInstances(assembly);

  EXPECT_EQ(count, std::numeric_limits<std::size_t>::max());
}

TEST(AssemblyStructure, CountInstances_CountsBodiesAndTheRoot)
{
  stepimport::Assembly assembly;
  assembly.products.resize(2);
  assembly.products[0].occurrences = {{"a", 1}, {"b", 1}};
  assembly.products[1].bodies = {{"x", {}}, {"y", {}}};

  EXPECT_EQ(CountInstances(assembly), 7U);
  EXPECT_EQ(CountInstances(stepimport::Assembly()), 0U);
}

}  // namespace
