#include "guitree/RecordedSet.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

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

template <typename Order>
Instances ListOf(const guitree::RecordedSet<Order>& set)
{
  typename guitree::RecordedSet<Order>::Set copy{du::MakeSmart<PairedInstance>(59)};
  set.CopyTo(copy);
  return {copy.begin(), copy.end()};
}

/// Plays random operations on both kinds of set and compares what they answer.
template <typename Order>
void CompareWithStdSet()
{
  const Instances instances = MakeInstances();
  guitree::RecordedSet<Order> recorded;
  std::set<Instance, Order> plain;
  const auto steps = *rc::gen::inRange(0, 120);
  for (int step = 0; step < steps; ++step) {
    // By number: a case that is played again while it is made smaller has other objects.
    const Instance item = instances[*rc::gen::inRange<std::size_t>(0, instances.size())];
    switch (*rc::gen::weightedElement<int>({{12, 0}, {2, 1}, {1, 2}, {1, 3}})) {
      case 0:
        recorded.Record(item);
        plain.insert(item);
        break;
      case 1:
        RC_ASSERT(recorded.Contains(item) == plain.contains(item));
        break;
      case 2:
        if constexpr (std::is_same_v<Order, guitree::ByAddress>) {
          recorded.Erase(item);
          plain.erase(item);
        }
        break;
      default:
        recorded.Settle();
        break;
    }
    RC_ASSERT(recorded.IsEmpty() == plain.empty());
  }

  RC_ASSERT(ListOf(recorded) == Instances(plain.begin(), plain.end()));
}

RC_GTEST_PROP(RecordedSet, ByAddress_IsAStdSet, ())
{
  CompareWithStdSet<guitree::ByAddress>();
}

RC_GTEST_PROP(RecordedSet, ByKeys_IsAStdSetInWhichTheFirstOfEqualOnesStays, ())
{
  CompareWithStdSet<guitree::InstsComperator>();
}

TEST(RecordedSet, Settle_IsDoneByTheFirstLook)
{
  const Instances instances = MakeInstances();
  guitree::RecordedSet<guitree::InstsComperator> set;
  set.Record(instances[2]);
  set.Record(instances[1]);
  EXPECT_TRUE(set.IsRecordedLast(instances[1]));

  EXPECT_TRUE(set.Contains(instances[2]));

  EXPECT_FALSE(set.IsRecordedLast(instances[1]));
  EXPECT_EQ(ListOf(set), (Instances{instances[1], instances[2]}));
}

TEST(RecordedSet, Record_OfTheLastOneAgain_TakesNoRoom)
{
  const Instances instances = MakeInstances();
  guitree::RecordedSet<guitree::ByAddress> set;

  set.Record(instances[1]);
  set.Record(instances[1]);

  EXPECT_EQ(set.GetSizeBound(), 1u);
}

TEST(RecordedSet, Settle_GivesBackTheRoomOfWhatWasRecordedRepeatedly)
{
  const Instances instances = MakeInstances();
  guitree::RecordedSet<guitree::ByAddress> set;
  for (int count = 0; count < 50; ++count) {
    set.Record(instances[1]);
    set.Record(instances[2]);
  }
  ASSERT_EQ(set.GetSizeBound(), 100u);

  set.Settle();

  EXPECT_EQ(set.GetSizeBound(), 2u);
}

TEST(RecordedSet, EqualInstances_AreKeptAliveThoughOnlyTheFirstIsListed)
{
  guitree::RecordedSet<guitree::InstsComperator> set;
  Instances instances = MakeInstances();
  const Instance first = instances[1];
  const zelk::BaseInstance* const other = instances[31].Get();
  set.Record(first);
  set.Record(instances[31]);
  set.Settle();
  instances.clear();

  EXPECT_EQ(ListOf(set), Instances{first});
  EXPECT_TRUE(set.Contains(du::MakeSmart<PairedInstance>(0)));
  std::vector<guitree::InstanceList> held;
  set.MoveTo(held);
  Instances all;
  for (const guitree::InstanceList& list : held) {
    all.insert(all.end(), list.begin(), list.end());
  }
  EXPECT_EQ(all.size(), 2u);
  EXPECT_EQ(all.back().Get(), other);
  EXPECT_TRUE(set.IsEmpty());
  EXPECT_EQ(set.GetSizeBound(), 0u);
}

}  // namespace
}  // namespace filtertest
