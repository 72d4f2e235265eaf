#pragma once

#include <set>

#include "du/DualSymbol.h"
#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"

namespace structure_utils {

/// The description of one filter, and its decision for each instance. A filter belongs to one thread at a time: a
/// background run works on a duplicate of its own.
class TreeFilterInfoBase {
public:
  virtual ~TreeFilterInfoBase() = default;

  /// A copy that the caller owns and may use in another thread.
  [[nodiscard]] virtual TreeFilterInfoBase* Duplicate() = 0;
  /// Whether the filter is on, so that the tree shows a result of it and not everything. Panels pass false: they leave
  /// hidden bodies out of the plain tree themselves. With true a filter that does nothing but hide bodies is on as
  /// well.
  [[nodiscard]] virtual bool IsFiltering(bool countHiddenBodies) const = 0;
  /// With false: whether a first pass over the tree applies that only leaves out what is hidden. With true: whether
  /// that pass is the whole filter.
  [[nodiscard]] virtual bool IsHiddenFilter(bool hiddenOnly) const = 0;
  /// `IsFiltering` without the criteria that depend on a view.
  [[nodiscard]] virtual bool IsFilteringBase(bool countHiddenBodies) const = 0;
  /// Whether the root's position filters out `instance`, although its parents are spared. False here.
  [[nodiscard]] virtual bool IsRootFilteredOut(const du::SmartPtr<zelk::BaseInstance>& instance);
  /// The decision for one instance. `selected` holds the selected instances, `hiddenPass` tells the pass,
  /// `additionalInfo` is a `TreeFilterAdditionalInfo` or null, and `count`, which may be null, is a counter that the
  /// filter may use.
  [[nodiscard]] virtual bool IsFilteredOut(const du::SmartPtr<zelk::BaseInstance>& instance,
                                           std::set<du::SmartPtr<zelk::BaseInstance>>& selected, bool hiddenPass,
                                           du::SmartPtr<du::RefCounted>& additionalInfo, unsigned int* count) = 0;

  /// Whether the user may choose that the result follows changes of the tree.
  [[nodiscard]] virtual bool HasDynamicUpdateOption() = 0;
  [[nodiscard]] virtual bool GetDynamicUpdate() = 0;
  virtual void SetDynamicUpdate(bool dynamicUpdate) = 0;

  /// Which criteria are on.
  [[nodiscard]] virtual bool GetFilteringName() = 0;
  [[nodiscard]] virtual bool GetFilteringParts() = 0;
  [[nodiscard]] virtual bool GetFilteringBodies() = 0;
  [[nodiscard]] virtual bool GetFilteringColumns() = 0;
  [[nodiscard]] virtual bool GetFilteringSel() = 0;
  /// Whether the host should open the branches of the result.
  [[nodiscard]] virtual bool GetEnsureExpanded() = 0;
  /// Whether a match brings all its siblings along. Asked in the hidden pass as well, where what is not hidden counts
  /// as a match.
  [[nodiscard]] virtual bool GetShowSiblings() = 0;
  [[nodiscard]] virtual bool GetFilteringVis() = 0;
  [[nodiscard]] virtual bool GetFilteringIssues() = 0;
  [[nodiscard]] virtual bool GetNotSyncPartsStatus() const = 0;
  /// Whether the decision depends on the current view, so that a change of view needs another run. Here: whether
  /// visibility or issues are among the criteria.
  [[nodiscard]] virtual bool IsFilteringUsingView();
  /// True is ascending.
  [[nodiscard]] virtual bool GetSortDirection() const = 0;
  [[nodiscard]] virtual bool GetMatchCase() const = 0;
  [[nodiscard]] virtual bool GetMatchWholeWord() const = 0;
  /// Property group, then property name; both empty for the order of the kernel.
  [[nodiscard]] virtual du::DualSymbol GetSortColumn() = 0;
  [[nodiscard]] virtual bool GetCollapseInstances() const = 0;
  [[nodiscard]] virtual bool GetHideBodies() const = 0;
};

}  // namespace structure_utils
