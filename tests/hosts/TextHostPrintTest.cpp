#include <gtest/gtest.h>

#include "TestInstance.h"
#include "TextOf.h"

namespace {

using hosttest::Create;
using hosttest::Instance;
using hosttest::Make;
using hosttest::TextOf;

class TextHostPrint : public testing::Test {
protected:
  void SetUp() override
  {
    for (const Instance& instance : {root, plate, bolt, nut, rod}) {
      Create(host, instance);
    }
  }

  texthost::TextHost host;
  const Instance root = Make("root");
  const Instance plate = Make("plate", root);
  const Instance bolt = Make("bolt", plate);
  const Instance nut = Make("nut", plate);
  const Instance rod = Make("rod", root);
};

TEST_F(TextHostPrint, Unicode_DrawsLinesBetweenSiblings)
{
  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ plate\n"
            "│  ├─ bolt\n"
            "│  └─ nut\n"
            "└─ rod\n");
}

TEST_F(TextHostPrint, Ascii_DrawsTheSameWithoutAByteBeyondAscii)
{
  EXPECT_EQ(TextOf(host, {.ascii = true}),
            "root\n"
            "|- plate\n"
            "|  |- bolt\n"
            "|  `- nut\n"
            "`- rod\n");
}

TEST_F(TextHostPrint, Depth_LeavesOutWhatIsBelowAndTellsHowManyChildrenThatHides)
{
  EXPECT_EQ(TextOf(host, {.depth = 1}),
            "root\n"
            "├─ plate [+2]\n"
            "└─ rod\n");
  EXPECT_EQ(TextOf(host, {.depth = 0}), "root [+2]\n");
  EXPECT_EQ(TextOf(host, {.depth = 2}), TextOf(host));
}

TEST_F(TextHostPrint, Color_MakesLinesPaleAndMarksStandOut)
{
  EXPECT_EQ(TextOf(host, {.color = true, .depth = 1}),
            "root\n"
            "\x1B[2m├─ \x1B[0mplate \x1B[33m[+2]\x1B[0m\n"
            "\x1B[2m└─ \x1B[0mrod\n");
}

TEST_F(TextHostPrint, Names_AreTheDisplayNameElseThatOfTheObjectElseUnnamed)
{
  plate->objectName = "base plate";
  bolt->displayName = "M8 bolt";
  nut->objectName = {};

  host.UpdateNodeNames();

  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ base plate\n"
            "│  ├─ M8 bolt\n"
            "│  └─ (unnamed)\n"
            "└─ rod\n");
}

TEST_F(TextHostPrint, Names_WithSeveralLinesStayOnOne)
{
  root->objectName = "first\nsecond\xFF";

  host.UpdateNodeNames();

  EXPECT_EQ(TextOf(host, {.depth = 0}), "first\\nsecond\uFFFD [+2]\n");
  EXPECT_EQ(TextOf(host, {.ascii = true, .depth = 0}), "first\\nsecond? [+2]\n");
}

TEST_F(TextHostPrint, Proxies_TellWhetherTheyAreOpen)
{
  bolt->isProxy = true;
  nut->isProxy = true;
  nut->isProxyExpanded = true;
  rod->isProxy = true;
  rod->hasProxyExpandFailed = true;

  host.UpdateNodeNames();

  EXPECT_EQ(TextOf(host),
            "root\n"
            "├─ plate\n"
            "│  ├─ bolt [not loaded]\n"
            "│  └─ nut\n"
            "└─ rod [failed]\n");
  rod->referencedFile = "rod\n.stp";
  host.CheckAndUpdateNodeNameAndType(rod);
  EXPECT_TRUE(TextOf(host).ends_with("└─ rod [failed: rod\\n.stp]\n"));
}

TEST_F(TextHostPrint, LevelsBeyondTheIndent_TellTheirNumber)
{
  std::vector<Instance> chain{rod};
  for (int level = 2; level <= 66; ++level) {
    chain.push_back(Make("link", chain.back()));
    Create(host, chain.back());
  }
  Create(host, Make("end", rod));

  const std::string text = TextOf(host);

  std::string indent = "   │  ";
  for (int level = 3; level < 64; ++level) {
    indent += "   ";
  }
  EXPECT_NE(text.find('\n' + indent + "└─ link\n" + indent + "└─ [level 65] link\n" + indent + "└─ [level 66] link\n"),
            std::string::npos)
      << text;
  EXPECT_TRUE(text.ends_with("   └─ end\n")) << text;
}

TEST_F(TextHostPrint, DeepChain_PrintsInLinesOfBoundedLength)
{
  constexpr int depth = 100'000;
  std::vector<Instance> chain{rod};
  for (int level = 2; level <= depth; ++level) {
    chain.push_back(Make("link", chain.back()));
    Create(host, chain.back());
  }

  const std::string text = TextOf(host);

  EXPECT_LT(text.size(), depth * 230U);
  EXPECT_TRUE(text.ends_with("[level 100000] link\n"));
  host.InstanceRemove(rod, root, false);
  EXPECT_EQ(host.GetRowCount(), 4U);
}

}  // namespace
