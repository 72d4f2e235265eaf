#pragma once

#include <set>

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "zelk/BaseInstance.h"
#include "zelk/SelectionManager.h"

namespace guitree {

/// Translates between the instances of a tree and the selection lists of the kernel. Made for one call or one batch of
/// rows, holds no selection of its own. Owner's thread, apart from `GetSelectedInstances` over base instances, which a
/// filter job calls on its worker.
class TreeSelectionController : public virtual du::RefCounted {
public:
  /// `manager` may be null for a derived controller that does not use it. The flag is accepted for the sake of callers
  /// and means nothing.
  TreeSelectionController(const du::SmartPtr<zelk::SelectionManager>& manager, bool ignored);
  TreeSelectionController(const TreeSelectionController&) = default;
  TreeSelectionController& operator=(const TreeSelectionController&) = default;
  ~TreeSelectionController() override;

  [[nodiscard]] du::SmartPtr<zelk::SelectionManager> GetZelkSelectionManager() const { return selectionManager; }

  /// How many instances are selected.
  [[nodiscard]] virtual unsigned int GetTotalItemCount() = 0;
  /// Replaces `out` with the selected instances.
  virtual void GetSelectedInstances(std::set<du::SmartPtr<zelk::BaseInstance>>& out) = 0;
  /// Whether any instance is selected.
  [[nodiscard]] virtual bool ContainsInstance() = 0;
  /// Whether `instance` is selected.
  [[nodiscard]] virtual bool ContainsItem(const du::SmartPtr<zelk::BaseInstance>& instance) = 0;
  /// Makes `items` the selection; an empty set clears it.
  virtual void SetItems(const std::set<du::SmartPtr<zelk::BaseInstance>>& items) = 0;
  /// Whether `instance` carries the associated highlight.
  [[nodiscard]] virtual bool IsItemAssocHlighted(const du::SmartPtr<zelk::BaseInstance>& instance) = 0;
  /// Replaces `out` with the instances that carry the associated highlight.
  virtual void GetAssocHlightedInstances(std::set<du::SmartPtr<zelk::BaseInstance>>& out) = 0;

protected:
  du::SmartPtr<zelk::SelectionManager> selectionManager;
};

}  // namespace guitree
