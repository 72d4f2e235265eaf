#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"
#include "zelk/ObjectSelectionItem.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testsupport::Panel;

using Items = std::vector<du::SmartPtr<zelk::SelectionItem>>;
using Objects = std::vector<du::SmartPtr<zelk::Object>>;

/// An item around something that is no instance.
class OtherItem : public zelk::SelectionItem {
public:
  [[nodiscard]] du::Symbol GetSelectionType() const override { return "other"; }
  [[nodiscard]] const void* GetIdentity() const override { return this; }
};

du::SmartPtr<zelk::SelectionItem> MakeItem(const Panel& panel, const std::string& name)
{
  return du::MakeSmart<zelk::ObjectSelectionItem>(panel.kernel[name]);
}

/// A filled, visible panel with nothing recorded.
void Fill(Panel& panel)
{
  panel.ShowTree();
  panel.state->PopulateTree(false);
  static_cast<void>(panel.host.TakeCalls());
}

void FilterTheSelectionDynamically(Panel& panel)
{
  panel.state->filter.dynamicUpdate = true;
  panel.state->filter.filteringSel = true;
}

void ReportAllSelectionChanges(Panel& panel)
{
  Objects objects{panel.kernel["a"]};
  panel.state->OnInsertItems(objects);
  panel.state->OnRemoveItems(objects);
  panel.state->OnClearSelection();
}

TEST(TreeStateSelection, ChangesGoToTheHostAtOnce)
{
  Panel panel("root[a]");
  Fill(panel);

  ReportAllSelectionChanges(panel);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("IsTreeVisibleInUI() -> true", "SelectItems([a])", "IsTreeVisibleInUI() -> true",
                          "DeselectItems([a])", "IsTreeVisibleInUI() -> true", "ClearSelection()"));
  EXPECT_FALSE(panel.state->GetSelectionNeedsUpdating());
}

TEST(TreeStateSelection, OnAnInvisiblePanel_EachChangeSetsTheFlagAndKeepsNothing)
{
  using Report = void (*)(Panel&);
  const Report reports[] = {
      [](Panel& panel) {
        Objects objects{panel.kernel["a"]};
        panel.state->OnInsertItems(objects);
      },
      [](Panel& panel) {
        Objects objects{panel.kernel["a"]};
        panel.state->OnRemoveItems(objects);
      },
      [](Panel& panel) { panel.state->OnClearSelection(); },
  };
  for (const Report report : reports) {
    Panel panel("root[a]");
    Fill(panel);
    panel.host.answers.isTreeVisibleInUI = false;

    report(panel);

    EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("IsTreeVisibleInUI() -> false"));
    EXPECT_TRUE(panel.state->GetSelectionNeedsUpdating());
  }
}

TEST(TreeStateSelection, UnderAFilterThatShowsTheSelection_ChangesMakeNoCallAndSetNoFlagAlsoWhenInvisible)
{
  for (const bool isVisible : {true, false}) {
    Panel panel("root[a]");
    Fill(panel);
    FilterTheSelectionDynamically(panel);
    panel.host.answers.isTreeVisibleInUI = isVisible;

    ReportAllSelectionChanges(panel);

    EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
    EXPECT_FALSE(panel.state->GetSelectionNeedsUpdating());
  }
}

TEST(TreeStateSelection, OnEndUpdate_UnderAFilterThatShowsTheSelection_Repopulates)
{
  Panel panel("root[a]");
  Fill(panel);
  FilterTheSelectionDynamically(panel);

  panel.state->OnEndUpdate();

  const std::vector<std::string> calls = panel.host.TakeCalls();
  ASSERT_GE(calls.size(), 2u);
  EXPECT_EQ(calls[0], "IsTreeVisibleInUI() -> true");
  EXPECT_EQ(calls[1], "StoreExpandedAndFirstVisibleBeforePopulate(true)");
}

TEST(TreeStateSelection, OnEndUpdate_OnAnInvisiblePanelUnderSuchAFilter_SetsTheFlag)
{
  Panel panel("root[a]");
  Fill(panel);
  FilterTheSelectionDynamically(panel);
  panel.host.answers.isTreeVisibleInUI = false;

  panel.state->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("IsTreeVisibleInUI() -> false"));
  EXPECT_TRUE(panel.state->GetSelectionNeedsUpdating());
}

