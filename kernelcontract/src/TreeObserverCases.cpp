#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <utility>

#include "Cases.h"
#include "RecordingTreeObserver.h"
#include "TestTree.h"

namespace kernelcontract {
namespace {

using Base = du::SmartPtr<zelk::BaseInstance>;

/// An observer of the kernel's tree for the length of a test.
class Registered {
public:
  Registered(KernelUnderTest& kernel, const Names& names, bool replay = false)
      : m_tree(kernel.GetWorld().tree), m_observer(du::MakeSmart<RecordingTreeObserver>(names))
  {
    EXPECT_TRUE(m_tree->RegisterObserver(*m_observer, replay));
  }
  ~Registered() { m_tree->UnregisterObserver(*m_observer); }
  Registered(const Registered&) = delete;
  Registered& operator=(const Registered&) = delete;

  RecordingTreeObserver* operator->() const { return m_observer.Get(); }
  RecordingTreeObserver& operator*() const { return *m_observer; }

private:
  du::SmartPtr<zelk::Tree> m_tree;
  du::SmartPtr<RecordingTreeObserver> m_observer;
};

void ASingleEdit_IsToldInBrackets(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const Registered observer(kernel, tree.GetNames());

  kernel.AddInstance(tree["d"], "pin", "new");
  EXPECT_EQ(observer->lines, (Lines{"begin", "create new < d", "end"}));

  observer->lines.clear();
  kernel.RemoveInstance(tree["b"]);
  EXPECT_EQ(observer->lines, (Lines{"begin", "remove b < root", "end"}));
}

void ARename_IsToldInBrackets(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const Registered observer(kernel, tree.GetNames());

  if (!kernel.RenameInstance(tree["b"], "other name")) {
    GTEST_SKIP() << "this kernel renames nothing";
  }

  EXPECT_EQ(observer->lines, (Lines{"begin", "name b", "end"}));
}

void TheRoot_IsToldWithoutAParent(KernelUnderTest& kernel)
{
  const Registered observer(kernel, {});

  kernel.AddInstance(nullptr, "engine", "root");

  EXPECT_EQ(observer->lines, (Lines{"begin", "create root < -", "end"}));
}

void ABatch_IsOneRunAndTellsEachEditBeforeTheNext(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const Registered observer(kernel, tree.GetNames());
  std::vector<std::size_t> counts;
  observer->onEvent = [&] {
    unsigned int count = 0;
    kernel.GetWorld().tree->GetNumInstances(count);
    counts.push_back(count);
  };

  auto batch = kernel.OpenBatch();
  if (!batch) {
    GTEST_SKIP() << "this kernel has no batches";
  }
  const auto group = kernel.AddInstance(tree["d"], "frame", "group");
  EXPECT_EQ(observer->lines.size(), 2U) << "begin and the first edit";
  kernel.AddInstance(group, "pin", "inner");
  kernel.RemoveInstance(tree["c"]);
  EXPECT_EQ(observer->lines.back(), "remove c < root");
  batch.reset();

  EXPECT_EQ(observer->lines, (Lines{"begin", "create group < d", "create inner < group", "remove c < root", "end"}));
  EXPECT_EQ(counts, (std::vector<std::size_t>{9, 10, 9}));
}

void AnEmptyBatch_LeavesBracketsInPairs(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const Registered observer(kernel, tree.GetNames());

  kernel.OpenBatch();

  EXPECT_EQ(std::count(observer->lines.begin(), observer->lines.end(), "begin"),
            std::count(observer->lines.begin(), observer->lines.end(), "end"));
}

void ARemoval_IsToldWithItsSubtreeWholeAndThenEachDescendant(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const Registered observer(kernel, tree.GetNames());
  bool isFirst = true;
  observer->onRemove = [&](const Base& instance) {
    if (!std::exchange(isFirst, false)) {
      return;
    }
    Base parent(tree["d"]);
    instance->GetBaseParent(parent);
    EXPECT_FALSE(parent) << "what is removed is unlinked from its parent";
    std::vector<Base> children;
    instance->GetBaseChildren(children);
    EXPECT_TRUE(children == (std::vector<Base>{tree["a1"], tree["a2"]})) << "its own subtree still hangs below it";
    tree["root"]->GetBaseChildren(children);
    EXPECT_TRUE(std::find(children.begin(), children.end(), instance) == children.end());
  };

  kernel.RemoveInstance(tree["a"]);

  ASSERT_EQ(observer->lines.size(), 6U);
  EXPECT_EQ(observer->lines.front(), "begin");
  EXPECT_EQ(observer->lines[1], "remove a < root");
  EXPECT_EQ(observer->lines.back(), "end");
  Lines rest(observer->lines.begin() + 2, observer->lines.end() - 1);
  const auto indexOf = [&](const char* line) { return std::find(rest.begin(), rest.end(), line) - rest.begin(); };
  EXPECT_LT(indexOf("remove a2 < a"), indexOf("remove x < a2")) << "parents first";
  EXPECT_LT(indexOf("remove x < a2"), 3);
  EXPECT_LT(indexOf("remove a1 < a"), 3);
}

void WithReplay_TheObserverIsToldOfWhatExistsInBrackets(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);

