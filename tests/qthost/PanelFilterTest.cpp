#include <gmock/gmock.h>

#include <QSignalSpy>
#include <QToolButton>
#include <thread>

#include "FilterHold.h"
#include "PanelStage.h"
#include "guitree/TreeController.h"

namespace qthosttest {
namespace {

using qthost::FilterSettings;
using qthost::GuiTreeItemModel;
using qthost::GuiTreePanel;
using testing::ElementsAre;

constexpr int s_forever = 3'600'000;
constexpr auto s_all = "root[plate[bolt nut] rod Bolts]";

class FilterOfAPanel : public testing::Test {
protected:
  void SetUp() override { stage.Open(); }
  /// Types, and waits until the one job of the filter has come to its first match.
  void TypeAndHold(const QString& text)
  {
    hold = std::make_unique<FilterHold>(*stage.state);
    stage.panel.SetTypingPause(s_forever);
    stage.Type(text);
    stage.Press(Qt::Key_Return);
    hold->WaitUntilReached();
    stage.panel.SetTypingPause(1);
  }

  PanelStage stage{s_all};
  std::unique_ptr<FilterHold> hold;
};

TEST_F(FilterOfAPanel, Typing_LeavesWhatMatchesExpandedAndTellsHowMany)
{
  stage.Type("nut");

  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[plate[nut]]");
  EXPECT_EQ(stage.GetStatus(), "1 match");
  EXPECT_THAT(stage.GetExpanded(), ElementsAre("root", "plate"));
}

TEST_F(FilterOfAPanel, WithoutAFilter_TheRowsAreCounted)
{
  EXPECT_EQ(stage.GetStatus(), "6 rows");
}

TEST_F(FilterOfAPanel, Typing_FiltersOnceAfterAPause)
{
  stage.panel.SetTypingPause(s_forever);
  const QSignalSpy changes(&stage.panel, &GuiTreePanel::FilterChanged);
  stage.Type("bol");
  QCoreApplication::processEvents();
  ASSERT_EQ(changes.count(), 0);

  // Shortens the pause under way.
  stage.panel.SetTypingPause(1);
  stage.WaitForFilter();

  EXPECT_EQ(changes.count(), 1);
  EXPECT_EQ(stage.GetText(), "root[plate[bolt] Bolts]");
}

TEST_F(FilterOfAPanel, Enter_FiltersWithoutThePause)
{
  stage.panel.SetTypingPause(s_forever);
  stage.Type("rod");
  const QSignalSpy populations(&stage.model, &GuiTreeItemModel::PopulationBegins);

  stage.Press(Qt::Key_Return);

  stage.WaitForFilter();
  EXPECT_EQ(stage.GetText(), "root[rod]");
  EXPECT_EQ(populations.count(), 1);
}

TEST_F(FilterOfAPanel, Enter_FiltersAgainWhatHasChangedMeanwhile)
{
  stage.Type("rod");
  stage.WaitForFilter();
  stage.kernel.Add("rod", "rodlet");
  stage.Settle();

  stage.Press(Qt::Key_Return);
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[rod[rodlet]]");
}

TEST_F(FilterOfAPanel, EnterWithoutAFilter_LeavesTheRows)
{
  const QSignalSpy populations(&stage.model, &GuiTreeItemModel::PopulationBegins);

  stage.Press(Qt::Key_Return);

  EXPECT_EQ(populations.count(), 0);
}

TEST_F(FilterOfAPanel, Escape_ClearsTheTextAndShowsAllRowsAtOnce)
{
  stage.panel.SetTypingPause(s_forever);
  stage.Type("rod");
  stage.Press(Qt::Key_Return);
  stage.WaitForFilter();

  stage.Press(Qt::Key_Escape);

  EXPECT_EQ(stage.GetLine().text(), "");
  EXPECT_EQ(stage.GetText(), s_all);
}

TEST_F(FilterOfAPanel, ClearButton_ClearsTheText)
{
  stage.Type("rod");
  stage.WaitForFilter();
  auto* const clear = stage.GetLine().findChild<QToolButton*>();

  QTest::mouseClick(clear, Qt::LeftButton);
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), s_all);
}

TEST_F(FilterOfAPanel, Down_LeadsFromTheLineToTheRows)
{
  stage.GetLine().setFocus();

  stage.Press(Qt::Key_Down);

  EXPECT_TRUE(stage.GetView().hasFocus());
  EXPECT_EQ(stage.GetView().currentIndex(), stage.FindIndex("root"));
}

TEST_F(FilterOfAPanel, NewerFilter_OvertakesTheOneAtWork)
{
  TypeAndHold("b");
  const QSignalSpy results(&stage.model, &GuiTreeItemModel::ResultShown);

  stage.Type("olts");
  ASSERT_TRUE(QTest::qWaitFor([this] { return stage.panel.GetFilter().text == "bolts"; }));
  hold->LetGo();
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[Bolts]");
  EXPECT_EQ(results.count(), 1);
}

TEST_F(FilterOfAPanel, ProgressAndCancel_ComeIntoSightWhileAFilterWorks)
{
  const auto& progress = stage.Find<QWidget>("filterProgress");
  const auto& cancel = stage.Find<QToolButton>("filterCancel");
  ASSERT_FALSE(progress.isVisible());

  TypeAndHold("b");

  EXPECT_TRUE(QTest::qWaitFor([&] { return progress.isVisible() && cancel.isVisible(); }));
  EXPECT_EQ(stage.GetStatus(), "Filtering");
  hold->LetGo();
  stage.WaitForFilter();
  EXPECT_FALSE(progress.isVisible());
  EXPECT_FALSE(cancel.isVisible());
}

