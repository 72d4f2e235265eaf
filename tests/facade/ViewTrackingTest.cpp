#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
using testsupport::PlainClashReportView;
using testsupport::PlainShapeScene;
using testsupport::PlainShapeView;
using testsupport::PlainView;
using testsupport::RecordingSelectionManager;

/// An initialised panel with one scene that has a log, two views of it, and nothing recorded.
class ViewTracking : public testing::Test {
protected:
  ViewTracking()
  {
    panel.Initialise();
    scene->selectionManager = manager;
    GetReports().OnSceneAdded(scene);
    Forget();
  }
  ~ViewTracking() override
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
    view->calls.clear();
    otherView->calls.clear();
    manager->calls.clear();
  }
  void Show(const du::SmartPtr<zelk::View>& newView)
  {
    GetReports().OnActiveViewChanged(newView);
    Forget();
  }

  Panel panel{"root[a]"};
  du::SmartPtr<RecordingSelectionManager> manager = du::MakeSmart<RecordingSelectionManager>();
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeView> view = MakeView<PlainShapeView>(scene);
  du::SmartPtr<PlainShapeView> otherView = MakeView<PlainShapeView>(scene);
};

TEST_F(ViewTracking, AViewOfALoggedScene_IsFollowedWithoutTouchingTheRows)
{
  GetReports().OnActiveViewChanged(view);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("IsValidView(unnamed) -> true", "IsTreeVisibleInUI() -> true", "ClearSelection()",
                          "CurrentViewChanged()", "UpdateFilterUI()", "ViewChangeUpdaeFilterUI()", "UpdateStatusBar()",
                          "UpdateVisAndTypeIcons(visible={}, typeIcons=yes)", "RefreshSelection()",
                          "PostOnActiveViewChanged(unnamed, wasClashReport=false)"));
  EXPECT_EQ(panel.gui->GetCurrentView(), view);
  EXPECT_EQ(panel.gui->GetCurrentLog(), panel.gui->GetLog(scene));
  EXPECT_EQ(panel.gui->GetCurShapeScene(), scene);
  EXPECT_EQ(panel.gui->GetSelectionManager(), manager);
  EXPECT_THAT(manager->calls, ElementsAre("RegisterObserver(0)", "RegisterObserver(4)"));
  EXPECT_THAT(view->calls, ElementsAre("RegisterObserver(replay)"));
  EXPECT_EQ(view->observer->GetObjectClass(), "guitree::ShapeViewObserver");
}

TEST_F(ViewTracking, AViewThatTheHostDoesNotWant_LeavesEverythingAsItWas)
{
  Show(view);
  panel.host.answers.isValidView = false;

  GetReports().OnActiveViewChanged(otherView);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("IsValidView(unnamed) -> false"));
  EXPECT_THAT(panel.state->calls, IsEmpty());
  EXPECT_EQ(panel.gui->GetCurrentView(), view);
}

TEST_F(ViewTracking, TheSameViewAgain_OnlyAsksTheState)
{
  Show(view);

  GetReports().OnActiveViewChanged(view);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("IsValidView(unnamed) -> true"));
  EXPECT_THAT(panel.state->calls, ElementsAre("OverrideActiveViewAfterChange"));
}

TEST_F(ViewTracking, TheStateMayPutAnotherViewInPlace)
{
  panel.state->overridingView = otherView;

  GetReports().OnActiveViewChanged(view);

  EXPECT_EQ(panel.gui->GetCurrentView(), otherView);
  EXPECT_THAT(view->calls, IsEmpty());
  EXPECT_THAT(otherView->calls, ElementsAre("RegisterObserver(replay)"));
}

TEST_F(ViewTracking, AnotherViewOfTheScene_TakesObserverAndBindingOver)
{
  Show(view);

  GetReports().OnActiveViewChanged(otherView);

  EXPECT_THAT(view->calls, ElementsAre("UnregisterObserver"));
  EXPECT_THAT(otherView->calls, ElementsAre("RegisterObserver(replay)"));
  EXPECT_THAT(manager->calls, ElementsAre("UnregisterObserver(0)", "UnregisterObserver(4)", "RegisterObserver(0)",
                                          "RegisterObserver(4)"));
}

TEST_F(ViewTracking, TheLastViewGone_KeepsTreeAndRows)
{
  Show(view);

  GetReports().OnViewRemoved(view);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("IsValidView(null) -> true", "IsTreeVisibleInUI() -> true", "ClearSelection()",
                          "CurrentViewChanged()", "UpdateFilterUI()", "ViewChangeUpdaeFilterUI()", "UpdateStatusBar()",
                          "UpdateVisAndTypeIcons(visible=null, typeIcons=no)", "RefreshSelection()",
                          "PostOnActiveViewChanged(null, wasClashReport=false)"));
  EXPECT_EQ(panel.gui->GetBaseTree(), panel.kernel.Get());
  EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
  EXPECT_EQ(panel.gui->GetCurrentView(), nullptr);
}

