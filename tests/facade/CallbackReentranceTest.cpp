#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "memkernel/SelectionManager.h"
#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"
#include "zelk/ObjectSelectionItem.h"

namespace {

using testing::Contains;
using testsupport::MakeView;
using testsupport::Panel;
using testsupport::PlainScene;
using testsupport::PlainShapeScene;
using testsupport::PlainShapeView;
using testsupport::PlainView;

using zelk::SelectionManager;

/// An initialised panel with a selection and a shown scene whose changes wait. Nothing is recorded.
struct Stage {
  Stage()
  {
    panel.world->selectionManager = selection;
    scene->selectionManager = selection;
    panel.Initialise();
    panel.state->needsTooltips = true;
    GetReports().OnSceneAdded(scene);
    GetReports().OnActiveViewChanged(view);
    panel.gui->GetLog(scene)->SetVisible(panel.kernel["a"].Get(), guitree::VisibleStateVisible);
    static_cast<void>(panel.host.TakeCalls());
  }
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  ~Stage()
  {
    panel.host.onCall = nullptr;
    GetReports().OnSceneRemoved(scene);
    if (panel.gui) {
      panel.gui->Reset();
      panel.gui->Close();
    }
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *panel.host.answers.sceneManagerObserver;
  }

  Panel panel{"root[a]"};
  du::SmartPtr<memkernel::SelectionManager> selection = du::MakeSmart<memkernel::SelectionManager>(nullptr);
  du::SmartPtr<PlainShapeScene> scene = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeScene> fresh = du::MakeSmart<PlainShapeScene>();
  du::SmartPtr<PlainShapeView> view = MakeView<PlainShapeView>(scene);
};

struct Callback {
  const char* name;
  std::function<void(Stage&)> run;
};

void PrintTo(const Callback& callback, std::ostream* out)
{
  *out << callback.name;
}

/// Something that the kernel or the host reports to a panel.
class CallbackReentrance : public testing::TestWithParam<Callback> {};

TEST_P(CallbackReentrance, AHostMayDropPanelAndStateFromInsideAnyCall)
{
  Stage undisturbed;
  GetParam().run(undisturbed);
  const std::vector<std::string> expected = undisturbed.panel.host.TakeCalls();
  ASSERT_FALSE(expected.empty());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    Stage stage;
    std::size_t index = 0;
    stage.panel.host.onCall = [&](const std::string&) {
      if (index++ == i) {
        stage.panel.gui.Reset();
        stage.panel.state.Reset();
      }
    };

    GetParam().run(stage);

    const std::vector<std::string>& calls = stage.panel.host.Calls();
    ASSERT_GT(calls.size(), i);
    EXPECT_EQ(std::vector<std::string>(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(i) + 1),
              std::vector<std::string>(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(i) + 1));
    EXPECT_EQ(stage.panel.gui, nullptr);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "StartTreeUpdate()"),
              std::count(calls.begin(), calls.end(), "FinishTreeUpdate()"));
  }
}

TEST_P(CallbackReentrance, AHostMayTakeTheStateAwayFromInsideAnyCall)
{
  Stage undisturbed;
  GetParam().run(undisturbed);
  const std::size_t count = undisturbed.panel.host.TakeCalls().size();
  for (std::size_t i = 0; i < count; ++i) {
    Stage stage;
    std::size_t index = 0;
    stage.panel.host.onCall = [&](const std::string&) {
      if (index++ == i) {
        stage.panel.gui->SetTreeState(nullptr);
        stage.panel.state.Reset();
      }
    };

    GetParam().run(stage);

    const std::vector<std::string>& calls = stage.panel.host.Calls();
    EXPECT_GT(calls.size(), i);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "StartTreeUpdate()"),
              std::count(calls.begin(), calls.end(), "FinishTreeUpdate()"));
    EXPECT_EQ(stage.panel.gui->GetTreeState(), nullptr);
  }
}

INSTANTIATE_TEST_SUITE_P(
    ReportsOfKernelAndHost, CallbackReentrance,
    testing::Values(Callback{"Selection",
                             [](Stage& stage) {
                               stage.selection->ApplyInstances(SelectionManager::SelectionList,
                                                               {stage.panel.kernel["a"]},
                                                               SelectionManager::OperationSet);
                             }},
                    Callback{"DynamicallyFilteredSelection",
                             [](Stage& stage) {
                               stage.panel.state->filter.dynamicUpdate = true;
                               stage.panel.state->filter.filteringSel = true;
                               stage.selection->ApplyInstances(SelectionManager::SelectionList,
                                                               {stage.panel.kernel["a"]},
                                                               SelectionManager::OperationSet);
                             }},
                    Callback{"AssocHighlight",
                             [](Stage& stage) {
                               stage.selection->ApplyInstances(SelectionManager::AssocHlightList,
                                                               {stage.panel.kernel["a"]},
                                                               SelectionManager::OperationSet);
                             }},
                    Callback{"HighlightColours",
                             [](Stage& stage) {
                               stage.panel.UseSelController()->highlighted = {stage.panel.kernel["a"]};
                               stage.view->observer->OnHighlightColorsChange();
                             }},
                    Callback{"SceneAdded", [](Stage& stage) { stage.GetReports().OnSceneAdded(stage.fresh); }},
                    Callback{"SceneRemoved", [](Stage& stage) { stage.GetReports().OnSceneRemoved(stage.scene); }},
                    Callback{"SceneEndUpdate", [](Stage& stage) { stage.scene->observer->OnEndUpdate(); }},
                    Callback{"SceneMarks", [](Stage& stage) { stage.scene->observer->OnApplyTreeUpdate(); }},
                    Callback{"SceneMarksUnderAFilter",
                             [](Stage& stage) {
                               stage.panel.state->filter.isFiltering = true;
                               stage.scene->observer->OnApplyTreeUpdate();
                             }},
                    Callback{"UnsyncInstances", [](Stage& stage) { stage.scene->observer->OnUnsyncInstances(true); }}),
    [](const auto& callback) { return callback.param.name; });

