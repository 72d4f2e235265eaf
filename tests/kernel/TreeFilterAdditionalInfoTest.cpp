#include "structure_utils/TreeFilterAdditionalInfo.h"

#include <gtest/gtest.h>

#include "FakeInstance.h"

namespace {

using structure_utils::TreeFilterAdditionalInfo;
using Lookup = TreeFilterAdditionalInfo::TreeFilterStatusLookup;

class RecordingLookup final : public Lookup {
public:
  TFStatus TreeFilterGetItemStatus(const du::ConstSmartPtr<zelk::Instance>& instance,
                                   const du::SmartPtr<zelk::Scene>& scene) override
  {
    asked = instance;
    askedScene = scene;
    return TFStatusBodyFailed;
  }

  du::ConstSmartPtr<zelk::Instance> asked;
  du::SmartPtr<zelk::Scene> askedScene;
};

class FakeScene : public zelk::ShapeScene {
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

TEST(TreeFilterAdditionalInfo, KeepsSceneAndResultsList)
{
  const auto scene = du::MakeSmart<FakeScene>();
  const auto instance = du::MakeSmart<kerneltest::FakeInstance>();
  const auto results =
      du::MakeSmart<structure_utils::TreeResultsList>(std::set<du::SmartPtr<zelk::BaseInstance>>{instance});

  const TreeFilterAdditionalInfo info(scene, results, nullptr);

  EXPECT_TRUE(info.GetScene() == scene);
  EXPECT_TRUE(info.GetResultsList() == results);
  EXPECT_TRUE(info.GetResultsList()->GetInstances().contains(instance));
}

TEST(TreeFilterAdditionalInfo, AsksTheLookupForTheInstanceInItsScene)
{
  const auto scene = du::MakeSmart<FakeScene>();
  const auto instance = du::MakeSmart<kerneltest::FakeInstance>();
  RecordingLookup lookup;
  const TreeFilterAdditionalInfo info(scene, nullptr, &lookup);

  EXPECT_EQ(info.GetItemStatus(du::ConstSmartPtr<zelk::Instance>(instance)), Lookup::TFStatusBodyFailed);

  EXPECT_TRUE(lookup.asked == instance);
  EXPECT_TRUE(lookup.askedScene == scene);
}

TEST(TreeFilterAdditionalInfo, WithoutALookup_KnowsOfNothingWrong)
{
  const TreeFilterAdditionalInfo info(nullptr, nullptr, nullptr);

  EXPECT_FALSE(info.GetScene());
  EXPECT_FALSE(info.GetResultsList());
  EXPECT_EQ(info.GetItemStatus(nullptr), Lookup::TFStatusNone);
}

TEST(TreeFilterAdditionalInfo, AfterTheLookupWasDetached_AsksNobody)
{
  RecordingLookup lookup;
  TreeFilterAdditionalInfo info(nullptr, nullptr, &lookup);

  info.DetachStatusLookup();
  info.DetachStatusLookup();

  EXPECT_EQ(info.GetItemStatus(du::ConstSmartPtr<zelk::Instance>(new kerneltest::FakeInstance)), Lookup::TFStatusNone);
  EXPECT_FALSE(lookup.asked);
}

TEST(TreeFilterAdditionalInfo, TheStatus_HaveTheirNumbers)
{
  EXPECT_EQ(static_cast<int>(Lookup::TFStatusNone), 0);
  EXPECT_EQ(static_cast<int>(Lookup::TFStatusShapeFailed), 1);
  EXPECT_EQ(static_cast<int>(Lookup::TFStatusBodyFailed), 2);
  EXPECT_EQ(static_cast<int>(Lookup::TFStatusConstructionBodyFailed), 3);
  EXPECT_EQ(static_cast<int>(Lookup::TFStatusCollapsedSiblingFailed), 4);
  EXPECT_EQ(static_cast<int>(Lookup::TFStatusProxyShapeFailed), 5);
  EXPECT_EQ(static_cast<int>(Lookup::TFStatusProxyExpandFailed), 6);
}

}  // namespace
