// From what the kernel says is selected to the instances that have rows.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/DisplaySwitches.h"
#include "testsupport/PlainBaseInstance.h"
#include "testsupport/WorldPanel.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testsupport::DisplaySwitches;
using testsupport::WorldPanel;
using Objects = std::vector<du::SmartPtr<zelk::Object>>;
using Rows = std::set<zelk::BaseInstance*>;

/// A filled panel with a group of three siblings.
class SelectedRows : public testing::Test {
protected:
  SelectedRows()
  {
    const auto bolt = panel.GetTree().CreateProduct({.name = "bolt"});
    for (const char* name : {"bolt1", "bolt2", "bolt3"}) {
      bolts.push_back(panel.GetTree().AddChild(panel.kernel["root"], bolt, name));
    }
    panel.Initialise();
  }

  [[nodiscard]] Rows GetRows(const Objects& items) const
  {
    Rows rows;
    panel.state->GetBaseInstFromSelItems(items, rows);
    return rows;
  }

  WorldPanel panel{"root[a b]"};
  std::vector<du::SmartPtr<memkernel::Instance>> bolts;
};

TEST_F(SelectedRows, AreThoseOfTheInstancesAddedToWhatWasThere)
{
  Rows rows{panel.kernel["root"].Get()};

  panel.state->GetBaseInstFromSelItems({panel.kernel["a"], panel.kernel["b"]}, rows);

  EXPECT_THAT(rows, UnorderedElementsAre(panel.kernel["root"].Get(), panel.kernel["a"].Get(), panel.kernel["b"].Get()));
}

TEST_F(SelectedRows, PassOverWhatIsNoInstance)
{
  EXPECT_THAT(GetRows({du::MakeSmart<testsupport::PlainBaseInstance>("other"), nullptr, panel.kernel.Get()}),
              IsEmpty());
}

TEST_F(SelectedRows, DropWhatHasNoRow)
{
  panel.state->hidden = {panel.kernel["a"].Get()};
  panel.state->PopulateTree(false);

  EXPECT_THAT(GetRows({panel.kernel["a"], panel.kernel["b"]}), ElementsAre(panel.kernel["b"].Get()));
}

TEST_F(SelectedRows, WithGroupsOpen_EachSiblingHasItsOwn)
{
  EXPECT_THAT(GetRows({bolts[1], bolts[2]}), UnorderedElementsAre(bolts[1].Get(), bolts[2].Get()));
}

TEST_F(SelectedRows, WithGroupsCollapsed_ALaterSiblingYieldsTheFirst)
{
  const DisplaySwitches switches(true);

  EXPECT_THAT(GetRows({bolts[2]}), ElementsAre(bolts[0].Get()));
}

TEST_F(SelectedRows, WithGroupsCollapsed_SeveralSiblingsYieldOneEntry)
{
  const DisplaySwitches switches(true);

  EXPECT_THAT(GetRows({bolts[2], bolts[0], bolts[1]}), ElementsAre(bolts[0].Get()));
}

TEST_F(SelectedRows, WithGroupsCollapsed_WhatHasNoGroupStandsForItself)
{
  const DisplaySwitches switches(true);

  EXPECT_THAT(GetRows({panel.kernel["a"]}), ElementsAre(panel.kernel["a"].Get()));
}

TEST_F(SelectedRows, WithGroupsCollapsed_ASiblingIsDroppedIfTheFirstHasNoRow)
{
  const DisplaySwitches switches(true);
  panel.state->hidden = {bolts[0].Get()};
  panel.state->PopulateTree(false);

  EXPECT_THAT(GetRows({bolts[1], bolts[2]}), IsEmpty());
}

TEST_F(SelectedRows, WithGroupsCollapsed_ASiblingWithoutARowYieldsTheFirstThatHasOne)
{
  const DisplaySwitches switches(true);
  panel.state->hidden = {bolts[1].Get(), bolts[2].Get()};
  panel.state->PopulateTree(false);

  EXPECT_THAT(GetRows({bolts[1]}), ElementsAre(bolts[0].Get()));
}

}  // namespace
