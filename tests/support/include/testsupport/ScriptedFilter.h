#pragma once

#include "structure_utils/TreeFilterInfoBase.h"

namespace testsupport {

/// A filter that answers what its members say, and starts out switched off.
class ScriptedFilter : public structure_utils::TreeFilterInfoBase {
public:
  bool isFiltering = false;
  bool dynamicUpdate = false;
  bool filteringName = false;
  bool filteringSel = false;
  bool filteringUsingView = false;
  du::DualSymbol sortColumn;

  [[nodiscard]] TreeFilterInfoBase* Duplicate() override { return new ScriptedFilter(*this); }
  [[nodiscard]] bool IsFiltering(bool /*withHidden*/) const override { return isFiltering; }
  [[nodiscard]] bool IsHiddenFilter(bool /*hiddenOnly*/) const override { return false; }
  [[nodiscard]] bool IsFilteringBase(bool /*withHidden*/) const override { return isFiltering; }
  [[nodiscard]] bool IsRootFilteredOut(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) override { return false; }
  [[nodiscard]] bool IsFilteredOut(const du::SmartPtr<zelk::BaseInstance>& /*instance*/,
                                   std::set<du::SmartPtr<zelk::BaseInstance>>& /*selected*/, bool /*hiddenPass*/,
                                   du::SmartPtr<du::RefCounted>& /*additionalInfo*/, unsigned int* /*count*/) override
  {
    return false;
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
  [[nodiscard]] bool GetShowSiblings() override { return false; }
  [[nodiscard]] bool GetFilteringVis() override { return false; }
  [[nodiscard]] bool GetFilteringIssues() override { return false; }
  [[nodiscard]] bool GetNotSyncPartsStatus() const override { return false; }
  [[nodiscard]] bool IsFilteringUsingView() override { return filteringUsingView; }
  [[nodiscard]] bool GetSortDirection() const override { return true; }
  [[nodiscard]] bool GetMatchCase() const override { return false; }
  [[nodiscard]] bool GetMatchWholeWord() const override { return false; }
  [[nodiscard]] du::DualSymbol GetSortColumn() override { return sortColumn; }
  [[nodiscard]] bool GetCollapseInstances() const override { return false; }
  [[nodiscard]] bool GetHideBodies() const override { return false; }
};

}  // namespace testsupport
