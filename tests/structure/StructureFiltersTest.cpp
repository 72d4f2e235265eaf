// One filter for each type of view: when it is made, told of, shared and let go of.

#include <gmock/gmock.h>

#include "StructureStage.h"

namespace {

using structuretest::MakeView;
using structuretest::StructureStage;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* s_notice = "UpdateQuickSearchResults";

std::vector<std::string> NoticeFor(const std::string& view)
{
  return {"UpdateQuickSearchResults(false, view=" + view + ", filterNeeded=true)"};
}

void StoreFlag(StructureStage& stage, const char* setting, bool value)
{
  stage.world->preferences->SetBool(du::Symbol(std::string_view("Structure Filter/panel/" + std::string(setting))),
                                    value);
}

TEST(StructureFilters, TheFirstLook_TellsTheHostBeforeItsViewTypeIsAskedAndTheSecondDoesNot)
{
  StructureStage stage;
  const auto view = MakeView("panel");

  static_cast<void>(stage.state->GetFilter(view));
  EXPECT_THAT(stage.host.TakeCalls(), ElementsAre("UpdateQuickSearchResults(false, view=panel, filterNeeded=true)",
                                                  testing::StartsWith("GetViewTypeString(panel)")));

  static_cast<void>(stage.state->GetFilter(view));
  static_cast<void>(stage.state->GetFilter(MakeView("other")));
  static_cast<void>(stage.state->GetFilter(nullptr));
  EXPECT_THAT(stage.TakeCalls(s_notice), IsEmpty());
}

TEST(StructureFilters, TheFirstLookAfterAReset_TellsTheHostAgain)
{
  StructureStage stage;
  static_cast<void>(stage.state->GetFilter(nullptr));
  stage.state->Reset();
  static_cast<void>(stage.host.TakeCalls());

  static_cast<void>(stage.state->GetFilter(MakeView("panel")));

  EXPECT_EQ(stage.TakeCalls(s_notice), NoticeFor("panel"));
}

TEST(StructureFilters, ALookWithoutAHost_TellsNobodyAndMakesAFilter)
{
  const auto gui = du::MakeSmart<guitree::GuiTree>(nullptr);
  const auto state = du::MakeSmart<guitree::StructureTreeState>(*gui, true);

  const structure_utils::TreeFilterInfoBase& filter = state->GetFilter(nullptr);

  EXPECT_EQ(&state->GetFilter(nullptr), &filter);
  state->Reset();
}

TEST(StructureFilters, ALookFromInsideTheNotice_GetsTheFilterWithoutAnother)
{
  StructureStage stage;
  const auto view = MakeView("panel");
  const structure_utils::TreeFilterInfoBase* inner = nullptr;
  stage.host.onCall = [&](const std::string& line) {
    if (line.starts_with(s_notice)) {
      inner = &stage.state->GetFilter(view);
    }
  };

  const structure_utils::TreeFilterInfoBase& filter = stage.state->GetFilter(view);

  EXPECT_EQ(inner, &filter);
  EXPECT_EQ(stage.TakeCalls(s_notice), NoticeFor("panel"));
}

TEST(StructureFilters, ALookAndAResetFromInsideTheNotice_LeaveAFilterThatIsAlive)
{
  StructureStage stage;
  const auto view = MakeView("panel");
  stage.OnceIn(s_notice, [&] {
    static_cast<void>(stage.state->GetFilter(view));
    stage.state->Reset();
    static_cast<void>(stage.state->GetFilter(view));
    stage.state->Reset();
  });

  stage.GetFilter(view).SetText("bolt");

  EXPECT_EQ(stage.GetFilter(view).GetText(), "bolt");
  EXPECT_EQ(stage.TakeCalls(s_notice), NoticeFor("panel"));
}

TEST(StructureFilters, TwoViewsOfOneType_ShareOneFilter)
{
  const StructureStage stage;

  stage.GetFilter(MakeView("panel")).SetText("nut");

  EXPECT_EQ(stage.GetFilter(MakeView("panel")).GetText(), "nut");
}

TEST(StructureFilters, ViewsOfDifferentTypes_HaveTheirOwn)
{
  const StructureStage stage;

  stage.GetFilter(MakeView("panel")).SetText("nut");

  EXPECT_EQ(stage.GetFilter(MakeView("sheet")).GetText(), "");
  EXPECT_EQ(stage.GetFilter().GetText(), "");
  EXPECT_EQ(stage.GetFilter(MakeView("panel")).GetText(), "nut");
}

TEST(StructureFilters, ManyTypes_KeepTheirFiltersWhereTheyAre)
{
  const StructureStage stage;
  std::vector<zelremote::StructureFilterInfo*> filters;
  for (int i = 0; i < 500; ++i) {
    filters.push_back(&stage.GetFilter(MakeView(("type" + std::to_string(i)).c_str())));
  }

  for (int i = 0; i < 500; ++i) {
    const std::string type = "type" + std::to_string(i);
    EXPECT_EQ(&stage.GetFilter(MakeView(type.c_str())), filters.at(static_cast<std::size_t>(i)));
    EXPECT_EQ(filters.at(static_cast<std::size_t>(i))->GetName(), du::Symbol(std::string_view(type)));
  }
}

TEST(StructureFilters, ANewOne_ComesFromThePreferencesOfItsType)
{
  StructureStage stage;
  StoreFlag(stage, "parts_only", true);

  EXPECT_TRUE(stage.GetFilter(MakeView("panel")).GetPartsOnly());
  EXPECT_FALSE(stage.GetFilter(MakeView("sheet")).GetPartsOnly());
}

TEST(StructureFilters, ANewOne_HidesAndCollapsesAsThePreferencesSayAndNotTheSwitches)
{
  StructureStage stage;
  StoreFlag(stage, "hide_bodies", true);
  StoreFlag(stage, "collapse_instances", true);
  EXPECT_TRUE(stage.GetFilter(MakeView("panel")).GetHideBodies());
  EXPECT_TRUE(stage.GetFilter(MakeView("panel")).GetCollapseInstances());

  guitree::WorldTreeState::SetIsShowingBodies(false);
  guitree::WorldTreeState::SetIsCollapsingInstances(true);
  EXPECT_FALSE(stage.GetFilter(MakeView("sheet")).GetHideBodies());
  EXPECT_FALSE(stage.GetFilter(MakeView("sheet")).GetCollapseInstances());
}

TEST(StructureFilters, OfAPanelWithoutResults_LookAtNoResultsListWhateverThePreferencesSay)
{
  StructureStage stage("root", false);
  StoreFlag(stage, "use_results_list", true);

  EXPECT_FALSE(stage.GetFilter(MakeView("panel")).useResultsList);
}

TEST(StructureFilters, OfAPanelWithResults_LookAtOneAsThePreferencesSay)
{
  StructureStage stage;
  StoreFlag(stage, "use_results_list", true);

  EXPECT_TRUE(stage.GetFilter(MakeView("panel")).useResultsList);
  EXPECT_FALSE(stage.GetFilter(MakeView("sheet")).useResultsList);
}

TEST(StructureFilters, AReset_ForgetsAllSettingsAndTheRowsAndTellsTheHost)
{
  StructureStage stage;
  stage.GetFilter(MakeView("panel")).SetText("nut");
  stage.GetFilter(MakeView("sheet")).SetText("bolt");
  stage.state->PopulateTree(false);
  static_cast<void>(stage.host.TakeCalls());

  stage.state->Reset();

  EXPECT_THAT(stage.host.TakeCalls(), ElementsAre("Reset()", "UpdateTreeTable()"));
  EXPECT_THAT(stage.state->GetNotFilteredSet(), IsEmpty());
  EXPECT_EQ(stage.GetFilter(MakeView("panel")).GetText(), "");
  EXPECT_EQ(stage.GetFilter(MakeView("sheet")).GetText(), "");
}

TEST(StructureFilters, TheOperationsOfAState_UseTheFilterOfTheCurrentView)
{
  StructureStage stage;
  stage.gui->Initialise(stage.world);
  stage.GetFilter(MakeView("panel")).SetText("nut");
  EXPECT_FALSE(stage.state->IsFiltered());

  stage.host.answers.sceneManagerObserver->OnActiveViewChanged(MakeView("panel"));

  EXPECT_TRUE(stage.state->IsFiltered());
}

TEST(StructureFilters, AStateThatOutlivesItsPanel_StillHasThem)
{
  StructureStage stage;
  stage.GetFilter().SetText("nut");
  stage.gui.Reset();

  stage.state->ShowBodiesChanged();
  stage.state->UpdateFiltersForCollapsingInstances(true);
  stage.state->SetResultsComps(nullptr);
  stage.state->OnEndUpdate();

  EXPECT_FALSE(stage.state->IsDoingFilterAsList());
  EXPECT_FALSE(stage.state->IsMatchedFilterEmpty());
  EXPECT_FALSE(stage.state->IsFilteredTreeContainItem(stage.kernel["bolt"]));
  EXPECT_TRUE(stage.state->GetAdditionalFilterInfo());
  // Without a host all views are of one type.
  EXPECT_EQ(stage.GetFilter(MakeView("panel")).GetText(), "");
}

}  // namespace
