#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "guitree/GuiTreeTreeObserverHelper.h"
#include "testsupport/Panel.h"
#include "testsupport/WorldPanel.h"

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testsupport::Panel;
using testsupport::WorldPanel;

using Helper = guitree::GuiTree::GuiTreeTreeObserverHelper;
using Lines = std::vector<std::string>;

constexpr int s_most = 200;

[[nodiscard]] std::ptrdiff_t CountCallsOf(const Lines& calls, std::string_view name)
{
  return std::count_if(calls.begin(), calls.end(), [&](const std::string& line) { return line.starts_with(name); });
}

[[nodiscard]] bool IsRefill(const Lines& calls)
{
  return CountCallsOf(calls, "ClearTree") != 0;
}

/// Bursts that a test reports by itself.
class UpdateThreshold : public testing::Test {
protected:
  UpdateThreshold() { panel.Initialise(); }

  [[nodiscard]] Lines EndBurst()
  {
    static_cast<void>(panel.host.TakeCalls());
    burst.Helper_OnEndUpdate();
    return panel.host.TakeCalls();
  }
  void Create() { burst.Helper_OnInstanceCreate(panel.kernel.Add("root", "n"), panel.kernel["root"], {}); }
  void Rename() { burst.Helper_OnInstanceName(panel.kernel["a"]); }
  /// Of an instance that has no row, so that the removal by itself asks for nothing.
  void RemoveUnshown() { burst.Helper_OnInstanceRemove(panel.kernel.Add("root", "n"), panel.kernel["root"]); }

  Panel panel{"root[a b]"};
  Helper burst{panel.gui.Get()};
};

TEST_F(UpdateThreshold, TheCountTipsAfterTwoHundred)
{
  for (int i = 0; i < s_most; ++i) {
    burst.IncOpsDone();
    ASSERT_FALSE(burst.GetRepopulateNeeded()) << i;
  }

  burst.IncOpsDone();

  EXPECT_TRUE(burst.GetRepopulateNeeded());
}

TEST_F(UpdateThreshold, TwoHundredCreationsStaySingleEdits)
{
  for (int i = 0; i < s_most; ++i) {
    Create();
  }

  EXPECT_EQ(CountCallsOf(panel.host.Calls(), "InstanceCreate"), s_most);
  EXPECT_FALSE(IsRefill(EndBurst()));
}

TEST_F(UpdateThreshold, TheTwoHundredAndFirstCreationTipsTheBurstAndReachesNobody)
{
  for (int i = 0; i < s_most; ++i) {
    Create();
  }
  static_cast<void>(panel.host.TakeCalls());

  Create();

  EXPECT_TRUE(burst.GetRepopulateNeeded());
  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
  const Lines end = EndBurst();
  EXPECT_EQ(CountCallsOf(end, "ClearTree"), 1);
  EXPECT_EQ(CountCallsOf(end, "InstanceCreate"), 3 + s_most + 1);
}

TEST_F(UpdateThreshold, TwoHundredNamesStaySingleEditsAndTheNextTips)
{
  for (int i = 0; i < s_most; ++i) {
    Rename();
  }
  EXPECT_EQ(CountCallsOf(panel.host.Calls(), "CheckAndUpdateNodeNameAndType"), s_most);
  EXPECT_FALSE(burst.GetRepopulateNeeded());

  Rename();

  EXPECT_EQ(CountCallsOf(panel.host.Calls(), "CheckAndUpdateNodeNameAndType"), s_most);
  EXPECT_TRUE(IsRefill(EndBurst()));
}

TEST_F(UpdateThreshold, RemovalsOfWhatIsNotShownCountAsWell)
{
  for (int i = 0; i < s_most; ++i) {
    RemoveUnshown();
  }
  EXPECT_FALSE(burst.GetRepopulateNeeded());

  RemoveUnshown();

  EXPECT_TRUE(IsRefill(EndBurst()));
}

TEST_F(UpdateThreshold, TheRemovalThatTips_IsReportedAsOneWhoseRefillIsPending)
{
  for (int i = 0; i < s_most; ++i) {
    Rename();
  }
  static_cast<void>(panel.host.TakeCalls());

  burst.Helper_OnInstanceRemove(panel.kernel["b"], panel.kernel["root"]);

  EXPECT_EQ(panel.host.TakeCalls(), Lines({"InstanceRemove(b, parent=root, repopulatePending=true)"}));
}

TEST_F(UpdateThreshold, MixedEditsAreCountedTogether)
{
  for (int i = 0; i < s_most; ++i) {
    switch (i % 3) {
      case 0:
        Create();
        break;
      case 1:
        Rename();
        break;
      default:
        RemoveUnshown();
        break;
    }
  }
  EXPECT_FALSE(burst.GetRepopulateNeeded());

  Rename();

  EXPECT_TRUE(IsRefill(EndBurst()));
}

TEST_F(UpdateThreshold, EditsGoOnBeingCountedWhileARefillIsDue_AndTheEndBeginsAnew)
{
  for (int i = 0; i < 3 * s_most; ++i) {
    Create();
  }
  static_cast<void>(EndBurst());

  for (int i = 0; i < s_most; ++i) {
    Rename();
  }

  EXPECT_FALSE(burst.GetRepopulateNeeded());
  EXPECT_FALSE(IsRefill(EndBurst()));
}

