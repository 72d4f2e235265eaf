// What a structure panel says of issues, and what it gives to its filters.

#include <gmock/gmock.h>

#include "IconSubject.h"
#include "StructureStage.h"
#include "guitree/TypeIcon.h"
#include "structure_utils/TreeFilterAdditionalInfo.h"
#include "zelk/SchematicScene.h"

namespace {

using structure_utils::TreeFilterAdditionalInfo;
using structuretest::SceneKind;
using structuretest::StructureStage;
using testing::ElementsAre;
using testing::IsEmpty;
using State = guitree::StructureTreeState;

class StructureStatus : public testing::Test {
protected:
  StructureStatus()
  {
    guitree::WorldTreeState::SetIsCollapsingInstances(true);
    instance.hasShapeSource = true;
    subject.shapeInstance->status = zelk::ShapeDataFailed;
    subject.ShowIn(SceneKind::Shapes);
  }

  /// With the answer of `InstHasIssue`, which goes with it.
  [[nodiscard]] State::TFStatus GetStatus(int icon) const
  {
    const du::ConstSmartPtr<zelk::Instance> asked(&instance);
    EXPECT_EQ(State::GetUnloadedTypeIconStatic(asked, subject.scene), icon);
    const State::TFStatus status = stage.state->TreeFilterGetItemStatus(asked, subject.scene);
    EXPECT_EQ(stage.state->InstHasIssue(asked, subject.scene), status != State::TFStatusNone);
    return status;
  }
  [[nodiscard]] du::SmartPtr<TreeFilterAdditionalInfo> GetInfo() const
  {
    return du::DynamicCast<TreeFilterAdditionalInfo>(stage.state->GetAdditionalFilterInfo());
  }

  StructureStage stage;
  structuretest::IconSubject subject;
  structuretest::IconInstance& instance = *subject.instance;
};

TEST_F(StructureStatus, OfAFailedShape_SaysSo)
{
  EXPECT_EQ(GetStatus(guitree::IconShapeFailed), State::TFStatusShapeFailed);
}

TEST_F(StructureStatus, OfAFailedBody_SaysSo)
{
  instance.isBody = true;
  EXPECT_EQ(GetStatus(guitree::IconBodyFailed), State::TFStatusBodyFailed);
}

TEST_F(StructureStatus, OfAFailedConstructionBody_SaysSo)
{
  instance.isConstruction = true;
  EXPECT_EQ(GetStatus(guitree::IconConstructionBodyFailed), State::TFStatusConstructionBodyFailed);
}

TEST_F(StructureStatus, OfAFailedSiblingThatStandsForItsGroup_SaysSo)
{
  instance.isSibling = true;
  EXPECT_EQ(GetStatus(guitree::IconCollapsedSiblingFailed), State::TFStatusCollapsedSiblingFailed);
}

TEST_F(StructureStatus, OfAFailedShapeOfAProxy_SaysSo)
{
  instance.isProxyExpanded = true;
  EXPECT_EQ(GetStatus(guitree::IconProxyShapeFailed), State::TFStatusProxyShapeFailed);
}

TEST_F(StructureStatus, OfAProxyThatFailedToExpand_SaysSo)
{
  instance.hasProxyExpandFailed = true;
  EXPECT_EQ(GetStatus(guitree::IconProxyExpandFailed), State::TFStatusProxyExpandFailed);
}

TEST_F(StructureStatus, OfEverythingElse_IsNone)
{
  subject.shapeInstance->isRejected = true;
  EXPECT_EQ(GetStatus(guitree::IconRejectedCopyrights), State::TFStatusNone);

  subject.ShowIn(SceneKind::None);
  EXPECT_EQ(GetStatus(guitree::IconPlain), State::TFStatusNone);

  instance.hasShapeSource = false;
  EXPECT_EQ(GetStatus(guitree::IconNoSource), State::TFStatusNone);

  instance.isProxy = true;
  EXPECT_EQ(GetStatus(guitree::IconProxy), State::TFStatusNone);
  EXPECT_EQ(stage.state->TreeFilterGetItemStatus({}, subject.scene), State::TFStatusNone);
}

/// A state with issues of its own.
class OwnIssues : public guitree::StructureTreeState {
public:
  explicit OwnIssues(guitree::GuiTree& tree) : StructureTreeState(tree, true) {}
  OwnIssues(const OwnIssues&) = delete;
  OwnIssues& operator=(const OwnIssues&) = delete;
  ~OwnIssues() override { _DetachStatusLookups(); }

