#include "zelk/SelectionObserver.h"

namespace zelk {

void SelectionObserver::EventHandler(const du::SmartPtr<dom::Message>& /*message*/) {}

void SelectionObserver::OnSelectionChanged(unsigned int /*list*/, bool /*clearFirst*/,
                                           const std::vector<du::SmartPtr<SelectionItem>>& /*removed*/,
                                           const std::vector<du::SmartPtr<SelectionItem>>& /*added*/)
{
}

void SelectionObserver::OnInsertItems(std::vector<du::SmartPtr<Object>>& /*items*/) {}

void SelectionObserver::OnRemoveItems(std::vector<du::SmartPtr<Object>>& /*items*/) {}

void SelectionObserver::OnClearSelection() {}

void SelectionObserver::OnBeginUpdate() {}

void SelectionObserver::OnEndUpdate() {}

bool SelectionObserver::ZeroReferenceCountHook() const
{
  return _AgreesToDie();
}

void SelectionObserver::HandleMessage(const du::SmartPtr<dom::Message>& message)
{
  EventHandler(message);
}

}  // namespace zelk