TEST_F(FilterOfAPanel, Cancel_EndsTheFilterWithWhatItHasFound)
{
  auto& cancel = stage.Find<QToolButton>("filterCancel");
  TypeAndHold("bolt");
  ASSERT_TRUE(QTest::qWaitFor([&] { return cancel.isVisible(); }));

  QTest::mouseClick(&cancel, Qt::LeftButton);
  hold->LetGo();
  stage.WaitForFilter();

  EXPECT_EQ(stage.model.GetResultNote(), GuiTreeItemModel::ResultNote::Cancelled);
  EXPECT_EQ(stage.GetStatus(), "Cancelled, 1 match");
  EXPECT_EQ(stage.GetText(), "root[...]");
}

TEST_F(FilterOfAPanel, Cancel_CanBePressedByKey)
{
  auto& cancel = stage.Find<QToolButton>("filterCancel");
  TypeAndHold("bolt");
  ASSERT_TRUE(QTest::qWaitFor([&] { return cancel.isVisible(); }));

  cancel.setFocus(Qt::TabFocusReason);
  QTest::keyClick(&cancel, Qt::Key_Space);
  hold->LetGo();
  stage.WaitForFilter();

  EXPECT_EQ(stage.model.GetResultNote(), GuiTreeItemModel::ResultNote::Cancelled);
}

TEST_F(FilterOfAPanel, FilterThatIsClearedAtWork_LeavesThePlainRowsAlone)
{
  TypeAndHold("bolt");

  stage.Press(Qt::Key_Escape);
  hold->LetGo();
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), s_all);
  EXPECT_EQ(stage.model.GetResultNote(), GuiTreeItemModel::ResultNote::None);
  EXPECT_EQ(stage.GetStatus(), "6 rows");
}

TEST_F(FilterOfAPanel, GivingWayToAnEdit_FiltersAgainAfterwards)
{
  TypeAndHold("bolt");

  stage.panel.GiveWayToEdit();
  hold->LetGo();
  stage.kernel.Add("rod", "bolt2");
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt] rod[bolt2] Bolts]");
  EXPECT_EQ(stage.model.GetResultNote(), GuiTreeItemModel::ResultNote::None);
}

TEST_F(FilterOfAPanel, EditsAfterTheFilterHasReadAll_FilterAgain)
{
  TypeAndHold("bolt");
  hold->LetGo();
  const auto& lock = dynamic_cast<const memkernel::ReadWriteLock&>(*stage.tree.GetReadWriteLock());
  while (lock.IsRead()) {
    std::this_thread::yield();
  }
  ASSERT_TRUE(stage.model.IsCalculating());

  stage.Remove("Bolts");
  stage.tree.Rename(stage["nut"], "bolt nut");
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[plate[bolt bolt nut]]");
  EXPECT_EQ(stage.GetStatus(), "2 matches");
}

TEST_F(FilterOfAPanel, NewerFilterAfterAnEdit_RunsOnce)
{
  TypeAndHold("bolt");
  stage.panel.GiveWayToEdit();
  const QSignalSpy resets(&stage.model, &QAbstractItemModel::modelReset);

  qthost::FilterSettings settings;
  settings.text = "rod";
  stage.panel.SetFilter(settings);
  hold->LetGo();
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[rod]");
  // The panel is emptied, and gets the result.
  EXPECT_EQ(resets.count(), 2);
}

TEST_F(FilterOfAPanel, GivingWayWithoutAFilter_DoesNothing)
{
  const QSignalSpy resets(&stage.model, &QAbstractItemModel::modelReset);

  stage.panel.GiveWayToEdit();
  stage.WaitForFilter();

  EXPECT_EQ(resets.count(), 0);
}

TEST_F(FilterOfAPanel, WithoutAMatch_SaysSoInTheView)
{
  stage.Type("wheel");

  stage.WaitForFilter();

  EXPECT_EQ(stage.GetMessage(), "Nothing matches the filter.");
  EXPECT_EQ(stage.GetStatus(), "0 matches");
}

TEST_F(FilterOfAPanel, MessageWithoutAMatch_OffersToClearTheFilter)
{
  stage.Type("wheel");
  stage.Choose("Only parts");
  stage.WaitForFilter();

  QTest::mouseClick(&stage.Find<QWidget>("emptyWayOut"), Qt::LeftButton);
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), s_all);
  EXPECT_EQ(stage.GetMessage(), "");
  EXPECT_EQ(stage.GetLine().text(), "");
}

TEST_F(FilterOfAPanel, FilterMadeAnewByTheLibrary_IsTheUsersAgain)
{
  stage.Type("rod");
  stage.WaitForFilter();

  stage.gui->Reset();
  stage.gui->Close();
  stage.gui->Initialise(stage.world);
  stage.WaitForFilter();

  EXPECT_EQ(stage.GetText(), "root[rod]");
}

TEST_F(FilterOfAPanel, SameFilterAgain_DoesNothing)
{
  stage.Type("rod");
  stage.WaitForFilter();
  const QSignalSpy resets(&stage.model, &QAbstractItemModel::modelReset);

  stage.panel.SetFilter(stage.panel.GetFilter());
  stage.WaitForFilter();

  EXPECT_EQ(resets.count(), 0);
}

TEST_F(FilterOfAPanel, ChoiceThatDoesNotFilter_LeavesTheRows)
{
  const QSignalSpy resets(&stage.model, &QAbstractItemModel::modelReset);

  stage.Choose("Match case");
  stage.WaitForFilter();

  EXPECT_TRUE(stage.panel.GetFilter().matchesCase);
  EXPECT_EQ(resets.count(), 0);
}

}  // namespace
}  // namespace qthosttest