  TFStatus status = TFStatusNone;

  [[nodiscard]] TFStatus TreeFilterGetItemStatus(const du::ConstSmartPtr<zelk::Instance>& /*instance*/,
                                                 const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    return status;
  }
};

TEST_F(StructureStatus, OfADerivedState_DecidesWhatHasAnIssue)
{
  auto state = du::MakeSmart<OwnIssues>(*stage.gui);
  const du::ConstSmartPtr<zelk::Instance> asked(&instance);
  EXPECT_FALSE(state->InstHasIssue(asked, subject.scene));

  state->status = State::TFStatusBodyFailed;
  EXPECT_TRUE(state->InstHasIssue(asked, subject.scene));
  const auto info = du::DynamicCast<TreeFilterAdditionalInfo>(state->GetAdditionalFilterInfo());
  EXPECT_EQ(info->GetItemStatus(asked), State::TFStatusBodyFailed);

  state.Reset();
  EXPECT_EQ(info->GetItemStatus(asked), State::TFStatusNone);
}

TEST_F(StructureStatus, AnInfo_IsNewEachTimeAndHasNeitherSceneNorResultsAtTheStart)
{
  const auto info = GetInfo();

  EXPECT_NE(info, GetInfo());
  EXPECT_FALSE(info->GetScene());
  EXPECT_FALSE(info->GetResultsList());
}

TEST_F(StructureStatus, AnInfo_AsksTheStateForStatuses)
{
  instance.hasProxyExpandFailed = true;

  EXPECT_EQ(GetInfo()->GetItemStatus(du::ConstSmartPtr<zelk::Instance>(&instance)), State::TFStatusProxyExpandFailed);
}

TEST_F(StructureStatus, AnInfo_HasTheShownShapeSceneAndTheResults)
{
  const auto scene = du::MakeSmart<testsupport::PlainShapeScene>();
  const auto view = testsupport::MakeView<testsupport::PlainShapeView>(scene);
  const auto results = du::MakeSmart<structure_utils::TreeResultsList>(std::set<du::SmartPtr<zelk::BaseInstance>>{});
  stage.gui->Initialise(stage.world);
  stage.gui->OnSceneAdded(scene);
  stage.gui->OnActiveViewChanged(view);
  stage.state->SetResultsComps(results);

  EXPECT_EQ(GetInfo()->GetScene(), scene);
  EXPECT_EQ(GetInfo()->GetResultsList(), results);

  stage.gui->OnActiveViewChanged(nullptr);
  EXPECT_FALSE(GetInfo()->GetScene());
  stage.gui->OnSceneRemoved(scene);
}

TEST_F(StructureStatus, AnInfoThatOutlivesItsState_AnswersNone)
{
  instance.hasProxyExpandFailed = true;
  const auto first = GetInfo();
  const auto second = GetInfo();
  static_cast<void>(GetInfo());

  stage.gui->SetTreeState(nullptr);
  stage.state->Reset();
  stage.state.Reset();

  for (const auto& info : {first, second}) {
    EXPECT_EQ(info->GetItemStatus(du::ConstSmartPtr<zelk::Instance>(&instance)), State::TFStatusNone);
  }
}

class Drawings : public testsupport::PlainScene {
public:
  [[nodiscard]] const zelk::ClassType& GetClassTypes() const override { return zelk::SchematicScene::CLASS_TYPE; }
};

TEST(StructureScenes, OfDrawings_AreNotCompatibleAndAllOthersAre)
{
  const StructureStage stage;
  const auto comparison = du::MakeSmart<structuretest::IconScene<zelk::GeometryCompareScene>>();

  EXPECT_FALSE(stage.state->IsCompatibleShapeSceneType(du::MakeSmart<Drawings>()));
  EXPECT_TRUE(stage.state->IsCompatibleShapeSceneType(du::MakeSmart<testsupport::PlainScene>()));
  EXPECT_TRUE(stage.state->IsCompatibleShapeSceneType(du::MakeSmart<testsupport::PlainShapeScene>()));
  EXPECT_TRUE(stage.state->IsCompatibleShapeSceneType(comparison));
}

class ResultsList : public testing::Test {
protected:
  [[nodiscard]] static du::SmartPtr<structure_utils::TreeResultsList> Make(
      std::set<du::SmartPtr<zelk::BaseInstance>> instances = {})
  {
    return du::MakeSmart<structure_utils::TreeResultsList>(std::move(instances));
  }
  static void Follow(const StructureStage& stage, bool uses, bool isLive)
  {
    stage.GetFilter().useResultsList = uses;
    stage.GetFilter().resultsListLive = isLive;
  }
};

TEST_F(ResultsList, ANewOne_PopulatesOnlyUnderAFilterThatUsesAndFollowsIt)
{
  const StructureStage stage;
  for (const bool uses : {false, true}) {
    for (const bool isLive : {false, true}) {
      stage.state->populations.clear();
      Follow(stage, uses, isLive);

      stage.state->SetResultsComps(Make());

      EXPECT_EQ(stage.state->populations, (uses && isLive ? std::vector{true} : std::vector<bool>{}));
    }
  }
}

TEST_F(ResultsList, TheSameOneAgain_PopulatesAsANewOne)
{
  const StructureStage stage;
  Follow(stage, true, true);
  const auto results = Make();
  stage.state->SetResultsComps(results);

  stage.state->SetResultsComps(results);

  EXPECT_THAT(stage.state->populations, ElementsAre(true, true));
}

TEST_F(ResultsList, InAPanelWithoutResults_NeverPopulates)
{
  const StructureStage stage("root", false);
  stage.GetFilter().resultsListLive = true;

  stage.state->SetResultsComps(Make());

  EXPECT_THAT(stage.state->populations, IsEmpty());
}

TEST_F(ResultsList, ANewOne_IsThereBeforeTheFilterIsLookedAt)
{
  StructureStage stage;
  const auto results = Make();
  du::SmartPtr<structure_utils::TreeResultsList> inner;
  stage.OnceIn("UpdateQuickSearchResults", [&] {
    inner = du::DynamicCast<TreeFilterAdditionalInfo>(stage.state->GetAdditionalFilterInfo())->GetResultsList();
  });

  stage.state->SetResultsComps(results);

  EXPECT_EQ(inner, results);
}

TEST_F(ResultsList, IsWhatPassesAFilterThatUsesIt)
{
  StructureStage stage;
  Follow(stage, true, true);
  stage.state->SetResultsComps(Make({stage.kernel["bolt"]}));
  stage.Finish();
  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "plate", "bolt"));

  stage.state->SetResultsComps(Make({stage.kernel["nut3"]}));
  stage.Finish();
  EXPECT_THAT(stage.TakeRows(), ElementsAre("root", "plate", "frame", "nut3"));
}

TEST_F(ResultsList, IsHeldUntilTheNextOneAndByTheState)
{
  StructureStage stage;
  auto results = Make();
  const structure_utils::TreeResultsList* const identity = results.Get();
  stage.state->SetResultsComps(std::exchange(results, nullptr));

  const auto info = du::DynamicCast<TreeFilterAdditionalInfo>(stage.state->GetAdditionalFilterInfo());
  EXPECT_EQ(info->GetResultsList().Get(), identity);

  stage.state->SetResultsComps(nullptr);
  const auto next = du::DynamicCast<TreeFilterAdditionalInfo>(stage.state->GetAdditionalFilterInfo());
  EXPECT_FALSE(next->GetResultsList());
}

}  // namespace
