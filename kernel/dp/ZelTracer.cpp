#include "dp/ZelTracer.h"

#include <atomic>
#include <mutex>
#include <utility>

namespace dp {
namespace {

struct SinkHolder {
  std::mutex mutex;
  ZelTracer::Sink sink;
  std::atomic<bool> isSet{false};
};

/// Never destroyed, since static objects may trace until the process ends.
SinkHolder& GetSinkHolder()
{
  static auto& s_holder = *new SinkHolder;
  return s_holder;
}

}  // namespace

TraceFormatter::TraceFormatter(TraceType type, std::string_view component, std::string_view className)
    : m_type(type), m_component(component), m_className(className), m_isOn(ZelTracer::HasSink())
{
}

TraceFormatter::~TraceFormatter()
{
  if (!m_isOn) {
    return;
  }
  const std::string text = m_text.str();
  SinkHolder& holder = GetSinkHolder();
  const std::lock_guard lock(holder.mutex);
  if (holder.sink) {
    holder.sink({m_type, m_component, m_className, text});
  }
}

void ZelTracer::SetSink(Sink sink)
{
  SinkHolder& holder = GetSinkHolder();
  const std::lock_guard lock(holder.mutex);
  holder.sink = std::move(sink);
  holder.isSet = static_cast<bool>(holder.sink);
}

bool ZelTracer::HasSink() noexcept
{
  return GetSinkHolder().isSet;
}

}  // namespace dp
