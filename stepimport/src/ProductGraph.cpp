#include "ProductGraph.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace stepimport {

namespace {

/// A walk into the occurrences of products, deepest first. Each product is entered once.
class Walk {
public:
  explicit Walk(const std::vector<Product>& products) : m_products(products), m_states(products.size(), State::New) {}

  /// Answers false when it has met a cycle, which `GetCycle` then gives. `leave` is called for each product after all
  /// that it contains.
  template <typename Leave>
  bool Run(ProductIndex start, Leave leave)
  {
    _Enter(start);
    while (!m_path.empty()) {
      Step& step = m_path.back();
      const std::vector<Occurrence>& occurrences = m_products[step.product].occurrences;
      if (step.next == occurrences.size()) {
        m_states[step.product] = State::Done;
        leave(step.product);
        m_path.pop_back();
        continue;
      }
      const ProductIndex child = occurrences[step.next++].product;
      if (m_states[child] == State::Open) {
        m_met = child;
        return false;
      }
      _Enter(child);
    }
    return true;
  }

  [[nodiscard]] std::vector<ProductIndex> GetCycle() const
  {
    const auto first =
        std::find_if(m_path.begin(), m_path.end(), [this](const Step& step) { return step.product == m_met; });
    std::vector<ProductIndex> cycle;
    std::transform(first, m_path.end(), std::back_inserter(cycle), [](const Step& step) { return step.product; });
    return cycle;
  }

private:
  enum class State : unsigned char { New, Open, Done };

  struct Step {
    ProductIndex product;
    std::size_t next;
  };

  void _Enter(ProductIndex product)
  {
    if (m_states[product] == State::New) {
      m_states[product] = State::Open;
      m_path.push_back({product, 0});
    }
  }

  const std::vector<Product>& m_products;
  std::vector<State> m_states;
  std::vector<Step> m_path;
  ProductIndex m_met = 0;
};

std::size_t AddUpTo(std::size_t a, std::size_t b)
{
  constexpr std::size_t Most = std::numeric_limits<std::size_t>::max();
  return a > Most - b ? Most : a + b;
}

}  // namespace

std::vector<ProductIndex> FindCycle(const std::vector<Product>& products)
{
  Walk walk(products);
  for (ProductIndex start = 0; start < products.size(); ++start) {
    if (!walk.Run(start, [](ProductIndex) {})) {
      return walk.GetCycle();
    }
  }
  return {};
}

std::size_t CountInstances(const Assembly& assembly)
{
  if (assembly.products.empty()) {
    return 0;
  }
  std::vector<std::size_t> counts(assembly.products.size(), 0);
  Walk walk(assembly.products);
  walk.Run(assembly.root, [&](ProductIndex left) {
    const Product& product = assembly.products[left];
    std::size_t count = 1 + product.bodies.size();
    for (const Occurrence& occurrence : product.occurrences) {
      count = AddUpTo(count, counts[occurrence.product]);
    }
    counts[left] = count;
  });
  return counts[assembly.root];
}

}  // namespace stepimport
