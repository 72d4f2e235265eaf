#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "guitree/GuiTreeTreeObserverHelper.h"
#include "testsupport/Panel.h"
#include "testsupport/ShownScene.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::Panel;
using testsupport::ShownScene;

using Helper = guitree::GuiTree::GuiTreeTreeObserverHelper;
using Instance = du::SmartPtr<memkernel::Instance>;

/// A filled panel that nothing was recorded of.
struct FilledPanel : Panel {
  FilledPanel() : Panel("root[a[x] b]") { Initialise(); }
};

/// The edits of a burst, on a panel that shows a scene: what the host and the scene's log are told is in one list.
class UpdateBatching : public testing::Test {
protected:
  Instance Create(const std::string& parent, const std::string& name)
  {
    const Instance instance = panel.kernel.Add(parent, name);
    burst.Helper_OnInstanceCreate(instance, panel.kernel[parent], "not read");
    return instance;
  }
  void Remove(const std::string& name, const std::string& parent)
  {
    burst.Helper_OnInstanceRemove(panel.kernel[name], panel.kernel[parent]);
  }

  FilledPanel panel;
  ShownScene shown{panel};
  Helper burst{panel.gui.Get()};
};

TEST_F(UpdateBatching, AHelperStartsWithNothingDue)
{
  burst.Helper_OnEndUpdate();

  EXPECT_FALSE(burst.GetRepopulateNeeded());
  EXPECT_THAT(shown.TakeLines(), IsEmpty());
}

TEST_F(UpdateBatching, Create_OpensTheBracketMakesTheRowAndThenChecksTheParent)
{
  Create("a", "n");

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "InstanceCreate(n, parent=a, controller=no, assoc=false)",
                          "SetVisible(a, 0, propagate)"));
  EXPECT_FALSE(burst.GetRepopulateNeeded());
}

TEST_F(UpdateBatching, TheBracketIsOpenedOnceABurst)
{
  Create("a", "n");
  static_cast<void>(shown.TakeLines());

  burst.SetChanged();
  Create("b", "m");

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("InstanceCreate(m, parent=b, controller=no, assoc=false)", "SetVisible(b, 0, propagate)"));
}

TEST_F(UpdateBatching, CreateOfARoot_ChecksNoParent)
{
  const testsupport::NamedTree other("top");

  burst.Helper_OnInstanceCreate(other["top"], nullptr, {});

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "InstanceCreate(top, parent=null, controller=no, assoc=false)"));
}

TEST_F(UpdateBatching, InstancesOfAnyTreeAreHandledAlike_SinceTheHelperDoesNotTestTheTree)
{
  const testsupport::NamedTree other("top[leaf]");

  burst.Helper_OnInstanceCreate(other["leaf"], other["top"], {});
  burst.Helper_OnInstanceRemove(other["top"], nullptr);

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "InstanceCreate(leaf, parent=top, controller=no, assoc=false)",
                          "SetVisible(top, 0, propagate)"));
}

TEST_F(UpdateBatching, TheControllerIsAskedForOnceABurst)
{
  static_cast<void>(panel.UseSelController());
  panel.state->selControllerQuestions.clear();

  Create("a", "n");
  Create("a", "m");

  EXPECT_THAT(panel.state->selControllerQuestions, ElementsAre(false));
  EXPECT_EQ(panel.host.Calls().back(), "InstanceCreate(m, parent=a, controller=yes, assoc=false)");

  burst.Helper_OnEndUpdate();
  Create("a", "o");

  EXPECT_THAT(panel.state->selControllerQuestions, ElementsAre(false, false));
}

TEST_F(UpdateBatching, AControllerThatWasFetchedServesTheWholeBurstThoughTheStateHasAnother)
{
  static_cast<void>(panel.UseSelController());
  Create("a", "n");
  panel.state->selController.Reset();

  Create("a", "m");

  EXPECT_EQ(panel.host.Calls().back(), "InstanceCreate(m, parent=a, controller=yes, assoc=false)");
}

TEST_F(UpdateBatching, AMissingControllerIsAskedForByEachCreation)
{
  panel.state->selControllerQuestions.clear();

  Create("a", "n");
  Create("a", "m");

  EXPECT_THAT(panel.state->selControllerQuestions, ElementsAre(false, false));
}

