#include <gtest/gtest.h>

#include "TestInstance.h"
#include "TextOf.h"

namespace {

using hosttest::Create;
using hosttest::Instance;
using hosttest::Make;
using hosttest::TextOf;

class TextHostRows : public testing::Test {
protected:
  texthost::TextHost host;
  const Instance root = Make("root");
  const Instance plate = Make("plate", root);
  const Instance bolt = Make("bolt", plate);
  const Instance nut = Make("nut", plate);
};

TEST_F(TextHostRows, Rows_StandInTheOrderInWhichTheyCame)
{
  Create(host, root);
  Create(host, plate);
  Create(host, bolt);
  Create(host, nut);

  EXPECT_EQ(TextOf(host),
            "root\n"
            "└─ plate\n"
            "   ├─ bolt\n"
            "   └─ nut\n");
  EXPECT_EQ(host.GetRowCount(), 4U);
}

TEST_F(TextHostRows, WithoutRows_NothingIsPrinted)
{
  EXPECT_EQ(TextOf(host), "");
}

TEST_F(TextHostRows, SeveralTopmostRows_StandOneBelowTheOther)
{
  Create(host, root);
  Create(host, plate);
  Create(host, Make("other"));

  EXPECT_EQ(TextOf(host),
            "root\n"
            "└─ plate\n"
            "other\n");
}

TEST_F(TextHostRows, RowOfAHiddenParent_GoesUnderTheNearestAncestorWithARow)
{
  const Instance washer = Make("washer", bolt);
  Create(host, root);
  Create(host, washer);
  Create(host, nut);

  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ washer\n"
            "└─ nut\n");
}

TEST_F(TextHostRows, RowWithoutAnyAncestorThatHasARow_GoesToTheTop)
{
  Create(host, bolt);
  Create(host, nut);

  EXPECT_EQ(TextOf(host), "bolt\nnut\n");
}

TEST_F(TextHostRows, HiddenParent_ThatGetsARowInTheSameBatch_TakesTheRowsThatComeAfterwards)
{
  host.StartTreeUpdate();
  Create(host, root);
  Create(host, bolt);
  Create(host, plate);
  Create(host, nut);
  Create(host, bolt);
  host.FinishTreeUpdate();

  EXPECT_EQ(TextOf(host),
            "root\n"
            "└─ plate\n"
            "   ├─ nut\n"
            "   └─ bolt\n");
}

TEST_F(TextHostRows, SecondCreate_UpdatesAndMovesTheRowWithItsBranch)
{
  const Instance other = Make("other", root);
  Create(host, root);
  Create(host, plate);
  Create(host, bolt);
  Create(host, other);

  host.InstanceCreate(plate, other, {}, false);

  EXPECT_EQ(TextOf(host),
            "root\n"
            "└─ other\n"
            "   └─ plate\n"
            "      └─ bolt\n");
  EXPECT_EQ(host.GetRowCount(), 4U);
}

TEST_F(TextHostRows, SecondCreate_UnderTheSameParent_UpdatesTheRowWhereItStands)
{
  Create(host, plate);
  Create(host, bolt);
  Create(host, nut);
  bolt->objectName = "screw";

  Create(host, bolt);

  EXPECT_EQ(TextOf(host),
            "plate\n"
            "├─ screw\n"
            "└─ nut\n");
}

TEST_F(TextHostRows, SecondCreate_UnderARowOfItsOwnBranch_LeavesTheRowWhereItIs)
{
  Create(host, root);
  Create(host, plate);
  Create(host, bolt);

  host.InstanceCreate(plate, bolt, {}, false);
  host.InstanceCreate(plate, plate, {}, false);

  EXPECT_EQ(TextOf(host),
            "root\n"
            "└─ plate\n"
            "   └─ bolt\n");
}

