#include "dom/MessageQueue.h"

#include <gtest/gtest.h>

#include "TestQueue.h"

namespace {

using kerneltest::TestQueue;

class Mortal : public dom::ManagedObject {
public:
  explicit Mortal(bool& isAlive, du::SmartPtr<dom::MessageQueue> queueToTouch = {})
      : m_isAlive(isAlive), m_queueToTouch(std::move(queueToTouch))
  {
    m_isAlive = true;
  }
  Mortal(const Mortal&) = delete;
  Mortal& operator=(const Mortal&) = delete;
  ~Mortal() override
  {
    m_isAlive = false;
    if (m_queueToTouch) {
      m_queueToTouch->LetGo(*this);
    }
  }

private:
  bool& m_isAlive;
  du::SmartPtr<dom::MessageQueue> m_queueToTouch;
};

TEST(MessageQueue, Hold_KeepsAnObjectAliveUntilItIsLetGo)
{
  const auto queue = du::MakeSmart<TestQueue>();
  bool isAlive = false;
  auto object = du::MakeSmart<Mortal>(isAlive);
  const Mortal& reference = *object;

  queue->Hold(object);
  object.Reset();
  EXPECT_TRUE(isAlive);

  queue->LetGo(reference);
  EXPECT_FALSE(isAlive);
}

TEST(MessageQueue, HoldingTwice_IsHoldingOnce)
{
  const auto queue = du::MakeSmart<TestQueue>();
  bool isAlive = false;
  auto object = du::MakeSmart<Mortal>(isAlive);
  const Mortal& reference = *object;

  queue->Hold(object);
  queue->Hold(object);
  object.Reset();
  queue->LetGo(reference);

  EXPECT_FALSE(isAlive);
}

TEST(MessageQueue, LetGo_OfWhatIsNotHeld_DoesNothing)
{
  const auto queue = du::MakeSmart<TestQueue>();
  bool isAlive = false;
  const auto object = du::MakeSmart<Mortal>(isAlive);

  queue->LetGo(*object);

  EXPECT_TRUE(isAlive);
  EXPECT_EQ(object->AddReference(nullptr), 2);
  object->RemoveReference(nullptr);
}

TEST(MessageQueue, AnObjectMayReachTheQueueWhileItDies)
{
  const auto queue = du::MakeSmart<TestQueue>();
  bool isFirstAlive = false;
  bool isSecondAlive = false;
  auto first = du::MakeSmart<Mortal>(isFirstAlive, queue);
  queue->Hold(first);
  queue->Hold(du::MakeSmart<Mortal>(isSecondAlive, queue));
  const Mortal& reference = *first;
  first.Reset();

  queue->LetGo(reference);
  EXPECT_FALSE(isFirstAlive);

  queue->Close();
  EXPECT_FALSE(isSecondAlive);
}

TEST(MessageQueue, AfterItsEnd_HoldsNothingMore)
{
  const auto queue = du::MakeSmart<TestQueue>();
  queue->Close();
  bool isAlive = false;

  queue->Hold(du::MakeSmart<Mortal>(isAlive));

  EXPECT_FALSE(isAlive);
}

}  // namespace
