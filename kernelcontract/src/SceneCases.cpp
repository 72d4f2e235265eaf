#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <future>
#include <thread>

#include "Cases.h"
#include "RecordingTreeObserver.h"
#include "TestTree.h"
#include "zelk/ShapeSceneObserver.h"
#include "zelk/ShapeViewObserver.h"

namespace kernelcontract {
namespace {

constexpr du::Flags s_ofShapeInstances(0xb);

class RecordingSceneObserver : public zelk::ShapeSceneObserver {
public:
  explicit RecordingSceneObserver(Names names) : m_names(std::move(names)) {}

  void OnBeginUpdate() override { lines.emplace_back("begin"); }
  void OnEndUpdate() override { lines.emplace_back("end"); }
  void OnUnregister() override { lines.emplace_back("unregister"); }
  void OnShapeInstanceCreate(const du::SmartPtr<zelk::ShapeInstance>& instance) override
  {
    _Write("create " + _GetName(instance));
  }
  void OnShapeInstanceRemove(const du::SmartPtr<zelk::ShapeInstance>& instance) override
  {
    _Write("remove " + _GetName(instance));
  }
  void OnShapeInstanceVisibility(const du::SmartPtr<zelk::ShapeInstance>& instance, bool visible) override
  {
    EXPECT_EQ(instance->IsVisible(), visible);
    _Write((visible ? "show " : "hide ") + _GetName(instance));
  }

  Lines lines;
  std::function<void()> onEvent;

private:
  void _Write(const std::string& line)
  {
    lines.push_back(line);
    if (onEvent) {
      onEvent();
    }
  }
  [[nodiscard]] std::string _GetName(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance) const
  {
    du::SmartPtr<zelk::Instance> instance;
    shapeInstance->GetInstance(instance);
    const auto known = m_names.find(instance.Get());
    return known == m_names.end() ? "?" : known->second;
  }

