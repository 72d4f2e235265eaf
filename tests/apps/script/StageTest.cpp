#include "script/Stage.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "script/ScriptError.h"

namespace {

using script::ScriptError;
using script::Stage;

/// Writes down what it is told.
class Follower : public Stage::Follower {
public:
  explicit Follower(const Stage& stage) : m_stage(stage) {}

  void OnActiveViewChanged(const du::SmartPtr<zelk::View>& view) override { _Note("active ", view.Get()); }
  void OnSceneRemoved(const du::SmartPtr<zelk::Scene>& scene) override { _Note("removed ", scene.Get()); }
  void OnSceneAdded(const du::SmartPtr<zelk::Scene>& scene) override { _Note("added ", scene.Get()); }
  void OnViewRemoved(const du::SmartPtr<zelk::View>& view) override { _Note("removed ", view.Get()); }

  std::vector<std::string> told;

private:
  void _Note(const char* event, const zelk::Object* object)
  {
    told.push_back(event + (object ? m_stage.Describe(*object) : "none"));
  }

  const Stage& m_stage;
};

class StageTest : public testing::Test {
protected:
  void SetUp() override
  {
    auto& tree = world->GetMemTree();
    const auto root = tree.CreateRoot(tree.CreateProduct({.name = "pump"}));
    part = tree.AddChild(root, tree.CreateProduct({.name = "part", .flags = memkernel::InstanceShapeSource}));
    stage.AddSceneOfAll();
    stage.AddSceneOfAll();
    stage.SetFollower(follower);
    follower->told.clear();
  }

  template <typename Call>
  static std::string FaultOf(Call call)
  {
    try {
      call();
    } catch (const ScriptError& error) {
      return error.what();
    }
    return "none";
  }

  using Lines = std::vector<std::string>;

  const du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>(1U);
  du::SmartPtr<memkernel::Instance> part;
  Stage stage{world};
  const du::SmartPtr<Follower> follower = du::MakeSmart<Follower>(stage);
};

TEST_F(StageTest, NewFollower_HearsOfTheScenesAndThenOfTheCurrentView)
{
  stage.ActivateView(2);
  const auto late = du::MakeSmart<Follower>(stage);

  stage.SetFollower(late);

  EXPECT_EQ(late->told, (Lines{"added scene 1", "added scene 2", "active view 2"}));
}

TEST_F(StageTest, NewFollower_HearsNothingOfWhatHasGone)
{
  stage.ActivateView(2);
  stage.RemoveScene(1);
  stage.RemoveView(2);
  const auto late = du::MakeSmart<Follower>(stage);

  stage.SetFollower(late);

  EXPECT_EQ(late->told, (Lines{"added scene 2"}));
}

TEST_F(StageTest, Follower_HearsEachChangeOnce)
{
  stage.AddSceneOfAll();
  stage.ActivateView(3);
  stage.ActivateNoView();
  stage.RemoveScene(3);
  stage.RemoveView(3);

  EXPECT_EQ(follower->told,
            (Lines{"added scene 3", "active view 3", "active none", "removed scene 3", "removed view 3"}));
}

TEST_F(StageTest, WithoutAFollower_ChangesAreMadeAllTheSame)
{
  stage.SetFollower({});

  stage.ActivateView(1);

  EXPECT_EQ(stage.GetCurrentScene(), stage.GetScene(1));
}

TEST_F(StageTest, NumbersOfWhatHasGone_AreNotGivenAnew)
{
  stage.RemoveScene(2);
  stage.RemoveView(2);

  stage.AddSceneOfAll();

  EXPECT_EQ(stage.Describe(*stage.GetScene(3)), "scene 3");
  EXPECT_EQ(stage.GetScenes(), (std::vector<Stage::ScenePtr>{stage.GetScene(1), stage.GetScene(3)}));
}

TEST_F(StageTest, SceneOfAll_ShowsWhatHasAShape)
{
  EXPECT_EQ(stage.GetScene(1)->GetShapeInstanceCount(), 1U);
  EXPECT_TRUE(stage.GetScene(1)->FindShapeInstance(part.Get())->IsVisible());
}

TEST_F(StageTest, SceneOfAll_HasASelectionOfItsOwn)
{
  du::SmartPtr<zelk::SelectionManager> first;
  du::SmartPtr<zelk::SelectionManager> second;
  stage.GetScene(1)->GetSelectionManager(first);
  stage.GetScene(2)->GetSelectionManager(second);

  EXPECT_NE(first, second);
  EXPECT_NE(first, world->selectionManager);
}

TEST_F(StageTest, RemovedView_IsNoLongerCurrent)
{
  stage.ActivateView(1);
  stage.RemoveView(2);
  EXPECT_TRUE(stage.HasCurrentView());

  stage.RemoveView(1);

  EXPECT_FALSE(stage.HasCurrentView());
  EXPECT_EQ(FaultOf([this] { static_cast<void>(stage.GetCurrentScene()); }),
            "no view is current: name a scene by 'in N'");
}

TEST_F(StageTest, ViewOfARemovedScene_CanStillBecomeCurrent)
{
  stage.RemoveScene(1);

  stage.ActivateView(1);

  EXPECT_EQ(follower->told, (Lines{"removed scene 1", "active view 1"}));
  EXPECT_EQ(FaultOf([this] { static_cast<void>(stage.GetCurrentScene()); }), "scene 1 has been removed");
}

TEST_F(StageTest, WhatIsNotThere_IsNamed)
{
  stage.RemoveView(1);

  EXPECT_EQ(FaultOf([this] { stage.ActivateView(3); }), "there is no view 3");
  EXPECT_EQ(FaultOf([this] { stage.ActivateView(1); }), "view 1 has been removed");
  EXPECT_EQ(FaultOf([this] { stage.RemoveView(1); }), "view 1 has been removed");
  EXPECT_EQ(FaultOf([this] { stage.RemoveScene(3); }), "there is no scene 3");
  EXPECT_EQ(follower->told, (Lines{"removed view 1"}));
}

TEST_F(StageTest, OtherObjects_HaveNoName)
{
  EXPECT_EQ(stage.Describe(*part), "");
}

}  // namespace
