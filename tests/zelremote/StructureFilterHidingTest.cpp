#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "FilterRun.h"

namespace {

using filtertest::FilterItem;
using filtertest::GetPassing;
using Names = std::vector<std::string>;

/// A car with a body that has something below it, and two groups of siblings.
class StructureFilterHiding : public testing::Test {
protected:
  StructureFilterHiding()
  {
    FilterItem* engine = car->Add("engine");
    engine->AddBody("block")->Add("face")->Add("edge");
    engine->Add("plug");
    AddWheel(true, "wheel 1");
    AddWheel(false, "wheel 2");
    AddWheel(false, "wheel 3");
  }

  void AddWheel(bool isFirst, const std::string& name)
  {
    FilterItem* wheel = car->AddSibling(name, isFirst);
    wheel->Add("rim of " + name)->AddBody("body of " + name);
  }

  filtertest::FilterRun run;
  zelremote::StructureFilterInfo filter{"panel"};
  filtertest::Item car = du::MakeSmart<FilterItem>("car");

  const Names withoutBodies{"car",     "engine",         "plug",    "wheel 1",       "rim of wheel 1",
                            "wheel 2", "rim of wheel 2", "wheel 3", "rim of wheel 3"};
  const Names withoutSiblings{"car",  "engine",  "block",          "face",           "edge",
                              "plug", "wheel 1", "rim of wheel 1", "body of wheel 1"};
};

TEST_F(StructureFilterHiding, NothingIsHidden_AtTheStart)
{
  EXPECT_EQ(GetPassing(run, filter, car.Get(), true).size(), 15U);
}

TEST_F(StructureFilterHiding, HideBodies_LeavesOutBodiesAndAllBelowThem)
{
  filter.hideBodies = true;

  EXPECT_EQ(GetPassing(run, filter, car.Get(), true), withoutBodies);
  EXPECT_EQ(GetPassing(run, filter, car.Get(), false), withoutBodies);
}

TEST_F(StructureFilterHiding, CollapseInstances_LeavesOutLaterSiblingsAndAllBelowThem)
{
  filter.collapseInstances = true;

  EXPECT_EQ(GetPassing(run, filter, car.Get(), true), withoutSiblings);
  EXPECT_EQ(GetPassing(run, filter, car.Get(), false), withoutSiblings);
}

TEST_F(StructureFilterHiding, BothTogether_LeaveOutEither)
{
  filter.hideBodies = true;
  filter.collapseInstances = true;

  EXPECT_EQ(GetPassing(run, filter, car.Get(), true), (Names{"car", "engine", "plug", "wheel 1", "rim of wheel 1"}));
}

TEST_F(StructureFilterHiding, AnInstanceWithoutAGroup_IsNoLaterSibling)
{
  const auto single = du::MakeSmart<FilterItem>("single");
  single->isSibling = false;
  single->isFirstSibling = false;

  filter.collapseInstances = true;

  EXPECT_TRUE(run.Passes(filter, single.Get(), true));
}

TEST_F(StructureFilterHiding, TheHiddenPass_DoesNotAskForTheCriteria)
{
  filter.hideBodies = true;
  filter.SetText("no such name");
  filter.SetSelectedOnly(true);
  filter.useResultsList = true;

  EXPECT_EQ(GetPassing(run, filter, car.Get(), true), withoutBodies);
  EXPECT_EQ(GetPassing(run, filter, car.Get(), false), Names{});
}

TEST_F(StructureFilterHiding, WithoutAHiddenPass_MatchesThatAreHiddenStayOut)
{
  filter.SetText("wheel");
  filter.hideBodies = true;
  filter.collapseInstances = true;

  ASSERT_FALSE(filter.IsHiddenFilter(false));
  EXPECT_EQ(GetPassing(run, filter, car.Get()), (Names{"wheel 1", "rim of wheel 1"}));
}

TEST_F(StructureFilterHiding, ABodyThatIsLookedFor_IsNotFoundWhereBodiesAreHidden)
{
  filter.SetBodiesOnly(true);
  filter.hideBodies = true;

  EXPECT_EQ(GetPassing(run, filter, car.Get()), Names{});
}

TEST_F(StructureFilterHiding, SiblingsNeedAHiddenPassInEachPresentation)
{
  filter.SetText("wheel");
  filter.hideBodies = true;
  EXPECT_FALSE(filter.IsHiddenFilter(false));

  filter.SetShowSiblings(true);
  for (const int listMode : {0, 1, 2}) {
    filter.listMode = listMode;
    EXPECT_TRUE(filter.IsHiddenFilter(false)) << listMode;
    EXPECT_FALSE(filter.IsHiddenFilter(true)) << listMode;
  }
}

TEST_F(StructureFilterHiding, SelectedSiblingThatIsHidden_IsFoundAsTheFirst)
{
  run.selected = {car->children[2]};
  filter.SetSelectedOnly(true);
  filter.collapseInstances = true;

  EXPECT_EQ(GetPassing(run, filter, car.Get()), Names{"wheel 1"});
}

TEST_F(StructureFilterHiding, SelectedSiblingThatIsNotHidden_IsFoundItself)
{
  run.selected = {car->children[2]};
  filter.SetSelectedOnly(true);

  EXPECT_EQ(GetPassing(run, filter, car.Get()), Names{"wheel 2"});
}

TEST_F(StructureFilterHiding, ResultThatIsAHiddenSibling_IsFoundAsTheFirst)
{
  run.results = {car->children[3]};
  filter.useResultsList = true;
  filter.collapseInstances = true;

  EXPECT_EQ(GetPassing(run, filter, car.Get()), Names{"wheel 1"});
}

TEST_F(StructureFilterHiding, ADuplicate_AnswersLikeItsOriginal)
{
  for (const auto& [bodies, siblings] : {std::pair(true, false), {false, true}, {true, true}, {false, false}}) {
    filter.hideBodies = bodies;
    filter.collapseInstances = siblings;
    const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());

    for (const bool hiddenPass : {true, false, true}) {
      EXPECT_EQ(GetPassing(run, *duplicate, car.Get(), hiddenPass), GetPassing(run, filter, car.Get(), hiddenPass));
    }
  }
}

