#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "memkernel/ShapeScene.h"
#include "memkernel/View.h"
#include "testsupport/Panel.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testsupport::Panel;

/// An initialised panel that shows a scene of a real kernel. Nothing is recorded.
class SceneLifetime : public testing::Test {
protected:
  SceneLifetime()
  {
    panel.Initialise();
    GetReports().OnSceneAdded(scene);
    GetReports().OnActiveViewChanged(view);
    panel.state->answerToShapeEvents = true;
    static_cast<void>(panel.host.TakeCalls());
  }
  ~SceneLifetime() override
  {
    panel.host.onCall = nullptr;
    GetReports().OnSceneRemoved(scene);
    panel.gui->Reset();
    panel.gui->Close();
  }

  [[nodiscard]] guitree::GuiInterface::SceneManagerObserver& GetReports() const
  {
    return *panel.host.answers.sceneManagerObserver;
  }
  [[nodiscard]] du::SmartPtr<memkernel::ShapeInstance> Show(const std::string& name) const
  {
    return scene->CreateShapeInstance(panel.kernel[name]);
  }

  Panel panel{"root[a b]"};
  du::SmartPtr<memkernel::ShapeScene> scene = du::MakeSmart<memkernel::ShapeScene>(nullptr, panel.kernel.Get());
  du::SmartPtr<memkernel::ShapeView> view = du::MakeSmart<memkernel::ShapeView>(scene);
};

TEST_F(SceneLifetime, TheShownSceneThatIsRemovedWithEventsUnderWay_IsNotRepainted)
{
  {
    const memkernel::ShapeSceneBatch batch(*scene);
    const auto shape = Show("a");

    GetReports().OnSceneRemoved(scene);
  }

  EXPECT_THAT(panel.host.TakeCalls(), Not(Contains(HasSubstr("UpdateVis"))));
  EXPECT_EQ(panel.gui->GetCurrentLog(), nullptr);
}

TEST_F(SceneLifetime, AnotherSceneThatIsRemovedWithEventsUnderWay_LeavesTheShownOne)
{
  const auto other = du::MakeSmart<memkernel::ShapeScene>(nullptr, panel.kernel.Get());
  GetReports().OnSceneAdded(other);
  const memkernel::ShapeSceneBatch batch(*scene);
  const memkernel::ShapeSceneBatch otherBatch(*other);
  const auto shape = Show("a");
  const auto otherShape = other->CreateShapeInstance(panel.kernel["a"]);

  GetReports().OnSceneRemoved(other);

  EXPECT_EQ(panel.gui->GetCurrentLog(), panel.gui->GetLog(scene));
  EXPECT_EQ(panel.gui->GetLog(other), nullptr);
}

TEST_F(SceneLifetime, AViewThatIsReplacedWithEventsUnderWay_LeavesTheEndToTheNewOne)
{
  const auto secondView = du::MakeSmart<memkernel::ShapeView>(scene);
  {
    const memkernel::ShapeSceneBatch batch(*scene);
    const auto shape = Show("a");
    GetReports().OnActiveViewChanged(secondView);
    static_cast<void>(panel.host.TakeCalls());
  }

  EXPECT_THAT(panel.host.TakeCalls(), Contains(HasSubstr("UpdateVisAndTypeIcons(")).Times(1));
  EXPECT_EQ(panel.gui->GetCurrentView(), secondView);
}

TEST_F(SceneLifetime, AfterTheCloseWithEventsUnderWay_NothingReachesTheHost)
{
  {
    const memkernel::ShapeSceneBatch batch(*scene);
    const auto shape = Show("a");
    panel.gui->Close();
    static_cast<void>(panel.host.TakeCalls());
    const auto late = Show("b");
  }

  EXPECT_THAT(panel.host.TakeCalls(), testing::IsEmpty());
  EXPECT_EQ(panel.gui->GetLog(scene), nullptr);
}

TEST_F(SceneLifetime, AfterTheEndOfThePanelWithEventsUnderWay_NothingReachesTheHost)
{
  Panel ended("root[a]");
  ended.Initialise();
  ended.host.answers.sceneManagerObserver->OnSceneAdded(scene);
  ended.host.answers.sceneManagerObserver->OnActiveViewChanged(view);
  {
    const memkernel::ShapeSceneBatch batch(*scene);
    const auto shape = Show("a");
    ended.gui->Close();
    ended.gui->Reset();
    ended.gui.Reset();
    static_cast<void>(ended.host.TakeCalls());
    const auto late = Show("b");
  }

  EXPECT_THAT(ended.host.TakeCalls(), testing::IsEmpty());
}

}  // namespace
