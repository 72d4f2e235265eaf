#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "du/SmartPtr.h"
#include "zelk/AsyncEvent.h"

namespace kerneltest {

/// What became of an event; it outlives the event.
struct EventRecord {
  std::vector<unsigned short> completions;
  std::vector<std::string> texts;
  std::thread::id completingThread;
  std::thread::id destroyingThread;
  std::atomic<bool> isDestroyed{false};
  std::function<void()> onComplete;
};

/// Writes down how it ends.
class ProbeEvent : public zelk::AsyncEvent {
public:
  ProbeEvent(EventRecord& record, bool hasWorker, bool runsInTask = false)
      : AsyncEvent(hasWorker), m_record(record), m_runsInTask(runsInTask)
  {
  }
  ~ProbeEvent() override
  {
    m_record.destroyingThread = std::this_thread::get_id();
    m_record.isDestroyed = true;
  }

  [[nodiscard]] int CountReferences() const
  {
    AddReference(nullptr);
    return RemoveReference(nullptr);
  }

protected:
  void OnComplete(unsigned short status) override
  {
    m_record.completingThread = std::this_thread::get_id();
    m_record.completions.push_back(status);
    if (m_record.onComplete) {
      m_record.onComplete();
    }
  }

private:
  bool RunOnCompleteInTask() const override { return m_runsInTask; }
  void OnStatus(const du::Symbol& text) override { m_record.texts.emplace_back(text); }

  EventRecord& m_record;
  const bool m_runsInTask;
};

}  // namespace kerneltest
