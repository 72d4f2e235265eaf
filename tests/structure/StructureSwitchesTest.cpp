// Bodies and groups of equal siblings: what the display switches change in a structure panel.

#include <gmock/gmock.h>

#include "StructureStage.h"
#include "guitree/SceneInfoLog.h"
#include "guitree/TypeIcon.h"
#include "testsupport/PlainBaseInstance.h"

namespace {

using structuretest::MakeView;
using structuretest::StructureStage;
using testing::ElementsAre;
using testing::IsEmpty;

void ShowBodies(bool on)
{
  guitree::WorldTreeState::SetIsShowingBodies(on);
}

void Collapse(bool on)
{
  guitree::WorldTreeState::SetIsCollapsingInstances(on);
}

/// A base instance with children that is no instance of an assembly.
class PlainParent : public testsupport::PlainBaseInstance {
public:
  using PlainBaseInstance::PlainBaseInstance;
  [[nodiscard]] bool HasChildren() const override { return true; }
};

TEST(StructureSwitches, ShowBodiesChanged_BringsAllFiltersInLineAndPopulatesEachTime)
{
  const StructureStage stage;
  auto& panel = stage.GetFilter(MakeView("panel"));
  auto& sheet = stage.GetFilter(MakeView("sheet"));
  sheet.hideBodies = true;
  ShowBodies(false);

  stage.state->ShowBodiesChanged();
  EXPECT_TRUE(panel.GetHideBodies());
  EXPECT_TRUE(sheet.GetHideBodies());
  EXPECT_THAT(stage.state->populations, ElementsAre(true));

  stage.state->ShowBodiesChanged();
  EXPECT_THAT(stage.state->populations, ElementsAre(true, true));

  ShowBodies(true);
  stage.state->ShowBodiesChanged();
  EXPECT_FALSE(panel.GetHideBodies());
  EXPECT_FALSE(sheet.GetHideBodies());
}

TEST(StructureSwitches, ShowBodiesChanged_HasTheFiltersInLineWhenItPopulates)
{
  StructureStage stage;
  stage.SetFlag("nut1", memkernel::InstanceBody);
  stage.Show("nut");
  ASSERT_TRUE(stage.state->IsFilteredTreeContainItem(stage.kernel["nut1"]));
  ShowBodies(false);

  stage.state->ShowBodiesChanged();
  stage.Finish();

  EXPECT_FALSE(stage.state->IsFilteredTreeContainItem(stage.kernel["nut1"]));
  EXPECT_TRUE(stage.state->IsFilteredTreeContainItem(stage.kernel["nut2"]));
}

TEST(StructureSwitches, ShowBodiesChanged_PopulatesAlsoWithoutAFilter)
{
  const StructureStage stage;

  stage.state->ShowBodiesChanged();

  EXPECT_THAT(stage.state->populations, ElementsAre(true));
}

TEST(StructureSwitches, UpdateFiltersForCollapsingInstances_PopulatesOnlyWhenThatChangesAFilter)
{
  const StructureStage stage;
  static_cast<void>(stage.GetFilter());
  auto& panel = stage.GetFilter(MakeView("panel"));
  auto& sheet = stage.GetFilter(MakeView("sheet"));
  sheet.collapseInstances = true;
  Collapse(true);

  stage.state->UpdateFiltersForCollapsingInstances(true);
  EXPECT_TRUE(panel.GetCollapseInstances());
  EXPECT_TRUE(sheet.GetCollapseInstances());
  EXPECT_THAT(stage.state->populations, ElementsAre(false));

  stage.state->UpdateFiltersForCollapsingInstances(true);
  EXPECT_THAT(stage.state->populations, ElementsAre(false));
}

TEST(StructureSwitches, UpdateFiltersForCollapsingInstances_GoesByTheSwitchAndNotByItsArgument)
{
  const StructureStage stage;
  auto& filter = stage.GetFilter();

  stage.state->UpdateFiltersForCollapsingInstances(true);
  EXPECT_FALSE(filter.GetCollapseInstances());

  Collapse(true);
  stage.state->UpdateFiltersForCollapsingInstances(false);
  EXPECT_TRUE(filter.GetCollapseInstances());
}

TEST(StructureSwitches, UpdateFiltersForCollapsingInstances_WithoutAFilter_DoesNothingAndALaterOneKeepsItsPreference)
{
  StructureStage stage;
  Collapse(true);

  stage.state->UpdateFiltersForCollapsingInstances(true);

  EXPECT_THAT(stage.state->populations, IsEmpty());
  EXPECT_THAT(stage.host.TakeCalls(), IsEmpty());
  EXPECT_FALSE(stage.GetFilter().GetCollapseInstances());
}

TEST(StructureSwitches, UpdateFiltersForCollapsingInstances_WithoutATree_OnlyAsksForAPopulation)
{
  const StructureStage stage;
  static_cast<void>(stage.GetFilter());
  stage.gui->SetBaseTree(nullptr);
  Collapse(true);

  stage.state->UpdateFiltersForCollapsingInstances(true);

  EXPECT_THAT(stage.state->populations, ElementsAre(false));
}

TEST(StructureSwitches, UpdateFiltersForCollapsingInstances_WithAnEmptyTree_MarksNothing)
{
  const StructureStage stage("");
  static_cast<void>(stage.GetFilter());
  Collapse(true);

  stage.state->UpdateFiltersForCollapsingInstances(true);

  EXPECT_THAT(stage.state->populations, ElementsAre(false));
}

/// A panel that shows a scene, of whose rows two are equal siblings at the bottom of the tree.
class StructureSwitchesInAScene : public testing::Test {
protected:
  StructureSwitchesInAScene()
  {
    stage.gui->Initialise(stage.world);
    stage.host.answers.sceneManagerObserver->OnSceneAdded(scene);
    stage.host.answers.sceneManagerObserver->OnActiveViewChanged(view);
    for (const char* name : {"root", "plate", "bolt", "nut"}) {
      FindIcon(name);
    }
    stage.gui->GetCurrentLog()->ClearTypeIconChangeMap();
  }
  ~StructureSwitchesInAScene() override { stage.gui->OnSceneRemoved(scene); }

