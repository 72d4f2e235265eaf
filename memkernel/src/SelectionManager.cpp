#include "memkernel/SelectionManager.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>

#include "zelk/ObjectSelectionItem.h"
#include "zelk/TreeObserver.h"

namespace memkernel {
namespace {

using ItemSet = zelk::SelectionManager::ItemSet;

/// Null for an item that stands for no instance.
du::SmartPtr<zelk::Instance> GetInstance(const du::SmartPtr<zelk::SelectionItem>& item)
{
  if (const auto* object = dynamic_cast<const zelk::ObjectSelectionItem*>(item.Get())) {
    return du::DynamicCast<zelk::Instance>(object->GetObject());
  }
  const auto* shape = dynamic_cast<const ShapeInstanceSelectionItem*>(item.Get());
  return shape ? shape->GetInstance() : du::SmartPtr<zelk::Instance>();
}

/// What an item stands for as the callbacks on objects tell it.
du::SmartPtr<zelk::Object> GetObject(const du::SmartPtr<zelk::SelectionItem>& item)
{
  if (const auto* object = dynamic_cast<const zelk::ObjectSelectionItem*>(item.Get())) {
    return object->GetObject();
  }
  const auto* shape = dynamic_cast<const ShapeInstanceSelectionItem*>(item.Get());
  return shape ? du::SmartPtr<zelk::Object>(shape->GetShapeInstance()) : du::SmartPtr<zelk::Object>(item);
}

std::vector<du::SmartPtr<zelk::Object>> GetObjects(const std::vector<du::SmartPtr<zelk::SelectionItem>>& items)
{
  std::vector<du::SmartPtr<zelk::Object>> objects;
  objects.reserve(items.size());
  std::transform(items.begin(), items.end(), std::back_inserter(objects), GetObject);
  return objects;
}

bool StandsForSomething(const du::SmartPtr<zelk::SelectionItem>& item)
{
  return item && item->GetIdentity();
}

bool IsOfType(const zelk::Object& object, const std::set<du::Symbol>& types)
{
  return types.contains(du::Symbol(object.GetClassTypes().name));
}

}  // namespace

ShapeInstanceSelectionItem::ShapeInstanceSelectionItem(const du::SmartPtr<zelk::ShapeInstance>& shapeInstance)
    : m_shapeInstance(shapeInstance)
{
  if (m_shapeInstance) {
    m_shapeInstance->GetInstance(m_instance);
  }
}

du::Symbol ShapeInstanceSelectionItem::GetSelectionType() const
{
  return m_shapeInstance ? du::Symbol(m_shapeInstance->GetClassTypes().name) : du::Symbol();
}

const void* ShapeInstanceSelectionItem::GetIdentity() const
{
  return static_cast<const zelk::Object*>(m_shapeInstance.Get());
}

/// Takes items out of the lists whose instances leave the tree: at the end of the run, in one change for all of them.
class SelectionManager::TreeFollower : public zelk::TreeObserver {
public:
  explicit TreeFollower(SelectionManager* owner) : manager(owner) {}

  void OnInstanceRemove(const du::SmartPtr<zelk::BaseInstance>& instance,
                        const du::SmartPtr<zelk::BaseInstance>& /*parent*/) override
  {
    const auto* removed = dynamic_cast<const zelk::Instance*>(instance.Get());
    if (manager && removed && manager->_IsListed(*removed)) {
      m_removed.insert(removed);
    }
  }
  void OnEndUpdate() override
  {
    if (manager && !m_removed.empty()) {
      manager->_RemoveInstances(std::exchange(m_removed, {}));
    }
  }

