#include <gtest/gtest.h>

#include <TDF_Label.hxx>
#include <TopAbs_ShapeEnum.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string>

#include "stepimport/ReadAssembly.h"
#include "support/Outline.h"
#include "support/TempFolder.h"

namespace {

using stepimport::Assembly;
using stepimport::ProductIndex;
using stepimport::ReadAssembly;
using stepimport::ReadResult;
using stepimporttest::LoadBytes;
using stepimporttest::MakeOutline;
using stepimporttest::TempFolder;

const std::filesystem::path Samples = SAMPLES_DIR;

ProductIndex FindProduct(const Assembly& assembly, const std::string& name)
{
  const auto found = std::find_if(assembly.products.begin(), assembly.products.end(),
                                  [&](const stepimport::Product& product) { return product.name == name; });
  EXPECT_NE(found, assembly.products.end()) << name;
  return static_cast<ProductIndex>(found - assembly.products.begin());
}

TEST(SampleFiles, ReadAssembly_OfTheNestedAssembly_GivesNamesBodiesColoursAndLayers)
{
  const ReadResult result = ReadAssembly(Samples / "nested-assembly.stp", nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  const std::string boltSet =
      "    bolt:1 [bolt M1] #CC9933 on Fasteners\n"
      "    washer:1 [washer] on Fasteners\n"
      "    bolt:2 [bolt M1] #CC9933 on Fasteners\n"
      "    bolt:3 [bolt M1] #CC9933 on Fasteners\n";
  std::string names;
  for (const std::string& name :
       {std::string("Gehäuse für Öl"), std::string("корпус насоса"), std::string("外壳"), std::string("ポンプ"),
        std::string("펌프"), std::string("مضخة"), std::string("משאבה"), std::string("Αντλία"), std::string("gear ⚙ 😀"),
        std::string("it's a \"quoted\" name"), std::string("back\\slash and /slash/"),
        std::string("semicolon; (brackets), #42 = 'x'"), std::string("washer"), std::string(300, 'n')}) {
    names += "    " + name + " [washer] on Fasteners\n";
  }
  EXPECT_EQ(MakeOutline(result.assembly), "pump [pump]\n"
                                          "  frame:1 [frame] #999999 on Structure\n"
                                          "  bolt set:1 [bolt set]\n"
                                              + boltSet + "  bolt set:2 [bolt set]\n" + boltSet
                                              + "  valve block:1 [valve block]\n"
                                                "    * core #FF0000\n"
                                                "    * крышка #00FF00\n"
                                                "    * Body 3\n"
                                                "  names:1 [Namen, names, имена, 名前]\n"
                                              + names);
}

TEST(SampleFiles, ReadAssembly_OfTheNestedAssembly_KeepsTheShapesOfPartsAndBodies)
{
  const ReadResult result = ReadAssembly(Samples / "nested-assembly.stp", nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  const ProductIndex bolt = FindProduct(result.assembly, "bolt M1");
  const ProductIndex block = FindProduct(result.assembly, "valve block");
  const ProductIndex pump = FindProduct(result.assembly, "pump");
  EXPECT_TRUE(result.assembly.products[bolt].hasShape);
  EXPECT_EQ(result.shapes->GetProductShape(bolt).ShapeType(), TopAbs_SOLID);
  EXPECT_FALSE(result.shapes->GetProductLabel(bolt).IsNull());
  for (std::size_t body = 0; body < 3; ++body) {
    EXPECT_EQ(result.shapes->GetBodyShape(block, body).ShapeType(), TopAbs_SOLID);
  }
  EXPECT_TRUE(result.shapes->GetBodyShape(block, 3).IsNull());
  EXPECT_FALSE(result.assembly.products[pump].hasShape);
  EXPECT_TRUE(result.shapes->GetProductShape(pump).IsNull());
  EXPECT_TRUE(result.shapes->GetProductShape(result.assembly.products.size()).IsNull());
  EXPECT_TRUE(result.shapes->GetProductLabel(result.assembly.products.size()).IsNull());
}

TEST(SampleFiles, ReadAssembly_OfExternalReferences_ExpandsTheFoundAndKeepsTheMissing)
{
  const std::filesystem::path folder = Samples / "external-references";

  const ReadResult result = ReadAssembly(folder / "hinge.stp", nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly),
            "hinge [hinge]\n"
            "  leaf:1 [leaf] #999999 from leaf.stp\n"
            "  leaf:2 [leaf] #999999 from leaf.stp\n"
            "  pin:1 [pin] failed pin.stp\n");
  const ProductIndex root = result.assembly.root;
  const ProductIndex leaf = result.assembly.products[root].occurrences.at(0).product;
  EXPECT_EQ(result.shapes->GetProductShape(leaf).ShapeType(), TopAbs_SOLID);
  EXPECT_EQ(result.assembly.products[leaf].reference.file, folder / "leaf.stp");
  EXPECT_EQ(result.assembly.products[leaf].sourceFile, folder / "hinge.stp");
}

TEST(SampleFiles, ReadAssembly_OfAnAssemblyWithASolidOfItsOwn_GivesTheSolidAsABody)
{
  // The part "leaf" gets an occurrence, which makes it an assembly.
  std::string text = LoadBytes(Samples / "external-references" / "leaf.stp");
  ASSERT_NE(text.find("#5 = PRODUCT_DEFINITION("), std::string::npos);
  text.insert(text.rfind("ENDSEC;"),
              "#9001=PRODUCT('label','label','',(#8));\n#9002=PRODUCT_DEFINITION_FORMATION('','',#9001);\n"
              "#9003=PRODUCT_DEFINITION('','',#9002,#9);\n"
              "#9004=NEXT_ASSEMBLY_USAGE_OCCURRENCE('1','label:1','',#5,#9003,$);\n");
  const TempFolder folder;

  const ReadResult result = ReadAssembly(folder.Write("leaf.stp", text), nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly),
            "leaf [leaf] #999999\n"
            "  * Body 1 #999999\n"
            "  label:1 [label]\n");
  EXPECT_EQ(result.shapes->GetBodyShape(result.assembly.root, 0).ShapeType(), TopAbs_SOLID);
}

TEST(SampleFiles, ReadAssembly_OfASinglePart_GivesIt)
{
  const ReadResult result = ReadAssembly(Samples / "external-references" / "leaf.stp", nullptr);

  ASSERT_TRUE(result.ok) << result.error;
  EXPECT_EQ(MakeOutline(result.assembly), "leaf [leaf] #999999\n");
}

}  // namespace
