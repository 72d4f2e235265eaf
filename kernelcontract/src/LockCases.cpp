#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "Cases.h"
#include "TestTree.h"
#include "zelk/AsyncEvent.h"

namespace kernelcontract {
namespace {

/// Time for the owner to come to its wait for the write side. A test that gets less of it is weaker, never wrong.
void LetTheOwnerWait()
{
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
}

/// Runs `work` on another thread under the read side while this thread, the owner's, edits the tree.
template <typename Work>
bool ReadWhileTheOwnerWantsToWrite(KernelUnderTest& kernel, const du::SmartPtr<zelk::Instance>& parent, Work work)
{
  dp::ReadWriteLock* lock = kernel.GetWorld().tree->GetReadWriteLock();
  if (!lock) {
    return false;
  }
  std::promise<void> isReading;
  std::future<void> hasBegun = isReading.get_future();
  std::thread reader([&] {
    const dp::ReadGuard guard(lock);
    isReading.set_value();
    LetTheOwnerWait();
    work(*lock);
  });
  hasBegun.wait();
  kernel.AddInstance(parent, "pin", "new");
  reader.join();
  return true;
}

void AReader_MayLockAgainWhileAWriterWaits(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  bool hasLockedAgain = false;

  const bool hasLock = ReadWhileTheOwnerWantsToWrite(kernel, tree["d"], [&](dp::ReadWriteLock& lock) {
    const dp::ReadGuard again(&lock);
    const dp::ReadGuard onceMore(&lock);
    hasLockedAgain = true;
  });

  if (!hasLock) {
    GTEST_SKIP() << "this tree has no lock";
  }
  EXPECT_TRUE(hasLockedAgain);
  EXPECT_TRUE(tree["d"]->HasChildren());
}

void UnderTheReadSide_TheTreeDoesNotChangeAndGettersTakeNoLock(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  bool hadChildren = true;
  std::size_t found = 0;

  const bool hasLock = ReadWhileTheOwnerWantsToWrite(kernel, tree["d"], [&](dp::ReadWriteLock&) {
    hadChildren = tree["d"]->HasChildren();
    std::set<du::SmartPtr<zelk::BaseInstance>> all;
    zelk::BaseInstance::GetInstancesAndDescendents({tree["root"]}, all);
    for (const auto& instance : all) {
      du::SmartPtr<zelk::BaseInstance> parent;
      instance->GetBaseParent(parent);
      du::SmartPtr<zelk::PropertyValue> value;
      instance->GetPropertyValue(value, "group", "name", "fallback");
      found += value && !instance->GetInstanceKey().IsEmpty() ? 1U : 0U;
    }
  });

  if (!hasLock) {
    GTEST_SKIP() << "this tree has no lock";
  }
  EXPECT_FALSE(hadChildren) << "the owner has written while another thread was reading";
  EXPECT_EQ(found, tree.GetNames().size());
}

void UnderTheReadSide_ProgressDoesNotWaitForAnOwnerThatWaitsToWrite(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto manager = kernel.CreateManagedObject();
  const auto event = du::MakeSmart<zelk::AsyncEvent>(true);
  manager->ManageObject(event);
  int last = -1;
  event->AddProgressListener([&](unsigned char percent, bool) { last = percent; });

  const bool hasLock = ReadWhileTheOwnerWantsToWrite(kernel, tree["d"], [&](dp::ReadWriteLock&) {
    event->Progress(10);
    event->Progress(20);
  });

  if (!hasLock) {
    event->Complete();
    ASSERT_TRUE(RunUntil(kernel, [&] { return last >= 0; }));
    GTEST_SKIP() << "this tree has no lock";
  }
  EXPECT_EQ(event->GetProgress(), 20);
  event->Complete();
  EXPECT_TRUE(RunUntil(kernel, [&] { return last == 20; }));
}

/// Has another thread read during each visit.
class ReadingVisitor : public zelk::BaseInstanceVisitor {
public:
  explicit ReadingVisitor(dp::ReadWriteLock& lock) : m_lock(lock) {}

