#include <gmock/gmock.h>

#include <QAction>
#include <QLineEdit>
#include <QTest>

#include "support/Stage.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using viewertest::s_leaf;
using viewertest::s_pump;
using viewertest::s_pumpParts;

constexpr int s_visible = qthost::GuiTreeItemModel::VisibleColumn;

class Structure : public viewertest::Stage {
protected:
  void SetUp() override
  {
    Stage::SetUp();
    window->GetStructure().GetPanel().SetTypingPause(0);
    OpenFromAbove({s_pump});
    Rows().expandAll();
    Settle();
  }
  [[nodiscard]] qthost::GuiTreeItemModel& Model() { return window->GetStructure().GetModel(); }
  void Filter(const QString& text)
  {
    QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
    QWidget* const line = QApplication::focusWidget();
    ASSERT_NE(qobject_cast<QLineEdit*>(line), nullptr);
    QTest::keyClicks(line, text);
    QTest::keyClick(line, Qt::Key_Return);
    WaitForFilter();
  }
  void WaitForFilter()
  {
    Settle();
    WaitFor([this] { return !Model().IsCalculating(); }, "the filter");
    Settle();
  }
};

TEST_F(Structure, Open_MakesARowForEachInstance)
{
  // The root above all files, and what the sample unfolds to.
  EXPECT_EQ(Model().GetRowCount(), 32U);
  EXPECT_TRUE(RowOf("крышка").isValid());
}

TEST_F(Structure, Open_ShowsTheRowsBelowTheFile)
{
  Open({s_leaf});

  EXPECT_TRUE(Rows().isExpanded(RowOf("Files")));
  EXPECT_FALSE(Rows().visualRect(RowOf("leaf")).isEmpty());
}

TEST_F(Structure, AClickOnARow_HighlightsItsPartInTheView)
{
  const QPoint place = PlaceOf("core");
  const QColor before = ColorAt(place);

  ClickRow("core");

  EXPECT_THAT(GetSelected(), ElementsAre("core"));
  EXPECT_TRUE(window->GetModel().IsSelected(*Find("core")));
  EXPECT_NE(ColorAt(place), before);
}

TEST_F(Structure, AClickInTheView_SelectsItsRow)
{
  Click(PlaceOf("core"));
  EXPECT_TRUE(Rows().selectionModel()->isRowSelected(RowOf("core").row(), RowOf("core").parent()));

  Click(PlaceOf("Αντλία"));
  EXPECT_TRUE(Rows().selectionModel()->isRowSelected(RowOf("Αντλία").row(), RowOf("Αντλία").parent()));
  EXPECT_FALSE(Rows().selectionModel()->isRowSelected(RowOf("core").row(), RowOf("core").parent()));
}

TEST_F(Structure, AClickInTheView_OpensTheBranchOfItsRow)
{
  Rows().collapseAll();

  Click(PlaceOf("core"));

  EXPECT_FALSE(Rows().visualRect(RowOf("core")).isEmpty());
}

TEST_F(Structure, AClickOnTheEye_HidesAndShowsInTheView)
{
  ClickRow("valve block:1", s_visible);
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts - 3);
  EXPECT_FALSE(IsVisible("core"));

  ClickRow("valve block:1", s_visible);
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts);
}

TEST_F(Structure, HidingAPart_MakesTheEyeAboveItMixed)
{
  const auto stateOf = [this](const std::string& name) {
    return RowOf(name).data(qthost::GuiTreeItemModel::VisibleStateRole).toInt();
  };
  const int before = stateOf("bolt set:1");

  Select("bolt:2");
  Press(Qt::CTRL | Qt::Key_H);

  EXPECT_NE(stateOf("bolt set:1"), before);
  EXPECT_NE(stateOf("bolt:2"), stateOf("bolt set:1"));
}

TEST_F(Structure, Rows_TurnToLoadedWhenTheirShapesAreThere)
{
  const auto iconOf = [this](const std::string& name) {
    return RowOf(name).data(qthost::GuiTreeItemModel::TypeIconRole).toInt();
  };

  EXPECT_EQ(iconOf("frame:1") % 2, 1);
  EXPECT_EQ(iconOf("крышка") % 2, 1);
}

