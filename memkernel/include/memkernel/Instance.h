#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "memkernel/InstanceFlags.h"
#include "memkernel/Product.h"
#include "zelk/ComponentInstance.h"
#include "zelk/ViewableData.h"

namespace memkernel {

class SiblingGroups;
class SiblingIndex;
class Tree;

/// An instance of a product. Made and edited by its `Tree`; a parent holds its children. The owner's thread reads it at
/// any time, another thread under the read side of the tree's lock.
///
/// An instance that has been taken out of its tree keeps its own subtree, name and properties. Its links may then be
/// read by other threads only while they hold the topmost instance of what has been taken out.
class Instance final : public zelk::ComponentInstance {
public:
  ~Instance() override;

  /// The properties of the group `zelk::BaseInstanceDynamicPropertiesCache::s_GroupName`. The display name is the same
  /// as `GetObjectName`. The part ID is `ROOT_INSTANCE_ID` for the base root, else that of the instance or its product,
  /// else the two keys with a stroke between them.
  static const du::Symbol s_displayName;
  static const du::Symbol s_partId;

  [[nodiscard]] const du::SmartPtr<Product>& GetProduct() const noexcept { return m_product; }
  /// The instance's own name, else that of its product.
  [[nodiscard]] du::Symbol GetObjectName() const override;
  /// False as soon as the instance, or one above it, has been removed. As `GetBaseTree`: any thread, without the lock.
  [[nodiscard]] bool IsInTree() const noexcept;
  /// The bits of `InstanceFlag`.
  [[nodiscard]] unsigned int GetFlags() const noexcept { return _GetFlags() & InstanceAllFlags; }
  /// What `Tree::AddViewable` has added, in order.
  [[nodiscard]] std::vector<du::SmartPtr<zelk::ViewableData>> GetViewables() const;

  [[nodiscard]] du::Symbol GetInstanceKey() const override;
  [[nodiscard]] du::Symbol GetInstanceSubKey() const override;
  [[nodiscard]] bool IsPlainIconInstance() const override;
  [[nodiscard]] bool IsBodyInstance() const override;
  void GetPropertyValue(du::SmartPtr<zelk::PropertyValue>& out, const du::Symbol& group, const du::Symbol& name,
                        const du::Symbol& fallback) const override;
  void GetBaseChildren(std::vector<du::SmartPtr<zelk::BaseInstance>>& out) const override;
  void GetBaseFirstChild(du::SmartPtr<zelk::BaseInstance>& out) const override;
  void GetBaseNextSibling(du::SmartPtr<zelk::BaseInstance>& out) const override;
  void GetBaseParent(du::SmartPtr<zelk::BaseInstance>& out) const override;
  /// Any thread, without the lock. Where it answers null, everything below the instance has left the tree as well.
  void GetBaseTree(du::SmartPtr<zelk::BaseTree>& out) const override;
  [[nodiscard]] bool HasChildren() const override;
  /// 0 as well once the instance, or one above it, has been removed. From the first call on the tree keeps some 40
  /// bytes for the instance.
  [[nodiscard]] std::uint64_t GetChildListRevision() const override;

  [[nodiscard]] du::SmartPtr<zelk::Instance> GetFirstMultiInstancedSibling() const override;
  void GetAllMultiInstancedSibling(std::vector<du::SmartPtr<zelk::Instance>>& out) const override;
  [[nodiscard]] bool IsFirstMultiInstancedSibling() const override;
  [[nodiscard]] bool IsMultiInstancedSibling() const override;
  void GetAnchor(du::SmartPtr<zelk::Anchor>& out) const override;
  [[nodiscard]] bool HasNoneBodyChildren() const override;
  [[nodiscard]] bool HasProxyExpandFailed() const override;
  [[nodiscard]] bool HasShapeSource() const override;
  [[nodiscard]] bool HasThumbnailSource() const override;
  [[nodiscard]] bool Is3dSymbol() const override;
  [[nodiscard]] bool IsBodyTypeInstance() const override;
  [[nodiscard]] bool IsConstructionBodyTypeInstance() const override;
  [[nodiscard]] bool IsProxy() const override;
  [[nodiscard]] bool IsProxyExpanded() const override;
  [[nodiscard]] bool IsRootContainerRoot() const override;

private:
  friend class SiblingGroups;
  friend class SiblingIndex;
  friend class Tree;

  /// What an instance has of its own; most have nothing.
  struct Own {
    du::SmartPtr<TextValue> name;
    du::SmartPtr<zelk::Anchor> anchor;
    PropertyTable properties;
    std::vector<du::SmartPtr<zelk::ViewableData>> viewables;
  };

  Instance(const du::SmartPtr<Product>& product, const du::Symbol& subKey);

  [[nodiscard]] bool _Has(unsigned int flag) const noexcept { return (_GetFlags() & flag) != 0; }
  [[nodiscard]] unsigned int _GetFlags() const noexcept { return m_flags.load(std::memory_order_acquire); }
  /// In one thread at a time, so no other change can come between.
  void _SetFlags(unsigned int flags, bool on) noexcept
  {
    const unsigned int before = m_flags.load(std::memory_order_relaxed);
    m_flags.store(on ? before | flags : before & ~flags, std::memory_order_release);
  }
  /// Lets go of a list of children, and of all that die with them, without recursion.
  static void _ReleaseList(Instance* firstChild);
  [[nodiscard]] Own& _GetOwn();
  [[nodiscard]] const du::SmartPtr<TextValue>& _GetNameValue() const noexcept
  {
    return m_own && m_own->name ? m_own->name : m_product->m_name;
  }
  [[nodiscard]] du::SmartPtr<zelk::PropertyValue> _GetPartIdValue() const;
  /// Null if the instance has no such property.
  [[nodiscard]] du::SmartPtr<zelk::PropertyValue> _FindValue(const du::Symbol& group, const du::Symbol& name) const;
  [[nodiscard]] Instance* _GetLastChild() const noexcept;
  /// Null for the first one.
  [[nodiscard]] Instance* _GetPreviousSibling() const noexcept;
  /// By walking the siblings; for an instance that has a group.
  [[nodiscard]] const Instance* _FindFirstOfGroup() const noexcept;
  /// The instance that follows in a walk of `top`, parents first; null after the last one.
  [[nodiscard]] const Instance* _GetNextInSubtree(const Instance* top) const noexcept;
  /// Takes over a reference on `child`, which comes before `next`, or last for null.
  void _LinkChild(Instance* child, Instance* next) noexcept;
  /// Gives the reference back, which the caller takes over.
  void _UnlinkChild(Instance* child) noexcept;

  const du::SmartPtr<Product> m_product;
  const du::Symbol m_subKey;
  Instance* m_parent = nullptr;
  Instance* m_firstChild = nullptr;
  Instance* m_nextSibling = nullptr;
  /// For the first child its last sibling, which is how a parent finds its last child.
  Instance* m_previousSibling = nullptr;
  std::unique_ptr<Own> m_own;
  /// `InstanceFlag`, and above them what the tree keeps for itself. Atomic because a reader finds the tree, and with it
  /// the lock, by a look at them.
  std::atomic<unsigned int> m_flags;
};

}  // namespace memkernel
