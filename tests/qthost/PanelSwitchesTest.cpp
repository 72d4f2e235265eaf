#include <gmock/gmock.h>

#include "PanelStage.h"
#include "memkernel/InstanceFlags.h"

namespace qthosttest {
namespace {

using Command = qthost::GuiTreePanel::Command;

TEST(SwitchesOfAPanel, Bodies_LoseTheirRowsAndGetThemBack)
{
  PanelStage stage("root[plate[body] rod]");
  stage.tree.SetFlags(stage["body"], memkernel::InstanceBody, true);
  stage.Open();
  ASSERT_TRUE(stage.GetAction(Command::ShowBodies).isChecked());

  stage.GetAction(Command::ShowBodies).trigger();

  EXPECT_EQ(stage.GetText(), "root[plate rod]");
  stage.GetAction(Command::ShowBodies).trigger();
  EXPECT_EQ(stage.GetText(), "root[plate[body] rod]");
}

TEST(SwitchesOfAPanel, CollapsedInstances_ShowTheFirstOfEach)
{
  PanelStage stage("root[bolt rod bolt bolt]");
  stage.Open();

  stage.GetAction(Command::CollapseInstances).trigger();
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[bolt rod]");
  stage.GetAction(Command::CollapseInstances).trigger();
  stage.WaitForFilter();
  EXPECT_EQ(stage.GetText(), "root[bolt rod bolt bolt]");
}

TEST(SwitchesOfAPanel, SwitchOfOnePanel_ChangesEveryPanel)
{
  PanelStage stage("root[plate[body] rod]");
  stage.tree.SetFlags(stage["body"], memkernel::InstanceBody, true);
  stage.Open();
  qthost::GuiTreeItemModel model;
  const qthost::GuiTreePanel other(model);

  other.GetAction(Command::ShowBodies).trigger();

  EXPECT_EQ(stage.GetText(), "root[plate rod]");
  EXPECT_FALSE(stage.GetAction(Command::ShowBodies).isChecked());
}

TEST(SwitchesOfAPanel, SwitchThatTheApplicationSets_IsShownWhenThePanelIs)
{
  PanelStage stage("root[rod]");
  guitree::WorldTreeState::SetIsShowingBodies(false);

  stage.Open();

  EXPECT_FALSE(stage.GetAction(Command::ShowBodies).isChecked());
}

}  // namespace
}  // namespace qthosttest
