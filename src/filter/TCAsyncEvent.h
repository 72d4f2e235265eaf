#pragma once

#include "guitree/GenerateFilteredTreeTask.h"
#include "guitree/TreeController.h"
#include "zelk/AsyncEvent.h"

namespace guitree {

/// One filter job of a `TreeController`, which clears the back pointer when it goes first. Holds the task, and with it
/// the result, until it has completed.
class TreeController::TCAsyncEvent : public zelk::AsyncEvent {
public:
  explicit TCAsyncEvent(TreeController* owner);

  [[nodiscard]] du::Symbol GetObjectClass() const override;

  TreeController* controller;
  /// Null until the task is made.
  du::SmartPtr<GenerateFilteredTreeTask> task;

protected:
  void OnComplete(unsigned short status) override;
};

}  // namespace guitree
