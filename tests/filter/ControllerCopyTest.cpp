#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "JobStage.h"

namespace {

using filtertest::JobStage;
using filtertest::Show;
using guitree::TreeController;
using testing::IsEmpty;
using testing::SizeIs;

TEST(ControllerCopy, SharesResultAndJobs)
{
  JobStage stage;
  stage.Request();
  stage.Finish();
  stage.Request();

  TreeController copy(stage.GetController());

  EXPECT_TRUE(copy.IsBusy());
  EXPECT_EQ(copy.GetFilteredTree(), stage.GetController().GetFilteredTree());
  EXPECT_NE(copy.GetFilteredTree(), nullptr);
}

TEST(ControllerCopy, MayEndBeforeTheJobs_TheSourceHearsOfThem)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.Request();
  {
    const TreeController copy(stage.GetController());
    TreeController assigned(stage.gui.Get());
    assigned = copy;
  }

  stage.Finish();

  EXPECT_THAT(observer->calls, SizeIs(1));
  EXPECT_FALSE(stage.GetController().IsBusy());
}

TEST(ControllerCopy, AnAssignmentOrphansTheJobsThatItReplaces)
{
  JobStage stage;
  const auto observer = du::MakeSmart<filtertest::CountingObserver>();
  std::optional<TreeController> assigned(stage.gui.Get());
  assigned->AddObserver(observer);
  assigned->ApplyFilterToTree(stage.state->filter, stage.state.Get());

  *assigned = stage.GetController();
  EXPECT_FALSE(assigned->IsBusy());
  assigned.reset();
  stage.Finish();

  EXPECT_THAT(observer->calls, IsEmpty());
  EXPECT_TRUE(stage.host.events.at(0)->IsCompleted());
}

TEST(ControllerCopy, AnAssignmentFromACopyOfItselfKeepsTheJobs)
{
  JobStage stage;
  const auto observer = stage.AddObserver();
  stage.LetThrough({"b"});
  stage.Request();
  const TreeController copy(stage.GetController());

  stage.GetController() = copy;
  TreeController& self = stage.GetController();
  stage.GetController() = self;
  stage.Finish();

  EXPECT_THAT(observer->calls, SizeIs(1));
  EXPECT_EQ(Show(stage.GetController().GetFilteredTree()), "root[a[b]]");
}

TEST(ControllerCopy, AnAssignmentMayEndTheControllerWithWhatItReplaces)
{
  JobStage stage;
  std::optional<TreeController> assigned(stage.gui.Get());
  auto former = du::MakeSmart<memkernel::Tree>();
  const auto watch = du::MakeSmart<filtertest::TreeWatch>();
  watch->onEnd = [&] { assigned.reset(); };
  former->RegisterObserver(*watch, false);
  former->CreateRoot(former->CreateProduct({.name = "former"}));
  stage.gui->SetBaseTree(former);
  assigned->ApplyFilterToTree(stage.state->filter, stage.state.Get());
  stage.Finish();
  ASSERT_EQ(Show(assigned->GetFilteredTree()), "former");
  stage.gui->SetBaseTree(stage.kernel.Get());
  stage.host.events.clear();
  former.Reset();

  *assigned = stage.GetController();

  EXPECT_FALSE(assigned.has_value());
}

}  // namespace
