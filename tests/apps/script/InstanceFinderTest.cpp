#include "script/InstanceFinder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

#include "script/ScriptError.h"
#include "script/ScriptParser.h"

namespace {

using InstancePtr = du::SmartPtr<memkernel::Instance>;
using script::InstanceFinder;
using script::ListSubtree;
using script::Path;
using script::ScriptError;

Path PathOf(const std::string& text)
{
  return script::ParseLine("hide " + text)->paths.front();
}

/// A pump with two sets of bolts:
///   pump
///     set: bolt, bolt
///     set: bolt
///     a/b
class InstanceFinderTest : public testing::Test {
protected:
  InstancePtr Add(const InstancePtr& parent, const char* name)
  {
    const auto product = tree->CreateProduct({.name = name});
    return parent ? tree->AddChild(parent, product) : tree->CreateRoot(product);
  }

  [[nodiscard]] std::string FaultOf(const std::string& path) const
  {
    try {
      static_cast<void>(finder.Find(PathOf(path)));
    } catch (const ScriptError& error) {
      return error.what();
    }
    return "none";
  }

  const du::SmartPtr<memkernel::Tree> tree = du::MakeSmart<memkernel::Tree>();
  const InstanceFinder finder{*tree};
  const InstancePtr pump = Add({}, "pump");
  const InstancePtr firstSet = Add(pump, "set");
  const InstancePtr firstBolt = Add(firstSet, "bolt");
  const InstancePtr secondBolt = Add(firstSet, "bolt");
  const InstancePtr secondSet = Add(pump, "set");
  const InstancePtr thirdBolt = Add(secondSet, "bolt");
  const InstancePtr slash = Add(pump, "a/b");
};

TEST_F(InstanceFinderTest, Name_IsFoundAnywhere)
{
  EXPECT_EQ(finder.Find(PathOf("pump")), pump);
  EXPECT_EQ(finder.Find(PathOf("\"a/b\"")), slash);
}

TEST_F(InstanceFinderTest, Number_CountsInTheOrderOfTheTree)
{
  EXPECT_EQ(finder.Find(PathOf("bolt#1")), firstBolt);
  EXPECT_EQ(finder.Find(PathOf("bolt#2")), secondBolt);
  EXPECT_EQ(finder.Find(PathOf("bolt#3")), thirdBolt);
  EXPECT_EQ(finder.Find(PathOf("set#2")), secondSet);
}

TEST_F(InstanceFinderTest, Path_NamesChildrenOfWhatItNamedBefore)
{
  EXPECT_EQ(finder.Find(PathOf("set#2/bolt")), thirdBolt);
  EXPECT_EQ(finder.Find(PathOf("pump/set#1/bolt#2")), secondBolt);
  EXPECT_EQ(finder.Find(PathOf("set/bolt#3")), thirdBolt);
}

TEST_F(InstanceFinderTest, PathFromTheRoot_BeginsThere)
{
  EXPECT_EQ(finder.Find(PathOf("/pump")), pump);
  EXPECT_EQ(finder.Find(PathOf("/pump/set#2")), secondSet);
  EXPECT_EQ(FaultOf("/set"), "no instance is named /set");
}

TEST_F(InstanceFinderTest, EmptyName_MeansAnInstanceWithoutOne)
{
  const InstancePtr unnamed = Add(pump, "");

  EXPECT_EQ(finder.Find(PathOf("\"\"")), unnamed);
}

TEST_F(InstanceFinderTest, NoMatch_IsNamed)
{
  EXPECT_EQ(FaultOf("nut"), "no instance is named nut");
  EXPECT_EQ(FaultOf("\"big nut\""), "no instance is named \"big nut\"");
  EXPECT_EQ(FaultOf("pump/bolt"), "no instance is at pump/bolt");
  EXPECT_EQ(FaultOf("nut/bolt"), "no instance is at nut/bolt");
}

TEST_F(InstanceFinderTest, SeveralMatches_AreCounted)
{
  EXPECT_EQ(FaultOf("bolt"), "3 instances are meant by bolt: name a parent before it, or add #1 to #3");
  EXPECT_EQ(FaultOf("set#1/bolt"), "2 instances are meant by set#1/bolt: name a parent before it, or add #1 to #2");
}

TEST_F(InstanceFinderTest, NumberBeyondTheMatches_IsNamed)
{
  EXPECT_EQ(FaultOf("bolt#4"), "there is no bolt#4, the number of matches is 3");
  EXPECT_EQ(FaultOf("set#3/bolt"), "there is no set#3, the number of matches is 2");
}

TEST_F(InstanceFinderTest, EmptyTree_HasNoInstance)
{
  tree->Remove(pump);

  EXPECT_EQ(FaultOf("pump"), "no instance is named pump");
  EXPECT_EQ(FaultOf("/pump"), "no instance is named /pump");
}

TEST_F(InstanceFinderTest, Subtree_IsListedInTheOrderOfTheTree)
{
  EXPECT_EQ(ListSubtree(pump),
            (std::vector<InstancePtr>{pump, firstSet, firstBolt, secondBolt, secondSet, thirdBolt, slash}));
  EXPECT_EQ(ListSubtree(secondSet), (std::vector<InstancePtr>{secondSet, thirdBolt}));
}

TEST_F(InstanceFinderTest, MadePath_HasNumbersOnlyWhereSiblingsShareAName)
{
  EXPECT_EQ(ToText(InstanceFinder::MakePath(*pump)), "/pump");
  EXPECT_EQ(ToText(InstanceFinder::MakePath(*slash)), "/pump/\"a/b\"");
  EXPECT_EQ(ToText(InstanceFinder::MakePath(*thirdBolt)), "/pump/set#2/bolt");
}

RC_GTEST_PROP(InstanceFinder, MadePath_FindsItsInstanceAgain, ())
{
  const auto tree = du::MakeSmart<memkernel::Tree>();
  const std::vector<std::string> names = *rc::gen::container<std::vector<std::string>>(
      rc::gen::element<std::string>("a", "b", "a b", "a/b", "#1", "\"", ""));
  std::vector<InstancePtr> instances{tree->CreateRoot(tree->CreateProduct({.name = "a"}))};
  for (const std::string& name : names) {
    const InstancePtr parent = *rc::gen::elementOf(instances);
    instances.push_back(tree->AddChild(parent, tree->CreateProduct({.name = du::Symbol(name)})));
  }

  for (const InstancePtr& instance : instances) {
    const std::string text = ToText(InstanceFinder::MakePath(*instance));
    RC_ASSERT(InstanceFinder(*tree).Find(PathOf(text)) == instance);
  }
}

}  // namespace
