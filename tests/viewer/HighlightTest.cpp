#include <gmock/gmock.h>

#include <QApplication>
#include <QMouseEvent>
#include <QStatusBar>

#include "support/Stage.h"
#include "zelk/SelectionObserver.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using viewertest::s_associated;
using viewertest::s_leaf;
using viewertest::s_pump;

class ChangeCounter final : public zelk::SelectionObserver {
public:
  void OnEndUpdate() override { ++count; }

  int count = 0;
};

class Highlight : public viewertest::Stage {
protected:
  void SetUp() override
  {
    Stage::SetUp();
    OpenFromAbove({s_pump});
    Rows().expandAll();
    Settle();
  }
  /// Without any other event in between.
  void Pass(const std::string& name)
  {
    QWidget& rows = *Rows().viewport();
    const QPoint place = Rows().visualRect(RowOf(name)).center();
    QMouseEvent event(QEvent::MouseMove, place, rows.mapToGlobal(place), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&rows, &event);
  }
  [[nodiscard]] viewer::ModelScene::InstanceSet FindDrawn()
  {
    std::set<du::SmartPtr<zelk::Instance>> all;
    zelk::Instance::GetInstancesAndDescendents({window->GetSession().GetRoot()}, all);
    viewer::ModelScene::InstanceSet drawn;
    for (const auto& instance : all) {
      drawn.insert(instance.Get());
    }
    return drawn;
  }
};

TEST_F(Highlight, OfRowsThatThePointerPasses_IsThatOfTheLastOne)
{
  zelk::SelectionManager& manager = *window->GetSession().GetWorld()->selectionManager;
  const auto changes = du::MakeSmart<ChangeCounter>();
  manager.RegisterObserver(s_associated, *changes);

  for (const char* const name : {"Files", "frame:1", "bolt set:1", "valve block:1"}) {
    Pass(name);
    EXPECT_EQ(window->statusBar()->currentMessage().toStdString(), name);
  }
  Settle();

  EXPECT_EQ(changes->count, 1);
  EXPECT_THAT(GetSelected(s_associated), ElementsAre("valve block:1"));
  manager.UnregisterObserver(s_associated, *changes);
}

TEST_F(Highlight, OfARow_EndsAtOnceWhenThePointerLeaves)
{
  Pass("valve block:1");
  Settle();
  ASSERT_THAT(GetSelected(s_associated), ElementsAre("valve block:1"));

  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(Rows().viewport(), &leave);

  EXPECT_THAT(GetSelected(s_associated), IsEmpty());
}

TEST_F(Highlight, OfARowThatThePointerLeftInTime_NeverComes)
{
  Pass("valve block:1");
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(Rows().viewport(), &leave);
  Settle();

  EXPECT_THAT(GetSelected(s_associated), IsEmpty());
}

TEST_F(Highlight, OfAClosedFile_NeverComes)
{
  Pass("valve block:1");
  window->GetSession().CloseAll();
  Settle();

  EXPECT_THAT(GetSelected(s_associated), IsEmpty());
}

TEST_F(Highlight, OfMuch_ComesInTurnsOfItsOwn)
{
  const QPoint place = PlaceOf("core");
  const QColor before = ColorAt(place);

  window->GetModel().SetSelected(FindDrawn());
  EXPECT_TRUE(window->GetModel().IsAtWork());
  EXPECT_EQ(ColorAt(place), before);

  Settle();
  EXPECT_FALSE(window->GetModel().IsAtWork());
  EXPECT_NE(ColorAt(place), before);
}

TEST_F(Highlight, ThatIsOvertaken_LeavesNothing)
{
  const QPoint place = PlaceOf("core");
  const QColor before = ColorAt(place);

  window->GetModel().SetSelected(FindDrawn());
  window->GetModel().SetSelected({});
  Settle();

  EXPECT_EQ(ColorAt(place), before);
}

TEST_F(Highlight, OfASelectionThatIsOvertaken_IsThatOfTheNewest)
{
  memkernel::SelectionManager& manager = window->GetSession().GetWorld()->GetMemSelectionManager();
  const auto select = [&](const std::string& name) {
    manager.ApplyInstances(zelk::SelectionManager::SelectionList, {Find(name)}, zelk::SelectionManager::OperationSet);
  };

  select("Files");
  select("valve block:1");
  Settle();

  EXPECT_TRUE(window->GetModel().IsSelected(*Find("core")));
  EXPECT_FALSE(window->GetModel().IsSelected(*Find("frame:1")));
}

TEST_F(Highlight, OfTheRoot_TakesInAFileThatComesLater)
{
  Select("Files");

  Open({s_leaf});

  EXPECT_TRUE(window->GetModel().IsSelected(*Find("leaf")));
}

TEST_F(Highlight, OfWhatIsHiddenMeanwhile_IsThereWhenItIsShownAgain)
{
  const QPoint place = PlaceOf("core");
  Select("valve block:1");
  const QColor selected = ColorAt(place);

  window->GetBinding().HideSelected();
  Settle();
  window->GetBinding().ShowSelected();
  Settle();

  EXPECT_EQ(ColorAt(place), selected);
}

TEST_F(Highlight, ThatChangesItsKind_ChangesItsColour)
{
  const QPoint place = PlaceOf("core");
  const QColor before = ColorAt(place);
  Pass("core");
  Settle();
  const QColor associated = ColorAt(place);

  Select("core");
  const QColor selected = ColorAt(place);
  window->GetBinding().SelectNothing();
  Settle();

  EXPECT_NE(associated, before);
  EXPECT_NE(selected, associated);
  EXPECT_EQ(ColorAt(place), associated);
}

}  // namespace
