#include "du/Symbol.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>
#include <type_traits>

#include "StaticSymbols.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelk/ComponentInstance.h"

namespace {

using du::Symbol;

TEST(Symbol, OfTheSameText_IsTheSame)
{
  const std::string text = "a text that is long enough to be on the heap";
  const std::string sameText = text;

  const Symbol first(text.c_str());
  const Symbol second(sameText.c_str());

  EXPECT_TRUE(first == second);
  EXPECT_EQ(first.GetText(), second.GetText());
  EXPECT_FALSE(first < second);
  EXPECT_FALSE(second < first);
}

TEST(Symbol, OfDifferentTexts_Differs)
{
  EXPECT_FALSE(Symbol("a") == Symbol("A"));
  EXPECT_TRUE(Symbol("a") != Symbol("a "));
}

TEST(Symbol, KeepsItsTextWhenTheSourceGoes)
{
  std::string source = "text of a string that goes";
  const Symbol symbol(source.c_str());

  source.assign(source.size(), 'x');

  EXPECT_STREQ(symbol.GetText(), "text of a string that goes");
}

TEST(Symbol, IsComparedWithTexts)
{
  const Symbol symbol("text");

  EXPECT_TRUE(symbol == "text");
  EXPECT_TRUE("text" == symbol);
  EXPECT_TRUE(symbol == std::string("text"));
  EXPECT_TRUE(std::string("text") == symbol);
  EXPECT_TRUE(symbol != "texts");
  EXPECT_TRUE(symbol != std::string("tex"));
  EXPECT_TRUE(symbol != static_cast<const char*>(nullptr));
}

TEST(Symbol, ConvertsToAString)
{
  const std::string text = Symbol("text");
  const std::string empty = Symbol::EMPTY;

  EXPECT_EQ(text, "text");
  EXPECT_EQ(empty, "");
}

TEST(Symbol, ThatIsEmpty_HasANullTextHoweverItWasMade)
{
  for (const Symbol& symbol : {Symbol(), Symbol(""), Symbol(static_cast<const char*>(nullptr)),
                               Symbol(std::string_view()), Symbol(std::string_view("")), Symbol(Symbol::EMPTY)}) {
    EXPECT_TRUE(symbol == Symbol::EMPTY);
    EXPECT_EQ(symbol.GetText(), nullptr);
    EXPECT_TRUE(symbol.IsEmpty());
    EXPECT_EQ(symbol.GetView(), "");
  }
}

TEST(Symbol, ThatIsEmpty_EqualsTheEmptyTextAndNull)
{
  EXPECT_TRUE(Symbol::EMPTY == "");
  EXPECT_TRUE(Symbol::EMPTY == std::string());
  EXPECT_TRUE(Symbol::EMPTY == static_cast<const char*>(nullptr));
  EXPECT_FALSE(Symbol::EMPTY == "text");
  EXPECT_FALSE(Symbol("text").IsEmpty());
}

TEST(Symbol, OfAPartOfAText_EndsWhereThePartEnds)
{
  const std::string_view whole = "Structure";

  const Symbol part(whole.substr(0, 6));

  EXPECT_STREQ(part.GetText(), "Struct");
  EXPECT_TRUE(part == Symbol("Struct"));
}

TEST(Symbol, KeepsAnyBytes)
{
  const Symbol symbol("Zahnräder \xE9\xBD\xBF\xE8\xBD\xAE \xFF");

  EXPECT_STREQ(symbol.GetText(), "Zahnräder \xE9\xBD\xBF\xE8\xBD\xAE \xFF");
}

TEST(Symbol, InASet_StandsOnceForEachText)
{
  const std::set<Symbol> symbols{Symbol("a"), Symbol("b"), Symbol("a"), Symbol(), Symbol("")};

  EXPECT_EQ(symbols.size(), 3U);
  EXPECT_TRUE(symbols.contains("b"));
}

TEST(Symbol, ManyTexts_StayApartAndKeepTheirAddress)
{
  const Symbol first("number 0");
  const char* address = first.GetText();

  std::set<Symbol> symbols;
  for (int i = 0; i < 20000; ++i) {
    symbols.insert(Symbol(std::string_view("number " + std::to_string(i))));
  }

  EXPECT_EQ(symbols.size(), 20000U);
  EXPECT_EQ(Symbol("number 0").GetText(), address);
}

TEST(Symbol, MadeBeforeMain_IsTheSameAsOneMadeLater)
{
  EXPECT_TRUE(kerneltest::GetEarlySymbol() == Symbol("made before main"));
}

TEST(Symbol, Empty_IsReadableBeforeMain)
{
  EXPECT_TRUE(kerneltest::WasEmptyWithoutTextEarly());
  EXPECT_TRUE(kerneltest::GetEarlyEmpty() == Symbol::EMPTY);
}

TEST(Symbol, TheNamesOfTheContract_AreReadableBeforeMain)
{
  EXPECT_TRUE(kerneltest::GetEarlyPropertyGroup() == zelk::BaseInstanceDynamicPropertiesCache::s_GroupName);
  EXPECT_TRUE(kerneltest::GetEarlyRootId() == zelk::ComponentInstance::ROOT_INSTANCE_ID);
  EXPECT_FALSE(kerneltest::GetEarlyPropertyGroup().IsEmpty());
  EXPECT_FALSE(kerneltest::GetEarlyRootId().IsEmpty());
}

TEST(Symbol, IsCopiedLikeAPointer)
{
  EXPECT_TRUE(std::is_trivially_copyable_v<Symbol>);
  EXPECT_EQ(sizeof(Symbol), sizeof(void*));
}

}  // namespace
