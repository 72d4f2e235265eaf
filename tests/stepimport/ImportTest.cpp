#include "stepimport/Import.h"

#include <gtest/gtest.h>

#include <TopAbs_ShapeEnum.hxx>
#include <TopoDS_Shape.hxx>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "du/SmartPtr.h"
#include "memkernel/Tree.h"
#include "stepimport/Progress.h"
#include "support/TempFolder.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelk/ComponentInstance.h"
#include "zelk/PropertyValue.h"
#include "zelk/TreeObserver.h"

namespace {

using stepimport::Import;
using stepimport::ImportResult;
using stepimporttest::TempFolder;

const std::filesystem::path Samples = SAMPLES_DIR;

std::string GetProperty(const zelk::BaseInstance& instance, const char* name)
{
  du::SmartPtr<zelk::PropertyValue> value;
  instance.GetPropertyValue(value, zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, du::Symbol(name),
                            du::Symbol::EMPTY);
  std::string text = "none";
  if (value) {
    value->GetValueAsString(text);
  }
  return text;
}

void AppendOutline(const zelk::BaseInstance& base, std::size_t level, std::string& text)
{
  const auto& instance = dynamic_cast<const zelk::Instance&>(base);
  text += std::string(2 * level, ' ') + (instance.IsBodyInstance() ? "* " : "") + GetProperty(base, "Display Name");
  text += instance.IsMultiInstancedSibling() ? (instance.IsFirstMultiInstancedSibling() ? " first" : " again") : "";
  text += instance.IsProxy() ? " proxy" : "";
  text += instance.IsProxyExpanded() ? " expanded" : "";
  text += instance.HasProxyExpandFailed() ? " failed" : "";
  text += instance.HasShapeSource() ? " shape\n" : "\n";
  du::SmartPtr<zelk::BaseInstance> child;
  for (base.GetBaseFirstChild(child); child; child->GetBaseNextSibling(child)) {
    AppendOutline(*child, level + 1, text);
  }
}

std::string MakeOutline(const zelk::BaseInstance& top)
{
  std::string text;
  AppendOutline(top, 0, text);
  return text;
}

du::SmartPtr<zelk::BaseInstance> GetChild(const zelk::BaseInstance& parent, std::size_t number)
{
  std::vector<du::SmartPtr<zelk::BaseInstance>> children;
  parent.GetBaseChildren(children);
  return children.at(number);
}

class CountingObserver : public zelk::TreeObserver {
public:
  void OnBeginUpdate() override { ++calls; }
  void OnEndUpdate() override { ++calls; }

  int calls = 0;
};

class StoppingProgress : public stepimport::Progress {
public:
  explicit StoppingProgress(int stopAt) : m_stopAt(stopAt) {}

  bool Report(int /*percent*/, std::string_view stage) override
  {
    lastStage = stage;
    return ++calls < m_stopAt;
  }

  int calls = 0;
  std::string lastStage;

private:
  int m_stopAt;
};

class ImportIntoTree : public testing::Test {
protected:
  void SetUp() override { m_tree->RegisterObserver(*m_observer, false); }
  void TearDown() override { m_tree->UnregisterObserver(*m_observer); }

  [[nodiscard]] unsigned int CountTree() const
  {
    unsigned int count = 0;
    m_tree->GetNumInstances(count);
    return count;
  }

