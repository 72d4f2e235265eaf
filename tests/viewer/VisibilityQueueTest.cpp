#include "VisibilityQueue.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "memkernel/Tree.h"
#include "zelk/ShapeSceneObserver.h"

namespace {

using Instance = du::SmartPtr<memkernel::Instance>;

/// Counts what becomes of the presences, and the runs in which it does.
class ChangeCounter final : public zelk::ShapeSceneObserver {
public:
  void OnShapeInstanceVisibility(const du::SmartPtr<zelk::ShapeInstance>& /*shapeInstance*/, bool /*visible*/) override
  {
    ++changes;
    if (onChange) {
      onChange();
    }
  }
  void OnEndUpdate() override { ++runs; }

  int changes = 0;
  int runs = 0;
  std::function<void()> onChange;
};

/// Three assemblies of four parts: a, a1 to a4, b, b1 and so on.
class VisibilityQueue : public testing::Test {
protected:
  void SetUp() override
  {
    const auto shape = du::MakeSmart<memkernel::Shape>(memkernel::Shape::Work());
    const auto part = tree->CreateProduct({.name = "part", .shape = shape});
    const auto assembly = tree->CreateProduct({.name = "assembly"});
    Put("files", tree->CreateRoot(assembly, "files"));
    for (const std::string name : {"a", "b", "c"}) {
      Put(name, tree->AddChild(instances["files"], assembly, du::Symbol(std::string_view(name))));
      for (int i = 1; i <= s_parts; ++i) {
        const std::string own = name + std::to_string(i);
        Put(own, tree->AddChild(instances[name], part, du::Symbol(std::string_view(own))));
        ASSERT_TRUE(scene->CreateShapeInstance(instances[own]));
      }
    }
    scene->RegisterObserver(*counter, du::Flags(memkernel::ShapeSceneVisibility), false);
  }
  void TearDown() override { scene->UnregisterObserver(*counter); }
  void Put(const std::string& name, const Instance& instance) { instances[name] = instance; }
  bool Set(const std::vector<std::string>& names, bool isVisible)
  {
    viewer::VisibilityQueue::Instances tops;
    for (const std::string& name : names) {
      tops.insert(instances.at(name));
    }
    return queue.Add(tops, isVisible);
  }
  bool Hide(const std::vector<std::string>& names) { return Set(names, false); }
  bool Show(const std::vector<std::string>& names) { return Set(names, true); }
  /// Goes some of the smallest steps.
  void GoOn(int steps)
  {
    for (; steps > 0; --steps) {
      ASSERT_FALSE(queue.GoOn(QDeadlineTimer(0)));
    }
  }
  int GoOnToTheEnd()
  {
    int portions = 1;
    while (!queue.GoOn(QDeadlineTimer(0))) {
      ++portions;
    }
    return portions;
  }
  /// The parts that are shown, in order.
  [[nodiscard]] std::string GetShown() const
  {
    std::string shown;
    for (const auto& [name, instance] : instances) {
      const auto shape = scene->FindShapeInstance(instance.Get());
      if (shape && shape->IsVisible()) {
        shown += (shown.empty() ? "" : " ") + name;
      }
    }
    return shown;
  }

  static constexpr int s_parts = 4;

