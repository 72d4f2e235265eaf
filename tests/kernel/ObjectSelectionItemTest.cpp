#include "zelk/ObjectSelectionItem.h"

#include <gtest/gtest.h>

#include "FakeInstance.h"
#include "zelk/SelectionManager.h"

namespace {

using kerneltest::FakeInstance;
using zelk::ObjectSelectionItem;
using Item = du::SmartPtr<zelk::SelectionItem>;

Item MakeItem(const du::SmartPtr<zelk::Instance>& instance)
{
  return Item(new ObjectSelectionItem(instance));
}

TEST(ObjectSelectionItem, HoldsItsInstance)
{
  auto instance = du::MakeSmart<FakeInstance>();
  const auto item = du::MakeSmart<ObjectSelectionItem>(instance);

  EXPECT_TRUE(item->GetObject() == instance);
  EXPECT_EQ(instance->AddReference(nullptr), 3);
  instance->RemoveReference(nullptr);
}

TEST(ObjectSelectionItem, OfAnInstance_IsOfOneOfTheInstanceTypes)
{
  const Item item = MakeItem(du::MakeSmart<FakeInstance>());

  EXPECT_TRUE(zelk::SelectionManager::GetInstanceTypes().contains(item->GetSelectionType()));
  EXPECT_FALSE(zelk::SelectionManager::GetInstanceTypes().contains(du::Symbol::EMPTY));
}

TEST(ObjectSelectionItem, OfNull_StandsForNothing)
{
  const Item item = MakeItem(nullptr);

  EXPECT_FALSE(du::DynamicCast<ObjectSelectionItem>(item)->GetObject());
  EXPECT_EQ(item->GetIdentity(), nullptr);
  EXPECT_TRUE(item->GetSelectionType().IsEmpty());
}

TEST(ObjectSelectionItem, IsReleasedThroughItsOwnOperatorsInEveryClassOfPointer)
{
  auto instance = du::MakeSmart<FakeInstance>();
  {
    const du::SmartPtr<zelk::Object> asObject(new ObjectSelectionItem(instance));
    const du::SmartPtr<du::RefCounted> asCounted(new ObjectSelectionItem(instance));
    EXPECT_EQ(instance->AddReference(nullptr), 4);
    instance->RemoveReference(nullptr);
  }

  EXPECT_EQ(instance->AddReference(nullptr), 2);
  instance->RemoveReference(nullptr);
}

TEST(SelectionOrder, TwoItemsOfOneInstance_AreEqual)
{
  const auto instance = du::MakeSmart<FakeInstance>();
  const zelk::selection_compare_objects isBefore;

  EXPECT_FALSE(isBefore(MakeItem(instance), MakeItem(instance)));
  const zelk::SelectionManager::ItemSet items{MakeItem(instance), MakeItem(instance)};
  EXPECT_EQ(items.size(), 1U);
  EXPECT_TRUE(items.contains(MakeItem(instance)));
}

TEST(SelectionOrder, ItemsOfDifferentInstances_AreOrderedByTheInstance)
{
  const auto a = du::MakeSmart<FakeInstance>();
  const auto b = du::MakeSmart<FakeInstance>();
  const zelk::selection_compare_objects isBefore;

  EXPECT_NE(isBefore(MakeItem(a), MakeItem(b)), isBefore(MakeItem(b), MakeItem(a)));
  EXPECT_EQ(isBefore(MakeItem(a), MakeItem(b)), isBefore(MakeItem(a), MakeItem(b)));
}

TEST(SelectionOrder, ANullItem_StandsFirstAndEqualsOneThatStandsForNothing)
{
  const Item item = MakeItem(du::MakeSmart<FakeInstance>());
  const zelk::selection_compare_objects isBefore;

  EXPECT_TRUE(isBefore(nullptr, item));
  EXPECT_FALSE(isBefore(item, nullptr));
  EXPECT_FALSE(isBefore(nullptr, nullptr));
  EXPECT_FALSE(isBefore(nullptr, MakeItem(nullptr)));
  EXPECT_FALSE(isBefore(MakeItem(nullptr), nullptr));
}

}  // namespace
