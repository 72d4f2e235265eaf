#include "FilterHold.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <thread>

#include "PanelStage.h"
#include "zelremote/StructureFilterInfo.h"

namespace {

class FilterHoldTest : public testing::Test {
protected:
  using TreePtr = du::SmartPtr<guitree::FilteredTree>;

  [[nodiscard]] TreePtr Make() const { return TreePtr(hold->MakeTree()); }

  /// A build on a thread of its own.
  [[nodiscard]] std::jthread Build(const TreePtr& tree, const char* text = "bolt") const
  {
    return std::jthread([tree, pump = stage.pump, text] {
      zelremote::StructureFilterInfo filter("test");
      filter.SetText(text);
      du::SmartPtr<du::RefCounted> noInfo;
      tree->BuildTree(filter, pump, {}, noInfo, {}, nullptr);
    });
  }

  void WaitUntilReached() const
  {
    EXPECT_TRUE(stage.GetWorld()->GetLoop().RunUntil([this] { return hold->IsReached(); }));
  }

  PanelStage stage;
  std::unique_ptr<FilterHold> hold = std::make_unique<FilterHold>(stage.GetWorld()->GetLoopPtr());
};

TEST_F(FilterHoldTest, Off_MakesNoTreeOfItsOwn)
{
  EXPECT_EQ(hold->MakeTree(), nullptr);
  EXPECT_FALSE(hold->IsReached());
}

TEST_F(FilterHoldTest, On_ABuildWaitsWithTheTreeLockedUntilItIsLetGo)
{
  hold->SetOn(true);
  const TreePtr tree = Make();
  std::jthread worker = Build(tree);
  WaitUntilReached();
  bool isEditHeldUp = false;
  stage.GetTree().SetEditGate([&] {
    isEditHeldUp = true;
    hold->LetGo();
  });

  EXPECT_TRUE(stage.GetTree().Rename(stage.frame, "beam"));
  worker.join();

  EXPECT_TRUE(isEditHeldUp);
  EXPECT_FALSE(hold->IsReached());
  EXPECT_FALSE(tree->IsFilteredTreeEmpty());
  stage.GetTree().SetEditGate({});
}

TEST_F(FilterHoldTest, On_TheFirstMatchHasBeenRecordedAndNoMore)
{
  hold->SetOn(true);
  const TreePtr tree = Make();
  std::jthread worker = Build(tree, "t");
  WaitUntilReached();

  guitree::FilteredTree::InstanceSet matches;
  tree->GetMatchedFilterItems(matches);
  EXPECT_EQ(matches.size(), 1U);

  hold->LetGo();
  worker.join();
  tree->GetMatchedFilterItems(matches);
  EXPECT_EQ(matches.size(), 3U);
}

TEST_F(FilterHoldTest, On_ABuildWithoutAMatchComesToItsEnd)
{
  hold->SetOn(true);
  const TreePtr tree = Make();

  Build(tree, "washer").join();

  EXPECT_TRUE(tree->IsFilteredTreeEmpty());
  EXPECT_FALSE(hold->IsReached());
}

TEST_F(FilterHoldTest, NewerTree_LetsTheOneBeforeGo)
{
  hold->SetOn(true);
  const TreePtr older = Make();
  std::jthread olderWorker = Build(older);
  WaitUntilReached();

  const TreePtr newer = Make();
  EXPECT_FALSE(hold->IsReached());
  olderWorker.join();

  std::jthread newerWorker = Build(newer);
  WaitUntilReached();
  hold->LetGo();
}

TEST_F(FilterHoldTest, TurnedOff_LetsGo)
{
  hold->SetOn(true);
  std::jthread worker = Build(Make());
  WaitUntilReached();

  hold->SetOn(false);

  worker.join();
  EXPECT_EQ(hold->MakeTree(), nullptr);
}

TEST_F(FilterHoldTest, End_LetsGo)
{
  hold->SetOn(true);
  std::jthread worker = Build(Make());
  WaitUntilReached();

  hold.reset();

  worker.join();
}

}  // namespace