TEST_F(Structure, HoverOfARow_HighlightsInTheView)
{
  const QPoint place = PlaceOf("core");
  const QColor before = ColorAt(place);
  Rows().scrollTo(RowOf("core"));

  Move(*Rows().viewport(), Rows().visualRect(RowOf("core")).center());

  EXPECT_GT(ColorAt(place).blue(), before.blue());
  EXPECT_THAT(GetSelected(zelk::SelectionManager::AssocHlightList), ElementsAre("core"));
}

TEST_F(Structure, AFilter_LeavesTheMatchesAndTheView)
{
  Filter("bolt:1");

  EXPECT_TRUE(RowOf("bolt:1").isValid());
  EXPECT_FALSE(RowOf("frame:1").isValid());
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts);
}

TEST_F(Structure, AFileThatComesUnderAFilter_IsFilteredAsWell)
{
  Filter("leaf");
  ASSERT_FALSE(RowOf("pump").isValid());

  Open({s_leaf});
  WaitForFilter();

  EXPECT_TRUE(RowOf("leaf").isValid());
  EXPECT_FALSE(RowOf("pump").isValid());
}

TEST_F(Structure, CloseAll_UnderAFilterAtWork_LeavesTheRootAlone)
{
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(QApplication::focusWidget(), "o");

  window->GetSession().CloseAll();
  WaitForFilter();
  window->GetStructure().GetPanel().SetFilter({});
  WaitForFilter();

  EXPECT_EQ(Model().GetRowCount(), 1U);
}

TEST_F(Structure, WithoutBodies_TheirPartIsPicked)
{
  FindAction("Show bodies")->trigger();
  Settle();
  ASSERT_FALSE(RowOf("core").isValid());

  Click(PlaceOf("core"));
  EXPECT_THAT(GetSelected(), ElementsAre("valve block:1"));

  FindAction("Show bodies")->trigger();
  Settle();
  EXPECT_TRUE(RowOf("core").isValid());
}

TEST_F(Structure, CollapsedInstances_AreOneRow)
{
  FindAction("Collapse equal instances")->trigger();
  WaitForFilter();
  EXPECT_FALSE(RowOf("bolt set:2").isValid());

  FindAction("Collapse equal instances")->trigger();
  WaitForFilter();
  EXPECT_TRUE(RowOf("bolt set:2").isValid());
}

TEST_F(Structure, AClosedDock_CatchesUpWhenItIsOpened)
{
  FindAction("Structure")->trigger();
  Settle();
  ASSERT_FALSE(window->GetStructure().isVisible());
  Open({s_leaf});

  FindAction("Structure")->trigger();
  Settle();

  EXPECT_TRUE(RowOf("leaf").isValid());
}

TEST_F(Structure, FindWithTheDockClosed_OpensIt)
{
  window->GetStructure().close();
  Settle();

  Press(Qt::CTRL | Qt::Key_F);

  EXPECT_TRUE(window->GetStructure().isVisible());
  EXPECT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
}

TEST_F(Structure, Columns_ShowPropertiesAndAreRemembered)
{
  FindAction("Product Name")->trigger();
  const QString before = RowOf("bolt:1").siblingAtColumn(2).data().toString();

  window->close();
  window = std::make_unique<viewer::MainWindow>();
  Show();
  Open({s_pump});

  EXPECT_EQ(before, "bolt M1");
  EXPECT_EQ(Rows().model()->columnCount(), 3);
  EXPECT_EQ(RowOf("bolt:1").siblingAtColumn(2).data().toString(), "bolt M1");
  FindAction("Product Name")->trigger();
  EXPECT_EQ(Rows().model()->columnCount(), 2);
}

TEST_F(Structure, Filter_IsRemembered)
{
  Filter("washer");

  window->close();
  window = std::make_unique<viewer::MainWindow>();
  Show();
  Open({s_pump});
  WaitForFilter();

  EXPECT_EQ(window->GetStructure().GetPanel().GetFilter().text, "washer");
  EXPECT_FALSE(RowOf("frame:1").isValid());
  EXPECT_TRUE(RowOf("washer:1").isValid());
}

}  // namespace
