#pragma once

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "zelk/AsyncEvent.h"

namespace zelk {

/// What a host shows for an event under way. The kernel holds it until the event has completed. Owner's thread.
class ProgressCtrl : public virtual du::RefCounted {
public:
  explicit ProgressCtrl(const du::SmartPtr<AsyncEvent>& event);
  ~ProgressCtrl() override;

  [[nodiscard]] const du::SmartPtr<AsyncEvent>& GetEvent() const noexcept { return m_event; }

  /// 0 to 100 as a rule; work that consists of several passes may report more on the way.
  virtual void OnProgress(unsigned char percent);
  /// The event has completed; nothing follows.
  virtual void OnFinished();

private:
  du::SmartPtr<AsyncEvent> m_event;
};

}  // namespace zelk