  bool VisitInstance(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) override
  {
    const dp::ReadGuard own(&m_lock);
    std::thread([this] { const dp::ReadGuard other(&m_lock); }).join();
    ++visits;
    return true;
  }

  std::size_t visits = 0;

private:
  dp::ReadWriteLock& m_lock;
};

void InsideAVisit_ThisThreadAndOthersCanRead(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  dp::ReadWriteLock* lock = kernel.GetWorld().tree->GetReadWriteLock();
  if (!lock) {
    GTEST_SKIP() << "this tree has no lock";
  }
  ReadingVisitor visitor(*lock);

  kernel.GetWorld().tree->Visit(visitor, zelk::BaseTree::VisitParentsFirst);

  EXPECT_EQ(visitor.visits, tree.GetNames().size());
}

/// Asks for the tree of an instance until it has none, or has been removed and names one all the same.
void AskForTheTreeUntilItIsLeft(const zelk::BaseInstance& instance, const std::atomic<bool>& isRemoved,
                                std::set<const zelk::BaseTree*>& answers)
{
  bool isLast = false;
  du::SmartPtr<zelk::BaseTree> found;
  do {
    isLast = isRemoved;
    instance.GetBaseTree(found);
    answers.insert(found.Get());
  } while (found && !isLast);
}

std::size_t CountWithoutATree(const du::SmartPtr<zelk::Instance>& top)
{
  std::set<du::SmartPtr<zelk::BaseInstance>> all;
  zelk::BaseInstance::GetInstancesAndDescendents({top}, all);
  std::size_t count = 0;
  for (const auto& instance : all) {
    du::SmartPtr<zelk::BaseTree> found;
    instance->GetBaseTree(found);
    count += found ? 0U : 1U;
  }
  return count;
}

void WithoutTheLock_AThreadFindsTheTreeOfAnInstanceUntilItHasLeftWithAllBelowIt(KernelUnderTest& kernel)
{
  const TestTree tree(kernel);
  const auto& top = tree["a"];
  const zelk::BaseTree* const owner = kernel.GetWorld().tree.Get();
  std::set<const zelk::BaseTree*> answers;
  std::size_t left = 0;
  std::atomic<bool> isRemoved{false};
  std::promise<void> isAsking;
  std::future<void> hasBegun = isAsking.get_future();
  std::thread reader([&] {
    du::SmartPtr<zelk::BaseTree> found;
    top->GetBaseTree(found);
    answers.insert(found.Get());
    isAsking.set_value();
    AskForTheTreeUntilItIsLeft(*top, isRemoved, answers);
    left = CountWithoutATree(top);
  });

  hasBegun.wait();
  kernel.Set3dSymbol(top, true);
  kernel.RenameInstance(top, "other");
  kernel.AddInstance(top, "pin", "new");
  kernel.RemoveInstance(top);
  isRemoved = true;
  reader.join();

  EXPECT_EQ(answers, (std::set<const zelk::BaseTree*>{owner, nullptr}));
  EXPECT_EQ(left, 5U) << "a, a1, a2, x and the new one";
}

}  // namespace

std::vector<ContractCase> GetLockCases()
{
  return {
      {"Lock", "AReader_MayLockAgainWhileAWriterWaits", &AReader_MayLockAgainWhileAWriterWaits},
      {"Lock", "UnderTheReadSide_TheTreeDoesNotChangeAndGettersTakeNoLock",
       &UnderTheReadSide_TheTreeDoesNotChangeAndGettersTakeNoLock},
      {"Lock", "UnderTheReadSide_ProgressDoesNotWaitForAnOwnerThatWaitsToWrite",
       &UnderTheReadSide_ProgressDoesNotWaitForAnOwnerThatWaitsToWrite},
      {"Lock", "InsideAVisit_ThisThreadAndOthersCanRead", &InsideAVisit_ThisThreadAndOthersCanRead},
      {"Lock", "WithoutTheLock_AThreadFindsTheTreeOfAnInstanceUntilItHasLeftWithAllBelowIt",
       &WithoutTheLock_AThreadFindsTheTreeOfAnInstanceUntilItHasLeftWithAllBelowIt},
  };
}

}  // namespace kernelcontract
