#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"
#include "testsupport/RecordingSelectionManager.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testsupport::MakeView;
using testsupport::Panel;
using testsupport::PlainShapeScene;
using testsupport::PlainShapeView;
using testsupport::RecordingSelectionManager;

/// An initialised panel that shows the view of a scene with a log and a selection, and a second such view. Nothing is
/// recorded.
class ViewChangeOrder : public testing::Test {
protected:
  ViewChangeOrder()
  {
    panel.Initialise();
    for (const auto& known : {scene, otherScene}) {
      known->selectionManager = du::MakeSmart<RecordingSelectionManager>();
      GetReports().OnSceneAdded(known);
    }
    GetReports().OnActiveViewChanged(view);
    static_cast<void>(panel.host.TakeCalls());
    panel.state->needsUpdateQuestions.clear();
  }
  ~ViewChangeOrder() override
  {
    panel.host.onCall = nullptr;
    for (const auto& known : {scene, otherScene}) {
      GetReports().OnSceneRemoved(known);
    }
    panel.gui->Reset();
    panel.gui->Close();
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *panel.host.answers.sceneManagerObserver;
  }

  Panel panel{"root[a]"};
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeScene> otherScene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeView> view = MakeView<PlainShapeView>(scene);
  du::SmartPtr<PlainShapeView> otherView = MakeView<PlainShapeView>(otherScene);
};

TEST_F(ViewChangeOrder, MissingHighlightsAreAddedBeforeTheFilterUiAndAllAreRedrawnBeforeTheLastCall)
{
  panel.UseSelController()->highlighted = {panel.kernel["a"]};

  GetReports().OnActiveViewChanged(otherView);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("IsValidView(unnamed) -> true", "IsTreeVisibleInUI() -> true", "ClearSelection()",
                          "CurrentViewChanged()", "UpdateFilterUI()", "StartTreeUpdate()",
                          "SetAssocHlight(a, on=true) -> false", "FinishTreeUpdate()", "ViewChangeUpdaeFilterUI()",
                          "UpdateStatusBar()", "UpdateVisAndTypeIcons(visible={}, typeIcons=yes)", "RefreshSelection()",
                          "StartTreeUpdate()", "SetAssocHlight(a, on=false) -> false", "FinishTreeUpdate()",
                          "StartTreeUpdate()", "SetAssocHlight(a, on=true) -> false", "FinishTreeUpdate()",
                          "PostOnActiveViewChanged(unnamed, wasClashReport=false)"));
}

TEST_F(ViewChangeOrder, AChangeToNoView_OnlyRedrawsTheHighlights)
{
  const auto controller = panel.UseSelController();
  panel.state->SetAssocHlight(panel.kernel["a"].Get(), true);
  static_cast<void>(panel.host.TakeCalls());

  GetReports().OnActiveViewChanged(nullptr);

  EXPECT_THAT(
      panel.host.TakeCalls(),
      ElementsAre("IsValidView(null) -> true", "IsTreeVisibleInUI() -> true", "ClearSelection()",
                  "CurrentViewChanged()", "UpdateFilterUI()", "ViewChangeUpdaeFilterUI()", "UpdateStatusBar()",
                  "UpdateVisAndTypeIcons(visible=null, typeIcons=no)", "RefreshSelection()", "StartTreeUpdate()",
                  "SetAssocHlight(a, on=false) -> false", "FinishTreeUpdate()", "StartTreeUpdate()",
                  "FinishTreeUpdate()", "PostOnActiveViewChanged(null, wasClashReport=false)"));
}

TEST_F(ViewChangeOrder, AChangeToNoView_KeepsTheColourOfTheLastOne)
{
  const unsigned int before = panel.gui->GetAssocHlightColor();
  ASSERT_NE(before, 0u);
  view->settings.assocHighlight = dg::Color(0.0F, 0.0F, 0.0F, 1.0F);

  GetReports().OnActiveViewChanged(nullptr);

  EXPECT_EQ(panel.gui->GetAssocHlightColor(), before);
}

TEST_F(ViewChangeOrder, AColourChange_AddsTheHighlightsThatAreMissing)
{
  panel.UseSelController()->highlighted = {panel.kernel["a"]};

  view->observer->OnHighlightColorsChange();

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StartTreeUpdate()", "SetAssocHlight(a, on=true) -> false", "FinishTreeUpdate()"));
}

TEST_F(ViewChangeOrder, TheNewColourIsThereWhenTheHighlightsAreAdded)
{
  const auto controller = panel.UseSelController();
  unsigned int seen = 0;
  panel.host.onCall = [&](const std::string&) { seen = panel.gui->GetAssocHlightColor(); };
  view->settings.assocHighlight = dg::Color(1.0F, 1.0F, 1.0F, 1.0F);

  view->observer->OnHighlightColorsChange();

  EXPECT_EQ(seen, 0x01ffffffu);
}

