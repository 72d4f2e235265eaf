#include <gtest/gtest.h>

#include <cctype>
#include <string>

#include "TextOf.h"
#include "guitree/TreeSelectionController.h"
#include "testsupport/NamedTree.h"

namespace {

using hosttest::TextOf;
using InstancePtr = du::SmartPtr<memkernel::Instance>;

/// The rows of `root[a b[c d] e]`, of which b has none: its children stand between those of a and e.
class TextHostPlace : public testing::Test {
protected:
  TextHostPlace()
  {
    host.StartTreeUpdate();
    host.ClearTree();
    for (const auto* name : {"root", "a", "c", "d", "e"}) {
      Create(kernel[name]);
    }
    host.FinishTreeUpdate();
  }

  void Create(const InstancePtr& instance)
  {
    du::SmartPtr<zelk::BaseInstance> parent;
    instance->GetBaseParent(parent);
    host.InstanceCreate(instance, parent, {}, false);
  }
  void InsertBefore(const std::string& sibling)
  {
    Create(kernel.Get()->InsertBefore(kernel[sibling], kernel.Get()->CreateProduct({.name = "new"})));
  }
  /// The names of the rows below the root.
  [[nodiscard]] std::string GetOrder() const
  {
    std::string order;
    for (const char character : TextOf(host, {.ascii = true})) {
      order += std::isalpha(static_cast<unsigned char>(character)) != 0 ? std::string(1, character) : "";
      order += character == '\n' ? " " : "";
    }
    return order;
  }

  testsupport::NamedTree kernel{"root[a b[c d] e]"};
  texthost::TextHost host;
};

TEST_F(TextHostPlace, AnInstanceThatIsAppended_StandsLast)
{
  Create(kernel.Add("root", "new"));

  EXPECT_EQ(GetOrder(), "root a c d e new ");
}

TEST_F(TextHostPlace, AnInstanceInFrontOfTheFirst_StandsFirst)
{
  InsertBefore("a");

  EXPECT_EQ(GetOrder(), "root new a c d e ");
}

TEST_F(TextHostPlace, AnInstanceInFrontOfOneWithoutARow_StandsInFrontOfItsChildren)
{
  InsertBefore("b");

  EXPECT_EQ(GetOrder(), "root a new c d e ");
}

TEST_F(TextHostPlace, AnInstanceBelowOneWithoutARow_StandsBetweenItsChildren)
{
  InsertBefore("d");

  EXPECT_EQ(GetOrder(), "root a c new d e ");
}

TEST_F(TextHostPlace, TheLastInstanceBelowOneWithoutARow_StandsInFrontOfWhatFollows)
{
  Create(kernel.Add("b", "new"));

  EXPECT_EQ(GetOrder(), "root a c d new e ");
}

TEST_F(TextHostPlace, AnInstanceThatComesAgain_StaysWhereItStands)
{
  Create(kernel["a"]);

  EXPECT_EQ(GetOrder(), "root a c d e ");
}

TEST_F(TextHostPlace, WhileTheRowsAreRefilled_TheyStandInTheOrderInWhichTheyCome)
{
  host.StartTreeUpdate();
  host.ClearTree();
  for (const auto* name : {"root", "e", "a"}) {
    Create(kernel[name]);
  }
  host.FinishTreeUpdate();

  EXPECT_EQ(GetOrder(), "root e a ");
}

TEST_F(TextHostPlace, AfterARefillInsideABracket_SingleRowsStandWhereTheirInstancesStand)
{
  host.StartTreeUpdate();
  host.StartTreeUpdate();
  host.ClearTree();
  for (const auto* name : {"root", "a", "e"}) {
    Create(kernel[name]);
  }
  host.RestoreExpandedAfterPopulate();
  host.FinishTreeUpdate();
  InsertBefore("a");
  host.FinishTreeUpdate();

  EXPECT_EQ(GetOrder(), "root new a e ");
}

/// The rows of a filter's result as one list below the root, in an order that is not the kernel's.
class TextHostList : public TextHostPlace {
protected:
  void ShowList()
  {
    host.StartTreeUpdate();
    host.ClearTree();
    host.SetTreeCalculating(true);
    host.FinishTreeUpdate();
    host.SetTreeCalculating(false);
    host.StartTreeUpdate();
    host.InstanceCreate(kernel["root"], {}, {}, false);
    for (const auto* name : {"e", "c", "b", "a"}) {
      host.InstanceCreate(kernel[name], kernel["root"], {}, false);
    }
    host.RestoreExpandedAfterPopulate();
    host.FinishTreeUpdate();
  }
};

TEST_F(TextHostList, RowsOfAResult_KeepTheOrderInWhichTheyCome)
{
  ShowList();

  EXPECT_EQ(GetOrder(), "root e c b a ");
}

TEST_F(TextHostList, ARowThatComesAgain_StaysWhereItStandsInTheList)
{
  ShowList();

  host.InstanceCreate(kernel["c"], kernel["root"], {}, false);

  EXPECT_EQ(GetOrder(), "root e c b a ");
}

TEST_F(TextHostList, ALateResult_LeavesTheRowsBesideItWhereTheyStandAndTakesTheOthersThere)
{
  Create(kernel["b"]);
  for (const auto* name : {"c", "d"}) {
    Create(kernel[name]);
  }
  ASSERT_EQ(GetOrder(), "root a b c d e ");

  host.SetTreeCalculating(false);
  host.StartTreeUpdate();
  for (const auto* name : {"e", "d", "a", "c"}) {
    host.InstanceCreate(kernel[name], kernel["root"], {}, false);
  }
  host.RestoreExpandedAfterPopulate();
  host.FinishTreeUpdate();

  EXPECT_EQ(GetOrder(), "root a b e d c ");
}

TEST_F(TextHostList, ARowThatGoes_LeavesThoseBesideItThatStandBelowItInTheKernel)
{
  ShowList();

  host.InstanceRemove(kernel["b"], kernel["root"], true);
  EXPECT_EQ(GetOrder(), "root e c a ");

  host.InstanceRemove(kernel["root"], {}, true);
  EXPECT_EQ(GetOrder(), "");
}

TEST_F(TextHostList, ASingleRowAfterwards_FindsItsPlaceInTheKernelAgain)
{
  ShowList();
  host.StartTreeUpdate();
  host.ClearTree();
  for (const auto* name : {"root", "a", "e"}) {
    Create(kernel[name]);
  }
  host.FinishTreeUpdate();

  InsertBefore("e");

  EXPECT_EQ(GetOrder(), "root a new e ");
}

}  // namespace
