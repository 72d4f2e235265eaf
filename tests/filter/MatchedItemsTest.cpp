#include "guitree/MatchedItems.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "testsupport/PlainBaseInstance.h"

namespace filtertest {
namespace {

using Instance = du::SmartPtr<zelk::BaseInstance>;

std::vector<Instance> MakeInstances()
{
  std::vector<Instance> made;
  for (int number = 0; number < 20; ++number) {
    made.push_back(du::MakeSmart<testsupport::PlainBaseInstance>("item" + std::to_string(number)));
  }
  std::reverse(made.begin(), made.begin() + 10);
  return made;
}

RC_GTEST_PROP(MatchedItems, AreAStdSetOfAddresses, ())
{
  const std::vector<Instance> instances = MakeInstances();
  guitree::InstanceList record;
  guitree::MatchedItems matched;
  std::set<Instance> plain;
  const auto steps = *rc::gen::inRange(0, 100);
  for (int step = 0; step < steps; ++step) {
    const Instance item = instances[*rc::gen::inRange<std::size_t>(0, instances.size())];
    switch (*rc::gen::weightedElement<int>({{6, 0}, {3, 1}, {2, 2}})) {
      case 0:
        record.push_back(item);
        matched.Mark(record.size() - 1);
        plain.insert(item);
        break;
      case 1:
        record.push_back(item);
        break;
      default:
        matched.Erase(item, record);
        plain.erase(item);
        break;
    }
    RC_ASSERT(matched.IsEmpty() == plain.empty());
  }

  guitree::MatchedItems::Set copy{instances.front()};
  matched.CopyTo(copy, record);

  RC_ASSERT(copy == plain);
}

TEST(MatchedItems, MarkedTwiceAtOnePlace_AreEmptyOnceThatIsErased)
{
  const guitree::InstanceList record{MakeInstances().front()};
  guitree::MatchedItems matched;
  matched.Mark(0);
  matched.Mark(0);

  matched.Erase(record.front(), record);

  EXPECT_TRUE(matched.IsEmpty());
}

TEST(MatchedItems, Clear_ForgetsTheMarks)
{
  const guitree::InstanceList record{MakeInstances().front()};
  guitree::MatchedItems matched;
  matched.Mark(0);

  matched.Clear();

  EXPECT_TRUE(matched.IsEmpty());
  guitree::MatchedItems::Set copy;
  matched.CopyTo(copy, record);
  EXPECT_TRUE(copy.empty());
}

}  // namespace
}  // namespace filtertest
