#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "zelk/ObjectSelectionItem.h"
#include "zelk/SelectionManager.h"

namespace testsupport {

/// A selection manager that keeps no selection: it writes down what it is asked and who registers, answers what its
/// members say, and a test plays its events.
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

  mutable std::vector<std::string> calls;
  /// What the instances of each list are said to be.
  std::map<unsigned int, std::vector<du::SmartPtr<zelk::Instance>>> instances;
  bool containsItem = false;
  unsigned int selectedCount = 0;
  /// The items of the last `ApplyItems`.
  ItemSet appliedItems;
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
  unsigned int ApplyItems(unsigned int list, const ItemSet& items, Operation operation) override
  {
    std::vector<std::string> names;
    for (const auto& item : items) {
      names.push_back(NameOf(item));
    }
    // The order of the set is that of addresses.
    std::sort(names.begin(), names.end());
    std::string line = "ApplyItems(" + std::to_string(list) + ", [";
    for (const std::string& name : names) {
      line += (line.back() == '[' ? "" : " ") + name;
    }
    calls.push_back(line + "], " + std::to_string(operation) + ")");
    appliedItems = items;
    return 0;
  }
  [[nodiscard]] bool ContainsItem(unsigned int list, du::SmartPtr<zelk::SelectionItem> item,
                                  zelk::ExpandRule rule) const override
  {
    calls.push_back("ContainsItem(" + std::to_string(list) + ", " + NameOf(item) + ", " + std::to_string(rule) + ")");
    return containsItem;
  }
  void GetSelectedInstances(unsigned int list, std::set<du::SmartPtr<zelk::Instance>>& out,
                            zelk::ExpandRule rule) const override
  {
    calls.push_back("GetSelectedInstances(" + std::to_string(list) + ", " + std::to_string(rule) + ")");
    if (const auto listed = instances.find(list); listed != instances.end()) {
      out.insert(listed->second.begin(), listed->second.end());
    }
  }
  [[nodiscard]] unsigned int GetSelectedCount(unsigned int list, const std::set<du::Symbol>& types,
                                              zelk::ExpandRule rule) const override
  {
    calls.push_back("GetSelectedCount(" + std::to_string(list) + ", "
                    + (types == GetInstanceTypes() ? "instance types" : "other types") + ", " + std::to_string(rule)
                    + ")");
    return selectedCount;
  }

  /// The name of the instance that an item stands for; `nothing` for an item around null.
  static std::string NameOf(const du::SmartPtr<zelk::SelectionItem>& item)
  {
    const auto selected = du::DynamicCast<zelk::ObjectSelectionItem>(item);
    const du::SmartPtr<zelk::Object> object = selected ? selected->GetObject() : nullptr;
    return object ? std::string(object->GetObjectName()) : "nothing";
  }
  /// Registration takes constant observers, but their callbacks change them.
  static zelk::SelectionObserver& Edit(const zelk::SelectionObserver* observer)
  {
    return const_cast<zelk::SelectionObserver&>(*observer);
  }
};

}  // namespace testsupport
