#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "memkernel/Instance.h"
#include "memkernel/ObserverList.h"
#include "memkernel/Product.h"
#include "memkernel/ReadWriteLock.h"
#include "zelk/Tree.h"
#include "zelk/TreeObserver.h"

namespace memkernel {

class ChildListRevisions;
class SiblingGroups;
class TreeBatch;

/// The tree of a world, filled and edited by the owner's thread.
///
///     const TreeBatch batch(*tree);
///     const auto bolt = tree->CreateProduct({.name = "M8 bolt", .shape = shape});
///     const auto root = tree->CreateRoot(tree->CreateProduct({.name = "Engine"}));
///     tree->AddChild(root, bolt);
///     tree->AddChild(root, bolt, "Bolt at the back");
///
/// Each edit takes the write side of the lock for the change alone, and is announced before the operation returns.
/// While observers are told of an edit the tree refuses any other, so that all of them hear all edits in the order in
/// which they were made; inside `OnEndUpdate` edits are fine. A refused edit changes nothing and answers null or false,
/// as does one that names an instance that is not in this tree. The thread that edits must not hold the read side.
class Tree final : public zelk::Tree {
public:
  Tree();
  /// As `Close`.
  ~Tree() override;

  /// Never refused.
  [[nodiscard]] du::SmartPtr<Product> CreateProduct(const ProductInfo& info);
  /// Null if there is a root. `name`, here and below, is the instance's own; empty leaves it to the product.
  du::SmartPtr<Instance> CreateRoot(const du::SmartPtr<Product>& product, const du::Symbol& name = {});
  /// As the last child. Constant cost.
  du::SmartPtr<Instance> AddChild(const du::SmartPtr<Instance>& parent, const du::SmartPtr<Product>& product,
                                  const du::Symbol& name = {});
  /// In front of `sibling`, which must not be the root. Where the list is long and has others of the product, this
  /// costs the way to the nearest of them or to the nearer end.
  du::SmartPtr<Instance> InsertBefore(const du::SmartPtr<Instance>& sibling, const du::SmartPtr<Product>& product,
                                      const du::Symbol& name = {});
  /// Takes an instance and everything below it out of the tree; the root empties it.
  bool Remove(const du::SmartPtr<Instance>& instance);
  /// An empty name gives the product's back. Announced if what shows has changed.
  bool Rename(const du::SmartPtr<Instance>& instance, const du::Symbol& name);
  /// For all instances that have no name of their own, announced as a whole by `OnDisplayNamesChanged`.
  bool RenameProduct(const du::SmartPtr<Product>& product, const du::Symbol& name);
  /// False as well for the display name, and for the part ID `ROOT_INSTANCE_ID`.
  bool SetProperty(const du::SmartPtr<Instance>& instance, const du::Symbol& group, const du::Symbol& name,
                   const du::Symbol& value);
  /// Removes a property of the instance's own; that of its product shows again. False if there is none.
  bool RemoveProperty(const du::SmartPtr<Instance>& instance, const du::Symbol& group, const du::Symbol& name);
  /// For all instances of the product. Announced by nothing: call `NotifyPropertyGroupsLoaded` after the last one.
  bool SetProductProperty(const du::SmartPtr<Product>& product, const du::Symbol& group, const du::Symbol& name,
                          const du::Symbol& value);
  /// Bits of `InstanceFlag`; those that speak of proxies have operations of their own. Announced by
  /// `OnInstancePropertiesChanged`.
  bool SetFlags(const du::SmartPtr<Instance>& instance, unsigned int flags, bool on);
  /// Where the shape of this instance is loaded for, in place of its product's anchor. Not announced.
  bool SetAnchor(const du::SmartPtr<Instance>& instance, const du::SmartPtr<zelk::Anchor>& anchor);

  /// The content of a proxy has been read: its children are in. False for an instance that is no proxy, here and below.
  bool ExpandProxy(const du::SmartPtr<Instance>& instance);
  /// Removes the children, and then tells that the proxy is closed again.
  bool CollapseProxy(const du::SmartPtr<Instance>& instance);
  /// The content could not be read. Announced by `OnInstanceExpanded`, after which the query tells the failure.
  bool FailProxy(const du::SmartPtr<Instance>& instance);
  bool TurnProxyToNode(const du::SmartPtr<Instance>& instance);

  /// `viewable` may be null: a record without a viewable.
  bool AddViewable(const du::SmartPtr<Instance>& instance, const du::SmartPtr<zelk::Object>& viewable);
  /// The first record of that viewable; false if there is none.
  bool RemoveViewable(const du::SmartPtr<Instance>& instance, const du::SmartPtr<zelk::Object>& viewable);