TEST_F(UpdateBatching, TheEndReleasesTheController)
{
  class Controller : public testsupport::ScriptedSelectionController {
  public:
    explicit Controller(std::shared_ptr<int> token) : m_token(std::move(token)) {}

  private:
    const std::shared_ptr<int> m_token;
  };
  auto token = std::make_shared<int>();
  const std::weak_ptr<int> held = token;
  panel.state->selController = du::MakeSmart<Controller>(std::exchange(token, nullptr));
  Create("a", "n");
  panel.state->selController.Reset();
  ASSERT_FALSE(held.expired());

  burst.Helper_OnEndUpdate();

  EXPECT_TRUE(held.expired());
}

TEST_F(UpdateBatching, ACreationThatTheStateCannotApply_AsksForARefillAndStillChecksTheParent)
{
  panel.state->filter.isFiltering = true;
  panel.state->filter.dynamicUpdate = true;

  Create("a", "n");

  EXPECT_TRUE(burst.GetRepopulateNeeded());
  EXPECT_THAT(shown.TakeLines(), ElementsAre("StartTreeUpdate()", "SetVisible(a, 0, propagate)"));
}

TEST_F(UpdateBatching, ACreationWhileARefillIsDue_DoesNothingAtAll)
{
  burst.SetRepopulateNeeded();
  panel.state->selControllerQuestions.clear();

  Create("a", "n");

  EXPECT_THAT(shown.TakeLines(), IsEmpty());
  EXPECT_THAT(panel.state->selControllerQuestions, IsEmpty());
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "b", "root", "x"));
}

TEST_F(UpdateBatching, Remove_OpensTheBracketTakesTheRowAndThenChecksTheParent)
{
  Remove("b", "root");

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "InstanceRemove(b, parent=root, repopulatePending=false)",
                          "SetVisible(root, 0, propagate)"));
}

TEST_F(UpdateBatching, ARemovalAsksForARefillAlthoughTheRowHasGone)
{
  Remove("b", "root");

  EXPECT_TRUE(burst.GetRepopulateNeeded());
}

TEST_F(UpdateBatching, TheRemovalOfAnInstanceThatWasNotShown_OnlyOpensTheBracketAndChecksTheParent)
{
  panel.kernel.Add("a", "n");

  Remove("n", "a");

  EXPECT_FALSE(burst.GetRepopulateNeeded());
  EXPECT_THAT(shown.TakeLines(), ElementsAre("StartTreeUpdate()", "SetVisible(a, 0, propagate)"));
}

TEST_F(UpdateBatching, RemoveOfTheRoot_ChecksNoParent)
{
  burst.Helper_OnInstanceRemove(panel.kernel["root"], nullptr);

  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "InstanceRemove(root, parent=null, repopulatePending=false)"));
}

TEST_F(UpdateBatching, ARemovalWhileARefillIsDue_ReachesTheHostOutsideAnyBracketAndChecksNoParent)
{
  burst.SetRepopulateNeeded();

  Remove("b", "root");

  EXPECT_THAT(shown.TakeLines(), ElementsAre("InstanceRemove(b, parent=root, repopulatePending=true)"));
  EXPECT_THAT(panel.GetShownNames(), ElementsAre("a", "root", "x"));
}

TEST_F(UpdateBatching, ARemovalHoldsBothInstancesForItsLength)
{
  Instance leaf = panel.kernel.Add("b", "leaf");
  Instance parent = panel.kernel["b"];
  burst.Helper_OnInstanceCreate(leaf, parent, {});
  static_cast<void>(shown.TakeLines());
  panel.kernel = testsupport::NamedTree("");
  panel.gui->SetBaseTree(nullptr);
  panel.world->tree.Reset();
  panel.host.onCall = [&](const std::string& line) {
    shown.lines.push_back(line);
    leaf.Reset();
    parent.Reset();
  };

  burst.Helper_OnInstanceRemove(leaf, parent);

  EXPECT_EQ(leaf, nullptr);
  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("InstanceRemove(leaf, parent=b, repopulatePending=false)", "SetVisible(b, 0, propagate)"));
}

