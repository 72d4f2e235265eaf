#pragma once

/// While one lives, Ctrl-C does not end the process but is remembered; the second one ends it. At most one at a time.
class InterruptScope {
public:
  InterruptScope();
  ~InterruptScope();
  InterruptScope(const InterruptScope&) = delete;
  InterruptScope& operator=(const InterruptScope&) = delete;

  /// Whether Ctrl-C has been pressed since the first scope began. Any thread.
  [[nodiscard]] static bool WasInterrupted() noexcept;

private:
  void (*m_before)(int);
};
