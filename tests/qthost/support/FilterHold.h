#pragma once

#include <future>

#include "Stage.h"

namespace qthosttest {

/// Holds the next filter job of a state at its first match, on its worker, until it is let go of.
class FilterHold {
public:
  explicit FilterHold(PanelState& state)
  {
    state.onMatch = [reached = &m_reached, gate = m_letGo.get_future().share()] {
      reached->set_value();
      gate.wait();
    };
  }
  FilterHold(const FilterHold&) = delete;
  FilterHold& operator=(const FilterHold&) = delete;
  ~FilterHold() { LetGo(); }

  void WaitUntilReached() { m_reached.get_future().wait(); }
  void LetGo()
  {
    if (!std::exchange(m_hasLetGo, true)) {
      m_letGo.set_value();
    }
  }

private:
  std::promise<void> m_reached;
  std::promise<void> m_letGo;
  bool m_hasLetGo = false;
};

/// Filters by a text, and cancels the job at its first match. Whether there was something to cancel.
inline bool FilterAndCancelAtWork(Stage& stage, const std::string& text)
{
  FilterHold hold(*stage.state);
  stage.GetFilter().SetText(text);
  stage.state->PopulateTree(false);
  hold.WaitUntilReached();
  const bool wasAtWork = stage.model.CancelFilter();
  hold.LetGo();
  stage.Settle();
  return wasAtWork;
}

}  // namespace qthosttest
