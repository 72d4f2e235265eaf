#include "du/Stopwatch.h"

#include <utility>

namespace du {

Stopwatch::StopwatchEntry::StopwatchEntry(std::string name, InitType type)
    : m_name(std::move(name)), m_isRunning(type == InitRunning), m_start(std::chrono::steady_clock::now())
{
}

bool Stopwatch::StopwatchEntry::Stop()
{
  if (!m_isRunning) {
    return false;
  }
  m_elapsed = std::chrono::steady_clock::now() - m_start;
  m_isRunning = false;
  return true;
}

std::chrono::steady_clock::duration Stopwatch::StopwatchEntry::GetElapsed() const
{
  return m_isRunning ? std::chrono::steady_clock::now() - m_start : m_elapsed;
}

}  // namespace du
