#include <gmock/gmock.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include "support/Stage.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using viewertest::s_pump;
using viewertest::s_pumpParts;

constexpr int s_visible = qthost::GuiTreeItemModel::VisibleColumn;

class PanelKeys : public viewertest::Stage {
protected:
  void SetUp() override
  {
    Stage::SetUp();
    OpenFromAbove({s_pump});
  }
  [[nodiscard]] QLineEdit& Line() { return *window->findChild<QLineEdit*>("filterLine"); }
  /// Makes a row the current one, and gives the rows the keys.
  void GoTo(const std::string& name)
  {
    ClickRow(name);
    ASSERT_TRUE(Rows().hasFocus());
  }
  void PressInRows(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
  {
    QTest::keyClick(&Rows(), key, modifiers);
    Settle();
  }
  void WaitForRows(const std::string& rows)
  {
    WaitFor([&] { return ReadRows() == rows; }, rows.c_str());
  }
  void WaitForFilter()
  {
    Settle();
    WaitFor([this] { return !window->GetStructure().GetModel().IsCalculating(); }, "the filter");
    Settle();
  }
  void ClickHeader(int column)
  {
    const QHeaderView& header = *Rows().header();
    const QPoint place(header.sectionViewportPosition(column) + 10, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
    WaitForFilter();
  }
  /// Left of the name, where the mark of a branch is.
  void ClickMark(const std::string& name)
  {
    const QRect cell = Rows().visualRect(RowOf(name));
    QTest::mouseClick(Rows().viewport(), Qt::LeftButton, {},
                      {cell.left() - Rows().indentation() / 2, cell.center().y()});
    Settle();
  }
  [[nodiscard]] bool IsSeen(const std::string& name) { return !Rows().visualRect(RowOf(name)).isEmpty(); }
  /// Chooses in the menu that the next key or click opens, by its letters.
  void AnswerMenu(const QString& letters)
  {
    QTimer::singleShot(0, window.get(), [letters] {
      for (const QChar letter : letters) {
        QTest::keyClick(QApplication::activePopupWidget(), letter.toLatin1());
      }
    });
  }
  void OpenRowMenu()
  {
    PressInRows(Qt::Key_Menu);
    if (!QApplication::activePopupWidget()) {
      // The platform makes this event of the key.
      const QPoint place = Rows().viewport()->rect().center();
      QContextMenuEvent event(QContextMenuEvent::Keyboard, place, Rows().viewport()->mapToGlobal(place));
      QApplication::sendEvent(&Rows(), &event);
    }
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  }
};

TEST_F(PanelKeys, ClickOnTheMarkOfABranch_OpensAndClosesIt)
{
  ASSERT_FALSE(IsSeen("bolt:1"));

  ClickMark("bolt set:1");
  EXPECT_TRUE(IsSeen("bolt:1"));

  ClickMark("bolt set:1");
  EXPECT_FALSE(IsSeen("bolt:1"));
}

TEST_F(PanelKeys, RightAndLeft_OpenAndCloseABranch)
{
  GoTo("bolt set:1");

  PressInRows(Qt::Key_Right);
  EXPECT_TRUE(IsSeen("bolt:1"));
  PressInRows(Qt::Key_Right);
  EXPECT_THAT(GetSelected(), ElementsAre("bolt:1"));

  PressInRows(Qt::Key_Left);
  PressInRows(Qt::Key_Left);
  EXPECT_THAT(GetSelected(), ElementsAre("bolt set:1"));
  EXPECT_FALSE(IsSeen("bolt:1"));
}

TEST_F(PanelKeys, Asterisk_OpensAllBelow)
{
  GoTo("pump");

  PressInRows(Qt::Key_Asterisk);

  EXPECT_TRUE(IsSeen("bolt:1"));
  EXPECT_TRUE(Rows().isExpanded(RowOf("valve block:1")));
}

TEST_F(PanelKeys, Arrows_SelectInTheView)
{
  GoTo("pump");

  PressInRows(Qt::Key_Down);
  EXPECT_TRUE(window->GetModel().IsSelected(*Find("frame:1")));
  EXPECT_FALSE(window->GetModel().IsSelected(*Find("core")));

  PressInRows(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_THAT(GetSelected(), ElementsAre("bolt set:1", "frame:1"));
  EXPECT_TRUE(window->GetModel().IsSelected(*Find("bolt:1")));
}

TEST_F(PanelKeys, ClickInTheView_MakesItsRowTheOneThatTheKeysGoOnFrom)
{
  Click(PlaceOf("core"));
  ASSERT_TRUE(IsSeen("core"));
  ASSERT_TRUE(Rows().selectionModel()->isRowSelected(RowOf("core").row(), RowOf("core").parent()));

  Rows().setFocus();
  PressInRows(Qt::Key_Space);

  EXPECT_FALSE(IsVisible("core"));
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts - 1);
}

TEST_F(PanelKeys, ClicksWithControl_SelectSeveralOnBothSides)
{
  ClickRow("frame:1");
  ClickRow("names:1", 0, Qt::ControlModifier);
  EXPECT_TRUE(window->GetModel().IsSelected(*Find("frame:1")));
  EXPECT_TRUE(window->GetModel().IsSelected(*Find("Αντλία")));

  Click(PlaceOf("core"), Qt::ControlModifier);

  EXPECT_THAT(GetSelected(), ElementsAre("core", "frame:1", "names:1"));
  EXPECT_EQ(Rows().selectionModel()->selectedRows().size(), 3);
}

TEST_F(PanelKeys, Space_HidesAndShowsWhatIsSelected)
{
  GoTo("valve block:1");

  PressInRows(Qt::Key_Space);
  EXPECT_FALSE(IsVisible("core"));
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts - 3);

  PressInRows(Qt::Key_Space);
  EXPECT_TRUE(IsVisible("core"));
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts);
}

