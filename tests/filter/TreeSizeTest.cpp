#include <pthread.h>

#include "CountedKernel.h"
#include "EngineStage.h"

namespace filtertest {
namespace {

/// Runs a function on a stack that no walk of one frame a level fits on.
void RunOnASmallStack(const std::function<void()>& function)
{
  constexpr std::size_t stackSize = std::size_t{256} * 1024;
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, stackSize), 0);
  pthread_t thread{};
  const auto run = [](void* call) -> void* {
    (*static_cast<const std::function<void()>*>(call))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&function)), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}

std::string NumberName(std::size_t number)
{
  return "n" + std::to_string(number);
}

/// A kernel of so many instances, with a filter that keeps no names of what it is asked.
class SizedStage {
public:
  explicit SizedStage(std::size_t size) : m_size(size)
  {
    stage.filter.filtersOut = nullptr;
    stage.filter.onAsked = [this](const Instance&, std::set<Instance>&, bool, du::SmartPtr<du::RefCounted>&,
                                  unsigned int*) { ++asks; };
  }

  void Reject(std::function<bool(const zelk::BaseInstance*)> rejects)
  {
    stage.filter.filtersOut = [rejects = std::move(rejects)](const Instance& instance, bool) {
      return rejects(instance.Get());
    };
  }
  void RejectAll()
  {
    Reject([](const zelk::BaseInstance*) { return true; });
  }
  void Build() { stage.Build(kernel.GetRoot()); }
  [[nodiscard]] std::size_t GetSize() const { return m_size; }
  [[nodiscard]] OpenTree& GetTree() const { return *stage.tree; }

  CountedKernel kernel;
  Stage stage{""};
  std::size_t asks = 0;

private:
  std::size_t m_size;
};

/// A single branch: each instance the only child of the one before.
class DeepStage : public SizedStage {
public:
  explicit DeepStage(std::size_t size) : SizedStage(size)
  {
    CountedInstance* parent = nullptr;
    for (std::size_t number = 0; number < size; ++number) {
      parent = kernel.Add(parent, NumberName(number));
    }
  }

  [[nodiscard]] zelk::BaseInstance* GetDeepest() const { return kernel.GetInstances().back().Get(); }
};

/// All instances but the first are its children.
class WideStage : public SizedStage {
public:
  explicit WideStage(std::size_t size = 200001) : SizedStage(size)
  {
    CountedInstance* const root = kernel.Add(nullptr, "root");
    for (std::size_t number = 1; number < size; ++number) {
      kernel.Add(root, NumberName(number));
    }
  }
};

std::size_t CountLevels(const Node* node)
{
  std::size_t levels = 0;
  for (; node; node = node->firstChild) {
    ++levels;
  }
  return levels;
}

std::size_t CountChildren(const Node* parent)
{
  std::size_t children = 0;
  for (const Node* child = parent->firstChild; child; child = child->nextSibling) {
    ++children;
  }
  return children;
}

class DeepTree : public testing::TestWithParam<std::size_t> {};

TEST_P(DeepTree, WithoutAMatch_AsksTwiceAnInstance)
{
  RunOnASmallStack([] {
    DeepStage deep(GetParam());
    deep.RejectAll();

    deep.Build();

    EXPECT_EQ(CountLevels(deep.GetTree().root), 1u);
    EXPECT_EQ(deep.asks, 2 * deep.GetSize() - 1);
    EXPECT_EQ(deep.kernel.reads.visits, deep.GetSize());
    EXPECT_EQ(deep.kernel.reads.lists, deep.GetSize() - 1);
  });
}

TEST_P(DeepTree, WithAMatchAtTheBottom_IsKeptAndFreedAsAWhole)
{
  RunOnASmallStack([] {
    DeepStage deep(GetParam());
    deep.Reject([deepest = deep.GetDeepest()](const zelk::BaseInstance* instance) { return instance != deepest; });

    deep.Build();
    EXPECT_EQ(CountLevels(deep.GetTree().root), deep.GetSize());
    EXPECT_EQ(deep.GetTree().GetFirstFilteredNode()->instance, deep.GetDeepest());

    deep.RejectAll();
    deep.Build();
    EXPECT_EQ(CountLevels(deep.GetTree().root), 1u);
  });
}

