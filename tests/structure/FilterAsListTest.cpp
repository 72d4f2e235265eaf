// The list presentation of a filter's result.

#include <gmock/gmock.h>

#include "FilterItem.h"
#include "StructureStage.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace {

using structuretest::StructureStage;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A result that lists more instances than its run has found, and counts the questions.
class ListedTree : public guitree::FilteredTree {
public:
  struct Content {
    std::vector<du::SmartPtr<zelk::BaseInstance>> additional;
    int questions = 0;
  };

  explicit ListedTree(Content& content) : m_content(content) {}

  void GetAllCreatedItems(CreatedSet& out) const override
  {
    ++m_content.questions;
    FilteredTree::GetAllCreatedItems(out);
    out.insert(m_content.additional.begin(), m_content.additional.end());
  }
  [[nodiscard]] bool IsContainItem(const du::SmartPtr<zelk::BaseInstance>& instance) const override
  {
    ++m_content.questions;
    return FilteredTree::IsContainItem(instance);
  }

private:
  Content& m_content;
};

class FilterAsList : public testing::Test {
protected:
  /// Three nuts and a bolt with materials, and one without.
  void SetMaterials()
  {
    stage.SetMaterial("nut1", "steel");
    stage.SetMaterial("nut3", "brass");
  }
  void SortBy(const du::DualSymbol& column, bool isAscending) const
  {
    stage.GetFilter().SetSortColumn(column);
    stage.GetFilter().SetSortDirection(isAscending);
  }
  [[nodiscard]] std::vector<std::string> List(const std::string& text)
  {
    stage.ShowAsList(text);
    return stage.TakeRows();
  }
  void UseListedTree()
  {
    stage.state->makeFilteredTree = [this] { return new ListedTree(content); };
  }

  ListedTree::Content content;
  StructureStage stage;
};

TEST_F(FilterAsList, OutsideOfListPresentation_DoesNothing)
{
  UseListedTree();
  stage.Show("nut");
  static_cast<void>(stage.host.TakeCalls());
  content.questions = 0;

  EXPECT_FALSE(stage.state->ApplyFilterAsList(stage.GetResult()->GetRoot(), nullptr));

  EXPECT_THAT(stage.host.TakeCalls(), ElementsAre(testing::StartsWith("GetViewTypeString")));
  EXPECT_EQ(content.questions, 0);
}

TEST_F(FilterAsList, WithoutAMatch_IsTheRowOfTheRootAlone)
{
  EXPECT_THAT(List("screw"), ElementsAre("null/root"));

  EXPECT_TRUE(stage.state->ApplyFilterAsList(stage.GetResult()->GetRoot(), nullptr));
  EXPECT_THAT(stage.TakeRows(), ElementsAre("null/root"));
}

TEST_F(FilterAsList, OfNoNode_WritesNothingAndSaysSo)
{
  stage.ShowAsList("nut");
  static_cast<void>(stage.host.TakeCalls());

  EXPECT_TRUE(stage.state->ApplyFilterAsList(nullptr, nullptr));

  EXPECT_THAT(stage.TakeRows(), IsEmpty());
}

TEST_F(FilterAsList, WithoutAResult_WritesNothingAndSaysSo)
{
  stage.GetFilter().listMode = 1;
  stage.GetFilter().SetText("nut");
  guitree::FilteredTree::Node node{.instance = stage.kernel["root"].Get()};

  EXPECT_TRUE(stage.state->ApplyFilterAsList(&node, nullptr));

  EXPECT_THAT(stage.TakeRows(), IsEmpty());
}

TEST_F(FilterAsList, OfAPlaceholder_WritesNothingAndSaysSo)
{
  stage.ShowAsList("nut");
  static_cast<void>(stage.host.TakeCalls());
  guitree::FilteredTree::Node parent{.instance = stage.kernel["root"].Get()};
  guitree::FilteredTree::Node placeholder{.parent = &parent};

  EXPECT_TRUE(stage.state->ApplyFilterAsList(&placeholder, nullptr));

  EXPECT_THAT(stage.host.TakeCalls(), testing::Each(testing::StartsWith("GetViewTypeString")));
}

TEST_F(FilterAsList, ShowsTheMatchesOneLevelUnderTheRootAndNoMereAncestors)
{
  EXPECT_THAT(List("nut"), ElementsAre("null/root", "root/nut1", "root/nut2", "root/nut3"));
  EXPECT_THAT(stage.state->GetNotFilteredSet().size(), 3U);
}

TEST_F(FilterAsList, OfTheSameResult_TheTreeShowsTheBranchesByTheirNodes)
{
  stage.Show("bolt");
  EXPECT_THAT(stage.TakeCalls("InstanceCreate"), ElementsAre("InstanceCreate(node root, controller=no, assoc=false)",
                                                             "InstanceCreate(node plate, controller=no, assoc=false)",
                                                             "InstanceCreate(node bolt, controller=no, assoc=false)"));

  stage.ShowAsList("bolt");
  EXPECT_THAT(stage.TakeCalls("InstanceCreate"),
              ElementsAre("InstanceCreate(root, parent=null, controller=no, assoc=false)",
                          "InstanceCreate(bolt, parent=root, controller=no, assoc=false)"));
}

