#include <gmock/gmock.h>

#include <QAction>

#include "support/Stage.h"

namespace {

using viewertest::s_pump;
using viewertest::s_pumpParts;

class Visibility : public viewertest::Stage {
protected:
  void SetUp() override
  {
    Stage::SetUp();
    OpenFromAbove({s_pump});
  }
  [[nodiscard]] bool IsShown(const std::string& name) { return window->GetModel().IsShown(*Find(name)); }
  void SetVisibleInKernel(const std::string& name, bool isVisible)
  {
    memkernel::ShapeScene& scene = *window->GetSession().GetScene();
    scene.SetVisible(scene.FindShapeInstance(Find(name).Get()), isVisible);
    Settle();
  }
};

TEST_F(Visibility, Hide_TakesWhatIsSelectedOutOfSceneAndView)
{
  const QPoint place = PlaceOf("core");
  ASSERT_TRUE(View().FindAt(place));
  Select("core");

  Press(Qt::CTRL | Qt::Key_H);

  EXPECT_FALSE(IsVisible("core"));
  EXPECT_FALSE(IsShown("core"));
  EXPECT_NE(View().FindAt(place), Find("core"));
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts - 1);
}

TEST_F(Visibility, Hide_OfAnAssembly_HidesAllBelowIt)
{
  Select("bolt set:1");

  Press(Qt::CTRL | Qt::Key_H);

  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts - 4);
}

TEST_F(Visibility, Show_BringsWhatIsSelectedBack)
{
  Select("core");
  Press(Qt::CTRL | Qt::Key_H);

  Press(Qt::CTRL | Qt::Key_J);

  EXPECT_TRUE(IsVisible("core"));
  EXPECT_TRUE(IsShown("core"));
  EXPECT_TRUE(window->GetModel().IsSelected(*Find("core")));
}

TEST_F(Visibility, SetVisible_TellsWhetherAnythingHasChanged)
{
  viewer::SceneBinding& binding = window->GetBinding();
  const auto bolts = Find("bolt set:1");

  EXPECT_FALSE(binding.SetVisible({bolts}, true));
  EXPECT_TRUE(binding.SetVisible({Find("bolt:2")}, false));
  EXPECT_TRUE(binding.SetVisible({bolts}, false));
  EXPECT_FALSE(binding.SetVisible({bolts}, false));
  EXPECT_TRUE(binding.SetVisible({bolts}, true));
  EXPECT_FALSE(binding.SetVisible({}, false));
}

TEST_F(Visibility, SetVisible_IsDoneInTurnsOfItsOwn)
{
  viewer::SceneBinding& binding = window->GetBinding();

  EXPECT_TRUE(binding.SetVisible({Find("bolt set:1")}, false));
  EXPECT_FALSE(binding.IsUpToDate());
  EXPECT_TRUE(IsShown("core"));
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts);

  Settle();
  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts - 4);
}

TEST_F(Visibility, Commands_ThatFollowAtOnce_EndAsOneAfterTheOther)
{
  viewer::SceneBinding& binding = window->GetBinding();

  binding.SetVisible({Find("Files")}, false);
  binding.SetVisible({Find("valve block:1")}, true);
  binding.SetVisible({Find("core")}, false);
  Settle();

  EXPECT_EQ(window->GetModel().GetShownCount(), 2U);
  EXPECT_FALSE(IsVisible("core"));
  EXPECT_EQ(RowOf("core").siblingAtColumn(1).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  EXPECT_EQ(RowOf("valve block:1").siblingAtColumn(1).data(Qt::CheckStateRole).toInt(), Qt::PartiallyChecked);
}

TEST_F(Visibility, CloseAll_OfWhatIsToBeHidden_LeavesNothingToDo)
{
  viewer::SceneBinding& binding = window->GetBinding();
  binding.SetVisible({Find("Files")}, false);

  window->GetSession().CloseAll();
  Open({s_pump});

  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts);
}

TEST_F(Visibility, EndOfTheWindow_WithSomethingToHide_EndsAll)
{
  window->GetBinding().SetVisible({Find("Files")}, false);

  window.reset();

  EXPECT_EQ(window, nullptr);
}

TEST_F(Visibility, ShowOnlyThis_HidesAllOthers)
{
  Select("valve block:1");

  Press(Qt::CTRL | Qt::Key_I);

  EXPECT_EQ(window->GetModel().GetShownCount(), 3U);
  EXPECT_TRUE(IsShown("core"));
  EXPECT_FALSE(IsVisible("frame:1"));
}

TEST_F(Visibility, ShowAll_BringsEverythingBack)
{
  Select("valve block:1");
  Press(Qt::CTRL | Qt::Key_I);

  Press(Qt::CTRL | Qt::SHIFT | Qt::Key_H);

  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts);
}

TEST_F(Visibility, ChangesInTheKernel_AreDrawn)
{
  const QPoint place = PlaceOf("core");
  const QColor before = ColorAt(place);

  SetVisibleInKernel("core", false);
  EXPECT_FALSE(IsShown("core"));
  EXPECT_NE(ColorAt(place), before);

  SetVisibleInKernel("core", true);
  EXPECT_TRUE(IsShown("core"));
  EXPECT_EQ(ColorAt(place), before);
}

TEST_F(Visibility, WithoutASelection_HideIsNotOffered)
{
  EXPECT_FALSE(FindAction("Hide")->isEnabled());

  Select("core");

  EXPECT_TRUE(FindAction("Hide")->isEnabled());
}

TEST_F(Visibility, Hide_BeforeTheShapesAreThere_HoldsWhenTheyCome)
{
  window->GetSession().CloseAll();
  window->Open({s_pump});
  WaitFor([this] { return !window->GetSession().IsReading(); }, "the file");

  window->GetBinding().SetVisible({Find("bolt set:2")}, false);
  WaitForShapes();

  EXPECT_EQ(window->GetModel().GetShownCount(), s_pumpParts - 4);
}

TEST_F(Visibility, TwoViews_ShowAndHideTheSame)
{
  Press(Qt::CTRL | Qt::Key_T);
  ASSERT_EQ(window->GetViews().size(), 2U);
  View(1).LookFrom(viewer::Direction::Top);
  Settle();
  const QPoint place = PlaceOf("core", 1);
  const QColor before = ColorAt(place, 1);

  SetVisibleInKernel("core", false);

  EXPECT_NE(ColorAt(place, 1), before);
}

}  // namespace
