#include <gmock/gmock.h>

#include <QCursor>
#include <QStatusBar>
#include <QTest>

#include "support/Stage.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using viewertest::s_associated;
using viewertest::s_leaf;
using viewertest::s_pump;

/// Counts how often a widget is drawn.
class PaintCounter final : public QObject {
public:
  explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }

  int count = 0;

protected:
  bool eventFilter(QObject* watched, QEvent* event) override
  {
    count += event->type() == QEvent::Paint ? 1 : 0;
    return QObject::eventFilter(watched, event);
  }
};

class Picking : public viewertest::Stage {
protected:
  void LookFromAbove(const QString& file = s_pump) { OpenFromAbove({file}); }
  /// Nothing is drawn there: a view of everything leaves a margin.
  static constexpr QPoint s_nowhere{3, 3};
};

TEST_F(Picking, Click_OnAPart_SelectsIt)
{
  LookFromAbove(s_leaf);

  Click(View().rect().center());

  EXPECT_THAT(GetSelected(), ElementsAre("leaf"));
}

TEST_F(Picking, Click_OnAnotherPart_SelectsThatOneInstead)
{
  LookFromAbove();

  Click(PlaceOf("core"));
  Click(PlaceOf("Αντλία"));

  EXPECT_THAT(GetSelected(), ElementsAre("Αντλία"));
}

TEST_F(Picking, ClickWithControl_AddsAndTakesAway)
{
  LookFromAbove();

  Click(PlaceOf("core"));
  Click(PlaceOf("Αντλία"), Qt::ControlModifier);
  EXPECT_THAT(GetSelected(), ElementsAre("core", "Αντλία"));

  Click(PlaceOf("core"), Qt::ControlModifier);
  EXPECT_THAT(GetSelected(), ElementsAre("Αντλία"));
}

TEST_F(Picking, Click_BesideEverything_SelectsNothing)
{
  LookFromAbove();
  Click(PlaceOf("core"));

  Click(s_nowhere);

  EXPECT_THAT(GetSelected(), IsEmpty());
}

TEST_F(Picking, Escape_SelectsNothing)
{
  LookFromAbove();
  Click(PlaceOf("core"));

  Press(Qt::Key_Escape);

  EXPECT_THAT(GetSelected(), IsEmpty());
}

TEST_F(Picking, Click_OnABodyWhileBodiesHaveNoRows_SelectsItsPart)
{
  LookFromAbove();
  window->GetBinding().SetPickingBodies(false);

  Click(PlaceOf("core"));

  EXPECT_THAT(GetSelected(), ElementsAre("valve block:1"));
}

TEST_F(Picking, Drag_TurnsAndSelectsNothing)
{
  LookFromAbove(s_leaf);
  const QImage before = View().Capture();
  const QPoint middle = View().rect().center();

  Drag(middle, middle + QPoint(60, 40));

  EXPECT_THAT(GetSelected(), IsEmpty());
  EXPECT_NE(View().Capture(), before);
}

TEST_F(Picking, Selection_ByTheKernel_IsHighlighted)
{
  LookFromAbove();
  const QPoint place = PlaceOf("core");
  const QColor before = ColorAt(place);

  Select("core");

  EXPECT_TRUE(window->GetModel().IsSelected(*Find("core")));
  EXPECT_NE(ColorAt(place), before);
  EXPECT_GT(ColorAt(place).green(), before.green());
}

TEST_F(Picking, ASelectedPart_KeepsItsColourUnderThePointer)
{
  LookFromAbove();
  const QPoint place = PlaceOf("core");
  Select("core");
  const QColor selected = ColorAt(place);

  Move(View(), place);

  EXPECT_EQ(ColorAt(place), selected);
}

TEST_F(Picking, AClickedPart_HasTheColourOfTheSelection)
{
  LookFromAbove();
  const QPoint place = PlaceOf("core");
  Select("core");
  const QColor selected = ColorAt(place);
  window->GetBinding().SelectNothing();
  Settle();

  Move(View(), place);
  Click(place);

  EXPECT_EQ(ColorAt(place), selected);
}

TEST_F(Picking, Selection_OfAnAssembly_HighlightsItsParts)
{
  LookFromAbove();

  Select("valve block:1");

  EXPECT_TRUE(window->GetModel().IsSelected(*Find("core")));
  EXPECT_TRUE(window->GetModel().IsSelected(*Find("Body 3")));
  EXPECT_FALSE(window->GetModel().IsSelected(*Find("frame:1")));
}

TEST_F(Picking, Selection_ThatGoes_GivesTheColourBack)
{
  LookFromAbove();
  const QPoint place = PlaceOf("core");
  const QColor before = ColorAt(place);
  Select("core");

  window->GetBinding().SelectNothing();
  Settle();

  EXPECT_EQ(ColorAt(place), before);
}

TEST_F(Picking, Hover_HighlightsInTheKernelAndNamesThePart)
{
  LookFromAbove();

  Move(View(), PlaceOf("core"));
  EXPECT_THAT(GetSelected(s_associated), ElementsAre("core"));
  EXPECT_EQ(window->statusBar()->currentMessage(), "core");

  Move(View(), s_nowhere);
  EXPECT_THAT(GetSelected(s_associated), IsEmpty());
  EXPECT_EQ(window->statusBar()->currentMessage(), "");
}

TEST_F(Picking, Hover_IsSeen)
{
  LookFromAbove();
  const QPoint place = PlaceOf("core");
  const QColor before = ColorAt(place);

  Move(View(), place);
  EXPECT_NE(ColorAt(place), before);

  Move(View(), s_nowhere);
  EXPECT_EQ(ColorAt(place), before);
}

TEST_F(Picking, Hover_DrawsOnlyWhenSomethingElseIsFound)
{
  LookFromAbove();
  const QPoint place = PlaceOf("core");
  Move(View(), place);
  PaintCounter paints(View());

  Move(View(), place + QPoint(1, 0));
  EXPECT_EQ(paints.count, 0);

  Move(View(), s_nowhere);
  EXPECT_GT(paints.count, 0);
  paints.count = 0;

  Move(View(), s_nowhere + QPoint(1, 0));
  EXPECT_EQ(paints.count, 0);
}

TEST_F(Picking, Hover_AfterAClickThatTookThePartAway_IsSeenAgain)
{
  LookFromAbove();
  const QPoint place = PlaceOf("core");
  Move(View(), place);
  const QColor hovered = ColorAt(place);
  Click(place);
  Click(place, Qt::ControlModifier);
  ASSERT_NE(ColorAt(place), hovered);

  Move(View(), place + QPoint(1, 0));

  EXPECT_EQ(ColorAt(place), hovered);
}

TEST_F(Picking, AssociatedHighlight_ByTheKernel_IsDrawn)
{
  LookFromAbove();
  const QPoint place = PlaceOf("core");
  const QColor before = ColorAt(place);

  window->GetSession().GetWorld()->GetMemSelectionManager().ApplyInstances(s_associated, {Find("core")},
                                                                           zelk::SelectionManager::OperationSet);
  Settle();

  EXPECT_GT(ColorAt(place).blue(), before.blue());
}

TEST_F(Picking, Selection_OfWhatIsClosed_EndsWithIt)
{
  LookFromAbove();
  Select("core");

  window->GetSession().CloseAll();
  Settle();

  EXPECT_THAT(GetSelected(), IsEmpty());
}

}  // namespace
