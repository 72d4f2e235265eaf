// How long a panel takes to fill without a filter, and what it keeps: against the bare walk of the same tree, and
// against models that hold the same rows.

#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "peers/Peers.h"
#include "support/Measure.h"
#include "support/Panel.h"
#include "support/Shapes.h"
#include "support/Walk.h"
#include "zelk/BaseInstanceVisitor.h"

namespace bench {
namespace {

class CountingVisitor final : public zelk::BaseInstanceVisitor {
public:
  bool VisitInstance(const du::SmartPtr<zelk::BaseInstance>& instance) override
  {
    benchmark::DoNotOptimize(instance.Get());
    ++count;
    return true;
  }

  std::size_t count = 0;
};

std::size_t Walk(const zelk::BaseTree& tree)
{
  return WalkDepthFirst(
      tree, [](const zelk::BaseInstance& instance, std::size_t /*depth*/) { benchmark::DoNotOptimize(&instance); });
}

/// Before each figure, so that all are taken from caches that are as warm as the size of the tree allows.
void Touch(const zelk::BaseTree& tree)
{
  Walk(tree);
}

double TimeWalk(const zelk::BaseTree& tree, std::size_t rows)
{
  Touch(tree);
  std::size_t walked = 0;
  const double seconds = Time([&] { walked = Walk(tree); });
  Require(walked == rows, "the walk passes each instance once");
  return seconds;
}

double TimeVisit(const zelk::BaseTree& tree, std::size_t rows)
{
  Touch(tree);
  CountingVisitor visitor;
  const double seconds = Time([&] { tree.Visit(visitor, zelk::BaseTree::VisitParentsFirst); });
  Require(visitor.count == rows, "the visit passes each instance once");
  return seconds;
}

struct Filling {
  double seconds;
  double bytes;
};

/// The first population of a new panel.
Filling FillPanel(const du::SmartPtr<zelk::BaseTree>& tree, std::size_t rows)
{
  IdleHost host;
  Panel panel(tree, host);
  Require(panel.GetRowCount() == 0, "a new panel has no rows");
  Touch(*tree);
  const double before = GetAllocatedBytes();
  const double seconds = Time([&] { panel.Populate(); });
  const double bytes = GetAllocatedBytes() - before;
  Require(panel.GetRowCount() == rows, "a population makes a row of each instance");
  return {seconds, bytes};
}

Filling FillPeer(Peer& peer, const zelk::BaseTree& tree, std::size_t rows)
{
  Touch(tree);
  const double before = GetAllocatedBytes();
  const double seconds = Time([&] { peer.Fill(); });
  const double bytes = GetAllocatedBytes() - before;
  Require(peer.ReadAll() == rows, peer.GetName() + " has a row of each instance");
  peer.Clear();
  return {seconds, bytes};
}

Figures Populate(std::size_t rows, Shape shape, bool withPeers)
{
  const auto count = static_cast<double>(rows);
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(shape, rows);
  const auto peers = withPeers ? MakePeers(*tree) : std::vector<std::unique_ptr<Peer>>();
  return RunRounds(rows, [&](Figures& figures) {
    const double walk = TimeWalk(*tree, rows);
    const Filling panel = FillPanel(tree, rows);
    figures["bytes_row"] = panel.bytes / count;
    figures["x_floor"] = panel.seconds / walk;
    figures["x_visit"] = panel.seconds / TimeVisit(*tree, rows);
    for (const auto& peer : peers) {
      const Filling filling = FillPeer(*peer, *tree, rows);
      figures["x_" + peer->GetName()] = panel.seconds / filling.seconds;
      figures["bytes_" + peer->GetName()] = filling.bytes / count;
    }
    return panel.seconds;
  });
}

void RegisterShape(const std::string& name, Shape shape, bool withPeers)
{
  Register("Populate/" + name, {10'000, 100'000, 1'000'000},
           [=](std::size_t rows) { return Populate(rows, shape, withPeers); });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  bench::RegisterShape("typical", bench::Shape::Typical, true);
  bench::RegisterShape("scattered", bench::Shape::Scattered, true);
  bench::RegisterShape("wide", bench::Shape::Wide, true);
  bench::RegisterShape("deep", bench::Shape::Deep, true);
  bench::RegisterShape("chain", bench::Shape::Chain, false);
  return bench::RunAll(argc, argv);
}
