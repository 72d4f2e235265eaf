#include "memkernel/View.h"

#include <gmock/gmock.h>

#include "Recorders.h"
#include "memkernel/ShapeScene.h"

namespace memkerneltest {
namespace {

using testing::ElementsAre;

class ViewRecorder : public zelk::ShapeViewObserver {
public:
  Lines lines;

  void OnBeginUpdate() override { lines.emplace_back("begin"); }
  void OnEndUpdate() override { lines.emplace_back("end"); }
  void OnUnregister() override { lines.emplace_back("unregister"); }
  void OnHighlightColorsChange() override { lines.emplace_back("colours"); }
  void OnRenderStyleChanged() override { lines.emplace_back("style"); }
  void OnCameraChanged() override { lines.emplace_back("camera"); }
};

class ViewTest : public testing::Test {
protected:
  const du::SmartPtr<memkernel::ShapeScene> scene = du::MakeSmart<memkernel::ShapeScene>();
  du::SmartPtr<memkernel::ShapeView> view = du::MakeSmart<memkernel::ShapeView>(scene);
  const du::SmartPtr<ViewRecorder> recorder = du::MakeSmart<ViewRecorder>();
};

TEST_F(ViewTest, GetScene_GivesTheSceneOrNothing)
{
  const auto empty = du::MakeSmart<memkernel::View>(nullptr);
  du::SmartPtr<zelk::Scene> found;

  view->GetScene(found);
  EXPECT_EQ(found, scene);
  empty->GetScene(found);
  EXPECT_FALSE(found);
}

TEST_F(ViewTest, GetHighlightSettings_IntoOneVariableSeveralTimes_LeavesTheLast)
{
  memkernel::HighlightSettings settings;
  settings.assocHighlight = dg::Color(0.25F, 0.5F, 0.75F, 1.0F);
  settings.showAssocHighlight = false;
  view->SetSettings(settings);
  bool isShown = true;
  dg::Color other(0, 0, 0, 1);
  dg::Color assoc(0, 0, 0, 1);

  view->GetHighlightSettings(isShown, isShown, isShown, other, other, assoc);

  EXPECT_FALSE(isShown);
  EXPECT_EQ(other, settings.highlight);
  EXPECT_EQ(assoc, settings.assocHighlight);
}

TEST_F(ViewTest, SetSettings_TellsOfAChangeInBrackets)
{
  view->RegisterObserver(*recorder, false);
  memkernel::HighlightSettings settings;
  settings.selection.red = 0.0F;

  view->SetSettings(settings);
  view->SetSettings(settings);
  view->NotifyCameraChanged();

  EXPECT_THAT(recorder->lines, ElementsAre("begin", "colours", "end", "begin", "camera", "end"));
  EXPECT_TRUE(view->UnregisterObserver(*recorder));
}

TEST_F(ViewTest, RegisterObserver_WithReplay_TellsThePresentSettings)
{
  EXPECT_TRUE(view->RegisterObserver(*recorder, true));
  EXPECT_FALSE(view->RegisterObserver(*recorder, true));

  EXPECT_THAT(recorder->lines, ElementsAre("begin", "colours", "style", "end"));
  view->UnregisterObserver(*recorder);
  view->NotifyRenderStyleChanged();
  EXPECT_EQ(recorder->lines.size(), 4U);
}

TEST_F(ViewTest, View_ThatDies_DropsItsObservers)
{
  view->RegisterObserver(*recorder, false);

  view.Reset();

  EXPECT_THAT(recorder->lines, ElementsAre("unregister"));
  EXPECT_FALSE(recorder->IsRegistered());
}

TEST_F(ViewTest, Observer_ThatUnregistersWhileTheViewDies_IsNoHarm)
{
  class Leaver : public ViewRecorder {
  public:
    memkernel::ShapeView* view = nullptr;
    bool wasKnown = true;
    void OnUnregister() override { wasKnown = view->UnregisterObserver(*this); }
  };
  const auto leaver = du::MakeSmart<Leaver>();
  leaver->view = view.Get();
  view->RegisterObserver(*leaver, false);

  view.Reset();

  EXPECT_FALSE(leaver->wasKnown);
}

TEST_F(ViewTest, ViewClasses_AreToldApartByTheContract)
{
  const du::SmartPtr<zelk::View> report = du::MakeSmart<memkernel::ClashReportView>(scene);

  EXPECT_TRUE(report->IsATypeOf(zelk::ClashReportView::CLASS_TYPE));
  EXPECT_FALSE(report->IsATypeOf(zelk::ShapeView::CLASS_TYPE));
  EXPECT_TRUE(view->IsATypeOf(zelk::ShapeView::CLASS_TYPE));
}

}  // namespace
}  // namespace memkerneltest
