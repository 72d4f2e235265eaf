#include "du/SmartPtr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <set>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

class Item : public virtual du::RefCounted {
public:
  Item() { ++s_alive; }
  Item(const Item&) = delete;
  Item& operator=(const Item&) = delete;
  ~Item() override
  {
    --s_alive;
    if (onEnd) {
      onEnd();
    }
  }

  [[nodiscard]] int Count() const
  {
    AddReference(nullptr);
    return RemoveReference(nullptr);
  }

  std::function<void()> onEnd;
  static inline int s_alive = 0;
};

class SpecialItem : public Item {};
class Stranger : public virtual du::RefCounted {};

TEST(SmartPtr, ByDefault_HoldsNothing)
{
  const du::SmartPtr<Item> pointer;

  EXPECT_EQ(pointer.Get(), nullptr);
  EXPECT_FALSE(pointer);
  EXPECT_TRUE(pointer == nullptr);
}

TEST(SmartPtr, OnANullObject_HoldsNothing)
{
  const du::SmartPtr<Item> pointer(static_cast<Item*>(nullptr));
  const du::SmartPtr<Item> copy(pointer);

  EXPECT_FALSE(pointer);
  EXPECT_FALSE(copy);
}

TEST(SmartPtr, Copying_AddsAReferenceAndDestroyingTakesItAway)
{
  const auto first = du::MakeSmart<Item>();

  {
    const du::SmartPtr<Item> second(first);
    EXPECT_EQ(first->Count(), 2);
  }

  EXPECT_EQ(first->Count(), 1);
}

TEST(SmartPtr, TheLastHolder_DestroysTheObject)
{
  auto first = du::MakeSmart<Item>();
  auto second = first;

  first.Reset();
  EXPECT_EQ(Item::s_alive, 1);

  second = nullptr;
  EXPECT_EQ(Item::s_alive, 0);
}

TEST(SmartPtr, Assignment_OfADifferentPointer_LetsGoOfTheFormerObject)
{
  auto pointer = du::MakeSmart<Item>();
  const auto other = du::MakeSmart<Item>();

  pointer = other;

  EXPECT_EQ(pointer.Get(), other.Get());
  EXPECT_EQ(other->Count(), 2);
  EXPECT_EQ(Item::s_alive, 1);
}

TEST(SmartPtr, Assignment_FromAPointerInsideTheDyingObject_KeepsTheNewObject)
{
  struct Link : virtual du::RefCounted {
    du::SmartPtr<Link> next;
  };
  auto list = du::MakeSmart<Link>();
  list->next = du::MakeSmart<Link>();
  const Link* second = list->next.Get();

  list = list->next;

  EXPECT_EQ(list.Get(), second);
  list = std::move(list->next);
  EXPECT_FALSE(list);
}

TEST(SmartPtr, Assignment_OfItself_ChangesNothing)
{
  auto pointer = du::MakeSmart<Item>();
  auto& same = pointer;

  pointer = same;
  EXPECT_EQ(pointer->Count(), 1);

  pointer = std::move(same);
  ASSERT_TRUE(pointer);
  EXPECT_EQ(pointer->Count(), 1);
}

TEST(SmartPtr, MovingIn_StealsThePointerAndClearsTheSource)
{
  auto source = du::MakeSmart<Item>();
  const Item* item = source.Get();

  du::SmartPtr<Item> built(std::move(source));
  EXPECT_FALSE(source);  // NOLINT(bugprone-use-after-move): that is what is promised
  EXPECT_EQ(built->Count(), 1);

  auto assigned = du::MakeSmart<Item>();
  assigned = std::move(built);
  EXPECT_FALSE(built);  // NOLINT(bugprone-use-after-move): that is what is promised
  EXPECT_EQ(assigned.Get(), item);
  EXPECT_EQ(item->Count(), 1);
  EXPECT_EQ(Item::s_alive, 1);
}

TEST(SmartPtr, MovingAPointerToTheSameObject_LeavesOneReference)
{
  auto first = du::MakeSmart<Item>();
  auto second = first;

  first = std::move(second);

  EXPECT_FALSE(second);  // NOLINT(bugprone-use-after-move): that is what is promised
  EXPECT_EQ(first->Count(), 1);
}

