#include <gtest/gtest.h>

#include <map>
#include <string>

#include "TestInstance.h"
#include "TextOf.h"
#include "guitree/TypeIcon.h"
#include "guitree/TypeIconMap.h"

namespace {

using hosttest::Create;
using hosttest::Instance;
using hosttest::Make;
using texthost::TextHost;

/// The rows of a small panel, and the maps that a scene would bring.
class TextHostLook : public testing::Test {
protected:
  void SetUp() override
  {
    for (const Instance& instance : {root, bolt, nut}) {
      Create(host, instance);
    }
  }

  [[nodiscard]] std::string Text() const { return hosttest::TextOf(host, {.ascii = true, .states = true}); }
  void ShowScene() { host.UpdateVisAndTypeIcons(&visible, &icons); }
  /// The line of a row that stands alone in a panel with a scene.
  [[nodiscard]] static std::string ShowOne(const Instance& instance, guitree::VisibleState state, int icon)
  {
    TextHost one;
    Create(one, instance);
    TextHost::VisibleMap states;
    states[instance.Get()] = state;
    guitree::TypeIconMap iconMap(nullptr);
    iconMap.Set(instance.Get(), icon);
    one.UpdateVisAndTypeIcons(&states, &iconMap);
    return hosttest::TextOf(one, {.states = true});
  }

  TextHost host;
  TextHost::VisibleMap visible;
  TextHost::ChangeMap visibleChanges;
  guitree::TypeIconMap icons{nullptr};
  TextHost::ChangeMap iconChanges;
  const Instance root = Make("root");
  const Instance bolt = Make("bolt", root);
  const Instance nut = Make("nut", root);
};

TEST_F(TextHostLook, WithoutAScene_RowsCarryNoVisibleState)
{
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   `- nut\n");
}

TEST_F(TextHostLook, WithoutTheSwitch_NothingIsPrintedOfIt)
{
  const std::string before = hosttest::TextOf(host);
  visible[bolt.Get()] = guitree::VisibleStateVisible;
  icons.Set(bolt.Get(), 28);
  host.SetAssocHlight(nut.Get(), true);
  ShowScene();

  EXPECT_EQ(hosttest::TextOf(host), before);
}

TEST_F(TextHostLook, EachVisibleState_HasItsMark)
{
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateVisible, 0), "  [x]  bolt\n");
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateHidden, 0), "  [ ]  bolt\n");
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateVisibleMixed, 0), "  [-]  bolt\n");
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateHiddenMixed, 0), "  [-]  bolt\n");
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateVisibleAllChildren, 0), "  [x]  bolt\n");
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateHiddenAllChildren, 0), "  [x]  bolt\n");
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateThumbnailVisible, 0), "  [t]  bolt\n");
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateThumbnailHidden, 0), "  [_]  bolt\n");
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateNone, 0), "       bolt\n");
  EXPECT_EQ(ShowOne(bolt, static_cast<guitree::VisibleState>(9), 0), "  [?]  bolt\n");
}

TEST_F(TextHostLook, EachIcon_HasItsWordsLoadedOrNot)
{
  const std::map<int, std::string> words{
      {guitree::IconPlain, ""},
      {guitree::IconNoSource, " [no shape]"},
      {guitree::IconProxy, " [not loaded]"},
      {guitree::IconProxyNoShapeSource, " [proxy, no shape]"},
      {guitree::IconProxyShape, " [proxy]"},
      {guitree::IconProxyRejectedCopyrights, " [proxy, copyrights rejected]"},
      {guitree::IconProxyShapeFailed, " [proxy, shape failed]"},
      {guitree::IconProxyExpandFailed, " [failed]"},
      {guitree::IconThumbnail, " [thumbnail]"},
      {guitree::IconThumbnailOnly, " [thumbnail only]"},
      {guitree::IconComparedFirst, " [compared, first]"},
      {guitree::IconComparedOther, " [compared]"},
      {guitree::IconShapeFailed, " [shape failed]"},
      {guitree::IconRejectedCopyrights, " [copyrights rejected]"},
      {guitree::IconCollapsedSibling, " [collapsed]"},
      {guitree::IconCollapsedSiblingNoSource, " [collapsed, no shape]"},
      {guitree::IconCollapsedSiblingThumbnail, " [collapsed, thumbnail]"},
      {guitree::IconCollapsedSiblingThumbnailOnly, " [collapsed, thumbnail only]"},
      {guitree::IconCollapsedSiblingFailed, " [collapsed, shape failed]"},
      {guitree::IconCollapsedSiblingRejectedCopyrights, " [collapsed, copyrights rejected]"},
      {guitree::IconBody, " [body]"},
      {guitree::IconConstructionBody, " [construction body]"},
      {guitree::IconBodyNoShapeSource, " [body, no shape]"},
      {guitree::IconBodyFailed, " [body, shape failed]"},
      {guitree::IconConstructionBodyFailed, " [construction body, shape failed]"},
  };

  for (int icon = 0; icon <= guitree::IconConstructionBodyFailed + 2; icon += 2) {
    const auto known = words.find(icon);
    const std::string text = known != words.end() ? known->second : " [icon " + std::to_string(icon) + "]";
    EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateHidden, icon), "  [ ]  bolt" + text + "\n");
    EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateHidden, icon + 1), "  [ ]* bolt" + text + "\n");
  }
}

TEST_F(TextHostLook, OddIcons_AreLoadedFormsOfTheEvenOnesBelow)
{
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateVisible, 1), "  [x]* bolt\n");
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateVisible, 45), "  [x]* bolt [body]\n");
  EXPECT_EQ(ShowOne(bolt, guitree::VisibleStateVisible, -1), "  [x]* bolt [icon -2]\n");
}

TEST_F(TextHostLook, TheIcon_TakesThePlaceOfWhatIsKnownWithoutIt)
{
  bolt->isProxy = true;
  nut->hasProxyExpandFailed = true;
  nut->referencedFile = "nut.stp";
  host.UpdateNodeNames();
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt [not loaded]\n"
            "   `- nut [failed: nut.stp]\n");

  icons.Set(bolt.Get(), 9);
  icons.Set(nut.Get(), 16);
  ShowScene();

  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [ ]* |- bolt [proxy, no shape]\n"
            "  [ ]  `- nut [failed: nut.stp]\n");
}

