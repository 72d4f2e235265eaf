#include <gtest/gtest.h>

#include <latch>
#include <thread>

#include "testsupport/DisplaySwitches.h"

namespace {

using guitree::WorldTreeState;
using testsupport::DisplaySwitches;

TEST(DisplaySwitchesThreads, AreReadByAWorkerWhileTheOwnerSetsThem)
{
  const DisplaySwitches restored;
  constexpr int count = 10000;
  std::latch start(2);
  std::thread worker([&] {
    start.arrive_and_wait();
    for (int i = 0; i < count; ++i) {
      static_cast<void>(WorldTreeState::IsShowingBodies());
      static_cast<void>(WorldTreeState::IsCollapsingInstances());
    }
    while (WorldTreeState::IsShowingBodies() || !WorldTreeState::IsCollapsingInstances()) {
      std::this_thread::yield();
    }
  });

  start.arrive_and_wait();
  for (int i = 0; i < count; ++i) {
    WorldTreeState::SetIsShowingBodies(i % 2 == 0);
    WorldTreeState::SetIsCollapsingInstances(i % 2 == 0);
  }
  WorldTreeState::SetIsShowingBodies(false);
  WorldTreeState::SetIsCollapsingInstances(true);
  worker.join();

  EXPECT_FALSE(WorldTreeState::IsShowingBodies());
  EXPECT_TRUE(WorldTreeState::IsCollapsingInstances());
}

}  // namespace
