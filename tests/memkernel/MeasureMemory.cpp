// Prints what an instance of memkernel costs: heap bytes by the allocator's own count, and the times to load and to
// visit.

#include <malloc.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "memkernel/World.h"
#include "zelk/BaseInstanceVisitor.h"

namespace {

using memkernel::Instance;
using memkernel::Product;
using memkernel::Tree;

using InstancePtr = du::SmartPtr<Instance>;
using Clock = std::chrono::steady_clock;

constexpr std::size_t s_instances = 2'000'000;
constexpr std::size_t s_products = 1'000;

std::size_t GetHeapBytes()
{
  malloc_trim(0);
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

double GetMilliseconds(Clock::time_point start)
{
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::vector<du::SmartPtr<Product>> MakeProducts(Tree& tree, std::size_t count)
{
  std::vector<du::SmartPtr<Product>> products;
  for (std::size_t i = 0; i < count; ++i) {
    products.push_back(tree.CreateProduct({.name = du::Symbol(std::string_view("Part " + std::to_string(i)))}));
  }
  return products;
}

void FillBroad(Tree& tree, const InstancePtr& root)
{
  const auto products = MakeProducts(tree, s_products);
  std::vector<InstancePtr> level{root};
  for (std::size_t made = 1; made < s_instances;) {
    std::vector<InstancePtr> next;
    for (const InstancePtr& parent : level) {
      for (int i = 0; i < 8 && made < s_instances; ++i, ++made) {
        next.push_back(tree.AddChild(parent, products[made % s_products]));
      }
    }
    level.swap(next);
  }
}

void FillDeep(Tree& tree, const InstancePtr& root)
{
  const auto products = MakeProducts(tree, s_products);
  InstancePtr deepest = root;
  for (std::size_t made = 1; made < s_instances; ++made) {
    deepest = tree.AddChild(deepest, products[made % s_products]);
  }
}

void FillWide(Tree& tree, const InstancePtr& root)
{
  const auto products = MakeProducts(tree, s_products);
  for (std::size_t made = 1; made < s_instances; ++made) {
    tree.AddChild(root, products[made % s_products]);
  }
}

void FillWithProductsOfTheirOwn(Tree& tree, const InstancePtr& root)
{
  std::vector<InstancePtr> parents{root};
  for (std::size_t made = 1; made < s_instances; ++made) {
    const auto product = tree.CreateProduct({.name = du::Symbol(std::string_view("Part " + std::to_string(made)))});
    const InstancePtr instance = tree.AddChild(parents[made / 8], product);
    if (parents.size() <= s_instances / 8) {
      parents.push_back(instance);
    }
  }
}

class CountingVisitor : public zelk::BaseInstanceVisitor {
public:
  bool VisitInstance(const du::SmartPtr<zelk::BaseInstance>& /*instance*/) override
  {
    ++count;
    return true;
  }
  std::size_t count = 0;
};

void Measure(const char* name, const std::function<void(Tree&, const InstancePtr&)>& fill)
{
  const auto world = du::MakeSmart<memkernel::World>(1U);
  Tree& tree = world->GetMemTree();
  const InstancePtr root = tree.CreateRoot(tree.CreateProduct({.name = "Root"}));
  const std::size_t before = GetHeapBytes();
  const auto start = Clock::now();
  {
    const memkernel::TreeBatch batch(tree);
    fill(tree, root);
  }
  const double loaded = GetMilliseconds(start);
  const auto bytes = static_cast<double>(GetHeapBytes() - before);
  const auto visitStart = Clock::now();
  CountingVisitor visitor;
  tree.Visit(visitor, zelk::BaseTree::VisitParentsFirst);
  std::printf("%-28s %9zu instances  %6.1f bytes each  load %5.0f ms  visit %4.0f ms\n", name, visitor.count,
              bytes / static_cast<double>(visitor.count), loaded, GetMilliseconds(visitStart));
}

}  // namespace

int main()
{
  std::printf("sizeof(memkernel::Instance) = %zu\n", sizeof(Instance));
  Measure("eight children each", FillBroad);
  Measure("one chain", FillDeep);
  Measure("all below the root", FillWide);
  Measure("a product for each instance", FillWithProductsOfTheirOwn);
  return 0;
}
