#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/ShownScene.h"
#include "testsupport/WorldPanel.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testsupport::ShownScene;
using testsupport::WorldPanel;

using Lines = std::vector<std::string>;

/// The callbacks of the observer that the kernel's tree knows, each by itself, on a filled panel that shows a scene.
/// What the host and the log of the scene are told is in one list.
class TreeObserver : public testing::Test {
protected:
  struct Filled : WorldPanel {
    Filled() : WorldPanel("root[a b]") { Initialise(); }
  };

  TreeObserver()
  {
    // An icon that is known and does not change is no news.
    shown.log->MarkTypeIconChanged(a.Get());
    shown.log->ClearTypeIconChangeMap();
    static_cast<void>(shown.TakeLines());
  }

  [[nodiscard]] guitree::WorldTreeStateTreeObserver& GetObserver() const { return *panel.observer; }
  [[nodiscard]] static du::SmartPtr<zelk::ViewableData> MakeViewable(const du::SmartPtr<zelk::Object>& viewable)
  {
    const auto data = du::MakeSmart<zelk::ViewableData>();
    data->viewable = viewable;
    return data;
  }
  /// What the end of the update tells.
  [[nodiscard]] Lines End()
  {
    static_cast<void>(shown.TakeLines());
    GetObserver().OnEndUpdate();
    return shown.TakeLines();
  }

  Filled panel;
  ShownScene shown{panel};
  const du::SmartPtr<memkernel::Instance> a = panel.kernel["a"];
  /// Has no row.
  const du::SmartPtr<memkernel::Instance> outside = testsupport::NamedTree("outside")["outside"];
  const Lines untold{};
  const Lines plainEnd{"FinishTreeUpdate()", "UpdateFilterUI()",        "ContentHasChanged()",
                       "UpdateTreeTable()",  "ClearVisibleChangeMap()", "ClearTypeIconChangeMap()"};
  const Lines endWithNames{"FinishTreeUpdate()",      "UpdateFilterUI()",  "ContentHasChanged()",
                           "UpdateNodeNames()",       "UpdateTreeTable()", "ClearVisibleChangeMap()",
                           "ClearTypeIconChangeMap()"};
};

TEST_F(TreeObserver, TellsItsClassItsStateAndItsTree)
{
  EXPECT_EQ(GetObserver().GetObjectClass(), "guitree::WorldTreeStateTreeObserver");
  EXPECT_EQ(GetObserver().GetTreeState(), panel.state.Get());
  EXPECT_EQ(GetObserver().GetTree(), panel.kernel.Get());
}

TEST_F(TreeObserver, OnDestroy_DoesNothing)
{
  GetObserver().OnDestroy();

  EXPECT_EQ(GetObserver().GetTreeState(), panel.state.Get());
  EXPECT_EQ(shown.TakeLines(), untold);
}

TEST_F(TreeObserver, EventsOfNoInterest_AreLeftAlone)
{
  zelk::TreeObserver& observer = GetObserver();
  observer.OnBeginUpdate();
  observer.OnAddPropertyGroup("group");
  observer.OnRemovePropertyGroup("group");
  observer.OnInstancePropertiesChanged(a);
  observer.OnModelExtentsChanged();
  observer.OnUDAPChanged(a);
  observer.OnInstanceLocation(a);
  observer.OnInstanceAppearanceOverride(a);
  observer.OnInstanceSbomChanged(a);
  observer.OnStructureAdded(a);

  EXPECT_EQ(shown.TakeLines(), untold);
  EXPECT_EQ(End(), untold);
}

TEST_F(TreeObserver, Create_CleansTheLogsBeforeTheRowIsMade)
{
  const auto n = panel.kernel.Add("a", "n");

  EXPECT_THAT(
      shown.TakeLines(),
      ElementsAre("RemoveFromLog(n)", "StartTreeUpdate()", "InstanceCreate(n, parent=a, controller=no, assoc=false)",
                  "SetVisible(a, 0, propagate)", "FinishTreeUpdate()", "UpdateFilterUI()", "ContentHasChanged()",
                  "UpdateTreeTable()", "ClearVisibleChangeMap()", "ClearTypeIconChangeMap()"));
}

TEST_F(TreeObserver, CreateWhileARefillIsDue_StillCleansTheLogs)
{
  GetObserver().SetRepopulateNeeded();

  GetObserver().OnInstanceCreate(outside, a, {});

  EXPECT_THAT(shown.TakeLines(), ElementsAre("RemoveFromLog(outside)"));
}

