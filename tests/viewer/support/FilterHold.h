#pragma once

#include <memory>
#include <string>
#include <vector>

#include "MainWindow.h"

namespace viewertest {

/// Binds the panel of a window anew, so that a filter job can be made to wait at its first match, as if the tree were
/// endless: on its worker, with the tree locked, until it is let go of or cancelled. All calls to the panel's host are
/// checked on their way. Owner's thread; ends after the window.
class FilterHold {
public:
  explicit FilterHold(viewer::MainWindow& window);
  FilterHold(const FilterHold&) = delete;
  FilterHold& operator=(const FilterHold&) = delete;
  ~FilterHold();

  /// Of the jobs that begin from now on, the first one with a match waits.
  void HoldNext();
  /// Whether that job waits now.
  [[nodiscard]] bool IsReached() const;
  void LetGo();
  /// What was against the protocol of calls so far.
  [[nodiscard]] const std::vector<std::string>& GetViolations() const noexcept;

private:
  class Gate;
  class Tree;
  class State;
  class Host;

  const std::shared_ptr<Gate> m_gate;
  const std::unique_ptr<Host> m_host;
};

}  // namespace viewertest
