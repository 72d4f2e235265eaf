#pragma once

#include <functional>
#include <set>

#include "structure_utils/TreeFilterInfoBase.h"

namespace testsupport {

/// A filter that answers what its members say, and starts out switched off. Duplicates share what the functions hold.
class ScriptedFilter : public structure_utils::TreeFilterInfoBase {
public:
  using Instance = du::SmartPtr<zelk::BaseInstance>;

  /// Whether an instance is filtered out, in the hidden pass or in the visible one; without a function none is.
  std::function<bool(const Instance& instance, bool hiddenPass)> filtersOut;
  /// The same for `IsRootFilteredOut`.
  std::function<bool(const Instance& instance)> filtersOutAtRoot;
  /// Sees all arguments of `IsFilteredOut` before it is answered.
  std::function<void(const Instance& instance, std::set<Instance>& selected, bool hiddenPass,
                     du::SmartPtr<du::RefCounted>& additionalInfo, unsigned int* count)>
      onAsked;
  bool isFiltering = false;
  bool dynamicUpdate = false;
  bool filteringName = false;
  bool filteringSel = false;
  bool filteringUsingView = false;
  bool hasHiddenPass = false;
  bool isHiddenPassAll = false;
  bool showSiblings = false;
  bool hideBodies = false;
  bool sortAscending = true;
  du::DualSymbol sortColumn;

  [[nodiscard]] TreeFilterInfoBase* Duplicate() override { return new ScriptedFilter(*this); }
  [[nodiscard]] bool IsFiltering(bool /*withHidden*/) const override { return isFiltering; }
  [[nodiscard]] bool IsHiddenFilter(bool hiddenOnly) const override
  {
    return hiddenOnly ? isHiddenPassAll : hasHiddenPass;
  }
  [[nodiscard]] bool IsFilteringBase(bool /*withHidden*/) const override { return isFiltering; }
  [[nodiscard]] bool IsRootFilteredOut(const du::SmartPtr<zelk::BaseInstance>& instance) override
  {
    return filtersOutAtRoot && filtersOutAtRoot(instance);
  }
  [[nodiscard]] bool IsFilteredOut(const du::SmartPtr<zelk::BaseInstance>& instance,
                                   std::set<du::SmartPtr<zelk::BaseInstance>>& selected, bool hiddenPass,
                                   du::SmartPtr<du::RefCounted>& additionalInfo, unsigned int* count) override
  {
    if (onAsked) {
      onAsked(instance, selected, hiddenPass, additionalInfo, count);
    }
    return filtersOut && filtersOut(instance, hiddenPass);
  }
  [[nodiscard]] bool HasDynamicUpdateOption() override { return true; }
  [[nodiscard]] bool GetDynamicUpdate() override { return dynamicUpdate; }
  void SetDynamicUpdate(bool on) override { dynamicUpdate = on; }
  [[nodiscard]] bool GetFilteringName() override { return filteringName; }
  [[nodiscard]] bool GetFilteringParts() override { return false; }
  [[nodiscard]] bool GetFilteringBodies() override { return false; }
  [[nodiscard]] bool GetFilteringColumns() override { return false; }
  [[nodiscard]] bool GetFilteringSel() override { return filteringSel; }
  [[nodiscard]] bool GetEnsureExpanded() override { return false; }
  [[nodiscard]] bool GetShowSiblings() override { return showSiblings; }
  [[nodiscard]] bool GetFilteringVis() override { return false; }
  [[nodiscard]] bool GetFilteringIssues() override { return false; }
  [[nodiscard]] bool GetNotSyncPartsStatus() const override { return false; }
  [[nodiscard]] bool IsFilteringUsingView() override { return filteringUsingView; }
  [[nodiscard]] bool GetSortDirection() const override { return sortAscending; }
  [[nodiscard]] bool GetMatchCase() const override { return false; }
  [[nodiscard]] bool GetMatchWholeWord() const override { return false; }
  [[nodiscard]] du::DualSymbol GetSortColumn() override { return sortColumn; }
  [[nodiscard]] bool GetCollapseInstances() const override { return false; }
  [[nodiscard]] bool GetHideBodies() const override { return hideBodies; }
};

}  // namespace testsupport
