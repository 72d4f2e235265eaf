#include <gmock/gmock.h>

#include <QMenu>
#include <QTimer>
#include <QToolButton>

#include "PanelStage.h"
#include "memkernel/InstanceFlags.h"

namespace qthosttest {
namespace {

using qthost::FilterSettings;

class OptionsOfAPanel : public testing::Test {
protected:
  void SetUp() override { stage.Open(); }
  void SetLayer(const std::string& name, const char* layer)
  {
    stage.tree.SetProperty(stage[name], "Instance", "Layer", layer);
  }
  [[nodiscard]] std::string FilterBy(const QString& text)
  {
    stage.Type(text);
    stage.WaitForFilter();
    return stage.GetText();
  }
  [[nodiscard]] std::string FilterByChoice(const QString& choice)
  {
    stage.Choose(choice);
    stage.WaitForFilter();
    return stage.GetText();
  }

  PanelStage stage{"root[plate[bolt nut] rod Bolts]"};
};

TEST_F(OptionsOfAPanel, MatchCase_TellsUpperAndLowerCaseApart)
{
  stage.Choose("Match case");

  EXPECT_EQ(FilterBy("bolt"), "root[plate[bolt]]");
}

TEST_F(OptionsOfAPanel, WholeWords_LeavePartsOfWordsOut)
{
  stage.Choose("Whole words");

  EXPECT_EQ(FilterBy("bolt"), "root[plate[bolt]]");
}

TEST_F(OptionsOfAPanel, OnlySelected_ShowsTheSelection)
{
  stage.Select({"nut", "rod"});

  EXPECT_EQ(FilterByChoice("Only selected"), "root[plate[nut] rod]");
}

TEST_F(OptionsOfAPanel, OnlyVisibleAndOnlyHidden_TakeEachOthersPlace)
{
  stage.scene->SetVisible(stage.GetShape("nut"), false);

  EXPECT_EQ(FilterByChoice("Only visible"), "root[plate[bolt] rod Bolts]");
  EXPECT_EQ(FilterByChoice("Only hidden"), "root[plate[nut]]");
  EXPECT_FALSE(stage.FindAction("filterMenu", "Only visible").isChecked());
  EXPECT_EQ(FilterByChoice("Only hidden"), "root[plate[bolt nut] rod Bolts]");
}

TEST_F(OptionsOfAPanel, OnlyWithAnIssue_ShowsFailedShapes)
{
  stage.tree.SetFlags(stage["rod"], memkernel::InstanceShapeSource, true);
  stage.scene->SetShapeDataStatus(stage.GetShape("rod"), zelk::ShapeDataFailed);
  stage.Settle();

  EXPECT_EQ(FilterByChoice("Only with an issue"), "root[rod]");
}

TEST_F(OptionsOfAPanel, OnlyParts_LeavesAssembliesAsTheWayToThem)
{
  stage.Choose("As a list");

  EXPECT_EQ(FilterByChoice("Only parts"), "root[Bolts bolt nut rod]");
}

TEST_F(OptionsOfAPanel, ShowSiblings_BringsWhatStandsBesideAMatch)
{
  stage.Choose("Show siblings");

  EXPECT_EQ(FilterBy("nut"), "root[plate[bolt nut]]");
}

TEST_F(OptionsOfAPanel, FollowChanges_FiltersAgainWhenTheTreeHasChanged)
{
  stage.Choose("Follow changes");
  stage.Type("bolt");
  stage.WaitForFilter();

  stage.kernel.Add("rod", "bolt2");
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt] rod[bolt2] Bolts]");
}

TEST_F(OptionsOfAPanel, List_IsByNameAndStandsBelowTheRoot)
{
  stage.Type("t");
  stage.WaitForFilter();

  EXPECT_EQ(FilterByChoice("As a list"), "root[Bolts bolt nut plate]");
  EXPECT_EQ(stage.GetStatus(), "5 matches");
}