TEST_F(TextHostRows, Remove_TakesTheRowAndAllBelowIt)
{
  const Instance hidden = Make("hidden", bolt);
  const Instance washer = Make("washer", hidden);
  Create(host, root);
  Create(host, plate);
  Create(host, bolt);
  Create(host, washer);
  Create(host, nut);
  const Instance other = Make("other", root);
  Create(host, other);

  host.InstanceRemove(plate, root, false);

  EXPECT_EQ(TextOf(host),
            "root\n"
            "└─ other\n");
  EXPECT_EQ(host.GetRowCount(), 2U);
}

TEST_F(TextHostRows, Remove_OfFirstMiddleAndLastSibling_KeepsTheOthersInOrder)
{
  Create(host, root);
  std::vector<Instance> children;
  for (const char* name : {"a", "b", "c", "d", "e"}) {
    children.push_back(Make(name, root));
    Create(host, children.back());
  }

  host.InstanceRemove(children[2], root, false);
  host.InstanceRemove(children[0], root, false);
  host.InstanceRemove(children[4], root, true);

  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ b\n"
            "└─ d\n");
}

TEST_F(TextHostRows, Remove_OfAnInstanceWithoutARow_DoesNothing)
{
  Create(host, root);

  host.InstanceRemove(bolt, plate, false);
  host.InstanceRemove({}, {}, false);

  EXPECT_EQ(TextOf(host), "root\n");
}

TEST_F(TextHostRows, Remove_OfARowAboveHiddenParents_SendsLaterRowsToTheNextAncestor)
{
  const Instance hidden = Make("hidden", plate);
  host.StartTreeUpdate();
  Create(host, root);
  Create(host, plate);
  Create(host, Make("first", hidden));

  host.InstanceRemove(plate, root, false);
  Create(host, Make("second", hidden));
  host.FinishTreeUpdate();

  EXPECT_EQ(TextOf(host),
            "root\n"
            "└─ second\n");
}

TEST_F(TextHostRows, ClearTree_TakesAllRows)
{
  Create(host, root);
  Create(host, plate);

  host.ClearTree();
  EXPECT_EQ(TextOf(host), "");

  Create(host, plate);
  EXPECT_EQ(TextOf(host), "plate\n");
}

TEST_F(TextHostRows, Brackets_NestAndAFinishWithoutAStartIsPassedOver)
{
  host.FinishTreeUpdate();
  EXPECT_FALSE(host.IsUpdating());

  host.StartTreeUpdate();
  host.StartTreeUpdate();
  host.FinishTreeUpdate();
  EXPECT_TRUE(host.IsUpdating());

  host.FinishTreeUpdate();
  EXPECT_FALSE(host.IsUpdating());
}

TEST_F(TextHostRows, Reset_TakesAllRowsAndEndsAllBrackets)
{
  host.StartTreeUpdate();
  Create(host, root);

  host.Reset();

  EXPECT_FALSE(host.IsUpdating());
  EXPECT_EQ(host.GetRowCount(), 0U);
}

TEST_F(TextHostRows, GetPath_LeadsFromTheTopToTheRow)
{
  Create(host, root);
  Create(host, plate);
  Create(host, bolt);

  EXPECT_EQ(host.GetPath(*bolt), (std::list<zelk::BaseInstance*>{root.Get(), plate.Get(), bolt.Get()}));
  EXPECT_TRUE(host.GetPath(*nut).empty());
}

TEST_F(TextHostRows, LongHiddenChain_IsClimbedOnce)
{
  // Each link has one shown child: climbing from every one to the root would take five thousand million steps.
  constexpr int length = 100'000;
  std::vector<Instance> instances{root};
  host.StartTreeUpdate();
  host.ClearTree();
  Create(host, root);
  Instance link = root;
  for (int number = 0; number < length; ++number) {
    link = Make("hidden", link);
    instances.push_back(link);
    instances.push_back(Make("shown", link));
    Create(host, instances.back());
  }
  host.FinishTreeUpdate();

  EXPECT_EQ(host.GetRowCount(), length + 1U);
  EXPECT_EQ(host.GetPath(*instances.back()).size(), 2U);
}

}  // namespace
