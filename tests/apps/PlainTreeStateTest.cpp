#include "PlainTreeState.h"

#include <gtest/gtest.h>

#include <memory>

#include "guitree/GuiTree.h"
#include "guitree/SceneInfoLog.h"
#include "memkernel/World.h"

namespace {

class PlainTreeStateTest : public testing::Test {
protected:
  void SetUp() override { world->InstallForProcess(); }
  void TearDown() override { world->Shutdown(); }

  int IconOf(unsigned int flags)
  {
    auto& tree = world->GetMemTree();
    const auto product = tree.CreateProduct({.name = "part", .flags = flags});
    const auto root = tree.GetRootInstance();
    return state->GetUnloadedTypeIcon((root ? tree.AddChild(root, product) : tree.CreateRoot(product)).Get(), {});
  }

  const du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>();
  const du::SmartPtr<guitree::GuiTree> gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  const du::SmartPtr<PlainTreeState> state = du::MakeSmart<PlainTreeState>(*gui);
};

TEST_F(PlainTreeStateTest, Tree_IsThatOfTheRunningWorld)
{
  EXPECT_EQ(state->Initialise_GetZelkTree({}), world->tree);

  world->RemoveFromProcess();
  EXPECT_FALSE(state->Initialise_GetZelkTree({}));
}

TEST_F(PlainTreeStateTest, Filter_LetsEverythingThrough)
{
  EXPECT_FALSE(state->GetFilter({}).IsFiltering(false));
  EXPECT_FALSE(state->HaveSelController());
  EXPECT_FALSE(state->GetSelController(true));
}

TEST_F(PlainTreeStateTest, Icon_TellsWhetherThereIsAnythingToLoad)
{
  EXPECT_EQ(IconOf(0), 2);
  EXPECT_EQ(IconOf(memkernel::InstancePlainIcon), 0);
  EXPECT_EQ(IconOf(memkernel::InstanceShapeSource), 0);
  EXPECT_EQ(IconOf(memkernel::InstanceThumbnailSource), 0);
  EXPECT_EQ(state->GetUnloadedTypeIcon(nullptr, {}), 0);
}

TEST_F(PlainTreeStateTest, Icon_TellsProxiesApart)
{
  EXPECT_EQ(IconOf(memkernel::InstanceProxy), 6);
  EXPECT_EQ(IconOf(memkernel::InstanceProxy | memkernel::InstanceProxyExpanded), 8);
  EXPECT_EQ(IconOf(memkernel::InstanceProxy | memkernel::InstanceProxyExpanded | memkernel::InstanceShapeSource), 10);
  EXPECT_EQ(IconOf(memkernel::InstanceProxy | memkernel::InstanceProxyExpandFailed), 16);
  EXPECT_EQ(IconOf(memkernel::InstanceProxy | memkernel::InstanceRootContainerRoot), 2);
}

TEST_F(PlainTreeStateTest, Thumbnail_IsWhatTheInstanceSays)
{
  auto& tree = world->GetMemTree();
  const auto root = tree.CreateRoot(tree.CreateProduct({.name = "a", .flags = memkernel::InstanceThumbnailSource}));
  const auto part = tree.AddChild(root, tree.CreateProduct({.name = "b"}));

  EXPECT_TRUE(state->HasInstGotThumbnail(root));
  EXPECT_FALSE(state->HasInstGotThumbnail(part));
  EXPECT_FALSE(state->HasInstGotThumbnail({}));
}

TEST_F(PlainTreeStateTest, SceneInfoLog_IsNewEachTime)
{
  const std::unique_ptr<guitree::SceneInfoLog> first(state->CreateSceneInfoLog());
  const std::unique_ptr<guitree::SceneInfoLog> second(state->CreateSceneInfoLog());

  EXPECT_NE(first, nullptr);
  EXPECT_NE(first, second);
}

}  // namespace