  /// Null once the manager has gone.
  SelectionManager* manager;

private:
  /// Kept alive by the items that stand for them, or gone from the lists; only looked up.
  std::unordered_set<const zelk::Instance*> m_removed;
};

SelectionManager::SelectionManager(const du::SmartPtr<zelk::Tree>& tree)
    : m_tree(tree), m_follower(du::MakeSmart<TreeFollower>(this))
{
  if (m_tree) {
    m_tree->RegisterObserver(*m_follower, false);
  }
}

SelectionManager::~SelectionManager()
{
  m_follower->manager = nullptr;
  if (m_tree) {
    m_tree->UnregisterObserver(*m_follower);
  }
  m_isEnding = true;
  for (const auto& [number, list] : m_lists) {
    list->observers.DropAll();
  }
}

bool SelectionManager::RegisterObserver(unsigned int list, const zelk::SelectionObserver& observer)
{
  // The contract hands observers over as constant and calls what is not.
  return _GetList(list).observers.Add(const_cast<zelk::SelectionObserver&>(observer));
}

bool SelectionManager::UnregisterObserver(unsigned int list, const zelk::SelectionObserver& observer)
{
  const du::SmartPtr<SelectionManager> self(m_isEnding ? nullptr : this);
  return _GetList(list).observers.Remove(observer);
}

unsigned int SelectionManager::ApplyItems(unsigned int list, const ItemSet& items, Operation operation)
{
  List& changed = _GetList(list);
  Change change = _FindChange(changed.items, items, operation);
  const auto count = static_cast<unsigned int>(change.removed.size() + change.added.size());
  if (count == 0) {
    return 0;
  }
  {
    const std::unique_lock lock(m_mutex);
    _Perform(changed, change);
  }
  // An observer may let go of the manager.
  const du::SmartPtr<SelectionManager> self(this);
  auto& observers = changed.observers;
  observers.Tell([&observers, list, told = std::move(change)](zelk::SelectionObserver& observer) {
    _TellOne(observers, observer, list, told);
  });
  return count;
}

bool SelectionManager::ContainsItem(unsigned int list, du::SmartPtr<zelk::SelectionItem> item,
                                    zelk::ExpandRule rule) const
{
  if (!StandsForSomething(item)) {
    return false;
  }
  const std::shared_lock lock(m_mutex);
  const List* asked = _FindList(list);
  // Panels ask this for each row that they make, as a rule of an empty list.
  if (!asked || asked->items.empty()) {
    return false;
  }
  const auto instance = rule == zelk::ExpandRuleInstances ? GetInstance(item) : du::SmartPtr<zelk::Instance>();
  return instance ? asked->instances.contains(instance.Get()) : asked->items.contains(item);
}

void SelectionManager::GetSelectedInstances(unsigned int list, std::set<du::SmartPtr<zelk::Instance>>& out,
                                            zelk::ExpandRule rule) const
{
  // Copied first: the set of the caller may let go of instances, which is none of the lock's business.
  for (const auto& item : GetItems(list)) {
    if (rule == zelk::ExpandRuleNone && !dynamic_cast<const zelk::ObjectSelectionItem*>(item.Get())) {
      continue;
    }
    if (auto instance = GetInstance(item)) {
      out.insert(std::move(instance));
    }
  }
}

unsigned int SelectionManager::GetSelectedCount(unsigned int list, const std::set<du::Symbol>& types,
                                                zelk::ExpandRule rule) const
{
  const std::shared_lock lock(m_mutex);
  const List* asked = _FindList(list);
  if (!asked) {
    return 0;
  }
  std::size_t count = 0;
  if (rule == zelk::ExpandRuleInstances) {
    count += static_cast<std::size_t>(std::count_if(asked->instances.begin(), asked->instances.end(),
                                                    [&](const auto& entry) { return IsOfType(*entry.first, types); }));
  }
  for (const auto& item : asked->items) {
    const bool isCounted = rule == zelk::ExpandRuleInstances && GetInstance(item);
    count += !isCounted && types.contains(item->GetSelectionType()) ? 1U : 0U;
  }
  return static_cast<unsigned int>(count);
}

unsigned int SelectionManager::ApplyInstances(unsigned int list,
                                              const std::vector<du::SmartPtr<zelk::Instance>>& instances,
                                              Operation operation)
{
  ItemSet items;
  for (const auto& instance : instances) {
    if (instance) {
      items.insert(du::MakeSmart<zelk::ObjectSelectionItem>(instance));
    }
  }
  return ApplyItems(list, items, operation);
}

SelectionManager::ItemSet SelectionManager::GetItems(unsigned int list) const
{
  const std::shared_lock lock(m_mutex);
  const List* asked = _FindList(list);
  return asked ? asked->items : ItemSet();
}

SelectionManager::List& SelectionManager::_GetList(unsigned int list)
{
  const std::unique_lock lock(m_mutex);
  auto& entry = m_lists[list];
  if (!entry) {
    entry = std::make_unique<List>();
  }
  return *entry;
}

const SelectionManager::List* SelectionManager::_FindList(unsigned int list) const
{
  const auto entry = m_lists.find(list);
  return entry == m_lists.end() ? nullptr : entry->second.get();
}

SelectionManager::Change SelectionManager::_FindChange(const ItemSet& present, const ItemSet& items,
                                                       Operation operation)
{
  Change change;
  for (const auto& item : items) {
    if (!StandsForSomething(item)) {
      continue;
    }
    const auto found = present.find(item);
    if (found == present.end() && operation != OperationRemove) {
      change.added.push_back(item);
    } else if (found != present.end() && (operation == OperationRemove || operation == OperationToggle)) {
      change.removed.push_back(*found);
    }
  }
  if (operation == OperationSet) {
    std::set_difference(present.begin(), present.end(), items.begin(), items.end(), std::back_inserter(change.removed),
                        zelk::selection_compare_objects());
  }
  change.isCleared = !present.empty() && change.removed.size() == present.size();
  return change;
}

void SelectionManager::_Perform(List& list, const Change& change)
{
  for (const auto& item : change.removed) {
    list.items.erase(item);
    const auto entry = list.instances.find(GetInstance(item).Get());
    if (entry != list.instances.end() && --entry->second == 0) {
      list.instances.erase(entry);
    }
  }
  for (const auto& item : change.added) {
    list.items.insert(item);
    if (const auto instance = GetInstance(item)) {
      ++list.instances[instance.Get()];
    }
  }
}

void SelectionManager::_TellOne(const ObserverList<zelk::SelectionObserver>& observers,
                                zelk::SelectionObserver& observer, unsigned int number, const Change& change)
{
  observer.OnSelectionChanged(number, change.isCleared, change.isCleared ? Items() : change.removed, change.added);
  if (change.isCleared && observers.Contains(observer)) {
    observer.OnClearSelection();
  }
  if (!change.isCleared && !change.removed.empty() && observers.Contains(observer)) {
    auto objects = GetObjects(change.removed);
    observer.OnRemoveItems(objects);
  }
  if (!change.added.empty() && observers.Contains(observer)) {
    auto objects = GetObjects(change.added);
    observer.OnInsertItems(objects);
  }
}

bool SelectionManager::_IsListed(const zelk::Instance& instance) const
{
  return std::any_of(m_lists.begin(), m_lists.end(),
                     [&](const auto& entry) { return entry.second->instances.contains(&instance); });
}

void SelectionManager::_RemoveInstances(const std::unordered_set<const zelk::Instance*>& instances)
{
  const du::SmartPtr<SelectionManager> self(this);
  for (const auto& [number, list] : m_lists) {
    ItemSet items;
    for (const auto& item : list->items) {
      if (instances.contains(GetInstance(item).Get())) {
        items.insert(items.end(), item);
      }
    }
    ApplyItems(number, items, OperationRemove);
  }
}

}  // namespace memkernel
