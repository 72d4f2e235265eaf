#pragma once

#include <optional>

#include "guitree/FilteredTree.h"

namespace guitree {

/// The result of a filter of a structure panel. Where a hidden pass comes before that for the criteria it only sifts
/// what may come along with a match, and nothing that it leaves is a match: the two sets list what the criteria have
/// let through. A hidden pass that is the whole filter is recorded. Lives and threads as `FilteredTree`.
///
/// Belongs to the library guitree::structurestate.
class StructureFilteredTree : public FilteredTree {
protected:
  /// True.
  [[nodiscard]] bool ForceCheckFilteringForAllItems(bool hiddenPass) override;
  /// Nothing while a pass sifts.
  void AddMatchedFilterItem(const du::SmartPtr<zelk::BaseInstance>& instance, bool matched) override;

private:
  /// Asked at the first judging of a hidden pass; one object has one run.
  std::optional<bool> m_isHiddenPassAll;
  /// The pass of the last judging.
  bool m_isSifting = false;
};

}  // namespace guitree
