#include "testsupport/RecordingHost.h"

#include <utility>

namespace testsupport {

RecordingHost::RecordingHost() : CallTracer(&answers, {}) {}

std::vector<std::string> RecordingHost::TakeCalls()
{
  return std::exchange(m_calls, {});
}

void RecordingHost::_OnLine(const std::string& line) const
{
  m_calls.push_back(line);
  if (const auto hook = onCall) {
    hook(line);
  }
}

}  // namespace testsupport