TEST_F(TreeObserver, Remove_IsHandedToTheBurst)
{
  GetObserver().OnInstanceRemove(a, panel.kernel["root"]);

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "InstanceRemove(a, parent=root, repopulatePending=false)",
                          "SetVisible(root, 0, propagate)"));
  EXPECT_TRUE(GetObserver().GetRepopulateNeeded());
}

TEST_F(TreeObserver, Name_IsHandedToTheBurst)
{
  GetObserver().OnInstanceName(a);

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "MarkTypeIconChanged(a)", "CheckAndUpdateNodeNameAndType(a) -> false"));
  EXPECT_EQ(End(), plainEnd);
}

TEST_F(TreeObserver, Expanded_UpdatesTheRowThenTheVisibilityAndAsksForNames)
{
  GetObserver().OnInstanceExpanded(a);

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "MarkTypeIconChanged(a)", "CheckAndUpdateNodeNameAndType(a) -> false",
                          "SetVisible(a, 0, propagate)"));
  EXPECT_FALSE(GetObserver().GetRepopulateNeeded());
  EXPECT_EQ(End(), endWithNames);
}

TEST_F(TreeObserver, ExpandedThatTheHostCannotShow_AsksForARefillAndGoesOn)
{
  panel.host.answers.checkAndUpdateNodeNameAndType = true;

  GetObserver().OnInstanceExpanded(a);

  EXPECT_TRUE(GetObserver().GetRepopulateNeeded());
  EXPECT_THAT(shown.TakeLines(), Contains("SetVisible(a, 0, propagate)"));
}

TEST_F(TreeObserver, ExpandedWhileARefillIsDue_OnlyMarksTheIcon)
{
  GetObserver().SetRepopulateNeeded();

  GetObserver().OnInstanceExpanded(a);

  EXPECT_THAT(shown.TakeLines(), ElementsAre("MarkTypeIconChanged(a)"));
}

TEST_F(TreeObserver, ExpandedWithoutARow_OpensTheBracketAllTheSame)
{
  panel.host.answers.checkAndUpdateNodeNameAndType = true;

  GetObserver().OnInstanceExpanded(outside);

  EXPECT_THAT(shown.TakeLines(), ElementsAre("StartTreeUpdate()", "SetVisible(outside, 0, propagate)"));
  EXPECT_FALSE(GetObserver().GetRepopulateNeeded());
  EXPECT_EQ(End(), endWithNames);
}

TEST_F(TreeObserver, Collapsed_HidesTheInstanceFirstThenUpdatesTheRowAndAsksForNames)
{
  GetObserver().OnInstanceCollapsed(a);

  EXPECT_THAT(shown.TakeLines(), ElementsAre("ForceVisibleToHidden(a)", "StartTreeUpdate()", "MarkTypeIconChanged(a)",
                                             "CheckAndUpdateNodeNameAndType(a) -> false"));
  EXPECT_FALSE(GetObserver().GetRepopulateNeeded());
  EXPECT_EQ(End(), endWithNames);
}

TEST_F(TreeObserver, CollapsedThatTheHostCannotShow_AsksForARefill)
{
  panel.host.answers.checkAndUpdateNodeNameAndType = true;

  GetObserver().OnInstanceCollapsed(a);

  EXPECT_TRUE(GetObserver().GetRepopulateNeeded());
}

TEST_F(TreeObserver, CollapsedWhileARefillIsDue_HidesTheInstanceAllTheSameUnlikeAnExpansion)
{
  GetObserver().SetRepopulateNeeded();

  GetObserver().OnInstanceCollapsed(a);

  EXPECT_THAT(shown.TakeLines(), ElementsAre("ForceVisibleToHidden(a)", "MarkTypeIconChanged(a)"));
}

TEST_F(TreeObserver, CollapsedWithoutARow_OpensTheBracketAllTheSame)
{
  panel.host.answers.checkAndUpdateNodeNameAndType = true;

  GetObserver().OnInstanceCollapsed(outside);

  EXPECT_THAT(shown.TakeLines(), ElementsAre("ForceVisibleToHidden(outside)", "StartTreeUpdate()"));
  EXPECT_FALSE(GetObserver().GetRepopulateNeeded());
}

