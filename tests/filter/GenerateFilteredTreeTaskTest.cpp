#include "guitree/GenerateFilteredTreeTask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CountedKernel.h"
#include "JobStage.h"

namespace {

using filtertest::JobStage;
using filtertest::Show;
using guitree::GenerateFilteredTreeTask;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class OpenTask : public GenerateFilteredTreeTask {
public:
  using GenerateFilteredTreeTask::GenerateFilteredTreeTask;

  [[nodiscard]] std::vector<std::string> GetSpared() const
  {
    std::vector<std::string> names;
    for (const zelk::BaseInstance* instance : _GetNotFilteredInsts()) {
      names.push_back(instance ? std::string(instance->GetObjectName()) : "null");
    }
    return names;
  }
};

/// What a task is made of, besides a stage.
struct Parts {
  JobStage stage;
  testsupport::ScriptedFilter filter;
  std::list<zelk::BaseInstance*> list1;
  std::list<zelk::BaseInstance*> list2;
  bool hasState = true;
  bool hasLists = true;
  bool addRoot = false;
  du::SmartPtr<zelk::BaseTree> tree = stage.kernel.Get();
  du::SmartPtr<guitree::TreeSelectionController> selection;
  du::SmartPtr<du::RefCounted> info;
  du::SmartPtr<zelk::AsyncEvent> event = du::MakeSmart<zelk::AsyncEvent>(true);

  [[nodiscard]] du::SmartPtr<OpenTask> Make()
  {
    return du::MakeSmart<OpenTask>(hasState ? stage.state.Get() : nullptr, filter, selection, info, tree,
                                   hasLists ? &list1 : nullptr, hasLists ? &list2 : nullptr, addRoot, event.Get());
  }
  void LetThrough(const std::string& name)
  {
    filter.filtersOut = [name](const auto& instance, bool) { return instance->GetObjectName() != name; };
  }
};

TEST(GenerateFilteredTreeTask, BuildsTheResultAndCompletesItsEventPlainly)
{
  Parts parts;
  parts.LetThrough("b");
  const auto task = parts.Make();
  EXPECT_EQ(Show(task->GetFilteredTreeResult()), "none");

  task->Run();

  EXPECT_EQ(Show(task->GetFilteredTreeResult()), "root[a[b]]");
  EXPECT_TRUE(parts.event->IsCompleted());
  EXPECT_TRUE(parts.event->GetError().IsEmpty());
  EXPECT_EQ(parts.event->GetProgress(), 100);
}

TEST(GenerateFilteredTreeTask, HasNoNameAndNoPriorityOfItsOwn)
{
  Parts parts;
  const auto task = parts.Make();

  EXPECT_EQ(task->GetName(), "");
  EXPECT_EQ(task->GetPriority(), 0);
}

TEST(GenerateFilteredTreeTask, CancelledBeforeItStarts_CompletesWithAnEmptyResultAndAsksNoFilter)
{
  Parts parts;
  bool wasAsked = false;
  parts.filter.onAsked = [&](auto&&...) { wasAsked = true; };
  const auto task = parts.Make();
  parts.event->Cancel();

  task->Run();

  EXPECT_FALSE(wasAsked);
  ASSERT_NE(task->GetFilteredTreeResult(), nullptr);
  EXPECT_EQ(task->GetFilteredTreeResult()->GetRoot(), nullptr);
  EXPECT_TRUE(parts.event->IsCompleted());
}

TEST(GenerateFilteredTreeTask, CancelledWhileItBuilds_CompletesPlainlyWithARootOverAPlaceholder)
{
  Parts parts;
  parts.filter.onAsked = [&](auto&&...) { parts.event->Cancel(); };
  const auto task = parts.Make();

  task->Run();

  EXPECT_EQ(Show(task->GetFilteredTreeResult()), "root[...]");
  EXPECT_TRUE(parts.event->IsCompleted());
  EXPECT_TRUE(parts.event->GetError().IsEmpty());
}

TEST(GenerateFilteredTreeTask, WithoutATree_CompletesWithAnEmptyResult)
{
  for (const bool addRoot : {false, true}) {
    Parts parts;
    parts.tree.Reset();
    parts.addRoot = addRoot;
    const auto task = parts.Make();

    task->Run();

    EXPECT_EQ(Show(task->GetFilteredTreeResult()), "none");
    EXPECT_THAT(task->GetSpared(), IsEmpty());
    EXPECT_TRUE(parts.event->IsCompleted());
  }
}

TEST(GenerateFilteredTreeTask, OfATreeWithoutARoot_CompletesWithAnEmptyResult)
{
  Parts parts;
  parts.tree = du::MakeSmart<memkernel::Tree>();
  parts.addRoot = true;
  const auto task = parts.Make();

  task->Run();

  EXPECT_EQ(Show(task->GetFilteredTreeResult()), "none");
  EXPECT_TRUE(parts.event->IsCompleted());
}

/// A tree that has lost the instance which it takes for its root.
struct LostRoot {
  LostRoot()
  {
    leftBehind.Add(leftBehind.Add(nullptr, "root"), "a");
    tree->root = leftBehind.GetRoot();
  }

