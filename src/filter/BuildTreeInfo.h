#pragma once

#include <set>

#include "dp/ReadWriteLock.h"
#include "guitree/FilteredTree.h"

namespace guitree {

/// What one `BuildTree` call works with, and its judgement of single instances.
struct FilteredTree::BuildTreeInfo {
  BuildTreeInfo(structure_utils::TreeFilterInfoBase& filterOfRun, du::SmartPtr<du::RefCounted>& additional,
                zelk::AsyncEvent* event, dp::ReadWriteLock* lock, const std::set<zelk::BaseInstance*>& notFiltered);

  /// True for filtered out. `tree`, which may be null, records what is matched. Asked twice about most instances: with
  /// its steps in one function a run without a match takes 0.98 times as long.
  [[nodiscard]] bool _IsItemFilteredOut(const du::SmartPtr<zelk::BaseInstance>& item, bool hiddenPass,
                                        FilteredTree* tree)
  {
    const bool isEager = tree && tree->ForceCheckFilteringForAllItems(hiddenPass);
    // Judged first, also where the exemption has the last word: what the filter lets through is recorded in any case.
    const bool isFilteredOut = isEager && _JudgeAndRecord(item, hiddenPass, *tree);
    if (!notFilteredSet.empty()) {
      const Exemption exemption = _FindExemption(item);
      if (exemption != Exemption::None) {
        return exemption == Exemption::FilteredOut;
      }
    }
    return isEager ? isFilteredOut : _AskFilter(item, hiddenPass, tree);
  }
  [[nodiscard]] bool IsCanceled() const { return asyncEvent && asyncEvent->IsCanceled(); }
  /// Counts a node, and reports every 2,500 of them.
  void CountNode()
  {
    nodesCreated += 1.0;
    if (--m_nodesToReport == 0) {
      _Report();
    }
  }

  structure_utils::TreeFilterInfoBase& filter;
  du::SmartPtr<du::RefCounted>& additionalInfo;
  /// May be null.
  zelk::AsyncEvent* asyncEvent;
  std::set<du::SmartPtr<zelk::BaseInstance>> selectedItems;
  dp::ReadGuard treeReadGuard;
  const std::set<zelk::BaseInstance*>& notFilteredSet;
  unsigned int totalInstances = 0;
  /// Over both passes.
  double nodesCreated = 0.0;

private:
  enum class Exemption { None, Spared, FilteredOut };

  static constexpr unsigned int s_nodesBetweenReports = 2500;

  void _Report();
  [[nodiscard]] bool _AskFilter(const du::SmartPtr<zelk::BaseInstance>& item, bool hiddenPass, FilteredTree* tree)
  {
    return filter.IsFilteredOut(item, selectedItems, hiddenPass, additionalInfo, tree ? &tree->numInsts : nullptr);
  }
  [[nodiscard]] bool _JudgeAndRecord(const du::SmartPtr<zelk::BaseInstance>& item, bool hiddenPass, FilteredTree& tree)
  {
    if (_AskFilter(item, hiddenPass, &tree) && tree.IsFilteredOutByAdditionalCheck(filter, item)) {
      return true;
    }
    tree.AddMatchedFilterItem(item, true);
    return false;
  }
  [[nodiscard]] Exemption _FindExemption(const du::SmartPtr<zelk::BaseInstance>& item);
  void _LookAtParent(const du::SmartPtr<zelk::BaseInstance>& parent);

  unsigned int m_nodesToReport = s_nodesBetweenReports;
  /// The parent whose children were judged last, so that its own place is looked up once for all of them.
  const zelk::BaseInstance* m_parent = nullptr;
  bool m_isParentTop = false;
  bool m_isParentSpared = false;
};

}  // namespace guitree
