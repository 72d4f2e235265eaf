#include "CountedKernel.h"
#include "EngineStage.h"

namespace filtertest {
namespace {

using Reports = std::vector<int>;

/// A root over leaves that says it has `told` instances.
struct WideKernel {
  WideKernel(std::size_t instances, unsigned int told)
  {
    const auto tree = du::MakeSmart<LoggedTree>();
    tree->count = told;
    kernel.tree = tree;
    CountedInstance* const root = kernel.Add(nullptr, "root");
    for (std::size_t count = 1; count < instances; ++count) {
      kernel.Add(root, "leaf");
    }
    stage.event = du::MakeSmart<ReportedEvent>();
  }

  CountedKernel kernel;
  Stage stage{""};
};

TEST(BuildTreeProgress, IsReportedForEvery2500NodesAndAtTheEnd)
{
  WideKernel wide(7600, 10000);

  wide.stage.Build(wide.kernel.GetRoot());

  EXPECT_EQ(wide.stage.event->reports, (Reports{25, 50, 75, 100}));
}

TEST(BuildTreeProgress, OfOneNodeLess_IsNotReported)
{
  WideKernel wide(2499, 2500);

  wide.stage.Build(wide.kernel.GetRoot());

  EXPECT_EQ(wide.stage.event->reports, Reports{100});
}

TEST(BuildTreeProgress, IsTruncated)
{
  WideKernel wide(5000, 7000);

  wide.stage.Build(wide.kernel.GetRoot());

  EXPECT_EQ(wide.stage.event->reports, (Reports{35, 71, 100}));
}

TEST(BuildTreeProgress, OfTwoPasses_RunsPastAHundredBeforeTheFinalOne)
{
  WideKernel wide(5000, 5000);
  wide.stage.Hide({});

  wide.stage.Build(wide.kernel.GetRoot());

  EXPECT_EQ(wide.stage.event->reports, (Reports{50, 100, 150, 200, 100}));
}

TEST(BuildTreeProgress, IsAtMost255)
{
  WideKernel wide(7500, 2500);

  wide.stage.Build(wide.kernel.GetRoot());

  EXPECT_EQ(wide.stage.event->reports, (Reports{100, 200, 255, 100}));
}

TEST(BuildTreeProgress, OfATreeThatSaysItHasNoInstances_IsReportedAllTheSame)
{
  WideKernel wide(2500, 0);

  wide.stage.Build(wide.kernel.GetRoot());

  EXPECT_EQ(wide.stage.event->reports, (Reports{255, 100}));
}

TEST(BuildTreeProgress, WithoutAnEvent_BuildsAllTheSame)
{
  WideKernel wide(2501, 2501);
  wide.stage.event.Reset();
  wide.stage.LetThrough({"leaf"});

  wide.stage.Build(wide.kernel.GetRoot());

  std::size_t rows = 0;
  for (const Node* node = wide.stage.tree->root->firstChild; node; node = node->nextSibling) {
    ++rows;
  }
  EXPECT_EQ(rows, 2500u);
}

}  // namespace
}  // namespace filtertest
