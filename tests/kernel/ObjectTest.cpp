#include "zelk/Object.h"

#include <gtest/gtest.h>

#include "FakeInstance.h"
#include "zelk/Anchor.h"
#include "zelk/ClashReportView.h"
#include "zelk/GeometryCompareScene.h"
#include "zelk/ObjectSelectionItem.h"
#include "zelk/SchematicScene.h"
#include "zelk/ShapeView.h"
#include "zelk/Tree.h"
#include "zelk/illustration/SbomInstance.h"

namespace {

class FakeSchematicScene : public zelk::SchematicScene {
public:
  void GetSelectionManager(du::SmartPtr<zelk::SelectionManager>& out) const override { out.Reset(); }
};

class FakeCompareScene : public zelk::GeometryCompareScene {
public:
  void GetSelectionManager(du::SmartPtr<zelk::SelectionManager>& out) const override { out.Reset(); }
  bool RegisterObserver(zelk::ShapeSceneObserver& /*observer*/, du::Flags /*what*/, bool /*replay*/) override
  {
    return false;
  }
  bool UnregisterObserver(zelk::ShapeSceneObserver& /*observer*/) override { return false; }
  bool GetShapeInstance(const du::ConstSmartPtr<zelk::Instance>& /*instance*/,
                        du::SmartPtr<zelk::ShapeInstance>& out) const override
  {
    out.Reset();
    return false;
  }
};

class PlainInstance : public kerneltest::FakeInstance {
public:
  const zelk::ClassType& GetClassTypes() const override { return zelk::BaseInstance::CLASS_TYPE; }
};

TEST(Object, IsOfItsOwnClassAndOfAllItsBases)
{
  const FakeCompareScene scene;

  EXPECT_TRUE(scene.IsATypeOf(zelk::GeometryCompareScene::CLASS_TYPE));
  EXPECT_TRUE(scene.IsATypeOf(zelk::ShapeScene::CLASS_TYPE));
  EXPECT_TRUE(scene.IsATypeOf(zelk::Scene::CLASS_TYPE));
  EXPECT_TRUE(scene.IsATypeOf(zelk::Object::CLASS_TYPE));
}

TEST(Object, IsNotOfAnotherClass)
{
  const FakeSchematicScene scene;

  EXPECT_TRUE(scene.IsATypeOf(zelk::Scene::CLASS_TYPE));
  EXPECT_FALSE(scene.IsATypeOf(zelk::ShapeScene::CLASS_TYPE));
  EXPECT_FALSE(scene.IsATypeOf(zelk::View::CLASS_TYPE));
}

TEST(Object, OfClassByNumber_53IsASchematicSceneAndNothingElse)
{
  EXPECT_TRUE(FakeSchematicScene().IsATypeOfId(53));
  EXPECT_FALSE(FakeCompareScene().IsATypeOfId(53));
}

TEST(Object, OfClassByNumber_FollowsTheBasesAndKnowsNoOtherNumber)
{
  const FakeCompareScene scene;

  EXPECT_TRUE(scene.IsATypeOfId(zelk::ClassIdGeometryCompareScene));
  EXPECT_TRUE(scene.IsATypeOfId(zelk::ClassIdShapeScene));
  EXPECT_TRUE(scene.IsATypeOfId(zelk::ClassIdObject));
  EXPECT_FALSE(scene.IsATypeOfId(0));
  EXPECT_FALSE(scene.IsATypeOfId(zelk::ClassIdFirstOfKernel));
}

TEST(Object, ClassTypes_HaveTheBasesOfTheirClasses)
{
  EXPECT_EQ(zelk::ComponentInstance::CLASS_TYPE.base, &zelk::Instance::CLASS_TYPE);
  EXPECT_EQ(zelk::Instance::CLASS_TYPE.base, &zelk::BaseInstance::CLASS_TYPE);
  EXPECT_EQ(zelk::illustration::SbomInstance::CLASS_TYPE.base, &zelk::BaseInstance::CLASS_TYPE);
  EXPECT_EQ(zelk::BaseInstance::CLASS_TYPE.base, &zelk::Object::CLASS_TYPE);
  EXPECT_EQ(zelk::Tree::CLASS_TYPE.base, &zelk::BaseTree::CLASS_TYPE);
  EXPECT_EQ(zelk::ShapeView::CLASS_TYPE.base, &zelk::View::CLASS_TYPE);
  EXPECT_EQ(zelk::ClashReportView::CLASS_TYPE.base, &zelk::View::CLASS_TYPE);
  EXPECT_EQ(zelk::ObjectSelectionItem::CLASS_TYPE.base, &zelk::SelectionItem::CLASS_TYPE);
  EXPECT_EQ(zelk::Object::CLASS_TYPE.base, nullptr);
}

TEST(Object, TheClassName_IsThatOfItsClass)
{
  EXPECT_EQ(FakeSchematicScene().GetDebugClassName(), "zelk::SchematicScene");
  EXPECT_EQ(kerneltest::FakeInstance().GetDebugClassName(), "zelk::ComponentInstance");
  EXPECT_EQ(zelk::Anchor().GetDebugClassName(), "zelk::Anchor");
}

TEST(Object, ByDefault_HasNoNameAndKeepsNoUserData)
{
  zelk::Anchor object;
  int data = 0;

  EXPECT_TRUE(object.GetObjectName().IsEmpty());
  EXPECT_EQ(object.GetObjectDescription(), "");
  EXPECT_FALSE(object.AddUserData("key", &data));
  EXPECT_EQ(object.GetUserData("key"), nullptr);
  EXPECT_FALSE(object.RemoveUserData("key"));
  EXPECT_FALSE(object.AddRefCountedUserData("key", du::MakeSmart<zelk::Anchor>()));
  EXPECT_FALSE(object.GetRefCountedUserData("key"));
}

TEST(Object, AsInstance_TellsInstancesOfAnAssemblyFromOthers)
{
  const kerneltest::FakeInstance instance;
  const PlainInstance other;

  EXPECT_EQ(zelk::AsInstance(&instance), &instance);
  EXPECT_EQ(zelk::AsInstance(&other), nullptr);
  EXPECT_EQ(zelk::AsInstance(nullptr), nullptr);
}

TEST(Object, TheFamily_CastsDynamically)
{
  const du::SmartPtr<zelk::Object> instance(new kerneltest::FakeInstance);
  const du::SmartPtr<zelk::Object> item(new zelk::ObjectSelectionItem(nullptr));

  EXPECT_TRUE(du::DynamicCast<zelk::BaseInstance>(instance));
  EXPECT_TRUE(du::DynamicCast<zelk::Instance>(du::DynamicCast<zelk::BaseInstance>(instance)));
  EXPECT_FALSE(du::DynamicCast<zelk::BaseTree>(instance));
  EXPECT_TRUE(du::DynamicCast<zelk::SelectionItem>(item));
  EXPECT_FALSE(du::DynamicCast<zelk::Instance>(item));
}

}  // namespace
