#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "guitree/StructureFilteredTree.h"
#include "guitree/StructureTreeState.h"

namespace systemtest {

/// Lets the test in at the first question of a job.
class State final : public guitree::StructureTreeState {
public:
  explicit State(guitree::GuiTree& tree) : StructureTreeState(tree, true) {}
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() override { _DetachStatusLookups(); }

  [[nodiscard]] guitree::FilteredTree* CreateFilteredTree() override { return std::make_unique<Tree>(*this).release(); }

  /// Runs once.
  std::function<void()> onQuestion;

private:
  class Tree final : public guitree::StructureFilteredTree {
  public:
    explicit Tree(State& state) : m_state(state) {}

  protected:
    [[nodiscard]] bool ForceCheckFilteringForAllItems(bool hiddenPass) override
    {
      if (m_state.onQuestion) {
        std::exchange(m_state.onQuestion, nullptr)();
      }
      return StructureFilteredTree::ForceCheckFilteringForAllItems(hiddenPass);
    }

  private:
    State& m_state;
  };
};

}  // namespace systemtest
