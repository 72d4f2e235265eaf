#include "testsupport/RecordingHost.h"

#include <gmock/gmock.h>

#include "TestInstance.h"

namespace {

using hosttest::Create;
using hosttest::Make;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(RecordingHost, TakeCalls_ReturnsTheCallsInOrderAndForgetsThem)
{
  testsupport::RecordingHost host;
  const auto root = Make("root");
  host.StartTreeUpdate();
  Create(host, root);
  Create(host, Make("bolt", root));

  const auto calls = host.TakeCalls();

  EXPECT_THAT(calls, ElementsAre("StartTreeUpdate()", "InstanceCreate(root, parent=null, controller=no, assoc=false)",
                                 "InstanceCreate(bolt, parent=root, controller=no, assoc=false)"));
  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST(RecordingHost, Questions_AreRecordedWithTheScriptedAnswer)
{
  testsupport::RecordingHost host;
  host.answers.isTreeVisibleInUI = false;
  host.answers.checkPropsLoaded = false;
  host.answers.viewTypeString = "Shape";

  EXPECT_FALSE(host.IsTreeVisibleInUI());
  EXPECT_TRUE(host.IsValidView({}));
  EXPECT_FALSE(host.CheckPropsLoaded());
  EXPECT_EQ(host.GetViewTypeString({}), "Shape");

  EXPECT_THAT(host.TakeCalls(), ElementsAre("IsTreeVisibleInUI() -> false", "IsValidView(null) -> true",
                                            "CheckPropsLoaded() -> false", "GetViewTypeString(null) -> \"Shape\""));
}

TEST(RecordingHost, Questions_WithoutScript_HaveTheAnswersOfAHostThatOverridesNothing)
{
  testsupport::RecordingHost host;

  EXPECT_TRUE(host.IsTreeVisibleInUI());
  EXPECT_TRUE(host.IsValidView({}));
  EXPECT_TRUE(host.CheckPropsLoaded());
  EXPECT_FALSE(host.CheckAndUpdateNodeNameAndType({}));
  EXPECT_FALSE(host.SetAssocHlight(nullptr, true));
  EXPECT_FALSE(host.IsShowingAltPartNames());
  EXPECT_EQ(host.GetViewTypeString({}), "Unknown");
  EXPECT_EQ(host.GetNonFilteredInsts1(), nullptr);
  EXPECT_EQ(host.GetNonFilteredInsts2(), nullptr);
  EXPECT_FALSE(host.CreateFilterProgressCtrl({}));
}

TEST(RecordingHost, SetShowQuestions_WithFalse_LeavesOutWhatOnlyAsks)
{
  testsupport::RecordingHost host;
  host.SetShowQuestions(false);

  static_cast<void>(host.IsTreeVisibleInUI());
  host.CheckAndUpdateNodeNameAndType(Make("bolt"));
  host.ClearTree();

  EXPECT_THAT(host.Calls(), ElementsAre("CheckAndUpdateNodeNameAndType(bolt) -> false", "ClearTree()"));
}

TEST(RecordingHost, OnCall_RunsInsideTheCallAndMayCallAgain)
{
  testsupport::RecordingHost host;
  host.onCall = [&host](const std::string& line) {
    if (line == "ClearTree()") {
      host.answers.isTreeVisibleInUI = false;
      host.UpdateStatusBar();
    }
  };

  host.ClearTree();
  static_cast<void>(host.IsTreeVisibleInUI());

  EXPECT_THAT(host.Calls(), ElementsAre("ClearTree()", "UpdateStatusBar()", "IsTreeVisibleInUI() -> false"));
}

TEST(RecordingHost, OnCall_MayReplaceItself)
{
  testsupport::RecordingHost host;
  int calls = 0;
  host.onCall = [&](const std::string&) {
    ++calls;
    host.onCall = {};
  };

  host.ClearTree();
  host.ClearTree();

  EXPECT_EQ(calls, 1);
}

}  // namespace
