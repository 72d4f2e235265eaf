#include "guitree/SceneInfoLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"

namespace {

using namespace guitree;  // NOLINT(google-build-using-namespace): the states are many
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testsupport::Panel;

class SceneInfoLogTest : public testing::Test {
protected:
  [[nodiscard]] zelk::BaseInstance* Get(const std::string& name) const { return panel.kernel[name].Get(); }
  [[nodiscard]] VisibleState GetState(const std::string& name) { return log.GetCompVisibleState(panel.kernel[name]); }
  /// Old and new state of a change, as the map holds it.
  [[nodiscard]] static int MakeWord(VisibleState before, VisibleState after) { return after * 16 + before; }

  void ShowAll(const std::vector<std::string>& names)
  {
    for (const auto& name : names) {
      log.SetVisible(Get(name), CompVisible, true);
    }
  }

  Panel panel{"root[a[b c] d]"};
  SceneInfoLog log{panel.gui.Get()};
};

TEST_F(SceneInfoLogTest, WithoutASceneThereIsNoShapeScene)
{
  EXPECT_EQ(log.GetScene(), nullptr);
  EXPECT_EQ(log.GetShapeScene(), nullptr);
}

TEST_F(SceneInfoLogTest, AnInstanceInNoMapReadsHidden)
{
  EXPECT_EQ(GetState("b"), VisibleStateHidden);
  EXPECT_EQ(log.IsCompVisible(panel.kernel["b"]), CompHidden);
  EXPECT_EQ(log.GetCompVisibleState(nullptr), VisibleStateHidden);
}

TEST_F(SceneInfoLogTest, IsCompVisible_ReadsTheInstancesOwnPartOfAState)
{
  const std::pair<VisibleState, ECompVisible> table[] = {
      {VisibleStateNone, CompHidden},
      {VisibleStateVisible, CompVisible},
      {VisibleStateHidden, CompHidden},
      {VisibleStateVisibleMixed, CompVisible},
      {VisibleStateHiddenMixed, CompHidden},
      {VisibleStateVisibleAllChildren, CompVisible},
      {VisibleStateHiddenAllChildren, CompHidden},
      {VisibleStateThumbnailVisible, CompThumbnailVisible},
      {VisibleStateThumbnailHidden, CompThumbnailHidden},
  };
  for (const auto& [state, visible] : table) {
    log.SetVisible(Get("b"), state);
    EXPECT_EQ(log.IsCompVisible(panel.kernel["b"]), visible) << state;
  }
}

TEST_F(SceneInfoLogTest, ALeafReadsPlainVisibleOrPlainHidden)
{
  log.SetVisible(Get("b"), CompVisible, false);
  EXPECT_EQ(GetState("b"), VisibleStateVisible);

  log.SetVisible(Get("b"), CompHidden, false);
  EXPECT_EQ(GetState("b"), VisibleStateHidden);
}

TEST_F(SceneInfoLogTest, Thumbnails_DoNotLookAtChildren)
{
  ShowAll({"b", "c"});

  log.SetVisible(Get("a"), CompThumbnailVisible, false);
  EXPECT_EQ(GetState("a"), VisibleStateThumbnailVisible);

  log.SetVisible(Get("a"), CompThumbnailHidden, false);
  EXPECT_EQ(GetState("a"), VisibleStateThumbnailHidden);
}

TEST_F(SceneInfoLogTest, AParentReadsWhatItsChildrenSay)
{
  struct Row {
    VisibleState b;
    VisibleState c;
    VisibleState visibleParent;
  };
  const Row table[] = {
      {VisibleStateHidden, VisibleStateHidden, VisibleStateVisible},
      {VisibleStateVisible, VisibleStateVisible, VisibleStateVisibleAllChildren},
      {VisibleStateVisibleAllChildren, VisibleStateHiddenAllChildren, VisibleStateVisibleAllChildren},
      {VisibleStateThumbnailVisible, VisibleStateVisible, VisibleStateVisibleAllChildren},
      {VisibleStateVisible, VisibleStateHidden, VisibleStateVisibleMixed},
      {VisibleStateHidden, VisibleStateVisible, VisibleStateVisibleMixed},
      {VisibleStateVisibleMixed, VisibleStateHidden, VisibleStateVisibleMixed},
      {VisibleStateHidden, VisibleStateHiddenMixed, VisibleStateVisibleMixed},
      {VisibleStateVisible, VisibleStateThumbnailHidden, VisibleStateVisibleMixed},
      {VisibleStateNone, VisibleStateVisible, VisibleStateVisibleAllChildren},
      {VisibleStateNone, VisibleStateHidden, VisibleStateVisible},
  };
  for (const Row& row : table) {
    log.SetVisible(Get("b"), row.b);
    log.SetVisible(Get("c"), row.c);

    log.SetVisible(Get("a"), CompVisible, false);
    EXPECT_EQ(GetState("a"), row.visibleParent) << row.b << ' ' << row.c;
    log.SetVisible(Get("a"), CompHidden, false);
    EXPECT_EQ(GetState("a"), row.visibleParent + 1) << row.b << ' ' << row.c;
  }
}

TEST_F(SceneInfoLogTest, A3dSymbolIsLeftOutOfItsParent)
{
  ShowAll({"b"});
  ASSERT_TRUE(panel.kernel.Get()->SetFlags(panel.kernel["c"], memkernel::Instance3dSymbol, true));

  log.SetVisible(Get("a"), CompVisible, false);

  EXPECT_EQ(GetState("a"), VisibleStateVisibleAllChildren);
}

TEST_F(SceneInfoLogTest, AChangeClimbsAsFarAsLevelsChange)
{
  ShowAll({"b"});

  EXPECT_EQ(GetState("a"), VisibleStateHiddenMixed);
  EXPECT_EQ(GetState("root"), VisibleStateHiddenMixed);

  log.ClearVisibleChangeMap();
  ShowAll({"c"});
  EXPECT_EQ(GetState("a"), VisibleStateHiddenAllChildren);
  EXPECT_EQ(GetState("root"), VisibleStateHiddenMixed);
  EXPECT_THAT(
      log.GetVisibleChangeMap(),
      testing::UnorderedElementsAre(Pair(Get("c"), MakeWord(VisibleStateHidden, VisibleStateVisible)),
                                    Pair(Get("a"), MakeWord(VisibleStateHiddenMixed, VisibleStateHiddenAllChildren))));
}

TEST_F(SceneInfoLogTest, WithoutPropagation_TheParentsStay)
{
  log.SetVisible(Get("b"), CompVisible, false);

  EXPECT_EQ(GetState("a"), VisibleStateHidden);
}

TEST_F(SceneInfoLogTest, ADeepTreeIsClimbedWithoutRecursion)
{
  const testsupport::NamedTree deep("top");
  auto leaf = deep["top"];
  const auto product = deep.Get()->CreateProduct({.name = "level"});
  constexpr int depth = 200'000;
  for (int i = 0; i < depth; ++i) {
    leaf = deep.Get()->AddChild(leaf, product);
  }

  log.SetVisible(leaf.Get(), CompVisible, true);

  EXPECT_EQ(log.GetCompVisibleState(deep["top"]), VisibleStateHiddenAllChildren);
}

TEST_F(SceneInfoLogTest, TheStateThatAnInstanceHas_ChangesNothing)
{
  EXPECT_TRUE(log.SetVisible(Get("b"), VisibleStateVisible));
  EXPECT_FALSE(log.SetVisible(Get("b"), VisibleStateVisible));
  log.ClearVisibleChangeMap();

  EXPECT_FALSE(log.SetVisible(Get("b"), VisibleStateVisible));

  EXPECT_THAT(log.GetVisibleChangeMap(), IsEmpty());
  EXPECT_THAT(log.GetVisibleMap(), ElementsAre(Pair(Get("b"), VisibleStateVisible)));
}

TEST_F(SceneInfoLogTest, PlainHiddenForAnUnknownInstance_AddsNothing)
{
  EXPECT_FALSE(log.SetVisible(Get("b"), VisibleStateHidden));

  EXPECT_THAT(log.GetVisibleMap(), IsEmpty());
  EXPECT_THAT(log.GetVisibleChangeMap(), IsEmpty());
}

TEST_F(SceneInfoLogTest, ANullInstanceEntersNoMap)
{
  EXPECT_FALSE(log.SetVisible(nullptr, VisibleStateVisible));
  log.SetVisible(nullptr, CompVisible, true);
  log.ForceVisibleToHidden(nullptr);
  log.RemoveFromLog(nullptr);
  log.MarkTypeIconChanged(nullptr);
  log.SetCompared(nullptr, true, true);

  EXPECT_FALSE(log.SetLoaded(nullptr, true));
  EXPECT_EQ(log.GetUnloadedTypeIcon(nullptr), -1);
  EXPECT_THAT(log.GetVisibleMap(), IsEmpty());
  EXPECT_THAT(log.GetVisibleChangeMap(), IsEmpty());
  EXPECT_EQ(log.GetTypeIconMap().size(), 0u);
  EXPECT_THAT(log.GetTypeIconChangeMap(), IsEmpty());
}

TEST_F(SceneInfoLogTest, HiddenAndShownAgainInOneBatch_LeavesNoChange)
{
  log.SetVisible(Get("b"), VisibleStateVisible);
  log.ClearVisibleChangeMap();

  EXPECT_TRUE(log.SetVisible(Get("b"), VisibleStateHidden));
  EXPECT_TRUE(log.SetVisible(Get("b"), VisibleStateVisible));

  EXPECT_THAT(log.GetVisibleChangeMap(), IsEmpty());
  EXPECT_EQ(GetState("b"), VisibleStateVisible);
}

TEST_F(SceneInfoLogTest, SeveralChangesInOneBatch_KeepTheStateAtItsStart)
{
  log.SetVisible(Get("b"), VisibleStateVisible);
  log.SetVisible(Get("b"), VisibleStateThumbnailVisible);

  EXPECT_THAT(log.GetVisibleChangeMap(),
              ElementsAre(Pair(Get("b"), MakeWord(VisibleStateHidden, VisibleStateThumbnailVisible))));
}

TEST_F(SceneInfoLogTest, RemoveFromLog_KeepsTheChangesThatWaitForDelivery)
{
  log.SetVisible(Get("b"), VisibleStateVisible);
  log.SetLoaded(Get("b"), true);

  log.RemoveFromLog(Get("b"));

  EXPECT_THAT(log.GetVisibleMap(), IsEmpty());
  EXPECT_EQ(log.GetTypeIconMap().size(), 0u);
  EXPECT_EQ(log.GetVisibleChangeMap().size(), 1u);
  EXPECT_EQ(log.GetTypeIconChangeMap().size(), 1u);
}

TEST_F(SceneInfoLogTest, AfterRemoveFromLog_TheSameStateInTheSameBatchIsSwallowed)
{
  log.SetVisible(Get("b"), VisibleStateVisible);
  log.RemoveFromLog(Get("b"));

  EXPECT_FALSE(log.SetVisible(Get("b"), VisibleStateVisible));

  EXPECT_EQ(GetState("b"), VisibleStateHidden);
}

TEST_F(SceneInfoLogTest, ForceVisibleToHidden_LeavesTheParents)
{
  ShowAll({"b", "c"});

  log.ForceVisibleToHidden(Get("b"));

  EXPECT_EQ(GetState("b"), VisibleStateHidden);
  EXPECT_EQ(GetState("a"), VisibleStateHiddenAllChildren);
}

TEST_F(SceneInfoLogTest, SetLoaded_SwitchesTheLowestBit)
{
  panel.state->unloadedTypeIcon = 28;

  EXPECT_FALSE(log.SetLoaded(Get("b"), false));
  EXPECT_TRUE(log.SetLoaded(Get("b"), true));
  EXPECT_FALSE(log.SetLoaded(Get("b"), true));

  EXPECT_EQ(log.GetUnloadedTypeIcon(Get("b")), 28);
  EXPECT_THAT(log.GetTypeIconChangeMap(), ElementsAre(Pair(Get("b"), 29)));
}

TEST_F(SceneInfoLogTest, SetLoaded_BackAndForthInOneBatch_LeavesNoChange)
{
  log.SetLoaded(Get("b"), true);
  log.SetLoaded(Get("b"), false);

  EXPECT_THAT(log.GetTypeIconChangeMap(), IsEmpty());
}

TEST_F(SceneInfoLogTest, ANegativeOddIconCountsAsLoaded)
{
  panel.state->unloadedTypeIcon = -1;

  EXPECT_FALSE(log.SetLoaded(Get("b"), true));
  EXPECT_TRUE(log.SetLoaded(Get("b"), false));

  EXPECT_EQ(log.GetUnloadedTypeIcon(Get("b")), -2);
}

TEST_F(SceneInfoLogTest, MarkTypeIconChanged_CountsWhatWasUnknownOrDiffers)
{
  log.MarkTypeIconChanged(Get("b"));
  EXPECT_THAT(log.GetTypeIconChangeMap(), ElementsAre(Pair(Get("b"), 0)));

  log.ClearTypeIconChangeMap();
  log.MarkTypeIconChanged(Get("b"));
  EXPECT_THAT(log.GetTypeIconChangeMap(), IsEmpty());

  panel.state->unloadedTypeIcon = 6;
  log.MarkTypeIconChanged(Get("b"));
  EXPECT_THAT(log.GetTypeIconChangeMap(), ElementsAre(Pair(Get("b"), 6)));
}

TEST_F(SceneInfoLogTest, MarkTypeIconChanged_OverwritesWhereOthersToggle)
{
  log.MarkTypeIconChanged(Get("b"));
  panel.state->unloadedTypeIcon = 6;

  log.MarkTypeIconChanged(Get("b"));

  EXPECT_THAT(log.GetTypeIconChangeMap(), ElementsAre(Pair(Get("b"), 6)));
}

TEST_F(SceneInfoLogTest, SetCompared_StoresTheIconWithoutItsLoadedBitAndToggles)
{
  panel.state->loaded = {Get("b")};
  panel.state->unloadedTypeIcon = 24;

  log.SetCompared(Get("b"), true, true);
  int icon = 0;
  ASSERT_TRUE(log.GetTypeIconMap()._Get(Get("b"), icon));
  EXPECT_EQ(icon, 24);
  EXPECT_THAT(log.GetTypeIconChangeMap(), ElementsAre(Pair(Get("b"), 24)));

  log.SetCompared(Get("b"), false, false);
  EXPECT_THAT(log.GetTypeIconChangeMap(), IsEmpty());
}

TEST_F(SceneInfoLogTest, Initialise_EmptiesAllMaps)
{
  log.SetVisible(Get("b"), VisibleStateVisible);
  log.SetLoaded(Get("b"), true);

  log.Initialise(nullptr);

  EXPECT_THAT(log.GetVisibleMap(), IsEmpty());
  EXPECT_THAT(log.GetVisibleChangeMap(), IsEmpty());
  EXPECT_EQ(log.GetTypeIconMap().size(), 0u);
  EXPECT_THAT(log.GetTypeIconChangeMap(), IsEmpty());
}

TEST_F(SceneInfoLogTest, Destroy_KeepsTheMaps)
{
  log.SetVisible(Get("b"), VisibleStateVisible);

  log.Destroy();

  EXPECT_EQ(log.GetVisibleMap().size(), 1u);
  EXPECT_EQ(log.GetScene(), nullptr);
}

TEST_F(SceneInfoLogTest, AfterDestroy_NobodyIsAskedForAnIcon)
{
  log.Destroy();
  panel.state->calls.clear();

  EXPECT_EQ(log.GetUnloadedTypeIcon(Get("b")), -1);
  EXPECT_FALSE(log.SetLoaded(Get("b"), true));
  log.MarkTypeIconChanged(Get("b"));
  log.SetCompared(Get("b"), true, true);

  EXPECT_THAT(panel.state->calls, IsEmpty());
  EXPECT_THAT(log.GetTypeIconChangeMap(), IsEmpty());
}

TEST_F(SceneInfoLogTest, ResetTypeIconMap_ForgetsTheIcons)
{
  log.SetLoaded(Get("b"), true);

  log.ResetTypeIconMap();

  EXPECT_EQ(log.GetTypeIconMap().size(), 0u);
}

}  // namespace
