// How what a filter lets through is brought into order: interruptibly, and without an order for each look.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "EngineStage.h"
#include "guitree/CreatedItems.h"
#include "testsupport/PlainBaseInstance.h"

namespace filtertest {
namespace {

struct KeyReads {
  std::size_t count = 0;
  std::function<void()> onRead;
};

/// A root or a leaf that tells when its key is read.
class KeyedInstance : public testsupport::PlainBaseInstance {
public:
  KeyedInstance(const std::string& name, const std::string& subKey, KeyReads& reads)
      : PlainBaseInstance(name), m_subKey(std::string_view(subKey)), m_reads(reads)
  {
  }

  std::vector<Instance> children;

  [[nodiscard]] du::Symbol GetInstanceKey() const override
  {
    ++m_reads.count;
    if (m_reads.onRead) {
      m_reads.onRead();
    }
    return PlainBaseInstance::GetInstanceKey();
  }
  [[nodiscard]] du::Symbol GetInstanceSubKey() const override { return m_subKey; }
  void GetBaseChildren(std::vector<Instance>& out) const override { out = children; }
  [[nodiscard]] bool HasChildren() const override { return !children.empty(); }

private:
  du::Symbol m_subKey;
  KeyReads& m_reads;
};

/// Some with a key of their own and some that share one, each pair of keys twice, in no order.
std::vector<Instance> MakeInstances(std::size_t count, KeyReads& reads)
{
  std::vector<Instance> made;
  for (std::size_t number = 0; number < count; ++number) {
    const std::size_t pair = number * 7919 % (count / 2);
    const std::string key = pair % 3 == 0 ? "shared" : "key" + std::to_string(pair);
    made.push_back(du::MakeSmart<KeyedInstance>(key, "sub" + std::to_string(pair), reads));
  }
  return made;
}

std::vector<std::string> ListKeys(const guitree::CreatedItems& set)
{
  guitree::CreatedItems::Set items;
  set.CopyTo(items);
  std::vector<std::string> keys;
  for (const Instance& item : items) {
    keys.push_back(std::string(item->GetInstanceKey()) + "/" + std::string(item->GetInstanceSubKey()));
  }
  return keys;
}

void RecordAll(guitree::CreatedItems& set, const std::vector<Instance>& instances)
{
  for (const Instance& instance : instances) {
    set.Record(instance);
  }
}

std::size_t CountHeld(guitree::CreatedItems& set)
{
  const guitree::InstanceList held = set.TakeRecord();
  const std::set<Instance> different(held.begin(), held.end());
  return different.size();
}

TEST(ResultOrder, ThatIsGivenUpAtAnyMoment_LosesNothing)
{
  KeyReads reads;
  const std::vector<Instance> instances = MakeInstances(12'000, reads);
  guitree::CreatedItems whole;
  RecordAll(whole, instances);
  std::size_t questions = 0;
  whole.Settle([&questions] {
    ++questions;
    return true;
  });
  const std::vector<std::string> expected = ListKeys(whole);
  ASSERT_EQ(expected.size(), 6'000u);
  ASSERT_GT(questions, 25u);

  for (std::size_t end = 0; end < questions; end += 1 + end / 4) {
    SCOPED_TRACE(end);
    guitree::CreatedItems set;
    RecordAll(set, instances);
    std::size_t asked = 0;

    set.Settle([&] { return ++asked <= end; });

    EXPECT_LE(asked, end + 2) << "it goes on although nobody wants it";
    EXPECT_EQ(ListKeys(set), expected);
    EXPECT_EQ(CountHeld(set), instances.size());
  }
}

TEST(ResultOrder, OfASetThatIsAskedAfterEachEntry_DoesNotBeginAnewEachTime)
{
  constexpr std::size_t s_count = 4000;
  KeyReads reads;
  const std::vector<Instance> instances = MakeInstances(s_count, reads);
  guitree::CreatedItems set;
  reads.count = 0;

  for (const Instance& instance : instances) {
    set.Record(instance);
    EXPECT_TRUE(set.Contains(instance));
  }

  // Three searches an entry, each of some twelve comparisons.
  EXPECT_LT(reads.count, s_count * 150);
  EXPECT_EQ(ListKeys(set).size(), s_count / 2);
  EXPECT_EQ(CountHeld(set), s_count);
}

TEST(ResultOrder, CancelledOnTheWay_LeavesTheUnfilledRootAndEveryCreatedItem)
{
  KeyReads reads;
  const auto root = du::MakeSmart<KeyedInstance>("root", "", reads);
  root->children = MakeInstances(6000, reads);
  testsupport::ScriptedFilter filter;
  const auto event = du::MakeSmart<ReportedEvent>();
  OpenTree tree;
  reads.onRead = [&event, &reads] {
    if (reads.count == 3000) {
      event->Cancel();
    }
  };
  du::SmartPtr<du::RefCounted> info;

  tree.BuildTree(filter, root, nullptr, info, {}, event.Get());

  EXPECT_TRUE(event->IsCanceled());
  EXPECT_EQ(Show(tree.root), "root[...]");
  EXPECT_TRUE(std::find(event->reports.begin(), event->reports.end(), 100) == event->reports.end());
  for (const Instance& child : root->children) {
    ASSERT_TRUE(tree.IsContainItem(child));
  }
}

}  // namespace
}  // namespace filtertest
