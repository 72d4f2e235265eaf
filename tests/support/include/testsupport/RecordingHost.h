#pragma once

#include <functional>
#include <string>
#include <vector>

#include "hostcheck/CallTracer.h"
#include "testsupport/ScriptedHost.h"

namespace testsupport {

/// Keeps every call as one line of text, in order, so that a test states the whole sequence that it expects:
///
///   RecordingHost host;
///   host.answers.isTreeVisibleInUI = false;
///   ...
///   EXPECT_THAT(host.TakeCalls(), ElementsAre("StartTreeUpdate()", "ClearTree()", "IsTreeVisibleInUI() -> false",
///   ...));
///
/// The lines are those of `hostcheck::CallTracer`.
class RecordingHost : public hostcheck::CallTracer {
public:
  RecordingHost();
  RecordingHost(const RecordingHost&) = delete;
  RecordingHost& operator=(const RecordingHost&) = delete;
  ~RecordingHost() override = default;

  [[nodiscard]] const std::vector<std::string>& Calls() const noexcept { return m_calls; }
  /// The calls since the last time, which are forgotten.
  [[nodiscard]] std::vector<std::string> TakeCalls();

  /// What the host says to questions, and what it was given.
  ScriptedHost answers;

  /// Runs inside every recorded call, after its line is kept: a test calls the library again from here. What it changes
  /// in `answers` holds from the next question on. It may replace itself. A question that is not shown does not run it.
  std::function<void(const std::string& line)> onCall;

protected:
  void _OnLine(const std::string& line) const override;

private:
  mutable std::vector<std::string> m_calls;
};

}  // namespace testsupport
