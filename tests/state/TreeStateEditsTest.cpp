#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Panel;

using Instance = du::SmartPtr<memkernel::Instance>;

/// A filled panel whose state is told of single edits. Nothing is recorded.
class TreeStateEdits : public testing::Test {
protected:
  TreeStateEdits() { Fill(); }

  void Fill()
  {
    panel.ShowTree();
    panel.state->PopulateTree(false);
    static_cast<void>(panel.host.TakeCalls());
  }
  [[nodiscard]] bool Create(const Instance& instance, const Instance& parent)
  {
    return panel.state->InstanceCreate(instance, parent, panel.state->selController);
  }
  [[nodiscard]] bool Remove(const std::string& name, const std::string& parent, bool repopulatePending = false)
  {
    return panel.state->InstanceRemove(panel.kernel[name], panel.kernel[parent], repopulatePending);
  }
  void Filter(bool dynamically)
  {
    panel.state->filter.isFiltering = true;
    panel.state->filter.dynamicUpdate = dynamically;
  }
  /// As if the filter had let through all but `name`.
  void HideRow(const std::string& name)
  {
    panel.state->hidden = {panel.kernel[name].Get()};
    Fill();
    panel.state->hidden.clear();
  }

  Panel panel{"root[a[x[y] z] b]"};
  const std::vector<std::string> all{"a", "b", "root", "x", "y", "z"};
};

TEST_F(TreeStateEdits, CreateWithoutAFilter_MakesTheRowAtOnceAndAsksForNothing)
{
  const bool needsRefill = Create(panel.kernel.Add("b", "n"), panel.kernel["b"]);

  EXPECT_FALSE(needsRefill);
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InstanceCreate(n, parent=b, controller=no, assoc=false)"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "b", "n", "root", "x", "y", "z"));
}

TEST_F(TreeStateEdits, CreateWithAController_AsksItForTheHighlight)
{
  const Instance lit = panel.kernel.Add("b", "lit");
  const Instance plain = panel.kernel.Add("b", "plain");
  panel.UseSelController()->highlighted = {lit};

  EXPECT_FALSE(Create(lit, panel.kernel["b"]));
  EXPECT_FALSE(Create(plain, panel.kernel["b"]));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InstanceCreate(lit, parent=b, controller=yes, assoc=true)",
                                                  "InstanceCreate(plain, parent=b, controller=yes, assoc=false)"));
  EXPECT_TRUE(panel.state->IsAssocHlight(lit.Get()));
  EXPECT_FALSE(panel.state->IsAssocHlight(plain.Get()));
}

TEST_F(TreeStateEdits, CreateOfAHiddenInstance_ChangesNothing)
{
  const Instance hidden = panel.kernel.Add("b", "n");
  panel.state->hidden = {hidden.Get()};
  panel.UseSelController()->highlighted = {hidden};

  EXPECT_FALSE(Create(hidden, panel.kernel["b"]));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_EQ(panel.GetShownNames(), all);
  EXPECT_FALSE(panel.state->IsAssocHlight(hidden.Get()));
}

TEST_F(TreeStateEdits, CreateBelowAHiddenInstance_MakesTheRowWithTheHiddenOneAsParent)
{
  const Instance hidden = panel.kernel.Add("b", "hidden");
  panel.state->hidden = {hidden.Get()};
  EXPECT_FALSE(Create(hidden, panel.kernel["b"]));

  EXPECT_FALSE(Create(panel.kernel.Add("hidden", "n"), hidden));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InstanceCreate(n, parent=hidden, controller=no, assoc=false)"));
}

TEST_F(TreeStateEdits, CreateUnderADynamicFilter_AsksForARefillWhateverTheParent)
{
  HideRow("b");
  Filter(true);

  EXPECT_TRUE(Create(panel.kernel.Add("a", "n"), panel.kernel["a"]));
  EXPECT_TRUE(Create(panel.kernel.Add("b", "m"), panel.kernel["b"]));
  EXPECT_TRUE(Create(panel.kernel.Add("b", "o"), nullptr));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "root", "x", "y", "z"));
}

TEST_F(TreeStateEdits, CreateUnderAStaticFilter_AsksForARefillOnlyBelowARow)
{
  HideRow("b");
  Filter(false);

  EXPECT_TRUE(Create(panel.kernel.Add("a", "n"), panel.kernel["a"]));
  EXPECT_FALSE(Create(panel.kernel.Add("b", "m"), panel.kernel["b"]));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "root", "x", "y", "z"));
}

