#include "memkernel/Loader.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace memkernel {
namespace {

const char* const s_canceled = "The load was cancelled";
const char* const s_failed = "The data of the shape could not be had";

bool HasData(zelk::ShapeDataStatus status)
{
  return status == zelk::ShapeDataLoaded || status == zelk::ShapeDataPartial;
}

void CompleteCanceled(zelloader::ShapeLoaderEvent& event)
{
  event.CompleteWithError(s_canceled, zelk::BaseAsyncEvent::StatusCanceled);
}

void CompleteFailed(zelloader::ShapeLoaderEvent& event)
{
  event.CompleteWithError(s_failed, Loader::StatusFailed);
}

}  // namespace

/// One run of the work of a shape, for all who have asked for it in the meantime. The events are released with the
/// task, on the owner's thread.
class Loader::Load final : public du::Task, private LoadContext {
public:
  Load(Loader* owner, const du::SmartPtr<Shape>& loadedShape) : loader(owner), shape(loadedShape) {}

  /// Owner's thread. False when the run is over.
  bool Join(const du::SmartPtr<zelloader::ShapeLoaderEvent>& event)
  {
    const std::lock_guard lock(m_mutex);
    if (!m_isOver) {
      m_events.push_back(event);
    }
    return !m_isOver;
  }
  /// Owner's thread.
  void CancelAll()
  {
    // Only the owner adds events, so the list may be read here without the lock, under which none must be called.
    for (const auto& event : m_events) {
      event->Cancel();
    }
  }

  [[nodiscard]] std::string GetName() const override { return "memkernel::Load"; }
  void Run() override
  {
    while (_IsWanted()) {
      m_wasToldToStop = false;
      const zelk::ShapeDataStatus status = _DoWork();
      if (_TakeResult(status)) {
        break;
      }
    }
    for (const auto& event : m_events) {
      _Complete(*event);
    }
  }
  void TaskComplete() override { _Forget(); }
  void Abort() override
  {
    {
      const std::lock_guard lock(m_mutex);
      m_isOver = true;
    }
    for (const auto& event : m_events) {
      CompleteCanceled(*event);
    }
    _Forget();
  }

  /// Null once the loader has gone. Owner's thread.
  Loader* loader;
  const du::SmartPtr<Shape> shape;

private:
  [[nodiscard]] bool IsCanceled() const override
  {
    const std::lock_guard lock(m_mutex);
    m_wasToldToStop = m_wasToldToStop || _IsEveryEventCanceled();
    return m_wasToldToStop;
  }
  void ReportProgress(unsigned char percent) override
  {
    const std::lock_guard lock(m_mutex);
    for (const auto& event : m_events) {
      event->Progress(percent);
    }
  }

  [[nodiscard]] bool _IsEveryEventCanceled() const
  {
    return std::all_of(m_events.begin(), m_events.end(), [](const auto& event) { return event->IsCanceled(); });
  }
  /// Ends the run when nobody wants it.
  [[nodiscard]] bool _IsWanted()
  {
    const std::lock_guard lock(m_mutex);
    m_isOver = _IsEveryEventCanceled();
    return !m_isOver;
  }
  [[nodiscard]] zelk::ShapeDataStatus _DoWork()
  {
    try {
      return shape->GetWork()(*this);
    } catch (...) {
      return zelk::ShapeDataFailed;
    }
  }
  /// False if the work was told to stop and somebody has asked for the shape since: it must run again.
  [[nodiscard]] bool _TakeResult(zelk::ShapeDataStatus status)
  {
    const std::lock_guard lock(m_mutex);
    if (m_wasToldToStop && !HasData(status)) {
      m_isOver = _IsEveryEventCanceled();
      return m_isOver;
    }
    shape->SetDataStatus(HasData(status) ? status : zelk::ShapeDataFailed);
    m_isOver = true;
    return true;
  }
  void _Complete(zelloader::ShapeLoaderEvent& event) const
  {
    if (event.IsCanceled()) {
      CompleteCanceled(event);
    } else if (HasData(shape->GetDataStatus())) {
      event.Complete();
    } else {
      CompleteFailed(event);
    }
  }
  void _Forget() const
  {
    if (loader) {
      loader->_Forget(*this);
    }
  }

  /// Guards the members below. Once the run is over the list does not change any more and needs no lock.
  mutable std::mutex m_mutex;
  std::vector<du::SmartPtr<zelloader::ShapeLoaderEvent>> m_events;
  mutable bool m_wasToldToStop = false;
  bool m_isOver = false;
};

Loader::Loader(TaskPool& pool) : m_pool(pool) {}

Loader::~Loader()
{
  for (const auto& [shape, load] : m_loads) {
    load->loader = nullptr;
  }
}

bool Loader::LoadShape(const du::SmartPtr<zelk::Shape>& shape, du::Flags what, zelloader::ShapeLoaderEvent* event,
                       zelk::Anchor* /*anchor*/)
{
  if (!event) {
    return false;
  }
  const du::SmartPtr<zelloader::ShapeLoaderEvent> kept(event);
  const auto own = du::DynamicCast<Shape>(shape);
  if (own && own->GetDataStatus() == zelk::ShapeDataLoaded) {
    kept->Complete();
    return false;
  }
  if (!own || !own->GetWork() || !what.Has(LoadGeometry)) {
    if (own && !own->GetWork()) {
      own->SetDataStatus(zelk::ShapeDataFailed);
    }
    CompleteFailed(*kept);
    return false;
  }
  const auto running = m_loads.find(own.Get());
  if (running != m_loads.end() && running->second->Join(kept)) {
    return true;
  }
  const auto load = du::MakeSmart<Load>(this, own);
  load->Join(kept);
  if (m_isShutDown || !m_pool.InsertParallelTask(load)) {
    CompleteCanceled(*kept);
    return false;
  }
  m_loads[own.Get()] = load;
  return true;
}

void Loader::Shutdown()
{
  m_isShutDown = true;
  for (const auto& [shape, load] : m_loads) {
    load->CancelAll();
  }
}

void Loader::_Forget(const Load& load)
{
  const auto entry = m_loads.find(load.shape.Get());
  if (entry != m_loads.end() && entry->second.Get() == &load) {
    m_loads.erase(entry);
  }
}

}  // namespace memkernel
