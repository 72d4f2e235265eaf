#include "dom/ManagedObject.h"

#include <gtest/gtest.h>

#include "TestQueue.h"

namespace {

using dom::ManagedObject;
using kerneltest::TestQueue;

class Managed : public ManagedObject {
public:
  using ManagedObject::ManagedObject;
  void OnManage() override { ++timesManaged; }
  int timesManaged = 0;
};

TEST(ManagedObject, ManageObject_HandsTheQueueOnAndTellsTheObject)
{
  const auto queue = du::MakeSmart<TestQueue>();
  const auto top = du::MakeSmart<Managed>(queue);
  const auto below = du::MakeSmart<Managed>();
  const auto lowest = du::MakeSmart<Managed>();

  EXPECT_TRUE(top->ManageObject(below));
  EXPECT_TRUE(below->ManageObject(lowest));

  EXPECT_TRUE(lowest->GetMessageQueue() == queue);
  EXPECT_EQ(below->timesManaged, 1);
  EXPECT_EQ(lowest->timesManaged, 1);
  EXPECT_EQ(top->timesManaged, 0);
}

TEST(ManagedObject, ManageObject_OfNullOrItself_IsRefused)
{
  const auto top = du::MakeSmart<Managed>(du::MakeSmart<TestQueue>());

  EXPECT_FALSE(top->ManageObject(nullptr));
  EXPECT_FALSE(top->ManageObject(top));

  EXPECT_EQ(top->timesManaged, 0);
}

TEST(ManagedObject, ManageObject_OfAnObjectThatIsManagedAlready_KeepsItsQueue)
{
  const auto queue = du::MakeSmart<TestQueue>();
  const auto first = du::MakeSmart<Managed>(queue);
  const auto second = du::MakeSmart<Managed>(du::MakeSmart<TestQueue>());
  const auto object = du::MakeSmart<Managed>();
  first->ManageObject(object);

  EXPECT_FALSE(first->ManageObject(object));
  EXPECT_FALSE(second->ManageObject(object));

  EXPECT_TRUE(object->GetMessageQueue() == queue);
  EXPECT_EQ(object->timesManaged, 1);
}

TEST(ManagedObject, WithoutAQueue_ManagesNothing)
{
  const auto unmanaged = du::MakeSmart<Managed>();
  const auto withNull = du::MakeSmart<Managed>(du::SmartPtr<dom::MessageQueue>());
  const auto object = du::MakeSmart<Managed>();

  EXPECT_FALSE(unmanaged->ManageObject(object));
  EXPECT_FALSE(withNull->ManageObject(object));

  EXPECT_FALSE(object->GetMessageQueue());
  EXPECT_EQ(object->timesManaged, 0);
}

TEST(ManagedObject, Managing_OwnsNothing)
{
  const auto queue = du::MakeSmart<TestQueue>();
  auto top = du::MakeSmart<Managed>(queue);
  const auto object = du::MakeSmart<Managed>();
  top->ManageObject(object);

  EXPECT_EQ(object->AddReference(nullptr), 2);
  object->RemoveReference(nullptr);
  top.Reset();

  EXPECT_TRUE(object->GetMessageQueue() == queue);
}

TEST(ManagedObject, ByDefault_TellsOfNoClass)
{
  const Managed object;

  EXPECT_TRUE(object.GetObjectClass().IsEmpty());
  EXPECT_EQ(object.GetBaseClassCount(), 0U);
  EXPECT_TRUE(object.GetBaseClass(0).IsEmpty());
  EXPECT_TRUE(object.GetBaseClassParent(0).IsEmpty());
  EXPECT_EQ(object.BaseClassOffsetByName("dom::Observer"), -1);
}

}  // namespace
