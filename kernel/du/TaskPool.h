#pragma once

#include "du/SmartPtr.h"
#include "du/Task.h"

namespace du {

/// Runs tasks on worker threads. Supplied by the kernel, lives as long as its world.
class TaskPool {
public:
  TaskPool() = default;
  TaskPool(const TaskPool&) = delete;
  TaskPool& operator=(const TaskPool&) = delete;
  virtual ~TaskPool() = default;

  /// Owner's thread. Hands the task over to a worker; never refused while the world lives, and false afterwards or for
  /// a null task. Each accepted task is run or handed back by `Abort`, and the pool's own reference is released on the
  /// owner's thread in both cases, since the last reference to a result must not die on a worker. Tasks of one pool
  /// that share a queue run in the order of insertion, so a cancelled older one never ends after a newer one.
  virtual bool InsertTask(const SmartPtr<Task>& task) = 0;
};

}  // namespace du