TEST_F(PanelKeys, EyeOfAPartlyHiddenBranch_ShowsAllOfIt)
{
  Select("bolt:2");
  Press(Qt::CTRL | Qt::Key_H);
  ASSERT_EQ(window->GetModel().GetShownCount(), s_pumpParts - 1);

  ClickRow("bolt set:1", s_visible);

  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts);
}

TEST_F(PanelKeys, MenuOfTheRows_HidesShowsAndShowsOnlyOne)
{
  GoTo("valve block:1");

  OpenRowMenu();
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_H);
  Settle();
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts - 3);

  OpenRowMenu();
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_S);
  Settle();
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts);

  OpenRowMenu();
  QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_O);
  Settle();
  EXPECT_EQ(window->GetModel().GetShownCount(), 3U);
}

TEST_F(PanelKeys, Typing_FiltersByItself)
{
  QTest::mouseClick(&Line(), Qt::LeftButton);
  QTest::keyClicks(&Line(), "valve");

  WaitForRows("Files[pump[valve block:1]]");
}

TEST_F(PanelKeys, Escape_EndsTheFilterAndLeavesTheSelection)
{
  Select("core");
  QTest::keyClicks(&Line(), "valve");
  WaitForRows("Files[pump[valve block:1]]");

  QTest::keyClick(&Line(), Qt::Key_Escape);
  WaitForFilter();

  EXPECT_TRUE(RowOf("frame:1").isValid());
  EXPECT_THAT(GetSelected(), ElementsAre("core"));
}

TEST_F(PanelKeys, DownAndFind_LeadToTheRowsAndBack)
{
  QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
  ASSERT_TRUE(Line().hasFocus());

  QTest::keyClick(&Line(), Qt::Key_Down);
  EXPECT_TRUE(Rows().hasFocus());

  QTest::keyClick(&Rows(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(Line().hasFocus());
}

TEST_F(PanelKeys, ClicksOnTheHeader_SortBothWaysAndBack)
{
  const std::string before = ReadRows();

  ClickHeader(0);
  EXPECT_THAT(ReadRows(), StartsWith("Files[pump[bolt set:1[bolt:1 bolt:2 bolt:3 washer:1] bolt set:2["));
  ClickHeader(0);
  EXPECT_THAT(ReadRows(), StartsWith("Files[pump[valve block:1["));

  ClickHeader(0);
  EXPECT_EQ(ReadRows(), before);
}

TEST_F(PanelKeys, MenuOfTheFilter_SortsByKey)
{
  auto& options = *window->findChild<QToolButton*>("filterOptions");
  options.setFocus(Qt::TabFocusReason);
  AnswerMenu("on");

  QTest::keyClick(&options, Qt::Key_Space);
  WaitForFilter();

  EXPECT_THAT(ReadRows(), StartsWith("Files[pump[bolt set:1[bolt:1 bolt:2 bolt:3 washer:1] bolt set:2["));
}

TEST_F(PanelKeys, ListButton_MakesAListAndATreeAgain)
{
  const std::string before = ReadRows();
  auto& list = *window->findChild<QToolButton*>("listToggle");

  QTest::mouseClick(&list, Qt::LeftButton);
  WaitForFilter();
  EXPECT_THAT(ReadRows(), StartsWith("Files["));
  EXPECT_EQ(RowOf("core").parent(), RowOf("Files"));
  EXPECT_EQ(window->GetStructure().GetModel().GetRowCount(), 32U);

  list.setFocus(Qt::TabFocusReason);
  QTest::keyClick(&list, Qt::Key_Space);
  WaitForFilter();
  EXPECT_EQ(ReadRows(), before);
}

TEST_F(PanelKeys, RowOfAList_IsSelectedInBothDirections)
{
  QTest::mouseClick(window->findChild<QToolButton*>("listToggle"), Qt::LeftButton);
  QTest::keyClicks(&Line(), "block");
  WaitForRows("Files[valve block:1]");

  ClickRow("valve block:1");
  EXPECT_TRUE(window->GetModel().IsSelected(*Find("core")));
  QTest::keyClick(&Line(), Qt::Key_Escape);
  WaitForFilter();

  Click(PlaceOf("Αντλία"));
  EXPECT_THAT(GetSelected(), ElementsAre("Αντλία"));
  EXPECT_TRUE(Rows().selectionModel()->isRowSelected(RowOf("Αντλία").row(), RowOf("Αντλία").parent()));
}

TEST_F(PanelKeys, ClosedWhileShapesLoad_ShowsThemLoadedWhenItIsOpenedAgain)
{
  window->GetSession().CloseAll();
  window->Open({s_pump});
  WaitFor([this] { return !window->GetSession().IsReading(); }, "the file");
  ASSERT_GT(window->GetBinding().GetLoadingCount(), 0U);

  window->GetStructure().close();
  WaitForShapes();
  FindAction("Structure")->trigger();
  Settle();

  EXPECT_EQ(RowOf("frame:1").data(qthost::GuiTreeItemModel::TypeIconRole).toInt() % 2, 1);
  EXPECT_EQ(RowOf("frame:1").data(qthost::GuiTreeItemModel::VisibleStateRole).toInt(), guitree::VisibleStateVisible);
}

}  // namespace
