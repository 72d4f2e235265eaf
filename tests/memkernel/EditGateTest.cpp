#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "memkernel/Tree.h"

namespace memkerneltest {
namespace {

using memkernel::Tree;

/// Holds the read side in a thread of its own until it is told to stop.
class Reader {
public:
  explicit Reader(const Tree& tree) : m_thread([this, lock = tree.GetReadWriteLock()] { _Read(*lock); })
  {
    while (!m_isReading) {
      std::this_thread::yield();
    }
  }
  ~Reader()
  {
    Stop();
    m_thread.join();
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  void Stop() { m_isStopped = true; }

private:
  void _Read(dp::ReadWriteLock& lock)
  {
    const dp::ReadGuard guard(&lock);
    m_isReading = true;
    while (!m_isStopped) {
      std::this_thread::yield();
    }
  }

  std::atomic<bool> m_isReading{false};
  std::atomic<bool> m_isStopped{false};
  std::thread m_thread;
};

/// Every kind of edit that takes the lock.
std::vector<std::function<void(Tree&, const du::SmartPtr<memkernel::Instance>&)>> GetEdits()
{
  using InstancePtr = du::SmartPtr<memkernel::Instance>;
  return {
      [](Tree& tree, const InstancePtr& leaf) { tree.Rename(leaf, "new"); },
      [](Tree& tree, const InstancePtr& leaf) { tree.RenameProduct(leaf->GetProduct(), "new"); },
      [](Tree& tree, const InstancePtr& leaf) { tree.AddChild(leaf, leaf->GetProduct()); },
      [](Tree& tree, const InstancePtr& leaf) { tree.InsertBefore(leaf, leaf->GetProduct()); },
      [](Tree& tree, const InstancePtr& leaf) { tree.Remove(leaf); },
      [](Tree& tree, const InstancePtr& leaf) { tree.SetProperty(leaf, "Group", "Name", "value"); },
      [](Tree& tree, const InstancePtr& leaf) {
        tree.SetProductProperty(leaf->GetProduct(), "Group", "Name", "value");
      },
      [](Tree& tree, const InstancePtr& leaf) { tree.SetFlags(leaf, memkernel::Instance3dSymbol, true); },
      [](Tree& tree, const InstancePtr& leaf) { tree.SetAnchor(leaf, du::MakeSmart<zelk::Anchor>()); },
      [](Tree& tree, const InstancePtr& leaf) { tree.AddViewable(leaf, nullptr); },
  };
}

class EditGate : public testing::Test {
protected:
  EditGate()
  {
    const auto product = tree->CreateProduct({.name = "part"});
    leaf = tree->AddChild(tree->CreateRoot(product), product);
  }

  const du::SmartPtr<Tree> tree = du::MakeSmart<Tree>();
  du::SmartPtr<memkernel::Instance> leaf;
  int calls = 0;
};

TEST_F(EditGate, IsNotCalledWhileNobodyReads)
{
  tree->SetEditGate([this] { ++calls; });

  tree->Rename(leaf, "new");

  EXPECT_EQ(calls, 0);
  EXPECT_EQ(leaf->GetObjectName(), "new");
}

TEST_F(EditGate, LetsAnEditEndTheReadThatItWouldWaitFor)
{
  Reader reader(*tree);
  tree->SetEditGate([&] {
    ++calls;
    reader.Stop();
  });

  tree->Rename(leaf, "new");

  EXPECT_EQ(calls, 1);
  EXPECT_EQ(leaf->GetObjectName(), "new");
}

TEST_F(EditGate, IsAskedByEveryEdit)
{
  for (std::size_t number = 0; number < GetEdits().size(); ++number) {
    SCOPED_TRACE(number);
    const auto ownTree = du::MakeSmart<Tree>();
    const auto product = ownTree->CreateProduct({.name = "part"});
    const auto ownLeaf = ownTree->AddChild(ownTree->CreateRoot(product), product);
    Reader reader(*ownTree);
    int asked = 0;
    ownTree->SetEditGate([&] {
      ++asked;
      reader.Stop();
    });

    GetEdits()[number](*ownTree, ownLeaf);

    EXPECT_EQ(asked, 1);
  }
}

TEST_F(EditGate, ThatIsTakenAwayIsNotCalledAnyMore)
{
  tree->SetEditGate([this] { ++calls; });
  tree->SetEditGate({});
  {
    Reader reader(*tree);
    reader.Stop();

    tree->Rename(leaf, "new");
  }

  EXPECT_EQ(calls, 0);
  EXPECT_EQ(leaf->GetObjectName(), "new");
}

}  // namespace
}  // namespace memkerneltest
