#include "Event.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace systemtest {
namespace {

TEST(Event, IsReadBackFromItsText)
{
  const Events events = MakeEvents(1, 2000);

  std::set<EventKind> kinds;
  for (const Event& event : events) {
    EXPECT_EQ(ParseEvent(ToText(event)), event) << ToText(event);
    kinds.insert(event.kind);
  }

  EXPECT_EQ(kinds.size(), static_cast<std::size_t>(EventKind::Settle) + 1);
}

TEST(Event, IsNotReadFromAnyOtherText)
{
  EXPECT_EQ(ToText({EventKind::Remove, 7, 3}), "Remove 7 3");
  for (const char* text : {"", "Remove", "Remove 7", "Remover 7 3", "Remove seven 3"}) {
    EXPECT_EQ(ParseEvent(text), std::nullopt) << text;
  }
}

TEST(Events, AreTheSameForASeedAndOthersForAnother)
{
  EXPECT_EQ(MakeEvents(5, 100), MakeEvents(5, 100));
  EXPECT_NE(MakeEvents(5, 100), MakeEvents(6, 100));
}

}  // namespace
}  // namespace systemtest
