// What it costs to fill the embedded kernel: time and bytes an instance, which must not grow with the size of the tree.

#include <benchmark/benchmark.h>

#include "support/Measure.h"
#include "support/Shapes.h"

namespace bench {
namespace {

struct Loading {
  double seconds;
  double bytes;
};

Loading Load(Shape shape, std::size_t count)
{
  const double before = GetAllocatedBytes();
  du::SmartPtr<memkernel::Tree> tree;
  const double seconds = Time([&] { tree = MakeTree(shape, count); });
  const double bytes = GetAllocatedBytes() - before;
  unsigned int loaded = 0;
  tree->GetNumInstances(loaded);
  Require(loaded == count, "all instances are in the tree");
  return {seconds, bytes};
}

Figures LoadShape(std::size_t count, Shape shape)
{
  return RunRounds(count, [&](Figures& figures) {
    const Loading loading = Load(shape, count);
    figures["bytes_each"] = loading.bytes / static_cast<double>(count);
    return loading.seconds;
  });
}

void RegisterShape(const std::string& name, Shape shape)
{
  Register("Load/" + name, {10'000, 100'000, 1'000'000, 2'000'000},
           [=](std::size_t count) { return LoadShape(count, shape); });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  bench::RegisterShape("typical", bench::Shape::Typical);
  bench::RegisterShape("wide", bench::Shape::Wide);
  bench::RegisterShape("chain", bench::Shape::Chain);
  return bench::RunAll(argc, argv);
}
