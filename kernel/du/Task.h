#pragma once

#include <string>

#include "du/RefCounted.h"

namespace du {

/// A piece of work for a `du::TaskPool`. It is made and released on the owner's thread; only `Run` is called elsewhere.
class Task : public virtual RefCounted {
public:
  Task() = default;
  Task(const Task&) = default;
  Task& operator=(const Task&) = default;
  ~Task() override;

  /// For traces; empty by default.
  [[nodiscard]] virtual std::string GetName() const;
  /// Higher runs sooner where a pool looks at it; 0 by default.
  [[nodiscard]] virtual float GetPriority() const;
  /// The work itself, called once, on a worker.
  virtual void Run() = 0;
  /// Called on the owner's thread some time after `Run` has ended, before the pool lets go of the task.
  virtual void TaskComplete();
  /// Called on the owner's thread after `TaskComplete`, for results that are published late.
  virtual void FlushResults();
  /// Called on the owner's thread instead of `Run` when the pool ends before the task was started.
  virtual void Abort();
};

}  // namespace du
