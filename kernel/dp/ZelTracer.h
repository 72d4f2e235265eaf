#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <string_view>

namespace dp {

enum class TraceType {
  Info,
  Warning,
  Error,
};

/// One finished line of the trace.
struct TraceLine {
  TraceType type = TraceType::Info;
  std::string_view component;
  std::string_view className;
  std::string_view text;
};

/// Collects one trace line by `<<` and hands it to the sink when it goes out of scope. Without a sink nothing is
/// formatted.
class TraceFormatter {
public:
  TraceFormatter(TraceType type, std::string_view component, std::string_view className);
  ~TraceFormatter();
  TraceFormatter(const TraceFormatter&) = delete;
  TraceFormatter& operator=(const TraceFormatter&) = delete;

  template <typename T>
  TraceFormatter& operator<<(const T& value)
  {
    if (m_isOn) {
      m_text << value;
    }
    return *this;
  }

private:
  TraceType m_type;
  std::string_view m_component;
  std::string_view m_className;
  bool m_isOn;
  std::ostringstream m_text;
};

/// Source of trace lines of one class. Any thread.
class ZelTracer {
public:
  using Sink = std::function<void(const TraceLine&)>;

  /// Both texts are kept as views and must outlive the tracer; string literals do.
  constexpr ZelTracer(std::string_view component, std::string_view className) noexcept
      : m_component(component), m_className(className)
  {
  }

  /// Begins a line: `tracer(dp::TraceType::Info) << "text";`
  [[nodiscard]] TraceFormatter operator()(TraceType type) const { return {type, m_component, m_className}; }

  /// Where lines go from now on, process-wide; an empty function drops them, which is the start. The sink is called in
  /// the thread that traces, one line at a time, and must not trace itself.
  static void SetSink(Sink sink);
  [[nodiscard]] static bool HasSink() noexcept;

private:
  std::string_view m_component;
  std::string_view m_className;
};

}  // namespace dp
