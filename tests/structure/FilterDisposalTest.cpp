// When the memory of a filter is given back.

#include <gtest/gtest.h>

#include <memory>

#include "CountedMemory.h"
#include "StructureStage.h"
#include "facade/Retirement.h"

namespace {

using structuretest::IsWatchedMemoryFreed;
using structuretest::StructureStage;
using structuretest::WatchMemory;

TEST(FilterDisposal, AReset_FreesTheFilterAtOnceWhileNoOperationIsUnderWay)
{
  const StructureStage stage;
  WatchMemory(&stage.GetFilter());

  stage.state->Reset();

  EXPECT_TRUE(IsWatchedMemoryFreed());
}

TEST(FilterDisposal, AResetInsideACallOfTheHost_FreesTheFilterAtTheEndOfTheOutermostOperation)
{
  StructureStage stage;
  WatchMemory(&stage.GetFilter());
  bool wasFreedInside = false;
  stage.host.onCall = [&](const std::string& line) {
    if (line.starts_with("ClearTree")) {
      stage.state->Reset();
    }
    wasFreedInside = wasFreedInside || IsWatchedMemoryFreed();
  };

  stage.state->PopulateTree(false);

  EXPECT_FALSE(wasFreedInside);
  EXPECT_TRUE(IsWatchedMemoryFreed());
}

TEST(FilterDisposal, AResetInsideACallOfThePanel_FreesTheFilterAtTheEndOfThatCall)
{
  StructureStage stage;
  stage.gui->Initialise(stage.world);
  WatchMemory(&stage.GetFilter());
  bool wasFreedInside = false;
  stage.host.onCall = [&](const std::string& line) {
    if (line.starts_with("CurrentViewChanged")) {
      stage.state->Reset();
    }
    wasFreedInside = wasFreedInside || IsWatchedMemoryFreed();
  };

  stage.host.answers.sceneManagerObserver->OnActiveViewChanged(structuretest::MakeView("panel"));

  EXPECT_FALSE(wasFreedInside);
  EXPECT_TRUE(IsWatchedMemoryFreed());
}

TEST(FilterDisposal, TheEndOfAState_FreesItsFiltersOnlyAfterAReset)
{
  StructureStage stage;
  auto state = du::MakeSmart<guitree::StructureTreeState>(*stage.gui, true);
  WatchMemory(&state->GetFilter(nullptr));
  state.Reset();
  EXPECT_FALSE(IsWatchedMemoryFreed());

  state = du::MakeSmart<guitree::StructureTreeState>(*stage.gui, true);
  WatchMemory(&state->GetFilter(nullptr));
  state->Reset();
  state.Reset();
  EXPECT_TRUE(IsWatchedMemoryFreed());
}

TEST(Retirement, OutsideOfAnOperation_EndsTheObjectAtOnce)
{
  auto object = std::make_shared<const int>(1);
  const std::weak_ptr<const int> watched = object;

  guitree::Retirement::Retire(std::exchange(object, {}));

  EXPECT_TRUE(watched.expired());
}

TEST(Retirement, InsideOperations_EndsTheObjectWithTheOutermost)
{
  auto object = std::make_shared<const int>(1);
  const std::weak_ptr<const int> watched = object;

  {
    const guitree::Retirement outer;
    {
      const guitree::Retirement inner;
      guitree::Retirement::Retire(std::exchange(object, {}));
    }
    EXPECT_FALSE(watched.expired());
  }

  EXPECT_TRUE(watched.expired());
}

TEST(Retirement, AnObjectWhoseEndIsAnOperation_MayRetireOthers)
{
  auto inner = std::make_shared<const int>(1);
  const std::weak_ptr<const int> watched = inner;
  {
    const guitree::Retirement outer;
    guitree::Retirement::Retire(std::shared_ptr<const int>(new int(2), [&inner](const int* value) {
      const guitree::Retirement operation;
      guitree::Retirement::Retire(std::exchange(inner, {}));
      delete value;
    }));
    EXPECT_FALSE(watched.expired());
  }

  EXPECT_TRUE(watched.expired());
}

}  // namespace
