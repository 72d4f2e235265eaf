#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Rows.h"
#include "guitree/InstsComperator.h"
#include "zelk/SelectionManager.h"
#include "zelk/ShapeScene.h"
#include "zelremote/StructureFilterInfo.h"

namespace systemtest {

/// What a user has set a filter to.
struct FilterSettings {
  std::string text;
  bool parts = false;
  bool bodies = false;
  bool selected = false;
  /// 1 for what is visible, 2 for what is hidden.
  int visibility = 0;
  bool issues = false;
  bool useResults = false;
  bool resultsLive = false;
  bool siblings = false;
  bool list = false;
  bool isDynamic = false;
  bool isSorted = false;
  bool isDescending = false;
  /// These two follow the display switches.
  bool hideBodies = false;
  bool collapse = false;

  [[nodiscard]] bool HasCriterion() const
  {
    return !text.empty() || parts || bodies || selected || visibility != 0 || issues || useResults;
  }
  [[nodiscard]] bool IsOn() const { return HasCriterion() || collapse; }
  [[nodiscard]] bool IsViewDependent() const { return visibility != 0 || issues; }
  [[nodiscard]] bool IsDynamicSelection() const { return isDynamic && selected; }
};

/// All but what follows the display switches.
void Apply(const FilterSettings& settings, zelremote::StructureFilterInfo& filter);

/// By "Part ID", which differs for all instances.
void SortByPartId(std::vector<BasePtr>& instances, bool isDescending);

/// What a filter of the panel leaves of a tree, worked out from a whole walk: each instance is asked on its own, climbs
/// to the root by itself, and nothing is remembered.
struct FilterResult {
  struct Node {
    BasePtr instance;
    std::vector<Node> children;
  };

  /// Null after a job that was cancelled before it began.
  std::unique_ptr<Node> root;
  /// A job that was cancelled in the middle leaves the root over a placeholder.
  bool hasPlaceholder = false;
  std::set<BasePtr> matched;
  std::set<BasePtr, guitree::InstsComperator> created;
};

/// What a job looks at, beside the tree.
struct FilterRun {
  FilterSettings settings;
  du::SmartPtr<zelk::SelectionManager> selection;
  du::SmartPtr<zelk::ShapeScene> scene;
  std::shared_ptr<const std::set<BasePtr>> results;

  /// `isCancelled` tells that the job is cancelled when it asks its first question.
  [[nodiscard]] FilterResult Work(const BasePtr& root, bool isCancelled) const;
};

}  // namespace systemtest