TEST_F(UpdateBatching, Name_OpensTheBracketAndHandsTheNameOn)
{
  burst.Helper_OnInstanceName(panel.kernel["a"]);

  EXPECT_FALSE(burst.GetRepopulateNeeded());
  EXPECT_THAT(shown.TakeLines(),
              ElementsAre("StartTreeUpdate()", "MarkTypeIconChanged(a)", "CheckAndUpdateNodeNameAndType(a) -> false"));
}

TEST_F(UpdateBatching, ANameThatTheHostCannotShowInPlace_AsksForARefill)
{
  panel.host.answers.checkAndUpdateNodeNameAndType = true;

  burst.Helper_OnInstanceName(panel.kernel["a"]);

  EXPECT_TRUE(burst.GetRepopulateNeeded());
}

TEST_F(UpdateBatching, TheNameOfAnInstanceThatIsNotShown_OnlyOpensTheBracket)
{
  panel.host.answers.checkAndUpdateNodeNameAndType = true;

  burst.Helper_OnInstanceName(panel.kernel.Add("a", "n"));

  EXPECT_FALSE(burst.GetRepopulateNeeded());
  EXPECT_THAT(shown.TakeLines(), ElementsAre("StartTreeUpdate()"));
}

TEST_F(UpdateBatching, ANameWhileARefillIsDue_DoesNothingAtAll)
{
  burst.SetRepopulateNeeded();

  burst.Helper_OnInstanceName(panel.kernel["a"]);

  EXPECT_THAT(shown.TakeLines(), IsEmpty());
}

TEST_F(UpdateBatching, AHelperWithoutATree_DoesNothing)
{
  Helper alone(nullptr);

  alone.Helper_OnInstanceCreate(panel.kernel["a"], panel.kernel["root"], {});
  alone.Helper_OnInstanceRemove(panel.kernel["a"], panel.kernel["root"]);
  alone.Helper_OnInstanceName(panel.kernel["a"]);
  alone.SetChanged();
  alone.SetNodeNamesChanged();
  alone.SetRepopulateNeeded();
  alone.Helper_OnInstanceRemove(panel.kernel["a"], panel.kernel["root"]);
  alone.Helper_OnEndUpdate();

  EXPECT_FALSE(alone.GetRepopulateNeeded());
  EXPECT_THAT(shown.TakeLines(), IsEmpty());
}

TEST_F(UpdateBatching, ACopyMadeInsideABurst_GoesOnWithItsBracketItsFlagsAndItsCount)
{
  for (std::uint64_t i = 0; i < Helper::s_maxSingleEdits; ++i) {
    burst.IncOpsDone();
  }
  burst.SetChanged();
  burst.SetNodeNamesChanged();
  static_cast<void>(shown.TakeLines());
  Helper copy(burst);
  Helper assigned(nullptr);
  assigned = burst;

  for (Helper* helper : {&copy, &assigned}) {
    EXPECT_FALSE(helper->GetRepopulateNeeded());
    helper->SetChanged();
    EXPECT_THAT(shown.TakeLines(), IsEmpty());

    helper->Helper_OnEndUpdate();

    EXPECT_THAT(shown.TakeLines(),
                ElementsAre("FinishTreeUpdate()", "UpdateFilterUI()", "ContentHasChanged()", "UpdateNodeNames()",
                            "UpdateTreeTable()", "ClearVisibleChangeMap()", "ClearTypeIconChangeMap()"));
  }
  Helper counting(burst);
  counting.IncOpsDone();
  EXPECT_TRUE(counting.GetRepopulateNeeded());
  EXPECT_FALSE(burst.GetRepopulateNeeded());
}

TEST_F(UpdateBatching, ACopySharesTheController)
{
  static_cast<void>(panel.UseSelController());
  Create("a", "n");
  panel.state->selControllerQuestions.clear();
  Helper copy(burst);

  copy.Helper_OnInstanceCreate(panel.kernel.Add("a", "m"), panel.kernel["a"], {});

  EXPECT_THAT(panel.state->selControllerQuestions, IsEmpty());
}

}  // namespace