  /// `gate` is called ahead of each edit that would have to wait because another thread reads, as a filter does for the
  /// whole of its run. Who runs it may cancel it there, so that the edit waits for a moment only, and run it again when
  /// the edits are in. On the owner's thread; it must not edit the tree. An empty one, the default, lets the edit wait.
  void SetEditGate(std::function<void()> gate) { m_editGate = std::move(gate); }

  /// Tell the observers what changed outside of the tree.
  void NotifyTreeColumnsChanged();
  void NotifyDisplayNamesChanged();
  void NotifyPropertyGroupsLoaded();
  void NotifyModelExtentsChanged();
  void NotifyPropertyGroupAdded(const du::Symbol& group);
  void NotifyPropertyGroupRemoved(const du::Symbol& group);

  /// For the end of the world: `OnDestroy` and `OnUnregister` for each observer. The instances stay until the tree
  /// dies, and no observer is taken on any more.
  void Close();

  /// Whether an edit would be refused, because observers are being told of another one.
  [[nodiscard]] bool IsTellingObservers() const noexcept { return m_observers.IsTelling(); }
  [[nodiscard]] du::SmartPtr<Instance> GetRootInstance() const;

  void GetBaseRoot(du::SmartPtr<zelk::BaseInstance>& out) const override;
  void GetRoot(du::SmartPtr<zelk::Instance>& out) const override;
  /// Any thread.
  void GetNumInstances(unsigned int& out) const override;
  void Visit(zelk::BaseInstanceVisitor& visitor, VisitType type) const override;
  bool RegisterObserver(zelk::TreeObserver& observer, bool replay) override;
  bool UnregisterObserver(zelk::BaseTreeObserver& observer) override;
  [[nodiscard]] dp::ReadWriteLock* GetReadWriteLock() const override { return &m_lock; }

private:
  friend class Instance;
  friend class TreeBatch;

  [[nodiscard]] bool _CanEdit(const Instance* instance) const;
  [[nodiscard]] bool _IsOwn(const Product* product) const;
  [[nodiscard]] du::Symbol _MakeKey(const ProductInfo& info);
  [[nodiscard]] const du::Symbol& _GetSubKey(unsigned int number);
  [[nodiscard]] du::SmartPtr<Instance> _MakeInstance(const du::SmartPtr<Product>& product, const du::Symbol& name);
  du::SmartPtr<Instance> _Insert(const du::SmartPtr<Instance>& parent, Instance* next,
                                 const du::SmartPtr<Product>& product, const du::Symbol& name);
  /// Unlinks under the lock, and returns the parent that the instance had.
  [[nodiscard]] du::SmartPtr<Instance> _TakeOut(const du::SmartPtr<Instance>& top);
  [[nodiscard]] ReadWriteLock& _GetLockForEdit();
  /// Under the lock.
  void _LeaveTree(Instance& top);
  /// Under the lock. Answers whether the bits were different.
  bool _ChangeFlags(Instance& instance, unsigned int flags, bool on);
  template <typename Call>
  void _Tell(Call call);
  void _TellCreated(const du::SmartPtr<Instance>& instance, const du::SmartPtr<Instance>& parent);
  void _TellRemoved(const du::SmartPtr<Instance>& top, const du::SmartPtr<Instance>& parent);
  [[nodiscard]] const Instance* _FindFirstOfGroup(const Instance& parent, const Product& product) const;
  [[nodiscard]] std::uint64_t _GetChildListRevision(const Instance& parent);

  const du::SmartPtr<TreeLink> m_link;
  mutable ReadWriteLock m_lock;
  std::function<void()> m_editGate;
  /// Guards the pointer to the root alone, which is read without the lock of the tree.
  mutable std::mutex m_rootMutex;
  du::SmartPtr<Instance> m_root;
  std::atomic<unsigned int> m_count{0};
  std::unique_ptr<SiblingGroups> m_groups;
  std::unique_ptr<ChildListRevisions> m_revisions;
  /// The product keys that are taken, and for each the number that was put behind it last.
  std::unordered_map<const char*, unsigned int> m_keys;
  std::vector<du::Symbol> m_subKeys;
  ObserverList<zelk::TreeObserver> m_observers;
};

/// Brackets a run of edits: observers hear one begin and one end of update, however many edits are made. Batches nest.
/// Owner's thread; holds the tree, never its lock.
class [[nodiscard]] TreeBatch {
public:
  explicit TreeBatch(Tree& tree);
  ~TreeBatch();
  TreeBatch(const TreeBatch&) = delete;
  TreeBatch& operator=(const TreeBatch&) = delete;

private:
  const du::SmartPtr<Tree> m_tree;
};

}  // namespace memkernel
