// The panel as a whole with jobs and loads on workers. What overtakes what differs from run to run; at rest the panel
// must show what it must.
//
// The variables of SystemPropertyTest count here as well.

#include <gtest/gtest.h>

#include "Report.h"
#include "Variables.h"

namespace systemtest {
namespace {

class SystemThreads : public testing::TestWithParam<std::uint64_t> {};

TEST_P(SystemThreads, AfterAnyEventsAPanelShowsWhatItMust)
{
  const std::uint64_t seed = ReadNumber("GUITREE_SYSTEM_SEED", 1) + GetParam();
  const Events events = MakeEvents(seed, ReadNumber("GUITREE_SYSTEM_STEPS", 400));
  const Stage::Options options{.hasThreads = true, .losesRow = {}};

  const Outcome outcome = Play(events, options);

  if (!outcome.fault.empty()) {
    FAIL() << Report(seed, events, options);
  }
  EXPECT_GT(outcome.checks, 1U);
  std::cout << "seed " << seed << ": " << events.size() << " events, " << outcome.checks << " comparisons, up to "
            << outcome.mostRows << " rows\n";
}

INSTANTIATE_TEST_SUITE_P(OfSeeds, SystemThreads, testing::Range<std::uint64_t>(0, 6));

}  // namespace
}  // namespace systemtest