TEST_F(OptionsOfAPanel, ListWithoutAnythingToLookFor_HasAllRows)
{
  EXPECT_EQ(FilterByChoice("As a list"), "root[Bolts bolt nut plate rod]");
  EXPECT_EQ(stage.GetStatus(), "6 rows");
  EXPECT_EQ(FilterByChoice("As a list"), "root[plate[bolt nut] rod Bolts]");
}

TEST_F(OptionsOfAPanel, ListButton_IsTheSameChoice)
{
  auto& button = stage.Find<QToolButton>("listToggle");

  QTest::mouseClick(&button, Qt::LeftButton);
  stage.WaitForFilter();

  EXPECT_TRUE(stage.panel.GetFilter().isList);
  EXPECT_TRUE(stage.FindAction("filterMenu", "As a list").isChecked());
  QTest::keyClick(&button, Qt::Key_Space);
  stage.WaitForFilter();
  EXPECT_FALSE(stage.panel.GetFilter().isList);
}

TEST_F(OptionsOfAPanel, SearchInColumns_OffersThePropertiesOfTheModel)
{
  SetLayer("rod", "painted");
  stage.model.SetPropertyColumns({{du::Symbol::EMPTY, "Layer"}});

  stage.Choose("Layer", "searchMenu");

  EXPECT_EQ(FilterBy("paint"), "root[rod]");
  stage.Choose("Layer", "searchMenu");
  stage.WaitForFilter();
  EXPECT_EQ(stage.GetText(), "root");
}

TEST_F(OptionsOfAPanel, SearchInNames_CanBeTurnedOff)
{
  SetLayer("rod", "bolted");
  stage.model.SetPropertyColumns({{du::Symbol::EMPTY, "Layer"}});
  stage.Choose("Layer", "searchMenu");

  stage.Choose("Name", "searchMenu");

  EXPECT_EQ(FilterBy("bolt"), "root[rod]");
}

TEST_F(OptionsOfAPanel, TextThatIsStillBeingTyped_GoesAlongWithAChoice)
{
  stage.panel.SetTypingPause(3'600'000);
  stage.Type("bolt");

  EXPECT_EQ(FilterByChoice("Match case"), "root[plate[bolt]]");
}

TEST_F(OptionsOfAPanel, CriteriaInTheMenu_AreToldOnItsButton)
{
  auto& options = stage.Find<QToolButton>("filterOptions");
  ASSERT_TRUE(options.text().isEmpty());

  stage.Choose("Only parts");
  stage.Choose("Only hidden");

  EXPECT_EQ(options.text(), "(2)");
  EXPECT_EQ(options.accessibleDescription(), "Only parts, Only hidden");
  EXPECT_EQ(options.toolTip(), "Filter options: Only parts, Only hidden");
}

TEST_F(OptionsOfAPanel, ClearTheFilter_TurnsOffWhatLeavesRowsOutAlone)
{
  stage.Type("rod");
  stage.Choose("Only parts");
  stage.Choose("Match case");
  stage.WaitForFilter();

  stage.Choose("Clear the filter");
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt nut] rod Bolts]");
  EXPECT_TRUE(stage.panel.GetFilter().matchesCase);
  EXPECT_FALSE(stage.FindAction("filterMenu", "Only parts").isChecked());
}

TEST_F(OptionsOfAPanel, Menu_OpensByKey)
{
  auto& options = stage.Find<QToolButton>("filterOptions");
  auto& menu = stage.Find<QMenu>("filterMenu");
  bool wasOpen = false;
  QTimer::singleShot(0, &menu, [&] {
    wasOpen = menu.isVisible();
    QTest::keyClick(&menu, Qt::Key_Down);
    QTest::keyClick(&menu, Qt::Key_Return);
  });

  QTest::keyClick(&options, Qt::Key_Space);

  EXPECT_TRUE(wasOpen);
  EXPECT_TRUE(stage.panel.GetFilter().matchesCase);
}

}  // namespace
}  // namespace qthosttest
