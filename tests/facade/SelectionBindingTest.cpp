#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"
#include "testsupport/RecordingSelectionManager.h"
#include "zelk/ObjectSelectionItem.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Panel;
using testsupport::RecordingSelectionManager;

/// A panel whose world has a selection, after `Initialise` and with nothing recorded.
class SelectionBinding : public testing::Test {
protected:
  SelectionBinding()
  {
    panel.world->selectionManager = manager;
    panel.Initialise();
    static_cast<void>(std::exchange(manager->calls, {}));
  }
  ~SelectionBinding() override { panel.gui.Reset(); }

  [[nodiscard]] zelk::SelectionObserver& GetSelectionObserver() const
  {
    return RecordingSelectionManager::Edit(manager->selectionObserver);
  }
  [[nodiscard]] zelk::SelectionObserver& GetAssocHlightObserver() const
  {
    return RecordingSelectionManager::Edit(manager->assocHlightObserver);
  }

  du::SmartPtr<RecordingSelectionManager> manager = du::MakeSmart<RecordingSelectionManager>();
  Panel panel{"root[a]"};
  std::vector<du::SmartPtr<zelk::Object>> items{panel.kernel["a"]};
};

TEST_F(SelectionBinding, InitialiseBindsTheWorldsSelectionTwice_TheSecondTimeAnew)
{
  panel.gui->Initialise(panel.world);

  EXPECT_THAT(manager->calls, ElementsAre("UnregisterObserver(0)", "UnregisterObserver(4)", "RegisterObserver(0)",
                                          "RegisterObserver(4)", "UnregisterObserver(0)", "UnregisterObserver(4)",
                                          "RegisterObserver(0)", "RegisterObserver(4)"));
  EXPECT_EQ(panel.gui->GetSelectionManager(), manager);
}

TEST_F(SelectionBinding, AWorldWithoutASelection_BindsNothing)
{
  panel.world->selectionManager = nullptr;

  panel.gui->Initialise(panel.world);

  EXPECT_EQ(panel.gui->GetSelectionManager(), nullptr);
  EXPECT_THAT(manager->calls, ElementsAre("UnregisterObserver(0)", "UnregisterObserver(4)"));
}

TEST_F(SelectionBinding, SelectionEventsReachTheStateAndAreBracketedForTheHost)
{
  zelk::SelectionObserver& observer = GetSelectionObserver();

  observer.OnBeginUpdate();
  observer.OnClearSelection();
  observer.OnRemoveItems(items);
  observer.OnInsertItems(items);
  observer.OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StartTreeUpdate()", "IsTreeVisibleInUI() -> true", "ClearSelection()",
                          "IsTreeVisibleInUI() -> true", "DeselectItems([a])", "IsTreeVisibleInUI() -> true",
                          "SelectItems([a])", "UpdateStatusBar()", "FinishTreeUpdate()"));
}

TEST_F(SelectionBinding, TheSummaryOfASelectionChangeIsNotUsed)
{
  GetSelectionObserver().OnSelectionChanged(0, true, {}, {});

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(SelectionBinding, AHighlightChangeReachesTheState)
{
  GetAssocHlightObserver().OnSelectionChanged(4, false, {},
                                              {du::MakeSmart<zelk::ObjectSelectionItem>(panel.kernel["a"])});

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("IsTreeVisibleInUI() -> true", "StartTreeUpdate()",
                                                  "SetAssocHlight(a, on=true) -> false", "FinishTreeUpdate()"));
  EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
}

