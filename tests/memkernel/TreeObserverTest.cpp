#include "TreeFixture.h"

namespace memkerneltest {
namespace {

using memkernel::TreeBatch;
using testing::ElementsAre;
using testing::IsEmpty;

class TreeObserverTest : public TreeFixture {
protected:
  const du::SmartPtr<TreeRecorder> late = du::MakeSmart<TreeRecorder>();
};

TEST_F(TreeObserverTest, RegisterObserver_Twice_IsRefused)
{
  EXPECT_FALSE(tree->RegisterObserver(*recorder, true));

  EXPECT_THAT(recorder->Take(), IsEmpty());
}

TEST_F(TreeObserverTest, RegisterObserver_WithReplay_TellsAllInstancesParentsFirst)
{
  const auto a = Add(root, "A");
  Add(a, "B");
  Add(root, "C");

  tree->RegisterObserver(*late, true);

  EXPECT_THAT(late->Take(), ElementsAre("begin", "create R in nothing as R", "create A in R as A", "create B in A as B",
                                        "create C in R as C", "end"));
  tree->UnregisterObserver(*late);
}

TEST_F(TreeObserverTest, RegisterObserver_WithoutReplay_TellsWhatFollows)
{
  Add(root, "A");

  tree->RegisterObserver(*late, false);
  EXPECT_THAT(late->Take(), IsEmpty());
  Add(root, "B");

  EXPECT_THAT(late->Take(), ElementsAre("begin", "create B in R as B", "end"));
  tree->UnregisterObserver(*late);
}

TEST_F(TreeObserverTest, UnregisterObserver_InsideAnOpenRun_ClosesItFirst)
{
  const TreeBatch batch(*tree);
  Add(root, "A");

  EXPECT_TRUE(tree->UnregisterObserver(*recorder));

  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "create A in R as A", "end"));
  EXPECT_FALSE(recorder->IsRegistered());
  EXPECT_FALSE(tree->UnregisterObserver(*recorder));
}

TEST_F(TreeObserverTest, UnregisterObserver_InARunOfWhichItHasHeardNothing_TellsItNothing)
{
  const TreeBatch batch(*tree);

  tree->UnregisterObserver(*recorder);

  EXPECT_THAT(recorder->Take(), IsEmpty());
}

TEST_F(TreeObserverTest, RegisterObserver_InsideAnOpenRun_OpensARunForItAtItsFirstEvent)
{
  {
    const TreeBatch batch(*tree);
    Add(root, "A");
    tree->RegisterObserver(*late, false);
    Add(root, "B");
  }

  EXPECT_THAT(late->Take(), ElementsAre("begin", "create B in R as B", "end"));
  tree->UnregisterObserver(*late);
}

TEST_F(TreeObserverTest, Callback_ThatUnregistersItself_HearsNothingMore)
{
  recorder->onLine = [&](const std::string& line) {
    if (line.starts_with("create")) {
      tree->UnregisterObserver(*recorder);
    }
  };
  const TreeBatch batch(*tree);

  Add(root, "A");
  Add(root, "B");

  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "create A in R as A", "end"));
}

TEST_F(TreeObserverTest, Callback_ThatUnregistersALaterObserver_KeepsTheEventFromIt)
{
  tree->RegisterObserver(*late, false);
  recorder->onLine = [&](const std::string& line) {
    if (line.starts_with("create")) {
      tree->UnregisterObserver(*late);
    }
  };

  Add(root, "A");

  EXPECT_THAT(late->Take(), IsEmpty());
}

TEST_F(TreeObserverTest, Callback_ThatRegistersWithReplay_TellsTheNewInstanceOnce)
{
  recorder->onLine = [&](const std::string& line) {
    if (line.starts_with("create")) {
      tree->RegisterObserver(*late, true);
    }
  };

  Add(root, "A");

  EXPECT_THAT(late->Take(), ElementsAre("begin", "create R in nothing as R", "create A in R as A", "end"));
  tree->UnregisterObserver(*late);
}

TEST_F(TreeObserverTest, Callback_OfAReplayThatUnregisters_EndsTheReplay)
{
  Add(root, "A");
  late->onLine = [&](const std::string& line) {
    if (line.starts_with("create R")) {
      tree->UnregisterObserver(*late);
    }
  };

  tree->RegisterObserver(*late, true);

  EXPECT_THAT(late->Take(), ElementsAre("begin", "create R in nothing as R", "end"));
}

TEST_F(TreeObserverTest, Observer_ReleasedWhileRegistered_LivesUntilTheTreeDropsIt)
{
  Lines lines;
  auto observer = du::MakeSmart<TreeRecorder>();
  observer->onLine = [&](const std::string& line) { lines.push_back(line); };
  tree->RegisterObserver(*observer, false);
  TreeRecorder* const raw = observer.Get();

  observer.Reset();
  Add(root, "A");
  tree->UnregisterObserver(*raw);

  EXPECT_THAT(lines, ElementsAre("begin", "create A in R as A", "end"));
}

TEST_F(TreeObserverTest, Observer_ThatUnregistersAndReleasesItselfInACallback_DiesAfterIt)
{
  bool isDead = false;
  bool wasDeadInside = false;
  auto witness = du::MakeSmart<TracedObject>([&] { isDead = true; });
  auto observer = du::MakeSmart<TreeRecorder>();
  observer->onLine = [&, kept = std::move(witness)](const std::string& line) {
    if (line.starts_with("create")) {
      tree->UnregisterObserver(*observer);
      observer.Reset();
      wasDeadInside = isDead;
    }
  };
  tree->RegisterObserver(*observer, false);

  Add(root, "A");

  EXPECT_FALSE(wasDeadInside);
  EXPECT_TRUE(isDead);
}

TEST_F(TreeObserverTest, Close_TellsOfTheEndAndTakesNobodyMore)
{
  tree->Close();

  EXPECT_THAT(recorder->Take(), ElementsAre("begin", "destroy", "end", "unregister"));
  EXPECT_FALSE(recorder->IsRegistered());
  EXPECT_FALSE(tree->RegisterObserver(*recorder, true));
  EXPECT_THAT(recorder->Take(), IsEmpty());
}

TEST(TreeEnd, OfATreeThatIsLetGo_TellsItsObservers)
{
  const auto observer = du::MakeSmart<TreeRecorder>();
  auto tree = du::MakeSmart<memkernel::Tree>();
  const auto root = tree->CreateRoot(tree->CreateProduct({.name = "R"}));
  tree->RegisterObserver(*observer, false);

  tree.Reset();

  EXPECT_THAT(observer->Take(), ElementsAre("begin", "destroy", "end", "unregister"));
  du::SmartPtr<zelk::BaseTree> found;
  root->GetBaseTree(found);
  EXPECT_FALSE(found);
  EXPECT_FALSE(root->IsInTree());
}

TEST(TreeEnd, InACallback_ComesAfterTheCallbackHasEnded)
{
  const auto observer = du::MakeSmart<TreeRecorder>();
  auto tree = du::MakeSmart<memkernel::Tree>();
  observer->onLine = [&](const std::string& line) {
    if (line.starts_with("create")) {
      tree.Reset();
    }
  };
  tree->RegisterObserver(*observer, false);
  const auto product = tree->CreateProduct({.name = "R"});

  tree->CreateRoot(product);

  EXPECT_THAT(observer->Take(),
              ElementsAre("begin", "create R in nothing as R", "end", "begin", "destroy", "end", "unregister"));
}

}  // namespace
}  // namespace memkerneltest
