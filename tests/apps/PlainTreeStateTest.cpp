#include "PlainTreeState.h"

#include <gtest/gtest.h>

#include "guitree/GuiTree.h"
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

TEST_F(PlainTreeStateTest, Filter_LetsEverythingThrough)
{
  EXPECT_FALSE(state->GetFilter({}).IsFiltering(false));
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

TEST_F(PlainTreeStateTest, Icon_TellsBodiesApart)
{
  EXPECT_EQ(IconOf(memkernel::InstanceBodyType | memkernel::InstanceShapeSource), 44);
  EXPECT_EQ(IconOf(memkernel::InstanceBodyType), 2);
}

TEST_F(PlainTreeStateTest, Icon_TellsInWhichSceneAShapeHasFailed)
{
  auto& tree = world->GetMemTree();
  const auto failed = du::MakeSmart<memkernel::Shape>(memkernel::Shape::Work(), zelk::ShapeDataFailed);
  const auto root = tree.CreateRoot(tree.CreateProduct({.name = "assembly"}));
  const auto scene = world->CreateShapeScene();
  const auto iconIn = [&](unsigned int flags, const du::SmartPtr<zelk::Scene>& shown) {
    const auto part = tree.AddChild(root, tree.CreateProduct({.name = "part", .flags = flags, .shape = failed}));
    scene->CreateShapeInstance(part);
    return state->GetUnloadedTypeIcon(part.Get(), shown);
  };

  EXPECT_EQ(iconIn(0, scene), 28);
  EXPECT_EQ(iconIn(memkernel::InstanceBodyType, scene), 50);
  EXPECT_EQ(iconIn(memkernel::InstanceProxy | memkernel::InstanceProxyExpanded, scene), 14);
  EXPECT_EQ(iconIn(0, {}), 0);
  EXPECT_EQ(iconIn(0, world->CreateShapeScene()), 0);
}

}  // namespace