TEST_F(ViewTracking, AnotherViewGone_ChangesNothing)
{
  Show(view);

  GetReports().OnViewRemoved(otherView);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_EQ(panel.gui->GetCurrentView(), view);
}

TEST_F(ViewTracking, AViewOfASceneWithoutALog_IsStillListenedTo)
{
  const auto unlogged = du::MakeSmart<PlainShapeScene>();
  const auto its = MakeView<PlainShapeView>(unlogged);

  GetReports().OnActiveViewChanged(its);

  EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
  EXPECT_THAT(its->calls, ElementsAre("RegisterObserver(replay)"));
  EXPECT_THAT(panel.host.TakeCalls(), Not(Contains("UpdateVisAndTypeIcons(visible=null, typeIcons=no)")));
}

TEST_F(ViewTracking, WithoutALog_TheStateMayAskForTheRepaint)
{
  panel.state->needsUpdate = true;

  GetReports().OnActiveViewChanged(MakeView<PlainShapeView>(nullptr));

  EXPECT_THAT(panel.host.TakeCalls(), Contains("UpdateVisAndTypeIcons(visible=null, typeIcons=no)"));
}

TEST_F(ViewTracking, AViewOfAnIncompatibleScene_HasNeitherObserverNorLog)
{
  panel.state->isCompatibleScene = false;

  GetReports().OnActiveViewChanged(view);

  EXPECT_THAT(view->calls, IsEmpty());
  EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
  EXPECT_EQ(panel.gui->GetCurrentView(), view);
}

TEST_F(ViewTracking, AViewThatIsNoShapeView_HasTheLogOfItsScene)
{
  GetReports().OnActiveViewChanged(MakeView<PlainView>(scene));

  EXPECT_EQ(panel.gui->GetCurrentLog(), panel.gui->GetLog(scene));
}

TEST_F(ViewTracking, AViewWithoutAScene_HasNoSelectionAndNoLog)
{
  const auto sceneless = MakeView<PlainShapeView>(nullptr);
  panel.state->isCompatibleScene = false;

  GetReports().OnActiveViewChanged(sceneless);

  EXPECT_EQ(panel.gui->GetSelectionManager(), nullptr);
  EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
  EXPECT_THAT(sceneless->calls, ElementsAre("RegisterObserver(replay)"));
}

TEST_F(ViewTracking, AfterAClashReport_TheHostIsTold)
{
  Show(MakeView<PlainClashReportView>(scene));

  GetReports().OnActiveViewChanged(view);

  EXPECT_EQ(panel.host.TakeCalls().back(), "PostOnActiveViewChanged(unnamed, wasClashReport=true)");
}

TEST_F(ViewTracking, ChangesThatWaited_AreCoveredByTheRepaint)
{
  panel.gui->GetLog(scene)->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);

  GetReports().OnActiveViewChanged(view);

  EXPECT_THAT(panel.host.TakeCalls(), Contains("UpdateVisAndTypeIcons(visible={a: 1}, typeIcons=yes)"));
  EXPECT_THAT(panel.gui->GetLog(scene)->GetVisibleChangeMap(), IsEmpty());
}

TEST_F(ViewTracking, AReloadThatTheStateAsksFor_RefillsTheRows)
{
  panel.state->reloadsOnViewChange = true;
  panel.gui->GetLog(scene)->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);

  GetReports().OnActiveViewChanged(view);

  const std::vector<std::string> calls = panel.host.TakeCalls();
  const auto decided = std::find(calls.begin(), calls.end(), "ViewChangeUpdaeFilterUI()");
  EXPECT_THAT(
      (std::vector<std::string>(decided + 1, decided + 4)),
      ElementsAre("CheckListTypeCorrect()", "LoadSortingPrefs()", "StoreExpandedAndFirstVisibleBeforePopulate(false)"));
  EXPECT_THAT((std::vector<std::string>(calls.end() - 2, calls.end())),
              ElementsAre("UpdateStatusBar()", "UpdateVisAndTypeIcons(visible={a: 1}, typeIcons=yes)"));
  EXPECT_EQ(panel.gui->GetLog(scene)->GetVisibleChangeMap().size(), 1u);
}

