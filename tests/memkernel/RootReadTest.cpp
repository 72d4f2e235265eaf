#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "memkernel/Tree.h"

namespace memkerneltest {
namespace {

using memkernel::Instance;
using memkernel::Tree;

using InstancePtr = du::SmartPtr<Instance>;

/// Has a thread of its own read again and again while the owner edits.
class ReadingThread {
public:
  template <typename Read>
  explicit ReadingThread(Read read)
      : m_thread([this, read] {
          while (!m_isDone) {
            read();
            ++rounds;
          }
        })
  {
  }
  ~ReadingThread()
  {
    m_isDone = true;
    m_thread.join();
  }
  ReadingThread(const ReadingThread&) = delete;
  ReadingThread& operator=(const ReadingThread&) = delete;

  std::atomic<std::size_t> rounds{0};

private:
  std::atomic<bool> m_isDone{false};
  std::thread m_thread;
};

/// What a walk of a branch has met.
struct Walk {
  std::size_t inTree = 0;
  std::size_t outside = 0;
  std::size_t letters = 0;
};

void WalkBelow(const zelk::BaseInstance& top, Walk& walk)
{
  const auto& instance = dynamic_cast<const Instance&>(top);
  ++(instance.IsInTree() ? walk.inTree : walk.outside);
  walk.letters += instance.GetInstanceSubKey().GetView().size();
  walk.letters += instance.IsMultiInstancedSibling() || instance.Is3dSymbol() ? 1U : 0U;
  du::SmartPtr<zelk::BaseInstance> child;
  for (instance.GetBaseFirstChild(child); child; child->GetBaseNextSibling(child)) {
    WalkBelow(*child, walk);
  }
}

du::SmartPtr<zelk::BaseInstance> GetRootOf(const Tree& tree)
{
  du::SmartPtr<zelk::BaseInstance> root;
  tree.GetBaseRoot(root);
  return root;
}

du::SmartPtr<zelk::BaseTree> GetTreeOf(const zelk::BaseInstance& instance)
{
  du::SmartPtr<zelk::BaseTree> tree;
  instance.GetBaseTree(tree);
  return tree;
}

/// A tree that can be made again: a root, and below it lists of one product that are long enough for an index.
class RootReading : public testing::Test {
protected:
  static constexpr std::size_t s_lists = 10;
  static constexpr std::size_t s_listLength = 20;
  static constexpr std::size_t s_count = 1 + s_lists * (1 + s_listLength);

  InstancePtr Fill()
  {
    const InstancePtr root = tree->CreateRoot(m_part);
    for (std::size_t i = 0; i < s_lists; ++i) {
      const InstancePtr parent = tree->AddChild(root, m_part);
      for (std::size_t k = 0; k < s_listLength; ++k) {
        tree->AddChild(parent, m_part);
      }
    }
    return root;
  }

  const du::SmartPtr<Tree> tree = du::MakeSmart<Tree>();

private:
  const du::SmartPtr<memkernel::Product> m_part = tree->CreateProduct({.name = "part"});
};

TEST_F(RootReading, WhileTheOwnerSetsFlagsOfTheRootAndRenamesIt_FindsTheTreeAndAllOfIt)
{
  const InstancePtr root = Fill();
  std::atomic<bool> isWhole{true};
  ReadingThread reader([this, &isWhole] {
    const auto top = GetRootOf(*tree);
    const auto found = GetTreeOf(*top);
    if (found != tree) {
      isWhole = false;
      return;
    }
    const dp::ReadGuard guard(found->GetReadWriteLock());
    Walk walk;
    WalkBelow(*top, walk);
    isWhole = isWhole && walk.inTree == s_count && walk.outside == 0;
  });

  for (std::size_t edit = 0; edit < 400 || reader.rounds < 20; ++edit) {
    tree->SetFlags(root, memkernel::Instance3dSymbol | memkernel::InstancePlainIcon, edit % 2 == 0);
    tree->Rename(root, du::Symbol(std::string_view(std::to_string(edit))));
  }

  EXPECT_TRUE(isWhole);
}

TEST_F(RootReading, WhileTheRootIsRemovedAndMadeAnew_MeetsAWholeTreeOrOneThatHasBeenLeftByAll)
{
  std::atomic<bool> isWhole{true};
  std::atomic<std::size_t> found{0};
  ReadingThread reader([this, &isWhole, &found] {
    const auto top = GetRootOf(*tree);
    if (!top) {
      return;
    }
    const auto owner = GetTreeOf(*top);
    const dp::ReadGuard guard(owner ? owner->GetReadWriteLock() : nullptr);
    Walk walk;
    WalkBelow(*top, walk);
    isWhole = isWhole && (walk.inTree == 0 || (owner && walk.outside == 0));
    found += owner ? 1U : 0U;
  });

  for (std::size_t round = 0; round < 200 || found < 20; ++round) {
    const InstancePtr root = Fill();
    tree->Rename(root, "other");
    ASSERT_TRUE(tree->Remove(root));
  }

  EXPECT_TRUE(isWhole);
}

TEST_F(RootReading, WhoSeesTheRootOutOfTheTree_SeesAllBelowItFinished)
{
  std::atomic<std::size_t> waiting{0};
  std::atomic<std::size_t> left{0};
  std::atomic<bool> isFinished{true};
  ReadingThread reader([&] {
    const auto top = GetRootOf(*tree);
    if (!top) {
      return;
    }
    ++waiting;
    while (GetTreeOf(*top)) {}
    Walk walk;
    WalkBelow(*top, walk);
    isFinished = isFinished && walk.inTree == 0;
    ++left;
  });

  for (std::size_t round = 1; round <= 100; ++round) {
    const std::size_t before = waiting;
    const InstancePtr root = Fill();
    while (waiting == before) {
      std::this_thread::yield();
    }
    ASSERT_TRUE(tree->Remove(root));
  }
  while (left < waiting) {
    std::this_thread::yield();
  }

  EXPECT_TRUE(isFinished);
  EXPECT_GE(left, 100U);
}

TEST_F(RootReading, WhileTheTreeIsEmptiedFromBelow_MeetsOnlyWhatIsInTheTreeUnderItsLock)
{
  std::atomic<bool> isWhole{true};
  std::atomic<std::size_t> found{0};
  ReadingThread reader([&] {
    const auto top = GetRootOf(*tree);
    const auto owner = top ? GetTreeOf(*top) : nullptr;
    if (!owner) {
      return;
    }
    const dp::ReadGuard guard(owner->GetReadWriteLock());
    unsigned int count = 0;
    owner->GetNumInstances(count);
    Walk walk;
    WalkBelow(*top, walk);
    const bool isCurrent = GetRootOf(*tree) == top;
    isWhole = isWhole && (isCurrent ? walk.outside == 0 && walk.inTree == count : walk.inTree == 0);
    ++found;
  });

  for (std::size_t round = 0; round < 20 || found < 20; ++round) {
    const InstancePtr root = Fill();
    while (root->HasChildren()) {
      du::SmartPtr<zelk::BaseInstance> child;
      root->GetBaseFirstChild(child);
      tree->Remove(du::DynamicCast<Instance>(child));
    }
    ASSERT_TRUE(tree->Remove(root));
  }

  EXPECT_TRUE(isWhole);
}

}  // namespace
}  // namespace memkerneltest