TEST_F(TextHostLook, Repaint_ReadsEveryRowFromTheMapsAndWhatIsInNoneIsHidden)
{
  visible[root.Get()] = guitree::VisibleStateHiddenMixed;
  visible[bolt.Get()] = guitree::VisibleStateVisible;
  icons.Set(bolt.Get(), 1);
  ShowScene();
  EXPECT_EQ(Text(),
            "  [-]  root\n"
            "  [x]* |- bolt\n"
            "  [ ]  `- nut\n");

  visible.clear();
  icons.Clear();
  ShowScene();

  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [ ]  |- bolt\n"
            "  [ ]  `- nut\n");
}

TEST_F(TextHostLook, RepaintWithoutMaps_TakesAllStates)
{
  visible[bolt.Get()] = guitree::VisibleStateVisible;
  icons.Set(bolt.Get(), 29);
  ShowScene();

  host.UpdateVisAndTypeIcons(nullptr, nullptr);

  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   `- nut\n");
}

TEST_F(TextHostLook, Changes_RepaintTheirRowsFromTheWholeMapsAndNoOthers)
{
  ShowScene();
  visible[bolt.Get()] = guitree::VisibleStateVisible;
  visible[nut.Get()] = guitree::VisibleStateVisible;
  visibleChanges[bolt.Get()] = 18;
  icons.Set(nut.Get(), 3);
  icons.Set(bolt.Get(), 1);
  iconChanges[nut.Get()] = 2;

  host.UpdateVisAndTypeIconChanges(&visible, &visibleChanges, &icons, &iconChanges);

  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [x]  |- bolt\n"
            "  [ ]* `- nut [no shape]\n");
}

TEST_F(TextHostLook, ChangesToHidden_AreTakenFromWhatIsInTheMapNoMore)
{
  visible[bolt.Get()] = guitree::VisibleStateVisible;
  ShowScene();
  visible.erase(bolt.Get());
  visibleChanges[bolt.Get()] = 33;

  host.UpdateVisAndTypeIconChanges(&visible, &visibleChanges, &icons, &iconChanges);

  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [ ]  |- bolt\n"
            "  [ ]  `- nut\n");
}

TEST_F(TextHostLook, ChangedIconThatIsInTheMapNoMore_IsTheOneOfTheChange)
{
  ShowScene();
  iconChanges[bolt.Get()] = 28;

  host.UpdateVisAndTypeIconChanges(&visible, nullptr, &icons, &iconChanges);
  iconChanges[nut.Get()] = 30;
  host.UpdateVisAndTypeIconChanges(&visible, nullptr, nullptr, &iconChanges);

  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [ ]  |- bolt [shape failed]\n"
            "  [ ]  `- nut [copyrights rejected]\n");
}

TEST_F(TextHostLook, ChangesOfInstancesWithoutARow_ChangeNothing)
{
  const Instance other = Make("other", root);
  ShowScene();
  const std::string before = Text();
  visible[other.Get()] = guitree::VisibleStateVisible;
  visibleChanges[other.Get()] = 18;
  iconChanges[other.Get()] = 28;

  host.UpdateVisAndTypeIconChanges(&visible, &visibleChanges, &icons, &iconChanges);
  EXPECT_EQ(Text(), before);

  Create(host, other);
  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [ ]  |- bolt\n"
            "  [ ]  |- nut\n"
            "  [ ]  `- other\n");
}

TEST_F(TextHostLook, NoMap_IsKeptBeyondTheCall)
{
  {
    TextHost::VisibleMap passing;
    passing[bolt.Get()] = guitree::VisibleStateVisible;
    guitree::TypeIconMap passingIcons(nullptr);
    passingIcons.Set(bolt.Get(), 1);
    host.UpdateVisAndTypeIcons(&passing, &passingIcons);
    passing.clear();
    passingIcons.Clear();
  }

  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [x]* |- bolt\n"
            "  [ ]  `- nut\n");
}

TEST_F(TextHostLook, ClearTree_EndsAllStates)
{
  visible[root.Get()] = guitree::VisibleStateVisible;
  ShowScene();
  host.SetAssocHlight(root.Get(), true);

  host.ClearTree();
  Create(host, root);

  EXPECT_EQ(Text(), "   root\n");
}

TEST_F(TextHostLook, Placeholders_StandBehindBlankMarks)
{
  guitree::FilteredTree::Node node{.instance = bolt.Get()};
  host.FilterNodeCreate(&node);
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   |  `- ...\n"
            "   `- nut\n");

  ShowScene();

  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [ ]  |- bolt\n"
            "       |  `- ...\n"
            "  [ ]  `- nut\n");
}

TEST_F(TextHostLook, Legend_NamesEveryMark)
{
  const std::string legend(texthost::GetLegend());

  for (const char* mark : {">  ", "~  ", "[x]", "[ ]", "[-]", "[t]", "[_]", "[?]", "*  "}) {
    EXPECT_NE(('\n' + legend).find('\n' + std::string(mark)), std::string::npos) << mark;
  }
  EXPECT_TRUE(legend.ends_with('\n'));
}

}  // namespace
