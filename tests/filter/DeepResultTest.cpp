#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "JobStage.h"

namespace {

using filtertest::JobStage;
using testing::SizeIs;

constexpr std::size_t s_depth = 10000;

/// A panel on a tree that is a chain of instances, on a host that writes nothing down.
struct Stage {
  /// Counts rows, and looks at their order.
  class Host : public testsupport::ScriptedHost {
  public:
    using ScriptedHost::InstanceCreate;

    std::size_t rowCount = 0;
    std::size_t placeholderCount = 0;
    bool isInOrder = true;
    du::SmartPtr<zelk::AsyncEvent> event;

    du::SmartPtr<zelk::ProgressCtrl> CreateFilterProgressCtrl(const du::SmartPtr<zelk::AsyncEvent>& jobEvent) override
    {
      event = jobEvent;
      return {};
    }
    void InstanceCreate(guitree::FilteredTree::Node* node,
                        const du::SmartPtr<guitree::TreeSelectionController>& /*controller*/,
                        bool /*assocHlight*/) override
    {
      isInOrder &= node->parent == m_last;
      m_last = node;
      ++rowCount;
    }
    void FilterNodeCreate(guitree::FilteredTree::Node* node) override
    {
      isInOrder &= node == m_last;
      ++placeholderCount;
    }

  private:
    const guitree::FilteredTree::Node* m_last = nullptr;
  };

  Stage()
  {
    const auto product = tree->CreateProduct({.name = "part"});
    leaf = tree->CreateRoot(product);
    for (std::size_t i = 1; i < s_depth; ++i) {
      leaf = tree->AddChild(leaf, product);
    }
    stage.gui->SetBaseTree(tree);
    stage.gui->SetGuiInterface(&host);
    stage.state->filter.isFiltering = true;
    stage.state->filter.filtersOut = [this](const auto& instance, bool) { return instance != leaf; };
  }
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  ~Stage() { stage.gui.Reset(); }

  Host host;
  JobStage stage{""};
  du::SmartPtr<memkernel::Tree> tree = du::MakeSmart<memkernel::Tree>();
  du::SmartPtr<memkernel::Instance> leaf;
};

/// A state that puts a frame of its own around each level, as those do that replace the visit.
class FramedState : public filtertest::JobState {
public:
  using JobState::JobState;

  std::size_t visitCount = 0;

protected:
  void _VisitFilteredTreeNode(guitree::FilteredTree::Node* node,
                              const du::SmartPtr<guitree::TreeSelectionController>& selection) override
  {
    const du::SmartPtr<zelk::BaseInstance> held(node->instance);
    TreeStateBase::_VisitFilteredTreeNode(node, selection);
    visitCount += held ? 1U : 0U;
  }
};

TEST(DeepResult, GetsARowForEachOfTenThousandLevels)
{
  Stage deep;

  deep.stage.state->PopulateTree(false);
  deep.stage.Finish();

  EXPECT_EQ(deep.host.rowCount, s_depth);
  EXPECT_TRUE(deep.host.isInOrder);
  EXPECT_THAT(deep.stage.state->GetNotFilteredSet(), SizeIs(s_depth));
}

TEST(DeepResult, OfAHiddenPassAndAVisibleOne_GetsARowForEachLevel)
{
  Stage deep;
  deep.stage.state->filter.hasHiddenPass = true;

  deep.stage.state->PopulateTree(false);
  deep.stage.Finish();

  EXPECT_EQ(deep.host.rowCount, s_depth);
  EXPECT_TRUE(deep.host.isInOrder);
}

TEST(DeepResult, IsShownByAStateThatReplacesTheVisit)
{
  Stage deep;
  const auto framed = du::MakeSmart<FramedState>(*deep.stage.gui);
  deep.stage.gui->SetTreeState(framed);
  framed->filter = deep.stage.state->filter;

  framed->PopulateTree(false);
  deep.stage.Finish();

  EXPECT_EQ(framed->visitCount, s_depth);
  EXPECT_EQ(deep.host.rowCount, s_depth);
}

TEST(DeepResult, IsFilledBelowAPlaceholderInOneGo)
{
  Stage deep;
  deep.stage.state->filter.onAsked = [&](auto&&...) { deep.host.event->Cancel(); };
  deep.stage.state->PopulateTree(false);
  deep.stage.Finish();
  ASSERT_EQ(deep.host.placeholderCount, 1U);

  EXPECT_TRUE(deep.stage.state->ExpandFilterNode({deep.tree->GetRootInstance().Get()}));

  EXPECT_EQ(deep.host.rowCount, s_depth);
  EXPECT_TRUE(deep.host.isInOrder);
}

}  // namespace
