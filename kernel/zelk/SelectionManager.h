#pragma once

#include <set>

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "zelk/Instance.h"
#include "zelk/SelectionItem.h"
#include "zelk/SelectionObserver.h"

namespace zelk {

/// How a query on a list sees its items.
enum ExpandRule {
  /// As they are.
  ExpandRuleNone = 0,
  /// As the instances that they stand for.
  ExpandRuleInstances = 2,
};

/// The selection lists of a scene or of a world, told by number. The owner's thread changes them; the three queries may
/// be asked from any thread.
class SelectionManager : public virtual du::RefCounted {
public:
  enum ListID : unsigned int {
    SelectionList = 0,
    AssocHlightList = 4,
  };

  enum Operation {
    OperationAdd = 1,
    OperationRemove = 2,
    OperationToggle = 3,
    /// The given set replaces the list.
    OperationSet = 4,
  };

  using ItemSet = std::set<du::SmartPtr<SelectionItem>, selection_compare_objects>;

  /// Nothing is replayed. False, and nothing done, if the observer is registered on that list already.
  virtual bool RegisterObserver(unsigned int list, const SelectionObserver& observer) = 0;
  /// False if the observer is not registered on that list. Inside an open run of events the observer's `OnEndUpdate` is
  /// called first.
  virtual bool UnregisterObserver(unsigned int list, const SelectionObserver& observer) = 0;

  /// Changes a list and tells its observers, once and in brackets, when anything changed. Answers how many items went
  /// or came. Null items and items that stand for nothing are passed over.
  virtual unsigned int ApplyItems(unsigned int list, const ItemSet& items, Operation operation) = 0;

  [[nodiscard]] virtual bool ContainsItem(unsigned int list, du::SmartPtr<SelectionItem> item,
                                          ExpandRule rule) const = 0;
  /// Adds the selected instances to `out`.
  virtual void GetSelectedInstances(unsigned int list, std::set<du::SmartPtr<Instance>>& out,
                                    ExpandRule rule) const = 0;
  /// The number of items of the given types.
  [[nodiscard]] virtual unsigned int GetSelectedCount(unsigned int list, const std::set<du::Symbol>& types,
                                                      ExpandRule rule) const = 0;

  /// The selection types of the instance classes of this contract.
  [[nodiscard]] static const std::set<du::Symbol>& GetInstanceTypes();
};

}  // namespace zelk
