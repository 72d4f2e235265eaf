#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "structure_utils/TreeFilterAdditionalInfo.h"

namespace {

using structure_utils::TreeFilterAdditionalInfo;
using Lookup = TreeFilterAdditionalInfo::TreeFilterStatusLookup;

/// Stays inside a look-up until it is told to go on.
class SlowLookup final : public Lookup {
public:
  TFStatus TreeFilterGetItemStatus(const du::ConstSmartPtr<zelk::Instance>& /*instance*/,
                                   const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    m_hasBegun.set_value();
    m_mayEnd.get_future().wait();
    hasEnded = true;
    return TFStatusShapeFailed;
  }

  void WaitUntilItHasBegun() { m_hasBegun.get_future().wait(); }
  void LetItEnd() { m_mayEnd.set_value(); }

  std::atomic<bool> hasEnded{false};

private:
  std::promise<void> m_hasBegun;
  std::promise<void> m_mayEnd;
};

TEST(TreeFilterAdditionalInfoThreads, Detaching_WaitsForALookUpInProgress)
{
  SlowLookup lookup;
  TreeFilterAdditionalInfo info(nullptr, nullptr, &lookup);
  auto answer = std::async(std::launch::async, [&] { return info.GetItemStatus(nullptr); });
  lookup.WaitUntilItHasBegun();
  std::atomic<bool> isDetached{false};

  auto sawTheEnd = std::async(std::launch::async, [&] {
    info.DetachStatusLookup();
    isDetached = true;
    return lookup.hasEnded.load();
  });
  // Gives a detaching that does not wait the time to show it; one that waits cannot fail here.
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_FALSE(isDetached);
  lookup.LetItEnd();

  EXPECT_TRUE(sawTheEnd.get());
  EXPECT_EQ(answer.get(), Lookup::TFStatusShapeFailed);
  EXPECT_EQ(info.GetItemStatus(nullptr), Lookup::TFStatusNone);
}

class PlainLookup final : public Lookup {
public:
  TFStatus TreeFilterGetItemStatus(const du::ConstSmartPtr<zelk::Instance>& /*instance*/,
                                   const du::SmartPtr<zelk::Scene>& /*scene*/) override
  {
    return TFStatusShapeFailed;
  }
};

TEST(TreeFilterAdditionalInfoThreads, TheLookupMayDieOnceItIsDetached)
{
  for (int round = 0; round < 100; ++round) {
    auto lookup = std::make_unique<PlainLookup>();
    TreeFilterAdditionalInfo info(nullptr, nullptr, lookup.get());
    std::vector<std::thread> workers;
    for (int i = 0; i < 3; ++i) {
      workers.emplace_back([&] {
        while (info.GetItemStatus(nullptr) != Lookup::TFStatusNone) {}
      });
    }

    info.DetachStatusLookup();
    lookup.reset();
    for (std::thread& worker : workers) {
      worker.join();
    }

    EXPECT_EQ(info.GetItemStatus(nullptr), Lookup::TFStatusNone);
  }
}

}  // namespace
