#include "support/Measure.h"

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include <malloc.h>

namespace bench {
namespace {

constexpr const char* s_seconds = "seconds";
constexpr double s_nanoseconds = 1e9;

/// What is freed stays with the process. How long the system takes for a fresh page depends on the machine and on its
/// history, and after the first round nobody needs one.
void KeepMemory()
{
  // NOLINTBEGIN(concurrency-mt-unsafe): called before there is anything else
  Require(::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max()) == 1, "the heap never shrinks");
  Require(::mallopt(M_MMAP_MAX, 0) == 1, "all memory comes from the heap");
  // NOLINTEND(concurrency-mt-unsafe)
}

[[nodiscard]] double GetMedian(std::vector<double> values)
{
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

[[nodiscard]] std::size_t GetRoundCount(std::size_t count)
{
  constexpr std::size_t s_things = 5'000'000;
  constexpr std::size_t s_many = 2'000'000;
  return count > s_many ? 3 : std::clamp<std::size_t>(s_things / count, 7, 51);
}

class CountedBenchmark final : public benchmark::internal::Benchmark {
public:
  CountedBenchmark(const std::string& name, CountedRun run) : Benchmark(name.c_str()), m_run(std::move(run)) {}

  void Run(benchmark::State& state) override
  {
    const auto count = static_cast<std::size_t>(state.range(0));
    Figures figures = MeasureInChild([&] { return m_run(count); });
    const double seconds = figures.extract(s_seconds).mapped();
    for ([[maybe_unused]] auto _ : state) {
      state.SetIterationTime(seconds);
    }
    const double costOfEach = seconds / static_cast<double>(count);
    figures["ns_each"] = costOfEach * s_nanoseconds;
    if (m_lastCostOfEach > 0) {
      figures["x_smaller"] = costOfEach / m_lastCostOfEach;
    }
    m_lastCostOfEach = costOfEach;
    for (const auto& [name, value] : figures) {
      state.counters[name] = value;
    }
    state.SetComplexityN(state.range(0));
  }

private:
  CountedRun m_run;
  /// Of the count before; 0 at the first.
  double m_lastCostOfEach = 0;
};

}  // namespace

void TidyHeap()
{
  // A free of that size is what makes the allocator join its small pieces. What it has joined it sorts at the next
  // requests, 10,000 pieces each.
  constexpr std::size_t s_large = 1U << 20U;
  constexpr int s_requests = 100;
  for (int i = 0; i < s_requests; ++i) {
    ::operator delete(::operator new(s_large));
  }
}

void Require(bool condition, const std::string& what)
{
  if (!condition) {
    throw std::logic_error("this should hold and does not: " + what);
  }
}

double GetAllocatedBytes()
{
  const struct mallinfo2 info = ::mallinfo2();
  return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

Figures RunRounds(std::size_t count, const Round& round)
{
  std::map<std::string, std::vector<double>> values;
  for (std::size_t left = GetRoundCount(count); left > 0; --left) {
    Figures figures;
    figures[s_seconds] = round(figures);
    for (const auto& [name, value] : figures) {
      values[name].push_back(value);
    }
  }
  Figures medians;
  for (const auto& [name, all] : values) {
    medians[name] = GetMedian(all);
  }
  return medians;
}

Figures MakeFigures(double seconds, Figures others)
{
  others[s_seconds] = seconds;
  return others;
}

void Register(const std::string& name, const std::vector<std::int64_t>& counts, const CountedRun& run)
{
  // The library owns what is registered.
  auto* benchmark =
      benchmark::internal::RegisterBenchmarkInternal(std::make_unique<CountedBenchmark>(name, run).release());
  for (const std::int64_t count : counts) {
    benchmark->Arg(count);
  }
  benchmark->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
}

int RunAll(int argc, char** argv)
{
  KeepMemory();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace bench
