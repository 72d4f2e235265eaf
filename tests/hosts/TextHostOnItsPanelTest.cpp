#include <gtest/gtest.h>

#include "TestInstance.h"
#include "TextOf.h"
#include "guitree/SceneInfoLog.h"
#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"

namespace {

/// A text host on a panel that it knows.
class TextHostOnItsPanel : public testing::Test {
protected:
  void SetUp() override
  {
    panel.gui->SetGuiInterface(&host);
    host.SetPanel(panel.gui.Get());
  }
  void TearDown() override
  {
    panel.state->selController.Reset();
    panel.gui->Close();
  }

  /// The scene becomes the one that is shown.
  void ShowScene()
  {
    host.GetSceneManagerObserver()->OnSceneAdded(scene);
    host.GetSceneManagerObserver()->OnActiveViewChanged(view);
  }
  [[nodiscard]] guitree::SceneInfoLog& GetLog() const { return *panel.gui->GetLog(scene); }

  [[nodiscard]] std::string Text() const { return hosttest::TextOf(host, {.ascii = true, .states = true}); }

  std::vector<du::SmartPtr<zelk::Object>> items;
  texthost::TextHost host;
  testsupport::Panel panel{"root[bolt nut]"};
  const du::SmartPtr<testsupport::PlainShapeScene> scene = du::MakeSmart<testsupport::PlainShapeScene>();
  const du::SmartPtr<testsupport::PlainShapeView> view = testsupport::MakeView<testsupport::PlainShapeView>(scene);
};

TEST_F(TextHostOnItsPanel, View_BringsTheStatesOfItsScene)
{
  panel.Initialise();
  panel.state->unloadedTypeIcon = 28;
  ShowScene();
  EXPECT_EQ(Text(),
            "  [ ]  root [shape failed]\n"
            "  [ ]  |- bolt [shape failed]\n"
            "  [ ]  `- nut [shape failed]\n");

  host.GetSceneManagerObserver()->OnActiveViewChanged(nullptr);

  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   `- nut\n");
}

TEST_F(TextHostOnItsPanel, Icons_AreWorkedOutForTheSceneThatIsShown)
{
  panel.Initialise();
  panel.state->iconQuestions.clear();

  ShowScene();

  EXPECT_EQ(panel.state->iconQuestions, std::vector<du::SmartPtr<zelk::Scene>>(3, scene));
}

TEST_F(TextHostOnItsPanel, EndOfASceneUpdate_RepaintsWhatHasChanged)
{
  panel.Initialise();
  ShowScene();
  GetLog().SetVisible(panel.kernel["bolt"].Get(), guitree::CompVisible, true);
  GetLog().SetLoaded(panel.kernel["bolt"].Get(), true);
  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [ ]  |- bolt\n"
            "  [ ]  `- nut\n");

  scene->observer->OnEndUpdate();

  EXPECT_EQ(Text(),
            "  [-]  root\n"
            "  [x]* |- bolt\n"
            "  [ ]  `- nut\n");
}

TEST_F(TextHostOnItsPanel, NewRowInAShownScene_BeginsAsTheSceneHasIt)
{
  panel.Initialise();
  ShowScene();
  GetLog().SetVisible(panel.kernel["bolt"].Get(), guitree::VisibleStateVisible);
  GetLog().SetLoaded(panel.kernel["bolt"].Get(), true);

  panel.state->PopulateTree(true);

  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [x]* |- bolt\n"
            "  [ ]  `- nut\n");
}

TEST_F(TextHostOnItsPanel, NewRow_HasItsIconChangedByALaterLoad)
{
  panel.Initialise();
  ShowScene();
  host.ClearTree();
  host.InstanceCreate(panel.kernel["bolt"], {}, {}, false);
  panel.state->loaded.insert(panel.kernel["bolt"].Get());

  GetLog().SetLoaded(panel.kernel["bolt"].Get(), true);
  scene->observer->OnEndUpdate();

  EXPECT_EQ(Text(), "  [ ]* bolt\n");
}

TEST_F(TextHostOnItsPanel, NewRowAfterItsSceneHasGone_CarriesNoVisibleState)
{
  panel.Initialise();
  ShowScene();
  host.GetSceneManagerObserver()->OnSceneRemoved(scene);

  host.InstanceCreate(panel.kernel["nut"], panel.kernel["root"], {}, false);

  EXPECT_EQ(Text(),
            "  [ ]  root\n"
            "  [ ]  |- bolt\n"
            "       `- nut\n");
}

TEST_F(TextHostOnItsPanel, Items_SelectTheRowsThatThePanelNames)
{
  panel.Initialise();
  const auto other = hosttest::Make("other");

  panel.state->OnInsertItems(items = {panel.kernel["bolt"], other, nullptr});
  EXPECT_EQ(Text(),
            "   root\n"
            ">  |- bolt\n"
            "   `- nut\n");

  panel.state->OnRemoveItems(items = {panel.kernel["bolt"], other, nullptr});
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   `- nut\n");
}

TEST_F(TextHostOnItsPanel, Refresh_ReadsTheSelectionOfThePanel)
{
  panel.Initialise();
  const auto controller = panel.UseSelController();
  controller->selected = {panel.kernel["nut"], panel.kernel["bolt"]};
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   `- nut\n");

  host.RefreshSelection();
  EXPECT_EQ(Text(),
            "   root\n"
            ">  |- bolt\n"
            ">  `- nut\n");

  controller->selected = {panel.kernel["nut"]};
  host.MadeVisible(false);
  EXPECT_TRUE(Text().find(">  |- bolt") != std::string::npos);
  host.MadeVisible(true);
  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            ">  `- nut\n");
}

TEST_F(TextHostOnItsPanel, RefreshWithoutAController_ClearsTheSelection)
{
  panel.Initialise();
  items = {panel.kernel["bolt"]};
  host.SelectItems(items);
  panel.state->selController.Reset();

  host.RefreshSelection();

  EXPECT_EQ(Text(),
            "   root\n"
            "   |- bolt\n"
            "   `- nut\n");
}

}  // namespace
