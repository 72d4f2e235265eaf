#include "zelk/ProgressCtrl.h"

#include <gtest/gtest.h>

namespace {

TEST(ProgressCtrl, HoldsItsEvent)
{
  auto event = du::MakeSmart<zelk::AsyncEvent>(true);
  {
    const auto ctrl = du::MakeSmart<zelk::ProgressCtrl>(event);

    ctrl->OnProgress(50);
    ctrl->OnFinished();

    EXPECT_TRUE(ctrl->GetEvent() == event);
    EXPECT_EQ(event->AddReference(nullptr), 3);
    event->RemoveReference(nullptr);
  }

  EXPECT_EQ(event->AddReference(nullptr), 2);
  event->RemoveReference(nullptr);
}

TEST(ProgressCtrl, MayHaveNoEvent)
{
  EXPECT_FALSE(zelk::ProgressCtrl(nullptr).GetEvent());
}

}  // namespace