TEST(SmartPtr, WhileItsObjectDies_ThePointerIsNullAlready)
{
  auto pointer = du::MakeSmart<Item>();
  bool wasNull = false;
  pointer->onEnd = [&] { wasNull = !pointer; };

  pointer.Reset();

  EXPECT_TRUE(wasNull);
}

TEST(SmartPtr, ConvertsToABaseByCopyAndByMove)
{
  auto special = du::MakeSmart<SpecialItem>();

  du::SmartPtr<Item> copied(special);
  EXPECT_EQ(copied.Get(), special.Get());
  EXPECT_EQ(copied->Count(), 2);

  const du::SmartPtr<Item> moved(std::move(special));
  EXPECT_FALSE(special);  // NOLINT(bugprone-use-after-move): that is what is promised
  EXPECT_EQ(moved->Count(), 2);

  copied = du::MakeSmart<SpecialItem>();
  EXPECT_EQ(moved->Count(), 1);
}

TEST(SmartPtr, ConvertsToConst)
{
  const auto item = du::MakeSmart<Item>();

  const du::ConstSmartPtr<Item> constant(item);

  EXPECT_EQ(constant.Get(), item.Get());
  EXPECT_EQ(constant->Count(), 2);
}

TEST(SmartPtr, ConvertsNeitherDownNorFromConstNorAcross)
{
  EXPECT_FALSE((std::is_convertible_v<du::SmartPtr<Item>, du::SmartPtr<SpecialItem>>));
  EXPECT_FALSE((std::is_convertible_v<du::ConstSmartPtr<Item>, du::SmartPtr<Item>>));
  EXPECT_FALSE((std::is_convertible_v<du::SmartPtr<Stranger>, du::SmartPtr<Item>>));
  EXPECT_FALSE((std::is_convertible_v<Item*, du::SmartPtr<Item>>));
}

TEST(SmartPtr, IsComparedByThePointerItHolds)
{
  const auto special = du::MakeSmart<SpecialItem>();
  const auto other = du::MakeSmart<Item>();
  const du::SmartPtr<Item> base(special);

  EXPECT_TRUE(base == special);
  EXPECT_TRUE(base == du::ConstSmartPtr<Item>(base));
  EXPECT_TRUE(base == special.Get());
  EXPECT_TRUE(base != other);
  EXPECT_TRUE(base != nullptr);
}

TEST(SmartPtr, InOrderedContainers_StandsInTheOrderOfAddresses)
{
  std::set<du::SmartPtr<Item>> ordered;
  std::vector<const Item*> addresses;
  for (int i = 0; i < 50; ++i) {
    auto item = du::MakeSmart<Item>();
    addresses.push_back(item.Get());
    ordered.insert(item);
    ordered.insert(item);
  }
  std::sort(addresses.begin(), addresses.end(), std::less<>{});

  std::vector<const Item*> found;
  for (const auto& item : ordered) {
    found.push_back(item.Get());
  }

  EXPECT_EQ(found, addresses);
}

TEST(SmartPtr, Null_StandsBeforeEveryObject)
{
  const auto item = du::MakeSmart<Item>();
  const du::SmartPtr<Item> null;

  EXPECT_TRUE(null < item);
  EXPECT_FALSE(item < null);
  EXPECT_FALSE(null < du::SmartPtr<Item>());
}

TEST(SmartPtr, Swap_ExchangesWithoutTouchingTheCounts)
{
  auto first = du::MakeSmart<Item>();
  du::SmartPtr<Item> second;
  const Item* item = first.Get();

  first.Swap(second);

  EXPECT_FALSE(first);
  EXPECT_EQ(second.Get(), item);
  EXPECT_EQ(second->Count(), 1);
}

TEST(SmartPtr, DynamicCast_GivesTheClassOrNull)
{
  const du::SmartPtr<Item> special(new SpecialItem);
  const auto plain = du::MakeSmart<Item>();

  EXPECT_EQ(du::DynamicCast<SpecialItem>(special).Get(), special.Get());
  EXPECT_FALSE(du::DynamicCast<SpecialItem>(plain));
  EXPECT_FALSE(du::DynamicCast<SpecialItem>(du::SmartPtr<Item>()));
  EXPECT_FALSE(du::DynamicCast<Stranger>(special));
}

}  // namespace
