#include "du/RefCounted.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

#include "du/SmartPtr.h"

namespace {

/// Tells of its end, and does in the hook what a test wants.
class Probe : public virtual du::RefCounted {
public:
  explicit Probe(bool& isAlive) : m_isAlive(&isAlive) { isAlive = true; }
  Probe(const Probe&) = default;
  Probe& operator=(const Probe&) = default;
  ~Probe() override { *m_isAlive = false; }

  bool ZeroReferenceCountHook() const override
  {
    ++hookCalls;
    return hook ? hook() : true;
  }

  [[nodiscard]] int Count() const
  {
    AddReference(nullptr);
    return RemoveReference(nullptr);
  }

  mutable int hookCalls = 0;
  std::function<bool()> hook;

private:
  bool* m_isAlive;
};

class Left : public virtual du::RefCounted {};
class Right : public virtual du::RefCounted {};
class Both : public Left, public Right {};

TEST(RefCounted, AddAndRemove_ReturnTheRemainingCount)
{
  bool isAlive = false;
  const Probe probe(isAlive);

  EXPECT_EQ(probe.AddReference(nullptr), 1);
  EXPECT_EQ(probe.AddReference(&isAlive), 2);
  EXPECT_EQ(probe.RemoveReference(nullptr), 1);
  EXPECT_EQ(probe.RemoveReference(nullptr), 0);
}

TEST(RefCounted, RemoveReference_OfTheLastOne_NeitherDestroysNorAsksTheHook)
{
  bool isAlive = false;
  const Probe probe(isAlive);
  probe.AddReference(nullptr);

  probe.RemoveReference(nullptr);

  EXPECT_TRUE(isAlive);
  EXPECT_EQ(probe.hookCalls, 0);
}

TEST(RefCounted, Release_OfOneOfTwo_LeavesTheObjectAndDoesNotAskTheHook)
{
  bool isAlive = false;
  const auto probe = std::make_unique<Probe>(isAlive);
  probe->AddReference(nullptr);
  probe->AddReference(nullptr);

  EXPECT_FALSE(du::ReleaseReference(probe.get(), nullptr));

  EXPECT_TRUE(isAlive);
  EXPECT_EQ(probe->hookCalls, 0);
  EXPECT_EQ(probe->Count(), 1);
}

TEST(RefCounted, Release_OfTheLastOne_AsksTheHookWhileOneReferenceIsHeldAndDestroys)
{
  bool isAlive = false;
  auto* probe = new Probe(isAlive);
  probe->AddReference(nullptr);
  int countInHook = 0;
  probe->hook = [&] {
    countInHook = probe->Count();
    return true;
  };

  EXPECT_TRUE(du::ReleaseReference(probe, nullptr));

  EXPECT_EQ(countInHook, 1);
  EXPECT_FALSE(isAlive);
}

TEST(RefCounted, Release_WithAHookThatRefuses_LeavesACountOfOneThatNobodyOwns)
{
  bool isAlive = false;
  auto* probe = new Probe(isAlive);
  probe->hook = [] { return false; };
  du::SmartPtr<Probe> holder(probe);

  holder.Reset();

  EXPECT_FALSE(holder);
  ASSERT_TRUE(isAlive);
  EXPECT_EQ(probe->hookCalls, 1);
  EXPECT_EQ(probe->Count(), 1);

  probe->hook = nullptr;
  EXPECT_TRUE(du::ReleaseReference(probe, nullptr));
  EXPECT_FALSE(isAlive);
}

TEST(RefCounted, AnObjectThatHasRefused_CanBeHeldAgainWithoutBeingAskedAgain)
{
  bool isAlive = false;
  auto* probe = new Probe(isAlive);
  probe->hook = [] { return false; };
  du::SmartPtr<Probe>(probe).Reset();

  du::SmartPtr<Probe>(probe).Reset();

  ASSERT_TRUE(isAlive);
  EXPECT_EQ(probe->hookCalls, 1);
  EXPECT_EQ(probe->Count(), 1);
  probe->hook = nullptr;
  du::ReleaseReference(probe, nullptr);
}

TEST(RefCounted, AHookThatHandsOutAReference_KeepsTheObjectAlive)
{
  bool isAlive = false;
  auto* probe = new Probe(isAlive);
  du::SmartPtr<Probe> rescued;
  probe->hook = [&] {
    rescued = du::SmartPtr<Probe>(probe);
    return true;
  };
  du::SmartPtr<Probe> holder(probe);

  holder.Reset();

  ASSERT_TRUE(isAlive);
  EXPECT_EQ(probe->Count(), 1);
  probe->hook = nullptr;
  rescued.Reset();
  EXPECT_FALSE(isAlive);
}

TEST(RefCounted, AHookThatHandsOutReferencesAndTakesThemBack_LetsTheObjectDie)
{
  bool isAlive = false;
  auto* probe = new Probe(isAlive);
  probe->hook = [&] {
    const du::SmartPtr<Probe> passing(probe);
    return true;
  };

  du::SmartPtr<Probe>(probe).Reset();

  EXPECT_FALSE(isAlive);
}

TEST(RefCounted, Release_DestroysThroughTheVirtualDestructor)
{
  bool isAlive = false;
  const du::RefCounted* base = new Probe(isAlive);
  base->AddReference(nullptr);

  du::ReleaseReference(base, nullptr);

  EXPECT_FALSE(isAlive);
}

TEST(RefCounted, ACopy_StartsWithACountOfItsOwn)
{
  bool isOriginalAlive = false;
  const Probe original(isOriginalAlive);
  original.AddReference(nullptr);
  original.AddReference(nullptr);

  const Probe copy(original);

  EXPECT_EQ(copy.Count(), 0);
  EXPECT_EQ(original.Count(), 2);
}

TEST(RefCounted, Assignment_LeavesBothCounts)
{
  bool isFromAlive = false;
  bool isToAlive = false;
  const Probe from(isFromAlive);
  Probe to(isToAlive);
  from.AddReference(nullptr);
  from.AddReference(nullptr);
  to.AddReference(nullptr);

  to = from;

  EXPECT_EQ(from.Count(), 2);
  EXPECT_EQ(to.Count(), 1);
}

TEST(RefCounted, AnObjectReachedByTwoPaths_HasOneCount)
{
  const du::SmartPtr<Both> both(new Both);
  const du::SmartPtr<Left> left(both);
  const du::SmartPtr<Right> right(both);

  EXPECT_EQ(both->AddReference(nullptr), 4);
  EXPECT_EQ(static_cast<const Left&>(*both).RemoveReference(nullptr), 3);
  EXPECT_EQ(static_cast<const du::RefCounted*>(left.Get()), static_cast<const du::RefCounted*>(right.Get()));
}

}  // namespace
