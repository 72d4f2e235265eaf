#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <thread>

#include "support/FilterHold.h"
#include "support/Stage.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using viewertest::FilterHold;
using viewertest::s_leaf;
using viewertest::s_pump;
using viewertest::s_pumpParts;

/// The rows of the pump that the word "bolt" leaves.
constexpr auto s_bolts = "Files[pump[bolt set:1[bolt:1 bolt:2 bolt:3] bolt set:2[bolt:1 bolt:2 bolt:3]]]";

class RunningFilter : public viewertest::Stage {
protected:
  void SetUp() override
  {
    Stage::SetUp();
    hold = std::make_unique<FilterHold>(*window);
    tester =
        std::make_unique<QAbstractItemModelTester>(&Model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    Open({s_pump});
  }
  void TearDown() override
  {
    hold->LetGo();
    tester.reset();
    Stage::TearDown();
    EXPECT_THAT(hold->GetViolations(), IsEmpty());
    hold.reset();
  }
  [[nodiscard]] qthost::GuiTreeItemModel& Model() { return window->GetStructure().GetModel(); }
  [[nodiscard]] memkernel::Tree& Tree() { return window->GetSession().GetWorld()->GetMemTree(); }
  [[nodiscard]] QLineEdit& Line() { return *window->findChild<QLineEdit*>("filterLine"); }
  [[nodiscard]] QToolButton& CancelButton() { return *window->findChild<QToolButton*>("filterCancel"); }
  [[nodiscard]] std::string GetStatus() { return window->findChild<QLabel*>("rowCount")->text().toStdString(); }
  void Rename(const std::string& name, const char* newName)
  {
    EXPECT_TRUE(Tree().Rename(FindInTree(name), du::Symbol(newName)));
  }
  void Remove(const std::string& name) { EXPECT_TRUE(Tree().Remove(FindInTree(name))); }
  /// Types a word as a user does, and waits until the filter has come to its first match.
  void TypeAndHold(const QString& text)
  {
    hold->HoldNext();
    QTest::keyClick(&View(), Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(&Line(), text);
    QTest::keyClick(&Line(), Qt::Key_Return);
    WaitForHold();
  }
  void WaitForHold()
  {
    WaitFor([this] { return hold->IsReached(); }, "the first match");
  }
  void WaitForFilter()
  {
    WaitFor([this] { return !Model().IsCalculating(); }, "the filter");
    Settle();
  }
  void LetGo()
  {
    hold->LetGo();
    WaitForFilter();
  }
  /// The filter has read all, and the window has not heard of it yet.
  void LetGoUnseen()
  {
    hold->LetGo();
    const auto& lock = dynamic_cast<const memkernel::ReadWriteLock&>(*Tree().GetReadWriteLock());
    while (lock.IsRead()) {
      std::this_thread::yield();
    }
    ASSERT_TRUE(Model().IsCalculating());
  }
  /// The rows as they are, which must be those of a fresh population.
  [[nodiscard]] std::string GetRows()
  {
    std::string rows = ReadRows();
    window->GetStructure().GetPanel().FilterAgain();
    WaitForFilter();
    EXPECT_EQ(ReadRows(), rows) << "is what a fresh population shows";
    return rows;
  }

private:
  [[nodiscard]] du::SmartPtr<memkernel::Instance> FindInTree(const std::string& name)
  {
    return du::DynamicCast<memkernel::Instance>(Find(name));
  }

protected:
  std::unique_ptr<FilterHold> hold;
  std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(RunningFilter, Window_AnswersMeanwhile)
{
  TypeAndHold("bolt");

  Click(PlaceOf("frame:1"));

  EXPECT_TRUE(hold->IsReached());
  EXPECT_THAT(GetSelected(), ElementsAre("frame:1"));
  LetGo();
  EXPECT_EQ(GetRows(), s_bolts);
}

TEST_F(RunningFilter, CancelButton_EndsItWithWhatItHasFound)
{
  TypeAndHold("bolt");
  WaitFor([this] { return CancelButton().isVisible(); }, "the button");

  QTest::mouseClick(&CancelButton(), Qt::LeftButton);
  WaitForFilter();

  EXPECT_EQ(GetStatus(), "Cancelled, 1 match");
  EXPECT_FALSE(CancelButton().isVisible());
}

TEST_F(RunningFilter, Escape_BringsAllRowsBack)
{
  const std::string before = ReadRows();
  TypeAndHold("bolt");

  QTest::keyClick(&Line(), Qt::Key_Escape);
  WaitForFilter();

  EXPECT_EQ(Line().text(), "");
  EXPECT_EQ(GetRows(), before);
}

TEST_F(RunningFilter, MoreOfAWord_IsWhatIsLookedForInTheEnd)
{
  TypeAndHold("b");

  QTest::keyClicks(&Line(), "olt:2");
  QTest::keyClick(&Line(), Qt::Key_Return);
  LetGo();

  EXPECT_EQ(GetRows(), "Files[pump[bolt set:1[bolt:2] bolt set:2[bolt:2]]]");
}

TEST_F(RunningFilter, RenamedRows_ComeAndGoByTheirNewNames)
{
  TypeAndHold("bolt:");

  Rename("washer:1", "bolt:9");
  Rename("bolt:2", "pin");
  WaitForFilter();

  EXPECT_EQ(GetRows(), "Files[pump[bolt set:1[bolt:1 bolt:9 bolt:3] bolt set:2[bolt:1 bolt:2 bolt:3]]]");
}

TEST_F(RunningFilter, RemovedRows_DoNotCome)
{
  TypeAndHold("bolt");

  Remove("bolt:2");
  Remove("bolt set:2");
  WaitForFilter();

  EXPECT_EQ(GetRows(), "Files[pump[bolt set:1[bolt:1 bolt:3]]]");
}

TEST_F(RunningFilter, EditsInABatch_AreShownTogether)
{
  TypeAndHold("bolt");

  {
    const memkernel::TreeBatch batch(Tree());
    Remove("bolt:1");
    Rename("frame:1", "bolted frame");
    Remove("bolt set:2");
    Rename("bolt set:1", "set");
  }
  WaitForFilter();

  EXPECT_EQ(GetRows(), "Files[pump[bolted frame set[bolt:2 bolt:3]]]");
}

TEST_F(RunningFilter, RowsRenamedAfterItHasReadThem_ShowTheirNewNames)
{
  TypeAndHold("bolt:1");
  LetGoUnseen();

  Rename("bolt:1", "bolt:10");
  WaitForFilter();

  EXPECT_EQ(GetRows(), "Files[pump[bolt set:1[bolt:10] bolt set:2[bolt:1]]]");
}

TEST_F(RunningFilter, RowsRemovedAfterItHasReadThem_DoNotStay)
{
  TypeAndHold("bolt");
  LetGoUnseen();

  Remove("bolt:2");
  Remove("bolt set:2");
  WaitForFilter();

  EXPECT_EQ(GetRows(), "Files[pump[bolt set:1[bolt:1 bolt:3]]]");
}

TEST_F(RunningFilter, BranchThatTheFilterIsIn_CanBeRemoved)
{
  TypeAndHold("washer");
  const auto branch = Find("bolt set:1");

  Remove("bolt set:1");
  WaitForFilter();

  EXPECT_FALSE(Model().FindIndex(branch.Get()).isValid());
  EXPECT_EQ(GetRows().find("bolt set:1"), std::string::npos);
}

TEST_F(RunningFilter, SelectionOfARemovedRow_EndsWithIt)
{
  Select("bolt:2");
  TypeAndHold("bolt");

  Remove("bolt:2");
  WaitForFilter();

  EXPECT_FALSE(Rows().selectionModel()->hasSelection());
  EXPECT_THAT(GetSelected(), IsEmpty());
}

TEST_F(RunningFilter, FileThatIsOpenedMeanwhile_IsFilteredAsWell)
{
  TypeAndHold("l");

  Open({s_leaf});
  WaitForFilter();

  EXPECT_TRUE(RowOf("leaf").isValid());
  EXPECT_NE(GetRows().find("leaf"), std::string::npos);
}

TEST_F(RunningFilter, AllFilesClosedMeanwhile_LeaveNothing)
{
  TypeAndHold("bolt");

  Press(Qt::CTRL | Qt::Key_W);
  WaitForFilter();

  EXPECT_EQ(window->GetModel().GetDrawnCount(), 0U);
  QTest::keyClick(&Line(), Qt::Key_Escape);
  WaitForFilter();
  EXPECT_EQ(GetRows(), "Files");
}

TEST_F(RunningFilter, AllFilesClosedAfterItHasReadThem_LeaveNothing)
{
  TypeAndHold("bolt");
  LetGoUnseen();

  Press(Qt::CTRL | Qt::Key_W);
  WaitForFilter();

  EXPECT_EQ(GetRows(), "Files");
}

TEST_F(RunningFilter, HideOfAPartMeanwhile_IsSeenInItsRowAfterwards)
{
  TypeAndHold("bolt");

  Click(PlaceOf("frame:1"));
  Press(Qt::CTRL | Qt::Key_H);
  LetGo();
  QTest::keyClick(&Line(), Qt::Key_Escape);
  WaitForFilter();

  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts - 1);
  EXPECT_EQ(RowOf("frame:1").data(qthost::GuiTreeItemModel::VisibleStateRole).toInt(), guitree::VisibleStateHidden);
}

TEST_F(RunningFilter, ClosedPanel_HasTheResultWhenItIsOpenedAgain)
{
  TypeAndHold("bolt");

  FindAction("Structure")->trigger();
  ASSERT_FALSE(Rows().isVisible());
  LetGo();
  FindAction("Structure")->trigger();
  WaitForFilter();

  ASSERT_TRUE(Rows().isVisible());
  EXPECT_FALSE(Rows().visualRect(RowOf("bolt:3")).isEmpty());
  EXPECT_EQ(GetRows(), s_bolts);
}

TEST_F(RunningFilter, PanelClosedAndOpenedMeanwhile_GetsTheResult)
{
  TypeAndHold("bolt");

  FindAction("Structure")->trigger();
  Settle();
  FindAction("Structure")->trigger();
  Settle();
  LetGo();

  EXPECT_EQ(GetRows(), s_bolts);
}

TEST_F(RunningFilter, EditsWhileThePanelIsClosed_AreInTheResult)
{
  TypeAndHold("bolt:");
  FindAction("Structure")->trigger();

  Rename("washer:1", "bolt:9");
  Remove("bolt set:2");
  WaitForFilter();
  FindAction("Structure")->trigger();
  WaitForFilter();

  EXPECT_EQ(GetRows(), "Files[pump[bolt set:1[bolt:1 bolt:9 bolt:2 bolt:3]]]");
}

TEST_F(RunningFilter, ClosedWindow_EndsIt)
{
  TypeAndHold("bolt");

  window->close();
  EXPECT_FALSE(window->isVisible());
  tester.reset();
  window.reset();

  EXPECT_FALSE(hold->IsReached());
}

TEST_F(RunningFilter, ClickOnAHeader_SortsTheResult)
{
  TypeAndHold("bolt");

  QHeaderView& header = *Rows().header();
  const QPoint names(header.sectionViewportPosition(0) + 20, header.height() / 2);
  QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, names);
  QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, names);
  LetGo();

  EXPECT_EQ(GetRows(), "Files[pump[bolt set:2[bolt:3 bolt:2 bolt:1] bolt set:1[bolt:3 bolt:2 bolt:1]]]");
}

}  // namespace
