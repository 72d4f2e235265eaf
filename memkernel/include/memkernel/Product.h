#pragma once

#include "du/RefCounted.h"
#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "memkernel/InstanceFlags.h"
#include "memkernel/PropertyTable.h"
#include "memkernel/Shape.h"
#include "zelk/Anchor.h"

namespace memkernel {

class Instance;
class Tree;
class TreeLink;

/// What a product is made of. Everything may be left out.
struct ProductInfo {
  /// The display name of all instances that have none of their own.
  du::Symbol name{};
  /// The instance key of all instances. A key that the tree has given away already gets a number behind it; without a
  /// key the name is taken.
  du::Symbol key{};
  /// The "Part ID" of all instances; without one each has its own. `zelk::ComponentInstance::ROOT_INSTANCE_ID` is left
  /// out.
  du::Symbol partId{};
  /// Bits of `InstanceFlag`.
  unsigned int flags = 0;
  /// Null for a product without geometry, such as an assembly.
  du::SmartPtr<Shape> shape{};
  du::SmartPtr<zelk::Anchor> anchor{};
  PropertyTable properties{};
};

/// What the instances of one thing have in common. Made by `Tree::CreateProduct` for one tree and kept alive by its
/// instances. Read as the instances are: by the owner at any time, by other threads under the read side of the tree's
/// lock. Siblings of one product are multi-instanced siblings.
class Product : public virtual du::RefCounted {
public:
  ~Product() override;

  [[nodiscard]] const du::Symbol& GetKey() const noexcept { return m_key; }
  [[nodiscard]] const du::Symbol& GetName() const noexcept { return m_name->GetText(); }
  /// Empty if each instance has its own.
  [[nodiscard]] const du::Symbol& GetPartId() const noexcept { return m_partId; }
  [[nodiscard]] unsigned int GetFlags() const noexcept { return m_flags; }
  [[nodiscard]] const du::SmartPtr<Shape>& GetShape() const noexcept { return m_shape; }
  [[nodiscard]] const du::SmartPtr<zelk::Anchor>& GetAnchor() const noexcept { return m_anchor; }
  [[nodiscard]] const PropertyTable& GetProperties() const noexcept { return m_properties; }

private:
  friend class Instance;
  friend class Tree;

  Product(const du::SmartPtr<TreeLink>& tree, const du::Symbol& key, const ProductInfo& info);

  const du::SmartPtr<TreeLink> m_tree;
  const du::Symbol m_key;
  du::SmartPtr<TextValue> m_name;
  const du::Symbol m_partId;
  const du::SmartPtr<Shape> m_shape;
  const du::SmartPtr<zelk::Anchor> m_anchor;
  PropertyTable m_properties;
  const unsigned int m_flags;
  /// The instances made so far: the newest one's sub-key.
  unsigned int m_lastSubKey = 0;
};

}  // namespace memkernel
