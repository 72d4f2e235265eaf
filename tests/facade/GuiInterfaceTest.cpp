#include "guitree/GuiInterface.h"

#include <gtest/gtest.h>

#include "testsupport/Panel.h"
#include "testsupport/PlainScenes.h"

namespace {

using guitree::GuiInterface;

/// What a host must implement, and no more.
class SmallestHost : public GuiInterface {
public:
  void SetSceneManagerObserver(const du::SmartPtr<SceneManagerObserver>& observer) override { given = observer; }
  void UpdateVisAndTypeIconChanges(const du::HashMap<const zelk::BaseInstance*, guitree::VisibleState>* /*visibleMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* /*visibleChangeMap*/,
                                   guitree::TypeIconMap* /*typeIconMap*/,
                                   const du::HashMap<const zelk::BaseInstance*, int>* /*typeIconChangeMap*/) override
  {
  }

  du::SmartPtr<SceneManagerObserver> given;
};

TEST(GuiInterface, DefaultsKeepTheLibraryOnItsMainPath)
{
  SmallestHost host;

  EXPECT_TRUE(host.IsValidView(nullptr));
  EXPECT_TRUE(host.IsTreeVisibleInUI());
  EXPECT_TRUE(host.CheckPropsLoaded());
  EXPECT_FALSE(host.IsShowingAltPartNames());
  EXPECT_FALSE(host.CheckAndUpdateNodeNameAndType(nullptr));
  EXPECT_FALSE(host.SetAssocHlight(nullptr, true));
  EXPECT_FALSE(host.HasTypeIconChangedOnShapeInstanceRemove(nullptr, nullptr));
  EXPECT_EQ(host.GetNonFilteredInsts1(), nullptr);
  EXPECT_EQ(host.GetNonFilteredInsts2(), nullptr);
  EXPECT_EQ(host.CreateFilterProgressCtrl(nullptr), nullptr);
  EXPECT_EQ(host.GetCS3DView(), nullptr);
  EXPECT_EQ(host.GetCSSchView(), nullptr);
}

TEST(GuiInterface, GetViewTypeString_IsUnknownForEveryViewAndForNone)
{
  const SmallestHost host;

  EXPECT_EQ(host.GetViewTypeString(nullptr), "Unknown");
  EXPECT_EQ(host.GetViewTypeString(du::MakeSmart<testsupport::PlainView>()), "Unknown");
  EXPECT_EQ(host.GetViewTypeString(du::MakeSmart<testsupport::PlainShapeView>()), "Unknown");
  EXPECT_EQ(host.GetViewTypeString(du::MakeSmart<testsupport::PlainClashReportView>()), "Unknown");
}

TEST(GuiInterface, OperationsWithoutAResultMayBeLeftAlone)
{
  SmallestHost host;
  std::vector<du::SmartPtr<zelk::Object>> items;

  host.StartTreeUpdate();
  host.FinishTreeUpdate();
  host.ClearTree();
  host.InitialiseBeforePopulate();
  host.RefreshSelection();
  host.PostOnActiveViewChanged(nullptr, false);
  host.UpdateStatusBar();
  host.UpdateFilterUI();
  host.UpdateTreeTable();
  host.ViewChangeUpdaeFilterUI();
  host.UpdateNodeNames();
  host.CheckAltPartNamePrefs();
  host.LoadSortingPrefs();
  host.UpdateTooltips();
  host.UpdateVisAndTypeIcons(nullptr, nullptr);
  host.UpdateQuickSearchResults(true, nullptr, false);
  host.UnsyncInstances(true);
  host.StoreExpandedAndFirstVisibleBeforePopulate(true);
  host.RestoreExpandedAfterPopulate();
  host.RestoreFirstVisible();
  host.PostProcessingComplete();
  host.MadeVisible(true);
  host.SelectItems(items);
  host.DeselectItems(items);
  host.ClearSelection();
  host.InstanceCreate(nullptr, nullptr, false);
  host.InstanceCreate(nullptr, nullptr, nullptr, false);
  host.InstanceRemove(nullptr, nullptr, false);
  host.UpdateDisplayNames();
  host.Reset();
  host.FilterNodeCreate(nullptr);
  host.CurrentViewChanged();
  host.ContentHasChanged();
  host.UpdateMarkedInsts(nullptr);
  host.SetTreeCalculating(true);
  host.InstanceMoved(nullptr, nullptr);
  host.CheckListTypeCorrect();

  EXPECT_TRUE(host.IsTreeVisibleInUI());
}

TEST(GuiInterface, ACopyStartsOutAnew)
{
  SmallestHost host;
  const SmallestHost copy(host);
  host = copy;

  EXPECT_TRUE(copy.IsTreeVisibleInUI());
}

TEST(GuiInterface, AHostOfTwoOperationsGetsAWorkingTreeModel)
{
  const testsupport::NamedTree kernel("root[a[b]]");
  SmallestHost host;
  const auto world = du::MakeSmart<testsupport::PlainWorld>();
  const auto gui = du::MakeSmart<guitree::GuiTree>(nullptr);
  const auto state = du::MakeSmart<testsupport::ScriptedTreeState>(*gui);
  state->baseTree = kernel.Get();
  gui->SetGuiInterface(&host);
  gui->SetTreeState(state);

  gui->Initialise(world);

  EXPECT_NE(host.given, nullptr);
  EXPECT_EQ(state->GetNotFilteredSet().size(), 3u);
  EXPECT_FALSE(state->GetTreeNeedsRedraw());
  gui->Close();
}

class CountedObserver : public GuiInterface::SceneManagerObserver {
public:
  explicit CountedObserver(bool& isGone) : m_isGone(isGone) {}
  ~CountedObserver() override { m_isGone = true; }

