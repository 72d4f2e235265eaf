#pragma once

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "zelk/ProgressCtrl.h"

namespace zelk {

/// Feeds the progress controls of hosts. Supplied by the kernel. Owner's thread.
class ProgressController : public virtual du::RefCounted {
public:
  /// Holds the control and calls it until its event has completed. Null, and a control without an event, are ignored.
  virtual void AddCtrl(du::SmartPtr<ProgressCtrl> ctrl) = 0;
};

}  // namespace zelk
