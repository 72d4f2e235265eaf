#include <cstddef>
#include <memory>
#include <optional>
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
#include "stepimport/TreeFilling.h"
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

}  // namespace

/// Unfolds one assembly into a tree.
class TreeFilling::Work {
public:
  Work(const Assembly& assembly, const std::shared_ptr<const ShapeStore>& shapes, memkernel::Tree& tree,
       const InstancePtr& parent)
      : m_assembly(assembly), m_shapes(shapes), m_tree(&tree), m_parent(parent), m_entries(assembly.products.size())
  {
  }

  /// Null when the tree refuses.
  [[nodiscard]] InstancePtr AddTop()
  {
    const ProductPtr& product = _GetEntry(m_assembly.root).product;
    return m_parent ? m_tree->AddChild(m_parent, product) : m_tree->CreateRoot(product);
  }
  [[nodiscard]] bool OpenTop(const InstancePtr& top, std::size_t& added) { return _Open(top, m_assembly.root, added); }
  [[nodiscard]] bool IsDone() const noexcept { return m_path.empty(); }
  /// Goes one step further, and counts what it adds. False when the tree refuses.
  [[nodiscard]] bool AddNext(std::size_t& added)
  {
    Step& step = m_path.back();
    const std::vector<Occurrence>& occurrences = m_assembly.products[step.product].occurrences;
    if (step.next == occurrences.size()) {
      m_path.pop_back();
      return true;
    }
    const std::size_t number = step.next++;
    const ProductIndex child = occurrences[number].product;
    // A copy, since the path may grow.
    const InstancePtr parent = step.instance;
    const InstancePtr instance = m_tree->AddChild(parent, _GetEntry(child).product, _GetName(step.product, number));
    added += instance ? 1U : 0U;
    return instance && _Open(instance, child, added);
  }

private:
  /// What the instances of one product share; made when the first of them is.
  struct Entry {
    ProductPtr product;
    std::vector<ProductPtr> bodies;
    /// Of the occurrences, each made when it is asked for; empty where the product's name says the same.
    std::vector<std::optional<du::Symbol>> names;
  };

  /// An instance whose occurrences are being added.
  struct Step {
    InstancePtr instance;
    ProductIndex product;
    std::size_t next;
  };

  [[nodiscard]] Entry& _GetEntry(ProductIndex index)
  {
    Entry& entry = m_entries[index];
    if (!entry.product) {
      entry = _MakeEntry(index);
    }
    return entry;
  }

  [[nodiscard]] const du::Symbol& _GetName(ProductIndex index, std::size_t number)
  {
    std::optional<du::Symbol>& name = _GetEntry(index).names[number];
    if (!name) {
      const Occurrence& occurrence = m_assembly.products[index].occurrences[number];
      const bool isOwn = occurrence.name != m_assembly.products[occurrence.product].name;
      name = isOwn ? du::Symbol(occurrence.name) : du::Symbol();
    }
    return *name;
  }

  [[nodiscard]] Entry _MakeEntry(ProductIndex index) const
  {
    const Product& product = m_assembly.products[index];
    const ShapeMaker shapes(m_shapes, index);
    Entry entry;
    entry.product = m_tree->CreateProduct({.name = du::Symbol(product.name),
                                           .flags = GetFlags(product),
                                           .shape = shapes.MakeShape(product),
                                           .properties = MakeProperties(product, product.appearance)});
    for (const Body& body : product.bodies) {
      entry.bodies.push_back(m_tree->CreateProduct({.name = du::Symbol(body.name),
                                                    .flags = memkernel::InstanceBody | memkernel::InstanceBodyType,
                                                    .shape = shapes.MakeBodyShape(entry.bodies.size()),
                                                    .properties = MakeProperties(product, body.appearance)}));
    }
    entry.names.resize(product.occurrences.size());
    return entry;
  }

  [[nodiscard]] bool _Open(const InstancePtr& instance, ProductIndex product, std::size_t& added)
  {
    for (const ProductPtr& body : _GetEntry(product).bodies) {
      if (!m_tree->AddChild(instance, body)) {
        return false;
      }
      ++added;
    }
    if (!m_assembly.products[product].occurrences.empty()) {
      m_path.push_back({instance, product, 0});
    }
    return true;
  }

  const Assembly& m_assembly;
  const std::shared_ptr<const ShapeStore> m_shapes;
  const du::SmartPtr<memkernel::Tree> m_tree;
  const InstancePtr m_parent;
  std::vector<Entry> m_entries;
  std::vector<Step> m_path;
};

TreeFilling::TreeFilling(const Assembly& assembly, const std::shared_ptr<const ShapeStore>& shapes,
                         memkernel::Tree& tree, const du::SmartPtr<memkernel::Instance>& parent)
    : m_work(std::make_unique<Work>(assembly, shapes, tree, parent)),
      m_count(CountInstances(assembly)),
      m_isRefused(m_count == 0 || m_count > MaxInstances)
{
}

TreeFilling::~TreeFilling() = default;

bool TreeFilling::GoOn(std::size_t count)
{
  const std::size_t last = m_added + count;
  if (!m_top && !m_isRefused) {
    m_top = m_work->AddTop();
    m_added += m_top ? 1U : 0U;
    m_isRefused = !m_top || !m_work->OpenTop(m_top, m_added);
  }
  while (!m_isRefused && !m_work->IsDone() && m_added < last) {
    m_isRefused = !m_work->AddNext(m_added);
  }
  return !m_isRefused && !m_work->IsDone();
}

du::SmartPtr<memkernel::Instance> FillTree(const Assembly& assembly, const std::shared_ptr<const ShapeStore>& shapes,
                                           memkernel::Tree& tree, const du::SmartPtr<memkernel::Instance>& parent)
{
  const memkernel::TreeBatch batch(tree);
  TreeFilling filling(assembly, shapes, tree, parent);
  while (filling.GoOn(MaxInstances)) {}
  if (filling.IsRefused() && filling.GetTop()) {
    tree.Remove(filling.GetTop());
  }
  return filling.IsRefused() ? nullptr : filling.GetTop();
}

}  // namespace stepimport
