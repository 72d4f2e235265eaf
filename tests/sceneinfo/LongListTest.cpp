#include <gtest/gtest.h>

#include <utility>

#include "LogPanel.h"
#include "StampedInstance.h"

namespace sceneinfotest {
namespace {

using namespace guitree;  // NOLINT(google-build-using-namespace): the states are many

constexpr std::size_t s_long = 40;
constexpr int s_none = 0;

/// A parent of many hidden children below a grandparent, and a log that has not looked at any of them.
class LongListTest : public testing::Test {
protected:
  LongListTest()
  {
    for (std::size_t i = 0; i < s_long; ++i) {
      parent->Add();
    }
  }

  [[nodiscard]] StampedInstance* GetChild(std::size_t index) const { return parent->children[index].Get(); }
  void Show(std::size_t index) { log.SetVisible(GetChild(index), CompVisible, true); }
  void Hide(std::size_t index) { log.SetVisible(GetChild(index), CompHidden, true); }
  void ShowAll()
  {
    for (std::size_t index = 0; index < parent->children.size(); ++index) {
      Show(index);
    }
  }
  /// Works out the state of the parent, hidden itself, again.
  [[nodiscard]] VisibleState AskParent(SceneInfoLog& asked)
  {
    asked.SetVisible(parent.Get(), CompHidden, false);
    return asked.GetCompVisibleState(parent);
  }
  [[nodiscard]] VisibleState AskParent() { return AskParent(log); }
  /// How often the children were looked at since the last call.
  [[nodiscard]] int TakeLooks() const { return std::exchange(parent->looks, 0); }
  void ForgetLooks() const { parent->looks = 0; }
  void Note(const du::SmartPtr<StampedInstance>& child) { panel.GetGuiTree().NoteChildAdded(child, parent); }

