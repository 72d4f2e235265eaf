#pragma once

#include "du/SmartPtr.h"
#include "zelk/Object.h"
#include "zelk/Observer.h"

namespace zelk {

/// Listens to the markups of a scene or a view.
class MarkupHolderObserver : public Observer {
public:
  virtual void OnMarkupCreate(const du::SmartPtr<Object>& markup);
  virtual void OnMarkupRemove(const du::SmartPtr<Object>& markup);
  virtual void OnMarkupVisibility(const du::SmartPtr<Object>& markup, bool visible);
};

}  // namespace zelk