  const Names m_names;
};

void EachEditOfAScene_IsToldInBrackets(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto scene = kernel.CreateScene();
  if (!scene) {
    GTEST_SKIP() << "this kernel has no scenes";
  }
  const auto observer = du::MakeSmart<RecordingSceneObserver>(tree.GetNames());
  ASSERT_TRUE(scene->RegisterObserver(*observer, s_ofShapeInstances, false));

  const auto shown = kernel.AddShapeInstance(scene, tree["b"]);
  kernel.SetVisible(scene, shown, false);
  kernel.SetVisible(scene, shown, true);
  kernel.RemoveShapeInstance(scene, tree["b"]);

  EXPECT_EQ(observer->lines, (Lines{"begin", "create b", "end", "begin", "hide b", "end", "begin", "show b", "end",
                                    "begin", "remove b", "end"}));
  scene->UnregisterObserver(*observer);
}

void WithReplay_TheShapeInstancesThatExistAreTold(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto scene = kernel.CreateScene();
  if (!scene) {
    GTEST_SKIP() << "this kernel has no scenes";
  }
  kernel.AddShapeInstance(scene, tree["b"]);
  kernel.AddShapeInstance(scene, tree["x"]);
  const auto observer = du::MakeSmart<RecordingSceneObserver>(tree.GetNames());
  const auto lateObserver = du::MakeSmart<RecordingSceneObserver>(tree.GetNames());

  scene->RegisterObserver(*observer, s_ofShapeInstances, true);
  scene->RegisterObserver(*lateObserver, s_ofShapeInstances, false);

  ASSERT_EQ(observer->lines.size(), 4U);
  EXPECT_EQ(observer->lines.front(), "begin");
  EXPECT_EQ(observer->lines.back(), "end");
  std::sort(observer->lines.begin(), observer->lines.end());
  EXPECT_EQ(observer->lines, (Lines{"begin", "create b", "create x", "end"}));
  EXPECT_EQ(std::count_if(lateObserver->lines.begin(), lateObserver->lines.end(),
                          [](const std::string& line) { return line.rfind("create", 0) == 0; }),
            0);
  scene->UnregisterObserver(*observer);
  scene->UnregisterObserver(*lateObserver);
}

void AShapeInstance_IsFoundByItsInstance(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto scene = kernel.CreateScene();
  if (!scene) {
    GTEST_SKIP() << "this kernel has no scenes";
  }
  const auto shown = kernel.AddShapeInstance(scene, tree["b"]);
  du::SmartPtr<zelk::ShapeInstance> found;

  EXPECT_TRUE(scene->GetShapeInstance(du::ConstSmartPtr<zelk::Instance>(tree["b"]), found));
  EXPECT_TRUE(found == shown);
  EXPECT_FALSE(scene->GetShapeInstance(du::ConstSmartPtr<zelk::Instance>(tree["c"]), found));
  EXPECT_FALSE(found);
  found = shown;
  EXPECT_FALSE(scene->GetShapeInstance(nullptr, found));
  EXPECT_FALSE(found);
}

void AShapeInstanceThatIsRemoved_KnowsItsInstanceUntilThatHasBeenTold(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto scene = kernel.CreateScene();
  if (!scene) {
    GTEST_SKIP() << "this kernel has no scenes";
  }
  const auto shown = kernel.AddShapeInstance(scene, tree["b"]);
  const auto observer = du::MakeSmart<RecordingSceneObserver>(tree.GetNames());
  ASSERT_TRUE(scene->RegisterObserver(*observer, s_ofShapeInstances, false));
  du::SmartPtr<zelk::Instance> instance;

  kernel.RemoveShapeInstance(scene, tree["b"]);
  shown->GetInstance(instance);

  EXPECT_EQ(observer->lines, (Lines{"begin", "remove b", "end"}));
  EXPECT_FALSE(instance);
  scene->UnregisterObserver(*observer);
}

void Registration_HappensOnceAndEndsARun(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto scene = kernel.CreateScene();
  if (!scene) {
    GTEST_SKIP() << "this kernel has no scenes";
  }
  const auto observer = du::MakeSmart<RecordingSceneObserver>(tree.GetNames());
  EXPECT_FALSE(scene->UnregisterObserver(*observer));
  EXPECT_TRUE(scene->RegisterObserver(*observer, s_ofShapeInstances, true));
  EXPECT_FALSE(scene->RegisterObserver(*observer, s_ofShapeInstances, true));
  EXPECT_TRUE(observer->IsRegistered());
  observer->onEvent = [&] { EXPECT_TRUE(scene->UnregisterObserver(*observer)); };
  observer->lines.clear();

  kernel.AddShapeInstance(scene, tree["b"]);
  kernel.AddShapeInstance(scene, tree["c"]);

  EXPECT_EQ(observer->lines, (Lines{"begin", "create b", "end"}));
  EXPECT_FALSE(observer->IsRegistered());
}

void QueriesOnShapeInstances_AreSafeFromAnotherThread(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto scene = kernel.CreateScene();
  if (!scene) {
    GTEST_SKIP() << "this kernel has no scenes";
  }
  const auto shown = kernel.AddShapeInstance(scene, tree["b"]);
  const du::ConstSmartPtr<zelk::Instance> wanted(tree["c"]);
  std::atomic<bool> isDone{false};
  std::atomic<unsigned int> answers{0};
  std::thread reader([&] {
    while (!isDone) {
      du::SmartPtr<zelk::ShapeInstance> found;
      answers += scene->GetShapeInstance(wanted, found) && found ? 1U : 0U;
      answers += shown->IsVisible() && shown->GetShapeDataStatus(1) <= zelk::ShapeDataLoaded ? 1U : 0U;
    }
  });

  for (int round = 0; round < 200 || answers == 0; ++round) {
    kernel.SetVisible(scene, shown, round % 2 == 0);
    kernel.AddShapeInstance(scene, tree["c"]);
    kernel.RemoveShapeInstance(scene, tree["c"]);
  }
  isDone = true;
  reader.join();

  EXPECT_GT(answers, 0U);
}

void AShapeInstance_MayEndOnAnotherThread(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto scene = kernel.CreateScene();
  if (!scene) {
    GTEST_SKIP() << "this kernel has no scenes";
  }
  const du::ConstSmartPtr<zelk::Instance> wanted(tree["b"]);
  kernel.AddShapeInstance(scene, tree["b"]);
  std::promise<void> isHeld;
  std::promise<void> isRemoved;
  std::thread holder([&] {
    du::SmartPtr<zelk::ShapeInstance> last;
    EXPECT_TRUE(scene->GetShapeInstance(wanted, last));
    isHeld.set_value();
    isRemoved.get_future().wait();
    EXPECT_TRUE(!last || last->IsVisible());
  });

  isHeld.get_future().wait();
  kernel.RemoveShapeInstance(scene, tree["b"]);
  isRemoved.set_value();
  holder.join();

  du::SmartPtr<zelk::ShapeInstance> found;
  EXPECT_FALSE(scene->GetShapeInstance(wanted, found));
  const auto another = kernel.AddShapeInstance(scene, tree["b"]);
  EXPECT_TRUE(scene->GetShapeInstance(wanted, found));
  EXPECT_TRUE(found == another);
}

void AView_KnowsItsSceneAndItsSettings(KernelUnderTest& kernel)
{
  const auto scene = kernel.CreateScene();
  const auto view = scene ? kernel.CreateView(scene) : nullptr;
  if (!view) {
    GTEST_SKIP() << "this kernel has no views";
  }
  du::SmartPtr<zelk::Scene> found;
  bool scratch = false;
  dg::Color unused(0, 0, 0, 1);
  dg::Color third(-1, -1, -1, -1);

  view->GetScene(found);
  view->GetHighlightSettings(scratch, scratch, scratch, unused, unused, third);

  EXPECT_TRUE(du::DynamicCast<zelk::ShapeScene>(found) == scene);
  EXPECT_GE(third.red, 0.0F);
  const auto observer = du::MakeSmart<zelk::ShapeViewObserver>();
  EXPECT_TRUE(view->RegisterObserver(*observer, true));
  EXPECT_FALSE(view->RegisterObserver(*observer, true));
  EXPECT_TRUE(view->UnregisterObserver(*observer));
  EXPECT_FALSE(view->UnregisterObserver(*observer));
}

}  // namespace

std::vector<ContractCase> GetSceneCases()
{
  const char* group = "Scene";
  return {
      {group, "EachEditOfAScene_IsToldInBrackets", &EachEditOfAScene_IsToldInBrackets},
      {group, "WithReplay_TheShapeInstancesThatExistAreTold", &WithReplay_TheShapeInstancesThatExistAreTold},
      {group, "AShapeInstance_IsFoundByItsInstance", &AShapeInstance_IsFoundByItsInstance},
      {group, "AShapeInstanceThatIsRemoved_KnowsItsInstanceUntilThatHasBeenTold",
       &AShapeInstanceThatIsRemoved_KnowsItsInstanceUntilThatHasBeenTold},
      {group, "Registration_HappensOnceAndEndsARun", &Registration_HappensOnceAndEndsARun},
      {group, "QueriesOnShapeInstances_AreSafeFromAnotherThread", &QueriesOnShapeInstances_AreSafeFromAnotherThread},
      {group, "AShapeInstance_MayEndOnAnotherThread", &AShapeInstance_MayEndOnAnotherThread},
      {group, "AView_KnowsItsSceneAndItsSettings", &AView_KnowsItsSceneAndItsSettings},
  };
}

}  // namespace kernelcontract