  [[nodiscard]] bool ZeroReferenceCountHook() const override { return agreesToDie; }

  bool agreesToDie = true;

private:
  bool& m_isGone;
};

TEST(GuiInterface, TheLastReferenceToASceneManagerObserverDestroysIt)
{
  bool isGone = false;
  const auto* observer = new CountedObserver(isGone);  // held by the references below

  EXPECT_EQ(GuiInterface::AddSmartPtrReference(observer, nullptr), 1);
  EXPECT_EQ(GuiInterface::AddSmartPtrReference(observer, nullptr), 2);
  EXPECT_FALSE(GuiInterface::AttemptDeleteSmartPtrReference(observer, nullptr));
  EXPECT_FALSE(isGone);
  EXPECT_TRUE(GuiInterface::AttemptDeleteSmartPtrReference(observer, nullptr));
  EXPECT_TRUE(isGone);
}

TEST(GuiInterface, ASceneManagerObserverThatRefusesToDieLivesOnWithACountOfOne)
{
  bool isGone = false;
  auto* observer = new CountedObserver(isGone);  // held by the references below
  observer->agreesToDie = false;
  GuiInterface::AddSmartPtrReference(observer, nullptr);

  EXPECT_FALSE(GuiInterface::AttemptDeleteSmartPtrReference(observer, nullptr));

  EXPECT_FALSE(isGone);
  observer->agreesToDie = true;
  EXPECT_TRUE(GuiInterface::AttemptDeleteSmartPtrReference(observer, nullptr));
  EXPECT_TRUE(isGone);
}

TEST(GuiInterface, TheReportsOfASceneManagerObserverDoNothingByThemselves)
{
  GuiInterface::SceneManagerObserver observer;

  observer.OnActiveViewChanged(nullptr);
  observer.OnSceneRemoved(nullptr);
  observer.OnSceneAdded(nullptr);
  observer.OnViewRemoved(nullptr);

  EXPECT_TRUE(observer.ZeroReferenceCountHook());
}

}  // namespace
