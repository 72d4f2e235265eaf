#include "zelremote/StructureFilterInfo.h"

#include <gtest/gtest.h>

#include <memory>

#include "FakeInstance.h"

namespace {

class StructureFilterInfo : public testing::Test {
protected:
  zelremote::StructureFilterInfo filter{du::Symbol("panel")};
};

TEST_F(StructureFilterInfo, ByDefault_FiltersNothing)
{
  const du::SmartPtr<zelk::BaseInstance> instance(new kerneltest::FakeInstance);
  std::set<du::SmartPtr<zelk::BaseInstance>> selected;
  du::SmartPtr<du::RefCounted> info;

  for (const bool flag : {false, true}) {
    EXPECT_FALSE(filter.IsFiltering(flag));
    EXPECT_FALSE(filter.IsFilteringBase(flag));
    EXPECT_FALSE(filter.IsHiddenFilter(flag));
    EXPECT_FALSE(filter.IsFilteredOut(instance, selected, flag, info, nullptr));
  }
  EXPECT_FALSE(filter.IsRootFilteredOut(instance));
  EXPECT_FALSE(filter.IsFilteringUsingView());
}

TEST_F(StructureFilterInfo, ByDefault_HasNoCriterion)
{
  EXPECT_FALSE(filter.GetFilteringName());
  EXPECT_FALSE(filter.GetFilteringParts());
  EXPECT_FALSE(filter.GetFilteringBodies());
  EXPECT_FALSE(filter.GetFilteringColumns());
  EXPECT_FALSE(filter.GetFilteringSel());
  EXPECT_FALSE(filter.GetFilteringVis());
  EXPECT_FALSE(filter.GetFilteringIssues());
  EXPECT_FALSE(filter.GetNotSyncPartsStatus());
  EXPECT_FALSE(filter.GetEnsureExpanded());
  EXPECT_FALSE(filter.GetShowSiblings());
  EXPECT_FALSE(filter.GetMatchCase());
  EXPECT_FALSE(filter.GetMatchWholeWord());
}

TEST_F(StructureFilterInfo, ByDefault_IsAnAscendingTreeWithoutASortColumn)
{
  EXPECT_TRUE(filter.GetName() == "panel");
  EXPECT_TRUE(filter.GetSortDirection());
  EXPECT_EQ(filter.GetSortColumn(), du::DualSymbol());
  EXPECT_NE(filter.listMode, 1);
  EXPECT_FALSE(filter.collapseInstances);
  EXPECT_FALSE(filter.hideBodies);
  EXPECT_FALSE(filter.useResultsList);
  EXPECT_FALSE(filter.resultsListLive);
}

TEST_F(StructureFilterInfo, CollapsingAndHiding_AnswerTheMembers)
{
  filter.collapseInstances = true;
  EXPECT_TRUE(filter.GetCollapseInstances());
  EXPECT_FALSE(filter.GetHideBodies());

  filter.hideBodies = true;
  EXPECT_TRUE(filter.GetHideBodies());
}

TEST_F(StructureFilterInfo, DynamicUpdate_IsWhatWasSet)
{
  EXPECT_TRUE(filter.HasDynamicUpdateOption());
  EXPECT_FALSE(filter.GetDynamicUpdate());

  filter.SetDynamicUpdate(true);

  EXPECT_TRUE(filter.GetDynamicUpdate());
}

TEST_F(StructureFilterInfo, ADuplicate_IsEqualAndIndependent)
{
  filter.listMode = 1;
  filter.hideBodies = true;
  filter.SetDynamicUpdate(true);

  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());
  filter.hideBodies = false;
  filter.SetDynamicUpdate(false);

  EXPECT_TRUE(duplicate->GetHideBodies());
  EXPECT_TRUE(duplicate->GetDynamicUpdate());
  EXPECT_EQ(dynamic_cast<zelremote::StructureFilterInfo&>(*duplicate).listMode, 1);
  EXPECT_TRUE(dynamic_cast<zelremote::StructureFilterInfo&>(*duplicate).GetName() == "panel");
}

}  // namespace