TEST_P(DeepTree, WithTwoPassesAndSiblings_IsKeptInBothTrees)
{
  RunOnASmallStack([] {
    DeepStage deep(GetParam());
    deep.stage.filter.hasHiddenPass = true;
    deep.stage.filter.showSiblings = true;

    deep.Build();

    EXPECT_EQ(CountLevels(deep.GetTree().root), deep.GetSize());
    EXPECT_EQ(CountLevels(deep.GetTree().hfRoot), deep.GetSize());
    EXPECT_EQ(deep.GetTree().GetNumHfInsts(), deep.GetSize());
    // The root of each pass, and each other instance in the search among its siblings.
    EXPECT_EQ(deep.asks, 2 * deep.GetSize());
  });
}

TEST_P(DeepTree, WithAnExemptInstance_ReadsTwoParentsAJudgingAtMost)
{
  RunOnASmallStack([] {
    DeepStage deep(GetParam());
    deep.RejectAll();
    deep.stage.spared.insert(deep.GetDeepest());

    deep.Build();

    EXPECT_EQ(CountLevels(deep.GetTree().root), deep.GetSize());
    EXPECT_LE(deep.kernel.reads.parents, 2 * deep.asks);
  });
}

TEST_P(DeepTree, ThatWasCancelled_IsFilledFromTheKernel)
{
  RunOnASmallStack([] {
    DeepStage deep(GetParam());
    deep.stage.Cancel();
    deep.Build();
    std::list<Node*> created;

    deep.GetTree().ExpandNode(deep.GetTree().root->lastChild, &created);

    EXPECT_EQ(created.size(), 1u);
    EXPECT_EQ(CountLevels(deep.GetTree().root), deep.GetSize());
    EXPECT_EQ(deep.kernel.reads.visits, deep.GetSize() - 1);
  });
}

TEST_P(DeepTree, CancelledAtItsBottom_IsFreed)
{
  RunOnASmallStack([] {
    DeepStage deep(GetParam());
    deep.stage.event = du::MakeSmart<ReportedEvent>();
    deep.kernel.onVisit = [&deep] {
      if (deep.kernel.reads.visits == deep.GetSize()) {
        deep.stage.event->Cancel();
      }
    };

    deep.Build();

    EXPECT_EQ(deep.stage.GetRows(), "n0[...]");
  });
}

TEST_P(DeepTree, IsFilledFromItsHiddenTree)
{
  RunOnASmallStack([] {
    DeepStage deep(GetParam());
    deep.stage.filter.hasHiddenPass = true;
    deep.stage.filter.filtersOut = [](const Instance&, bool hiddenPass) { return !hiddenPass; };
    deep.Build();
    ASSERT_EQ(CountLevels(deep.GetTree().root), 1u);
    std::list<Node*> created;

    deep.GetTree().ExpandNode(OpenTree::AddPlaceholder(deep.GetTree().root), &created);

    EXPECT_EQ(CountLevels(deep.GetTree().root), deep.GetSize());
  });
}

TEST_P(DeepTree, NodesAreFoundAlongTheChainOfParents)
{
  DeepStage deep(GetParam());
  deep.stage.filter.hasHiddenPass = true;
  // The build begins below the top, as `GetNode` has it.
  deep.stage.Build(deep.kernel.GetInstances()[1]);
  deep.kernel.reads = {};

  Node* const found = deep.GetTree().GetNode(du::SmartPtr<zelk::BaseInstance>(deep.GetDeepest()));

  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->instance, deep.GetDeepest());
  EXPECT_EQ(deep.kernel.reads.parents, deep.GetSize());
  EXPECT_EQ(deep.GetTree()._FindMatchingHFTreeNode(found)->instance, deep.GetDeepest());
}

INSTANTIATE_TEST_SUITE_P(Levels, DeepTree, testing::Values(10000U, 100000U));

