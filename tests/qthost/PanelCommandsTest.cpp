#include <gmock/gmock.h>

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPointer>

#include "PanelStage.h"

namespace qthosttest {
namespace {

using qthost::GuiTreePanel;
using testing::ElementsAre;
using testing::IsEmpty;
using Command = GuiTreePanel::Command;

class CommandsOfAPanel : public testing::Test {
protected:
  void SetUp() override { stage.Open(); }
  void OpenMenu(const std::string& name, QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse)
  {
    const QPoint place = stage.GetCell(name, 0);
    QContextMenuEvent event(reason, place, stage.GetView().viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(stage.GetView().viewport(), &event);
  }
  [[nodiscard]] std::vector<std::string> GetEnabled() const
  {
    std::vector<std::string> names;
    for (const QAction* const action : stage.Find<QMenu>("rowMenu").actions()) {
      if (!action->isSeparator() && action->isEnabled()) {
        names.push_back(action->text().remove(u'&').toStdString());
      }
    }
    return names;
  }

  PanelStage stage{"root[plate[bolt nut] frame[bolt bar[pin]] rod]"};
};

TEST_F(CommandsOfAPanel, Hide_HidesTheSelectedRowsInOneCall)
{
  stage.Select({"plate", "rod"});

  stage.GetAction(Command::Hide).trigger();

  EXPECT_THAT(stage.asked, ElementsAre("hide plate rod"));
  EXPECT_THAT(stage.GetHidden(), ElementsAre("bolt", "nut", "rod"));
}

TEST_F(CommandsOfAPanel, Show_ShowsTheCurrentRowWhereNothingIsSelected)
{
  stage.GetView().selectionModel()->setCurrentIndex(stage.FindIndex("nut"), QItemSelectionModel::NoUpdate);

  stage.GetAction(Command::Show).trigger();

  EXPECT_THAT(stage.asked, ElementsAre("show nut"));
}

TEST_F(CommandsOfAPanel, ShowOnly_HidesEverythingElse)
{
  stage.Select({"bar"});

  stage.GetAction(Command::ShowOnly).trigger();

  EXPECT_THAT(stage.asked, ElementsAre("hide root", "show bar"));
  EXPECT_THAT(stage.GetHidden(), ElementsAre("bolt", "nut", "rod"));
}

TEST_F(CommandsOfAPanel, Space_HidesWhatIsShownAndShowsWhatIsHiddenInPart)
{
  stage.Select({"plate"});
  stage.GetView().setFocus();

  QTest::keyClick(&stage.GetView(), Qt::Key_Space);
  stage.scene->SetVisible(stage.GetShape("nut"), true);
  QTest::keyClick(&stage.GetView(), Qt::Key_Space);

  EXPECT_THAT(stage.asked, ElementsAre("hide plate", "show plate"));
}

TEST_F(CommandsOfAPanel, Space_HidesWhereShowingChangesNothing)
{
  stage.scene->RemoveShapeInstance(stage["nut"]);
  stage.Select({"plate"});
  stage.GetView().setFocus();

  QTest::keyClick(&stage.GetView(), Qt::Key_Space);

  EXPECT_THAT(stage.asked, ElementsAre("show plate", "hide plate"));
  EXPECT_THAT(stage.GetHidden(), ElementsAre("bolt"));
}

TEST_F(CommandsOfAPanel, WithoutAHook_NothingIsShownOrHidden)
{
  stage.panel.SetVisibilityHook({});
  stage.Select({"plate"});

  stage.GetAction(Command::Hide).trigger();
  stage.GetAction(Command::ShowOnly).trigger();
  OpenMenu("plate");

  EXPECT_THAT(stage.asked, IsEmpty());
  EXPECT_THAT(GetEnabled(), ElementsAre("Select all of this product", "Expand branch", "Collapse branch", "Copy name"));
}

TEST_F(CommandsOfAPanel, SelectProduct_SelectsAllInstancesInTheKernel)
{
  stage.Select({"bolt"});

  stage.GetAction(Command::SelectProduct).trigger();

  EXPECT_THAT(stage.GetSelectedInKernel(), ElementsAre("bolt", "bolt"));
  EXPECT_EQ(stage.GetView().selectionModel()->selectedRows().size(), 2);
}

TEST_F(CommandsOfAPanel, SelectProduct_GoesByTheReaderOfTheApplication)
{
  stage.panel.SetProductReader([](const zelk::BaseInstance& instance) {
    return du::Symbol(std::string(instance.GetObjectName()).substr(0, 1).c_str());
  });
  stage.Select({"plate"});

  stage.GetAction(Command::SelectProduct).trigger();

  EXPECT_THAT(stage.GetSelectedInKernel(), ElementsAre("pin", "plate"));
}

TEST_F(CommandsOfAPanel, SelectProduct_GoesByTheProductNameWhereThereIsOne)
{
  stage.tree.SetProperty(stage["pin"], "Instance", "Product Name", "fastener");
  stage.tree.SetProperty(stage["nut"], "Instance", "Product Name", "fastener");
  stage.Select({"pin"});

  stage.GetAction(Command::SelectProduct).trigger();

  EXPECT_THAT(stage.GetSelectedInKernel(), ElementsAre("nut", "pin"));
}

TEST_F(CommandsOfAPanel, CollapseBranch_ClosesAllBelowAsWell)
{
  stage.Select({"frame"});

  stage.GetAction(Command::CollapseBranch).trigger();

  EXPECT_THAT(stage.GetExpanded(), ElementsAre("root", "plate"));
}

TEST_F(CommandsOfAPanel, ExpandBranch_OpensAllBelow)
{
  stage.GetView().collapseAll();
  stage.Select({"frame"});

  stage.GetAction(Command::ExpandBranch).trigger();

  EXPECT_THAT(stage.GetExpanded(), testing::IsSupersetOf({std::string("frame"), std::string("bar")}));
  EXPECT_FALSE(stage.GetView().isExpanded(stage.FindIndex("plate")));
}

TEST_F(CommandsOfAPanel, Branches_OfRowsAboveEachOtherAreOpenedAndClosedOnce)
{
  stage.Select({"root", "frame", "bar"});

  stage.GetAction(Command::CollapseBranch).trigger();
  const auto collapsed = stage.GetExpanded();
  stage.GetAction(Command::ExpandBranch).trigger();

  EXPECT_THAT(collapsed, IsEmpty());
  EXPECT_THAT(stage.GetExpanded(), ElementsAre("root", "plate", "frame", "bar"));
  EXPECT_TRUE(QTest::qWaitFor([this] { return !stage.GetView().visualRect(stage.FindIndex("pin")).isEmpty(); }));
}

TEST_F(CommandsOfAPanel, Copy_CopiesTheNamesInTheOrderOfTheRows)
{
  stage.Select({"rod", "pin", "nut"});
  stage.GetView().setFocus();

  QTest::keySequence(&stage.GetView(), QKeySequence::Copy);

  EXPECT_EQ(QGuiApplication::clipboard()->text(), "nut\npin\nrod");
}

TEST_F(CommandsOfAPanel, Find_GoesFromTheRowsToTheFilterLine)
{
  stage.Type("old");
  stage.GetView().setFocus();

  QTest::keySequence(&stage.GetView(), QKeySequence::Find);

  EXPECT_TRUE(stage.GetLine().hasFocus());
  EXPECT_EQ(stage.GetLine().selectedText(), "old");
}

TEST_F(CommandsOfAPanel, MenuOfALeaf_OffersNoBranch)
{
  stage.Select({"nut"});

  OpenMenu("nut");

  EXPECT_THAT(GetEnabled(), ElementsAre("Show", "Hide", "Show only this", "Select all of this product", "Copy name"));
}

TEST_F(CommandsOfAPanel, MenuThatIsClosed_LeavesTheShortcutsOn)
{
  stage.panel.SetVisibilityHook({});
  stage.Select({"nut"});
  OpenMenu("nut");

  stage.Find<QMenu>("rowMenu").close();

  EXPECT_TRUE(stage.GetAction(Command::ExpandBranch).isEnabled());
  EXPECT_TRUE(stage.GetAction(Command::Hide).isEnabled());
}

TEST_F(CommandsOfAPanel, RightClick_SelectsTheRowThatTheMenuIsAbout)
{
  stage.Select({"rod"});

  stage.Click("nut", 0, Qt::RightButton);

  EXPECT_THAT(stage.GetSelectedInKernel(), ElementsAre("nut"));
}

TEST_F(CommandsOfAPanel, MenuKey_OpensTheMenuAtTheCurrentRow)
{
  stage.Select({"nut"});

  OpenMenu("root", QContextMenuEvent::Keyboard);

  const QPoint place = stage.GetView().viewport()->mapFromGlobal(stage.Find<QMenu>("rowMenu").pos());
  EXPECT_EQ(stage.GetView().visualRect(stage.FindIndex("nut")).bottom(), place.y());
}

TEST_F(CommandsOfAPanel, Menu_CanBeAddedTo)
{
  QPointer<QMenu> told;
  QObject::connect(&stage.panel, &GuiTreePanel::MenuAboutToShow, [&](QMenu& menu) {
    menu.addAction("Rename");
    told = &menu;
  });

  OpenMenu("nut");

  ASSERT_TRUE(told);
  EXPECT_EQ(told->actions().last()->text(), "Rename");
  told->close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return told.isNull(); }));
}

TEST_F(CommandsOfAPanel, MenuByKeys_DoesWhatIsChosen)
{
  stage.Select({"plate"});
  OpenMenu("plate");
  auto& menu = stage.Find<QMenu>("rowMenu");

  QTest::keyClick(&menu, Qt::Key_Down);
  QTest::keyClick(&menu, Qt::Key_Down);
  QTest::keyClick(&menu, Qt::Key_Return);

  EXPECT_THAT(stage.asked, ElementsAre("hide plate"));
}

}  // namespace
}  // namespace qthosttest
