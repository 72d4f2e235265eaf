#include <gtest/gtest.h>

#include <atomic>
#include <iostream>
#include <random>
#include <thread>

#include "LiveStage.h"

namespace {

using filtertest::LiveStage;

unsigned int MakeSeed()
{
  const unsigned int seed = std::random_device{}();
  std::cout << "seed " << seed << '\n';
  return seed;
}

/// A user who types, and does everything else in between.
class User {
public:
  User(LiveStage& stage, unsigned int seed) : m_stage(stage), m_random(seed) {}

  void TypeAKey()
  {
    static constexpr const char* s_texts[] = {"b", "bo", "bol", "bolt", "bolt1", "n", "nut", "r", "ri", "zzz", ""};
    m_text = s_texts[Pick(std::size(s_texts))];
    m_stage.SetFilterText(m_text);
    m_stage.state->PopulateTree(true);
  }
  void DoSomethingElse()
  {
    switch (Pick(7)) {
      case 0:
        m_stage.GetTree().Rename(PickInstance(), LiveStage::MakeName(Pick(1000)));
        break;
      case 1:
        Add();
        break;
      case 2:
        Remove();
        break;
      case 3:
        Select();
        break;
      case 4:
        Show(false);
        break;
      case 5:
        Show(true);
        break;
      default:
        m_stage.RunTurn();
        break;
    }
  }
  void Show(bool on)
  {
    m_stage.host.isTreeVisibleInUI = on;
    m_stage.state->MadeVisible(on);
  }
  [[nodiscard]] const std::string& GetText() const { return m_text; }

private:
  [[nodiscard]] std::size_t Pick(std::size_t end)
  {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(m_random);
  }
  [[nodiscard]] const du::SmartPtr<memkernel::Instance>& PickInstance()
  {
    return m_stage.all[Pick(m_stage.all.size())];
  }
  void Add()
  {
    m_stage.all.push_back(m_stage.GetTree().AddChild(PickInstance(), m_stage.part, LiveStage::MakeName(Pick(1000))));
  }
  void Remove()
  {
    const du::SmartPtr<memkernel::Instance> top = PickInstance();
    if (top == m_stage.all.front()) {
      return;
    }
    m_stage.GetTree().Remove(top);
    std::set<const zelk::BaseInstance*> present;
    for (const auto* instance : m_stage.ListExpectedRows("")) {
      present.insert(instance);
    }
    std::erase_if(m_stage.all, [&](const auto& instance) { return !present.contains(instance.Get()); });
  }
  void Select()
  {
    const auto operation = Pick(3) == 0 ? zelk::SelectionManager::OperationSet : zelk::SelectionManager::OperationAdd;
    m_stage.world->GetMemSelectionManager().ApplyInstances(zelk::SelectionManager::SelectionList, {PickInstance()},
                                                           operation);
  }

