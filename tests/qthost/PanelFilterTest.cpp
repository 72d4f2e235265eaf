#include <gmock/gmock.h>

#include "PanelStage.h"

namespace qthosttest {
namespace {

using testing::ElementsAre;

class FilterOfAPanel : public testing::Test {
protected:
  void SetUp() override { stage.Open(); }

  PanelStage stage{"root[plate[bolt nut] rod]"};
};

TEST_F(FilterOfAPanel, Typing_LeavesWhatMatchesAndTellsHowMany)
{
  stage.Type("bo");

  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt]]");
  EXPECT_EQ(stage.GetStatus(), "1 match");
  EXPECT_THAT(stage.GetExpanded(), ElementsAre("root", "plate"));
}

TEST_F(FilterOfAPanel, WithoutAFilter_TellsTheRows)
{
  EXPECT_EQ(stage.GetStatus(), "5 rows");
}

TEST_F(FilterOfAPanel, Escape_ClearsTheTextAndShowsAllRowsAtOnce)
{
  stage.Type("bo");
  stage.WaitForFilter();

  stage.Press(Qt::Key_Escape);

  EXPECT_EQ(stage.GetLine().text(), "");
  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut] rod]");
}

}  // namespace
}  // namespace qthosttest