TEST_F(ViewChangeOrder, AColourOutOfRangeIsCutToIt)
{
  view->settings.assocHighlight = dg::Color(-1.0F, std::numeric_limits<float>::quiet_NaN(), 2.0F, 1.0F);

  view->observer->OnHighlightColorsChange();

  EXPECT_EQ(panel.gui->GetAssocHlightColor(), 0x01ff0000u);
}

TEST_F(ViewChangeOrder, TheSelectionIsClearedWhileTheOldViewIsBound)
{
  const du::SmartPtr<zelk::SelectionManager> oldManager = panel.gui->GetSelectionManager();
  int seen = 0;
  panel.host.onCall = [&](const std::string& line) {
    if (line == "ClearSelection()") {
      ++seen;
      EXPECT_EQ(panel.gui->GetCurrentView(), view);
      EXPECT_EQ(panel.gui->GetSelectionManager(), oldManager);
      EXPECT_EQ(view->observer, nullptr);
    }
  };

  GetReports().OnActiveViewChanged(otherView);

  EXPECT_EQ(seen, 1);
}

TEST_F(ViewChangeOrder, TheHostHearsOfTheNewViewWithTheOldLogStillInPlace)
{
  int seen = 0;
  panel.host.onCall = [&](const std::string& line) {
    if (line == "CurrentViewChanged()" || line == "UpdateFilterUI()") {
      ++seen;
      EXPECT_EQ(panel.gui->GetCurrentView(), otherView);
      EXPECT_EQ(panel.gui->GetSelectionManager(), otherScene->selectionManager);
      EXPECT_EQ(panel.gui->GetCurrentLog(), panel.gui->GetLog(scene));
      EXPECT_EQ(otherView->observer, nullptr);
    } else if (line == "ViewChangeUpdaeFilterUI()") {
      ++seen;
      EXPECT_EQ(panel.gui->GetCurrentLog(), panel.gui->GetLog(otherScene));
      EXPECT_NE(otherView->observer, nullptr);
    }
  };

  GetReports().OnActiveViewChanged(otherView);

  EXPECT_EQ(seen, 3);
}

TEST_F(ViewChangeOrder, AFilterThatLooksAtTheView_RefillsTheRows)
{
  panel.state->filter.filteringUsingView = true;

  GetReports().OnActiveViewChanged(otherView);

  EXPECT_THAT(panel.host.TakeCalls(), Contains("LoadSortingPrefs()"));
}

TEST_F(ViewChangeOrder, AFilterOfTheOldViewThatLooksAtIt_LeavesTheRows)
{
  panel.state->filterOfView[view.Get()].filteringUsingView = true;

  GetReports().OnActiveViewChanged(otherView);

  EXPECT_THAT(panel.host.TakeCalls(), Not(Contains("LoadSortingPrefs()")));
}

TEST_F(ViewChangeOrder, WithALog_TheStateIsNotAskedAboutTheRepaint)
{
  GetReports().OnActiveViewChanged(otherView);
  GetReports().OnActiveViewChanged(nullptr);

  EXPECT_THAT(panel.state->needsUpdateQuestions, IsEmpty());
}

TEST_F(ViewChangeOrder, WithoutALog_TheStateIsAskedForTheSceneOfTheView)
{
  const auto unlogged = du::MakeSmart<PlainShapeScene>();
  const auto itsView = MakeView<PlainShapeView>(unlogged);
  const auto itsOtherView = MakeView<PlainShapeView>(unlogged);
  GetReports().OnActiveViewChanged(itsView);

  GetReports().OnActiveViewChanged(itsOtherView);
  GetReports().OnActiveViewChanged(nullptr);

  EXPECT_THAT(panel.state->needsUpdateQuestions, ElementsAre(unlogged, nullptr));
}

TEST_F(ViewChangeOrder, AViewThatEndsItsRegistration_IsForgotten)
{
  const unsigned int before = panel.gui->GetAssocHlightColor();
  const du::SmartPtr<zelk::ShapeViewObserver> observer(view->observer);
  view->calls.clear();

  observer->OnUnregister();
  view->settings.assocHighlight = dg::Color(0.0F, 0.0F, 0.0F, 1.0F);
  observer->OnHighlightColorsChange();
  EXPECT_EQ(panel.gui->GetAssocHlightColor(), before);

  GetReports().OnActiveViewChanged(otherView);
  EXPECT_THAT(view->calls, IsEmpty());
}

}  // namespace