  const du::SmartPtr<memkernel::Tree> tree = du::MakeSmart<memkernel::Tree>();
  const du::SmartPtr<memkernel::ShapeScene> scene =
      du::MakeSmart<memkernel::ShapeScene>(du::SmartPtr<zelk::SelectionManager>(), tree);
  const du::SmartPtr<ChangeCounter> counter = du::MakeSmart<ChangeCounter>();
  std::map<std::string, Instance> instances;
  viewer::VisibilityQueue queue{scene};
};

TEST_F(VisibilityQueue, Hide_InPortions_HidesTheBranchAndNothingElse)
{
  EXPECT_TRUE(Hide({"b"}));
  EXPECT_EQ(GetShown(), "a1 a2 a3 a4 b1 b2 b3 b4 c1 c2 c3 c4");

  const int portions = GoOnToTheEnd();

  EXPECT_EQ(GetShown(), "a1 a2 a3 a4 c1 c2 c3 c4");
  EXPECT_GE(portions, s_parts);
  EXPECT_TRUE(queue.IsEmpty());
}

TEST_F(VisibilityQueue, WithTimeEnough_EndsInOnePortionAndOneRun)
{
  Hide({"files"});

  EXPECT_TRUE(queue.GoOn(QDeadlineTimer(QDeadlineTimer::Forever)));

  EXPECT_EQ(GetShown(), "");
  EXPECT_EQ(counter->runs, 1);
}

TEST_F(VisibilityQueue, Answer_IsWhetherAnythingWillBeOtherwise)
{
  EXPECT_FALSE(Show({"files"}));
  EXPECT_TRUE(queue.IsEmpty());
  EXPECT_FALSE(Hide({}));
  EXPECT_TRUE(Hide({"a2"}));
  GoOnToTheEnd();

  EXPECT_FALSE(Hide({"a2"}));
  EXPECT_FALSE(Show({"b"}));
  EXPECT_TRUE(Show({"a"}));
}

TEST_F(VisibilityQueue, Answer_TakesInWhatIsStillToBeDone)
{
  EXPECT_TRUE(Hide({"a"}));
  EXPECT_FALSE(Hide({"a3"}));
  EXPECT_FALSE(Hide({"a"}));
  EXPECT_TRUE(Hide({"files"}));
  EXPECT_FALSE(Hide({"b", "c1"}));
  EXPECT_TRUE(Show({"b1"}));
  EXPECT_FALSE(Show({"b1"}));
  EXPECT_TRUE(Show({"b"}));
  EXPECT_FALSE(Hide({"a", "c"}));

  GoOnToTheEnd();

  EXPECT_EQ(GetShown(), "b1 b2 b3 b4");
}

TEST_F(VisibilityQueue, HideOfAllAndShowOfSome_ShowsNothingElseAndChangesNothingTwice)
{
  Hide({"files"});
  Show({"b", "c2"});

  GoOnToTheEnd();

  EXPECT_EQ(GetShown(), "b1 b2 b3 b4 c2");
  EXPECT_EQ(counter->changes, 7);
}

TEST_F(VisibilityQueue, ANewerCommand_OfABranchThatIsBeingHidden_Holds)
{
  Hide({"files"});
  // Into b.
  GoOn(9);
  ASSERT_EQ(GetShown(), "b2 b3 b4 c1 c2 c3 c4");

  Show({"b"});
  GoOnToTheEnd();

  EXPECT_EQ(GetShown(), "b1 b2 b3 b4");
}

TEST_F(VisibilityQueue, ANewerCommand_OfAllAboveOneAtWork_Holds)
{
  Hide({"b"});
  GoOn(2);
  ASSERT_NE(GetShown(), "a1 a2 a3 a4 b1 b2 b3 b4 c1 c2 c3 c4");

  EXPECT_TRUE(Show({"files"}));
  GoOnToTheEnd();

  EXPECT_EQ(GetShown(), "a1 a2 a3 a4 b1 b2 b3 b4 c1 c2 c3 c4");
}

TEST_F(VisibilityQueue, ANewerCommand_BelowAnOlderOne_Holds)
{
  Hide({"a", "b"});
  GoOn(1);
  Show({"a2", "b3"});
  Hide({"c4", "b3"});

  GoOnToTheEnd();

  EXPECT_EQ(GetShown(), "a2 c1 c2 c3");
}

TEST_F(VisibilityQueue, Commands_InAnyPortions_EndAsOneAfterTheOther)
{
  const std::vector<std::pair<std::string, bool>> commands{{"files", false}, {"b", true},  {"b2", false}, {"a", true},
                                                           {"files", true},  {"c", false}, {"a1", false}, {"c3", true}};
  for (int steps = 0; steps < 30; ++steps) {
    Show({"files"});
    GoOnToTheEnd();

    for (const auto& [name, isVisible] : commands) {
      Set({name}, isVisible);
      for (int i = 0; i < steps && !queue.IsEmpty(); ++i) {
        static_cast<void>(queue.GoOn(QDeadlineTimer(0)));
      }
    }
    GoOnToTheEnd();

    EXPECT_EQ(GetShown(), "a2 a3 a4 b1 b2 b3 b4 c3") << steps;
  }
}

TEST_F(VisibilityQueue, Removal_InTheMiddle_LeavesTheRestToBeDone)
{
  Hide({"files"});
  GoOn(4);

  ASSERT_TRUE(tree->Remove(instances["a"]));
  GoOnToTheEnd();

  EXPECT_EQ(GetShown(), "");
}

TEST_F(VisibilityQueue, Removal_OfWhatComesNext_LeavesTheRestToBeDone)
{
  Hide({"files"});
  GoOn(4);

  for (const char* const name : {"a2", "a3", "a4", "b"}) {
    ASSERT_TRUE(tree->Remove(instances[name]));
  }
  GoOnToTheEnd();

  EXPECT_EQ(GetShown(), "");
}

TEST_F(VisibilityQueue, Removal_OfAllThatIsToBeDone_Ends)
{
  Hide({"files"});
  GoOn(4);

  ASSERT_TRUE(tree->Remove(instances["files"]));
  instances.clear();
  GoOnToTheEnd();

  EXPECT_TRUE(queue.IsEmpty());
}

TEST_F(VisibilityQueue, Clear_InTheMiddle_LeavesTheRestAsItIs)
{
  Hide({"files"});
  GoOn(4);
  const std::string shown = GetShown();

  queue.Clear();

  EXPECT_TRUE(queue.GoOn(QDeadlineTimer(0)));
  EXPECT_EQ(GetShown(), shown);
  EXPECT_NE(shown, "");
}

TEST_F(VisibilityQueue, ACommandFromACallback_ComesInItsTurn)
{
  counter->onChange = [this] {
    counter->onChange = {};
    Show({"a"});
  };
  Hide({"a", "b"});

  GoOnToTheEnd();

  EXPECT_EQ(GetShown(), "a1 a2 a3 a4 c1 c2 c3 c4");
}

TEST_F(VisibilityQueue, ClearFromACallback_EndsAll)
{
  counter->onChange = [this] { queue.Clear(); };
  Hide({"files"});

  GoOnToTheEnd();

  EXPECT_EQ(counter->changes, 1);
}

}  // namespace
