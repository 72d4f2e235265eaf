#pragma once

#include <vector>

#include "du/SmartPtr.h"
#include "guitree/FilterObserverBase.h"
#include "guitree/FilteredTree.h"

namespace guitree {

class GuiTree;

/// Keeps the filter jobs of one `GuiTree`, their latest result and those who listen for it. Owned by the `GuiTree`.
/// Owner's thread.
class TreeController {
public:
  explicit TreeController(GuiTree* tree);
  /// Memberwise. A copy shares jobs and result with its source.
  TreeController(const TreeController&);
  TreeController& operator=(const TreeController&);
  /// Orphans the jobs under way: they run to their end, and their completion does nothing.
  ~TreeController();

  /// Appends; an observer that is added twice stands twice.
  void AddObserver(du::SmartPtr<FilterObserverBase> observer);
  /// Takes out the first entry of the observer, and leaves the order of the rest; nothing for an unknown one.
  void RemoveObserver(du::SmartPtr<FilterObserverBase> observer);

  /// Whether a job is under way.
  [[nodiscard]] bool IsBusy();
  /// The result of the job that completed last; null before the first.
  [[nodiscard]] du::SmartPtr<FilteredTree> GetFilteredTree();

private:
  class TCAsyncEvent;

  static int AddSmartPtrReference(const TCAsyncEvent* event, void* owner);
  static bool AttemptDeleteSmartPtrReference(const TCAsyncEvent* event, void* owner);
  friend int AddSmartPtrReference(const TCAsyncEvent* event, void* owner)
  {
    return TreeController::AddSmartPtrReference(event, owner);
  }
  friend bool AttemptDeleteSmartPtrReference(const TCAsyncEvent* event, void* owner)
  {
    return TreeController::AttemptDeleteSmartPtrReference(event, owner);
  }

  /// The panel that this controller belongs to.
  [[maybe_unused]] GuiTree* guiTree;
  /// Started and not completed, oldest first.
  std::vector<du::SmartPtr<TCAsyncEvent>> events;
  std::vector<du::SmartPtr<FilterObserverBase>> observers;
  du::SmartPtr<FilteredTree> filteredTree;
};

}  // namespace guitree
