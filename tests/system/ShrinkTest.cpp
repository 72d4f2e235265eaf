// The road of a failure: from a fault that a host has on purpose to a script that shows it.

#include "Shrink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Report.h"

namespace systemtest {
namespace {

using testing::HasSubstr;
using testing::Not;

bool LosesNuts(const zelk::BaseInstance& instance)
{
  return instance.GetInstanceKey() == "nut";
}

TEST(Shrink, LeavesThoseEventsAloneThatTheFailureNeeds)
{
  const Event first{EventKind::Hide, 3, 4};
  const Event second{EventKind::Show, 5, 6};
  Events events = MakeEvents(1, 500);
  events.insert(events.begin() + 70, first);
  events.insert(events.begin() + 410, second);

  const Events shortest = Shrink(events, [&](const Events& shorter) {
    const auto found = std::find(shorter.begin(), shorter.end(), first);
    return std::find(found, shorter.end(), second) != shorter.end();
  });

  EXPECT_EQ(shortest, (Events{first, second}));
}

TEST(Shrink, KeepsTheLastEventEvenIfNoneIsNeeded)
{
  EXPECT_EQ(Shrink(MakeEvents(1, 9), [](const Events&) { return true; }).size(), 1U);
}

TEST(SystemReport, OfAHostThatLosesRowsNamesTheSeedTheRowTheEventsAndAScript)
{
  const Events events = MakeEvents(7, 300);
  const Stage::Options options{.losesRow = LosesNuts};
  ASSERT_NE(Play(events, options).fault, "");
  ASSERT_EQ(Play(events, {}).fault, "");

  const std::string report = Report(7, events, options);

  EXPECT_THAT(report, HasSubstr("seed 7, 300 events"));
  EXPECT_THAT(report, HasSubstr("1 rows, 2 expected"));
  EXPECT_THAT(report, HasSubstr("nut/1 'nut'"));
  EXPECT_THAT(report, HasSubstr("add assembly /top\nview type 1 odd\nadd part /top/nut\n"));
  EXPECT_THAT(report, Not(HasSubstr("Settle")));
  EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 13);
}

TEST(SystemReport, IsTheSameEachTime)
{
  const Events events = MakeEvents(7, 300);
  const Stage::Options options{.losesRow = LosesNuts};

  EXPECT_EQ(Report(7, events, options), Report(7, events, options));
}

}  // namespace
}  // namespace systemtest
