#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "TextOf.h"
#include "guitree/GuiTree.h"
#include "guitree/TreeController.h"
#include "hostcheck/ProtocolChecker.h"
#include "memkernel/World.h"
#include "testsupport/ScriptedWorldTreeState.h"

namespace {

using InstancePtr = du::SmartPtr<memkernel::Instance>;

/// A text host under a filter that runs on a worker: root[set[bolt nut] cover].
class TextHostFilterJob : public testing::Test {
protected:
  void SetUp() override
  {
    world->InstallForProcess();
    root = Add({}, "root");
    set = Add(root, "set");
    bolt = Add(set, "bolt");
    Add(set, "nut");
    cover = Add(root, "cover");
    host.SetPanel(gui.Get());
    gui->SetGuiInterface(first);
    gui->SetTreeState(state);
    gui->Initialise(world);
  }

  void TearDown() override
  {
    LetGo();
    gui->Close();
    world->Shutdown();
    EXPECT_EQ(checker.GetViolations(), std::vector<std::string>{});
  }

  InstancePtr Add(const InstancePtr& parent, const char* name) const
  {
    memkernel::Tree& tree = world->GetMemTree();
    const auto product = tree.CreateProduct({.name = name});
    return parent ? tree.AddChild(parent, product) : tree.CreateRoot(product);
  }

  struct HeldJobs {
    std::promise<void> release;
    std::once_flag isReached;
    std::promise<void> reached;
  };

  /// A filter for these names has begun.
  void Begin(const std::set<std::string>& names) const
  {
    state->filter.isFiltering = true;
    state->filter.filtersOut = [names](const du::SmartPtr<zelk::BaseInstance>& instance, bool /*hiddenPass*/) {
      return !names.contains(std::string(instance->GetObjectName()));
    };
    state->PopulateTree(false);
  }

  void SwitchOff() const
  {
    state->filter.isFiltering = false;
    state->PopulateTree(false);
  }

  /// Filters that are begun from now on stop at the first instance, until they are let go.
  void Hold()
  {
    hold = std::make_shared<HeldJobs>();
    state->filter.onAsked = [held = hold, released = hold->release.get_future().share()](auto&&...) {
      std::call_once(held->isReached, [&held] { held->reached.set_value(); });
      released.wait();
    };
  }

  void WaitUntilOneIsHeld() const { hold->reached.get_future().wait(); }

  void LetGo()
  {
    if (const auto held = std::exchange(hold, nullptr)) {
      held->release.set_value();
    }
  }

  void Finish()
  {
    LetGo();
    world->GetLoop().RunUntil([this] { return !gui->GetTreeController()->IsBusy(); });
    world->GetLoop().RunDue();
  }

  /// What the host shows without a filter.
  static constexpr const char* s_everything =
      "root\n"
      "|- set\n"
      "|  |- bolt\n"
      "|  `- nut\n"
      "`- cover\n";

  [[nodiscard]] std::string Text() const { return hosttest::TextOf(host, {.ascii = true}); }