  struct RootTree : filtertest::LoggedTree {
    void GetBaseRoot(du::SmartPtr<zelk::BaseInstance>& out) const override { out = root; }
    du::SmartPtr<zelk::BaseInstance> root;
  };

  filtertest::CountedKernel leftBehind;
  du::SmartPtr<RootTree> tree = du::MakeSmart<RootTree>();
};

TEST(GenerateFilteredTreeTask, OfARootThatHasLeftTheTreeSinceItWasFound_ReadsUnderTheLockOfThatTree)
{
  Parts parts;
  LostRoot lost;
  parts.tree = lost.tree;
  lost.leftBehind.onVisit = [&] { lost.tree->log.emplace_back("read"); };
  const auto task = parts.Make();

  task->Run();

  EXPECT_EQ(Show(task->GetFilteredTreeResult()), "root[a]");
  EXPECT_THAT(lost.tree->log, testing::ElementsAre("lock", "unlock", "lock", "read", "read", "unlock"));
}

TEST(GenerateFilteredTreeTask, LeavesNoLockOfItsTreeToWhatIsBuiltIntoItsResultLater)
{
  Parts parts;
  const LostRoot lost;
  parts.tree = lost.tree;
  const auto task = parts.Make();
  task->Run();
  lost.tree->log.clear();

  task->GetFilteredTreeResult()->BuildTree(parts.filter, lost.tree->root, {}, parts.info, {}, nullptr);

  EXPECT_THAT(lost.tree->log, IsEmpty());
}

TEST(GenerateFilteredTreeTask, WithoutAnEvent_BuildsAndEndsOnEveryRoad)
{
  for (const std::string tree : {"root[a]", "", "none"}) {
    Parts parts;
    parts.event.Reset();
    const testsupport::NamedTree other(tree == "none" ? "" : tree);
    parts.tree = other.Get();
    if (tree == "none") {
      parts.tree.Reset();
    }
    const auto task = parts.Make();

    task->Run();

    EXPECT_EQ(Show(task->GetFilteredTreeResult()), tree == "root[a]" ? "root[a]" : "none");
  }
}

TEST(GenerateFilteredTreeTask, WithoutAState_MakesAPlainTreeAndKnowsNoHost)
{
  Parts parts;
  parts.hasState = false;
  const auto task = parts.Make();

  EXPECT_EQ(task->GetGuiInterface(), nullptr);
  const guitree::FilteredTree& result = *task->GetFilteredTreeResult();
  EXPECT_EQ(typeid(result), typeid(guitree::FilteredTree));
  EXPECT_EQ(task->GetBaseTree(), parts.tree);
}

TEST(GenerateFilteredTreeTask, WithAState_KnowsItsHostAndFillsTheTreeThatItMakes)
{
  class OwnTree : public guitree::FilteredTree {};
  Parts parts;
  OwnTree* own = nullptr;
  parts.stage.state->makeFilteredTree = [&] { return own = new OwnTree; };
  const auto task = parts.Make();

  task->Run();

  EXPECT_EQ(task->GetGuiInterface(), &parts.stage.host);
  EXPECT_EQ(task->GetFilteredTreeResult(), own);
  EXPECT_EQ(Show(own->GetRoot()), "root[a[b c] d]");
}

TEST(GenerateFilteredTreeTask, WithAStateThatMakesNoTree_MakesAPlainOne)
{
  Parts parts;
  const auto task = parts.Make();

  const guitree::FilteredTree& result = *task->GetFilteredTreeResult();
  EXPECT_EQ(typeid(result), typeid(guitree::FilteredTree));
}

TEST(GenerateFilteredTreeTask, KnowsTheHostOfTheTimeWhenItWasMade)
{
  Parts parts;
  const auto task = parts.Make();

  parts.stage.gui->SetGuiInterface(nullptr);

  EXPECT_EQ(task->GetGuiInterface(), &parts.stage.host);
  parts.stage.gui->SetGuiInterface(&parts.stage.host);
}

TEST(GenerateFilteredTreeTask, SparesWhatIsInEitherListOnce)
{
  Parts parts;
  parts.list1 = {parts.stage.kernel["a"].Get(), parts.stage.kernel["b"].Get()};
  parts.list2 = {parts.stage.kernel["b"].Get(), parts.stage.kernel["c"].Get()};
  const auto task = parts.Make();
  parts.list1.clear();
  parts.list2.clear();

  EXPECT_THAT(task->GetSpared(), UnorderedElementsAre("a", "b", "c"));
}

TEST(GenerateFilteredTreeTask, FollowingChanges_IgnoresTheListsButNotTheRoot)
{
  for (const bool addRoot : {false, true}) {
    Parts parts;
    parts.filter.dynamicUpdate = true;
    parts.list1 = {parts.stage.kernel["a"].Get()};
    parts.list2 = {parts.stage.kernel["b"].Get()};
    parts.addRoot = addRoot;
    const auto task = parts.Make();

    EXPECT_EQ(task->GetSpared(), addRoot ? std::vector<std::string>{"root"} : std::vector<std::string>{});
  }
}

TEST(GenerateFilteredTreeTask, SparesTheRootBesideTheLists)
{
  Parts parts;
  parts.list2 = {parts.stage.kernel["c"].Get()};
  parts.addRoot = true;
  const auto task = parts.Make();

  EXPECT_THAT(task->GetSpared(), UnorderedElementsAre("root", "c"));
}

TEST(GenerateFilteredTreeTask, OfATreeWhoseRootComesBeforeTheRun_SparesNobody)
{
  Parts parts;
  const testsupport::NamedTree late("");
  parts.tree = late.Get();
  parts.addRoot = true;
  parts.LetThrough("none");
  int rootQuestions = 0;
  parts.filter.filtersOutAtRoot = [&](const auto&) { return ++rootQuestions != 0; };
  const auto task = parts.Make();
  EXPECT_THAT(task->GetSpared(), IsEmpty());
  const auto product = late.Get()->CreateProduct({.name = "part"});
  late.Get()->AddChild(late.Get()->CreateRoot(product, "root"), product, "a");

  task->Run();

  EXPECT_EQ(rootQuestions, 0);
  EXPECT_EQ(Show(task->GetFilteredTreeResult()), "root");
}

TEST(GenerateFilteredTreeTask, WithNothingToSpare_NeverAsksForThePositionOfTheRoot)
{
  Parts parts;
  parts.hasLists = false;
  bool wasAsked = false;
  parts.filter.filtersOutAtRoot = [&](const auto&) { return wasAsked = true; };
  const auto task = parts.Make();

  task->Run();

  EXPECT_THAT(task->GetSpared(), IsEmpty());
  EXPECT_FALSE(wasAsked);
}

TEST(GenerateFilteredTreeTask, IsNotReachedByChangesOfTheCallersFilter)
{
  Parts parts;
  parts.LetThrough("b");
  const auto task = parts.Make();

  parts.LetThrough("d");
  parts.filter.dynamicUpdate = true;
  task->Run();

  EXPECT_EQ(Show(task->GetFilteredTreeResult()), "root[a[b]]");
}

TEST(GenerateFilteredTreeTask, AsksItsDuplicateWhetherItFollowsChanges)
{
  // A filter whose duplicate differs from it.
  class Turning : public testsupport::ScriptedFilter {
  public:
    [[nodiscard]] TreeFilterInfoBase* Duplicate() override
    {
      auto* const copy = new Turning(*this);
      copy->dynamicUpdate = !dynamicUpdate;
      return copy;
    }
  };
  JobStage stage;
  Turning filter;
  filter.dynamicUpdate = true;
  const std::list<zelk::BaseInstance*> list{stage.kernel["a"].Get()};

  const OpenTask task(nullptr, filter, nullptr, nullptr, stage.kernel.Get(), &list, nullptr, false, nullptr);

  EXPECT_EQ(task.GetSpared().size(), 1U);
}

TEST(GenerateFilteredTreeTask, KeepsTreeSelectionAndInfoUntilItEnds)
{
  class Counted : public virtual du::RefCounted {
  public:
    explicit Counted(bool& isGone) : m_isGone(isGone) {}
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    ~Counted() override { m_isGone = true; }

  private:
    bool& m_isGone;
  };
  Parts parts;
  bool isGone = false;
  parts.info = du::MakeSmart<Counted>(isGone);
  const auto selection = du::MakeSmart<testsupport::ScriptedSelectionController>();
  selection->selected = {parts.stage.kernel["a"]};
  parts.selection = selection;
  std::size_t selectedCount = 0;
  parts.filter.onAsked = [&](const auto&, auto& selected, bool, auto& info, unsigned int*) {
    selectedCount = selected.size();
    EXPECT_TRUE(info);
  };
  auto task = parts.Make();
  parts.info.Reset();
  parts.selection.Reset();

  EXPECT_FALSE(isGone);
  task->Run();
  EXPECT_EQ(selectedCount, 1U);
  task.Reset();

  EXPECT_TRUE(isGone);
}

TEST(GenerateFilteredTreeTask, DeletesItsDuplicate)
{
  class Counted : public testsupport::ScriptedFilter {
  public:
    explicit Counted(int& alive) : m_alive(alive) { ++m_alive; }
    Counted(const Counted& other) : ScriptedFilter(other), m_alive(other.m_alive) { ++m_alive; }
    Counted& operator=(const Counted&) = delete;
    ~Counted() override { --m_alive; }
    [[nodiscard]] TreeFilterInfoBase* Duplicate() override { return new Counted(*this); }

  private:
    int& m_alive;
  };
  JobStage stage;
  int alive = 0;
  Counted filter(alive);
  {
    const OpenTask task(nullptr, filter, nullptr, nullptr, stage.kernel.Get(), nullptr, nullptr, false, nullptr);
    EXPECT_EQ(alive, 2);
  }

  EXPECT_EQ(alive, 1);
}

}  // namespace
