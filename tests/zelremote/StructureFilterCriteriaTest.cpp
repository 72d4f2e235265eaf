#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "FilterRun.h"
#include "testsupport/PlainBaseInstance.h"

namespace {

using filtertest::FilterItem;
using filtertest::GetPassing;
using filtertest::TreeFilterAdditionalInfo;
using Names = std::vector<std::string>;
using Visibility = zelremote::StructureFilterInfo::Visibility;

class StructureFilterCriteria : public testing::Test {
protected:
  [[nodiscard]] Names Get(bool hiddenPass = false) { return GetPassing(run, filter, root.Get(), hiddenPass); }

  filtertest::FilterRun run;
  zelremote::StructureFilterInfo filter{"panel"};
  filtertest::Item root = du::MakeSmart<FilterItem>("car");
};

TEST_F(StructureFilterCriteria, Text_IsLookedForInDisplayNames)
{
  root->Add("Hex nut M8");
  root->Add("bolt")->Add("donut");

  filter.SetText("NUT");

  EXPECT_EQ(Get(), (Names{"Hex nut M8", "donut"}));
}

TEST_F(StructureFilterCriteria, Text_IsLookedForInTheChosenColumnsAlone)
{
  root->Add("nut")->SetProperty("Data", "Material", "brass");
  root->Add("bolt")->SetProperty("Data", "Material", "Steel 4.6");
  root->Add("steel plate")->SetProperty("Other", "Material", "steel");
  filter.SetText("steel");
  filter.SetSearchName(false);

  filter.SetColumns({du::DualSymbol("Data", "Weight"), du::DualSymbol("Data", "Material")});

  EXPECT_EQ(Get(), (Names{"bolt"}));
}

TEST_F(StructureFilterCriteria, EachWord_MayBeFoundInAnotherField)
{
  root->Add("nut")->SetProperty("Data", "Material", "steel");
  root->Add("nut of steel");
  root->Add("nut of brass")->SetProperty("Data", "Material", "brass");
  root->Add("bolt")->SetProperty("Data", "Material", "steel");
  filter.SetText("nut steel");

  filter.SetColumns({du::DualSymbol("Data", "Material")});

  EXPECT_EQ(Get(), (Names{"nut", "nut of steel"}));
}

TEST_F(StructureFilterCriteria, TextWithNowhereToLook_FiltersNothing)
{
  root->Add("bolt");
  filter.SetText("nut");

  filter.SetSearchName(false);

  EXPECT_FALSE(filter.IsFiltering(true));
  EXPECT_EQ(Get(), (Names{"car", "bolt"}));
}

TEST_F(StructureFilterCriteria, MatchCase_AndWholeWord_TakeEffectBeforeAndAfterTheText)
{
  root->Add("Nut");
  root->Add("nuts");
  root->Add("nut");

  filter.SetMatchCase(true);
  filter.SetText("nut");
  EXPECT_EQ(Get(), (Names{"nuts", "nut"}));

  filter.SetMatchWholeWord(true);
  EXPECT_EQ(Get(), (Names{"nut"}));

  filter.SetMatchCase(false);
  EXPECT_EQ(Get(), (Names{"Nut", "nut"}));
}

TEST_F(StructureFilterCriteria, Parts_AreWhatHasNoChildrenButBodies)
{
  FilterItem* gear = root->Add("gear");
  gear->AddBody("tooth");
  root->Add("group")->Add("pin");

  filter.SetPartsOnly(true);

  EXPECT_EQ(Get(), (Names{"gear", "pin"}));
}

TEST_F(StructureFilterCriteria, Bodies_AreThoseThatTheKernelCallsSo)
{
  root->Add("gear")->AddBody("tooth");

  filter.SetBodiesOnly(true);

  EXPECT_EQ(Get(), (Names{"tooth"}));
}

TEST_F(StructureFilterCriteria, PartsAndBodies_AreEither)
{
  root->Add("gear")->AddBody("tooth");

  filter.SetPartsOnly(true);
  filter.SetBodiesOnly(true);

  EXPECT_EQ(Get(), (Names{"gear", "tooth"}));
}

TEST_F(StructureFilterCriteria, Selected_AreThoseThatTheRunHands)
{
  root->Add("gear");
  FilterItem* pin = root->Add("pin");
  run.selected.insert(du::SmartPtr<zelk::BaseInstance>(pin));

  filter.SetSelectedOnly(true);

  EXPECT_EQ(Get(), (Names{"pin"}));
}

TEST_F(StructureFilterCriteria, VisibleAndHidden_LeaveOutWhatTheSceneDoesNotHave)
{
  run.scene->Show(root->Add("gear"), true);
  run.scene->Show(root->Add("pin"), false);
  root->Add("note");

  filter.SetVisibility(Visibility::Visible);
  EXPECT_EQ(Get(), (Names{"gear"}));

  filter.SetVisibility(Visibility::Hidden);
  EXPECT_EQ(Get(), (Names{"pin"}));
}

TEST_F(StructureFilterCriteria, WithoutAScene_NothingIsVisibleOrHidden)
{
  run.scene->Show(root.Get(), true);
  run.scene = nullptr;

  filter.SetVisibility(Visibility::Visible);
  EXPECT_EQ(Get(), Names{});

  filter.SetVisibility(Visibility::Hidden);
  EXPECT_EQ(Get(), Names{});
}

TEST_F(StructureFilterCriteria, EachStatusButNone_IsAnIssue)
{
  using Lookup = TreeFilterAdditionalInfo::TreeFilterStatusLookup;
  for (int status = Lookup::TFStatusNone; status <= Lookup::TFStatusProxyExpandFailed; ++status) {
    FilterItem* item = root->Add("status " + std::to_string(status));
    run.issues.issues[item] = static_cast<Lookup::TFStatus>(status);
  }

  filter.SetIssuesOnly(true);

  EXPECT_EQ(Get(), (Names{"status 1", "status 2", "status 3", "status 4", "status 5", "status 6"}));
}

TEST_F(StructureFilterCriteria, OnceTheLookUpIsDetached_NothingHasAnIssue)
{
  run.issues.issues[root.Get()] = TreeFilterAdditionalInfo::TreeFilterStatusLookup::TFStatusShapeFailed;
  du::SmartPtr<du::RefCounted> info = run.MakeInfo();
  filter.SetIssuesOnly(true);
  ASSERT_FALSE(filter.IsFilteredOut(root, run.selected, false, info, nullptr));

  dynamic_cast<TreeFilterAdditionalInfo&>(*info).DetachStatusLookup();

  EXPECT_TRUE(filter.IsFilteredOut(root, run.selected, false, info, nullptr));
}

TEST_F(StructureFilterCriteria, ResultsList_LetsItsMembersThrough)
{
  root->Add("gear");
  run.results.insert(du::SmartPtr<zelk::BaseInstance>(root->Add("pin")));

  filter.useResultsList = true;

  EXPECT_EQ(Get(), (Names{"pin"}));
}

TEST_F(StructureFilterCriteria, ResultsListLive_IsNoCriterion)
{
  filter.resultsListLive = true;

  EXPECT_FALSE(filter.IsFiltering(true));
  EXPECT_EQ(Get(), (Names{"car"}));
}

TEST_F(StructureFilterCriteria, WhatAsksForTheAdditionalInfo_IsMetByNothingWithoutIt)
{
  const std::vector<std::function<void()>> criteria{
      [this] { filter.useResultsList = true; },
      [this] { filter.SetVisibility(Visibility::Visible); },
      [this] { filter.SetVisibility(Visibility::Hidden); },
      [this] { filter.SetIssuesOnly(true); },
  };
  for (const auto& turnOn : criteria) {
    filter.ClearCriteria();
    turnOn();
    du::SmartPtr<du::RefCounted> none;
    du::SmartPtr<du::RefCounted> ofAnotherClass = du::MakeSmart<filtertest::TextValue>("info");
    du::SmartPtr<du::RefCounted> empty = du::MakeSmart<TreeFilterAdditionalInfo>(nullptr, nullptr, nullptr);

    EXPECT_TRUE(filter.IsFilteredOut(root, run.selected, false, none, nullptr));
    EXPECT_TRUE(filter.IsFilteredOut(root, run.selected, false, ofAnotherClass, nullptr));
    EXPECT_TRUE(filter.IsFilteredOut(root, run.selected, false, empty, nullptr));
  }
}

TEST_F(StructureFilterCriteria, WhatAsksForNoAdditionalInfo_DoesWithoutIt)
{
  du::SmartPtr<du::RefCounted> none;

  filter.SetText("car");
  filter.SetPartsOnly(true);

  EXPECT_FALSE(filter.IsFilteredOut(root, run.selected, false, none, nullptr));
}

TEST_F(StructureFilterCriteria, AnInstanceOfAnotherTree_IsAPartThatNoSceneShows)
{
  const auto note = du::MakeSmart<testsupport::PlainBaseInstance>("note");
  filter.SetText("note");
  filter.SetPartsOnly(true);
  filter.hideBodies = true;
  filter.collapseInstances = true;
  EXPECT_TRUE(run.Passes(filter, note.Get(), false));
  EXPECT_TRUE(run.Passes(filter, note.Get(), true));

  filter.SetVisibility(Visibility::Hidden);
  EXPECT_FALSE(run.Passes(filter, note.Get(), false));

  filter.SetVisibility(Visibility::Any);
  filter.SetIssuesOnly(true);
  EXPECT_FALSE(run.Passes(filter, note.Get(), false));
}

TEST_F(StructureFilterCriteria, ANullInstance_IsFilteredOut)
{
  EXPECT_FALSE(run.Passes(filter, nullptr, false));
  EXPECT_FALSE(run.Passes(filter, nullptr, true));
}

TEST_F(StructureFilterCriteria, TheCounter_CountsWhatComesThroughThePassForMatches)
{
  FilterItem* nut = root->Add("nut");
  filter.SetText("nut");
  unsigned int count = 5;
  du::SmartPtr<du::RefCounted> none;
  const auto ask = [&](zelk::BaseInstance* instance, bool hiddenPass) {
    return filter.IsFilteredOut(du::SmartPtr<zelk::BaseInstance>(instance), run.selected, hiddenPass, none, &count);
  };

  EXPECT_TRUE(ask(root.Get(), false));
  EXPECT_EQ(count, 5U);
  EXPECT_FALSE(ask(nut, false));
  EXPECT_EQ(count, 6U);
  EXPECT_FALSE(ask(nut, false));
  EXPECT_EQ(count, 7U);
  EXPECT_FALSE(ask(nut, true));
  EXPECT_EQ(count, 7U);
}

}  // namespace
