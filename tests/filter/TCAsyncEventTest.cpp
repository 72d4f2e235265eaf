#include "filter/TCAsyncEvent.h"

#include <gtest/gtest.h>

namespace {

/// A controller that gives its event class away.
class OpenController : public guitree::TreeController {
public:
  using TreeController::TCAsyncEvent;
};

class Event : public OpenController::TCAsyncEvent {
public:
  explicit Event(bool& hasEnded) : TCAsyncEvent(nullptr), m_hasEnded(hasEnded) {}
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  ~Event() override { m_hasEnded = true; }

  bool mayEnd = true;

  [[nodiscard]] bool ZeroReferenceCountHook() const override { return mayEnd; }

private:
  bool& m_hasEnded;
};

TEST(TCAsyncEvent, IsCountedByTheController_AndEndsWithItsLastReference)
{
  bool hasEnded = false;
  const auto* const event = new Event(hasEnded);

  EXPECT_EQ(guitree::TreeController::AddSmartPtrReference(event, nullptr), 1);
  EXPECT_EQ(guitree::TreeController::AddSmartPtrReference(event, nullptr), 2);
  EXPECT_FALSE(guitree::TreeController::AttemptDeleteSmartPtrReference(event, nullptr));
  EXPECT_FALSE(hasEnded);

  EXPECT_TRUE(guitree::TreeController::AttemptDeleteSmartPtrReference(event, nullptr));
  EXPECT_TRUE(hasEnded);
}

TEST(TCAsyncEvent, ThatRefusesToEnd_LivesOnWithoutItsLastReference)
{
  bool hasEnded = false;
  auto* const event = new Event(hasEnded);
  event->mayEnd = false;
  guitree::TreeController::AddSmartPtrReference(event, nullptr);

  EXPECT_FALSE(guitree::TreeController::AttemptDeleteSmartPtrReference(event, nullptr));
  EXPECT_FALSE(hasEnded);

  event->mayEnd = true;
  EXPECT_TRUE(guitree::TreeController::AttemptDeleteSmartPtrReference(event, nullptr));
  EXPECT_TRUE(hasEnded);
}

}  // namespace
