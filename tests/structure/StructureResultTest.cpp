// The result of a filter in a structure panel, in tree presentation, and what is said of it.

#include <gmock/gmock.h>

#include "StructureStage.h"

namespace {

using structuretest::OpenStructureState;
using structuretest::StructureStage;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using zelremote::StructureFilterInfo;

std::vector<std::string> NamesOfRows(const OpenStructureState& state)
{
  std::vector<std::string> names;
  for (const zelk::BaseInstance* instance : state.GetNotFilteredSet()) {
    names.emplace_back(instance->GetObjectName());
  }
  return names;
}

TEST(StructureResult, AsTree_IsTheBranchesOfTheMatches)
{
  StructureStage stage;

  stage.Show("nut");

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "plate", "nut1", "frame", "nut2", "nut3"));
  EXPECT_THAT(NamesOfRows(*stage.state), UnorderedElementsAre("root", "plate", "nut1", "frame", "nut2", "nut3"));
}

TEST(StructureResult, WithAMatch_KeepsAllThatIsRightBelowTheRoot)
{
  StructureStage stage("root[a[nut x] b[x] c]");

  stage.Show("nut");

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "a", "nut", "b", "c"));
}

TEST(StructureResult, WithoutAMatch_IsTheRowOfTheRootAloneWhichIsInNoSet)
{
  StructureStage stage;

  stage.Show("screw");

  EXPECT_THAT(stage.TakeCalls("InstanceCreate"), ElementsAre("InstanceCreate(node root, controller=no, assoc=false)"));
  EXPECT_THAT(stage.state->GetNotFilteredSet(), IsEmpty());
}

TEST(StructureResult, OfWhichTheRootAloneIsAMatch_IsTheRowOfTheRootWhichIsInNoSet)
{
  StructureStage stage;

  stage.Show("root");

  EXPECT_THAT(stage.TakeCalls("InstanceCreate"), ElementsAre("InstanceCreate(node root, controller=no, assoc=false)"));
  EXPECT_TRUE(stage.state->IsMatchedFilterEmpty());
  EXPECT_TRUE(stage.state->IsFilteredTreeContainItem(stage.kernel["root"]));
}

TEST(StructureResult, OfADeepTree_HasARowForEachLevel)
{
  constexpr std::size_t depth = 10000;
  StructureStage stage;
  const auto tree = du::MakeSmart<memkernel::Tree>();
  const auto product = tree->CreateProduct({.name = "part"});
  auto leaf = tree->CreateRoot(product);
  for (std::size_t level = 2; level < depth; ++level) {
    leaf = tree->AddChild(leaf, product);
  }
  leaf = tree->AddChild(leaf, tree->CreateProduct({.name = "nut"}));
  stage.gui->SetBaseTree(tree);

  stage.Show("nut");

  EXPECT_EQ(stage.TakeRows().size(), depth);
  EXPECT_TRUE(stage.state->GetNotFilteredSet().contains(leaf.Get()));
}

TEST(StructureResult, WithoutAMatch_ShowsNoHighlightOnTheRow)
{
  StructureStage stage;
  stage.state->selController = du::MakeSmart<testsupport::ScriptedSelectionController>();
  stage.state->selController->highlighted = {stage.kernel["root"]};

  stage.Show("screw");

  EXPECT_THAT(stage.TakeCalls("InstanceCreate"), ElementsAre("InstanceCreate(node root, controller=yes, assoc=false)"));
  EXPECT_FALSE(stage.state->IsAssocHlight(stage.kernel["root"].Get()));
}

TEST(StructureResult, WithoutAMatch_BelowTheRootANewInstanceIsIgnoredByAStaticFilter)
{
  StructureStage stage;
  stage.Show("screw");
  const auto created = stage.kernel.Add("root", "screw");

  EXPECT_FALSE(stage.state->InstanceCreate(created, stage.kernel["root"], nullptr));

  stage.GetFilter().SetDynamicUpdate(true);
  EXPECT_TRUE(stage.state->InstanceCreate(created, stage.kernel["root"], nullptr));
}

