#include <gtest/gtest.h>

#include <utility>

#include "DeclaredOnly.h"
#include "du/SmartPtr.h"

namespace {

using kerneltest::GetHookCalls;
using kerneltest::HiddenHolder;
using kerneltest::HookCall;
using kerneltest::Hooked;
using kerneltest::Outer;
using Calls = std::vector<HookCall>;

TEST(SmartPtrHooks, AClassThatIsOnlyDeclared_CanBeHeldByValue)
{
  bool isAlive = false;

  {
    HiddenHolder holder(isAlive);
    const HiddenHolder copy(holder);
    const HiddenHolder moved(std::move(holder));
    EXPECT_TRUE(holder.IsEmpty());  // NOLINT(bugprone-use-after-move): that is what is promised
    EXPECT_FALSE(moved.IsEmpty());
    EXPECT_TRUE(isAlive);
  }

  EXPECT_FALSE(isAlive);
}

TEST(SmartPtrHooks, ANestedClassWithFriendsAsHooks_IsCountedWithoutItsDefinition)
{
  bool isAlive = false;
  du::SmartPtr<Outer::Inner> inner = Outer::MakeInner(isAlive);
  du::SmartPtr<Outer::Inner> copy = inner;

  inner.Reset();
  EXPECT_TRUE(isAlive);

  copy.Reset();
  EXPECT_FALSE(isAlive);
}

TEST(SmartPtrHooks, Copying_AddsWithTheAddressOfTheNewHolder)
{
  const du::SmartPtr<Hooked> first = kerneltest::MakeHooked();
  GetHookCalls().clear();

  du::SmartPtr<Hooked> second(first);

  EXPECT_EQ(GetHookCalls(), (Calls{{"add", &second}}));
}

TEST(SmartPtrHooks, Assignment_OfADifferentPointer_AddsFirstAndReleasesSecondForTheSameHolder)
{
  du::SmartPtr<Hooked> holder = kerneltest::MakeHooked();
  const du::SmartPtr<Hooked> other = kerneltest::MakeHooked();
  GetHookCalls().clear();

  holder = other;

  EXPECT_EQ(GetHookCalls(), (Calls{{"add", &holder}, {"delete", &holder}}));
}

TEST(SmartPtrHooks, Assignment_OfTheSamePointer_CallsNothing)
{
  du::SmartPtr<Hooked> holder = kerneltest::MakeHooked();
  const du::SmartPtr<Hooked> other = holder;
  GetHookCalls().clear();

  holder = other;

  EXPECT_TRUE(GetHookCalls().empty());
}

TEST(SmartPtrHooks, MoveConstruction_CallsNothing)
{
  du::SmartPtr<Hooked> source = kerneltest::MakeHooked();
  GetHookCalls().clear();

  const du::SmartPtr<Hooked> target(std::move(source));

  EXPECT_TRUE(GetHookCalls().empty());
}

TEST(SmartPtrHooks, MoveAssignment_ReleasesTheFormerObjectForTheHolder)
{
  du::SmartPtr<Hooked> holder = kerneltest::MakeHooked();
  du::SmartPtr<Hooked> source = kerneltest::MakeHooked();
  GetHookCalls().clear();

  holder = std::move(source);

  EXPECT_EQ(GetHookCalls(), (Calls{{"delete", &holder}}));
}

TEST(SmartPtrHooks, AssignmentOfNull_ReleasesForTheHolder)
{
  du::SmartPtr<Hooked> holder = kerneltest::MakeHooked();
  const du::SmartPtr<Hooked> other = holder;
  GetHookCalls().clear();

  holder = nullptr;
  holder = nullptr;

  EXPECT_EQ(GetHookCalls(), (Calls{{"release", &holder}}));
}

}  // namespace
