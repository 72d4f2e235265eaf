#pragma once

#include "guitree/TreeController.h"
#include "zelk/AsyncEvent.h"

namespace guitree {

/// One filter job of a `TreeController`, which clears the back pointer when it goes first.
class TreeController::TCAsyncEvent : public zelk::AsyncEvent {
public:
  explicit TCAsyncEvent(TreeController* owner) : AsyncEvent(true), controller(owner) {}

  TreeController* controller;
};

}  // namespace guitree
