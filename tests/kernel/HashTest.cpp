#include "du/Hash.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

class Item : public virtual du::RefCounted {};

TEST(Hash, OfAPointer_IsItsAddressShiftedRightByTwo)
{
  const int value = 0;
  const int* pointer = &value;

  EXPECT_EQ(du::hash<const int*>{}(pointer), reinterpret_cast<std::uintptr_t>(pointer) >> 2);
  EXPECT_EQ(du::hash<const int*>{}(nullptr), 0U);
}

TEST(Hash, OfASmartPointer_IsThatOfThePointerItHolds)
{
  const auto item = du::MakeSmart<Item>();
  const du::ConstSmartPtr<Item> constant(item);

  EXPECT_EQ(du::hash<du::SmartPtr<Item>>{}(item), du::hash<Item*>{}(item.Get()));
  EXPECT_EQ(du::hash<du::ConstSmartPtr<Item>>{}(constant), du::hash<Item*>{}(item.Get()));
}

TEST(Hash, OfEqualSymbols_IsTheSameAndOfSymbolsOfDifferentTextDiffers)
{
  const du::hash<du::Symbol> hash;

  EXPECT_EQ(hash("text"), hash(du::Symbol(std::string_view("text"))));
  EXPECT_NE(hash("text"), hash("other text"));
  EXPECT_EQ(hash(du::Symbol::EMPTY), hash(""));
}

TEST(Hash, OfAnyOtherType_IsThatOfTheStandard)
{
  EXPECT_EQ(du::hash<std::string>{}("text"), std::hash<std::string>{}("text"));
}

}  // namespace
