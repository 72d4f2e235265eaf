#pragma once

#include <memory>

#include "du/SmartPtr.h"
#include "guitree/FilteredTree.h"
#include "memkernel/OwnerLoop.h"

/// Where filter jobs wait in the middle of their work, as if the tree were endless, so that a script can show what
/// comes of edits and cancels meanwhile: a job waits once it has found its first match, since a result that is
/// cancelled without any has nothing below its root to be opened. One that finds none comes to its end. A job that
/// waits reads the tree. Owner's thread; ends before the loop. Jobs that wait go on when it ends.
class FilterHold {
public:
  /// `loop` is woken when a job has begun to wait.
  explicit FilterHold(const du::SmartPtr<memkernel::OwnerLoop>& loop);
  FilterHold(const FilterHold&) = delete;
  FilterHold& operator=(const FilterHold&) = delete;
  ~FilterHold();

  /// Whether jobs that are begun from now on wait. Turned off, those that wait go on.
  void SetOn(bool on);
  /// The tree for the next job, which the caller owns; null, for any other, while it need not wait. The jobs before
  /// it are not waited for any more.
  [[nodiscard]] guitree::FilteredTree* MakeTree();
  /// The jobs that have been begun go on; the next one waits.
  void LetGo();
  /// Whether the job that was begun last waits now.
  [[nodiscard]] bool IsReached() const;

private:
  class Gate;
  class Tree;

  const std::shared_ptr<Gate> m_gate;
  bool m_isOn = false;
};
