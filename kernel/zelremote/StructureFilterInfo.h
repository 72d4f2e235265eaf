#pragma once

#include <cstdint>

#include "du/Symbol.h"
#include "structure_utils/TreeFilterInfoBase.h"

namespace zelremote {

/// The filter of a structure panel, stored in the preferences under its name. It has no criteria yet: it carries how
/// the panel is presented and lets every instance through.
class StructureFilterInfo : public structure_utils::TreeFilterInfoBase {
public:
  /// `name` tells the filters of one host apart, as a rule by view type.
  explicit StructureFilterInfo(const du::Symbol& name);

  [[nodiscard]] const du::Symbol& GetName() const noexcept { return m_name; }

  /// Reads the five members below from the preferences of the running world, each under "Structure Filter/NAME/" and
  /// the member's name in small letters with underscores ("list_mode"). What is not stored, or stored as another type,
  /// and everything while no kernel runs, keeps its value.
  void LoadFromPreferences();

  [[nodiscard]] structure_utils::TreeFilterInfoBase* Duplicate() override;
  [[nodiscard]] bool IsFiltering(bool withHidden) const override;
  [[nodiscard]] bool IsHiddenFilter(bool hiddenOnly) const override;
  [[nodiscard]] bool IsFilteringBase(bool withHidden) const override;
  [[nodiscard]] bool IsRootFilteredOut(const du::SmartPtr<zelk::BaseInstance>& instance) override;
  [[nodiscard]] bool IsFilteredOut(const du::SmartPtr<zelk::BaseInstance>& instance,
                                   std::set<du::SmartPtr<zelk::BaseInstance>>& selected, bool hiddenPass,
                                   du::SmartPtr<du::RefCounted>& additionalInfo, unsigned int* count) override;
  [[nodiscard]] bool HasDynamicUpdateOption() override;
  [[nodiscard]] bool GetDynamicUpdate() override;
  void SetDynamicUpdate(bool dynamicUpdate) override;
  [[nodiscard]] bool GetFilteringName() override;
  [[nodiscard]] bool GetFilteringParts() override;
  [[nodiscard]] bool GetFilteringBodies() override;
  [[nodiscard]] bool GetFilteringColumns() override;
  [[nodiscard]] bool GetFilteringSel() override;
  [[nodiscard]] bool GetEnsureExpanded() override;
  [[nodiscard]] bool GetShowSiblings() override;
  [[nodiscard]] bool GetFilteringVis() override;
  [[nodiscard]] bool GetFilteringIssues() override;
  [[nodiscard]] bool GetNotSyncPartsStatus() const override;
  [[nodiscard]] bool IsFilteringUsingView() override;
  [[nodiscard]] bool GetSortDirection() const override;
  [[nodiscard]] bool GetMatchCase() const override;
  [[nodiscard]] bool GetMatchWholeWord() const override;
  [[nodiscard]] du::DualSymbol GetSortColumn() override;
  [[nodiscard]] bool GetCollapseInstances() const override;
  [[nodiscard]] bool GetHideBodies() const override;

  /// 1 asks for the list presentation of a result, any other value for the tree.
  std::int32_t listMode = 0;
  bool collapseInstances = false;
  bool hideBodies = false;
  bool useResultsList = false;
  bool resultsListLive = false;

private:
  du::Symbol m_name;
  bool m_dynamicUpdate = false;
};

}  // namespace zelremote