  int FindIcon(const char* name)
  {
    int icon = -1;
    stage.gui->GetCurrentLog()->GetTypeIconMap().Find(stage.kernel[name].Get(), icon, scene);
    return icon;
  }
  /// The names of the instances whose icon is marked as changed.
  [[nodiscard]] std::vector<std::string> GetMarked() const
  {
    std::vector<std::string> names;
    for (const auto& [instance, icon] : stage.gui->GetCurrentLog()->GetTypeIconChangeMap()) {
      names.emplace_back(instance->GetObjectName());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  StructureStage stage{"root[plate[bolt bolt] nut]"};
  du::SmartPtr<testsupport::PlainShapeScene> scene = du::MakeSmart<testsupport::PlainShapeScene>();
  du::SmartPtr<testsupport::PlainShapeView> view = testsupport::MakeView<testsupport::PlainShapeView>(scene);
};

TEST_F(StructureSwitchesInAScene, Collapsing_HasTheIconsOfAllEqualSiblingsWorkedOutAnew)
{
  EXPECT_EQ(FindIcon("bolt"), guitree::IconNoSource);
  Collapse(true);

  stage.state->UpdateFiltersForCollapsingInstances(true);

  EXPECT_THAT(GetMarked(), ElementsAre("bolt", "bolt"));
  EXPECT_EQ(FindIcon("bolt"), guitree::IconCollapsedSiblingNoSource);
  EXPECT_EQ(FindIcon("nut"), guitree::IconNoSource);
}

TEST_F(StructureSwitchesInAScene, Collapsing_HasTheIconsBeforeTheRowsAreMade)
{
  Collapse(true);
  int icon = -1;
  stage.OnceIn("ClearTree", [&] { icon = FindIcon("bolt"); });

  stage.state->UpdateFiltersForCollapsingInstances(true);

  EXPECT_EQ(icon, guitree::IconCollapsedSiblingNoSource);
}

TEST_F(StructureSwitchesInAScene, Collapsing_AsksForNoIconOfOtherInstances)
{
  stage.gui->GetCurrentLog()->GetTypeIconMap().ResetIcon(stage.kernel["nut"].Get());
  Collapse(true);

  stage.state->UpdateFiltersForCollapsingInstances(true);

  EXPECT_THAT(GetMarked(), ElementsAre("bolt", "bolt"));
}

TEST_F(StructureSwitchesInAScene, Collapsing_TwiceMarksOnlyTheFirstTime)
{
  Collapse(true);
  stage.state->UpdateFiltersForCollapsingInstances(true);
  stage.gui->GetCurrentLog()->ClearTypeIconChangeMap();

  stage.state->UpdateFiltersForCollapsingInstances(true);

  EXPECT_THAT(GetMarked(), IsEmpty());
}

TEST_F(StructureSwitchesInAScene, ShowingBodies_MarksNoIcon)
{
  ShowBodies(false);

  stage.state->ShowBodiesChanged();

  EXPECT_THAT(GetMarked(), IsEmpty());
}

TEST(StructureRows, ABodyIsHiddenWhileBodiesAreNotShown)
{
  const StructureStage stage;
  stage.SetFlag("bolt", memkernel::InstanceBody);
  EXPECT_FALSE(stage.state->IsInstHidden(stage.kernel["bolt"].Get()));

  ShowBodies(false);
  EXPECT_TRUE(stage.state->IsInstHidden(stage.kernel["bolt"].Get()));
  EXPECT_FALSE(stage.state->IsInstHidden(stage.kernel["nut1"].Get()));
}

TEST(StructureRows, ASymbolIsHiddenAlways)
{
  const StructureStage stage;
  stage.SetFlag("bolt", memkernel::Instance3dSymbol);
  EXPECT_TRUE(stage.state->IsInstHidden(stage.kernel["bolt"].Get()));

  ShowBodies(false);
  EXPECT_TRUE(stage.state->IsInstHidden(stage.kernel["bolt"].Get()));
}

TEST(StructureRows, ASymbolThatIsABodyIsHiddenAsABody)
{
  const StructureStage stage;
  stage.SetFlag("bolt", memkernel::Instance3dSymbol);
  stage.SetFlag("bolt", memkernel::InstanceBody);
  EXPECT_FALSE(stage.state->IsInstHidden(stage.kernel["bolt"].Get()));

  ShowBodies(false);
  EXPECT_TRUE(stage.state->IsInstHidden(stage.kernel["bolt"].Get()));
}

TEST(StructureRows, WhatIsNoInstanceIsNeverHidden)
{
  const StructureStage stage;
  const auto other = du::MakeSmart<testsupport::PlainBaseInstance>("other");
  ShowBodies(false);

  EXPECT_FALSE(stage.state->IsInstHidden(other.Get()));
  EXPECT_FALSE(stage.state->IsInstHidden(nullptr));
}

TEST(StructureRows, ABodyTypeInstanceIsNoBody)
{
  const StructureStage stage;
  stage.SetFlag("bolt", memkernel::InstanceBodyType);
  ShowBodies(false);

  EXPECT_FALSE(stage.state->IsInstHidden(stage.kernel["bolt"].Get()));
}

TEST(StructureRows, AParentOfBodiesAloneHasChildrenToShowOnlyWhileBodiesAreShown)
{
  const StructureStage stage("root[plate[body] frame[body2 bolt] leaf]");
  stage.SetFlag("body", memkernel::InstanceBody);
  stage.SetFlag("body2", memkernel::InstanceBody);
  const auto hasChildren = [&stage](const char* name) {
    return stage.state->HasNoneHiddenChildren(stage.kernel[name]);
  };
  EXPECT_TRUE(hasChildren("plate"));
  EXPECT_TRUE(hasChildren("frame"));
  EXPECT_FALSE(hasChildren("leaf"));

  ShowBodies(false);
  EXPECT_FALSE(hasChildren("plate"));
  EXPECT_TRUE(hasChildren("frame"));
  EXPECT_FALSE(hasChildren("leaf"));
}

TEST(StructureRows, AParentThatIsNoInstanceHasChildrenToShowWhileBodiesAreShown)
{
  const StructureStage stage;
  const du::SmartPtr<zelk::BaseInstance> parent = du::MakeSmart<PlainParent>("other");
  EXPECT_TRUE(stage.state->HasNoneHiddenChildren(parent));

  ShowBodies(false);
  EXPECT_FALSE(stage.state->HasNoneHiddenChildren(parent));
}

TEST(StructureRows, APopulationLeavesOutBodiesAndSymbolsButNotWhatIsBelow)
{
  StructureStage stage("root[plate[body[nut]] symbol[bolt]]");
  stage.SetFlag("body", memkernel::InstanceBody);
  stage.SetFlag("symbol", memkernel::Instance3dSymbol);
  stage.state->PopulateTree(false);
  EXPECT_THAT(stage.TakeRows(), ElementsAre("null/root", "root/plate", "plate/body", "body/nut", "symbol/bolt"));

  ShowBodies(false);
  stage.state->ShowBodiesChanged();
  EXPECT_THAT(stage.TakeRows(), ElementsAre("null/root", "root/plate", "body/nut", "symbol/bolt"));
}

TEST(StructureRows, OfCollapsedGroups_AreThoseOfTheFirstSiblings)
{
  StructureStage stage("root[plate[bolt bolt nut]]");
  static_cast<void>(stage.GetFilter());
  Collapse(true);

  stage.state->UpdateFiltersForCollapsingInstances(true);
  stage.Finish();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "plate", "bolt", "nut"));
}

}  // namespace