TEST_F(ViewTracking, AnotherTree_IsObservedAndRefillsTheRows)
{
  const testsupport::NamedTree otherTree("other");
  panel.state->baseTree = otherTree.Get();

  GetReports().OnActiveViewChanged(view);

  EXPECT_EQ(panel.gui->GetBaseTree(), otherTree.Get());
  EXPECT_THAT(panel.state->calls,
              ElementsAre("OverrideActiveViewAfterChange", "Initialise_GetZelkTree(view)", "DeregisterTreeObserver()",
                          "Initialise_GetZelkTree(view)", "CreateAndRegisterTreeObserver()"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("other"));
}

TEST_F(ViewTracking, AViewOfAnIncompatibleType_KeepsTheTree)
{
  const testsupport::NamedTree otherTree("other");
  panel.state->baseTree = otherTree.Get();
  panel.state->isCompatibleView = false;

  GetReports().OnActiveViewChanged(view);

  EXPECT_EQ(panel.gui->GetBaseTree(), panel.kernel.Get());
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "root"));
}

TEST_F(ViewTracking, AnotherFilterThatIsOn_RefillsTheRowsAndTheSameOneDoesNot)
{
  panel.state->filterOfView[view.Get()].isFiltering = true;
  GetReports().OnActiveViewChanged(view);
  EXPECT_THAT(panel.host.TakeCalls(), Contains("SetTreeCalculating(true)"));

  GetReports().OnActiveViewChanged(otherView);
  EXPECT_THAT(panel.host.TakeCalls(), Contains("LoadSortingPrefs()"));

  panel.state->filter.isFiltering = true;
  const auto third = MakeView<PlainShapeView>(scene);
  GetReports().OnActiveViewChanged(third);
  EXPECT_THAT(panel.host.TakeCalls(), Not(Contains("LoadSortingPrefs()")));
}

TEST_F(ViewTracking, TheHighlightColour_HasOneFormAfterAViewChangeAndAnotherAfterAColourChange)
{
  GetReports().OnActiveViewChanged(view);
  EXPECT_EQ(panel.gui->GetAssocHlightColor(), 0xff8040u);

  view->observer->OnHighlightColorsChange();
  EXPECT_EQ(panel.gui->GetAssocHlightColor(), 0x013f7fffu);

  view->settings.assocHighlight = dg::Color(1.0F, 1.0F, 1.0F, 1.0F);
  view->observer->OnHighlightColorsChange();
  EXPECT_EQ(panel.gui->GetAssocHlightColor(), 0x01ffffffu);
}

TEST_F(ViewTracking, AColourChange_WithoutAState_OnlyStoresTheColour)
{
  Show(view);
  panel.gui->SetTreeState(nullptr);

  view->observer->OnHighlightColorsChange();

  EXPECT_EQ(panel.gui->GetAssocHlightColor(), 0x013f7fffu);
  panel.gui->SetTreeState(panel.state);
}

TEST_F(ViewTracking, AViewObserverThatWasDropped_DoesNothing)
{
  Show(view);
  const du::SmartPtr<zelk::ShapeViewObserver> observer(view->observer);
  GetReports().OnActiveViewChanged(nullptr);
  const unsigned int colour = panel.gui->GetAssocHlightColor();
  view->settings.assocHighlight = dg::Color(0.0F, 0.0F, 0.0F, 1.0F);

  observer->OnHighlightColorsChange();
  observer->OnUnregister();

  EXPECT_EQ(panel.gui->GetAssocHlightColor(), colour);
}

TEST_F(ViewTracking, AViewChangeFromInsideAnother_LeavesOneViewObserver)
{
  panel.host.onCall = [&](const std::string& line) {
    if (line == "UpdateFilterUI()") {
      panel.host.onCall = nullptr;
      GetReports().OnActiveViewChanged(otherView);
    }
  };

  GetReports().OnActiveViewChanged(view);

  EXPECT_EQ(panel.gui->GetCurrentView(), otherView);
  EXPECT_NE(otherView->observer, nullptr);
  EXPECT_EQ(view->observer, nullptr);
  GetReports().OnActiveViewChanged(nullptr);
  EXPECT_EQ(otherView->observer, nullptr);
}

TEST_F(ViewTracking, InitialiseTakesBackAViewThatTheHostReportsMeanwhile)
{
  panel.host.onCall = [&](const std::string& line) {
    if (line == "InitialiseBeforePopulate()") {
      GetReports().OnActiveViewChanged(view);
    }
  };

  panel.gui->Initialise(panel.world);

  EXPECT_EQ(panel.gui->GetCurrentView(), nullptr);
  EXPECT_EQ(panel.gui->GetSelectionManager(), panel.world->selectionManager);
}

TEST_F(ViewTracking, WithoutAState_AViewChangeIsIgnored)
{
  panel.gui->SetTreeState(nullptr);

  GetReports().OnActiveViewChanged(view);

  EXPECT_EQ(panel.gui->GetCurrentView(), nullptr);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

}  // namespace