TEST_F(FilterAsList, StandsInTheBracketsOfAResult)
{
  stage.ShowAsList("bolt");

  EXPECT_THAT(stage.host.TakeCalls(), testing::IsSupersetOf({"StartTreeUpdate()", "PostProcessingComplete()",
                                                             "UpdateTreeTable()", "FinishTreeUpdate()"}));
}

TEST_F(FilterAsList, ARootThatIsNoItem_HasItsRowAllTheSameAndIsInNoSet)
{
  stage.state->selController = du::MakeSmart<testsupport::ScriptedSelectionController>();
  stage.state->selController->highlighted = {stage.kernel["root"], stage.kernel["nut1"]};

  stage.ShowAsList("nut1");

  EXPECT_THAT(stage.TakeCalls("InstanceCreate"),
              ElementsAre("InstanceCreate(root, parent=null, controller=yes, assoc=false)",
                          "InstanceCreate(nut1, parent=root, controller=yes, assoc=true)"));
  EXPECT_FALSE(stage.state->GetNotFilteredSet().contains(stage.kernel["root"].Get()));
  EXPECT_FALSE(stage.state->IsAssocHlight(stage.kernel["root"].Get()));
  EXPECT_TRUE(stage.state->IsAssocHlight(stage.kernel["nut1"].Get()));
}

TEST_F(FilterAsList, ARootThatIsAnItem_HasAnOrdinaryRowAndIsNotListedUnderItself)
{
  stage.state->selController = du::MakeSmart<testsupport::ScriptedSelectionController>();
  stage.state->selController->highlighted = {stage.kernel["root"]};

  stage.ShowAsList("o");

  EXPECT_THAT(stage.TakeCalls("InstanceCreate"),
              ElementsAre("InstanceCreate(root, parent=null, controller=yes, assoc=true)",
                          "InstanceCreate(bolt, parent=root, controller=yes, assoc=false)"));
  EXPECT_TRUE(stage.state->GetNotFilteredSet().contains(stage.kernel["root"].Get()));
}

TEST_F(FilterAsList, AHiddenRootThatIsAnItem_HasNoRowAndOneThatIsNoneHas)
{
  stage.SetFlag("root", memkernel::Instance3dSymbol);

  EXPECT_THAT(List("o"), ElementsAre("root/bolt"));
  EXPECT_THAT(List("bolt"), ElementsAre("null/root", "root/bolt"));
}

TEST_F(FilterAsList, WhatCallsItselfTheRoot_IsNotListedAndWhatHasNoPartIdIs)
{
  const auto impostor = du::MakeSmart<filtertest::FilterItem>("impostor");
  impostor->SetProperty(std::string(zelk::BaseInstanceDynamicPropertiesCache::s_GroupName), "Part ID",
                        std::string(zelk::ComponentInstance::ROOT_INSTANCE_ID));
  content.additional = {impostor};
  UseListedTree();
  EXPECT_THAT(List("bolt"), ElementsAre("null/root", "root/bolt"));

  content.additional = {du::MakeSmart<filtertest::FilterItem>("nameless")};
  EXPECT_THAT(List("bolt"), UnorderedElementsAre("null/root", "root/bolt", "root/nameless"));

  impostor->SetProperty(std::string(zelk::BaseInstanceDynamicPropertiesCache::s_GroupName), "Part ID", "");
  content.additional = {impostor};
  EXPECT_THAT(List("bolt"), UnorderedElementsAre("null/root", "root/bolt", "root/impostor"));
}

TEST_F(FilterAsList, NoInstanceAmongTheItems_IsPassedOver)
{
  content.additional = {nullptr};
  UseListedTree();

  EXPECT_THAT(List("bolt"), ElementsAre("null/root", "root/bolt"));
}

TEST_F(FilterAsList, HiddenBodiesAndSymbols_AreLeftOut)
{
  stage.SetFlag("nut1", memkernel::InstanceBody);
  stage.SetFlag("nut2", memkernel::Instance3dSymbol);
  EXPECT_THAT(List("nut"), ElementsAre("null/root", "root/nut1", "root/nut3"));

  guitree::WorldTreeState::SetIsShowingBodies(false);
  EXPECT_THAT(List("nut"), ElementsAre("null/root", "root/nut3"));
}

TEST_F(FilterAsList, WithoutASortColumn_HasTheOrderOfTheKeys)
{
  StructureStage keyed("root");
  const auto add = [&keyed](const char* name, const char* key) {
    keyed.kernel.Get()->AddChild(keyed.kernel["root"], keyed.kernel.Get()->CreateProduct({.name = name, .key = key}));
  };
  add("nut1", "c");
  add("nut2", "a");
  add("nut3", "b");
  keyed.GetFilter().SetSortDirection(false);

  keyed.ShowAsList("nut");

  EXPECT_THAT(keyed.TakeRows(), ElementsAre("null/root", "root/nut2", "root/nut3", "root/nut1"));
}

