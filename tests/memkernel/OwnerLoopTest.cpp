#include "memkernel/OwnerLoop.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>
#include <vector>

#include "Recorders.h"

namespace memkerneltest {
namespace {

using memkernel::OwnerLoop;
using testing::ElementsAre;
using namespace std::chrono_literals;

class NumberMessage : public dom::Message {
public:
  explicit NumberMessage(int value) : number(value) {}
  const int number;
};

/// Keeps the numbers that it is told, and calls `onNumber` from inside the message.
class NumberReceiver : public dom::Observer {
public:
  std::function<void(int)> onNumber;
  std::vector<int> numbers;

  void HandleMessage(const du::SmartPtr<dom::Message>& message) override
  {
    numbers.push_back(du::DynamicCast<NumberMessage>(message)->number);
    if (onNumber) {
      onNumber(numbers.back());
    }
  }
};

class OwnerLoopTest : public testing::Test {
protected:
  void Post(int number) { loop->Post(receiver, du::MakeSmart<NumberMessage>(number)); }

  const du::SmartPtr<OwnerLoop> loop = du::MakeSmart<OwnerLoop>();
  const du::SmartPtr<NumberReceiver> receiver = du::MakeSmart<NumberReceiver>();
};

TEST_F(OwnerLoopTest, Post_DeliversInOrderAndOnlyInATurnOfTheLoop)
{
  Post(1);
  Post(2);
  EXPECT_TRUE(receiver->numbers.empty());

  const auto ran = loop->RunDue();

  EXPECT_EQ(ran, 2U);
  EXPECT_THAT(receiver->numbers, ElementsAre(1, 2));
}

TEST_F(OwnerLoopTest, RunDue_LeavesWhatIsPostedMeanwhileToTheNextTurn)
{
  receiver->onNumber = [this](int number) {
    if (number < 10) {
      Post(number + 10);
    }
  };
  Post(1);
  Post(2);

  EXPECT_EQ(loop->RunDue(), 2U);
  EXPECT_THAT(receiver->numbers, ElementsAre(1, 2));

  EXPECT_EQ(loop->RunDue(), 2U);
  EXPECT_THAT(receiver->numbers, ElementsAre(1, 2, 11, 12));
}

TEST_F(OwnerLoopTest, RunDue_InsideAMessage_RunsTheRestInOrderAndLeavesNothingToTheOuterTurn)
{
  receiver->onNumber = [this](int number) {
    if (number == 1) {
      Post(4);
      EXPECT_EQ(loop->RunDue(), 3U);
    }
  };
  Post(1);
  Post(2);
  Post(3);

  EXPECT_EQ(loop->RunDue(), 1U);

  EXPECT_THAT(receiver->numbers, ElementsAre(1, 2, 3, 4));
}

TEST_F(OwnerLoopTest, Invoke_RunsFunctionsBetweenTheMessages)
{
  std::vector<int> seen;
  Post(1);
  loop->Invoke([&] { seen = receiver->numbers; });
  Post(2);

  loop->RunDue();

  EXPECT_THAT(seen, ElementsAre(1));
  EXPECT_THAT(receiver->numbers, ElementsAre(1, 2));
}

TEST_F(OwnerLoopTest, Post_ToNobody_IsRefused)
{
  EXPECT_FALSE(loop->Post(nullptr, du::MakeSmart<NumberMessage>(1)));

  EXPECT_EQ(loop->RunDue(), 0U);
}

TEST_F(OwnerLoopTest, WakeUp_ComesForTheFirstMessageOfAnEmptyLoopOnly)
{
  int calls = 0;
  loop->SetWakeUp([&] { ++calls; });

  Post(1);
  Post(2);
  EXPECT_EQ(calls, 1);

  loop->RunDue();
  Post(3);
  EXPECT_EQ(calls, 2);
}

TEST_F(OwnerLoopTest, WakeUp_ComesAgainAfterATurnThatLeavesSomething)
{
  int calls = 0;
  receiver->onNumber = [this](int number) {
    if (number == 1) {
      Post(3);
    }
  };
  Post(1);
  Post(2);
  loop->SetWakeUp([&] { ++calls; });
  EXPECT_EQ(calls, 1);

  loop->RunDue();

  EXPECT_EQ(calls, 2);
}

TEST_F(OwnerLoopTest, RunDue_ReleasesEachMessageBeforeTheNextOne)
{
  Lines lines;
  loop->Post(du::MakeSmart<TracedObject>([&] { lines.push_back("dead"); }), nullptr);
  loop->Invoke([&] { lines.push_back("next"); });

  loop->RunDue();

  EXPECT_THAT(lines, ElementsAre("dead", "next"));
}

TEST_F(OwnerLoopTest, Close_ReleasesWhatIsDueAndHeldWithoutRunningIt)
{
  int dead = 0;
  loop->Post(du::MakeSmart<TracedObject>([&] { ++dead; }), nullptr);
  loop->Hold(du::MakeSmart<TracedObject>([&] { ++dead; }));
  Post(1);

  loop->Close();

  EXPECT_EQ(dead, 2);
  EXPECT_TRUE(loop->IsClosed());
  EXPECT_FALSE(loop->Post(receiver, nullptr));
  EXPECT_FALSE(loop->Invoke([] {}));
  EXPECT_EQ(loop->RunDue(), 0U);
  EXPECT_TRUE(receiver->numbers.empty());
}

TEST_F(OwnerLoopTest, RunUntil_OnAClosedLoop_EndsWithFalse)
{
  loop->Close();

  EXPECT_FALSE(loop->RunUntil([] { return false; }));
}

TEST_F(OwnerLoopTest, WaitAndRun_WithoutMessages_ComesBack)
{
  EXPECT_EQ(loop->WaitAndRun(1ms), 0U);
}

TEST_F(OwnerLoopTest, IsOwnerThread_IsTrueInTheThreadThatMadeTheLoop)
{
  bool isOwner = true;
  std::thread([&] { isOwner = loop->IsOwnerThread(); }).join();

  EXPECT_TRUE(loop->IsOwnerThread());
  EXPECT_FALSE(isOwner);
}

TEST_F(OwnerLoopTest, Post_FromManyThreads_DeliversAllOnTheOwnersThreadAndReleasesThemThere)
{
  constexpr int threads = 4;
  constexpr int messages = 500;
  std::atomic<int> wakeUps{0};
  std::atomic<int> deadElsewhere{0};
  int dead = 0;
  int delivered = 0;
  loop->SetWakeUp([&] { ++wakeUps; });
  std::vector<std::thread> posters;
  posters.reserve(threads);
  for (int i = 0; i < threads; ++i) {
    posters.emplace_back([&] {
      for (int k = 0; k < messages; ++k) {
        auto object = du::MakeSmart<TracedObject>([&] {
          if (loop->IsOwnerThread()) {
            ++dead;
          } else {
            ++deadElsewhere;
          }
        });
        loop->Post(std::move(object), nullptr);
        loop->Invoke([&] { ++delivered; });
      }
    });
  }

  EXPECT_TRUE(loop->RunUntil([&] { return delivered == threads * messages; }));
  for (std::thread& poster : posters) {
    poster.join();
  }

  EXPECT_EQ(dead, threads * messages);
  EXPECT_EQ(deadElsewhere, 0);
  EXPECT_GE(wakeUps, 1);
}

}  // namespace
}  // namespace memkerneltest
