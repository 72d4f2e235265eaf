#include "zelk/BaseAsyncEvent.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "ProbeEvent.h"
#include "TestQueue.h"
#include "zelloader/ShapeLoaderEvent.h"

namespace {

using kerneltest::EventRecord;
using kerneltest::ProbeEvent;
using kerneltest::TestQueue;
using Statuses = std::vector<unsigned short>;
using Told = std::vector<std::pair<int, bool>>;

class BaseAsyncEvent : public testing::Test {
protected:
  ~BaseAsyncEvent() override { queue->Close(); }

  [[nodiscard]] du::SmartPtr<ProbeEvent> MakeEvent(bool hasWorker)
  {
    return du::MakeSmart<ProbeEvent>(record, hasWorker);
  }

  [[nodiscard]] du::SmartPtr<ProbeEvent> MakeManagedEvent(bool hasWorker)
  {
    auto event = MakeEvent(hasWorker);
    EXPECT_TRUE(owner->ManageObject(event));
    return event;
  }

  void Listen(ProbeEvent& event)
  {
    event.AddProgressListener(
        [this](unsigned char percent, bool isCompleted) { told.emplace_back(percent, isCompleted); });
  }

  EventRecord record;
  Told told;
  du::SmartPtr<TestQueue> queue = du::MakeSmart<TestQueue>();
  du::SmartPtr<dom::ManagedObject> owner = du::MakeSmart<dom::ManagedObject>(queue);
};

TEST_F(BaseAsyncEvent, Complete_IsDeliveredInALaterTurnAndOnce)
{
  const auto event = MakeManagedEvent(true);

  event->Complete();
  EXPECT_TRUE(record.completions.empty());
  EXPECT_TRUE(event->IsCompleted());

  queue->RunDue();
  EXPECT_EQ(record.completions, (Statuses{zelk::BaseAsyncEvent::StatusCompleted}));

  event->Complete();
  event->CompleteWithError("late", 5);
  queue->RunDue();
  EXPECT_EQ(record.completions.size(), 1U);
  EXPECT_TRUE(event->GetError().IsEmpty());
}

TEST_F(BaseAsyncEvent, PlainCompletion_HasStatusZero)
{
  EXPECT_EQ(zelk::BaseAsyncEvent::StatusCompleted, 0);
}

TEST_F(BaseAsyncEvent, CompletionFromInsideOnComplete_IsIgnored)
{
  const auto event = MakeManagedEvent(false);
  record.onComplete = [&] {
    event->Complete();
    event->Cancel();
  };

  event->Complete();
  queue->RunDue();
  queue->RunDue();

  EXPECT_EQ(record.completions.size(), 1U);
}

TEST_F(BaseAsyncEvent, CompleteWithError_BringsStatusAndError)
{
  const auto event = MakeManagedEvent(true);

  event->CompleteWithError("disk full", 7);
  queue->RunDue();

  EXPECT_EQ(record.completions, (Statuses{7}));
  EXPECT_TRUE(event->GetError() == "disk full");
}

TEST_F(BaseAsyncEvent, TheFirstWayToComplete_Wins)
{
  const auto event = MakeManagedEvent(false);

  event->CompleteWithError("first", 3);
  event->Complete();
  event->Cancel();
  queue->RunDue();

  EXPECT_EQ(record.completions, (Statuses{3}));
}

TEST_F(BaseAsyncEvent, Cancel_OfAnEventWithAWorker_OnlyRaisesTheFlag)
{
  const auto event = MakeManagedEvent(true);
  EXPECT_FALSE(event->IsCanceled());

  event->Cancel();
  EXPECT_TRUE(event->IsCanceled());
  EXPECT_FALSE(event->IsCompleted());
  EXPECT_EQ(queue->RunDue(), 0U);
  EXPECT_FALSE(event->Progress(10));

  event->Complete();
  queue->RunDue();
  EXPECT_EQ(record.completions, (Statuses{zelk::BaseAsyncEvent::StatusCompleted}));
}

TEST_F(BaseAsyncEvent, Cancel_OfAnEventWithoutAWorker_CompletesItInALaterTurn)
{
  const auto event = MakeManagedEvent(false);

  event->Cancel();
  EXPECT_TRUE(record.completions.empty());

  queue->RunDue();
  EXPECT_EQ(record.completions, (Statuses{zelk::BaseAsyncEvent::StatusCanceled}));
}

TEST_F(BaseAsyncEvent, Cancel_AfterCompletion_DoesNothing)
{
  const auto event = MakeManagedEvent(false);
  event->Complete();

  event->Cancel();
  queue->RunDue();

  EXPECT_FALSE(event->IsCanceled());
  EXPECT_EQ(record.completions, (Statuses{zelk::BaseAsyncEvent::StatusCompleted}));
}

TEST_F(BaseAsyncEvent, ThatCompletesBeforeItIsManaged_WaitsForItsManager)
{
  const auto event = MakeEvent(true);
  event->CompleteWithError("early", 2);
  EXPECT_EQ(queue->RunDue(), 0U);

  owner->ManageObject(event);
  EXPECT_TRUE(record.completions.empty());

  queue->RunDue();
  EXPECT_EQ(record.completions, (Statuses{2}));
}

TEST_F(BaseAsyncEvent, ThatIsNeverManaged_DiesWithItsHolderAndCompletesNever)
{
  auto event = MakeEvent(true);
  event->Complete();

  event.Reset();

  EXPECT_TRUE(record.isDestroyed);
  EXPECT_TRUE(record.completions.empty());
}

TEST_F(BaseAsyncEvent, ThatIsManaged_LivesUntilOnCompleteHasEnded)
{
  auto event = MakeManagedEvent(true);
  ProbeEvent* address = event.Get();
  bool wasDestroyedInOnComplete = true;
  record.onComplete = [&] { wasDestroyedInOnComplete = record.isDestroyed; };

  event.Reset();
  ASSERT_FALSE(record.isDestroyed);
  address->Complete();
  ASSERT_FALSE(record.isDestroyed);
  queue->RunDue();

  EXPECT_FALSE(wasDestroyedInOnComplete);
  EXPECT_EQ(record.completions.size(), 1U);
  EXPECT_TRUE(record.isDestroyed);
}

TEST_F(BaseAsyncEvent, WhoseLastHolderLetsGoInsideOnComplete_OutlivesIt)
{
  auto event = MakeManagedEvent(true);
  bool wasDestroyedInOnComplete = true;
  record.onComplete = [&] {
    event.Reset();
    wasDestroyedInOnComplete = record.isDestroyed;
  };

  event->Complete();
  queue->RunDue();

  EXPECT_FALSE(wasDestroyedInOnComplete);
  EXPECT_TRUE(record.isDestroyed);
}

TEST_F(BaseAsyncEvent, WhoseManagerGoesFirst_StillCompletes)
{
  const auto event = MakeManagedEvent(true);

  owner.Reset();
  event->Complete();
  queue->RunDue();

  EXPECT_EQ(record.completions.size(), 1U);
}

TEST_F(BaseAsyncEvent, WhoseQueueClosesBeforeCompletion_IsLetGoOfWithoutCompleting)
{
  auto event = MakeManagedEvent(true);

  queue->Close();
  event->Complete();
  EXPECT_TRUE(record.completions.empty());
  EXPECT_EQ(event->CountReferences(), 1);

  event.Reset();
  EXPECT_TRUE(record.isDestroyed);
}

TEST_F(BaseAsyncEvent, WhoseCompletionIsOnItsWayWhenTheQueueCloses_IsLetGoOf)
{
  auto event = MakeManagedEvent(true);
  event->Complete();
  event.Reset();

  queue->Close();

  EXPECT_TRUE(record.isDestroyed);
  EXPECT_TRUE(record.completions.empty());
}

TEST_F(BaseAsyncEvent, ThatIsManagedAfterTheQueueHasClosed_IsNotKeptForEver)
{
  queue->Close();
  auto event = MakeEvent(true);

  owner->ManageObject(event);
  event->Complete();
  event.Reset();

  EXPECT_TRUE(record.isDestroyed);
}

TEST_F(BaseAsyncEvent, Progress_IsToldInALaterTurnAndOnlyTheNewest)
{
  const auto event = MakeManagedEvent(true);
  Listen(*event);

  EXPECT_TRUE(event->Progress(10));
  EXPECT_TRUE(event->Progress(20));
  EXPECT_TRUE(event->Progress(30));
  EXPECT_EQ(event->GetProgress(), 30);
  EXPECT_TRUE(told.empty());
  EXPECT_EQ(queue->RunDue(), 1U);
  EXPECT_EQ(told, (Told{{30, false}}));

  event->Progress(40);
  queue->RunDue();
  EXPECT_EQ(told, (Told{{30, false}, {40, false}}));
}

TEST_F(BaseAsyncEvent, Progress_ThatHasNotChanged_IsNotTold)
{
  const auto event = MakeManagedEvent(true);
  Listen(*event);
  event->Progress(10);
  queue->RunDue();

  event->Progress(10);

  EXPECT_EQ(queue->RunDue(), 0U);
  EXPECT_EQ(told, (Told{{10, false}}));
}

TEST_F(BaseAsyncEvent, ProgressBeforeItIsManaged_DoesNotSilenceWhatFollows)
{
  const auto event = MakeEvent(true);
  Listen(*event);
  event->Progress(10);

  owner->ManageObject(event);
  event->Progress(20);
  queue->RunDue();

  EXPECT_EQ(told, (Told{{20, false}}));
}

TEST_F(BaseAsyncEvent, WithoutListeners_PostsNoProgress)
{
  const auto event = MakeManagedEvent(true);

  event->Progress(10);

  EXPECT_EQ(queue->RunDue(), 0U);
  EXPECT_EQ(event->GetProgress(), 10);
}

TEST_F(BaseAsyncEvent, Listeners_AreToldOfTheCompletionAfterOnCompleteAndThenDropped)
{
  const auto event = MakeManagedEvent(true);
  Listen(*event);
  Told toldBefore;
  record.onComplete = [&] { toldBefore = told; };
  event->Progress(70);

  event->Complete();
  queue->RunDue();
  event->Progress(80);
  queue->RunDue();

  EXPECT_EQ(toldBefore, (Told{{70, false}}));
  EXPECT_EQ(told, (Told{{70, false}, {70, true}}));
}

TEST_F(BaseAsyncEvent, Listeners_AreCalledInOrderAndMayAddOthers)
{
  const auto event = MakeManagedEvent(true);
  std::vector<int> order;
  event->AddProgressListener([&](unsigned char, bool) {
    order.push_back(1);
    if (order.size() == 1) {
      event->AddProgressListener([&](unsigned char, bool) { order.push_back(3); });
    }
  });
  event->AddProgressListener([&](unsigned char, bool) { order.push_back(2); });

  event->Progress(1);
  queue->RunDue();

  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST_F(BaseAsyncEvent, AListenerThatComesAfterTheCompletion_IsToldInALaterTurnAndDropped)
{
  const auto event = MakeManagedEvent(true);
  event->Complete();
  queue->RunDue();

  Listen(*event);
  EXPECT_TRUE(told.empty());
  queue->RunDue();
  queue->RunDue();

  EXPECT_EQ(told, (Told{{0, true}}));
  EXPECT_EQ(record.completions.size(), 1U);
}

TEST_F(BaseAsyncEvent, Status_ReachesTheEventInOrder)
{
  const auto event = MakeManagedEvent(true);

  event->Status("reading");
  event->Status("sorting");
  EXPECT_TRUE(record.texts.empty());
  queue->RunDue();

  EXPECT_EQ(record.texts, (std::vector<std::string>{"reading", "sorting"}));
}

TEST_F(BaseAsyncEvent, AForeignMessage_ChangesNothing)
{
  const auto event = MakeManagedEvent(true);

  event->HandleMessage(du::MakeSmart<dom::Message>());
  event->HandleMessage(nullptr);

  EXPECT_TRUE(record.completions.empty());
}

TEST_F(BaseAsyncEvent, OfALoad_HasAWorker)
{
  const auto event = du::MakeSmart<zelloader::ShapeLoaderEvent>();

  event->Cancel();

  EXPECT_TRUE(event->IsCanceled());
  EXPECT_FALSE(event->IsCompleted());
}

}  // namespace