TEST_F(FilterAsList, SortedUp_PutsItemsWithoutAValueLast)
{
  SetMaterials();
  SortBy({"Data", "Material"}, true);

  EXPECT_THAT(List("nut"), ElementsAre("null/root", "root/nut3", "root/nut1", "root/nut2"));
}

TEST_F(FilterAsList, SortedDown_PutsItemsWithoutAValueFirst)
{
  SetMaterials();
  SortBy({"Data", "Material"}, false);

  EXPECT_THAT(List("nut"), ElementsAre("null/root", "root/nut2", "root/nut1", "root/nut3"));
}

TEST_F(FilterAsList, Sorted_GoesOverTheWholeListByBytes)
{
  stage.SetMaterial("nut1", "steel");
  stage.SetMaterial("nut2", "Zinc");
  stage.SetMaterial("nut3", "brass");
  SortBy({"Data", "Material"}, true);

  EXPECT_THAT(List("nut"), ElementsAre("null/root", "root/nut2", "root/nut3", "root/nut1"));
}

TEST_F(FilterAsList, AColumnWithOneName_Sorts)
{
  stage.kernel.Get()->SetProperty(stage.kernel["nut1"], "", "Mass", "3");
  stage.kernel.Get()->SetProperty(stage.kernel["nut2"], "", "Mass", "2");
  stage.kernel.Get()->SetProperty(stage.kernel["nut3"], "", "Mass", "1");
  SortBy({"", "Mass"}, true);

  EXPECT_THAT(List("nut"), ElementsAre("null/root", "root/nut3", "root/nut2", "root/nut1"));
}

TEST_F(FilterAsList, AColumnWithoutNames_IsNoneEvenWhereAPropertyHasNoName)
{
  stage.kernel.Get()->SetProperty(stage.kernel["nut1"], "", "", "3");
  stage.kernel.Get()->SetProperty(stage.kernel["nut2"], "", "", "2");
  stage.kernel.Get()->SetProperty(stage.kernel["nut3"], "", "", "1");
  SortBy({"", ""}, true);

  EXPECT_THAT(List("nut"), ElementsAre("null/root", "root/nut1", "root/nut2", "root/nut3"));
}

TEST_F(FilterAsList, AColumnThatNoItemHas_KeepsAllItems)
{
  for (const bool isAscending : {true, false}) {
    SortBy({"Data", "Material"}, isAscending);
    EXPECT_THAT(List("nut"), UnorderedElementsAre("null/root", "root/nut1", "root/nut2", "root/nut3"));
  }
}

TEST_F(FilterAsList, AnotherSortColumn_ReachesTheListWithTheNextPopulation)
{
  SetMaterials();
  SortBy({"Data", "Material"}, true);
  EXPECT_THAT(List("nut"), ElementsAre("null/root", "root/nut3", "root/nut1", "root/nut2"));

  SortBy({"Data", "Material"}, false);
  EXPECT_THAT(stage.TakeRows(), IsEmpty());

  stage.state->PopulateTree(false);
  stage.Finish();
  EXPECT_THAT(stage.TakeRows(), ElementsAre("null/root", "root/nut2", "root/nut1", "root/nut3"));
}

TEST_F(FilterAsList, ItemsOfEqualKeys_AreOneItem)
{
  content.additional = {du::MakeSmart<filtertest::FilterItem>("twin"), du::MakeSmart<filtertest::FilterItem>("twin")};
  UseListedTree();

  EXPECT_THAT(List("bolt"), UnorderedElementsAre("null/root", "root/bolt", "root/twin"));
}

TEST_F(FilterAsList, OpensNoBranchOnDemand)
{
  stage.ShowAsList("bolt");

  EXPECT_FALSE(stage.state->ExpandFilterNode({stage.kernel["root"].Get()}));
}

TEST_F(FilterAsList, ListsTheSiblingsThatComeAlongWithAMatch)
{
  stage.GetFilter().SetShowSiblings(true);

  EXPECT_THAT(List("bolt"), UnorderedElementsAre("null/root", "root/plate", "root/nut1", "root/bolt", "root/frame"));
}

/// Two passes of a filter of another class, whose first one leaves what is not hidden among the created items.
TEST_F(FilterAsList, AfterTwoPasses_ListsWhatTheSecondOneHasLeft)
{
  class TwoPasses : public structuretest::OpenStructureState {
  public:
    using OpenStructureState::OpenStructureState;
    testsupport::ScriptedFilter filter;
    [[nodiscard]] bool IsDoingFilterAsList() override { return true; }
    [[nodiscard]] structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& /*view*/) override
    {
      return filter;
    }
  };
  const auto state = du::MakeSmart<TwoPasses>(*stage.gui, true);
  stage.gui->SetTreeState(state);
  state->filter.isFiltering = true;
  state->filter.hasHiddenPass = true;
  state->filter.filtersOut = [](const auto& instance, bool hiddenPass) {
    const auto name = std::string(instance->GetObjectName());
    return hiddenPass ? name == "nut3" : name != "bolt";
  };

  state->PopulateTree(false);
  stage.Finish();

  EXPECT_THAT(stage.TakeRows(), ElementsAre("null/root", "root/bolt"));
}

}  // namespace