TEST_F(StructureFilterHiding, ADuplicateOfADuplicate_RemembersNothingOfTheOthers)
{
  filter.hideBodies = true;
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> first(filter.Duplicate());
  ASSERT_EQ(GetPassing(run, *first, car.Get(), true), withoutBodies);
  FilterItem* engine = car->children.front().Get();
  engine->isBody = true;

  const std::unique_ptr<structure_utils::TreeFilterInfoBase> second(first->Duplicate());

  EXPECT_FALSE(run.Passes(*second, engine->children.back().Get(), true));
}

TEST_F(StructureFilterHiding, ACopyOfADuplicate_RemembersNothingOfIt)
{
  filter.hideBodies = true;
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());
  ASSERT_EQ(GetPassing(run, *duplicate, car.Get(), true), withoutBodies);
  FilterItem* engine = car->children.front().Get();
  engine->isBody = true;

  auto copy = dynamic_cast<zelremote::StructureFilterInfo&>(*duplicate);
  EXPECT_FALSE(run.Passes(copy, engine->children.back().Get(), true));

  engine->isBody = false;
  copy = dynamic_cast<zelremote::StructureFilterInfo&>(*duplicate);
  EXPECT_TRUE(run.Passes(copy, engine->children.back().Get(), true));
}

TEST_F(StructureFilterHiding, ADuplicateThatBeginsAtTheTopAgain_SeesWhatHasChanged)
{
  filter.hideBodies = true;
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());
  ASSERT_EQ(GetPassing(run, *duplicate, car.Get(), true), withoutBodies);

  car->children.front()->isBody = true;

  EXPECT_EQ(GetPassing(run, *duplicate, car.Get(), true),
            (Names{"car", "wheel 1", "rim of wheel 1", "wheel 2", "rim of wheel 2", "wheel 3", "rim of wheel 3"}));
}

