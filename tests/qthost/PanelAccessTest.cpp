#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>

#include "PanelStage.h"

namespace qthosttest {
namespace {

using testing::IsEmpty;
using Command = qthost::GuiTreePanel::Command;

class AccessToAPanel : public testing::Test {
protected:
  void SetUp() override { stage.Open(); }
  [[nodiscard]] std::vector<std::string> FindNameless(const QList<QWidget*>& widgets) const
  {
    std::vector<std::string> nameless;
    for (QWidget* const widget : widgets) {
      const QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(widget);
      if (!access || access->text(QAccessible::Name).isEmpty()) {
        nameless.push_back(std::string(widget->metaObject()->className()) + ' ' + widget->objectName().toStdString());
      }
    }
    return nameless;
  }
  template <typename Widget>
  [[nodiscard]] QList<QWidget*> FindAll() const
  {
    QList<QWidget*> found;
    for (Widget* const widget : stage.panel.findChildren<Widget*>()) {
      found << widget;
    }
    return found;
  }

  PanelStage stage{"root[plate[bolt nut] rod]"};
};

TEST_F(AccessToAPanel, EveryControl_HasANameForReaders)
{
  stage.Type("wheel");
  stage.WaitForFilter();

  EXPECT_THAT(FindNameless(FindAll<QLineEdit>()), IsEmpty());
  EXPECT_THAT(FindNameless(FindAll<QAbstractButton>()), IsEmpty());
  EXPECT_THAT(FindNameless(FindAll<QProgressBar>()), IsEmpty());
  EXPECT_THAT(FindNameless(FindAll<QLabel>()), IsEmpty());
  EXPECT_THAT(FindNameless({&stage.panel, &stage.GetView(), stage.GetView().header()}), IsEmpty());
}

TEST_F(AccessToAPanel, EveryButtonAndAction_HasATip)
{
  for (const QWidget* const button : FindAll<QAbstractButton>()) {
    EXPECT_FALSE(button->toolTip().isEmpty() && button->isVisible()) << button->objectName().toStdString();
  }
  for (int command = 0; command <= static_cast<int>(Command::CollapseInstances); ++command) {
    const QAction& action = stage.GetAction(static_cast<Command>(command));
    EXPECT_NE(action.toolTip(), action.text()) << action.text().toStdString();
    EXPECT_FALSE(action.icon().isNull()) << action.text().toStdString();
  }
}

TEST_F(AccessToAPanel, Tab_ReachesEveryControl)
{
  stage.GetLine().setFocus();
  std::vector<std::string> reached;

  for (int i = 0; i < 4; ++i) {
    reached.push_back(QApplication::focusWidget()->objectName().toStdString());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }

  EXPECT_THAT(reached, testing::ElementsAre("filterLine", "filterOptions", "listToggle", "structureView"));
}

TEST_F(AccessToAPanel, Rows_TellNameAndStateToReaders)
{
  stage.scene->SetVisible(stage.GetShape("nut"), false);
  QAccessibleInterface* const table = QAccessible::queryAccessibleInterface(&stage.GetView());
  ASSERT_TRUE(table && table->tableInterface());

  QAccessibleInterface* const cell = table->tableInterface()->cellAt(3, 1);

  ASSERT_TRUE(cell);
  EXPECT_EQ(cell->text(QAccessible::Name), "hidden");
}

TEST_F(AccessToAPanel, ArrowKeys_MoveThroughTheRows)
{
  stage.Select({"root"});
  stage.GetView().setFocus();

  QTest::keyClick(&stage.GetView(), Qt::Key_Down);
  QTest::keyClick(&stage.GetView(), Qt::Key_Left);

  EXPECT_EQ(stage.GetView().currentIndex(), stage.FindIndex("plate"));
  EXPECT_FALSE(stage.GetView().isExpanded(stage.FindIndex("plate")));
}

TEST_F(AccessToAPanel, F2_ChangesNothing)
{
  stage.Select({"rod"});
  stage.GetView().setFocus();

  QTest::keyClick(&stage.GetView(), Qt::Key_F2);

  EXPECT_EQ(QApplication::focusWidget(), &stage.GetView());
}

TEST_F(AccessToAPanel, OtherPalette_RecoloursThePictures)
{
  const QImage before = stage.GetAction(Command::Hide).icon().pixmap(16).toImage();
  QPalette palette = stage.panel.palette();
  palette.setColor(QPalette::Text, Qt::magenta);

  stage.panel.setPalette(palette);

  EXPECT_NE(stage.GetAction(Command::Hide).icon().pixmap(16).toImage(), before);
}

TEST_F(AccessToAPanel, PictureOfTheApplication_TakesThePlaceOfThePanelsOwn)
{
  QPixmap drawn(16, 16);
  drawn.fill(Qt::magenta);
  const QIcon own(drawn);

  stage.panel.SetPictureMaker([&](int typeIcon, const QPalette& /*palette*/) { return typeIcon == 3 ? own : QIcon(); });

  EXPECT_EQ(stage.FindIndex("rod").data(Qt::DecorationRole).value<QIcon>().cacheKey(), own.cacheKey());
  EXPECT_FALSE(stage.FindIndex("root").data(Qt::DecorationRole).value<QIcon>().isNull());
  EXPECT_NE(stage.FindIndex("root").data(Qt::DecorationRole).value<QIcon>().cacheKey(), own.cacheKey());
}

}  // namespace
}  // namespace qthosttest
