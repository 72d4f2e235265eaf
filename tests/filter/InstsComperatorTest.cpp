#include "guitree/InstsComperator.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "testsupport/PlainBaseInstance.h"

namespace filtertest {
namespace {

using Instance = du::SmartPtr<zelk::BaseInstance>;

class KeyedInstance : public testsupport::PlainBaseInstance {
public:
  KeyedInstance(const char* key, const char* subKey) : PlainBaseInstance(key), m_subKey(subKey) {}

  [[nodiscard]] du::Symbol GetInstanceSubKey() const override { return m_subKey; }

private:
  du::Symbol m_subKey;
};

Instance Make(const char* key, const char* subKey = "")
{
  return du::MakeSmart<KeyedInstance>(key, subKey);
}

void ExpectOrder(const Instance& first, const Instance& second)
{
  const guitree::InstsComperator before;
  EXPECT_TRUE(before(first, second));
  EXPECT_FALSE(before(second, first));
}

void ExpectEqual(const Instance& one, const Instance& other)
{
  const guitree::InstsComperator before;
  EXPECT_FALSE(before(one, other));
  EXPECT_FALSE(before(other, one));
}

TEST(InstsComperator, FirstKeys_OrderByBytesWithoutCaseFolding)
{
  ExpectOrder(Make("B"), Make("a"));
  ExpectOrder(Make("z"), Make("\xc3\xa4"));
  ExpectOrder(Make("10"), Make("9"));
}

TEST(InstsComperator, OfAKeyThatBeginsLikeAnother_TheShorterComesFirst)
{
  ExpectOrder(Make("ab"), Make("abc"));
  ExpectOrder(Make(""), Make("a"));
}

TEST(InstsComperator, EqualFirstKeys_OrderByTheAddressesOfTheSubKeys)
{
  const du::Symbol one("one sub-key");
  const du::Symbol other("another sub-key");
  const bool isOneFirst = std::less<>()(one.GetText(), other.GetText());

  ExpectOrder(Make("key", isOneFirst ? "one sub-key" : "another sub-key"),
              Make("key", isOneFirst ? "another sub-key" : "one sub-key"));
}

TEST(InstsComperator, SubKeys_DoNotMatterWhereTheFirstKeysDiffer)
{
  ExpectOrder(Make("a", "one sub-key"), Make("b", "another sub-key"));
  ExpectOrder(Make("a", "another sub-key"), Make("b", "one sub-key"));
}

TEST(InstsComperator, SameKeys_AreOneItem)
{
  ExpectEqual(Make("key", "sub"), Make("key", "sub"));
  const std::set<Instance, guitree::InstsComperator> items{Make("key", "sub"), Make("key", "sub"), Make("key", "bus")};

  EXPECT_EQ(items.size(), 2u);
}

TEST(InstsComperator, Null_HasNullKeys)
{
  ExpectOrder(nullptr, Make("a"));
  ExpectOrder(nullptr, Make("", "sub"));
  ExpectEqual(nullptr, Make("", ""));
  ExpectEqual(nullptr, nullptr);
}

}  // namespace
}  // namespace filtertest