INSTANTIATE_TEST_SUITE_P(
    CallsOfThePanelItself, CallbackReentrance,
    testing::Values(Callback{"OnSceneAdded", [](Stage& stage) { stage.panel.gui->OnSceneAdded(stage.fresh); }},
                    Callback{"OnSceneRemoved", [](Stage& stage) { stage.panel.gui->OnSceneRemoved(stage.scene); }},
                    Callback{"OnShapeSceneEndUpdate",
                             [](Stage& stage) { stage.panel.gui->OnShapeSceneEndUpdate(stage.scene, false); }},
                    Callback{"OnShapeSceneEndUpdateInFull",
                             [](Stage& stage) { stage.panel.gui->OnShapeSceneEndUpdate(stage.scene, true); }},
                    Callback{"ApplyTreeUpdate", [](Stage& stage) { stage.panel.gui->ApplyTreeUpdate(); }},
                    Callback{"OnUnsyncInstances", [](Stage& stage) { stage.panel.gui->OnUnsyncInstances(false); }},
                    Callback{"OnUpdateAssocHlightColor",
                             [](Stage& stage) {
                               stage.panel.UseSelController()->highlighted = {stage.panel.kernel["a"]};
                               stage.panel.gui->OnUpdateAssocHlightColor();
                             }},
                    Callback{"OnAssocHlightChanged",
                             [](Stage& stage) {
                               stage.panel.gui->OnAssocHlightChanged(
                                   SelectionManager::AssocHlightList, true, {},
                                   {du::MakeSmart<zelk::ObjectSelectionItem>(stage.panel.kernel["a"])});
                             }},
                    Callback{"Reset", [](Stage& stage) { stage.panel.gui->Reset(); }},
                    Callback{"Initialise", [](Stage& stage) { stage.panel.gui->Initialise(stage.panel.world); }}),
    [](const auto& callback) { return callback.param.name; });

TEST(CallbackReentranceOfOne, ABindingThatIsReplacedFromInsideASelectionUpdate_KeepsTheBracketsEven)
{
  Stage stage;
  const auto plain = du::MakeSmart<PlainScene>();
  plain->selectionManager = stage.selection;
  const auto view = MakeView<PlainView>(plain);
  stage.panel.host.onCall = [&](const std::string& line) {
    if (line.starts_with("SelectItems")) {
      stage.panel.host.onCall = nullptr;
      stage.GetReports().OnActiveViewChanged(view);
    }
  };

  stage.selection->ApplyInstances(SelectionManager::SelectionList, {stage.panel.kernel["a"]},
                                  SelectionManager::OperationSet);

  EXPECT_THAT(stage.panel.host.Calls(), Contains("CurrentViewChanged()"));
  int depth = 0;
  for (const std::string& line : stage.panel.host.Calls()) {
    depth += line == "StartTreeUpdate()" ? 1 : line == "FinishTreeUpdate()" ? -1 : 0;
    EXPECT_GE(depth, 0);
  }
  EXPECT_EQ(depth, 0);
}

TEST(CallbackReentranceOfOne, AStateMayTakeItselfAwayWhenItIsAskedForItsFilterByMarks)
{
  for (const bool isFiltering : {false, true}) {
    Stage stage;
    bool isGone = false;
    stage.panel.state->filter.isFiltering = isFiltering;
    stage.panel.state->onEnd = [&] { isGone = true; };
    stage.panel.state->onCall = [&](const std::string& call) {
      if (call == "GetFilter") {
        stage.panel.gui->SetTreeState(nullptr);
        stage.panel.state.Reset();
        EXPECT_FALSE(isGone);
      }
    };

    stage.scene->observer->OnApplyTreeUpdate();

    EXPECT_TRUE(isGone);
    EXPECT_THAT(stage.panel.host.Calls(), Contains(isFiltering ? "StoreExpandedAndFirstVisibleBeforePopulate(true)"
                                                               : "UpdateMarkedInsts(unnamed)"));
  }
}

}  // namespace
