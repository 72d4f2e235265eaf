#pragma once

#include <set>
#include <string>
#include <vector>

#include "zelk/SelectionManager.h"

namespace testsupport {

/// A selection manager that keeps no selection: it writes down who registers, and a test plays its events.
class RecordingSelectionManager : public zelk::SelectionManager {
public:
  RecordingSelectionManager() = default;
  RecordingSelectionManager(const RecordingSelectionManager&) = delete;
  RecordingSelectionManager& operator=(const RecordingSelectionManager&) = delete;
  ~RecordingSelectionManager() override
  {
    for (const zelk::SelectionObserver* observer : {selectionObserver, assocHlightObserver}) {
      if (observer) {
        observer->RemoveRegistration();
      }
    }
  }

  std::vector<std::string> calls;
  /// Who is registered on each of the two lists; null for nobody.
  const zelk::SelectionObserver* selectionObserver = nullptr;
  const zelk::SelectionObserver* assocHlightObserver = nullptr;
  /// Whether unregistering from the selection list delivers an end of update first, as inside an open run of events.
  bool isUpdateOpen = false;

  bool RegisterObserver(unsigned int list, const zelk::SelectionObserver& observer) override
  {
    calls.push_back("RegisterObserver(" + std::to_string(list) + ")");
    (list == SelectionList ? selectionObserver : assocHlightObserver) = &observer;
    observer.AddRegistration();
    return true;
  }
  bool UnregisterObserver(unsigned int list, const zelk::SelectionObserver& observer) override
  {
    calls.push_back("UnregisterObserver(" + std::to_string(list) + ")");
    if (isUpdateOpen && list == SelectionList) {
      isUpdateOpen = false;
      Edit(&observer).OnEndUpdate();
    }
    const zelk::SelectionObserver*& registered = list == SelectionList ? selectionObserver : assocHlightObserver;
    if (registered != &observer) {
      return false;
    }
    registered = nullptr;
    observer.RemoveRegistration();
    return true;
  }
  unsigned int ApplyItems(unsigned int /*list*/, const ItemSet& /*items*/, Operation /*operation*/) override
  {
    return 0;
  }
  [[nodiscard]] bool ContainsItem(unsigned int /*list*/, du::SmartPtr<zelk::SelectionItem> /*item*/,
                                  zelk::ExpandRule /*rule*/) const override
  {
    return false;
  }
  void GetSelectedInstances(unsigned int /*list*/, std::set<du::SmartPtr<zelk::Instance>>& /*out*/,
                            zelk::ExpandRule /*rule*/) const override
  {
  }
  [[nodiscard]] unsigned int GetSelectedCount(unsigned int /*list*/, const std::set<du::Symbol>& /*types*/,
                                              zelk::ExpandRule /*rule*/) const override
  {
    return 0;
  }

  /// Registration takes constant observers, but their callbacks change them.
  static zelk::SelectionObserver& Edit(const zelk::SelectionObserver* observer)
  {
    return const_cast<zelk::SelectionObserver&>(*observer);
  }
};

}  // namespace testsupport
