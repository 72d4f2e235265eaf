#include <gtest/gtest.h>

#include "PlainTreeState.h"
#include "guitree/GuiTree.h"
#include "memkernel/World.h"
#include "texthost/TextHost.h"

namespace {

using Info = structure_utils::TreeFilterAdditionalInfo;
using Lookup = Info::TreeFilterStatusLookup;

/// What the state tells its filters beyond the instance.
class PlainTreeStateFilter : public testing::Test {
protected:
  void SetUp() override
  {
    world->InstallForProcess();
    gui->SetGuiInterface(&host);
    gui->SetTreeState(state);
    gui->Initialise(world);
    root = world->GetMemTree().CreateRoot(world->GetMemTree().CreateProduct({.name = "assembly"}));
  }
  void TearDown() override
  {
    gui->Close();
    world->Shutdown();
  }

  [[nodiscard]] du::ConstSmartPtr<zelk::Instance> Add(unsigned int flags, zelk::ShapeDataStatus status) const
  {
    memkernel::Tree& tree = world->GetMemTree();
    const auto shape = du::MakeSmart<memkernel::Shape>(memkernel::Shape::Work(), status);
    const auto part = tree.AddChild(root, tree.CreateProduct({.name = "part", .flags = flags, .shape = shape}));
    scene->CreateShapeInstance(part);
    return du::ConstSmartPtr<zelk::Instance>(part.Get());
  }

  void ShowScene()
  {
    host.GetSceneManagerObserver()->OnSceneAdded(scene);
    host.GetSceneManagerObserver()->OnActiveViewChanged(du::MakeSmart<memkernel::ShapeView>(scene));
  }

  [[nodiscard]] du::SmartPtr<Info> GetInfo() const { return du::DynamicCast<Info>(state->GetAdditionalFilterInfo()); }

  const du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>(1U);
  const du::SmartPtr<memkernel::ShapeScene> scene = world->CreateShapeScene();
  texthost::TextHost host;
  du::SmartPtr<guitree::GuiTree> gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  du::SmartPtr<PlainTreeState> state = du::MakeSmart<PlainTreeState>(*gui);
  du::SmartPtr<memkernel::Instance> root;
};

TEST_F(PlainTreeStateFilter, Info_HasTheSceneThatIsShown)
{
  EXPECT_EQ(GetInfo()->GetScene(), nullptr);

  ShowScene();

  EXPECT_EQ(GetInfo()->GetScene(), scene);
  EXPECT_EQ(GetInfo(), GetInfo());
}

TEST_F(PlainTreeStateFilter, Info_KnowsWhatHasFailed)
{
  ShowScene();
  const auto info = GetInfo();

  EXPECT_EQ(info->GetItemStatus(Add(0, zelk::ShapeDataLoaded)), Lookup::TFStatusNone);
  EXPECT_EQ(info->GetItemStatus(Add(0, zelk::ShapeDataFailed)), Lookup::TFStatusShapeFailed);
  EXPECT_EQ(info->GetItemStatus(Add(memkernel::InstanceBodyType, zelk::ShapeDataFailed)), Lookup::TFStatusBodyFailed);
  EXPECT_EQ(
      info->GetItemStatus(Add(memkernel::InstanceProxy | memkernel::InstanceProxyExpanded, zelk::ShapeDataFailed)),
      Lookup::TFStatusProxyShapeFailed);
  EXPECT_EQ(
      info->GetItemStatus(Add(memkernel::InstanceProxy | memkernel::InstanceProxyExpandFailed, zelk::ShapeDataLoaded)),
      Lookup::TFStatusProxyExpandFailed);
}

TEST_F(PlainTreeStateFilter, InfoOfAnotherScene_IsAnotherOneAndTheFormerKnowsNothingMore)
{
  ShowScene();
  const auto failed = Add(0, zelk::ShapeDataFailed);
  const auto before = GetInfo();
  EXPECT_EQ(before->GetItemStatus(failed), Lookup::TFStatusShapeFailed);

  host.GetSceneManagerObserver()->OnActiveViewChanged({});

  EXPECT_NE(GetInfo(), before);
  EXPECT_EQ(before->GetItemStatus(failed), Lookup::TFStatusNone);
}

TEST_F(PlainTreeStateFilter, InfoThatOutlivesItsState_KnowsNothingMore)
{
  ShowScene();
  const auto failed = Add(0, zelk::ShapeDataFailed);
  const auto info = GetInfo();

  gui->SetTreeState({});
  state.Reset();

  EXPECT_EQ(info->GetItemStatus(failed), Lookup::TFStatusNone);
}

TEST_F(PlainTreeStateFilter, WithoutItsPanel_TheInfoHasNoScene)
{
  ShowScene();
  gui->Close();

  gui.Reset();

  EXPECT_EQ(GetInfo()->GetScene(), nullptr);
  gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
}

}  // namespace
