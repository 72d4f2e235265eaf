// How soon a filter that is not wanted any more notices it, and how long an edit waits while a filter reads the tree.
// What counts is the time that the worker still works, so that others that use the machine count little.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include "memkernel/Instance.h"
#include "support/FilterNames.h"
#include "support/FilterPanel.h"
#include "support/Measure.h"
#include "support/Shapes.h"

namespace bench {
namespace {

constexpr std::size_t s_interrupts = 200;
constexpr double s_milliseconds = 1e3;

/// The mean, and the value that no more than a hundredth is above.
[[nodiscard]] Figures Summarise(std::vector<double> times)
{
  std::sort(times.begin(), times.end());
  const double mean = std::accumulate(times.begin(), times.end(), 0.0) / static_cast<double>(times.size());
  return MakeFigures(mean, {{"p99_ms", times[times.size() - 1 - times.size() / 100] * s_milliseconds},
                            {"most_ms", times.back() * s_milliseconds}});
}

/// A panel whose filter runs are interrupted at times drawn by lot.
class InterruptedPanel {
public:
  explicit InterruptedPanel(std::size_t count) : m_tree(MakeTree(Shape::Typical, count))
  {
    GiveFilterNames(*m_tree);
    m_panel.emplace(m_tree);
    m_panel->GetFilter().SetText("bolt");
    m_runSeconds = m_panel->Filter().worker;
    m_panel->Settle();
  }

  [[nodiscard]] memkernel::Tree& GetTree() { return *m_tree; }
  [[nodiscard]] FilterPanel& GetPanel() { return *m_panel; }

  /// Starts a run; answers at a moment of it.
  void StartAndWait()
  {
    m_panel->Populate();
    const double part = static_cast<double>(m_random() % 1000) / 1000.0;
    std::this_thread::sleep_for(std::chrono::duration<double>(part * m_runSeconds));
  }

private:
  const du::SmartPtr<memkernel::Tree> m_tree;
  std::optional<FilterPanel> m_panel;
  double m_runSeconds = 0;
  std::mt19937 m_random;
};

/// From the cancel, which is what the request of a second filter begins with, until the first has seen it and ended.
/// The second comes after that, so that its work is not counted.
[[nodiscard]] double TimeCancel(InterruptedPanel& interrupted)
{
  FilterPanel& panel = interrupted.GetPanel();
  interrupted.StartAndWait();
  const du::SmartPtr<zelk::AsyncEvent> first = panel.GetHost().job;
  const bool isLate = first->IsCompleted();
  const WorkerTimer timer;
  first->Cancel();
  while (!first->IsCompleted()) {
    std::this_thread::yield();
  }
  const double seconds = isLate ? 0 : timer.GetSeconds();
  panel.Populate();
  panel.Settle();
  return seconds;
}

Figures Cancel(std::size_t count)
{
  InterruptedPanel interrupted(count);
  std::vector<double> times;
  while (times.size() < s_interrupts) {
    if (const double seconds = TimeCancel(interrupted); seconds > 0) {
      times.push_back(seconds);
    }
  }
  return Summarise(times);
}

/// An edit of the owner's thread while a filter reads.
Figures Edit(std::size_t count, bool withGate)
{
  InterruptedPanel interrupted(count);
  FilterPanel& panel = interrupted.GetPanel();
  memkernel::Tree& tree = interrupted.GetTree();
  const auto leaf = tree.AddChild(tree.GetRootInstance(), tree.CreateProduct({.name = "Edited"}));
  if (withGate) {
    tree.SetEditGate([&panel] { panel.GetHost().job->Cancel(); });
  }
  std::size_t number = 0;
  std::vector<double> times;
  while (times.size() < s_interrupts) {
    interrupted.StartAndWait();
    const std::string name = "Edited " + std::to_string(++number);
    const WorkerTimer timer;
    Require(tree.Rename(leaf, du::Symbol(std::string_view(name))), "the edit is made");
    times.push_back(timer.GetSeconds());
    panel.Settle();
  }
  return Summarise(times);
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
  const std::vector<std::int64_t> counts{10'000, 100'000, 1'000'000};
  bench::Register("Cancel", counts, bench::Cancel);
  bench::Register("Edit/waits", counts, [](std::size_t count) { return bench::Edit(count, false); });
  bench::Register("Edit/gate", counts, [](std::size_t count) { return bench::Edit(count, true); });
  return bench::RunAll(argc, argv);
}