TEST(StructureResult, WithAMatch_BelowTheRootANewInstanceAsksForAPopulation)
{
  StructureStage stage;
  stage.Show("nut");
  const auto created = stage.kernel.Add("root", "nut4");

  EXPECT_TRUE(stage.state->InstanceCreate(created, stage.kernel["root"], nullptr));
}

TEST(StructureResult, OfAFilterThatHasBeenTurnedOffMeanwhile_IsNotThatOfNoMatch)
{
  StructureStage stage;
  stage.GetFilter().SetText("screw");
  stage.state->PopulateTree(false);
  stage.GetFilter().ClearCriteria();
  static_cast<void>(stage.host.TakeCalls());

  stage.Finish();

  EXPECT_FALSE(stage.state->IsMatchedFilterEmpty());
  EXPECT_THAT(NamesOfRows(*stage.state), UnorderedElementsAre("root", "plate"));
}

TEST(StructureResult, IsSaidToBeEmpty_OnlyUnderAFilterWithAResultAndWithoutAMatch)
{
  StructureStage stage;
  EXPECT_FALSE(stage.state->IsMatchedFilterEmpty());
  stage.GetFilter().SetText("screw");
  EXPECT_FALSE(stage.state->IsMatchedFilterEmpty());

  stage.Show("screw");
  EXPECT_TRUE(stage.state->IsMatchedFilterEmpty());

  stage.Show("nut");
  EXPECT_FALSE(stage.state->IsMatchedFilterEmpty());
}

TEST(StructureResult, ContainsWhatItsLastRunHasCreated)
{
  StructureStage stage;
  EXPECT_FALSE(stage.state->IsFilteredTreeContainItem(stage.kernel["nut1"]));

  stage.Show("nut");

  EXPECT_TRUE(stage.state->IsFilteredTreeContainItem(stage.kernel["nut1"]));
  EXPECT_FALSE(stage.state->IsFilteredTreeContainItem(stage.kernel["bolt"]));
  EXPECT_FALSE(stage.state->IsFilteredTreeContainItem(stage.kernel["plate"]));
}

TEST(StructureResult, TheRootIsNoMatchOfItsOwn)
{
  const StructureStage stage;

  EXPECT_FALSE(stage.state->GetDisplayRoot());
}

TEST(StructureResult, LeavesOutWhatIsHidden)
{
  StructureStage stage;
  stage.SetFlag("nut1", memkernel::InstanceBody);
  stage.SetFlag("nut2", memkernel::Instance3dSymbol);
  guitree::WorldTreeState::SetIsShowingBodies(false);

  stage.Show("nut");

  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "plate", "frame", "nut3"));
}

TEST(StructureResult, InListModeWithoutAFilter_IsThePlainTree)
{
  StructureStage stage;
  stage.GetFilter().listMode = 1;
  EXPECT_FALSE(stage.state->IsDoingFilterAsList());

  stage.state->PopulateTree(false);

  EXPECT_THAT(stage.TakeRows(), ElementsAre("null/root", "root/plate", "plate/nut1", "plate/bolt", "plate/frame",
                                            "frame/nut2", "frame/nut3"));
}

TEST(StructureResult, IsAList_OnlyInListModeOneUnderAFilter)
{
  const StructureStage stage;
  stage.GetFilter().SetText("nut");
  for (const int mode : {-1, 0, 1, 2}) {
    stage.GetFilter().listMode = mode;
    EXPECT_EQ(stage.state->IsDoingFilterAsList(), mode == 1) << mode;
  }
}

/// A run that is cancelled on its way.
class CancelledResult : public testing::Test {
protected:
  /// Populates; the job is cancelled when it has judged the instance of that name.
  void CancelAfter(const std::string& name)
  {
    stage.state->makeFilteredTree = [this, name] { return new CancellingTree(stage.host, name); };
    stage.GetFilter().SetText("nut");
    stage.state->PopulateTree(false);
    static_cast<void>(stage.host.TakeCalls());
    stage.Finish();
  }

