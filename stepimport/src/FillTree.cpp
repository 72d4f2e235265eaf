#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ProductLoads.h"
#include "du/SmartPtr.h"
#include "du/Symbol.h"
#include "memkernel/InstanceFlags.h"
#include "memkernel/Product.h"
#include "memkernel/PropertyTable.h"
#include "memkernel/Shape.h"
#include "stepimport/Import.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace stepimport {

namespace {

using InstancePtr = du::SmartPtr<memkernel::Instance>;
using ProductPtr = du::SmartPtr<memkernel::Product>;
using ShapePtr = du::SmartPtr<memkernel::Shape>;

void SetProperty(memkernel::PropertyTable& properties, const char* name, const std::string& value)
{
  if (!value.empty()) {
    properties.Set(zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, du::Symbol(name), du::Symbol(value));
  }
}

std::string Join(const std::vector<std::string>& texts)
{
  std::string all;
  for (const std::string& text : texts) {
    all += (all.empty() ? "" : ", ") + text;
  }
  return all;
}

memkernel::PropertyTable MakeProperties(const Product& product, const Appearance& appearance)
{
  memkernel::PropertyTable properties;
  SetProperty(properties, "Product Name", product.name);
  SetProperty(properties, "Color", appearance.color);
  SetProperty(properties, "Layer", Join(appearance.layers));
  SetProperty(properties, "Source File", product.sourceFile.string());
  if (product.reference.state != ReferenceState::None) {
    SetProperty(properties, "Referenced File", product.reference.target);
    SetProperty(properties, "Reference Failure", product.reference.cause);
  }
  return properties;
}

unsigned int GetFlags(const Product& product)
{
  unsigned int flags = 0;
  // An assembly lacks nothing when it has no geometry of its own.
  if (!product.occurrences.empty()) {
    flags |= memkernel::InstancePlainIcon;
  }
  if (product.reference.state == ReferenceState::Expanded) {
    flags |= memkernel::InstanceProxy | memkernel::InstanceProxyExpanded;
  }
  if (product.reference.state == ReferenceState::Failed) {
    flags |= memkernel::InstanceProxy | memkernel::InstanceProxyExpandFailed;
  }
  return flags;
}

/// Makes the shapes of one product.
class ShapeMaker {
public:
  /// Without a store there is nothing to load from.
  ShapeMaker(const std::shared_ptr<const ShapeStore>& store, ProductIndex product)
      : m_loads(store ? std::make_shared<ProductLoads>(store, product) : nullptr)
  {
  }

  /// Null for a product without geometry of its own.
  [[nodiscard]] ShapePtr MakeShape(const Product& product) const
  {
    // It is known already that nothing can be had, so nobody needs to ask.
    if (product.hasDamagedShape) {
      return du::MakeSmart<memkernel::Shape>(Work(), zelk::ShapeDataFailed);
    }
    if (!product.hasShape) {
      return {};
    }
    return _Make([loads = m_loads](memkernel::LoadContext& context) { return loads->LoadProduct(context); });
  }

  [[nodiscard]] ShapePtr MakeBodyShape(std::size_t body) const
  {
    return _Make([loads = m_loads, body](memkernel::LoadContext& context) { return loads->LoadBody(body, context); });
  }

private:
  using Work = memkernel::Shape::Work;

  [[nodiscard]] ShapePtr _Make(Work work) const
  {
    return du::MakeSmart<memkernel::Shape>(m_loads ? std::move(work) : Work());
  }

  std::shared_ptr<ProductLoads> m_loads;
};

/// Unfolds one assembly into a tree.
class TreeFiller {
public:
  TreeFiller(const Assembly& assembly, const std::shared_ptr<const ShapeStore>& shapes, memkernel::Tree& tree)
      : m_assembly(assembly), m_shapes(shapes), m_tree(tree), m_entries(assembly.products.size())
  {
  }

