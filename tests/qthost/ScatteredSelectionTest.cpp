// Rows that are no neighbours, so many that the panel paints its rows by itself.

#include <gmock/gmock.h>

#include "PanelStage.h"

namespace qthosttest {
namespace {

constexpr int s_parts = 2100;

std::string MakeTree()
{
  std::string text = "root[plate[bolt[pin] nut] frame[bar]";
  for (int i = 0; i < s_parts; ++i) {
    text += " part" + std::to_string(i);
  }
  return text + "]";
}

class ScatteredSelection : public testing::Test {
protected:
  void SetUp() override
  {
    stage.Open();
    stage.GetView().setExpanded(stage.FindIndex("frame"), false);
    stage.GetView().setFocus();
  }
  /// Every second part below the given number, and some above.
  void SelectBelow(int end)
  {
    std::vector<std::string> names{"plate", "pin", "frame"};
    for (int i = 0; i < end; i += 2) {
      names.push_back("part" + std::to_string(i));
    }
    stage.Select(names);
    stage.GetView().selectionModel()->setCurrentIndex(stage.FindIndex("part1"), QItemSelectionModel::NoUpdate);
    stage.GetView().scrollToTop();
    stage.RunLoops();
  }
  [[nodiscard]] QImage GetPicture() const { return stage.GetView().viewport()->grab().toImage(); }

  PanelStage stage{MakeTree()};
};

TEST_F(ScatteredSelection, OfThousandsOfRows_LooksAsThatOfAFew)
{
  SelectBelow(40);
  const QImage few = GetPicture();

  SelectBelow(s_parts);
  const QImage many = GetPicture();

  EXPECT_GT(stage.GetView().selectionModel()->selection().size(), 1000);
  EXPECT_EQ(many, few);
}

TEST_F(ScatteredSelection, OfThousandsOfRowsFromRightToLeft_LooksAsThatOfAFew)
{
  stage.panel.setLayoutDirection(Qt::RightToLeft);
  SelectBelow(40);
  const QImage few = GetPicture();

  SelectBelow(s_parts);

  EXPECT_EQ(GetPicture(), few);
}

TEST_F(ScatteredSelection, ThatGrowsByTheUsersClick_IsThatOfTheKernel)
{
  SelectBelow(s_parts);
  const QImage before = GetPicture();

  QTest::mouseClick(stage.GetView().viewport(), Qt::LeftButton, Qt::ControlModifier, stage.GetCell("part3", 0));
  stage.RunLoops();

  EXPECT_THAT(stage.GetSelectedInKernel(), testing::SizeIs(3 + s_parts / 2 + 1));
  EXPECT_NE(GetPicture(), before);
}

TEST_F(ScatteredSelection, ThatIsReplacedByAClick_IsOneRow)
{
  SelectBelow(s_parts);

  stage.Click("part3", 0);
  stage.RunLoops();

  EXPECT_THAT(stage.GetSelectedInKernel(), testing::ElementsAre("part3"));
  EXPECT_EQ(stage.GetView().selectionModel()->selectedRows().size(), 1);
}

}  // namespace
}  // namespace qthosttest