  StructureStage stage;

private:
  class CancellingTree : public guitree::FilteredTree {
  public:
    CancellingTree(structuretest::ViewTypeHost& host, std::string name) : m_host(host), m_name(std::move(name)) {}

  protected:
    void AddMatchedFilterItem(const du::SmartPtr<zelk::BaseInstance>& instance, bool matched) override
    {
      FilteredTree::AddMatchedFilterItem(instance, matched);
      _CancelAfter(instance);
    }
    [[nodiscard]] bool IsFilteredOutByAdditionalCheck(structure_utils::TreeFilterInfoBase& /*filter*/,
                                                      const du::SmartPtr<zelk::BaseInstance>& instance) override
    {
      _CancelAfter(instance);
      return true;
    }

  private:
    void _CancelAfter(const du::SmartPtr<zelk::BaseInstance>& instance)
    {
      if (instance && instance->GetObjectName() == du::Symbol(std::string_view(m_name))) {
        m_host.events.back()->Cancel();
      }
    }

    structuretest::ViewTypeHost& m_host;
    const std::string m_name;
  };
};

TEST_F(CancelledResult, BeforeItsRun_HasNoRowAtAll)
{
  stage.GetFilter().SetText("nut");
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());
  stage.host.events.back()->Cancel();

  stage.Finish();

  EXPECT_EQ(filtertest::Show(stage.GetResult()), "none");
  EXPECT_THAT(stage.TakeRows(), IsEmpty());
}

TEST_F(CancelledResult, WithoutAMatch_IsTheRowOfTheRootWithoutAPlaceholder)
{
  CancelAfter("plate");

  ASSERT_TRUE(stage.GetResult());
  EXPECT_EQ(filtertest::Show(stage.GetResult()), "root[...]");
  EXPECT_THAT(stage.TakeRows(), ElementsAre("root"));
  EXPECT_THAT(stage.state->GetNotFilteredSet(), IsEmpty());
}

TEST_F(CancelledResult, WithAMatchBeforeTheCancel_AnnouncesThePlaceholder)
{
  CancelAfter("nut1");

  EXPECT_EQ(filtertest::Show(stage.GetResult()), "root[...]");
  EXPECT_FALSE(stage.state->IsMatchedFilterEmpty());
  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "...root"));
}

TEST_F(CancelledResult, AsList_AnnouncesNoPlaceholderAndListsWhatWasFound)
{
  stage.GetFilter().listMode = 1;

  CancelAfter("nut1");

  EXPECT_THAT(stage.TakeRows(), ElementsAre("null/root", "root/nut1"));
}

TEST_F(CancelledResult, AsListWithoutAMatch_IsTheRowOfTheRootAlone)
{
  stage.GetFilter().listMode = 1;

  CancelAfter("plate");

  EXPECT_THAT(stage.TakeRows(), ElementsAre("null/root"));
}

TEST_F(CancelledResult, OpensTheBranchThatItAnnounces)
{
  CancelAfter("nut1");
  static_cast<void>(stage.host.TakeCalls());

  EXPECT_TRUE(stage.state->ExpandFilterNode({stage.kernel["root"].Get()}));

  EXPECT_THAT(stage.TakeRows(), ElementsAre("plate", "nut1", "bolt", "frame", "nut2", "nut3"));
}

TEST_F(CancelledResult, WithoutAMatch_StillOpensItsBranch)
{
  CancelAfter("plate");
  static_cast<void>(stage.host.TakeCalls());

  EXPECT_TRUE(stage.state->ExpandFilterNode({stage.kernel["root"].Get()}));

  EXPECT_TRUE(stage.state->IsMatchedFilterEmpty());
  EXPECT_THAT(stage.TakeRows(), ElementsAre("plate", "nut1", "bolt", "frame", "nut2", "nut3"));
}

class EndOfASelectionUpdate : public testing::TestWithParam<std::tuple<bool, bool, bool>> {};

