#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/DisplaySwitches.h"
#include "testsupport/WorldPanel.h"

namespace {

using guitree::WorldTreeState;
using testing::IsEmpty;
using testsupport::DisplaySwitches;
using testsupport::WorldPanel;

TEST(DisplaySwitches, StartWithBodiesShownAndGroupsOpen)
{
  EXPECT_TRUE(WorldTreeState::IsShowingBodies());
  EXPECT_FALSE(WorldTreeState::IsCollapsingInstances());
}

TEST(DisplaySwitches, AreSetEachByItself)
{
  const DisplaySwitches restored;

  WorldTreeState::SetIsShowingBodies(false);
  EXPECT_FALSE(WorldTreeState::IsShowingBodies());
  EXPECT_FALSE(WorldTreeState::IsCollapsingInstances());

  WorldTreeState::SetIsCollapsingInstances(true);
  WorldTreeState::SetIsShowingBodies(true);
  EXPECT_TRUE(WorldTreeState::IsShowingBodies());
  EXPECT_TRUE(WorldTreeState::IsCollapsingInstances());
}

TEST(DisplaySwitches, RefillNothing)
{
  const DisplaySwitches restored;
  WorldPanel panel("root[a a]");
  panel.Initialise();

  WorldTreeState::SetIsShowingBodies(false);
  WorldTreeState::SetIsCollapsingInstances(true);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_EQ(panel.GetShownNames().size(), 3U);
}

TEST(DisplaySwitches, HideNoRowByThemselvesInThisState)
{
  const DisplaySwitches restored;
  WorldPanel panel("root[a a]");
  panel.Initialise();
  WorldTreeState::SetIsShowingBodies(false);
  WorldTreeState::SetIsCollapsingInstances(true);

  EXPECT_FALSE(panel.state->WorldTreeState::IsInstHidden(panel.kernel["a"].Get()));
  EXPECT_TRUE(panel.state->HasNoneHiddenChildren(panel.kernel["root"]));
  EXPECT_FALSE(panel.state->HasNoneHiddenChildren(panel.kernel["a"]));
}

}  // namespace