TEST(TreeStateSelection, OnEndUpdate_UnderADynamicFilterThatDoesNotLookAtTheSelection_DoesNothing)
{
  Panel panel("root[a]");
  Fill(panel);
  panel.state->filter.dynamicUpdate = true;

  panel.state->OnEndUpdate();

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST(TreeStateHighlight, DuringAJob_AChangeIsDroppedWithoutAFlagOrAQuestion)
{
  Panel panel("root[a]");
  Fill(panel);
  panel.state->SetBusy(true);

  EXPECT_FALSE(panel.state->OnAssocHlightChanged(true, {}, {MakeItem(panel, "a")}));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_FALSE(panel.state->GetAssocHlightsNeedsUpdating());
  EXPECT_FALSE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
}

TEST(TreeStateHighlight, OnAnInvisiblePanel_AChangeIsDeferred)
{
  Panel panel("root[a]");
  Fill(panel);
  panel.host.answers.isTreeVisibleInUI = false;

  EXPECT_FALSE(panel.state->OnAssocHlightChanged(false, {}, {MakeItem(panel, "a")}));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("IsTreeVisibleInUI() -> false"));
  EXPECT_TRUE(panel.state->GetAssocHlightsNeedsUpdating());
  EXPECT_FALSE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
}

TEST(TreeStateHighlight, AChangeClearsThenRemovesThenAdds)
{
  Panel panel("root[a b c]");
  Fill(panel);
  panel.state->SetAssocHlight(Items{MakeItem(panel, "a")}, true);
  static_cast<void>(panel.host.TakeCalls());

  EXPECT_TRUE(panel.state->OnAssocHlightChanged(true, {MakeItem(panel, "b")}, {MakeItem(panel, "c")}));

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("IsTreeVisibleInUI() -> true", "StartTreeUpdate()", "SetAssocHlight(a, on=false) -> false",
                          "FinishTreeUpdate()", "StartTreeUpdate()", "FinishTreeUpdate()", "StartTreeUpdate()",
                          "SetAssocHlight(c, on=true) -> false", "FinishTreeUpdate()"));
  EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["c"].Get()));
}

TEST(TreeStateHighlight, AnEmptyChange_IsAppliedWithoutACallThatChangesAnything)
{
  Panel panel("root[a]");
  Fill(panel);

  EXPECT_TRUE(panel.state->OnAssocHlightChanged(false, {}, {}));
  EXPECT_TRUE(panel.state->OnAssocHlightChanged(true, {}, {}));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("IsTreeVisibleInUI() -> true", "IsTreeVisibleInUI() -> true"));
}

TEST(TreeStateHighlight, AnInstanceThatIsInTheWantedStateCostsNoCall)
{
  Panel panel("root[a b]");
  Fill(panel);
  panel.state->SetAssocHlight(Items{MakeItem(panel, "a")}, true);
  static_cast<void>(panel.host.TakeCalls());

  panel.state->SetAssocHlight(Items{MakeItem(panel, "a")}, true);
  panel.state->SetAssocHlight(Items{MakeItem(panel, "b")}, false);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StartTreeUpdate()", "FinishTreeUpdate()", "StartTreeUpdate()", "FinishTreeUpdate()"));
}

TEST(TreeStateHighlight, NoItemsStillGiveTheBracket)
{
  Panel panel("root");
  Fill(panel);

  panel.state->SetAssocHlight(Items{}, true);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("StartTreeUpdate()", "FinishTreeUpdate()"));
}

TEST(TreeStateHighlight, ItemsOfOtherKindsArePassedOver)
{
  Panel panel("root[a]");
  Fill(panel);

  panel.state->SetAssocHlight(Items{nullptr, du::MakeSmart<OtherItem>(),
                                    du::MakeSmart<zelk::ObjectSelectionItem>(nullptr), MakeItem(panel, "a")},
                              true);

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StartTreeUpdate()", "SetAssocHlight(a, on=true) -> false", "FinishTreeUpdate()"));
}

TEST(TreeStateHighlight, OneInstance_HasNoBracket)
{
  Panel panel("root[a]");
  Fill(panel);

  panel.state->SetAssocHlight(panel.kernel["a"].Get(), true);

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("SetAssocHlight(a, on=true) -> false"));
}

TEST(TreeStateHighlight, TheRecordIsChangedBeforeTheHostIsCalled)
{
  Panel panel("root[a]");
  Fill(panel);
  bool wasRecorded = false;
  panel.host.onCall = [&](const std::string&) { wasRecorded = panel.state->IsAssocHlight(panel.kernel["a"].Get()); };

  panel.state->SetAssocHlight(panel.kernel["a"].Get(), true);

  EXPECT_TRUE(wasRecorded);
}

