#include "guitree/CreatedItems.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "testsupport/PlainBaseInstance.h"

namespace filtertest {
namespace {

using Instance = du::SmartPtr<zelk::BaseInstance>;
using Instances = std::vector<Instance>;

/// Ten first keys with three second keys each, each pair twice: sixty instances of which thirty differ by key.
class PairedInstance : public testsupport::PlainBaseInstance {
public:
  explicit PairedInstance(int number)
      : PlainBaseInstance("key" + std::to_string(number % 10)),
        m_subKey(std::string_view("sub" + std::to_string(number / 10 % 3)))
  {
  }

  [[nodiscard]] du::Symbol GetInstanceSubKey() const override { return m_subKey; }

private:
  du::Symbol m_subKey;
};

Instances MakeInstances()
{
  Instances made{nullptr};
  for (int number = 0; number < 60; ++number) {
    made.push_back(du::MakeSmart<PairedInstance>(number));
  }
  return made;
}

Instances ListOf(const guitree::CreatedItems& set)
{
  guitree::CreatedItems::Set copy{du::MakeSmart<PairedInstance>(59)};
  set.CopyTo(copy);
  return {copy.begin(), copy.end()};
}

RC_GTEST_PROP(CreatedItems, AreAStdSetInWhichTheFirstOfEqualOnesStays, ())
{
  const Instances instances = MakeInstances();
  guitree::CreatedItems created;
  std::set<Instance, guitree::InstsComperator> plain;
  const auto steps = *rc::gen::inRange(0, 120);
  for (int step = 0; step < steps; ++step) {
    // By number: a case that is played again while it is made smaller has other objects.
    const Instance item = instances[*rc::gen::inRange<std::size_t>(0, instances.size())];
    switch (*rc::gen::weightedElement<int>({{12, 0}, {2, 1}, {1, 2}})) {
      case 0:
        created.Record(item);
        plain.insert(item);
        break;
      case 1:
        RC_ASSERT(created.Contains(item) == plain.contains(item));
        break;
      default:
        created.Settle();
        break;
    }
  }

  RC_ASSERT(ListOf(created) == Instances(plain.begin(), plain.end()));
}

TEST(CreatedItems, ALookBringsThemIntoOrderAndLeavesTheRecordAsItCame)
{
  const Instances instances = MakeInstances();
  guitree::CreatedItems set;
  set.Record(instances[2]);
  set.Record(instances[1]);
  set.Record(instances[2]);

  EXPECT_TRUE(set.Contains(instances[2]));

  EXPECT_EQ(ListOf(set), (Instances{instances[1], instances[2]}));
  EXPECT_TRUE(set.IsRecordedLast(instances[2]));
  EXPECT_EQ(Instances(set.GetRecord().begin(), set.GetRecord().end()),
            (Instances{instances[2], instances[1], instances[2]}));
}

TEST(CreatedItems, Record_OfTheLastOneAgain_TakesNoRoom)
{
  const Instances instances = MakeInstances();
  guitree::CreatedItems set;

  set.Record(instances[1]);
  set.Record(instances[1]);
  EXPECT_EQ(set.GetRecord().size(), 1u);

  EXPECT_TRUE(set.Contains(instances[1]));
  set.Record(instances[1]);
  EXPECT_EQ(set.GetRecord().size(), 1u);
}

TEST(CreatedItems, OfEqualOnesAllAreKeptAliveThoughOnlyTheFirstIsListed)
{
  guitree::CreatedItems set;
  Instances instances = MakeInstances();
  const Instance first = instances[1];
  const zelk::BaseInstance* const other = instances[31].Get();
  set.Record(first);
  set.Record(instances[31]);
  set.Settle();
  instances.clear();

  EXPECT_EQ(ListOf(set), Instances{first});
  EXPECT_TRUE(set.Contains(du::MakeSmart<PairedInstance>(0)));
  const guitree::InstanceList all = set.TakeRecord();
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all.back().Get(), other);
}

TEST(CreatedItems, TakeRecord_LeavesASetThatCanBeUsedAgain)
{
  const Instances instances = MakeInstances();
  guitree::CreatedItems set;
  set.Record(instances[1]);
  ASSERT_TRUE(set.Contains(instances[1]));
  set.Record(instances[2]);

  EXPECT_EQ(set.TakeRecord().size(), 2u);

  EXPECT_TRUE(set.GetRecord().empty());
  EXPECT_FALSE(set.Contains(instances[1]));
  EXPECT_FALSE(set.Contains(instances[2]));
  set.Record(instances[3]);
  EXPECT_EQ(ListOf(set), Instances{instances[3]});
}

}  // namespace
}  // namespace filtertest
