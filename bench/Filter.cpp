// How long a filter takes on its worker and on the owner's thread, and what it keeps: against a bare walk that builds a
// pruned tree by the same name test, and against the filter of a Qt proxy model over the same rows.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "memkernel/Instance.h"
#include "peers/Peers.h"
#include "support/FilterNames.h"
#include "support/FilterPanel.h"
#include "support/Measure.h"
#include "support/PrunedTree.h"
#include "support/RowCount.h"
#include "support/Shapes.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace bench {
namespace {

constexpr double s_milliseconds = 1e3;
/// Up to which the peers take part; beyond, a round of theirs takes a minute.
constexpr std::size_t s_mostPeerRows = 1'000'000;
/// One leaf of so many is a body where bodies are hidden.
constexpr std::size_t s_leavesToABody = 3;

/// What a filter does besides looking for a text in the names.
struct Mode {
  std::string name;
  /// Siblings and bodies that are hidden take a pass of their own for the bodies.
  RowRule rule;
  bool isSorted = false;
};

void SetUp(zelremote::StructureFilterInfo& filter, const Mode& mode)
{
  filter.SetShowSiblings(mode.rule.takesSiblings);
  filter.hideBodies = mode.rule.hidesBodies;
  if (mode.isSorted) {
    filter.SetSortColumn(
        du::DualSymbol(zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, memkernel::Instance::s_displayName));
  }
}

/// Makes bodies of some leaves, and returns how many.
std::size_t MakeBodies(memkernel::Tree& tree)
{
  std::vector<du::SmartPtr<memkernel::Instance>> bodies;
  std::size_t leaves = 0;
  std::vector<du::SmartPtr<zelk::BaseInstance>> open{tree.GetRootInstance()};
  std::vector<du::SmartPtr<zelk::BaseInstance>> children;
  while (!open.empty()) {
    const du::SmartPtr<zelk::BaseInstance> instance = std::move(open.back());
    open.pop_back();
    instance->GetBaseChildren(children);
    if (children.empty() && leaves++ % s_leavesToABody == 0) {
      bodies.push_back(du::DynamicCast<memkernel::Instance>(instance));
    }
    open.insert(open.end(), children.begin(), children.end());
  }
  const memkernel::TreeBatch batch(tree);
  for (const auto& body : bodies) {
    tree.SetFlags(body, memkernel::InstanceBody, true);
  }
  return bodies.size();
}

/// All rows of the tree stand in the panel when the filter begins, as they do when a user types.
FilterTimes FilterFullPanel(FilterPanel& panel, const std::string& text, std::size_t count)
{
  panel.GetFilter().SetText("");
  panel.Populate();
  panel.Settle();
  Require(panel.GetRowCount() == count, "a population makes a row of each instance");
  panel.GetFilter().SetText(text);
  TidyHeap();
  const FilterTimes times = panel.Filter();
  panel.Settle();
  return times;
}

/// Of each node that the run may make, with nothing in the panel before.
double MeasureNodeBytes(FilterPanel& panel, const std::string& text, std::size_t nodes)
{
  panel.GetFilter().SetText("nothing like that");
  panel.Populate();
  panel.Settle();
  panel.GetFilter().SetText(text);
  return panel.MeasureBuildBytes() / static_cast<double>(nodes);
}

double FilterPeerRows(FilterPeer& peer, const std::string& text, std::size_t rows)
{
  const double seconds = Time([&] { peer.Filter(text); });
  Require(peer.GetRowCount() == rows, peer.GetName() + " leaves the rows that the panel shows");
  peer.Clear();
  return seconds;
}

Figures Filter(std::size_t count, const FilterText& text, const Mode& mode)
{
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, count);
  GiveFilterNames(*tree);
  const std::size_t bodies = mode.rule.hidesBodies ? MakeBodies(*tree) : 0;
  const std::size_t nodes = mode.rule.hidesBodies ? count + (count - bodies) : count;
  const std::size_t rows = CountRows(*tree, text.text, mode.rule);
  const bool isPlain = !mode.rule.takesSiblings && !mode.isSorted;
  const auto peers =
      isPlain && count <= s_mostPeerRows ? MakeFilterPeers(*tree) : std::vector<std::unique_ptr<FilterPeer>>();
  FilterPanel panel(tree);
  SetUp(panel.GetFilter(), mode);
  const double bytes = MeasureNodeBytes(panel, text.text, nodes);
  return RunRounds(count, [&](Figures& figures) {
    PrunedTree floor;
    const double floorSeconds = Time([&] { floor.Build(*tree, text.text); });
    const FilterTimes times = FilterFullPanel(panel, text.text, count);
    Require(times.rows == panel.GetRowCount(), "each row is made once");
    Require(times.rows == rows, "the rows are those that the filter should leave");
    Require(!isPlain || times.rows == std::max<std::size_t>(floor.GetNodeCount(), 1), "the walk leaves the same rows");
    figures["bytes_node"] = bytes;
    figures["rows"] = static_cast<double>(times.rows);
    figures["x_floor"] = times.worker / floorSeconds;
    figures["owner_ms"] = times.owner * s_milliseconds;
    figures["longest_ms"] = times.longest * s_milliseconds;
    figures["other_ms"] = times.longestOther * s_milliseconds;
    for (const auto& peer : peers) {
      const double seconds = FilterPeerRows(*peer, text.text, floor.GetNodeCount());
      figures["x_" + peer->GetName()] = times.worker / seconds;
      figures["x_" + peer->GetName() + "_all"] = (times.worker + times.owner) / seconds;
      figures[peer->GetName() + "_floor"] = seconds / floorSeconds;
    }
    return times.worker;
  });
}

void RegisterMode(const Mode& mode)
{
  for (const FilterText& text : GetFilterTexts()) {
    Register("Filter/" + mode.name + "/" + text.name, {10'000, 100'000, 1'000'000, 4'000'000},
             [=](std::size_t count) { return Filter(count, text, mode); });
  }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  bench::RegisterMode({.name = "name", .rule = {}});
  bench::RegisterMode({.name = "siblings", .rule = {.takesSiblings = true}});
  bench::RegisterMode({.name = "sorted", .rule = {}, .isSorted = true});
  bench::RegisterMode({.name = "two-passes", .rule = {.takesSiblings = true, .hidesBodies = true}});
  return bench::RunAll(argc, argv);
}
