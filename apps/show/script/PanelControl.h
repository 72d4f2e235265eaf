#pragma once

#include "FilterSettings.h"
#include "zelk/BaseInstance.h"

namespace script {

/// What a script does to the panel itself, as its user does. Owner's thread.
class PanelControl {
public:
  virtual ~PanelControl() = default;

  virtual void SetInSight(bool isInSight) = 0;
  /// Settings without a fault. Those that filter nothing bring everything back.
  virtual void SetFilter(const FilterSettings& settings) = 0;
  [[nodiscard]] virtual const FilterSettings& GetFilter() const = 0;
  /// Filters that are begun from now on stop at their first match, until this is turned off again.
  virtual void HoldFilters(bool on) = 0;
  /// False where no filter is at work.
  virtual bool CancelFilter() = 0;
  /// Opens what is left out below a row; false where there is no such row, or nothing to open.
  virtual bool Expand(const zelk::BaseInstance& instance) = 0;

protected:
  PanelControl() = default;
  PanelControl(const PanelControl&) = default;
  PanelControl& operator=(const PanelControl&) = default;
};

}  // namespace script