  const du::SmartPtr<memkernel::World> world = du::MakeSmart<memkernel::World>(1U);
  texthost::TextHost host;
  hostcheck::ProtocolChecker checker{&host};
  guitree::GuiInterface* first = &checker;
  const du::SmartPtr<guitree::GuiTree> gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  const du::SmartPtr<testsupport::ScriptedWorldTreeState> state =
      du::MakeSmart<testsupport::ScriptedWorldTreeState>(*gui);
  std::shared_ptr<HeldJobs> hold;
  InstancePtr root;
  InstancePtr set;
  InstancePtr bolt;
  InstancePtr cover;
};

TEST_F(TextHostFilterJob, Result_ShowsMatchesBelowTheirAncestors)
{
  Begin({"bolt"});
  Finish();

  EXPECT_EQ(Text(),
            "root\n"
            "`- set\n"
            "   `- bolt\n");
}

TEST_F(TextHostFilterJob, AtWork_TheRowsAreGoneAndALineSaysWhy)
{
  Hold();
  Begin({"bolt"});

  EXPECT_EQ(Text(), "(the filter is at work)\n");
  ASSERT_NE(host.GetFilterProgress(), nullptr);
  EXPECT_EQ(host.GetFilterProgress()->GetLine(), "Filtering 0%");

  Finish();
  EXPECT_EQ(host.GetFilterProgress(), nullptr);
}

TEST_F(TextHostFilterJob, WithoutAMatch_ALineSaysSo)
{
  Begin({});
  Finish();
  EXPECT_EQ(Text(),
            "root\n"
            "(no match)\n");

  Begin({"cover"});
  Finish();
  EXPECT_EQ(Text(),
            "root\n"
            "`- cover\n");
}

TEST_F(TextHostFilterJob, SwitchedOff_LeavesNoLineBehind)
{
  Begin({});
  Finish();

  SwitchOff();

  EXPECT_EQ(Text(), s_everything);
}

TEST_F(TextHostFilterJob, Cancelled_ShowsTheTopWithAPlaceholder)
{
  Hold();
  Begin({"bolt"});
  WaitUntilOneIsHeld();

  EXPECT_TRUE(host.CancelFilter());
  Finish();

  EXPECT_TRUE(host.HasPlaceholder(*root));
  EXPECT_EQ(Text(),
            "root\n"
            "`- ...\n"
            "(the filter was cancelled)\n");
}

TEST_F(TextHostFilterJob, Newer_TakesThePlaceOfTheOneAtWork)
{
  Hold();
  Begin({"bolt"});
  Begin({"cover"});
  Finish();

  EXPECT_EQ(Text(),
            "root\n"
            "`- cover\n");
}

TEST_F(TextHostFilterJob, Cancel_WithoutAJob_DoesNothing)
{
  EXPECT_FALSE(host.CancelFilter());

  Begin({"bolt"});
  Finish();

  EXPECT_FALSE(host.CancelFilter());
}

TEST_F(TextHostFilterJob, Expand_OpensThePlaceholder)
{
  Hold();
  Begin({"bolt"});
  WaitUntilOneIsHeld();
  host.CancelFilter();
  Finish();

  EXPECT_TRUE(host.Expand(*root));

  EXPECT_FALSE(host.HasPlaceholder(*root));
  EXPECT_EQ(host.GetRowCount(), 5U);
  EXPECT_FALSE(host.Expand(*root));
}

TEST_F(TextHostFilterJob, Expand_WhereNothingWasLeftOut_TakesThePlaceholderAway)
{
  world->GetMemTree().Remove(set);
  world->GetMemTree().Remove(cover);
  Hold();
  Begin({"bolt"});
  WaitUntilOneIsHeld();
  host.CancelFilter();
  Finish();
  ASSERT_TRUE(host.HasPlaceholder(*root));

  EXPECT_TRUE(host.Expand(*root));

  EXPECT_FALSE(host.HasPlaceholder(*root));
  EXPECT_EQ(host.GetRowCount(), 1U);
}

TEST_F(TextHostFilterJob, Expand_OfARowWithoutAPlaceholder_DoesNothing)
{
  Begin({"bolt"});
  Finish();

  EXPECT_FALSE(host.Expand(*set));
  EXPECT_FALSE(host.Expand(*bolt));
}

TEST_F(TextHostFilterJob, WithoutItsPanel_TheHostOpensNothingAndKnowsOfNoEmptyResult)
{
  Begin({});
  host.SetPanel(nullptr);
  Finish();

  EXPECT_EQ(Text(), "root\n");
  EXPECT_FALSE(host.Expand(*root));
  host.SetPanel(gui.Get());
}

/// Without the checker, to which a row that comes twice is a violation.
class TextHostLateResult : public TextHostFilterJob {
protected:
  TextHostLateResult() { first = &host; }
};

TEST_F(TextHostLateResult, LeavesTheRowsWhereTheyStand)
{
  Begin({"bolt"});
  SwitchOff();

  Finish();

  EXPECT_EQ(Text(), s_everything);
}

TEST_F(TextHostLateResult, WithoutAMatch_IsNoneOfAFilterThatIsOn)
{
  Begin({});
  SwitchOff();

  Finish();

  EXPECT_EQ(Text(), s_everything);
}

TEST_F(TextHostLateResult, OfACancelledJob_LeavesNothingToOpen)
{
  Hold();
  Begin({"bolt"});
  WaitUntilOneIsHeld();
  host.CancelFilter();
  SwitchOff();

  Finish();

  EXPECT_FALSE(host.HasPlaceholder(*root));
  EXPECT_EQ(Text(), s_everything);
}

TEST(FilterProgress, Line_TellsThePercentageUpToAHundred)
{
  texthost::FilterProgress progress(du::MakeSmart<zelk::AsyncEvent>(true));

  progress.OnProgress(40);
  EXPECT_EQ(progress.GetLine(), "Filtering 40%");
  progress.OnProgress(180);
  EXPECT_EQ(progress.GetLine(), "Filtering 100%");
  progress.OnFinished();
  EXPECT_EQ(progress.GetLine(), "");
  EXPECT_TRUE(progress.IsFinished());
}

TEST(FilterProgress, Cancel_RaisesTheFlagOfItsEvent)
{
  const auto event = du::MakeSmart<zelk::AsyncEvent>(true);
  texthost::FilterProgress progress(event);
  EXPECT_FALSE(progress.IsCancelled());

  progress.Cancel();

  EXPECT_TRUE(event->IsCanceled());
  EXPECT_TRUE(progress.IsCancelled());
}

TEST(FilterProgress, WithoutAnEvent_NothingIsCancelled)
{
  texthost::FilterProgress progress({});

  progress.Cancel();

  EXPECT_FALSE(progress.IsCancelled());
}

}  // namespace