TEST_F(TreeObserver, ProxyToNodeThatTheHostCannotShow_AsksOnlyForTheBracketAndForNoRefill)
{
  panel.host.answers.checkAndUpdateNodeNameAndType = true;

  GetObserver().OnInstanceProxyToNode(a);

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("MarkTypeIconChanged(a)", "CheckAndUpdateNodeNameAndType(a) -> true", "StartTreeUpdate()"));
  EXPECT_FALSE(GetObserver().GetRepopulateNeeded());
  EXPECT_EQ(End(), plainEnd);
}

TEST_F(TreeObserver, ProxyToNodeThatTheHostHasShown_OpensNoBracket)
{
  GetObserver().OnInstanceProxyToNode(a);

  EXPECT_THAT(shown.TakeLines(), ElementsAre("MarkTypeIconChanged(a)", "CheckAndUpdateNodeNameAndType(a) -> false"));
  EXPECT_EQ(End(), untold);
}

TEST_F(TreeObserver, ProxyToNodeWithoutARowOrWhileARefillIsDue_DoesNothing)
{
  panel.host.answers.checkAndUpdateNodeNameAndType = true;
  GetObserver().OnInstanceProxyToNode(outside);
  GetObserver().SetRepopulateNeeded();
  GetObserver().OnInstanceProxyToNode(a);

  EXPECT_EQ(shown.TakeLines(), untold);
}

TEST_F(TreeObserver, ViewableThatComesOrGoes_UpdatesTheRowAndAsksForNoNames)
{
  GetObserver().OnInstanceAddViewable(a, MakeViewable(a));
  GetObserver().OnInstanceRemoveViewable(a, MakeViewable(a));

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "MarkTypeIconChanged(a)", "CheckAndUpdateNodeNameAndType(a) -> false",
                          "MarkTypeIconChanged(a)", "CheckAndUpdateNodeNameAndType(a) -> false"));
  EXPECT_FALSE(GetObserver().GetRepopulateNeeded());
  EXPECT_EQ(End(), plainEnd);
}

TEST_F(TreeObserver, ViewableThatTheHostCannotShow_AsksForARefill)
{
  panel.host.answers.checkAndUpdateNodeNameAndType = true;
  GetObserver().OnInstanceAddViewable(a, MakeViewable(a));
  EXPECT_TRUE(GetObserver().GetRepopulateNeeded());
  static_cast<void>(End());

  GetObserver().OnInstanceRemoveViewable(a, MakeViewable(a));
  EXPECT_TRUE(GetObserver().GetRepopulateNeeded());
}

TEST_F(TreeObserver, EmptyViewable_DoesNothingNotEvenTheBracket)
{
  GetObserver().OnInstanceAddViewable(a, MakeViewable(nullptr));
  GetObserver().OnInstanceRemoveViewable(a, MakeViewable(nullptr));

  EXPECT_EQ(shown.TakeLines(), untold);
  EXPECT_EQ(End(), untold);
}

TEST_F(TreeObserver, ViewableWhileARefillIsDue_DoesNothing)
{
  GetObserver().SetRepopulateNeeded();

  GetObserver().OnInstanceAddViewable(a, MakeViewable(a));
  GetObserver().OnInstanceRemoveViewable(a, MakeViewable(a));

  EXPECT_EQ(shown.TakeLines(), untold);
}

TEST_F(TreeObserver, ViewableWithoutARow_OpensTheBracketAllTheSame)
{
  panel.host.answers.checkAndUpdateNodeNameAndType = true;

  GetObserver().OnInstanceAddViewable(outside, MakeViewable(a));

  EXPECT_THAT(shown.TakeLines(), ElementsAre("StartTreeUpdate()"));
  EXPECT_FALSE(GetObserver().GetRepopulateNeeded());
}

TEST_F(TreeObserver, PropertyGroupsLoaded_AsksForNamesOnlyIfTheHostShowsSuch)
{
  GetObserver().OnPropertyGroupsLoaded();
  EXPECT_THAT(shown.TakeLines(), ElementsAre("IsShowingAltPartNames() -> false"));
  EXPECT_EQ(End(), untold);

  panel.host.answers.isShowingAltPartNames = true;
  GetObserver().OnPropertyGroupsLoaded();
  EXPECT_THAT(shown.TakeLines(), ElementsAre("IsShowingAltPartNames() -> true"));
  EXPECT_EQ(End(), endWithNames);
}

}  // namespace