/// Bursts that come from batches of the kernel.
class KernelBatch : public testing::Test {
protected:
  KernelBatch()
  {
    panel.Initialise();
    panel.observer.Reset();
  }

  template <typename Edit>
  [[nodiscard]] Lines Run(int count, Edit edit)
  {
    {
      const memkernel::TreeBatch batch(panel.GetTree());
      for (int i = 0; i < count; ++i) {
        edit(i);
      }
    }
    return panel.host.TakeCalls();
  }
  void Rename(int i) { panel.GetTree().Rename(panel.kernel["a"], i % 2 == 0 ? "even" : "odd"); }
  void ExpectRowsOfTheTree() const
  {
    unsigned int count = 0;
    panel.GetTree().GetNumInstances(count);
    EXPECT_EQ(panel.state->GetNotFilteredSet().size(), count);
  }

  WorldPanel panel{"root[a b]"};
};

TEST_F(KernelBatch, TwoHundredCreationsMakeNoRefill)
{
  const Lines calls = Run(s_most, [&](int) { panel.kernel.Add("a", "n"); });

  EXPECT_THAT(calls, Not(Contains("ClearTree()")));
  EXPECT_EQ(CountCallsOf(calls, "InstanceCreate"), s_most);
  EXPECT_EQ(CountCallsOf(calls, "StartTreeUpdate"), 1);
  EXPECT_EQ(CountCallsOf(calls, "FinishTreeUpdate"), 1);
  ExpectRowsOfTheTree();
}

TEST_F(KernelBatch, OneCreationMoreIsOneRefill)
{
  const Lines calls = Run(s_most + 1, [&](int) { panel.kernel.Add("a", "n"); });

  EXPECT_EQ(CountCallsOf(calls, "ClearTree"), 1);
  EXPECT_EQ(CountCallsOf(calls, "InstanceCreate"), s_most + 3 + s_most + 1);
  EXPECT_EQ(CountCallsOf(calls, "StartTreeUpdate"), CountCallsOf(calls, "FinishTreeUpdate"));
  ExpectRowsOfTheTree();
}

TEST_F(KernelBatch, TwoHundredNamesMakeNoRefillAndOneMoreDoes)
{
  EXPECT_FALSE(IsRefill(Run(s_most, [&](int i) { Rename(i); })));
  EXPECT_TRUE(IsRefill(Run(s_most + 1, [&](int i) { Rename(i); })));
}

TEST_F(KernelBatch, CreationsAndNamesAreCountedTogether)
{
  const auto edit = [&](int i) {
    if (i % 2 == 0) {
      panel.kernel.Add("b", "n");
    } else {
      Rename(i / 2);
    }
  };

  EXPECT_FALSE(IsRefill(Run(s_most, edit)));
  EXPECT_TRUE(IsRefill(Run(s_most + 1, edit)));
  ExpectRowsOfTheTree();
}

TEST_F(KernelBatch, OneRemovalMakesOneRefill)
{
  const Lines calls = Run(1, [&](int) { panel.GetTree().Remove(panel.kernel["b"]); });

  EXPECT_EQ(CountCallsOf(calls, "ClearTree"), 1);
  ExpectRowsOfTheTree();
}

TEST_F(KernelBatch, TheInstancesOfARemovedBranchAreCountedOneByOne)
{
  for (int i = 0; i < s_most; ++i) {
    const auto instance = panel.kernel.Add("b", "n");
    panel.state->hidden.insert(instance.Get());
  }
  panel.state->hidden.insert(panel.kernel["b"].Get());
  panel.state->PopulateTree(false);
  static_cast<void>(panel.host.TakeCalls());

  const Lines calls = Run(1, [&](int) { panel.GetTree().Remove(panel.kernel["b"]); });

  EXPECT_EQ(CountCallsOf(calls, "InstanceRemove"), 0);
  EXPECT_EQ(CountCallsOf(calls, "ClearTree"), 1);
}

TEST_F(KernelBatch, ExpansionsAreNotCounted)
{
  const auto proxy = panel.GetTree().AddChild(
      panel.kernel["a"], panel.GetTree().CreateProduct({.name = "proxy", .flags = memkernel::InstanceProxy}));
  static_cast<void>(panel.host.TakeCalls());

  const Lines calls = Run(2 * s_most, [&](int i) {
    if (i % 2 == 0) {
      panel.GetTree().ExpandProxy(proxy);
    } else {
      panel.GetTree().CollapseProxy(proxy);
    }
  });

  EXPECT_FALSE(IsRefill(calls));
}

TEST_F(KernelBatch, EditsOfAnotherTreeAreNotHeardOf)
{
  testsupport::NamedTree other("top[leaf]");

  const memkernel::TreeBatch batch(*other.Get());
  for (int i = 0; i <= s_most; ++i) {
    other.Add("top", "n");
  }
  other.Get()->Remove(other["leaf"]);
  other.Get()->Rename(other["top"], "renamed");

  EXPECT_THAT(panel.host.TakeCalls(), IsEmpty());
}

}  // namespace
