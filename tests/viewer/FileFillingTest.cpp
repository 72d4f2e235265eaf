#include "FileFilling.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "zelk/TreeObserver.h"

namespace {

using viewer::PlacedShape;

/// How the tree is told of what happens to it.
class RunCounter final : public zelk::TreeObserver {
public:
  void OnEndUpdate() override { ++runs; }
  void OnInstanceCreate(const du::SmartPtr<zelk::BaseInstance>& /*instance*/,
                        const du::SmartPtr<zelk::BaseInstance>& /*parent*/, const du::Symbol& /*name*/) override
  {
    ++created;
  }

  int runs = 0;
  unsigned int created = 0;
};

class FileFilling : public testing::Test {
protected:
  void SetUp() override
  {
    root = tree->CreateRoot(tree->CreateProduct({.name = "Files"}));
    tree->RegisterObserver(*counter, false);
  }
  void TearDown() override
  {
    filling.reset();
    tree->UnregisterObserver(*counter);
  }
  void Begin()
  {
    auto read = stepimport::ReadAssembly(SAMPLES_DIR "/nested-assembly.stp", nullptr);
    ASSERT_TRUE(read.ok) << read.error;
    Begin(std::move(read));
  }
  void Begin(stepimport::ReadResult read)
  {
    read.ok = true;
    filling = std::make_unique<viewer::FileFilling>("pump.stp", std::move(read), *tree, root, scene,
                                                    [this](const std::vector<PlacedShape>& shapes) {
                                                      placed.insert(placed.end(), shapes.begin(), shapes.end());
                                                      if (onPlaced) {
                                                        onPlaced();
                                                      }
                                                    });
  }
  /// The shortest portions there are.
  [[nodiscard]] bool GoOn() const { return filling->GoOn(QDeadlineTimer(0)); }
  int GoOnToTheEnd() const
  {
    int portions = 1;
    while (!GoOn()) {
      ++portions;
    }
    return portions;
  }
  [[nodiscard]] unsigned int Count() const
  {
    unsigned int count = 0;
    tree->GetNumInstances(count);
    return count - 1;
  }

  const du::SmartPtr<memkernel::Tree> tree = du::MakeSmart<memkernel::Tree>();
  const du::SmartPtr<memkernel::ShapeScene> scene =
      du::MakeSmart<memkernel::ShapeScene>(du::SmartPtr<zelk::SelectionManager>(), tree);
  const du::SmartPtr<RunCounter> counter = du::MakeSmart<RunCounter>();
  du::SmartPtr<memkernel::Instance> root;
  std::unique_ptr<viewer::FileFilling> filling;
  std::vector<PlacedShape> placed;
  std::function<void()> onPlaced;
};

/// A chain of products, each used twice in the one before: it unfolds to twice as much with each of them.
stepimport::ReadResult MakeDoublingResult(std::size_t products)
{
  stepimport::ReadResult result;
  result.assembly.products.resize(products);
  for (std::size_t i = 0; i < products; ++i) {
    result.assembly.products[i].name = "p";
    if (i + 1 < products) {
      result.assembly.products[i].occurrences = {{"a", i + 1}, {"b", i + 1}};
    }
  }
  return result;
}

TEST_F(FileFilling, GoOn_ToTheEnd_BringsAllIntoTreeAndScene)
{
  Begin();

  GoOnToTheEnd();

  EXPECT_EQ(Count(), stepimport::CountInstances(filling->GetResult().assembly));
  EXPECT_EQ(scene->GetShapeInstanceCount(), 27U);
  EXPECT_EQ(placed.size(), 27U);
  EXPECT_FALSE(filling->IsCalledOff());
  EXPECT_EQ(filling->GetPercent(), 100);
}

TEST_F(FileFilling, GoOn_OfMuch_TakesManyPortionsAndNoneOfThemMuch)
{
  constexpr unsigned int s_step = 100;
  Begin(MakeDoublingResult(11));
  int percent = 0;
  unsigned int before = 0;

  while (!GoOn()) {
    EXPECT_LE(counter->created - before, s_step);
    EXPECT_GE(filling->GetPercent(), percent);
    before = counter->created;
    percent = filling->GetPercent();
  }

  EXPECT_EQ(Count(), 2047U);
}

TEST_F(FileFilling, Portions_OfTheTree_AreOneRunOfEdits)
{
  Begin(MakeDoublingResult(11));

  EXPECT_GT(GoOnToTheEnd(), 2 * 2047 / 100);

  EXPECT_EQ(counter->runs, 1);
}

TEST_F(FileFilling, WithTimeEnough_EndsAtOnce)
{
  Begin(MakeDoublingResult(11));

  EXPECT_TRUE(filling->GoOn(QDeadlineTimer(QDeadlineTimer::Forever)));

  EXPECT_EQ(Count(), 2047U);
}

TEST_F(FileFilling, CallOff_BeforeTheFirstPortion_LeavesTheTreeAlone)
{
  Begin();
  filling->CallOff();

  EXPECT_TRUE(GoOn());

  EXPECT_EQ(Count(), 0U);
  EXPECT_EQ(counter->created, 0U);
}

TEST_F(FileFilling, CallOff_InTheTree_TakesAwayWhatIsThereInPortionsAndInTheSameRun)
{
  Begin(MakeDoublingResult(11));
  while (Count() < 1000) {
    ASSERT_FALSE(GoOn());
  }

  filling->CallOff();
  const int portions = GoOnToTheEnd();

  EXPECT_EQ(Count(), 0U);
  EXPECT_TRUE(root->IsInTree());
  EXPECT_GT(portions, 1000 / 50);
  EXPECT_EQ(counter->runs, 1);
}

TEST_F(FileFilling, CallOff_InTheScene_EmptiesBoth)
{
  Begin();
  onPlaced = [this] { filling->CallOff(); };

  GoOnToTheEnd();

  EXPECT_FALSE(placed.empty());
  EXPECT_TRUE(filling->IsCalledOff());
  EXPECT_EQ(Count(), 0U);
  EXPECT_EQ(scene->GetShapeInstanceCount(), 0U);
}

TEST_F(FileFilling, OfMoreThanATreeTakes_IsRefusedAndAddsNothing)
{
  Begin(MakeDoublingResult(60));

  GoOnToTheEnd();

  EXPECT_TRUE(filling->IsRefused());
  EXPECT_TRUE(filling->IsCalledOff());
  EXPECT_EQ(Count(), 0U);
  EXPECT_EQ(counter->created, 0U);
}

TEST_F(FileFilling, WhereItsParentGoesMeanwhile_IsRefused)
{
  Begin(MakeDoublingResult(11));
  ASSERT_FALSE(GoOn());

  ASSERT_TRUE(tree->Remove(root));
  GoOnToTheEnd();

  EXPECT_TRUE(filling->IsRefused());
  EXPECT_FALSE(tree->GetRootInstance());
}

TEST_F(FileFilling, End_InTheMiddle_LeavesNoRunOpen)
{
  Begin(MakeDoublingResult(11));
  ASSERT_FALSE(GoOn());
  ASSERT_EQ(counter->runs, 0);

  filling.reset();

  EXPECT_EQ(counter->runs, 1);
}

}  // namespace
