#include "guitree/TreeController.h"

#include <gtest/gtest.h>

namespace {

using guitree::FilterObserverBase;
using guitree::TreeController;

class CountedObserver : public FilterObserverBase {
public:
  explicit CountedObserver(int& alive) : m_alive(alive) { ++m_alive; }
  CountedObserver(const CountedObserver&) = delete;
  CountedObserver& operator=(const CountedObserver&) = delete;
  ~CountedObserver() override { --m_alive; }

private:
  int& m_alive;
};

TEST(TreeController, StartsIdleAndWithoutAResult)
{
  TreeController controller(nullptr);

  EXPECT_FALSE(controller.IsBusy());
  EXPECT_EQ(controller.GetFilteredTree(), nullptr);
}

TEST(TreeController, AnObserverThatIsAddedTwiceStandsTwice)
{
  int alive = 0;
  TreeController controller(nullptr);
  auto observer = du::MakeSmart<CountedObserver>(alive);
  controller.AddObserver(observer);
  controller.AddObserver(observer);

  controller.RemoveObserver(observer);
  const auto* identity = observer.Get();
  observer.Reset();
  EXPECT_EQ(alive, 1);

  controller.RemoveObserver(du::SmartPtr<FilterObserverBase>(const_cast<CountedObserver*>(identity)));
  EXPECT_EQ(alive, 0);
}

TEST(TreeController, RemovingAnUnknownObserverChangesNothing)
{
  int alive = 0;
  TreeController controller(nullptr);
  controller.AddObserver(du::MakeSmart<CountedObserver>(alive));

  controller.RemoveObserver(du::MakeSmart<CountedObserver>(alive));
  controller.RemoveObserver(nullptr);

  EXPECT_EQ(alive, 1);
}

TEST(TreeController, ItsEndReleasesTheObservers)
{
  int alive = 0;
  {
    TreeController controller(nullptr);
    controller.AddObserver(du::MakeSmart<CountedObserver>(alive));
    const TreeController copy(controller);
    EXPECT_EQ(alive, 1);
  }

  EXPECT_EQ(alive, 0);
}

TEST(TreeController, AnObserverNeedsToOverrideNothing)
{
  FilterObserverBase observer;

  observer.OnProcessingComplete(nullptr, nullptr);

  EXPECT_TRUE(observer.ZeroReferenceCountHook());
}

}  // namespace
