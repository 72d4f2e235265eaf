// What events cost a panel that is filled: bursts of edits, a selection and a highlight of many instances at once, and
// a change between scenes. Each stands beside what the kernel alone takes for the same, where that is anything.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "guitree/SceneInfoLog.h"
#include "peers/Peers.h"
#include "support/LivePanel.h"
#include "support/Measure.h"
#include "support/Shapes.h"

namespace bench {
namespace {

constexpr std::size_t s_scenes = 10;

/// Appends parts to one assembly in the middle of the tree, in one batch.
class Burst {
public:
  Burst(const du::SmartPtr<memkernel::Tree>& tree, std::size_t edits) : m_tree(tree), m_edits(edits)
  {
    m_product = tree->CreateProduct({.name = "New part"});
  }

  void Insert(const du::SmartPtr<memkernel::Instance>& parent)
  {
    const memkernel::TreeBatch batch(*m_tree);
    for (std::size_t i = 0; i < m_edits; ++i) {
      m_added.push_back(m_tree->AddChild(parent, m_product));
    }
  }
  void TakeBack()
  {
    const memkernel::TreeBatch batch(*m_tree);
    for (const auto& instance : m_added) {
      m_tree->Remove(instance);
    }
    m_added.clear();
  }

private:
  const du::SmartPtr<memkernel::Tree> m_tree;
  const std::size_t m_edits;
  du::SmartPtr<memkernel::Product> m_product;
  std::vector<du::SmartPtr<memkernel::Instance>> m_added;
};

/// The last instance of the first half of the walk that has children.
du::SmartPtr<memkernel::Instance> FindAssembly(const std::vector<du::SmartPtr<zelk::Instance>>& instances)
{
  const auto middle = instances.rbegin() + static_cast<std::ptrdiff_t>(instances.size() / 2);
  const auto found =
      std::find_if(middle, instances.rend(), [](const auto& instance) { return instance->HasChildren(); });
  Require(found != instances.rend(), "there is an assembly in the first half");
  return du::DynamicCast<memkernel::Instance>(*found);
}

/// A burst of single edits, or of one too many, with a scene on show.
Figures InsertBurst(std::size_t rows, Shape shape, std::size_t edits)
{
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(shape, rows);
  const auto peers = MakeInsertionPeers(*tree, shape != Shape::Wide);
  IdleHost host;
  LivePanel panel(tree, host);
  panel.Show(panel.AddScene());
  const auto parent = FindAssembly(panel.GetInstances());
  Burst burst(tree, edits);
  return RunRounds(rows, [&](Figures& figures) {
    const double seconds = Time([&] { burst.Insert(parent); });
    Require(panel.GetRowCount() == rows + edits, "the burst made its rows");
    burst.TakeBack();
    Require(panel.GetRowCount() == rows, "the rows are taken back");
    figures["ms_burst"] = seconds * 1e3;
    for (const auto& peer : peers) {
      const double peerSeconds = Time([&] { peer->Insert(edits); });
      Require(peer->TakeBack() == edits, peer->GetName() + " has made its rows");
      figures["ms_" + peer->GetName()] = peerSeconds * 1e3;
      figures["x_" + peer->GetName()] = seconds / peerSeconds;
    }
    return seconds;
  });
}

/// All instances go into one list at once; then out of it.
Figures Select(std::size_t count, unsigned int list)
{
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, count);
  IdleHost host;
  LivePanel panel(tree, host);
  panel.Show(panel.AddScene());
  const auto unwatched = du::MakeSmart<memkernel::SelectionManager>(tree);
  return RunRounds(count, [&](Figures& figures) {
    const auto select = [&](memkernel::SelectionManager& manager) {
      return Time([&] { manager.ApplyInstances(list, panel.GetInstances(), zelk::SelectionManager::OperationSet); });
    };
    const auto clear = [&](memkernel::SelectionManager& manager) {
      return Time([&] { manager.ApplyInstances(list, {}, zelk::SelectionManager::OperationSet); });
    };
    const double seconds = select(panel.GetSelection());
    Require(panel.GetSelection().GetItems(list).size() == count, "all are in the list");
    const bool isHighlight = list == zelk::SelectionManager::AssocHlightList;
    const zelk::BaseInstance* last = panel.GetInstances().back().Get();
    Require(!isHighlight || panel.GetGuiTree().GetTreeState()->IsAssocHlight(const_cast<zelk::BaseInstance*>(last)),
            "the panel knows of the highlight");
    figures["x_kernel"] = seconds / select(*unwatched);
    figures["ms_clear"] = clear(panel.GetSelection()) * 1e3;
    clear(*unwatched);
    return seconds;
  });
}

/// Once round all scenes, each of which has `count` instances, all visible.
Figures ChangeViews(std::size_t count)
{
  const du::SmartPtr<memkernel::Tree> tree = MakeTree(Shape::Typical, count);
  IdleHost host;
  LivePanel panel(tree, host);
  std::vector<du::SmartPtr<memkernel::ShapeView>> views;
  for (std::size_t i = 0; i < s_scenes; ++i) {
    views.push_back(panel.AddScene());
  }
  return RunRounds(count, [&](Figures& figures) {
    const double seconds = Time([&] {
      for (const auto& view : views) {
        panel.Show(view);
      }
    });
    Require(panel.GetGuiTree().GetCurrentLog()->GetVisibleMap().size() == count, "the log knows what is visible");
    figures["us_change"] = seconds * 1e6 / s_scenes;
    return seconds;
  });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  using bench::Shape;
  const std::vector<std::int64_t> sizes{10'000, 100'000, 1'000'000};
  for (const std::size_t edits : {std::size_t{200}, std::size_t{201}}) {
    const std::string name = "Insert" + std::to_string(edits);
    bench::Register(name + "/typical", sizes,
                    [edits](std::size_t rows) { return bench::InsertBurst(rows, Shape::Typical, edits); });
    bench::Register(name + "/wide", {10'000, 100'000},
                    [edits](std::size_t rows) { return bench::InsertBurst(rows, Shape::Wide, edits); });
  }
  bench::Register("Select", sizes,
                  [](std::size_t count) { return bench::Select(count, zelk::SelectionManager::SelectionList); });
  bench::Register("Highlight", sizes,
                  [](std::size_t count) { return bench::Select(count, zelk::SelectionManager::AssocHlightList); });
  bench::Register("ChangeViews", {10'000, 100'000}, bench::ChangeViews);
  return bench::RunAll(argc, argv);
}
