// The panel as a whole, on a whole kernel, against what it must show.
//
// GUITREE_SYSTEM_SEED is the first seed in place of 1, GUITREE_SYSTEM_STEPS another number of events.

#include <gtest/gtest.h>

#include "Report.h"
#include "Variables.h"

namespace systemtest {
namespace {

constexpr std::size_t s_steps = 600;

void PlaySeed(std::uint64_t seed)
{
  const Events events = MakeEvents(seed, ReadNumber("GUITREE_SYSTEM_STEPS", s_steps));
  const Outcome outcome = Play(events, {});
  if (!outcome.fault.empty()) {
    FAIL() << Report(seed, events, {});
  }
  EXPECT_GT(outcome.checks, 1U);
  std::cout << "seed " << seed << ": " << events.size() << " events, " << outcome.checks << " comparisons, up to "
            << outcome.mostRows << " rows\n";
}

TEST(SystemSituations, AllOccurInAFewRuns)
{
  Stage::Situations seen;
  for (std::uint64_t seed = 1; seed <= 8; ++seed) {
    for (const auto& [situation, count] : Play(MakeEvents(seed, 1000), {}).situations) {
      seen[situation] += count;
    }
  }

  for (const auto& [situation, count] : seen) {
    std::cout << situation << ": " << count << '\n';
    EXPECT_GT(count, 0U) << situation;
  }
}

class SystemProperty : public testing::TestWithParam<std::uint64_t> {};

TEST_P(SystemProperty, AfterAnyEventsAPanelShowsWhatItMust)
{
  PlaySeed(ReadNumber("GUITREE_SYSTEM_SEED", 1) + GetParam());
}

INSTANTIATE_TEST_SUITE_P(OfSeeds, SystemProperty, testing::Range<std::uint64_t>(0, 10));

}  // namespace
}  // namespace systemtest
