#include <gtest/gtest.h>

#include <QAction>
#include <QTest>
#include <QWheelEvent>

#include "support/Stage.h"

namespace {

using viewertest::s_leaf;
using viewertest::s_pump;

class Navigation : public viewertest::Stage {
protected:
  void SetUp() override
  {
    Stage::SetUp();
    Open({s_pump});
  }
  void Wheel(int delta)
  {
    const QPointF place = View().rect().center();
    QWheelEvent event(place, View().mapToGlobal(place), {}, {0, delta}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&View(), &event);
    Settle();
  }
  /// How far two parts are seen apart.
  [[nodiscard]] int GetDistance() { return (PlaceOf("core") - PlaceOf("Αντλία")).manhattanLength(); }
};

TEST_F(Navigation, AtFirst_EverythingIsInSight)
{
  for (const char* const name : {"frame:1", "core", "washer", "bolt:3"}) {
    EXPECT_TRUE(View().rect().contains(PlaceOf(name))) << name;
  }
}

TEST_F(Navigation, Wheel_ZoomsInAndOut)
{
  const int before = GetDistance();

  Wheel(240);
  const int near = GetDistance();
  Wheel(-480);

  EXPECT_GT(near, before);
  EXPECT_LT(GetDistance(), near);
}

TEST_F(Navigation, DragWithShift_MovesEverythingAlong)
{
  const QPoint middle = View().rect().center();
  const QPoint before = PlaceOf("core");

  Drag(middle, middle + QPoint(50, 30), Qt::ShiftModifier);

  EXPECT_LE((PlaceOf("core") - before - QPoint(50, 30)).manhattanLength(), 3);
}

TEST_F(Navigation, Arrows_TurnAndWithShiftMove)
{
  const QPoint before = PlaceOf("core");

  Press(Qt::SHIFT | Qt::Key_Right);
  const QPoint moved = PlaceOf("core");
  Press(Qt::Key_Up);

  EXPECT_GT(moved.x(), before.x());
  EXPECT_EQ(moved.y(), before.y());
  EXPECT_NE(PlaceOf("core"), moved);
}

TEST_F(Navigation, FitAll_BringsEverythingBackIntoSight)
{
  for (int i = 0; i < 10; ++i) {
    Wheel(480);
  }
  ASSERT_FALSE(View().rect().contains(PlaceOf("washer")));

  Press(Qt::CTRL | Qt::Key_0);

  EXPECT_TRUE(View().rect().contains(PlaceOf("washer")));
}

TEST_F(Navigation, LookFromTopAndFront_ShowsTheAxesThatBelongThere)
{
  Press(Qt::CTRL | Qt::Key_5);
  const QPoint origin = View().Project({0, 0, 0});
  EXPECT_GT(View().Project({10, 0, 0}).x(), origin.x());
  EXPECT_LT(View().Project({0, 10, 0}).y(), origin.y());

  Press(Qt::CTRL | Qt::Key_1);
  EXPECT_LT(View().Project({0, 0, 10}).y(), View().Project({0, 0, 0}).y());
}

TEST_F(Navigation, ACameraThatWasMoved_StaysWhenAnotherFileComes)
{
  Wheel(240);
  const QPoint before = PlaceOf("core");

  Open({s_leaf});

  EXPECT_EQ(PlaceOf("core"), before);
}

TEST_F(Navigation, FocusOfAView_MakesItTheActiveOne)
{
  FindAction("Two Views")->trigger();
  Settle();
  const auto first = window->GetSession().GetActiveView();

  View(1).setFocus();
  Settle();
  const auto second = window->GetSession().GetActiveView();
  FindAction("Two Views")->trigger();

  EXPECT_NE(second, first);
  EXPECT_EQ(window->GetSession().GetActiveView(), first);
}

}  // namespace
