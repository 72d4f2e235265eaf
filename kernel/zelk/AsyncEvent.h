#pragma once

#include "zelk/BaseAsyncEvent.h"

namespace zelk {

/// The event that a caller hands to an operation of the kernel, or to a task of its own, to hear of its end.
class AsyncEvent : public BaseAsyncEvent {
public:
  /// `hasWorker`: see `BaseAsyncEvent`.
  explicit AsyncEvent(bool hasWorker);
  ~AsyncEvent() override;
};

}  // namespace zelk