  LiveStage& m_stage;
  std::mt19937 m_random;
  std::string m_text;
};

TEST(FilterJobThreads, AFilterOnEveryKeystrokeWhileTheTreeIsEdited_EndsInTheRowsOfTheLastOne)
{
  const unsigned int seed = MakeSeed();
  LiveStage stage(500);
  std::atomic<std::size_t> selectedCount{0};
  stage.state->filter.onAsked = [&](const auto&, auto& selected, bool, auto&, unsigned int*) {
    selectedCount.fetch_add(selected.size(), std::memory_order_relaxed);
  };
  stage.gui->Initialise(stage.world);
  User user(stage, seed);

  for (int i = 0; i < 300; ++i) {
    user.TypeAKey();
    for (int j = 0; j < 3; ++j) {
      user.DoSomethingElse();
      ASSERT_TRUE(stage.IsInStep());
      ASSERT_EQ(stage.state->IsBusy(), stage.GetController().IsBusy());
    }
  }
  user.Show(true);
  user.TypeAKey();
  ASSERT_TRUE(stage.RunUntilIdle());

  EXPECT_TRUE(stage.IsInStep());
  EXPECT_FALSE(stage.host.isCalculating);
  EXPECT_EQ(stage.ListRows(), stage.ListExpectedRows(user.GetText()));
  EXPECT_GT(stage.host.bursts, 0U);
  EXPECT_GT(selectedCount, 0U);
}

TEST(FilterJobThreads, AThousandFiltersInARowWithRandomCancels_AreAllBookedAndTheLastOneWins)
{
  const unsigned int seed = MakeSeed();
  LiveStage stage(300);
  stage.gui->Initialise(stage.world);
  User user(stage, seed);
  std::mt19937 random(seed);
  const auto happens = [&](unsigned int outOf) { return random() % outOf == 0; };

  for (int i = 0; i < 1000; ++i) {
    user.TypeAKey();
    if (happens(3)) {
      stage.host.underWay[random() % stage.host.underWay.size()]->Cancel();
    }
    if (happens(4)) {
      std::this_thread::yield();
      stage.RunTurn();
    }
    if (happens(50)) {
      ASSERT_TRUE(stage.RunUntilIdle());
    }
    ASSERT_TRUE(stage.IsInStep());
  }
  user.TypeAKey();
  ASSERT_TRUE(stage.RunUntilIdle());

  EXPECT_TRUE(stage.IsInStep());
  EXPECT_EQ(stage.host.started, 1001U);
  EXPECT_FALSE(stage.state->IsBusy());
  EXPECT_FALSE(stage.host.isCalculating);
  EXPECT_EQ(stage.ListRows(), stage.ListExpectedRows(user.GetText()));
}

TEST(FilterJobThreads, ACancelOfTheLastJobShowsTheRootWithAPlaceholderOrAllOfIt)
{
  LiveStage stage(2000);
  stage.gui->Initialise(stage.world);
  stage.SetFilterText("bolt");
  const auto expected = stage.ListExpectedRows("bolt");

  for (int i = 0; i < 30; ++i) {
    stage.state->PopulateTree(false);
    stage.host.underWay.back()->Cancel();
    ASSERT_TRUE(stage.RunUntilIdle());

    const auto rows = stage.ListRows();
    const auto* const root = stage.gui->GetFilteredTree()->GetRoot();
    if (!root) {
      EXPECT_TRUE(rows.empty());
    } else if (!root->firstChild->instance) {
      EXPECT_EQ(rows, std::vector<const zelk::BaseInstance*>{stage.all.front().Get()});
      EXPECT_TRUE(stage.state->ExpandFilterNode({stage.all.front().Get()}));
      EXPECT_EQ(stage.ListRows().size(), stage.all.size());
    } else {
      EXPECT_EQ(rows, expected);
    }
  }
}

TEST(FilterJobThreads, TwoPanelsOnOneTreeFilterBesideEachOther)
{
  LiveStage stage(500);
  stage.gui->Initialise(stage.world);
  filtertest::BookingHost otherHost;
  const auto otherGui = du::MakeSmart<guitree::GuiTree>(stage.world->CreateManagedObject());
  const auto otherState = du::MakeSmart<testsupport::ScriptedWorldTreeState>(*otherGui);
  otherGui->SetGuiInterface(&otherHost);
  otherGui->SetTreeState(otherState);
  otherGui->Initialise(stage.world);

  for (int i = 0; i < 50; ++i) {
    stage.SetFilterText("bolt");
    stage.state->PopulateTree(false);
    otherState->filter = stage.state->filter;
    stage.SetFilterText("nut");
    otherState->PopulateTree(false);
    stage.state->PopulateTree(false);
  }
  ASSERT_TRUE(stage.RunUntilIdle());
  ASSERT_TRUE(stage.world->GetLoop().RunUntil([&] { return otherHost.underWay.empty(); }));

  EXPECT_EQ(stage.ListRows(), stage.ListExpectedRows("nut"));
  std::vector<const zelk::BaseInstance*> others;
  for (const auto& row : otherHost.order) {
    others.push_back(row.Get());
  }
  EXPECT_EQ(others, stage.ListExpectedRows("bolt"));
  otherGui->Reset();
  otherGui->Close();
}

}  // namespace
