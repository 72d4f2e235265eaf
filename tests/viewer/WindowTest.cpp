#include <gmock/gmock.h>

#include <QAccessible>
#include <QAction>
#include <QHelpEvent>
#include <QLabel>
#include <QMenu>
#include <QSettings>
#include <QSplitter>
#include <QTest>
#include <QToolTip>

#include "support/Stage.h"

namespace {

using testing::ElementsAre;
using viewertest::s_leaf;
using viewertest::s_pump;

class Window : public viewertest::Stage {
protected:
  /// Closes the window and starts with another one.
  void Restart()
  {
    window->close();
    window = std::make_unique<viewer::MainWindow>();
    Show();
  }
  QMenu* GetRecentMenu() { return FindAction("Open Recent")->menu(); }
};

TEST_F(Window, DarkBackground_IsSeenAndRemembered)
{
  FindAction("Dark Background")->setChecked(false);
  Settle();
  ASSERT_GT(ColorAt({5, 5}).lightness(), 200);

  FindAction("Dark Background")->trigger();
  Settle();
  EXPECT_LT(ColorAt({5, 5}).lightness(), 80);

  Restart();
  EXPECT_TRUE(FindAction("Dark Background")->isChecked());
  Settle();
  EXPECT_LT(ColorAt({5, 5}).lightness(), 80);
}

TEST_F(Window, StatusBar_CountsWhatIsShownAndSelected)
{
  const auto* const counts = window->findChild<QLabel*>("counts");
  EXPECT_EQ(counts->text(), "Open a STEP file, or drop it here");

  Open({s_pump});
  EXPECT_EQ(counts->text(), "26 of 26 shown");

  ClickRow("bolt set:1", qthost::GuiTreeItemModel::VisibleColumn);
  Click(PlaceOf("frame:1"));
  EXPECT_EQ(counts->text(), "22 of 26 shown, 1 selected");
}

TEST_F(Window, StatusBar_CountsOnceForAllThatChangesTogether)
{
  Open({s_pump});
  Select("bolt set:1");
  const auto* const counts = window->findChild<QLabel*>("counts");
  const QString before = counts->text();
  int changes = 0;
  QObject::connect(&window->GetModel(), &viewer::ModelScene::ContentChanged, window.get(), [&] {
    ++changes;
    EXPECT_EQ(counts->text(), before);
  });

  window->GetBinding().HideSelected();
  Settle();

  EXPECT_EQ(changes, 4);
  EXPECT_EQ(counts->text(), "22 of 26 shown, 1 selected");
}

TEST_F(Window, Size_IsRemembered)
{
  window->resize(777, 555);
  Settle();

  Restart();

  EXPECT_EQ(window->size(), QSize(777, 555));
}

TEST_F(Window, TwoViews_AreRememberedWithTheirSizes)
{
  FindAction("Two Views")->trigger();
  auto* splitter = window->findChild<QSplitter*>();
  splitter->setSizes({150, splitter->width() - 150});
  Settle();
  const QList<int> sizes = splitter->sizes();
  ASSERT_NE(sizes[0], sizes[1]);

  Restart();
  Settle();

  EXPECT_TRUE(FindAction("Two Views")->isChecked());
  ASSERT_EQ(window->GetViews().size(), 2U);
  EXPECT_EQ(window->findChild<QSplitter*>()->sizes(), sizes);
}

TEST_F(Window, TwoViews_EndBeforeTheyWereDrawn)
{
  Open({s_leaf});

  FindAction("Two Views")->trigger();
  FindAction("Two Views")->trigger();
  Settle();

  EXPECT_EQ(window->GetViews().size(), 1U);
  EXPECT_TRUE(View().FindAt(View().rect().center()));
}

TEST_F(Window, OneView_IsRemembered)
{
  FindAction("Two Views")->trigger();
  Restart();
  FindAction("Two Views")->trigger();

  Restart();

  EXPECT_EQ(window->GetViews().size(), 1U);
}

TEST_F(Window, RecentFiles_TellTheirFoldersInTips)
{
  Open({s_leaf});
  QMenu& menu = *GetRecentMenu();
  menu.popup({0, 0});
  const QPoint place = menu.actionGeometry(menu.actions().front()).center();

  QHelpEvent event(QEvent::ToolTip, place, menu.mapToGlobal(place));
  QApplication::sendEvent(&menu, &event);

  EXPECT_EQ(QToolTip::text(), s_leaf);
  QToolTip::hideText();
  menu.close();
}

TEST_F(Window, RecentFiles_AreRememberedNewestFirst)
{
  Open({s_leaf, s_pump});

  Restart();

  const QList<QAction*> actions = GetRecentMenu()->actions();
  ASSERT_GE(actions.size(), 2);
  EXPECT_EQ(actions[0]->toolTip(), s_pump);
  EXPECT_EQ(actions[1]->toolTip(), s_leaf);
}

TEST_F(Window, ARecentFile_OpensWhenItIsChosen)
{
  Open({s_leaf});
  Restart();

  GetRecentMenu()->actions().front()->trigger();
  WaitFor([this] { return !window->GetSession().IsReading(); }, "the file");

  EXPECT_EQ(window->GetSession().GetOpenFiles(), QStringList{s_leaf});
}

TEST_F(Window, FilesThatFail_AreNotRemembered)
{
  Open({"/no/such.stp"});

  EXPECT_FALSE(GetRecentMenu()->isEnabled());
}

TEST_F(Window, AllThatCanBeUsed_HasANameForThoseWhoCannotSeeIt)
{
  window->GetSession().Failed("bad.stp: is empty");
  for (QWidget* const widget : window->findChildren<QWidget*>()) {
    if (widget->focusPolicy() != Qt::NoFocus && widget->isVisible()) {
      const QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(widget);
      EXPECT_TRUE(accessible != nullptr && !accessible->text(QAccessible::Name).isEmpty())
          << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
    }
  }
}

}  // namespace
