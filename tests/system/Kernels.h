#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "guitree/GenerateFilteredTreeTask.h"
#include "memkernel/Preferences.h"
#include "memkernel/World.h"
#include "zelk/World.h"
#include "zelloader/Loader.h"

namespace systemtest {

/// A pool whose tasks run on the thread of the test, one at a time, when it says so.
class HandPool : public du::TaskPool {
public:
  std::deque<du::SmartPtr<du::Task>> waiting;

  bool InsertTask(const du::SmartPtr<du::Task>& task) override
  {
    waiting.push_back(task);
    return true;
  }
  void RunFirst()
  {
    const du::SmartPtr<du::Task> task = waiting.front();
    waiting.pop_front();
    task->Run();
    task->TaskComplete();
    task->FlushResults();
  }
};

/// A loader whose loads end when the test says so. Somebody who expects a request hears of its end right behind the one
/// who made it.
class HandLoader : public zelloader::Loader {
public:
  bool LoadShape(const du::SmartPtr<zelk::Shape>& shape, du::Flags /*what*/, zelloader::ShapeLoaderEvent* event,
                 zelk::Anchor* /*anchor*/) override
  {
    const auto hook = std::make_shared<std::function<void()>>();
    m_unexpected.emplace_back(shape.Get(), hook);
    event->AddProgressListener([hook](unsigned char /*percent*/, bool isCompleted) {
      if (isCompleted && *hook) {
        (*hook)();
      }
    });
    m_requests.push_back({shape, du::SmartPtr<zelloader::ShapeLoaderEvent>(event)});
    return true;
  }
  /// False where there was no such request.
  bool Expect(const zelk::Shape& shape, std::function<void()> onEnded)
  {
    for (auto entry = m_unexpected.begin(); entry != m_unexpected.end(); ++entry) {
      if (entry->first == &shape) {
        *entry->second = std::move(onEnded);
        m_unexpected.erase(entry);
        return true;
      }
    }
    return false;
  }
  [[nodiscard]] bool HasUnexpected() const { return !m_unexpected.empty(); }
  [[nodiscard]] std::size_t GetCount() const { return m_requests.size(); }
  /// The work is asked as by a real loader.
  void End(std::size_t index)
  {
    const Request request = m_requests.at(index);
    m_requests.erase(m_requests.begin() + static_cast<std::ptrdiff_t>(index));
    if (request.event->IsCanceled()) {
      request.event->CompleteWithError("cancelled", zelk::BaseAsyncEvent::StatusCanceled);
      return;
    }
    const auto shape = du::DynamicCast<memkernel::Shape>(request.shape);
    NoContext context;
    shape->SetDataStatus(shape->GetWork()(context));
    if (shape->GetDataStatus() == zelk::ShapeDataFailed) {
      request.event->CompleteWithError("failed", memkernel::Loader::StatusFailed);
    } else {
      request.event->Complete();
    }
  }

private:
  struct Request {
    du::SmartPtr<zelk::Shape> shape;
    du::SmartPtr<zelloader::ShapeLoaderEvent> event;
  };
  class NoContext : public memkernel::LoadContext {
  public:
    [[nodiscard]] bool IsCanceled() const override { return false; }
    void ReportProgress(unsigned char /*percent*/) override {}
  };

  std::vector<Request> m_requests;
  std::vector<std::pair<const zelk::Shape*, std::shared_ptr<std::function<void()>>>> m_unexpected;
};

/// A kernel for a panel: all on one thread, by hand, or with workers.
class Kernel {
public:
  explicit Kernel(bool hasThreads);
  Kernel(const Kernel&) = delete;
  Kernel& operator=(const Kernel&) = delete;
  ~Kernel();

  [[nodiscard]] bool HasThreads() const { return static_cast<bool>(m_threaded); }
  [[nodiscard]] memkernel::OwnerLoop& GetLoop() const { return *m_loop; }
  [[nodiscard]] du::SmartPtr<dom::ManagedObject> CreateManager() const
  {
    return du::MakeSmart<dom::ManagedObject>(m_loop);
  }
  /// Tasks and loads that have not ended.
  [[nodiscard]] bool IsAtWork() const;

  du::SmartPtr<zelk::World> world;
  du::SmartPtr<memkernel::Tree> tree;
  du::SmartPtr<memkernel::SelectionManager> selection;
  /// By hand.
  HandPool pool;
  du::SmartPtr<HandLoader> loader = du::MakeSmart<HandLoader>();

private:
  class SteppedWorld;

  du::SmartPtr<memkernel::World> m_threaded;
  du::SmartPtr<memkernel::OwnerLoop> m_loop;
};

}  // namespace systemtest