TEST_F(SelectionBinding, OtherHighlightEventsAreLeftAlone)
{
  zelk::SelectionObserver& observer = GetAssocHlightObserver();

  observer.OnBeginUpdate();
  observer.OnInsertItems(items);
  observer.OnRemoveItems(items);
  observer.OnClearSelection();
  observer.OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(SelectionBinding, TheFacadeAnswersWhatTheStateAnswers)
{
  EXPECT_TRUE(panel.gui->OnAssocHlightChanged(4, false, {}, {}));

  panel.host.answers.isTreeVisibleInUI = false;
  EXPECT_FALSE(panel.gui->OnAssocHlightChanged(4, false, {}, {}));

  panel.gui->SetTreeState(nullptr);
  EXPECT_FALSE(panel.gui->OnAssocHlightChanged(4, false, {}, {}));
}

TEST_F(SelectionBinding, AfterTeardown_ALateCallbackDoesNothing)
{
  // The kernel may hold an observer for longer than the binding.
  const du::SmartPtr<zelk::SelectionObserver> selection(&GetSelectionObserver());
  const du::SmartPtr<zelk::SelectionObserver> assocHlight(&GetAssocHlightObserver());
  panel.gui->Reset();
  static_cast<void>(panel.host.TakeCalls());

  selection->OnBeginUpdate();
  selection->OnInsertItems(items);
  selection->OnRemoveItems(items);
  selection->OnClearSelection();
  selection->OnEndUpdate();
  assocHlight->OnSelectionChanged(4, true, {}, {});

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_EQ(panel.gui->GetSelectionManager(), nullptr);
}

TEST_F(SelectionBinding, WithoutAState_SelectionEventsKeepTheirBracket)
{
  panel.gui->SetTreeState(nullptr);
  zelk::SelectionObserver& observer = GetSelectionObserver();

  observer.OnBeginUpdate();
  observer.OnInsertItems(items);
  observer.OnRemoveItems(items);
  observer.OnClearSelection();
  observer.OnEndUpdate();
  GetAssocHlightObserver().OnSelectionChanged(4, true, {}, {});

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("StartTreeUpdate()", "UpdateStatusBar()", "FinishTreeUpdate()"));
}

TEST_F(SelectionBinding, ARebindInsideAnOpenUpdate_StillClosesTheBracket)
{
  GetSelectionObserver().OnBeginUpdate();
  manager->isUpdateOpen = true;

  panel.gui->Reset();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("StartTreeUpdate()", "Reset()", "UpdateTreeTable()",
                                                  "UpdateStatusBar()", "FinishTreeUpdate()"));
}

TEST_F(SelectionBinding, AHostThatRebindsFromInsideTheClosingEvent_LeavesOneBinding)
{
  GetSelectionObserver().OnBeginUpdate();
  manager->isUpdateOpen = true;
  panel.host.onCall = [&](const std::string& line) {
    if (line == "UpdateStatusBar()") {
      panel.host.onCall = nullptr;
      panel.gui->Initialise(panel.world);
    }
  };

  panel.gui->Reset();

  EXPECT_EQ(panel.gui->GetSelectionManager(), nullptr);
  EXPECT_EQ(manager->selectionObserver, nullptr);
  EXPECT_EQ(manager->assocHlightObserver, nullptr);
}

TEST_F(SelectionBinding, AHostMayDropThePanelFromInsideTheEndOfAnUpdate)
{
  panel.gui->SetTreeState(nullptr);
  panel.state.Reset();
  panel.host.onCall = [&](const std::string& line) {
    if (line == "UpdateStatusBar()") {
      panel.gui.Reset();
    }
  };

  GetSelectionObserver().OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("UpdateStatusBar()", "FinishTreeUpdate()"));
}

TEST_F(SelectionBinding, AnObserverThatIsStillRegisteredOutlivesThePanelAndDoesNothing)
{
  panel.state.Reset();
  panel.gui.Reset();

  GetSelectionObserver().OnBeginUpdate();
  GetAssocHlightObserver().OnSelectionChanged(4, true, {}, {});

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(SelectionBinding, TheHighlightColourStaysUnreadWithoutAView)
{
  panel.gui->OnUpdateAssocHlightColor();

  EXPECT_EQ(panel.gui->GetAssocHlightColor(), 0u);
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

}  // namespace