  const Registered observer(kernel, {}, true);

  Lines sorted = observer->lines;
  ASSERT_EQ(sorted.size(), 10U);
  EXPECT_EQ(sorted[0], "begin");
  EXPECT_EQ(sorted[1], "create root < -");
  EXPECT_EQ(sorted.back(), "end");
  std::sort(sorted.begin(), sorted.end());
  // A parent that was not told before its child would stand there as "?".
  EXPECT_EQ(sorted, (Lines{"begin", "create a < root", "create a1 < a", "create a2 < a", "create b < root",
                           "create c < root", "create d < root", "create root < -", "create x < a2", "end"}));
}

void WithoutReplay_TheObserverIsToldOfNothingThatExists(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);

  const Registered observer(kernel, tree.GetNames(), false);

  EXPECT_EQ(std::count(observer->lines.begin(), observer->lines.end(), "create root < -"), 0);
  EXPECT_LE(observer->lines.size(), 2U);
}

void Registration_HappensOnceAndIsReportedToTheObserver(KernelUnderTest& kernel)
{
  const auto tree = kernel.GetWorld().tree;
  const auto observer = du::MakeSmart<RecordingTreeObserver>();

  EXPECT_FALSE(tree->UnregisterObserver(*observer));
  EXPECT_TRUE(tree->RegisterObserver(*observer, false));
  EXPECT_TRUE(observer->IsRegistered());
  EXPECT_FALSE(tree->RegisterObserver(*observer, false));
  EXPECT_TRUE(tree->UnregisterObserver(*observer));
  EXPECT_FALSE(observer->IsRegistered());
  EXPECT_FALSE(tree->UnregisterObserver(*observer));

  kernel.AddInstance(nullptr, "engine", "root");
  EXPECT_TRUE(observer->lines.empty());
}

void UnregisteringInsideARun_DeliversTheEndFirstAndNothingAfter(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const Registered observer(kernel, tree.GetNames());

  auto batch = kernel.OpenBatch();
  if (!batch) {
    GTEST_SKIP() << "this kernel has no batches";
  }
  kernel.RemoveInstance(tree["b"]);
  EXPECT_TRUE(kernel.GetWorld().tree->UnregisterObserver(*observer));
  EXPECT_EQ(observer->lines, (Lines{"begin", "remove b < root", "end"}));
  kernel.RemoveInstance(tree["c"]);
  batch.reset();

  EXPECT_EQ(observer->lines, (Lines{"begin", "remove b < root", "end"}));
}

void UnregisteringFromInsideACallback_DeliversTheEndAndNothingAfter(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const Registered observer(kernel, tree.GetNames());
  const Registered other(kernel, tree.GetNames());
  observer->onEvent = [&] { kernel.GetWorld().tree->UnregisterObserver(*observer); };

  kernel.RemoveInstance(tree["a"]);

  EXPECT_EQ(observer->lines, (Lines{"begin", "remove a < root", "end"}));
  EXPECT_EQ(other->lines.size(), 6U) << "the other observer hears everything";
}

