#include "support/Shapes.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace bench {
namespace {

using InstancePtr = du::SmartPtr<memkernel::Instance>;
using ProductPtr = du::SmartPtr<memkernel::Product>;

constexpr std::size_t s_minChildren = 8;
constexpr std::size_t s_maxChildren = 12;
constexpr std::size_t s_productsInUse = 64;
constexpr std::size_t s_wideChildren = 100'000;
constexpr std::size_t s_chainLevels = 1'000;

/// Makes instances until the tree has as many as it shall.
class Builder {
public:
  explicit Builder(std::size_t count)
      : m_count(count), m_left(count), m_tree(du::MakeSmart<memkernel::Tree>()), m_batch(*m_tree)
  {
    _MakeProducts("Assembly", std::max<std::size_t>(4, count / 100), m_assemblies);
    _MakeProducts("Part", std::max<std::size_t>(16, count / 25), m_parts);
    m_root = m_tree->CreateRoot(_Draw(m_assemblies));
    --m_left;
  }

  [[nodiscard]] const InstancePtr& GetRoot() const noexcept { return m_root; }
  [[nodiscard]] std::size_t GetLeft() const noexcept { return m_left; }
  [[nodiscard]] const du::SmartPtr<memkernel::Tree>& GetTree() const noexcept { return m_tree; }

  InstancePtr AddPart(const InstancePtr& parent) { return _Add(parent, m_parts); }
  InstancePtr AddAssembly(const InstancePtr& parent) { return _Add(parent, m_assemblies); }

  /// A number from `low` to `high`. Not by a standard distribution: those differ between libraries.
  [[nodiscard]] std::size_t Draw(std::size_t low, std::size_t high) { return low + m_random() % (high - low + 1); }

private:
  void _MakeProducts(std::string_view name, std::size_t count, std::vector<ProductPtr>& out)
  {
    out.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      const std::string text = std::string(name).append(" ").append(std::to_string(i));
      out.push_back(m_tree->CreateProduct({.name = du::Symbol(std::string_view(text))}));
    }
  }

  /// One of a few, which move on with the number of instances: the parts of an assembly have much in common, those of
  /// two distant ones little.
  [[nodiscard]] const ProductPtr& _Draw(const std::vector<ProductPtr>& products)
  {
    const std::size_t place = (m_count - m_left) * products.size() / m_count;
    return products[std::min(place + Draw(0, s_productsInUse - 1), products.size() - 1)];
  }

  InstancePtr _Add(const InstancePtr& parent, const std::vector<ProductPtr>& products)
  {
    --m_left;
    return m_tree->AddChild(parent, _Draw(products));
  }

  std::mt19937 m_random;
  const std::size_t m_count;
  std::size_t m_left;
  const du::SmartPtr<memkernel::Tree> m_tree;
  const memkernel::TreeBatch m_batch;
  std::vector<ProductPtr> m_assemblies;
  std::vector<ProductPtr> m_parts;
  InstancePtr m_root;
};

/// Puts `count` instances below `parent`, spread evenly over its children.
void FillTypical(Builder& builder, const InstancePtr& parent, std::size_t count)
{
  if (count <= s_maxChildren) {
    for (std::size_t i = 0; i < count; ++i) {
      builder.AddPart(parent);
    }
    return;
  }
  const std::size_t children = builder.Draw(s_minChildren, s_maxChildren);
  for (std::size_t left = children; left > 0; --left) {
    const std::size_t share = count / left;
    count -= share;
    FillTypical(builder, share > 1 ? builder.AddAssembly(parent) : builder.AddPart(parent), share - 1);
  }
}

void FillScattered(Builder& builder)
{
  std::vector<InstancePtr> assemblies{builder.GetRoot()};
  for (std::size_t left = builder.GetLeft() / s_maxChildren; left > 0; --left) {
    assemblies.push_back(builder.AddAssembly(assemblies[builder.Draw(0, assemblies.size() - 1)]));
  }
  while (builder.GetLeft() > 0) {
    builder.AddPart(assemblies[builder.Draw(0, assemblies.size() - 1)]);
  }
}

void FillWide(Builder& builder)
{
  while (builder.GetLeft() > 0) {
    const InstancePtr parent = builder.AddAssembly(builder.GetRoot());
    for (std::size_t left = std::min(s_wideChildren, builder.GetLeft()); left > 0; --left) {
      builder.AddPart(parent);
    }
  }
}

void FillChains(Builder& builder, std::size_t levels)
{
  while (builder.GetLeft() > 0) {
    InstancePtr end = builder.GetRoot();
    for (std::size_t left = std::min(levels, builder.GetLeft()); left > 0; --left) {
      end = builder.AddAssembly(end);
    }
  }
}

}  // namespace

du::SmartPtr<memkernel::Tree> MakeTree(Shape shape, std::size_t count)
{
  Builder builder(count);
  switch (shape) {
    case Shape::Typical:
      FillTypical(builder, builder.GetRoot(), builder.GetLeft());
      break;
    case Shape::Scattered:
      FillScattered(builder);
      break;
    case Shape::Wide:
      FillWide(builder);
      break;
    case Shape::Deep:
      FillChains(builder, s_chainLevels);
      break;
    case Shape::Chain:
      FillChains(builder, count);
      break;
  }
  return builder.GetTree();
}

}  // namespace bench