TEST_P(EndOfASelectionUpdate, PopulatesUnderADynamicFilterOnVisibilityOrSelection)
{
  const StructureStage stage;
  const auto [isDynamic, onVisibility, onSelection] = GetParam();
  StructureFilterInfo& filter = stage.GetFilter();
  filter.SetDynamicUpdate(isDynamic);
  filter.SetSelectedOnly(onSelection);
  filter.SetVisibility(onVisibility ? StructureFilterInfo::Visibility::Hidden : StructureFilterInfo::Visibility::Any);

  stage.state->OnEndUpdate();

  const bool isDue = isDynamic && (onVisibility || onSelection);
  EXPECT_EQ(stage.state->populations, (isDue ? std::vector{true} : std::vector<bool>{}));
}

INSTANTIATE_TEST_SUITE_P(All, EndOfASelectionUpdate,
                         testing::Combine(testing::Bool(), testing::Bool(), testing::Bool()));

TEST(EndOfASelectionUpdateOnAHiddenPanel, PopulatesUnderAFilterOnVisibilityAndOtherwiseSetsTheFlag)
{
  StructureStage stage;
  stage.host.answers.isTreeVisibleInUI = false;
  stage.GetFilter().SetDynamicUpdate(true);
  stage.GetFilter().SetSelectedOnly(true);
  stage.state->OnEndUpdate();
  EXPECT_TRUE(stage.state->GetSelectionNeedsUpdating());
  EXPECT_THAT(stage.state->populations, IsEmpty());

  stage.GetFilter().SetVisibility(StructureFilterInfo::Visibility::Visible);
  stage.state->OnEndUpdate();
  EXPECT_THAT(stage.state->populations, ElementsAre(true));
  EXPECT_TRUE(stage.state->GetTreeNeedsRedraw());
}

/// A state whose filter is of another class.
class OtherFilterState : public OpenStructureState {
public:
  explicit OtherFilterState(guitree::GuiTree& tree) : OpenStructureState(tree, true) {}

  testsupport::ScriptedFilter filter;

  [[nodiscard]] structure_utils::TreeFilterInfoBase& GetFilter(const du::SmartPtr<zelk::View>& /*view*/) override
  {
    return filter;
  }
};

TEST(StructureResultOfAnotherFilterClass, IsNeverAListAndFollowsNoResults)
{
  StructureStage stage;
  const auto state = du::MakeSmart<OtherFilterState>(*stage.gui);
  stage.gui->SetTreeState(state);
  state->filter.isFiltering = true;
  state->filter.filtersOut = [](const auto& instance, bool) { return instance->GetObjectName() != du::Symbol("bolt"); };
  EXPECT_FALSE(state->IsDoingFilterAsList());

  state->SetResultsComps(nullptr);
  EXPECT_THAT(state->populations, IsEmpty());

  state->PopulateTree(false);
  stage.Finish();
  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "plate", "bolt"));
  EXPECT_FALSE(state->IsMatchedFilterEmpty());

  state->filter.filtersOut = [](const auto&, bool) { return true; };
  state->PopulateTree(false);
  stage.Finish();
  EXPECT_THAT(stage.TakeRows(), ElementsAre("root"));
  EXPECT_TRUE(state->IsMatchedFilterEmpty());
}

/// A chain of 10,000 instances, the last of which matches.
TEST(StructureResultOfADeepTree, IsShownLevelByLevel)
{
  constexpr std::size_t s_levels = 10000;
  StructureStage stage("root");
  du::SmartPtr<memkernel::Instance> bottom = stage.kernel["root"];
  const auto link = stage.kernel.Get()->CreateProduct({.name = "link"});
  for (std::size_t level = 2; level < s_levels; ++level) {
    bottom = stage.kernel.Get()->AddChild(bottom, link);
  }
  bottom = stage.kernel.Get()->AddChild(bottom, stage.kernel.Get()->CreateProduct({.name = "nut"}));

  stage.Show("nut");

  const std::vector<std::string> rows = stage.TakeRows();
  ASSERT_EQ(rows.size(), s_levels);
  EXPECT_EQ(rows.front(), "root");
  EXPECT_EQ(rows.back(), "nut");
  EXPECT_EQ(stage.state->GetNotFilteredSet().size(), s_levels);
}

}  // namespace
