#include "guitree/FilterObserverBase.h"

namespace guitree {

void FilterObserverBase::OnProcessingComplete(const du::SmartPtr<zelk::BaseTree>& /*tree*/, GuiInterface* /*gui*/) {}

}  // namespace guitree
