#pragma once

#include <chrono>
#include <string>

namespace du {

/// Timing of named pieces of work, one `StopwatchEntry` each.
class Stopwatch {
public:
  enum InitType {
    /// The entry stands still.
    InitStopped = 1,
    /// The entry runs from its construction on.
    InitRunning = 2,
  };

  class StopwatchEntry {
  public:
    StopwatchEntry(std::string name, InitType type);
    StopwatchEntry(StopwatchEntry&&) noexcept = default;
    StopwatchEntry& operator=(StopwatchEntry&&) noexcept = default;
    StopwatchEntry(const StopwatchEntry&) = delete;
    StopwatchEntry& operator=(const StopwatchEntry&) = delete;
    ~StopwatchEntry() = default;

    /// Ends the timing and returns true; false if the entry stood still already, whose time then stays.
    bool Stop();

    [[nodiscard]] const std::string& GetName() const noexcept { return m_name; }
    [[nodiscard]] bool IsRunning() const noexcept { return m_isRunning; }
    /// The time up to the stop, or up to now for an entry that runs; 0 for one that never ran.
    [[nodiscard]] std::chrono::steady_clock::duration GetElapsed() const;

  private:
    std::string m_name;
    bool m_isRunning;
    std::chrono::steady_clock::time_point m_start;
    std::chrono::steady_clock::duration m_elapsed{0};
  };
};

}  // namespace du