  StampedKernel kernel;
  const du::SmartPtr<StampedInstance> grandparent = du::MakeSmart<StampedInstance>(kernel);
  const du::SmartPtr<StampedInstance> parent = grandparent->Add();
  LogPanel panel;
  SceneInfoLog& log = panel.GetLog();
};

TEST_F(LongListTest, AfterTheFirstEvent_NoChildIsLookedAtAgain)
{
  Show(30);
  EXPECT_GE(TakeLooks(), static_cast<int>(s_long));
  EXPECT_EQ(log.GetCompVisibleState(parent), VisibleStateHiddenMixed);

  ShowAll();
  EXPECT_EQ(log.GetCompVisibleState(parent), VisibleStateHiddenAllChildren);
  EXPECT_EQ(log.GetCompVisibleState(grandparent), VisibleStateHiddenAllChildren);

  for (std::size_t index = s_long; index-- > 0;) {
    Hide(index);
  }
  EXPECT_EQ(log.GetCompVisibleState(parent), VisibleStateHidden);
  EXPECT_EQ(log.GetCompVisibleState(grandparent), VisibleStateHidden);
  EXPECT_EQ(TakeLooks(), s_none);
}

TEST_F(LongListTest, TheFirstChildrenThatMakeItMixed_AreEnough)
{
  Show(0);

  EXPECT_EQ(AskParent(), VisibleStateHiddenMixed);
  EXPECT_LE(TakeLooks(), 6);
}

TEST_F(LongListTest, AShortList_IsLookedAtEachTime)
{
  while (parent->children.size() > 16) {
    const du::SmartPtr<StampedInstance> removed(parent->children.back());
    removed->Detach();
  }
  ASSERT_EQ(AskParent(), VisibleStateHidden);
  ForgetLooks();

  EXPECT_EQ(AskParent(), VisibleStateHidden);
  EXPECT_EQ(TakeLooks(), 17);
}

TEST_F(LongListTest, WhereTheKernelMakesNoPromise_TheChildrenAreLookedAtEachTime)
{
  kernel.answersRevisions = false;
  ASSERT_EQ(AskParent(), VisibleStateHidden);
  ForgetLooks();

  EXPECT_EQ(AskParent(), VisibleStateHidden);
  EXPECT_GE(TakeLooks(), static_cast<int>(s_long));
}

TEST_F(LongListTest, WhereTheKernelPromisesNoMore_WhatWasKeptIsNotUsed)
{
  ASSERT_EQ(AskParent(), VisibleStateHidden);

  kernel.answersRevisions = false;
  ShowAll();
  kernel.answersRevisions = true;

  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
}

TEST_F(LongListTest, ADerivedLog_LooksEachTimeAndIsAskedForTheStates)
{
  class EverythingVisible : public SceneInfoLog {
  public:
    using SceneInfoLog::SceneInfoLog;
    VisibleState GetCompVisibleState(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) override { return answer; }
    VisibleState answer = VisibleStateVisible;
  };
  EverythingVisible derived(&panel.GetGuiTree());
  derived.SetVisible(parent.Get(), CompHidden, false);
  EXPECT_EQ(derived.SceneInfoLog::GetCompVisibleState(parent), VisibleStateHiddenAllChildren);

  derived.answer = VisibleStateHiddenMixed;
  derived.SetVisible(parent.Get(), CompHidden, false);
  EXPECT_EQ(derived.SceneInfoLog::GetCompVisibleState(parent), VisibleStateHiddenMixed);
}

TEST_F(LongListTest, EveryWayToAState_IsCounted)
{
  ShowAll();
  ASSERT_EQ(AskParent(), VisibleStateHiddenAllChildren);
  ForgetLooks();

  log.ForceVisibleToHidden(GetChild(3));
  EXPECT_EQ(AskParent(), VisibleStateHiddenMixed);
  log.SetVisible(GetChild(3), VisibleStateNone);
  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
  log.SetVisible(GetChild(3), VisibleStateThumbnailHidden);
  EXPECT_EQ(AskParent(), VisibleStateHiddenMixed);
  log.SetVisible(GetChild(3), VisibleStateHiddenAllChildren);
  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
  log.RemoveFromLog(GetChild(3));
  EXPECT_EQ(AskParent(), VisibleStateHiddenMixed);
  EXPECT_EQ(TakeLooks(), s_none);
}

TEST_F(LongListTest, AStateThatIsSwallowed_IsNotCounted)
{
  ShowAll();
  log.RemoveFromLog(GetChild(3));
  ASSERT_FALSE(log.SetVisible(GetChild(3), VisibleStateVisible));

  EXPECT_EQ(AskParent(), VisibleStateHiddenMixed);
}

TEST_F(LongListTest, A3dSymbolsState_IsNotCounted)
{
  ASSERT_EQ(AskParent(), VisibleStateHidden);
  GetChild(3)->Turn3dSymbol();
  ASSERT_EQ(AskParent(), VisibleStateHidden);
  ForgetLooks();

  Show(3);

  EXPECT_EQ(AskParent(), VisibleStateHidden);
  EXPECT_EQ(TakeLooks(), s_none);
}

TEST_F(LongListTest, AChildThatTurnsInto3dSymbol_CountsNoMore)
{
  ShowAll();
  Hide(3);
  ASSERT_EQ(AskParent(), VisibleStateHiddenMixed);

  GetChild(3)->Turn3dSymbol();

  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
}

TEST_F(LongListTest, AChildThatGoes_CountsNoMore)
{
  ShowAll();
  Hide(3);
  ASSERT_EQ(AskParent(), VisibleStateHiddenMixed);

  const du::SmartPtr<StampedInstance> removed(GetChild(3));
  removed->Detach();

  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
}

TEST_F(LongListTest, AChildThatComesUntold_IsFound)
{
  ShowAll();
  ASSERT_EQ(AskParent(), VisibleStateHiddenAllChildren);

  parent->Add();

  EXPECT_EQ(AskParent(), VisibleStateHiddenMixed);
}

TEST_F(LongListTest, ChildrenThatAreTold_AreCountedWithoutALookAtTheOthers)
{
  ShowAll();
  ASSERT_EQ(AskParent(), VisibleStateHiddenAllChildren);
  ForgetLooks();

  for (int i = 0; i < 200; ++i) {
    Note(parent->Add());
    ASSERT_EQ(AskParent(), VisibleStateHiddenMixed);
    Show(parent->children.size() - 1);
    ASSERT_EQ(AskParent(), VisibleStateHiddenAllChildren);
  }

  EXPECT_EQ(TakeLooks(), s_none);
}

TEST_F(LongListTest, AToldChildThatTheLogKnows_CountsAsWhatItIs)
{
  ShowAll();
  const du::SmartPtr<StampedInstance> known(GetChild(3));
  known->Detach();
  ASSERT_EQ(AskParent(), VisibleStateHiddenAllChildren);
  ForgetLooks();

  Note(parent->Attach(known));
  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
  log.RemoveFromLog(known.Get());
  EXPECT_EQ(AskParent(), VisibleStateHiddenMixed);
  EXPECT_EQ(TakeLooks(), s_none);
}

TEST_F(LongListTest, AToldChildThatIsA3dSymbol_IsLeftOut)
{
  ShowAll();
  const auto symbol = du::MakeSmart<StampedInstance>(kernel);
  symbol->Turn3dSymbol();

  Note(parent->Attach(symbol));

  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
}

TEST_F(LongListTest, AToldChildAfterMoreChanges_MakesTheLogLookAgain)
{
  ShowAll();
  const auto untold = du::MakeSmart<StampedInstance>(kernel);
  untold->Turn3dSymbol();
  parent->Attach(untold);
  const auto child = parent->Add();
  Note(child);
  Note(child);

  EXPECT_EQ(AskParent(), VisibleStateHiddenMixed);
  Show(s_long + 1);
  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
}

TEST_F(LongListTest, AChildThatIsToldTwice_IsCountedOnce)
{
  ShowAll();
  const auto child = parent->Add();
  Note(child);
  Note(child);

  Show(s_long);

  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
}

TEST_F(LongListTest, WhatChangesBetweenTheComingOfAChildAndItsNote_IsNotLost)
{
  ShowAll();
  const auto child = parent->Add();
  log.ForceVisibleToHidden(GetChild(3));
  Note(child);

  Show(s_long);
  EXPECT_EQ(AskParent(), VisibleStateHiddenMixed);
  Show(3);
  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
}

TEST_F(LongListTest, NoteChildAdded_WithANullArgument_IsIgnored)
{
  ShowAll();

  panel.GetGuiTree().NoteChildAdded(nullptr, parent);
  panel.GetGuiTree().NoteChildAdded(parent, nullptr);

  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
}

TEST_F(LongListTest, Initialise_ForgetsWhatWasCounted)
{
  ShowAll();

  log.Initialise(nullptr);

  EXPECT_EQ(AskParent(), VisibleStateHidden);
}

TEST_F(LongListTest, RemoveFromLog_OfTheParent_LooksAgain)
{
  ShowAll();
  log.ClearVisibleChangeMap();
  ForgetLooks();

  log.RemoveFromLog(parent.Get());

  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
  EXPECT_GE(TakeLooks(), static_cast<int>(s_long));
}

TEST_F(LongListTest, ACopy_CountsForItself)
{
  ShowAll();
  ASSERT_EQ(AskParent(), VisibleStateHiddenAllChildren);
  ForgetLooks();

  SceneInfoLog copy(log);
  copy.SetVisible(GetChild(3), CompHidden, false);

  EXPECT_EQ(AskParent(copy), VisibleStateHiddenMixed);
  EXPECT_EQ(AskParent(), VisibleStateHiddenAllChildren);
  EXPECT_EQ(TakeLooks(), s_none);
}

TEST_F(LongListTest, AnotherParentAtTheSameAddress_IsLookedAt)
{
  ShowAll();
  ASSERT_EQ(AskParent(), VisibleStateHiddenAllChildren);

  // As the kernel's next instance would show itself there: with other children, and with revisions of its own.
  parent->revision = kernel.nextRange;
  parent->children.front() = du::MakeSmart<StampedInstance>(kernel);
  parent->children.front()->parent = parent.Get();

  EXPECT_EQ(AskParent(), VisibleStateHiddenMixed);
}

}  // namespace
}  // namespace sceneinfotest
