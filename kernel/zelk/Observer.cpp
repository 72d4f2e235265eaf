#include "zelk/Observer.h"

namespace zelk {

bool Observer::RequiresBeginEnd() const
{
  return true;
}

void Observer::OnBeginUpdate() {}

void Observer::OnEndUpdate() {}

void Observer::OnUnregister() {}

bool Observer::ZeroReferenceCountHook() const
{
  return _AgreesToDie();
}

void Observer::EventHandler(const du::SmartPtr<dom::Message>& /*message*/) {}

void Observer::HandleMessage(const du::SmartPtr<dom::Message>& message)
{
  EventHandler(message);
}

}  // namespace zelk