TEST_F(StructureFilterHiding, ADuplicateWithAnotherRule_ForgetsWhatTheFormerHid)
{
  filter.hideBodies = true;
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());
  auto& settings = dynamic_cast<zelremote::StructureFilterInfo&>(*duplicate);
  FilterItem* face = car->children.front()->children.front()->children.front().Get();
  ASSERT_FALSE(run.Passes(*duplicate, face, true));

  settings.hideBodies = false;
  settings.collapseInstances = true;

  EXPECT_TRUE(run.Passes(*duplicate, face, true));
}

FilterItem* AddChain(FilterItem* top, int length)
{
  for (int i = 0; i < length; ++i) {
    top = top->Add("link");
  }
  return top;
}

int CountParentQuestions(FilterItem* top)
{
  int count = 0;
  std::vector<FilterItem*> open{top};
  while (!open.empty()) {
    const FilterItem* item = open.back();
    open.pop_back();
    count += item->parentQuestions;
    for (const auto& child : item->children) {
      open.push_back(child.Get());
    }
  }
  return count;
}

TEST_F(StructureFilterHiding, AWalkDownADeepTree_AsksForAFewParentsEach)
{
  constexpr int depth = 10000;
  const auto top = du::MakeSmart<FilterItem>("top");
  AddChain(top.Get(), depth);
  filter.hideBodies = true;
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());

  EXPECT_EQ(GetPassing(run, *duplicate, top.Get(), true).size(), depth + 1U);

  EXPECT_LE(CountParentQuestions(top.Get()), 5 * depth);
}

TEST_F(StructureFilterHiding, SiblingsFarBelowTheTop_AskForAFewParentsEach)
{
  constexpr int depth = 5000;
  constexpr int width = 5000;
  const auto top = du::MakeSmart<FilterItem>("top");
  FilterItem* const bottom = AddChain(top.Get(), depth);
  for (int i = 0; i < width; ++i) {
    bottom->AddBody("leaf");
  }
  filter.collapseInstances = true;
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());

  EXPECT_EQ(GetPassing(run, *duplicate, top.Get(), true).size(), depth + width + 1U);

  EXPECT_LE(CountParentQuestions(top.Get()), 5 * (depth + width));
}

TEST_F(StructureFilterHiding, AWalkBackUpADeepTree_AsksForAFewParentsEach)
{
  constexpr int depth = 10000;
  const auto top = du::MakeSmart<FilterItem>("top");
  FilterItem* link = top.Get();
  for (int i = 0; i < depth; ++i) {
    FilterItem* const next = link->Add("link");
    link->Add("leaf");
    link = next;
  }
  filter.hideBodies = true;
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());

  EXPECT_EQ(GetPassing(run, *duplicate, top.Get(), true).size(), 2 * depth + 1U);

  EXPECT_LE(CountParentQuestions(top.Get()), 20 * depth);
}

TEST_F(StructureFilterHiding, SiblingsFarBelowTheTopThatComeFirst_AskForAFewParentsEach)
{
  constexpr int depth = 10000;
  constexpr int width = 5000;
  const auto top = du::MakeSmart<FilterItem>("top");
  FilterItem* const bottom = AddChain(top.Get(), depth);
  filter.hideBodies = true;
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());

  for (int i = 0; i < width; ++i) {
    EXPECT_TRUE(run.Passes(*duplicate, bottom->Add("leaf"), true));
  }

  EXPECT_LE(CountParentQuestions(top.Get()), 2 * (depth + width));
}

TEST_F(StructureFilterHiding, ABodyAtTheTopOfADeepTree_HidesItsLastLeaf)
{
  const auto top = du::MakeSmart<FilterItem>("top");
  top->Add("first");
  FilterItem* const bottom = AddChain(top->AddBody("body"), 3000);
  filter.hideBodies = true;
  const std::unique_ptr<structure_utils::TreeFilterInfoBase> duplicate(filter.Duplicate());

  EXPECT_FALSE(run.Passes(filter, bottom, true));
  EXPECT_EQ(GetPassing(run, *duplicate, top.Get(), true), (Names{"top", "first"}));
  EXPECT_FALSE(run.Passes(*duplicate, bottom, true));
}

}  // namespace
