#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "support/Child.h"

namespace bench {

/// Joins freed memory. The allocator puts that off to a later request, and what is timed next would pay for what was
/// freed before it.
void TidyHeap();

/// Runs `work` once, from a tidy heap, and returns the seconds that the processor spent on it. Others that use the
/// machine at the same time count little in these.
template <typename Work>
[[nodiscard]] double Time(Work work)
{
  TidyHeap();
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Throws, which ends the program, if what has been timed did not do what it should.
void Require(bool condition, const std::string& what);

/// The bytes that are allocated now, as the C library's allocator counts them: with its own overhead and rounding.
[[nodiscard]] double GetAllocatedBytes();

/// A round measures `count` things: it returns the time that counts, and enters figures, each of which compares two
/// times that were taken one after the other. A machine that gets slower or faster on the way then shows in no ratio.
using Round = std::function<double(Figures& figures)>;

/// Runs rounds, more of them for a small `count`, and returns the medians of the figures and of the time.
[[nodiscard]] Figures RunRounds(std::size_t count, const Round& round);

/// The figures of a measurement without rounds, with the time that counts.
[[nodiscard]] Figures MakeFigures(double seconds, Figures others);

/// A measurement of a count of things by `RunRounds`.
using CountedRun = std::function<Figures(std::size_t count)>;

/// A benchmark that measures for each of the counts, each in a process of its own. It reports the median time, the
/// figures, as "ns_each" the time of one of the things, and as "x_smaller" what that is of the time of one of them at
/// the count before.
void Register(const std::string& name, const std::vector<std::int64_t>& counts, const CountedRun& run);

/// The main function of each program.
int RunAll(int argc, char** argv);

}  // namespace bench
