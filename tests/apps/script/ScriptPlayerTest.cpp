#include "script/ScriptPlayer.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "ScriptPlayerStage.h"
#include "zelk/TreeObserver.h"

namespace {

using InstancePtr = du::SmartPtr<memkernel::Instance>;
using script::ScriptError;
using script::ScriptPlayer;
using script::Stage;
using Names = std::set<std::string>;

/// Counts runs and what comes in them.
class CountingObserver : public zelk::TreeObserver {
public:
  void OnBeginUpdate() override { ++runs; }
  void OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& /*instance*/,
                        const du::SmartPtr<zelk::BaseInstance>& /*parent*/, const du::Symbol& /*name*/) override
  {
    ++created;
  }

  int runs = 0;
  int created = 0;
};

class ScriptPlayerTest : public ScriptPlayerStage {
protected:
  [[nodiscard]] bool IsVisible(const std::string& path, std::size_t scene = 1) const
  {
    return stage.GetScene(scene)->FindShapeInstance(Find(path).Get())->IsVisible();
  }

  [[nodiscard]] static Names NamesIn(zelk::SelectionManager& manager, unsigned int list)
  {
    std::set<du::SmartPtr<zelk::Instance>> instances;
    manager.GetSelectedInstances(list, instances, zelk::ExpandRuleInstances);
    Names names;
    for (const auto& instance : instances) {
      names.insert(std::string(instance->GetObjectName()));
    }
    return names;
  }

  [[nodiscard]] du::SmartPtr<zelk::SelectionManager> SelectionOf(std::size_t scene) const
  {
    du::SmartPtr<zelk::SelectionManager> manager;
    stage.GetScene(scene)->GetSelectionManager(manager);
    return manager;
  }

  static constexpr unsigned int s_selection = zelk::SelectionManager::SelectionList;
  static constexpr unsigned int s_highlight = zelk::SelectionManager::AssocHlightList;
};

TEST_F(ScriptPlayerTest, Hide_TakesEverythingBelow)
{
  Play("hide set");

  EXPECT_FALSE(IsVisible("bolt#1"));
  EXPECT_FALSE(IsVisible("bolt#2"));
  EXPECT_TRUE(IsVisible("frame"));
}

TEST_F(ScriptPlayerTest, Show_OfOnePart_LeavesTheOthersHidden)
{
  Play("hide pump");
  Play("show bolt#2");

  EXPECT_FALSE(IsVisible("bolt#1"));
  EXPECT_TRUE(IsVisible("bolt#2"));
  EXPECT_FALSE(IsVisible("frame"));
}

TEST_F(ScriptPlayerTest, HideInAnotherScene_LeavesThatOfTheView)
{
  Play("scene add");
  Play("in 2 hide frame");

  EXPECT_TRUE(IsVisible("frame", 1));
  EXPECT_FALSE(IsVisible("frame", 2));
}

TEST_F(ScriptPlayerTest, HideWithoutAView_NeedsAScene)
{
  Play("view none");

  EXPECT_EQ(FaultOf("hide frame"), "no view is current: name a scene by 'in N'");
  EXPECT_EQ(FaultOf("in 1 hide frame"), "none");
}

TEST_F(ScriptPlayerTest, Thumbnail_ReplacesShapesAndKeepsWhatIsHidden)
{
  Play("hide bolt#1");
  Play("thumbnail on set");

  for (const char* bolt : {"bolt#1", "bolt#2"}) {
    EXPECT_TRUE(stage.GetScene(1)->FindShapeInstance(Find(bolt).Get())->IsThumbnail()) << bolt;
  }
  EXPECT_FALSE(IsVisible("bolt#1"));
  EXPECT_TRUE(IsVisible("bolt#2"));
  EXPECT_FALSE(stage.GetScene(1)->FindShapeInstance(Find("frame").Get())->IsThumbnail());

  Play("thumbnail off bolt#2");
  EXPECT_FALSE(stage.GetScene(1)->FindShapeInstance(Find("bolt#2").Get())->IsThumbnail());
}

TEST_F(ScriptPlayerTest, Select_AddsAndDeselectTakesBack)
{
  Play("select frame set");
  EXPECT_EQ(NamesIn(*SelectionOf(1), s_selection), (Names{"frame", "set"}));

  Play("deselect set");
  EXPECT_EQ(NamesIn(*SelectionOf(1), s_selection), (Names{"frame"}));

  Play("deselect");
  EXPECT_EQ(NamesIn(*SelectionOf(1), s_selection), Names{});
}

TEST_F(ScriptPlayerTest, Highlight_IsAListOfItsOwn)
{
  Play("highlight frame");

  EXPECT_EQ(NamesIn(*SelectionOf(1), s_highlight), (Names{"frame"}));
  EXPECT_EQ(NamesIn(*SelectionOf(1), s_selection), Names{});

  Play("unhighlight");
  EXPECT_EQ(NamesIn(*SelectionOf(1), s_highlight), Names{});
}

TEST_F(ScriptPlayerTest, SelectWithoutAView_SelectsInTheWorld)
{
  Play("view none");
  Play("select frame");

  EXPECT_EQ(NamesIn(*world->selectionManager, s_selection), (Names{"frame"}));
  EXPECT_EQ(NamesIn(*SelectionOf(1), s_selection), Names{});
}

TEST_F(ScriptPlayerTest, Rename_GivesTheInstanceANameOfItsOwn)
{
  Play("rename bolt#1 \"long bolt\"");

  EXPECT_EQ(Find("set/\"long bolt\"")->GetObjectName(), "long bolt");
  EXPECT_EQ(Find("bolt")->GetObjectName(), "bolt");
}