TEST(TreeStateHighlight, RefreshTurnsAllOffAndThenOnWhatTheControllerStillNames)
{
  Panel panel("root[a b]");
  const auto controller = panel.UseSelController();
  controller->highlighted = {panel.kernel["a"], panel.kernel["b"]};
  Fill(panel);
  controller->highlighted = {panel.kernel["b"]};

  panel.state->RefreshAssocHlights();

  const std::vector<std::string> calls = panel.host.TakeCalls();
  ASSERT_EQ(calls.size(), 7u);
  EXPECT_EQ(calls[0], "StartTreeUpdate()");
  EXPECT_THAT((std::vector<std::string>{calls[1], calls[2]}),
              UnorderedElementsAre("SetAssocHlight(a, on=false) -> false", "SetAssocHlight(b, on=false) -> false"));
  EXPECT_THAT((std::vector<std::string>(calls.begin() + 3, calls.end())),
              ElementsAre("FinishTreeUpdate()", "StartTreeUpdate()", "SetAssocHlight(b, on=true) -> false",
                          "FinishTreeUpdate()"));
}

TEST(TreeStateHighlight, AColourChange_WithUnchangedHighlightsBracketsNothing)
{
  Panel panel("root[a]");
  panel.UseSelController()->highlighted = {panel.kernel["a"]};
  Fill(panel);

  panel.state->OnAssocHlightColorChange();

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("StartTreeUpdate()", "FinishTreeUpdate()"));
}

TEST(TreeStateHighlight, AColourChange_AddsWhatIsMissingAndTakesNothingAway)
{
  Panel panel("root[a b]");
  panel.UseSelController()->highlighted = {panel.kernel["b"]};
  Fill(panel);
  panel.state->SetAssocHlight(panel.kernel["b"].Get(), false);
  panel.state->SetAssocHlight(panel.kernel["a"].Get(), true);
  static_cast<void>(panel.host.TakeCalls());

  panel.state->OnAssocHlightColorChange();

  EXPECT_THAT(panel.host.TakeCalls(),
              ElementsAre("StartTreeUpdate()", "SetAssocHlight(b, on=true) -> false", "FinishTreeUpdate()"));
  EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
}

TEST(TreeStateHighlight, AnInstanceWithoutARow_IsHighlightedAllTheSame)
{
  Panel panel("root[a]");
  panel.state->hidden = {panel.kernel["a"].Get()};
  Fill(panel);

  EXPECT_TRUE(panel.state->OnAssocHlightChanged(false, {}, {MakeItem(panel, "a")}));

  EXPECT_THAT(panel.host.TakeCalls(), testing::Contains("SetAssocHlight(a, on=true) -> false"));
  EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
}

TEST(TreeStateSelection, AFilterThatShowsTheSelection_CountsAlsoWhileItIsOff)
{
  Panel panel("root[a]");
  Fill(panel);
  FilterTheSelectionDynamically(panel);
  panel.state->filter.isFiltering = false;
  panel.host.answers.isTreeVisibleInUI = false;

  ReportAllSelectionChanges(panel);
  EXPECT_FALSE(panel.state->GetSelectionNeedsUpdating());

  panel.state->OnEndUpdate();
  EXPECT_TRUE(panel.state->GetSelectionNeedsUpdating());
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("IsTreeVisibleInUI() -> false"));
}

TEST(TreeStateHighlight, WithoutAController_AnUpdateLeavesTheRecord)
{
  Panel panel("root[a]");
  Fill(panel);
  panel.state->SetAssocHlight(panel.kernel["a"].Get(), true);
  static_cast<void>(panel.host.TakeCalls());

  panel.state->UpdateAssocHighlights(false);

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
}

TEST(TreeStateSelection, GetBaseInstFromSelItems_DropsWhatIsNoInstanceAndWhatIsNotShown)
{
  Panel panel("root[a b]");
  panel.state->hidden = {panel.kernel["b"].Get()};
  Fill(panel);
  std::set<zelk::BaseInstance*> out{panel.kernel["root"].Get()};

  panel.state->GetBaseInstFromSelItems({nullptr, du::MakeSmart<OtherItem>(), panel.kernel["a"], panel.kernel["b"]},
                                       out);

  EXPECT_THAT(out, UnorderedElementsAre(panel.kernel["root"].Get(), panel.kernel["a"].Get()));
}

}  // namespace
