#include <gmock/gmock.h>

#include <functional>
#include <utility>

#include "IconSubject.h"
#include "guitree/GuiTree.h"
#include "guitree/TypeIcon.h"
#include "testsupport/DisplaySwitches.h"
#include "testsupport/PlainBaseInstance.h"

namespace {

using structuretest::SceneKind;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::DisplaySwitches;

/// Does something when it is asked the first question.
class ActingInstance : public structuretest::IconInstance {
public:
  ActingInstance(std::function<void()> act, bool& isAlive) : m_act(std::move(act)), m_isAlive(isAlive)
  {
    m_isAlive = true;
  }
  ActingInstance(const ActingInstance&) = delete;
  ActingInstance& operator=(const ActingInstance&) = delete;
  ~ActingInstance() override { m_isAlive = false; }

  bool IsRootContainerRoot() const override
  {
    const auto act = m_act;
    act();
    return false;
  }

private:
  std::function<void()> m_act;
  bool& m_isAlive;
};

class TypeIcon : public testing::Test {
protected:
  /// The data of the shape is there as far as that could be tried.
  void Fail()
  {
    subject.shapeInstance->status = zelk::ShapeDataFailed;
    subject.ShowIn(SceneKind::Shapes);
  }
  void Reject()
  {
    subject.shapeInstance->isRejected = true;
    subject.ShowIn(SceneKind::Shapes);
  }
  [[nodiscard]] int GetIconInOpenGroups() const
  {
    const DisplaySwitches switches(false);
    return subject.GetIcon();
  }
  [[nodiscard]] int GetIconInCollapsedGroups() const
  {
    const DisplaySwitches switches(true);
    return subject.GetIcon();
  }

  structuretest::IconSubject subject;
  structuretest::IconInstance& instance = *subject.instance;
};

TEST_F(TypeIcon, InAComparison_IsThatOfItsSideAlsoForAProxyAndABody)
{
  subject.ShowIn(SceneKind::Comparison);
  subject.shapeInstance->isCompared = true;
  subject.shapeInstance->isComparedFirstItem = true;
  instance.isProxy = true;
  instance.isProxyExpanded = true;
  instance.hasProxyExpandFailed = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconComparedFirst);

  subject.shapeInstance->isComparedFirstItem = false;
  instance.isBody = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconComparedOther);
}

TEST_F(TypeIcon, InAComparisonOfOthers_IsTheOrdinaryOne)
{
  subject.ShowIn(SceneKind::Comparison);
  subject.shapeInstance->isComparedFirstItem = true;
  instance.hasShapeSource = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconPlain);

  instance.isProxy = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconProxy);
}

TEST_F(TypeIcon, InAComparison_GoesByTheShapeInstanceAndNotByTheAnswer)
{
  const auto scene = du::MakeSmart<structuretest::IconScene<zelk::GeometryCompareScene>>();
  scene->shapeInstance = subject.shapeInstance;
  scene->answer = false;
  subject.shapeInstance->isCompared = true;
  subject.scene = scene;

  EXPECT_EQ(subject.GetIcon(), guitree::IconComparedOther);
}

TEST_F(TypeIcon, OutsideOfAComparison_IsNeverThatOfASide)
{
  subject.ShowIn(SceneKind::Shapes);
  subject.shapeInstance->isCompared = true;

  EXPECT_EQ(subject.GetIcon(), guitree::IconNoSource);
}

TEST_F(TypeIcon, OfTheRootOfTheContainer_IsNeverThatOfAProxy)
{
  instance.isRootContainerRoot = true;
  instance.isProxy = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconNoSource);

  instance.isProxyExpanded = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconNoSource);

  instance.hasProxyExpandFailed = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconNoSource);
}

TEST_F(TypeIcon, OfAProxyThatFailedToExpand_TellsSoAlsoWhenItIsExpanded)
{
  instance.isProxy = true;
  instance.hasProxyExpandFailed = true;
  instance.isProxyExpanded = true;
  instance.hasShapeSource = true;

  EXPECT_EQ(subject.GetIcon(), guitree::IconProxyExpandFailed);
}

TEST_F(TypeIcon, OfAnExpandedProxyWithAShapeSource_IsThatOfItsShapeWhateverTheSceneIs)
{
  instance.isProxyExpanded = true;
  instance.hasShapeSource = true;
  Fail();

  subject.ShowIn(SceneKind::NoShapes);
  EXPECT_EQ(subject.GetIcon(), guitree::IconProxyShape);

  subject.ShowIn(SceneKind::None);
  EXPECT_EQ(subject.GetIcon(), guitree::IconProxyShape);
}

TEST_F(TypeIcon, OfAnExpandedProxyThatIsRejectedAndFailed_IsThatOfTheRejection)
{
  instance.isProxyExpanded = true;
  instance.hasShapeSource = true;
  Fail();
  EXPECT_EQ(subject.GetIcon(), guitree::IconProxyShapeFailed);

  Reject();
  EXPECT_EQ(subject.GetIcon(), guitree::IconProxyRejectedCopyrights);
}