TEST_F(ScriptPlayerTest, AddedPart_IsVisibleInAllScenes)
{
  Play("scene add");
  Play("add part set/nut");

  EXPECT_TRUE(IsVisible("nut", 1));
  EXPECT_TRUE(IsVisible("nut", 2));
}

TEST_F(ScriptPlayerTest, AddedAssembly_HasNoShape)
{
  Play("add assembly set/nuts");

  EXPECT_FALSE(stage.GetScene(1)->FindShapeInstance(Find("nuts").Get()));
  EXPECT_FALSE(Find("nuts")->HasShapeSource());
}

TEST_F(ScriptPlayerTest, PartsOfOneName_AreInstancesOfOneProduct)
{
  EXPECT_EQ(Find("bolt#1")->GetProduct(), Find("bolt#2")->GetProduct());
}

TEST_F(ScriptPlayerTest, RepeatedAdd_StaysBelowTheParentThatItFound)
{
  Play("repeat 3 add assembly frame/frame");

  EXPECT_EQ(script::ListSubtree(Find("/pump/frame")).size(), 4U);
  EXPECT_FALSE(Find("/pump/frame/frame#3")->HasChildren());
}

TEST_F(ScriptPlayerTest, Add_NeedsAParentUnlessTheTreeIsEmpty)
{
  EXPECT_EQ(FaultOf("add part nut"), "name the parent of a new instance before it: PARENT/nut");
  EXPECT_EQ(FaultOf("add part /nut"), "there is a root already");
  EXPECT_EQ(FaultOf("add part nuts/nut"), "no instance is named nuts");
  EXPECT_EQ(FaultOf("add part set/nut#2"), "a new instance has no '#': set/nut#2");

  Play("remove pump");
  Play("add part /nut");
  EXPECT_EQ(world->GetMemTree().GetRootInstance()->GetObjectName(), "nut");
}

TEST_F(ScriptPlayerTest, Remove_TakesAllThatAreNamedAlsoOneBelowTheOther)
{
  Play("remove set bolt#1");

  EXPECT_EQ(script::ListSubtree(Find("pump")), (std::vector<InstancePtr>{Find("pump"), Find("frame"), Find("gear")}));
  EXPECT_EQ(stage.GetScene(1)->GetShapeInstanceCount(), 1U);
}

TEST_F(ScriptPlayerTest, SeveralPathsOneOfThemUnknown_ChangeNothing)
{
  EXPECT_EQ(FaultOf("remove frame nut"), "no instance is named nut");
  EXPECT_EQ(FaultOf("hide frame nut"), "no instance is named nut");

  EXPECT_TRUE(IsVisible("frame"));
}

TEST_F(ScriptPlayerTest, Proxy_GoesThroughItsStates)
{
  Play("proxy expand gear");
  EXPECT_TRUE(Find("gear")->IsProxyExpanded());

  Play("add part gear/tooth");
  Play("proxy collapse gear");
  EXPECT_FALSE(Find("gear")->IsProxyExpanded());
  EXPECT_FALSE(Find("gear")->HasChildren());

  Play("proxy fail gear");
  EXPECT_TRUE(Find("gear")->HasProxyExpandFailed());

  Play("proxy settle gear");
  EXPECT_FALSE(Find("gear")->IsProxy());
}

TEST_F(ScriptPlayerTest, OrdinaryInstance_IsNoProxy)
{
  for (const char* command : {"expand", "collapse", "fail", "settle"}) {
    EXPECT_EQ(FaultOf("proxy " + std::string(command) + " gear frame"), "frame is no proxy");
  }
  EXPECT_FALSE(Find("gear")->IsProxyExpanded());
  EXPECT_TRUE(Find("gear")->IsProxy());
}

TEST_F(ScriptPlayerTest, Batch_IsOneRunOfTheTree)
{
  const auto observer = du::MakeSmart<CountingObserver>();
  world->GetMemTree().RegisterObserver(*observer, false);

  Play("batch");
  EXPECT_TRUE(player.IsInBatch());
  Play("repeat 201 add part set/nut");
  Play("rename frame beam");
  Play("end");
  EXPECT_FALSE(player.IsInBatch());
  EXPECT_EQ(observer->runs, 1);
  EXPECT_EQ(observer->created, 201);

  Play("repeat 3 add part set/nut");
  EXPECT_EQ(observer->runs, 4);
  world->GetMemTree().UnregisterObserver(*observer);
}

TEST_F(ScriptPlayerTest, Batches_DoNotNest)
{
  EXPECT_EQ(FaultOf("end"), "no batch is under way");
  Play("batch");
  EXPECT_EQ(FaultOf("batch"), "a batch is under way already: 'end' comes first");
  EXPECT_TRUE(player.IsInBatch());
}

TEST_F(ScriptPlayerTest, SceneRemovedInABatch_LeavesTheBatchInOrder)
{
  Play("batch");
  Play("hide frame");
  Play("scene remove 1");
  Play("end");

  EXPECT_TRUE(stage.GetScenes().empty());
}

TEST_F(ScriptPlayerTest, RepeatedCommandThatFails_HasBeenDoneAsOftenAsItCould)
{
  EXPECT_EQ(FaultOf("repeat 3 remove frame"), "no instance is named frame");
  EXPECT_EQ(FaultOf("hide frame"), "no instance is named frame");
}

TEST_F(ScriptPlayerTest, Print_LeavesEverythingAsItIs)
{
  Play("print");

  EXPECT_EQ(world->GetMemTree().GetRootInstance(), Find("pump"));
}

}  // namespace