TEST_F(TreeStateEdits, ANewRootUnderAStaticFilter_IsIgnored)
{
  Filter(false);

  EXPECT_FALSE(Create(panel.kernel.Add("a", "n"), nullptr));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(TreeStateEdits, RemoveOfWhatIsNotShown_AsksNobodyAndLeavesTheHighlightAsItIs)
{
  const Instance unshown = panel.kernel.Add("b", "n");
  panel.state->SetAssocHlight(unshown.Get(), true);
  static_cast<void>(panel.host.TakeCalls());
  panel.state->onCall = [](const std::string& call) { ADD_FAILURE() << call; };

  EXPECT_FALSE(Remove("n", "b"));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_TRUE(panel.state->IsAssocHlight(unshown.Get()));
  EXPECT_EQ(panel.GetShownNames(), all);
}

TEST_F(TreeStateEdits, RemoveOfALeaf_ForgetsExactlyThatRowAndAsksForARefillAlthoughItHasGone)
{
  EXPECT_TRUE(Remove("z", "a"));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InstanceRemove(z, parent=a, repopulatePending=false)"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "b", "root", "x", "y"));
}

TEST_F(TreeStateEdits, RemoveOfABranch_ForgetsAllOfItAndTellsTheHostOfTheTopAlone)
{
  EXPECT_TRUE(Remove("a", "root"));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InstanceRemove(a, parent=root, repopulatePending=false)"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("b", "root"));
}

TEST_F(TreeStateEdits, RemoveOfABranch_PassesOverWhatHasNoRow)
{
  HideRow("x");

  EXPECT_TRUE(Remove("a", "root"));

  EXPECT_THAT(panel.GetShownNames(), ElementsAre("b", "root"));
}

TEST_F(TreeStateEdits, RemoveOfARoot_HasNoParent)
{
  EXPECT_TRUE(panel.state->InstanceRemove(panel.kernel["root"], nullptr, false));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InstanceRemove(root, parent=null, repopulatePending=false)"));
  EXPECT_THAT(panel.GetShownNames(), IsEmpty());
}

TEST_F(TreeStateEdits, RemoveOfAHiddenInstance_LeavesTheRowsBelowToTheirOwnAnnouncements)
{
  HideRow("a");

  EXPECT_FALSE(Remove("a", "root"));
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("b", "root", "x", "y", "z"));

  EXPECT_TRUE(Remove("x", "a"));
  EXPECT_FALSE(Remove("y", "x"));
  EXPECT_TRUE(Remove("z", "a"));
  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InstanceRemove(x, parent=a, repopulatePending=false)",
                                                  "InstanceRemove(z, parent=a, repopulatePending=false)"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("b", "root"));
}

TEST_F(TreeStateEdits, RemoveOfABranch_LeavesItsDescendantsInTheHighlightUntilTheNextRefill)
{
  panel.UseSelController()->highlighted = {panel.kernel["a"], panel.kernel["y"], panel.kernel["z"]};
  Fill();

  EXPECT_TRUE(Remove("a", "root"));

  EXPECT_FALSE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
  EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["y"].Get()));
  EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["z"].Get()));

  ASSERT_TRUE(panel.kernel.Get()->Remove(panel.kernel["a"]));
  Fill();

  EXPECT_FALSE(panel.state->IsAssocHlight(panel.kernel["y"].Get()));
}

TEST_F(TreeStateEdits, RemoveUnderADynamicFilter_LeavesRowsAndHighlightToTheRefill)
{
  panel.UseSelController()->highlighted = {panel.kernel["z"]};
  Fill();
  Filter(true);

  EXPECT_TRUE(Remove("z", "a"));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  EXPECT_EQ(panel.GetShownNames(), all);
  EXPECT_TRUE(panel.state->IsAssocHlight(panel.kernel["z"].Get()));
}

TEST_F(TreeStateEdits, RemoveOfWhatIsNotShownUnderADynamicFilter_AsksForNothing)
{
  HideRow("z");
  Filter(true);

  EXPECT_FALSE(Remove("z", "a"));
}