  /// Null as soon as the tree refuses.
  InstancePtr Fill(const InstancePtr& parent)
  {
    const ProductPtr& product = _GetEntry(m_assembly.root).product;
    InstancePtr top = parent ? m_tree.AddChild(parent, product) : m_tree.CreateRoot(product);
    if (!top || !_Open(top, m_assembly.root)) {
      return _GiveUp(top);
    }
    while (!m_path.empty()) {
      if (!_AddNext()) {
        return _GiveUp(top);
      }
    }
    return top;
  }

private:
  /// What the instances of one product share; made when the first of them is.
  struct Entry {
    ProductPtr product;
    std::vector<ProductPtr> bodies;
    /// Of the occurrences; empty where the product's name says the same.
    std::vector<du::Symbol> names;
  };

  /// An instance whose occurrences are being added.
  struct Step {
    InstancePtr instance;
    ProductIndex product;
    std::size_t next;
  };

  const Entry& _GetEntry(ProductIndex index)
  {
    Entry& entry = m_entries[index];
    if (!entry.product) {
      entry = _MakeEntry(index);
    }
    return entry;
  }

  [[nodiscard]] Entry _MakeEntry(ProductIndex index) const
  {
    const Product& product = m_assembly.products[index];
    const ShapeMaker shapes(m_shapes, index);
    Entry entry;
    entry.product = m_tree.CreateProduct({.name = du::Symbol(product.name),
                                          .flags = GetFlags(product),
                                          .shape = shapes.MakeShape(product),
                                          .properties = MakeProperties(product, product.appearance)});
    for (const Body& body : product.bodies) {
      entry.bodies.push_back(m_tree.CreateProduct({.name = du::Symbol(body.name),
                                                   .flags = memkernel::InstanceBody | memkernel::InstanceBodyType,
                                                   .shape = shapes.MakeBodyShape(entry.bodies.size()),
                                                   .properties = MakeProperties(product, body.appearance)}));
    }
    for (const Occurrence& occurrence : product.occurrences) {
      const bool isOwn = occurrence.name != m_assembly.products[occurrence.product].name;
      entry.names.push_back(isOwn ? du::Symbol(occurrence.name) : du::Symbol());
    }
    return entry;
  }

  [[nodiscard]] bool _Open(const InstancePtr& instance, ProductIndex product)
  {
    for (const ProductPtr& body : _GetEntry(product).bodies) {
      if (!m_tree.AddChild(instance, body)) {
        return false;
      }
    }
    if (!m_assembly.products[product].occurrences.empty()) {
      m_path.push_back({instance, product, 0});
    }
    return true;
  }

  [[nodiscard]] bool _AddNext()
  {
    Step& step = m_path.back();
    const std::vector<Occurrence>& occurrences = m_assembly.products[step.product].occurrences;
    if (step.next == occurrences.size()) {
      m_path.pop_back();
      return true;
    }
    const std::size_t number = step.next++;
    const ProductIndex child = occurrences[number].product;
    const du::Symbol& name = _GetEntry(step.product).names[number];
    const InstancePtr instance = m_tree.AddChild(step.instance, _GetEntry(child).product, name);
    return instance && _Open(instance, child);
  }

  InstancePtr _GiveUp(const InstancePtr& top)
  {
    if (top) {
      m_tree.Remove(top);
    }
    return {};
  }

  const Assembly& m_assembly;
  const std::shared_ptr<const ShapeStore>& m_shapes;
  memkernel::Tree& m_tree;
  std::vector<Entry> m_entries;
  std::vector<Step> m_path;
};

}  // namespace

du::SmartPtr<memkernel::Instance> FillTree(const Assembly& assembly, const std::shared_ptr<const ShapeStore>& shapes,
                                           memkernel::Tree& tree, const du::SmartPtr<memkernel::Instance>& parent)
{
  const std::size_t count = CountInstances(assembly);
  if (count == 0 || count > MaxInstances) {
    return {};
  }
  const memkernel::TreeBatch batch(tree);
  return TreeFiller(assembly, shapes, tree).Fill(parent);
}

}  // namespace stepimport
