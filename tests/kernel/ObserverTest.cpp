#include "dom/Observer.h"

#include <gtest/gtest.h>

#include "zelk/SelectionObserver.h"
#include "zelk/ShapeSceneObserver.h"
#include "zelk/ShapeViewObserver.h"
#include "zelk/TreeObserver.h"

namespace {

/// An observer of any family that tells of its end and of the messages it gets.
template <typename Base>
class Probe : public Base {
public:
  explicit Probe(bool& isAlive) : m_isAlive(&isAlive) { isAlive = true; }
  ~Probe() override { *m_isAlive = false; }
  void EventHandler(const du::SmartPtr<dom::Message>& /*message*/) override { ++messages; }

  int messages = 0;

private:
  bool* m_isAlive;
};

template <typename Base>
class ObserverFamily : public testing::Test {
};

using Families =
    testing::Types<zelk::TreeObserver, zelk::ShapeSceneObserver, zelk::ShapeViewObserver, zelk::SelectionObserver>;
TYPED_TEST_SUITE(ObserverFamily, Families);

TYPED_TEST(ObserverFamily, ThatIsNotRegistered_DiesWithItsLastHolder)
{
  bool isAlive = false;
  auto observer = du::MakeSmart<Probe<TypeParam>>(isAlive);

  observer.Reset();

  EXPECT_FALSE(isAlive);
}

TYPED_TEST(ObserverFamily, ThatIsRegistered_RefusesToDieUntilItIsDropped)
{
  bool isAlive = false;
  auto observer = du::MakeSmart<Probe<TypeParam>>(isAlive);
  const Probe<TypeParam>* address = observer.Get();
  observer->AddRegistration();
  EXPECT_TRUE(observer->IsRegistered());

  observer.Reset();
  ASSERT_TRUE(isAlive);

  address->RemoveRegistration();
  EXPECT_FALSE(isAlive);
}

TYPED_TEST(ObserverFamily, ThatIsRegisteredAtSeveralSubjects_LivesUntilTheLastDropsIt)
{
  bool isAlive = false;
  auto observer = du::MakeSmart<Probe<TypeParam>>(isAlive);
  const Probe<TypeParam>* address = observer.Get();
  observer->AddRegistration();
  observer->AddRegistration();

  observer.Reset();
  address->RemoveRegistration();
  ASSERT_TRUE(isAlive);
  EXPECT_TRUE(address->IsRegistered());

  address->RemoveRegistration();
  EXPECT_FALSE(isAlive);
}

TYPED_TEST(ObserverFamily, ThatWasDroppedWhileHeld_DiesWithItsHolder)
{
  bool isAlive = false;
  auto observer = du::MakeSmart<Probe<TypeParam>>(isAlive);
  observer->AddRegistration();

  observer->RemoveRegistration();
  EXPECT_TRUE(isAlive);
  EXPECT_FALSE(observer->IsRegistered());

  observer.Reset();
  EXPECT_FALSE(isAlive);
}

TYPED_TEST(ObserverFamily, ThatHasRefusedAndIsHeldForACallback_SurvivesTheDropUntilTheCallbackEnds)
{
  bool isAlive = false;
  auto observer = du::MakeSmart<Probe<TypeParam>>(isAlive);
  auto* address = observer.Get();
  observer->AddRegistration();
  observer.Reset();

  du::SmartPtr<Probe<TypeParam>> pin(address);
  address->RemoveRegistration();
  ASSERT_TRUE(isAlive);

  pin.Reset();
  EXPECT_FALSE(isAlive);
}

TYPED_TEST(ObserverFamily, ThatHasRefusedAndWasHeldInBetween_IsStillDestroyedByTheDrop)
{
  bool isAlive = false;
  auto observer = du::MakeSmart<Probe<TypeParam>>(isAlive);
  auto* address = observer.Get();
  observer->AddRegistration();
  observer.Reset();

  du::SmartPtr<Probe<TypeParam>>(address).Reset();
  ASSERT_TRUE(isAlive);

  address->RemoveRegistration();
  EXPECT_FALSE(isAlive);
}

TYPED_TEST(ObserverFamily, ThatHasRefusedAndIsRegisteredAnew_WaitsForTheLastDrop)
{
  bool isAlive = false;
  auto observer = du::MakeSmart<Probe<TypeParam>>(isAlive);
  auto* address = observer.Get();
  observer->AddRegistration();
  observer.Reset();
  address->AddRegistration();

  address->RemoveRegistration();
  ASSERT_TRUE(isAlive);

  address->RemoveRegistration();
  EXPECT_FALSE(isAlive);
}

TYPED_TEST(ObserverFamily, ADropWithoutARegistration_DoesNothing)
{
  bool isAlive = false;
  const auto observer = du::MakeSmart<Probe<TypeParam>>(isAlive);

  observer->RemoveRegistration();

  EXPECT_TRUE(isAlive);
  EXPECT_FALSE(observer->IsRegistered());
  EXPECT_EQ(observer->AddReference(nullptr), 2);
  observer->RemoveReference(nullptr);
}

TYPED_TEST(ObserverFamily, AMessage_ReachesTheEventHandler)
{
  bool isAlive = false;
  const auto observer = du::MakeSmart<Probe<TypeParam>>(isAlive);
  const du::SmartPtr<dom::Observer> base(observer);

  base->HandleMessage(du::MakeSmart<dom::Message>());

  EXPECT_EQ(observer->messages, 1);
}

/// Of no class that refuses.
class PlainObserver : public dom::Observer {
public:
  explicit PlainObserver(bool& isAlive) : m_isAlive(isAlive) { m_isAlive = true; }
  PlainObserver(const PlainObserver&) = delete;
  PlainObserver& operator=(const PlainObserver&) = delete;
  ~PlainObserver() override { m_isAlive = false; }

private:
  bool& m_isAlive;
};

TEST(Observer, OfAClassThatDoesNotRefuse_DiesAlthoughItIsRegistered)
{
  bool isAlive = false;
  auto observer = du::MakeSmart<PlainObserver>(isAlive);
  observer->AddRegistration();

  observer.Reset();

  EXPECT_FALSE(isAlive);
}

TEST(Observer, OfAKernel_WantsItsCallbacksInBrackets)
{
  EXPECT_TRUE(zelk::TreeObserver().RequiresBeginEnd());
  EXPECT_TRUE(zelk::ShapeSceneObserver().RequiresBeginEnd());
}

}  // namespace