TEST(WideTree, WithoutAMatch_AsksTwiceAnInstanceAndReadsOneList)
{
  WideStage wide;
  wide.RejectAll();

  wide.Build();

  EXPECT_EQ(CountChildren(wide.GetTree().root), 0u);
  EXPECT_EQ(wide.asks, 2 * wide.GetSize() - 1);
  EXPECT_EQ(wide.kernel.reads.lists, 1u);
  EXPECT_EQ(wide.kernel.reads.visits, wide.GetSize());
  EXPECT_EQ(wide.kernel.reads.keys, 0u);
}

TEST(WideTree, WithSiblingsAndWithoutAMatch_AsksThreeTimesAnInstance)
{
  WideStage wide;
  wide.RejectAll();
  wide.stage.filter.showSiblings = true;

  wide.Build();

  EXPECT_EQ(wide.asks, 3 * wide.GetSize() - 2);
}

TEST(WideTree, WithAllMatching_ReadsFewKeysAnInstance)
{
  WideStage wide;

  wide.Build();

  EXPECT_EQ(CountChildren(wide.GetTree().root), wide.GetSize() - 1);
  EXPECT_EQ(CreatedOf(wide.GetTree()).size(), wide.GetSize());
  EXPECT_EQ(MatchedOf(wide.GetTree()).size(), wide.GetSize());
  EXPECT_TRUE(wide.GetTree().IsContainItem(wide.kernel.GetInstances()[77]));
  // The logarithm of the number of instances is below 18; twice that is what one ordered insertion each may read.
  EXPECT_LE(wide.kernel.reads.keys, 36 * wide.GetSize());
}

TEST(WideTree, ThatIsBuilt_AnswersWithoutASort)
{
  WideStage wide;
  wide.Build();
  wide.kernel.reads = {};

  EXPECT_TRUE(wide.GetTree().IsContainItem(wide.kernel.GetInstances()[77]));

  // A search by halves: two keys a comparison.
  EXPECT_LE(wide.kernel.reads.keys, 2u * 20u);
}

TEST(WideTree, Sorted_ReadsEachPropertyOnce)
{
  WideStage wide;
  wide.stage.filter.sortColumn = du::DualSymbol("", "Mass");

  wide.Build();

  EXPECT_EQ(CountChildren(wide.GetTree().root), wide.GetSize() - 1);
  EXPECT_EQ(wide.kernel.reads.properties, wide.GetSize() - 1);
}

TEST(WideTree, WithHalfOfItExempt_ReadsTheParentOfTheOtherHalfAndThePlaceOfThatParentOnce)
{
  WideStage wide;
  wide.RejectAll();
  for (std::size_t number = 1; number < wide.GetSize(); number += 2) {
    wide.stage.spared.insert(wide.kernel.GetInstances()[number].Get());
  }

  wide.Build();

  EXPECT_EQ(CountChildren(wide.GetTree().root), wide.GetSize() / 2);
  // Two for the root, which is judged first, and one for the place of the parent of all others.
  EXPECT_LE(wide.kernel.reads.parents, wide.asks / 2 + 3);
}

TEST(WideTree, WithHalfOfItShown_IsFilledWithOneLookAtTheKernel)
{
  WideStage wide;
  wide.Reject(
      [](const zelk::BaseInstance* instance) { return (instance->GetObjectName().GetView().back() - '0') % 2 != 0; });
  wide.Build();
  ASSERT_EQ(CountChildren(wide.GetTree().root), wide.GetSize() / 2);
  wide.kernel.reads = {};
  std::list<Node*> created;

  wide.GetTree().ExpandNode(OpenTree::AddPlaceholder(wide.GetTree().root), &created);

  EXPECT_EQ(created.size(), wide.GetSize() / 2);
  EXPECT_EQ(CountChildren(wide.GetTree().root), wide.GetSize() - 1);
  // The list of the root, and that of the leaf before the placeholder.
  EXPECT_EQ(wide.kernel.reads.lists, 2u);
  EXPECT_EQ(wide.kernel.reads.visits, created.size());
}

}  // namespace
}  // namespace filtertest