TEST_F(TypeIcon, OfANativeShapeWithoutData_TellsAFailureOnlyIfTheShapeHasFailedThere)
{
  instance.hasShapeSource = true;
  Fail();
  subject.shapeInstance->iconShape->isFromTrask = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconPlain);

  subject.shapeInstance->iconShape->isFailedFromTrask = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconShapeFailed);
}

TEST_F(TypeIcon, OfAShapeInstanceWithoutAShape_TellsTheFailureOfItsData)
{
  instance.hasShapeSource = true;
  Fail();
  subject.shapeInstance->shape.Reset();

  EXPECT_EQ(subject.GetIcon(), guitree::IconShapeFailed);
}

TEST_F(TypeIcon, OutsideOfAComparison_GoesByTheAnswerAndNotByTheShapeInstance)
{
  const auto scene = du::MakeSmart<structuretest::IconScene<zelk::ShapeScene>>();
  scene->shapeInstance = subject.shapeInstance;
  scene->answer = false;
  subject.scene = scene;
  subject.shapeInstance->status = zelk::ShapeDataFailed;
  subject.shapeInstance->isRejected = true;
  instance.hasShapeSource = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconPlain);

  instance.isProxyExpanded = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconProxyShape);
}

TEST_F(TypeIcon, OfASiblingWhileGroupsAreOpen_IsThatOfAnyInstance)
{
  instance.isSibling = true;
  EXPECT_EQ(GetIconInOpenGroups(), guitree::IconNoSource);
  EXPECT_EQ(GetIconInCollapsedGroups(), guitree::IconCollapsedSiblingNoSource);

  instance.hasShapeSource = true;
  EXPECT_EQ(GetIconInOpenGroups(), guitree::IconPlain);
  EXPECT_EQ(GetIconInCollapsedGroups(), guitree::IconCollapsedSibling);
}

TEST_F(TypeIcon, OfABodyWithAThumbnailAlone_IsThatOfABodyWithoutShapeUntilItStandsForItsGroup)
{
  instance.isBody = true;
  instance.isSibling = true;
  instance.hasThumbnailSource = true;

  EXPECT_EQ(GetIconInOpenGroups(), guitree::IconBodyNoShapeSource);
  EXPECT_EQ(GetIconInCollapsedGroups(), guitree::IconCollapsedSiblingThumbnailOnly);
}

TEST_F(TypeIcon, OfABodyThatStandsForItsGroupAndFailed_IsThatOfAFailedBody)
{
  instance.isBody = true;
  instance.isSibling = true;
  instance.hasShapeSource = true;
  Fail();

  EXPECT_EQ(GetIconInCollapsedGroups(), guitree::IconBodyFailed);
}

TEST_F(TypeIcon, Asymmetry_AThumbnailOutranksRejectionAndFailure)
{
  instance.hasShapeSource = true;
  instance.hasThumbnailSource = true;
  Fail();
  Reject();
  EXPECT_EQ(subject.GetIcon(), guitree::IconThumbnail);

  instance.hasThumbnailSource = false;
  EXPECT_EQ(subject.GetIcon(), guitree::IconRejectedCopyrights);
}

TEST_F(TypeIcon, Asymmetry_OnlyOfAFailureDoesABodyComeBeforeASibling)
{
  instance.hasShapeSource = true;
  instance.isSibling = true;
  instance.isConstruction = true;
  EXPECT_EQ(GetIconInCollapsedGroups(), guitree::IconCollapsedSibling);

  Fail();
  EXPECT_EQ(GetIconInCollapsedGroups(), guitree::IconConstructionBodyFailed);
  instance.isBody = true;
  EXPECT_EQ(GetIconInCollapsedGroups(), guitree::IconBodyFailed);

  Reject();
  EXPECT_EQ(GetIconInCollapsedGroups(), guitree::IconCollapsedSiblingRejectedCopyrights);
  instance.hasThumbnailSource = true;
  EXPECT_EQ(GetIconInCollapsedGroups(), guitree::IconCollapsedSiblingThumbnail);
}

TEST_F(TypeIcon, Asymmetry_ARejectedBodyLooksLikeAnyRejectedInstance)
{
  instance.hasShapeSource = true;
  Reject();
  EXPECT_EQ(subject.GetIcon(), guitree::IconRejectedCopyrights);

  instance.isBody = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconRejectedCopyrights);
  instance.isConstruction = true;
  EXPECT_EQ(subject.GetIcon(), guitree::IconRejectedCopyrights);
}

TEST_F(TypeIcon, OfNoInstance_IsThePlainOne)
{
  EXPECT_EQ(guitree::StructureTreeState::GetUnloadedTypeIconStatic({}, subject.scene), guitree::IconPlain);
}

