#pragma once

#include <string>

#include "FilterSettings.h"
#include "du/SmartPtr.h"
#include "structure_utils/TreeResultsList.h"
#include "zelk/BaseInstance.h"
#include "zelk/View.h"

namespace script {

/// What a script does to the panel itself, as its user does. Owner's thread.
class PanelControl {
public:
  virtual ~PanelControl() = default;

  virtual void SetInSight(bool isInSight) = 0;
  /// Views are of one type until they are given another one.
  virtual void SetViewType(const du::SmartPtr<zelk::View>& view, const std::string& type) = 0;
  /// The view, or none for null, is about to become the current one.
  virtual void PrepareView(const du::SmartPtr<zelk::View>& view) = 0;
  virtual void SetShowingBodies(bool on) = 0;
  /// Whether the first of equal siblings stands for all of them.
  virtual void SetCollapsing(bool on) = 0;
  [[nodiscard]] virtual bool IsCollapsing() const = 0;
  /// The filter of the current view's type. Settings without a fault; those that filter nothing bring everything back.
  virtual void SetFilter(const FilterSettings& settings) = 0;
  [[nodiscard]] virtual const FilterSettings& GetFilter() const = 0;
  /// What filters that look at a list of results go by; null for none.
  virtual void SetResults(const du::SmartPtr<structure_utils::TreeResultsList>& results) = 0;
  /// Filters that are begun from now on stop at their first match, until this is turned off again.
  virtual void HoldFilters(bool on) = 0;
  /// False where no filter is at work.
  virtual bool CancelFilter() = 0;
  /// What came of opening a row; all but the first: why it was not opened.
  enum class Expansion { Done, FilterAtWork, NoRow, NothingLeftOut };
  /// Opens what is left out below the row of an instance.
  virtual Expansion Expand(const zelk::BaseInstance& instance) = 0;

protected:
  PanelControl() = default;
  PanelControl(const PanelControl&) = default;
  PanelControl& operator=(const PanelControl&) = default;
};

}  // namespace script
