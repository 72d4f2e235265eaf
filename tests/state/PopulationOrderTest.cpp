#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/RecordingSelectionManager.h"

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testsupport::MakeView;
using testsupport::Panel;
using testsupport::PlainShapeScene;
using testsupport::PlainShapeView;
using testsupport::RecordingSelectionManager;

/// A filled panel that shows a scene with a log, with one highlighted row. Nothing is recorded.
class PopulationOrder : public testing::Test {
protected:
  PopulationOrder()
  {
    panel.world->selectionManager = manager;
    scene->selectionManager = manager;
    panel.UseSelController()->highlighted = {panel.kernel["a"]};
    panel.Initialise();
    GetReports().OnSceneAdded(scene);
    GetReports().OnActiveViewChanged(view);
    Forget();
  }
  ~PopulationOrder() override
  {
    panel.host.onCall = nullptr;
    GetReports().OnSceneRemoved(scene);
    panel.gui->Reset();
    panel.gui->Close();
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *panel.host.answers.sceneManagerObserver;
  }
  void Forget()
  {
    static_cast<void>(panel.host.TakeCalls());
    panel.state->calls.clear();
    panel.state->selControllerQuestions.clear();
    panel.state->iconQuestions.clear();
  }
  /// Runs `action` inside each call that starts so.
  template <typename Action>
  void OnCall(const std::string& start, Action action)
  {
    panel.host.onCall = [this, start, action](const std::string& line) {
      if (line.starts_with(start)) {
        ++callCount;
        action();
      }
    };
  }

  du::SmartPtr<RecordingSelectionManager> manager = du::MakeSmart<RecordingSelectionManager>();
  Panel panel{"root[a]"};
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeView> view = MakeView<PlainShapeView>(scene);
  int callCount = 0;
};

TEST_F(PopulationOrder, TheHostIsAskedAboutTheCurrentViewAndToldToMarkForItsScene)
{
  view->settings.name = "view";

  panel.state->PopulateTree(false);

  EXPECT_THAT(panel.host.Calls(), Contains("IsValidView(view) -> true"));
  EXPECT_THAT(panel.host.Calls(), Contains("UpdateMarkedInsts(unnamed)"));
}

TEST_F(PopulationOrder, TheFilterOfTheCurrentViewDecides)
{
  panel.state->filterOfView[view.Get()].isFiltering = true;

  panel.state->PopulateTree(false);

  EXPECT_THAT(panel.host.Calls(), Contains("SetTreeCalculating(true)"));
}

TEST_F(PopulationOrder, RowsAndHighlightsAreForgottenBeforeTheHostClearsItsTree)
{
  ASSERT_TRUE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
  OnCall("ClearTree()", [&] {
    EXPECT_THAT(panel.GetShownNames(), IsEmpty());
    EXPECT_FALSE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
  });

  panel.state->PopulateTree(false);

  EXPECT_EQ(callCount, 1);
}

TEST_F(PopulationOrder, ThePanelIsNotBusyAnyMoreWhenTheRowsCome)
{
  panel.state->SetBusy(true);
  OnCall("InstanceCreate(", [&] { EXPECT_FALSE(panel.state->IsBusy()); });

  panel.state->PopulateTree(false);

  EXPECT_EQ(callCount, 2);
}

TEST_F(PopulationOrder, TheFlagsAreClearedWhenTheRowsCome)
{
  panel.host.answers.isTreeVisibleInUI = false;
  panel.state->OnClearSelection();
  panel.state->OnAssocHlightChanged(true, {}, {});
  panel.state->PopulateTree(false);
  panel.host.answers.isTreeVisibleInUI = true;
  OnCall("InstanceCreate(", [&] {
    EXPECT_FALSE(panel.state->GetSelectionNeedsUpdating());
    EXPECT_FALSE(panel.state->GetAssocHlightsNeedsUpdating());
    EXPECT_FALSE(panel.state->GetTreeNeedsRedraw());
  });

  panel.state->PopulateTree(false);

  EXPECT_EQ(callCount, 2);
}

TEST_F(PopulationOrder, ARowStandsInTheRecordsWhenTheHostHearsOfIt)
{
  OnCall("InstanceCreate(a", [&] {
    EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "root"));
    EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
  });

  panel.state->PopulateTree(false);

  EXPECT_EQ(callCount, 1);
}

TEST_F(PopulationOrder, TheControllerIsAskedForOnceForRowsAndOtherwiseWithoutThem)
{
  panel.state->PopulateTree(false);
  EXPECT_THAT(panel.state->selControllerQuestions, ElementsAre(true));

  Forget();
  std::set<du::SmartPtr<zelk::BaseInstance>> selected;
  panel.state->RefreshAssocHlights();
  panel.state->OnAssocHlightColorChange();
  panel.state->GetSelectedComps(selected, false);
  EXPECT_THAT(panel.state->selControllerQuestions, Not(IsEmpty()));
  EXPECT_THAT(panel.state->selControllerQuestions, Each(false));
}

TEST_F(PopulationOrder, ANameCheck_MarksTheIconBeforeTheHostIsAsked)
{
  OnCall("CheckAndUpdateNodeNameAndType(",
         [&] { EXPECT_EQ(panel.gui->GetLog(scene)->GetTypeIconChangeMap().size(), 1u); });

  static_cast<void>(panel.state->CheckAndUpdateNodeNameAndType(panel.kernel["a"]));

  EXPECT_EQ(callCount, 1);
}

TEST_F(PopulationOrder, IconsAreWorkedOutForTheSceneOfTheLog)
{
  guitree::SceneInfoLog& log = *panel.gui->GetLog(scene);

  log.MarkTypeIconChanged(panel.kernel["a"].Get());
  static_cast<void>(log.GetUnloadedTypeIcon(panel.kernel["root"].Get()));
  log.SetCompared(panel.kernel["a"].Get(), true, true);

  EXPECT_THAT(panel.state->iconQuestions, ElementsAre(scene, scene, scene));
}

TEST_F(PopulationOrder, ASelectionUpdate_BeginsForTheHostAndThenForTheState)
{
  OnCall("StartTreeUpdate()", [&] { EXPECT_THAT(panel.state->calls, IsEmpty()); });

  RecordingSelectionManager::Edit(manager->selectionObserver).OnBeginUpdate();

  EXPECT_EQ(callCount, 1);
  EXPECT_THAT(panel.state->calls, ElementsAre("OnBeginUpdate"));
}

}  // namespace