TEST_F(TypeIcon, OfAState_IsTheSameDecisionAndThePlainOneForWhatIsNoInstance)
{
  const auto tree = du::MakeSmart<guitree::GuiTree>(nullptr);
  const auto state = du::MakeSmart<guitree::StructureTreeState>(*tree, true);
  const auto other = du::MakeSmart<testsupport::PlainBaseInstance>("other");
  instance.hasShapeSource = true;
  Fail();

  EXPECT_EQ(state->GetUnloadedTypeIcon(&instance, subject.scene), guitree::IconShapeFailed);
  EXPECT_EQ(state->GetUnloadedTypeIcon(&instance, nullptr), guitree::IconPlain);
  EXPECT_EQ(state->GetUnloadedTypeIcon(other.Get(), subject.scene), 0);
  EXPECT_EQ(state->GetUnloadedTypeIcon(nullptr, subject.scene), 0);
}

TEST_F(TypeIcon, OfAState_HoldsTheInstanceForAsLongAsItIsAsked)
{
  const auto tree = du::MakeSmart<guitree::GuiTree>(nullptr);
  const auto state = du::MakeSmart<guitree::StructureTreeState>(*tree, true);
  bool isAlive = false;
  bool wasHeld = false;
  du::SmartPtr<ActingInstance> holder;
  const auto letGo = [&] {
    holder.Reset();
    wasHeld = isAlive;
  };
  holder = du::MakeSmart<ActingInstance>(letGo, isAlive);

  EXPECT_EQ(state->GetUnloadedTypeIcon(holder.Get(), nullptr), guitree::IconNoSource);

  EXPECT_TRUE(wasHeld);
  EXPECT_FALSE(isAlive);
}

TEST_F(TypeIcon, OfAProxy_AsksForNothingBeyondIt)
{
  instance.isProxy = true;
  EXPECT_THAT(subject.GetQuestions(),
              ElementsAre("IsRootContainerRoot", "HasProxyExpandFailed", "IsProxyExpanded", "IsProxy"));

  instance.isProxyExpanded = true;
  EXPECT_THAT(subject.GetQuestions(),
              ElementsAre("IsRootContainerRoot", "HasProxyExpandFailed", "IsProxyExpanded", "HasShapeSource"));

  instance.hasProxyExpandFailed = true;
  EXPECT_THAT(subject.GetQuestions(), ElementsAre("IsRootContainerRoot", "HasProxyExpandFailed"));
}

TEST_F(TypeIcon, OfAnExpandedProxyWithAShapeSource_AsksForItsShapeAndForNoKind)
{
  instance.isProxyExpanded = true;
  instance.hasShapeSource = true;
  subject.ShowIn(SceneKind::Shapes);

  EXPECT_THAT(subject.GetQuestions(), ElementsAre("IsRootContainerRoot", "HasProxyExpandFailed", "IsProxyExpanded",
                                                  "HasShapeSource", "GetShapeInstance", "GetShape", "IsFromTrask",
                                                  "IsFailedFromTrask", "GetShapeDataStatus", "HasRejectedCopyrights"));
}

TEST_F(TypeIcon, OfTheRootOfTheContainer_AsksForNothingOfProxies)
{
  const DisplaySwitches switches(true);
  instance.isRootContainerRoot = true;

  EXPECT_THAT(subject.GetQuestions(), ElementsAre("IsRootContainerRoot", "IsMultiInstancedSibling",
                                                  "IsBodyTypeInstance", "IsConstructionBodyTypeInstance",
                                                  "IsPlainIconInstance", "HasShapeSource", "HasThumbnailSource"));
}

TEST_F(TypeIcon, WhileGroupsAreOpen_AsksForNoSiblings)
{
  const DisplaySwitches switches(false);
  instance.isRootContainerRoot = true;
  instance.isSibling = true;
  instance.hasShapeSource = true;
  subject.ShowIn(SceneKind::Shapes);

  EXPECT_THAT(subject.GetQuestions(),
              ElementsAre("IsRootContainerRoot", "IsBodyTypeInstance", "IsConstructionBodyTypeInstance",
                          "IsPlainIconInstance", "HasShapeSource", "GetShapeInstance", "GetShape", "IsFromTrask",
                          "IsFailedFromTrask", "GetShapeDataStatus", "HasRejectedCopyrights", "HasThumbnailSource"));
}

TEST_F(TypeIcon, InAComparison_AsksForNothingOfTheInstance)
{
  subject.ShowIn(SceneKind::Comparison);
  subject.shapeInstance->isCompared = true;

  EXPECT_THAT(subject.GetQuestions(), ElementsAre("GetShapeInstance", "IsCompared", "IsComparedFirstItem"));
}

TEST_F(TypeIcon, OutsideOfAComparison_AsksForNoComparison)
{
  instance.isProxy = true;
  subject.ShowIn(SceneKind::Shapes);

  EXPECT_THAT(subject.GetQuestions(), testing::Not(testing::Contains(testing::HasSubstr("Compared"))));
}

}  // namespace