void AnObserverThatIsReleasedWhileRegistered_IsStillThere(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  auto observer = du::MakeSmart<RecordingTreeObserver>(tree.GetNames());
  auto* address = observer.Get();
  kernel.GetWorld().tree->RegisterObserver(*observer, false);

  observer.Reset();
  kernel.RemoveInstance(tree["b"]);
  EXPECT_EQ(address->lines.size(), 3U);

  EXPECT_TRUE(kernel.GetWorld().tree->UnregisterObserver(*address));
}

void TheEndOfTheWorld_IsToldByDestroyAndUnregister(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto observer = du::MakeSmart<RecordingTreeObserver>(tree.GetNames());
  kernel.GetWorld().tree->RegisterObserver(*observer, false);

  kernel.EndWorld();

  Lines events = observer->lines;
  events.erase(std::remove_if(events.begin(), events.end(),
                              [](const std::string& line) { return line == "begin" || line == "end"; }),
               events.end());
  EXPECT_EQ(events, (Lines{"destroy", "unregister"}));
  EXPECT_EQ(observer->lines.back(), "unregister");
  EXPECT_FALSE(observer->IsRegistered());
}

void NoLockIsHeldWhileAnObserverRuns(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  dp::ReadWriteLock* lock = kernel.GetWorld().tree->GetReadWriteLock();
  if (!lock) {
    GTEST_SKIP() << "this tree has no lock";
  }
  std::vector<std::future<void>> readers;
  const Registered observer(kernel, tree.GetNames());
  observer->onEvent = [&] {
    readers.push_back(std::async(std::launch::async, [lock] { const dp::ReadGuard guard(lock); }));
    const bool couldRead = readers.back().wait_for(std::chrono::seconds(3)) == std::future_status::ready;
    EXPECT_TRUE(couldRead) << "another thread cannot read while an observer runs";
    if (couldRead) {
      const dp::ReadGuard own(lock);
    }
  };

  kernel.AddInstance(tree["d"], "pin", "new");
  kernel.RemoveInstance(tree["b"]);

  EXPECT_EQ(readers.size(), 2U);
}

}  // namespace

std::vector<ContractCase> GetTreeObserverCases()
{
  const char* group = "TreeObserver";
  return {
      {group, "ASingleEdit_IsToldInBrackets", &ASingleEdit_IsToldInBrackets},
      {group, "ARename_IsToldInBrackets", &ARename_IsToldInBrackets},
      {group, "TheRoot_IsToldWithoutAParent", &TheRoot_IsToldWithoutAParent},
      {group, "ABatch_IsOneRunAndTellsEachEditBeforeTheNext", &ABatch_IsOneRunAndTellsEachEditBeforeTheNext},
      {group, "AnEmptyBatch_LeavesBracketsInPairs", &AnEmptyBatch_LeavesBracketsInPairs},
      {group, "ARemoval_IsToldWithItsSubtreeWholeAndThenEachDescendant",
       &ARemoval_IsToldWithItsSubtreeWholeAndThenEachDescendant},
      {group, "WithReplay_TheObserverIsToldOfWhatExistsInBrackets",
       &WithReplay_TheObserverIsToldOfWhatExistsInBrackets},
      {group, "WithoutReplay_TheObserverIsToldOfNothingThatExists",
       &WithoutReplay_TheObserverIsToldOfNothingThatExists},
      {group, "Registration_HappensOnceAndIsReportedToTheObserver",
       &Registration_HappensOnceAndIsReportedToTheObserver},
      {group, "UnregisteringInsideARun_DeliversTheEndFirstAndNothingAfter",
       &UnregisteringInsideARun_DeliversTheEndFirstAndNothingAfter},
      {group, "UnregisteringFromInsideACallback_DeliversTheEndAndNothingAfter",
       &UnregisteringFromInsideACallback_DeliversTheEndAndNothingAfter},
      {group, "AnObserverThatIsReleasedWhileRegistered_IsStillThere",
       &AnObserverThatIsReleasedWhileRegistered_IsStillThere},
      {group, "TheEndOfTheWorld_IsToldByDestroyAndUnregister", &TheEndOfTheWorld_IsToldByDestroyAndUnregister},
      {group, "NoLockIsHeldWhileAnObserverRuns", &NoLockIsHeldWhileAnObserverRuns},
  };
}

}  // namespace kernelcontract
