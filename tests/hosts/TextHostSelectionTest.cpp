#include <gtest/gtest.h>

#include "TestInstance.h"
#include "TextOf.h"
#include "memkernel/World.h"
#include "testsupport/ScriptedSelectionController.h"
#include "zelk/ObjectSelectionItem.h"

namespace {

using hosttest::Instance;
using hosttest::Make;
using testsupport::ScriptedSelectionController;

using Items = std::vector<du::SmartPtr<zelk::Object>>;

class TextHostSelection : public testing::Test {
protected:
  void SetUp() override
  {
    for (const Instance& instance : {root, bolt, nut}) {
      hosttest::Create(host, instance);
    }
  }

  [[nodiscard]] std::string Text() const { return hosttest::TextOf(host, {.ascii = true, .states = true}); }
  void Select(Items items) { host.SelectItems(items); }
  void Deselect(Items items) { host.DeselectItems(items); }

  texthost::TextHost host;
  const Instance root = Make("root");
  const Instance bolt = Make("bolt", root);
  const Instance nut = Make("nut", root);
};

TEST_F(TextHostSelection, Items_SelectTheirRows)
{
  Select({bolt, nut});
  EXPECT_EQ(Text(),
            "   root\n"
            ">  |- bolt\n"
            ">  `- nut\n");

  Deselect({bolt});
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            ">  `- nut\n");

  host.ClearSelection();
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   `- nut\n");
}

TEST_F(TextHostSelection, ItemsOfAScene_SelectTheRowsOfTheirInstances)
{
  const auto world = du::MakeSmart<memkernel::World>(1U);
  memkernel::Tree& tree = world->GetMemTree();
  const auto part =
      tree.CreateRoot(tree.CreateProduct({.name = "part", .shape = du::MakeSmart<memkernel::Shape>(nullptr)}));
  const auto scene = world->CreateShapeScene();
  const auto presence = scene->CreateShapeInstance(part);
  hosttest::Create(host, root);
  host.InstanceCreate(part, root, {}, false);

  Select({presence});
  EXPECT_TRUE(Text().ends_with(">  `- part\n"));

  Deselect({presence});
  EXPECT_TRUE(Text().ends_with("   `- part\n"));
}

TEST_F(TextHostSelection, ItemsOfNoRow_ArePassedOver)
{
  const Instance other = Make("other", root);
  const std::string before = Text();

  Select({nullptr, other, du::MakeSmart<zelk::ObjectSelectionItem>(bolt)});
  EXPECT_EQ(Text(), before);

  Deselect({nullptr, other});
  hosttest::Create(host, other);
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   |- nut\n"
            "   `- other\n");
}

TEST_F(TextHostSelection, NewRow_AsksTheControllerWhetherItIsSelected)
{
  const auto controller = du::MakeSmart<ScriptedSelectionController>();
  const Instance first = Make("first", root);
  const Instance second = Make("second", root);
  controller->selected = {second};
  guitree::FilteredTree::Node node{.instance = second.Get()};

  host.InstanceCreate(first, root, controller, true);
  host.InstanceCreate(&node, controller, false);

  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   |- nut\n"
            " ~ `- first\n"
            ">  second\n");
}

TEST_F(TextHostSelection, RowThatComesAgain_IsReadAnew)
{
  const auto controller = du::MakeSmart<ScriptedSelectionController>();
  Select({bolt});
  host.SetAssocHlight(bolt.Get(), true);

  host.InstanceCreate(bolt, root, controller, false);

  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   `- nut\n");
}

TEST_F(TextHostSelection, RemovedRow_TakesItsMarksAlong)
{
  Select({bolt, nut});
  host.SetAssocHlight(bolt.Get(), true);

  host.InstanceRemove(root, {}, false);
  hosttest::Create(host, root);
  hosttest::Create(host, bolt);

  EXPECT_EQ(Text(),
            "   root\n"
            "   `- bolt\n");
}

TEST_F(TextHostSelection, AssociatedHighlight_IsAMarkOfItsOwn)
{
  Select({bolt});

  EXPECT_TRUE(host.SetAssocHlight(bolt.Get(), true));
  EXPECT_TRUE(host.SetAssocHlight(nut.Get(), true));
  EXPECT_TRUE(host.SetAssocHlight(nut.Get(), false));
  EXPECT_FALSE(host.SetAssocHlight(Make("other").Get(), true));

  EXPECT_EQ(Text(),
            "   root\n"
            ">~ |- bolt\n"
            "   `- nut\n");
}

TEST_F(TextHostSelection, RefreshWithoutAPanel_LeavesTheSelection)
{
  Select({bolt});
  const std::string before = Text();

  host.RefreshSelection();
  host.MadeVisible(true);

  EXPECT_EQ(Text(), before);
}

TEST_F(TextHostSelection, NamesAndTypes_ChangeWhenTheHostIsTold)
{
  bolt->displayName = "M8";
  nut->displayName = "hexagon";
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   `- nut\n");

  EXPECT_FALSE(host.CheckAndUpdateNodeNameAndType(bolt));
  EXPECT_FALSE(host.CheckAndUpdateNodeNameAndType(Make("other")));
  EXPECT_FALSE(host.CheckAndUpdateNodeNameAndType({}));
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- M8\n"
            "   `- nut\n");

  host.UpdateDisplayNames();
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- M8\n"
            "   `- hexagon\n");
}

}  // namespace