TEST_F(TreeStateEdits, RemoveUnderAStaticFilter_TakesTheRowAtOnce)
{
  Filter(false);

  EXPECT_TRUE(Remove("z", "a"));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InstanceRemove(z, parent=a, repopulatePending=false)"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "b", "root", "x", "y"));
}

TEST_F(TreeStateEdits, RemoveUnderAStaticFilter_LooksAgainAfterTheFilterWasAskedFor)
{
  Filter(false);
  panel.state->onCall = [&](const std::string& call) {
    if (call == "GetFilter") {
      panel.state->onCall = nullptr;
      panel.state->Reset();
      static_cast<void>(panel.host.TakeCalls());
    }
  };

  EXPECT_FALSE(Remove("z", "a"));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(TreeStateEdits, RemoveWhileARefillIsPending_KeepsTheSetsInStepAndTellsTheHost)
{
  panel.UseSelController()->highlighted = {panel.kernel["a"]};
  Fill();

  EXPECT_TRUE(Remove("a", "root", true));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InstanceRemove(a, parent=root, repopulatePending=true)"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("b", "root"));
  EXPECT_FALSE(panel.state->IsAssocHlight(panel.kernel["a"].Get()));
}

TEST_F(TreeStateEdits, ARemovedRowThatIsRemovedAgain_AsksForNothing)
{
  EXPECT_TRUE(Remove("z", "a"));
  static_cast<void>(panel.host.TakeCalls());

  EXPECT_FALSE(Remove("z", "a"));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(TreeStateEdits, TheFilterIsThatOfTheCurrentView)
{
  const auto view = testsupport::MakeView<testsupport::PlainView>(nullptr);
  panel.Initialise();
  panel.host.answers.sceneManagerObserver->OnActiveViewChanged(view);
  testsupport::ScriptedFilter dynamic;
  dynamic.isFiltering = dynamic.dynamicUpdate = true;
  panel.state->filterOfView.emplace(view.Get(), dynamic);

  EXPECT_TRUE(Create(panel.kernel.Add("b", "n"), panel.kernel["b"]));
  EXPECT_TRUE(Remove("z", "a"));

  EXPECT_EQ(panel.GetShownNames(), all);
}

TEST_F(TreeStateEdits, WhileAFilterJobRuns_EditsTakeTheSameBranches)
{
  panel.state->SetBusy(true);

  EXPECT_FALSE(Create(panel.kernel.Add("b", "n"), panel.kernel["b"]));
  EXPECT_TRUE(Remove("n", "b"));

  EXPECT_THAT(panel.host.TakeCalls(), ElementsAre("InstanceCreate(n, parent=b, controller=no, assoc=false)",
                                                  "InstanceRemove(n, parent=b, repopulatePending=false)"));
}

TEST_F(TreeStateEdits, EditsOpenNoBracketOfTheirOwn)
{
  static_cast<void>(Create(panel.kernel.Add("b", "n"), panel.kernel["b"]));
  static_cast<void>(Remove("a", "root"));
  static_cast<void>(Remove("b", "root", true));

  EXPECT_THAT(panel.host.TakeCalls(), testing::Not(testing::Contains(testing::HasSubstr("TreeUpdate"))));
}

TEST_F(TreeStateEdits, AfterTheGuiTreeHasGone_EditsDoNothing)
{
  panel.gui.Reset();

  EXPECT_FALSE(Create(panel.kernel.Add("b", "n"), panel.kernel["b"]));
  EXPECT_FALSE(Remove("a", "root"));

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

TEST_F(TreeStateEdits, AHostMayDropPanelAndStateFromInsideAnEdit)
{
  for (const bool isRemoval : {false, true}) {
    Panel other("root[a[b]]");
    other.ShowTree();
    other.state->PopulateTree(false);
    bool isGone = false;
    other.state->onEnd = [&] { isGone = true; };
    other.host.onCall = [&](const std::string&) {
      other.gui.Reset();
      other.state.Reset();
    };
    testsupport::ScriptedTreeState* state = other.state.Get();

    const bool needsRefill = isRemoval ? state->InstanceRemove(other.kernel["a"], other.kernel["root"], false)
                                       : state->InstanceCreate(other.kernel.Add("a", "n"), other.kernel["a"], nullptr);

    EXPECT_EQ(needsRefill, isRemoval);
    EXPECT_TRUE(isGone);
  }
}

}  // namespace
