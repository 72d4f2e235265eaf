#pragma once

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "zelk/BaseTree.h"

namespace guitree {

class GuiInterface;

/// Listener on a `TreeController`. Owner's thread.
class FilterObserverBase : public virtual du::RefCounted {
public:
  FilterObserverBase() = default;
  FilterObserverBase(const FilterObserverBase&) = default;
  FilterObserverBase& operator=(const FilterObserverBase&) = default;
  ~FilterObserverBase() override = default;

  /// The last filter job under way has ended, whatever its outcome. `tree` and `gui` are those of that job.
  virtual void OnProcessingComplete(const du::SmartPtr<zelk::BaseTree>& tree, GuiInterface* gui);
};

}  // namespace guitree
