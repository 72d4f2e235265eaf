#pragma once

#include <map>
#include <memory>
#include <shared_mutex>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "memkernel/ObserverList.h"
#include "zelk/SelectionManager.h"
#include "zelk/ShapeInstance.h"
#include "zelk/Tree.h"

namespace memkernel {

/// The selection of an instance in one scene. Stands for its tree instance where lists are seen as instances.
class ShapeInstanceSelectionItem final : public zelk::SelectionItem {
public:
  /// A null shape instance gives an item that stands for nothing.
  explicit ShapeInstanceSelectionItem(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance);

  [[nodiscard]] const du::SmartPtr<zelk::ShapeInstance>& GetShapeInstance() const noexcept { return m_shapeInstance; }
  /// As it was when the item was made; the shape instance itself forgets it when it goes.
  [[nodiscard]] const du::SmartPtr<zelk::Instance>& GetInstance() const noexcept { return m_instance; }
  [[nodiscard]] du::Symbol GetSelectionType() const override;
  [[nodiscard]] const void* GetIdentity() const override;

private:
  du::SmartPtr<zelk::ShapeInstance> m_shapeInstance;
  du::SmartPtr<zelk::Instance> m_instance;
};

/// Selection lists over one tree. Lists exist as soon as they are named; items of instances that leave the tree leave
/// the lists at the end of the run of edits. A change that is made from inside a callback holds at once, and is told
/// when all observers have heard the present one.
class SelectionManager final : public zelk::SelectionManager {
public:
  /// `tree` may be null: nothing leaves the lists by itself then.
  explicit SelectionManager(const du::SmartPtr<zelk::Tree>& tree);
  ~SelectionManager() override;

  bool RegisterObserver(unsigned int list, const zelk::SelectionObserver& observer) override;
  bool UnregisterObserver(unsigned int list, const zelk::SelectionObserver& observer) override;
  unsigned int ApplyItems(unsigned int list, const ItemSet& items, Operation operation) override;
  [[nodiscard]] bool ContainsItem(unsigned int list, du::SmartPtr<zelk::SelectionItem> item,
                                  zelk::ExpandRule rule) const override;
  void GetSelectedInstances(unsigned int list, std::set<du::SmartPtr<zelk::Instance>>& out,
                            zelk::ExpandRule rule) const override;
  [[nodiscard]] unsigned int GetSelectedCount(unsigned int list, const std::set<du::Symbol>& types,
                                              zelk::ExpandRule rule) const override;

  /// As `ApplyItems` with one item for each instance. Null instances are passed over.
  unsigned int ApplyInstances(unsigned int list, const std::vector<du::SmartPtr<zelk::Instance>>& instances,
                              Operation operation);
  /// The items of a list, in its order. Any thread.
  [[nodiscard]] ItemSet GetItems(unsigned int list) const;

private:
  class TreeFollower;
  using Items = std::vector<du::SmartPtr<zelk::SelectionItem>>;
  struct Change {
    /// All that was in the list goes; `removed` says which.
    bool isCleared = false;
    Items removed;
    Items added;
  };
  /// The items and observers of one list. Objects stay until the manager dies.
  struct List {
    ItemSet items;
    /// How many items stand for each instance.
    std::unordered_map<const zelk::Instance*, unsigned int> instances;
    ObserverList<zelk::SelectionObserver> observers;
  };

  [[nodiscard]] List& _GetList(unsigned int list);
  [[nodiscard]] const List* _FindList(unsigned int list) const;
  [[nodiscard]] static Change _FindChange(const ItemSet& present, const ItemSet& items, Operation operation);
  static void _Perform(List& list, const Change& change);
  static void _TellOne(const ObserverList<zelk::SelectionObserver>& observers, zelk::SelectionObserver& observer,
                       unsigned int number, const Change& change);
  [[nodiscard]] bool _IsListed(const zelk::Instance& instance) const;
  void _RemoveInstances(const std::unordered_set<const zelk::Instance*>& instances);

  /// Guards the map and, of its lists, all but the observers.
  mutable std::shared_mutex m_mutex;
  std::map<unsigned int, std::unique_ptr<List>> m_lists;
  du::SmartPtr<zelk::Tree> m_tree;
  du::SmartPtr<TreeFollower> m_follower;
  bool m_isEnding = false;
};

}  // namespace memkernel
