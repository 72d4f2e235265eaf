#include "filter/TCAsyncEvent.h"

namespace guitree {

TreeController::TCAsyncEvent::TCAsyncEvent(TreeController* owner) : AsyncEvent(true), controller(owner) {}

du::Symbol TreeController::TCAsyncEvent::GetObjectClass() const
{
  static const du::Symbol s_class("guitree::TreeController::TCAsyncEvent");
  return s_class;
}

void TreeController::TCAsyncEvent::OnComplete(unsigned short status)
{
  if (controller) {
    controller->_EventComplete(du::SmartPtr<TCAsyncEvent>(this), status == StatusCompleted);
  }
}

}  // namespace guitree
