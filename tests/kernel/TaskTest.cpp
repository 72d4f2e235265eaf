#include "du/Task.h"

#include <gtest/gtest.h>

#include "du/SmartPtr.h"
#include "du/UserData.h"

namespace {

class CountingTask : public du::Task {
public:
  void Run() override { ++runs; }
  int runs = 0;
};

TEST(Task, ByDefault_HasNoNameAndNoPriority)
{
  const CountingTask task;

  EXPECT_EQ(task.GetName(), "");
  EXPECT_EQ(task.GetPriority(), 0.0F);
}

TEST(Task, TheCallsAroundTheWork_DoNotRunIt)
{
  CountingTask task;

  task.TaskComplete();
  task.FlushResults();
  task.Abort();

  EXPECT_EQ(task.runs, 0);
}

TEST(Task, ACopy_TakesTheMembersAndNotTheReferences)
{
  const auto task = du::MakeSmart<CountingTask>();
  task->Run();

  const auto copy = du::MakeSmart<CountingTask>(*task);

  EXPECT_EQ(copy->runs, 1);
  EXPECT_EQ(copy->AddReference(nullptr), 2);
  copy->RemoveReference(nullptr);
}

TEST(UserData, KeepsTheValueOfTheClient)
{
  int value = 0;
  du::UserData data;
  EXPECT_EQ(data.GetClientData(), nullptr);

  data.SetClientData(&value);

  EXPECT_EQ(data.GetClientData(), &value);
}

}  // namespace
