// What the events of loads know of their state.

#include <gmock/gmock.h>

#include "ShapeLoadingFixture.h"
#include "sceneinfo/WTShapeLoaderEvent.h"

namespace {

class LiveLoads : public sceneinfotest::ShapeLoadingFixture {
protected:
  [[nodiscard]] const guitree::WTShapeLoaderEvent& GetEvent(std::size_t number) const
  {
    return dynamic_cast<const guitree::WTShapeLoaderEvent&>(*loader.Requests().at(number).event);
  }
  void CreateAgain(const ShapeInstance& shapeInstance) const { scene->observer->OnShapeInstanceCreate(shapeInstance); }
  void EndState()
  {
    panel.gui->SetTreeState(nullptr);
    panel.state.Reset();
  }
};

TEST_F(LiveLoads, KnowTheirStateUntilItEnds)
{
  Create("a");
  const ShapeInstance b = Create("b");
  CreateAgain(b);
  for (std::size_t number = 0; number < 3; ++number) {
    EXPECT_EQ(GetEvent(number).treeState, panel.state.Get());
  }

  EndState();

  for (std::size_t number = 0; number < 3; ++number) {
    EXPECT_EQ(GetEvent(number).treeState, nullptr);
  }
}

TEST_F(LiveLoads, ThatHaveCompleted_KnowNeitherWhatTheyLoadedNorTheirState)
{
  const ShapeInstance a = Create("a");

  End(0, a, zelk::ShapeDataLoaded);

  EXPECT_FALSE(GetEvent(0).shapeInstance);
  EXPECT_FALSE(GetEvent(0).shapeScene);
  EXPECT_EQ(GetEvent(0).treeState, nullptr);
}

TEST_F(LiveLoads, OfOneShapeInstance_TheSecondCompletionTakesTheFirstOneOut)
{
  const ShapeInstance a = Create("a");
  CreateAgain(a);
  End(1, a, zelk::ShapeDataLoaded);

  scene->observer->OnShapeInstanceRemove(a);

  EXPECT_FALSE(loader.Requests().at(0).event->IsCanceled());
}

TEST_F(LiveLoads, ThatAreDroppedAfterTheirState_AreNoTrouble)
{
  const ShapeInstance a = Create("a");
  CreateAgain(a);
  EndState();
  loop->Close();

  loader.Requests().clear();

  EXPECT_FALSE(panel.state);
}

}  // namespace
