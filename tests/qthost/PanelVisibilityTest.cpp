#include <gmock/gmock.h>

#include "PanelStage.h"
#include "VisibilityDelegate.h"
#include "guitree/VisibleState.h"

namespace qthosttest {
namespace {

using qthost::GuiTreeItemModel;
using testing::ElementsAre;
using testing::IsEmpty;

class EyesOfAPanel : public testing::Test {
protected:
  void SetUp() override { stage.Open(); }
  void ClickEye(const std::string& name) { stage.Click(name, GuiTreeItemModel::VisibleColumn); }
  [[nodiscard]] QImage GetPicture(const std::string& name) const
  {
    const QRect cell = stage.GetView().visualRect(stage.FindIndex(name).siblingAtColumn(1));
    return stage.GetView().viewport()->grab(cell).toImage();
  }

  PanelStage stage{"root[plate[bolt nut] rod]"};
};

TEST_F(EyesOfAPanel, Click_HidesAndShowsTheRow)
{
  ClickEye("rod");
  ClickEye("rod");

  EXPECT_THAT(stage.asked, ElementsAre("hide rod", "show rod"));
}

TEST_F(EyesOfAPanel, ClickOnAMixedOne_ShowsAllBelow)
{
  stage.scene->SetVisible(stage.GetShape("nut"), false);

  ClickEye("plate");

  EXPECT_THAT(stage.asked, ElementsAre("show plate"));
  EXPECT_THAT(stage.GetHidden(), IsEmpty());
}

// It stays mixed for ever.
TEST_F(EyesOfAPanel, ClickOnOneAboveWhatHasNoShape_HidesAndShowsTheRest)
{
  stage.scene->RemoveShapeInstance(stage["nut"]);

  ClickEye("plate");
  const std::vector<std::string> hidden = stage.GetHidden();
  ClickEye("plate");

  EXPECT_THAT(hidden, ElementsAre("bolt"));
  EXPECT_THAT(stage.GetHidden(), IsEmpty());
  EXPECT_THAT(stage.asked, ElementsAre("show plate", "hide plate", "show plate"));
}

TEST_F(EyesOfAPanel, Click_DoesNotSelect)
{
  stage.Select({"bolt"});

  ClickEye("rod");

  EXPECT_THAT(stage.GetSelectedInKernel(), ElementsAre("bolt"));
}

TEST_F(EyesOfAPanel, DoubleClick_IsTwoClicksAndLeavesTheBranchOpen)
{
  const QPoint place = stage.GetCell("plate", 1);

  QTest::mouseClick(stage.GetView().viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(stage.GetView().viewport(), Qt::LeftButton, {}, place);
  QTest::mouseRelease(stage.GetView().viewport(), Qt::LeftButton, {}, place);

  EXPECT_TRUE(stage.GetView().isExpanded(stage.FindIndex("plate")));
  EXPECT_THAT(stage.asked, ElementsAre("hide plate", "show plate"));
}

TEST_F(EyesOfAPanel, ClickWithoutAHook_DoesNothingButSelect)
{
  stage.panel.SetVisibilityHook({});

  ClickEye("rod");

  EXPECT_THAT(stage.asked, IsEmpty());
  EXPECT_THAT(stage.GetSelectedInKernel(), ElementsAre("rod"));
}

TEST_F(EyesOfAPanel, RightClick_SelectsAndHidesNothing)
{
  stage.Click("rod", GuiTreeItemModel::VisibleColumn, Qt::RightButton);

  EXPECT_THAT(stage.asked, IsEmpty());
  EXPECT_THAT(stage.GetSelectedInKernel(), ElementsAre("rod"));
}

TEST_F(EyesOfAPanel, VisibleHiddenAndMixed_LookDifferent)
{
  stage.scene->SetVisible(stage.GetShape("nut"), false);
  stage.RunLoops();

  EXPECT_NE(GetPicture("bolt"), GetPicture("nut"));
  EXPECT_NE(GetPicture("plate"), GetPicture("bolt"));
  EXPECT_NE(GetPicture("plate"), GetPicture("nut"));
  EXPECT_EQ(GetPicture("bolt"), GetPicture("rod"));
}

}  // namespace
}  // namespace qthosttest
