#pragma once

#include "guitree/FilterObserverBase.h"
#include "guitree/TreeStateBase.h"

namespace guitree {

/// The listener of a tree state on the filter controller. The state clears `owner` when it ends.
class TreeStateBase::FilterObserver : public FilterObserverBase {
public:
  explicit FilterObserver(TreeStateBase* state) : owner(state) {}

  void OnProcessingComplete(const du::SmartPtr<zelk::BaseTree>& tree, GuiInterface* gui) override
  {
    if (owner) {
      owner->OnProcessingComplete(tree, gui);
    }
  }

  TreeStateBase* owner;
};

}  // namespace guitree