  const du::SmartPtr<memkernel::Tree> m_tree = du::MakeSmart<memkernel::Tree>();
  const du::SmartPtr<CountingObserver> m_observer = du::MakeSmart<CountingObserver>();
};

TEST_F(ImportIntoTree, Import_OfTheNestedAssembly_MakesSiblingGroupsAndBodies)
{
  const ImportResult result = Import(Samples / "nested-assembly.stp", *m_tree, {}, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  const std::string boltSet =
      "    bolt:1 first shape\n"
      "    washer:1 shape\n"
      "    bolt:2 again shape\n"
      "    bolt:3 again shape\n";
  const std::string outline = MakeOutline(*result.instance);
  EXPECT_TRUE(
      outline.starts_with("pump\n"
                          "  frame:1 shape\n"
                          "  bolt set:1 first\n"
                          + boltSet + "  bolt set:2 again\n" + boltSet
                          + "  valve block:1 shape\n"
                            "    * core shape\n"
                            "    * крышка shape\n"
                            "    * Body 3 shape\n"
                            "  names:1\n"
                            "    Gehäuse für Öl first shape\n"
                            "    корпус насоса again shape\n"))
      << outline;
  EXPECT_EQ(CountTree(), 31U);
  EXPECT_EQ(CountTree(), CountInstances(result.assembly));
}

TEST_F(ImportIntoTree, Import_WithoutAParent_MakesTheRootInOneUpdate)
{
  const ImportResult result = Import(Samples / "nested-assembly.stp", *m_tree, {}, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(result.instance.Get(), m_tree->GetRootInstance().Get());
  EXPECT_EQ(GetProperty(*result.instance, "Part ID"), zelk::ComponentInstance::ROOT_INSTANCE_ID.GetText());
  EXPECT_EQ(m_observer->calls, 2);
}

TEST_F(ImportIntoTree, Import_OfSeveralFiles_PutsThemUnderOneRootInOrder)
{
  const auto root = m_tree->CreateRoot(m_tree->CreateProduct({.name = du::Symbol("all")}));

  const ImportResult first = Import(Samples / "external-references" / "hinge.stp", *m_tree, root, nullptr);
  const ImportResult second = Import(Samples / "external-references" / "leaf.stp", *m_tree, root, nullptr);

  ASSERT_TRUE(first.ok) << first.error;
  ASSERT_TRUE(second.ok) << second.error;
  EXPECT_EQ(MakeOutline(*root),
            "all\n"
            "  hinge\n"
            "    leaf:1 first proxy expanded shape\n"
            "    leaf:2 again proxy expanded shape\n"
            "    pin:1 proxy failed\n"
            "  leaf shape\n");
}

TEST_F(ImportIntoTree, Import_OfOneFileTwice_AddsItTwice)
{
  const auto root = m_tree->CreateRoot(m_tree->CreateProduct({.name = du::Symbol("all")}));
  const std::filesystem::path file = Samples / "external-references" / "leaf.stp";

  const ImportResult first = Import(file, *m_tree, root, nullptr);
  const ImportResult second = Import(file, *m_tree, root, nullptr);

  ASSERT_TRUE(first.ok && second.ok);
  EXPECT_NE(first.instance.Get(), second.instance.Get());
  EXPECT_EQ(CountTree(), 3U);
}

TEST_F(ImportIntoTree, Import_GivesProperties)
{
  const std::filesystem::path nested = Samples / "nested-assembly.stp";
  const ImportResult result = Import(nested, *m_tree, {}, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  const auto frame = GetChild(*result.instance, 0);
  EXPECT_EQ(GetProperty(*frame, "Display Name"), "frame:1");
  EXPECT_EQ(GetProperty(*frame, "Product Name"), "frame");
  EXPECT_EQ(GetProperty(*frame, "Color"), "#999999");
  EXPECT_EQ(GetProperty(*frame, "Layer"), "Structure");
  EXPECT_EQ(GetProperty(*frame, "Source File"), nested.string());
  EXPECT_EQ(GetProperty(*frame, "Referenced File"), "none");
  const auto core = GetChild(*GetChild(*result.instance, 3), 0);
  EXPECT_EQ(GetProperty(*core, "Display Name"), "core");
  EXPECT_EQ(GetProperty(*core, "Product Name"), "valve block");
  EXPECT_EQ(GetProperty(*core, "Color"), "#FF0000");
  EXPECT_EQ(GetProperty(*core, "Layer"), "none");
}

TEST_F(ImportIntoTree, Import_GivesEachInstanceAPartIdOfItsOwn)
{
  const ImportResult result = Import(Samples / "nested-assembly.stp", *m_tree, {}, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  const auto boltSet = GetChild(*result.instance, 1);
  const std::string first = GetProperty(*GetChild(*boltSet, 0), "Part ID");
  const std::string second = GetProperty(*GetChild(*boltSet, 2), "Part ID");
  EXPECT_NE(first, "none");
  EXPECT_NE(first, "");
  EXPECT_NE(first, second);
  EXPECT_NE(first, zelk::ComponentInstance::ROOT_INSTANCE_ID.GetText());
}

TEST_F(ImportIntoTree, Import_OfAFailedReference_TellsWhy)
{
  const ImportResult result = Import(Samples / "external-references" / "hinge.stp", *m_tree, {}, nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  const auto pin = GetChild(*result.instance, 2);
  EXPECT_EQ(GetProperty(*pin, "Referenced File"), "pin.stp");
  EXPECT_EQ(GetProperty(*pin, "Reference Failure"), "does not exist");
  EXPECT_EQ(result.warnings.size(), 1U);
}

TEST_F(ImportIntoTree, Import_StoppedAtAnyReport_LeavesTheTreeUntouched)
{
  const std::filesystem::path file = Samples / "nested-assembly.stp";
  StoppingProgress whole(1 << 30);
  const du::SmartPtr<memkernel::Tree> other = du::MakeSmart<memkernel::Tree>();
  ASSERT_TRUE(Import(file, *other, {}, &whole).ok);
  ASSERT_GT(whole.calls, 20);

  for (const int stopAt : {1, 2, whole.calls / 4, whole.calls / 2, whole.calls * 3 / 4, whole.calls}) {
    StoppingProgress progress(stopAt);
    const ImportResult result = Import(file, *m_tree, {}, &progress);

    EXPECT_FALSE(result.ok);
    EXPECT_TRUE(result.cancelled);
    EXPECT_EQ(result.error, file.string() + ": cancelled");
    EXPECT_FALSE(result.instance);
    EXPECT_EQ(progress.calls, stopAt);
  }
  EXPECT_EQ(whole.lastStage, "Filling the tree");
  EXPECT_EQ(CountTree(), 0U);
  EXPECT_EQ(m_observer->calls, 0);
}

TEST_F(ImportIntoTree, Import_OfABadFile_LeavesTheTreeUntouched)
{
  const TempFolder folder;
  const std::filesystem::path file = folder.Write("empty.stp", "");

  const ImportResult result = Import(file, *m_tree, {}, nullptr);

  EXPECT_FALSE(result.ok);
  EXPECT_FALSE(result.cancelled);
  EXPECT_EQ(result.error, file.string() + ": is empty");
  EXPECT_EQ(CountTree(), 0U);
  EXPECT_EQ(m_observer->calls, 0);
}

TEST_F(ImportIntoTree, Import_AsASecondRoot_IsRefused)
{
  const std::filesystem::path file = Samples / "external-references" / "leaf.stp";
  ASSERT_TRUE(Import(file, *m_tree, {}, nullptr).ok);

  const ImportResult result = Import(file, *m_tree, {}, nullptr);

  EXPECT_FALSE(result.ok);
  EXPECT_EQ(result.error, file.string() + ": cannot be added to the tree as it is");
  EXPECT_EQ(CountTree(), 1U);
}

TEST_F(ImportIntoTree, FillTree_OfMoreInstancesThanATreeTakes_AddsNothing)
{
  stepimport::Assembly assembly;
  assembly.products.resize(60);
  for (std::size_t i = 0; i + 1 < assembly.products.size(); ++i) {
    assembly.products[i].occurrences = {{"a", i + 1}, {"b", i + 1}};
  }

  EXPECT_FALSE(stepimport::FillTree(assembly, {}, *m_tree, {}));
  EXPECT_FALSE(stepimport::FillTree({}, {}, *m_tree, {}));
  EXPECT_EQ(CountTree(), 0U);
  EXPECT_EQ(m_observer->calls, 0);
}

TEST_F(ImportIntoTree, Shapes_OutliveTheTree)
{
  ImportResult result = Import(Samples / "external-references" / "leaf.stp", *m_tree, {}, nullptr);
  ASSERT_TRUE(result.ok) << result.error;

  ASSERT_TRUE(m_tree->Remove(result.instance));
  result.instance = {};

  EXPECT_EQ(CountTree(), 0U);
  EXPECT_EQ(result.shapes->GetProductShape(result.assembly.root).ShapeType(), TopAbs_SOLID);
}

}  // namespace
