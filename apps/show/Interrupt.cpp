#include "Interrupt.h"

#include <atomic>
#include <csignal>

namespace {

std::atomic<bool> s_interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may wait for nothing");

void OnInterrupt(int signal)
{
  s_interrupted = true;
  std::signal(signal, SIG_DFL);
}

}  // namespace

// Where Ctrl-C is ignored from the start, as in a background job, it stays ignored.
InterruptScope::InterruptScope() : m_before(std::signal(SIGINT, OnInterrupt))
{
  if (m_before == SIG_IGN) {
    std::signal(SIGINT, SIG_IGN);
  }
}

InterruptScope::~InterruptScope()
{
  std::signal(SIGINT, m_before);
}

bool InterruptScope::WasInterrupted() noexcept
{
  return s_interrupted;
}
