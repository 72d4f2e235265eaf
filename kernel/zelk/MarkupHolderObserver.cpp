#include "zelk/MarkupHolderObserver.h"

namespace zelk {

void MarkupHolderObserver::OnMarkupCreate(const du::SmartPtr<Object>& /*markup*/) {}
void MarkupHolderObserver::OnMarkupRemove(const du::SmartPtr<Object>& /*markup*/) {}
void MarkupHolderObserver::OnMarkupVisibility(const du::SmartPtr<Object>& /*markup*/, bool /*visible*/) {}

}  // namespace zelk
