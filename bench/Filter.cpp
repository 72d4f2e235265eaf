// How long a filter takes on its worker and on the owner's thread, and what it keeps: against a bare walk that builds a
// pruned tree by the same name test, and against the filter of a Qt proxy model over the same rows.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "memkernel/Instance.h"
#include "peers/Peers.h"
#include "support/FilterNames.h"
#include "support/FilterPanel.h"
#include "support/Measure.h"
#include "support/PrunedTree.h"
#include "support/Shapes.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace bench {
namespace {

constexpr double s_milliseconds = 1e3;
/// Up to which the peers take part; beyond, a round of theirs takes a minute.
constexpr std::size_t s_mostPeerRows = 1'000'000;

/// What a filter does besides looking for a text in the names.
struct Mode {
  std::string name;
  bool showsSiblings = false;
  bool isSorted = false;
  /// Bodies and what hangs below them are left out by a pass of its own.
  bool hidesBodies = false;
};

void SetUp(zelremote::StructureFilterInfo& filter, const Mode& mode)
{
  filter.SetShowSiblings(mode.showsSiblings);
  filter.hideBodies = mode.hidesBodies;
  if (mode.isSorted) {
    filter.SetSortColumn(
        du::DualSymbol(zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, memkernel::Instance::s_displayName));
  }
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
  const bool isPlain = !mode.showsSiblings && !mode.isSorted;
  const auto peers =
      isPlain && count <= s_mostPeerRows ? MakeFilterPeers(*tree) : std::vector<std::unique_ptr<FilterPeer>>();
  FilterPanel panel(tree);
  SetUp(panel.GetFilter(), mode);
  const double bytes = MeasureNodeBytes(panel, text.text, mode.hidesBodies ? 2 * count : count);
  return RunRounds(count, [&](Figures& figures) {
    PrunedTree floor;
    const double floorSeconds = Time([&] { floor.Build(*tree, text.text); });
    const FilterTimes times = FilterFullPanel(panel, text.text, count);
    Require(times.rows == panel.GetRowCount(), "each row is made once");
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
  bench::RegisterMode({.name = "name"});
  bench::RegisterMode({.name = "siblings", .showsSiblings = true});
  bench::RegisterMode({.name = "sorted", .isSorted = true});
  bench::RegisterMode({.name = "two-passes", .showsSiblings = true, .hidesBodies = true});
  return bench::RunAll(argc, argv);
}
