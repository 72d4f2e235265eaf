#include "memkernel/Loader.h"

#include <gmock/gmock.h>

#include <atomic>
#include <latch>
#include <stdexcept>
#include <thread>

#include "Recorders.h"
#include "memkernel/World.h"

namespace memkerneltest {
namespace {

using memkernel::LoadContext;
using memkernel::Loader;
using testing::Each;
using testing::ElementsAre;

const du::Flags s_geometry(zelloader::Loader::LoadGeometry);

/// Notes the status with which it ends, and that of the shape at that time.
class LoadEvent : public zelloader::ShapeLoaderEvent {
public:
  LoadEvent(const du::SmartPtr<memkernel::Shape>& shape, std::vector<int>& ends) : m_shape(shape), m_ends(ends) {}

  unsigned short shapeStatus = 99;

protected:
  void OnComplete(unsigned short status) override
  {
    m_ends.push_back(status);
    shapeStatus = m_shape ? m_shape->GetDataStatus() : zelk::ShapeDataNone;
  }

private:
  du::SmartPtr<memkernel::Shape> m_shape;
  std::vector<int>& m_ends;
};

class LoaderTest : public testing::Test {
protected:
  ~LoaderTest() override { world->Shutdown(); }

  [[nodiscard]] du::SmartPtr<LoadEvent> MakeEvent(const du::SmartPtr<memkernel::Shape>& shape)
  {
    auto event = du::MakeSmart<LoadEvent>(shape, ends);
    host->ManageObject(event);
    return event;
  }
  bool Load(const du::SmartPtr<memkernel::Shape>& shape, const du::SmartPtr<LoadEvent>& event)
  {
    return world->GetMemLoader().LoadShape(shape, s_geometry, event.Get(), nullptr);
  }
  void RunUntilEnds(std::size_t count)
  {
    world->GetLoop().RunUntil([&] { return ends.size() >= count; });
  }

