#include <gtest/gtest.h>

#include <iostream>
#include <random>
#include <thread>

#include "LiveStage.h"

namespace {

using filtertest::LiveStage;

/// The owner of a tree whose root does not stay as it is.
class Owner {
public:
  Owner(LiveStage& stage, unsigned int seed) : m_stage(stage), m_random(seed) { std::cout << "seed " << seed << '\n'; }

  void StartAFilter()
  {
    static constexpr const char* s_texts[] = {"bolt", "nut", "1", "part", "zzz"};
    m_text = s_texts[_Pick(std::size(s_texts))];
    m_stage.SetFilterText(m_text);
    m_stage.state->PopulateTree(true);
  }
  void SetFlagsOfTheRoot()
  {
    m_isIcon = !m_isIcon;
    m_stage.GetTree().SetFlags(m_stage.all.front(), memkernel::InstancePlainIcon | memkernel::InstanceBodyType,
                               m_isIcon);
  }
  void RenameTheRoot() { m_stage.GetTree().Rename(m_stage.all.front(), LiveStage::MakeName(_Pick(1000))); }
  void RemoveTheRoot()
  {
    m_stage.GetTree().Remove(m_stage.all.front());
    m_stage.all.clear();
  }
  /// Every other instance goes by the name of the product, which outlives each root.
  void MakeATree(std::size_t instances)
  {
    auto& all = m_stage.all;
    all.push_back(m_stage.GetTree().CreateRoot(m_stage.part));
    for (std::size_t i = 1; i < instances; ++i) {
      const du::Symbol name = i % 2 == 0 ? du::Symbol() : LiveStage::MakeName(i);
      all.push_back(m_stage.GetTree().AddChild(all[(i - 1) / 4], m_stage.part, name));
    }
  }
  void RenameTheProduct() { m_stage.GetTree().RenameProduct(m_stage.part, LiveStage::MakeName(_Pick(1000))); }
  /// Lets a worker come anywhere between the start of its job and the end of it.
  void Dawdle()
  {
    for (std::size_t turn = _Pick(4); turn > 0; --turn) {
      std::this_thread::yield();
    }
  }
  [[nodiscard]] const std::string& GetText() const { return m_text; }

private:
  [[nodiscard]] std::size_t _Pick(std::size_t end)
  {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(m_random);
  }

  LiveStage& m_stage;
  std::mt19937 m_random;
  std::string m_text;
  bool m_isIcon = false;
};

void ExpectTheRowsOfALastFilter(LiveStage& stage, Owner& owner)
{
  owner.StartAFilter();
  ASSERT_TRUE(stage.RunUntilIdle());

  EXPECT_TRUE(stage.IsInStep());
  EXPECT_EQ(stage.ListRows(), stage.ListExpectedRows(owner.GetText()));
}

TEST(FilterJobRootThreads, JobsThatStartWhileTheOwnerSetsFlagsOfTheRoot_EndInTheRowsOfTheLastOne)
{
  LiveStage stage(200);
  stage.gui->Initialise(stage.world);
  Owner owner(stage, std::random_device{}());

  for (int i = 0; i < 200; ++i) {
    owner.StartAFilter();
    for (int k = 0; k < 5; ++k) {
      owner.Dawdle();
      owner.SetFlagsOfTheRoot();
      owner.RenameTheRoot();
    }
    stage.RunTurn();
    ASSERT_TRUE(stage.IsInStep());
  }
  ExpectTheRowsOfALastFilter(stage, owner);
}

TEST(FilterJobRootThreads, JobsThatStartWhileTheRootIsRemovedAndMadeAnew_EndInTheRowsOfTheLastTree)
{
  LiveStage stage(100);
  stage.gui->Initialise(stage.world);
  Owner owner(stage, std::random_device{}());

  for (int i = 0; i < 200; ++i) {
    owner.StartAFilter();
    owner.Dawdle();
    owner.RemoveTheRoot();
    owner.RenameTheProduct();
    owner.MakeATree(100);
    owner.SetFlagsOfTheRoot();
    stage.RunTurn();
    ASSERT_TRUE(stage.IsInStep());
  }
  ExpectTheRowsOfALastFilter(stage, owner);
}

TEST(FilterJobRootThreads, JobsOfATreeThatIsEmptied_LeaveNothingForTheNextOneToShow)
{
  LiveStage stage(100);
  stage.gui->Initialise(stage.world);
  Owner owner(stage, std::random_device{}());

  for (int i = 0; i < 100; ++i) {
    owner.StartAFilter();
    owner.Dawdle();
    owner.RemoveTheRoot();
    owner.RenameTheProduct();
    ASSERT_TRUE(stage.RunUntilIdle());
    owner.StartAFilter();
    ASSERT_TRUE(stage.RunUntilIdle());

    EXPECT_TRUE(stage.IsInStep());
    EXPECT_TRUE(stage.host.rows.empty());
    owner.MakeATree(100);
  }
}

}  // namespace
