#include "memkernel/ShapeScene.h"

#include <memory>
#include <thread>
#include <utility>

#include "TreeFixture.h"
#include "memkernel/SelectionManager.h"

namespace memkerneltest {
namespace {

using memkernel::ShapeScene;
using memkernel::ShapeSceneBatch;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const du::Flags s_allEvents(0xb);

class ShapeSceneTest : public TreeFixture {
protected:
  ShapeSceneTest() { scene->RegisterObserver(*watcher, s_allEvents, true); }
  ~ShapeSceneTest() override { scene->UnregisterObserver(*watcher); }

  const du::SmartPtr<ShapeScene> scene = du::MakeSmart<ShapeScene>(nullptr, tree);
  const du::SmartPtr<SceneRecorder> watcher = du::MakeSmart<SceneRecorder>();
  const InstancePtr a = Add(root, "A");
  const InstancePtr b = Add(root, "B");
};

TEST_F(ShapeSceneTest, CreateShapeInstance_IsToldAndFound)
{
  const auto created = scene->CreateShapeInstance(a);

  du::SmartPtr<zelk::ShapeInstance> found;
  EXPECT_TRUE(scene->GetShapeInstance(a, found));
  EXPECT_EQ(found, created);
  EXPECT_TRUE(found->IsVisible());
  EXPECT_THAT(watcher->Take(), ElementsAre("begin", "create A", "end"));
}

TEST_F(ShapeSceneTest, GetShapeInstance_WithoutOne_GivesNullAndFalse)
{
  du::SmartPtr<zelk::ShapeInstance> found = scene->CreateShapeInstance(a);

  EXPECT_FALSE(scene->GetShapeInstance(b, found));
  EXPECT_FALSE(found);
  EXPECT_FALSE(scene->GetShapeInstance(nullptr, found));
}

TEST_F(ShapeSceneTest, CreateShapeInstance_TwiceOrForNothing_IsRefused)
{
  const auto gone = Add(root, "C");
  tree->Remove(gone);
  scene->CreateShapeInstance(a);

  EXPECT_FALSE(scene->CreateShapeInstance(a));
  EXPECT_FALSE(scene->CreateShapeInstance(nullptr));
  EXPECT_FALSE(scene->CreateShapeInstance(gone));
  EXPECT_EQ(scene->GetShapeInstanceCount(), 1U);
}

TEST_F(ShapeSceneTest, ShapeInstance_TakesTheShapeOfItsProductAndItsStatus)
{
  const auto shape = du::MakeSmart<memkernel::Shape>(nullptr);
  const auto other = du::MakeSmart<memkernel::Shape>(nullptr, zelk::ShapeDataLoaded);
  const auto product = tree->CreateProduct({.name = "S", .shape = shape});
  const auto first = scene->CreateShapeInstance(tree->AddChild(root, product));
  const auto second = scene->CreateShapeInstance(tree->AddChild(root, product), {.shape = other});
  const auto bare = scene->CreateShapeInstance(a);

  shape->SetDataStatus(zelk::ShapeDataPartial);

  du::SmartPtr<zelk::Shape> found;
  first->GetShape(found);
  EXPECT_EQ(found, shape);
  EXPECT_EQ(first->GetShapeDataStatus(1), zelk::ShapeDataPartial);
  EXPECT_EQ(first->GetShapeDataStatus(2), zelk::ShapeDataNone);
  EXPECT_EQ(second->GetShapeDataStatus(1), zelk::ShapeDataLoaded);
  EXPECT_EQ(bare->GetShapeDataStatus(1), zelk::ShapeDataNone);
  EXPECT_TRUE(scene->SetShapeDataStatus(first, zelk::ShapeDataFailed));
  EXPECT_EQ(first->GetShapeDataStatus(1), zelk::ShapeDataFailed);
}

TEST_F(ShapeSceneTest, Edits_AreToldOnlyWhenTheyChangeSomething)
{
  const auto shapeInstance = scene->CreateShapeInstance(a);
  (void)watcher->Take();

  scene->SetVisible(shapeInstance, false);
  scene->SetVisible(shapeInstance, false);
  scene->SetCompared(shapeInstance, true, true);
  scene->SetCompared(shapeInstance, true, true);
  scene->SetCompared(shapeInstance, true, false);
  scene->SetThumbnail(shapeInstance, true);
  scene->SetThumbnail(shapeInstance, true);
  scene->SetRejectedCopyrights(shapeInstance, true);

  EXPECT_FALSE(shapeInstance->IsVisible());
  EXPECT_TRUE(shapeInstance->IsCompared());
  EXPECT_FALSE(shapeInstance->IsComparedFirstItem());
  EXPECT_TRUE(shapeInstance->IsThumbnail());
  EXPECT_TRUE(shapeInstance->HasRejectedCopyrights());
  EXPECT_THAT(watcher->Take(), ElementsAre("begin", "hide A", "end", "begin", "compared A", "end", "begin",
                                           "compared A", "end", "begin", "apply", "end", "begin", "apply", "end"));
}

TEST_F(ShapeSceneTest, Edits_OfAShapeInstanceOfAnotherScene_AreRefused)
{
  const auto other = du::MakeSmart<ShapeScene>(nullptr, tree);
  const auto foreign = other->CreateShapeInstance(a);

  EXPECT_FALSE(scene->SetVisible(foreign, false));
  EXPECT_FALSE(scene->SetCompared(nullptr, true));
  EXPECT_FALSE(scene->SetThumbnail(foreign, true));
  EXPECT_TRUE(foreign->IsVisible());
}

TEST_F(ShapeSceneTest, Batch_BracketsARunOfEdits)
{
  {
    const ShapeSceneBatch batch(*scene);
    scene->CreateShapeInstance(a);
    scene->NotifyUnsyncInstances(true);
    scene->NotifyApplyTreeUpdate();
  }

  EXPECT_THAT(watcher->Take(), ElementsAre("begin", "create A", "unsync", "apply", "end"));
}

TEST_F(ShapeSceneTest, RemoveShapeInstance_KnowsItsInstanceUntilItHasBeenTold)
{
  const auto shapeInstance = scene->CreateShapeInstance(a);
  (void)watcher->Take();

  EXPECT_TRUE(scene->RemoveShapeInstance(a));
  EXPECT_FALSE(scene->RemoveShapeInstance(a));

  EXPECT_THAT(watcher->Take(), ElementsAre("begin", "remove A", "end"));
  du::SmartPtr<zelk::Instance> instance = a;
  shapeInstance->GetInstance(instance);
  EXPECT_FALSE(instance);
}

TEST_F(ShapeSceneTest, RemoveShapeInstance_LeavesAShapeOfItsOwnToItsLastHolder)
{
  std::thread::id end;
  const auto remember = [&end](void*) { end = std::this_thread::get_id(); };
  auto shape = du::MakeSmart<memkernel::Shape>(
      [held = std::shared_ptr<void>(nullptr, remember)](memkernel::LoadContext&) { return zelk::ShapeDataLoaded; });
  scene->CreateShapeInstance(a, {.shape = shape});
  shape.Reset();
  du::SmartPtr<zelk::ShapeInstance> last;
  scene->GetShapeInstance(a, last);

  EXPECT_TRUE(scene->RemoveShapeInstance(a));
  EXPECT_EQ(end, std::thread::id());
  std::thread holder([held = std::exchange(last, nullptr)]() mutable { held.Reset(); });
  const std::thread::id holderId = holder.get_id();
  holder.join();

  EXPECT_EQ(end, holderId);
}

TEST_F(ShapeSceneTest, RemoveShapeInstance_FromInsideACallback_StillKnowsItsInstanceWhenItIsTold)
{
  scene->CreateShapeInstance(a);
  (void)watcher->Take();
  watcher->onLine = [&](const std::string& line) {
    if (line == "create B") {
      scene->RemoveShapeInstance(a);
    }
  };

  scene->CreateShapeInstance(b);

  EXPECT_THAT(watcher->Take(), ElementsAre("begin", "create B", "remove A", "end"));
}

TEST_F(ShapeSceneTest, RemovalFromTheTree_RemovesTheShapeInstancesInOneRun)
{
  const auto top = Add(root, "T");
  const auto first = Add(top, "F");
  const auto second = Add(top, "S");
  scene->CreateShapeInstance(first);
  scene->CreateShapeInstance(second);
  scene->CreateShapeInstance(a);
  (void)watcher->Take();

  tree->Remove(top);

  EXPECT_THAT(watcher->Take(), ElementsAre("begin", "remove F", "remove S", "end"));
  EXPECT_EQ(scene->GetShapeInstanceCount(), 1U);
}

TEST_F(ShapeSceneTest, RegisterObserver_WithReplay_TellsWhatExists)
{
  scene->CreateShapeInstance(a);
  scene->CreateShapeInstance(b);
  const auto late = du::MakeSmart<SceneRecorder>();
  const auto silent = du::MakeSmart<SceneRecorder>();

  EXPECT_TRUE(scene->RegisterObserver(*late, s_allEvents, true));
  EXPECT_TRUE(scene->RegisterObserver(*silent, s_allEvents, false));
  EXPECT_FALSE(scene->RegisterObserver(*late, s_allEvents, true));

  EXPECT_THAT(late->Take(), UnorderedElementsAre("begin", "create A", "create B", "end"));
  EXPECT_THAT(silent->Take(), IsEmpty());
  EXPECT_TRUE(scene->UnregisterObserver(*late));
  EXPECT_TRUE(scene->UnregisterObserver(*silent));
}

TEST_F(ShapeSceneTest, RegisterObserver_ForSomeEvents_TellsThoseAlone)
{
  const auto visibility = du::MakeSmart<SceneRecorder>();
  scene->RegisterObserver(*visibility, du::Flags(memkernel::ShapeSceneVisibility), true);

  scene->SetVisible(scene->CreateShapeInstance(a), false);

  EXPECT_THAT(visibility->Take(), ElementsAre("begin", "hide A", "end"));
  scene->UnregisterObserver(*visibility);
}

TEST_F(ShapeSceneTest, Scene_ThatDies_TellsItsObserversAndLeavesTheTree)
{
  auto other = du::MakeSmart<ShapeScene>(nullptr, tree);
  const auto observer = du::MakeSmart<SceneRecorder>();
  other->RegisterObserver(*observer, s_allEvents, false);
  other->CreateShapeInstance(a);
  (void)observer->Take();

  other.Reset();
  tree->Remove(a);

  EXPECT_THAT(observer->Take(), ElementsAre("unregister"));
  EXPECT_FALSE(observer->IsRegistered());
}

TEST_F(ShapeSceneTest, Scene_ReleasedInACallback_DiesAfterIt)
{
  auto other = du::MakeSmart<ShapeScene>(nullptr, tree);
  const auto observer = du::MakeSmart<SceneRecorder>();
  observer->onLine = [&](const std::string& line) {
    if (line == "remove A") {
      other.Reset();
    }
  };
  other->RegisterObserver(*observer, s_allEvents, false);
  other->CreateShapeInstance(a);
  (void)observer->Take();

  tree->Remove(a);

  EXPECT_THAT(observer->Take(), ElementsAre("begin", "remove A", "end", "unregister"));
}

TEST_F(ShapeSceneTest, SceneClasses_AreToldApartByTheContract)
{
  const du::SmartPtr<zelk::Scene> compare = du::MakeSmart<memkernel::GeometryCompareScene>(nullptr, tree);
  const auto manager = du::MakeSmart<memkernel::SelectionManager>(tree);
  const du::SmartPtr<zelk::Scene> drawings = du::MakeSmart<memkernel::SchematicScene>(manager);

  EXPECT_TRUE(compare->IsATypeOf(zelk::ShapeScene::CLASS_TYPE));
  EXPECT_TRUE(compare->IsATypeOf(zelk::GeometryCompareScene::CLASS_TYPE));
  EXPECT_FALSE(scene->IsATypeOf(zelk::GeometryCompareScene::CLASS_TYPE));
  EXPECT_TRUE(drawings->IsATypeOfId(53));
  EXPECT_FALSE(du::DynamicCast<zelk::ShapeScene>(drawings));
  du::SmartPtr<zelk::SelectionManager> found;
  drawings->GetSelectionManager(found);
  EXPECT_EQ(found, manager);
  scene->GetSelectionManager(found);
  EXPECT_FALSE(found);
}

}  // namespace
}  // namespace memkerneltest