  std::vector<int> ends;
  const du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>(3U);
  const du::SmartPtr<dom::ManagedObject> host = world->CreateManagedObject();
};

TEST_F(LoaderTest, LoadShape_RunsTheWorkElsewhereAndCompletesLater)
{
  std::thread::id worker;
  const auto shape = du::MakeSmart<memkernel::Shape>([&](LoadContext&) {
    worker = std::this_thread::get_id();
    return zelk::ShapeDataLoaded;
  });
  const auto event = MakeEvent(shape);

  EXPECT_TRUE(Load(shape, event));
  EXPECT_TRUE(ends.empty());
  RunUntilEnds(1);

  EXPECT_NE(worker, std::this_thread::get_id());
  EXPECT_THAT(ends, ElementsAre(zelk::BaseAsyncEvent::StatusCompleted));
  EXPECT_EQ(event->shapeStatus, zelk::ShapeDataLoaded);
}

TEST_F(LoaderTest, LoadShape_WhoseWorkFailsOrThrowsOrBringsNothing_FailsTheShape)
{
  const memkernel::Shape::Work works[] = {
      [](LoadContext&) { return zelk::ShapeDataFailed; },
      [](LoadContext&) { return zelk::ShapeDataNone; },
      [](LoadContext&) -> zelk::ShapeDataStatus { throw std::runtime_error("damaged"); },
  };
  for (const auto& work : works) {
    const auto shape = du::MakeSmart<memkernel::Shape>(work);
    const auto event = MakeEvent(shape);
    ends.clear();

    EXPECT_TRUE(Load(shape, event));
    RunUntilEnds(1);

    EXPECT_THAT(ends, ElementsAre(Loader::StatusFailed));
    EXPECT_EQ(event->shapeStatus, zelk::ShapeDataFailed);
    EXPECT_FALSE(event->GetError().IsEmpty());
  }
}

TEST_F(LoaderTest, LoadShape_WithNothingToLoad_CompletesInALaterTurn)
{
  const auto loaded = du::MakeSmart<memkernel::Shape>(nullptr, zelk::ShapeDataLoaded);
  const auto workless = du::MakeSmart<memkernel::Shape>(nullptr);

  EXPECT_FALSE(Load(loaded, MakeEvent(loaded)));
  EXPECT_FALSE(Load(workless, MakeEvent(workless)));
  EXPECT_FALSE(Load(nullptr, MakeEvent(nullptr)));
  EXPECT_TRUE(ends.empty());
  RunUntilEnds(3);

  EXPECT_THAT(ends, ElementsAre(0, Loader::StatusFailed, Loader::StatusFailed));
  EXPECT_EQ(workless->GetDataStatus(), zelk::ShapeDataFailed);
}

TEST_F(LoaderTest, LoadShape_WithoutAnEvent_IsRefused)
{
  const auto shape = du::MakeSmart<memkernel::Shape>([](LoadContext&) { return zelk::ShapeDataLoaded; });

  EXPECT_FALSE(world->GetMemLoader().LoadShape(shape, s_geometry, nullptr, nullptr));
}

TEST_F(LoaderTest, LoadShape_TwiceAtATime_SharesOneRunAndCompletesBoth)
{
  std::latch mayEnd(1);
  std::atomic<int> runs{0};
  const auto shape = du::MakeSmart<memkernel::Shape>([&](LoadContext&) {
    ++runs;
    mayEnd.wait();
    return zelk::ShapeDataLoaded;
  });

  EXPECT_TRUE(Load(shape, MakeEvent(shape)));
  EXPECT_TRUE(Load(shape, MakeEvent(shape)));
  mayEnd.count_down();
  RunUntilEnds(2);

  EXPECT_EQ(runs, 1);
  EXPECT_THAT(ends, ElementsAre(0, 0));
}

TEST_F(LoaderTest, Cancel_OfTheOnlyLoad_StopsTheWorkAndLeavesTheStatus)
{
  std::latch isRunning(1);
  const auto shape = du::MakeSmart<memkernel::Shape>([&](LoadContext& context) {
    isRunning.count_down();
    while (!context.IsCanceled()) {
      std::this_thread::yield();
    }
    return zelk::ShapeDataNone;
  });
  const auto event = MakeEvent(shape);
  Load(shape, event);
  isRunning.wait();

  event->Cancel();
  RunUntilEnds(1);

  EXPECT_THAT(ends, ElementsAre(zelk::BaseAsyncEvent::StatusCanceled));
  EXPECT_EQ(event->shapeStatus, zelk::ShapeDataNone);
}

TEST_F(LoaderTest, Cancel_OfOneOfTwoLoads_LetsTheWorkGoOnForTheOther)
{
  std::latch isRunning(1);
  std::latch isCanceled(1);
  const auto shape = du::MakeSmart<memkernel::Shape>([&](LoadContext& context) {
    isRunning.count_down();
    isCanceled.wait();
    return context.IsCanceled() ? zelk::ShapeDataNone : zelk::ShapeDataLoaded;
  });
  const auto first = MakeEvent(shape);
  const auto second = MakeEvent(shape);
  Load(shape, first);
  Load(shape, second);
  isRunning.wait();

  first->Cancel();
  isCanceled.count_down();
  RunUntilEnds(2);

  EXPECT_EQ(shape->GetDataStatus(), zelk::ShapeDataLoaded);
  EXPECT_THAT(ends, ElementsAre(zelk::BaseAsyncEvent::StatusCanceled, 0));
}

TEST_F(LoaderTest, LoadShape_AfterTheWorkWasToldToStop_RunsItAgain)
{
  std::latch isRunning(1);
  std::latch wasTold(1);
  std::latch isAskedAgain(1);
  std::atomic<int> runs{0};
  const auto shape = du::MakeSmart<memkernel::Shape>([&](LoadContext& context) {
    if (++runs > 1) {
      return zelk::ShapeDataLoaded;
    }
    isRunning.count_down();
    while (!context.IsCanceled()) {
      std::this_thread::yield();
    }
    wasTold.count_down();
    isAskedAgain.wait();
    return zelk::ShapeDataNone;
  });
  const auto first = MakeEvent(shape);
  Load(shape, first);
  isRunning.wait();
  first->Cancel();
  wasTold.wait();

  EXPECT_TRUE(Load(shape, MakeEvent(shape)));
  isAskedAgain.count_down();
  RunUntilEnds(2);

  EXPECT_EQ(runs, 2);
  EXPECT_EQ(shape->GetDataStatus(), zelk::ShapeDataLoaded);
  EXPECT_THAT(ends, ElementsAre(zelk::BaseAsyncEvent::StatusCanceled, 0));
}

TEST_F(LoaderTest, Progress_OfTheWork_IsThatOfTheEvent)
{
  const auto shape = du::MakeSmart<memkernel::Shape>([](LoadContext& context) {
    context.ReportProgress(40);
    return zelk::ShapeDataPartial;
  });
  const auto event = MakeEvent(shape);

  Load(shape, event);
  RunUntilEnds(1);

  EXPECT_EQ(event->GetProgress(), 40);
  EXPECT_EQ(event->shapeStatus, zelk::ShapeDataPartial);
}

TEST_F(LoaderTest, GetLoadCount_TellsHowManyShapesAreUnderWay)
{
  std::latch mayEnd(1);
  const auto work = [&](LoadContext&) {
    mayEnd.wait();
    return zelk::ShapeDataLoaded;
  };
  const auto shape = du::MakeSmart<memkernel::Shape>(work);
  const auto other = du::MakeSmart<memkernel::Shape>(work);
  EXPECT_EQ(world->GetMemLoader().GetLoadCount(), 0U);

  Load(shape, MakeEvent(shape));
  Load(shape, MakeEvent(shape));
  Load(other, MakeEvent(other));

  EXPECT_EQ(world->GetMemLoader().GetLoadCount(), 2U);
  mayEnd.count_down();
  world->GetLoop().RunUntil([&] { return world->GetMemLoader().GetLoadCount() == 0; });
  world->GetLoop().RunDue();
  EXPECT_EQ(ends.size(), 3U);
}

TEST_F(LoaderTest, LoadShape_OfManyShapes_CompletesEachOnce)
{
  constexpr std::size_t count = 300;
  std::vector<du::SmartPtr<memkernel::Shape>> shapes;
  for (std::size_t i = 0; i < count; ++i) {
    shapes.push_back(du::MakeSmart<memkernel::Shape>([](LoadContext&) { return zelk::ShapeDataLoaded; }));
    Load(shapes.back(), MakeEvent(shapes.back()));
  }

  RunUntilEnds(count);
  world->GetLoop().RunDue();

  EXPECT_EQ(ends.size(), count);
  EXPECT_THAT(ends, Each(0));
}

TEST_F(LoaderTest, Shutdown_CompletesWhatRunsWhatWaitsAndWhatComesTooLate)
{
  std::latch isRunning(1);
  const auto work = [&](LoadContext& context) {
    isRunning.count_down();
    while (!context.IsCanceled()) {
      std::this_thread::yield();
    }
    return zelk::ShapeDataNone;
  };
  const auto running = du::MakeSmart<memkernel::Shape>(work);
  Load(running, MakeEvent(running));
  isRunning.wait();
  std::vector<du::SmartPtr<memkernel::Shape>> waiting;
  for (int i = 0; i < 10; ++i) {
    waiting.push_back(du::MakeSmart<memkernel::Shape>([](LoadContext& context) {
      while (!context.IsCanceled()) {
        std::this_thread::yield();
      }
      return zelk::ShapeDataNone;
    }));
    Load(waiting.back(), MakeEvent(waiting.back()));
  }
  world->GetMemLoader().Shutdown();
  EXPECT_FALSE(Load(du::MakeSmart<memkernel::Shape>(work), MakeEvent(nullptr)));

  world->Shutdown();

  EXPECT_EQ(ends.size(), 12U);
  EXPECT_THAT(ends, Each(zelk::BaseAsyncEvent::StatusCanceled));
}

}  // namespace
}  // namespace memkerneltest
