#pragma once

#include <atomic>
#include <functional>

#include "zelk/Shape.h"
#include "zelk/ShapeInstance.h"

namespace memkernel {

/// What the work of a load is given. Lives for the length of one load; for the thread that runs it.
class LoadContext {
public:
  LoadContext() = default;
  LoadContext(const LoadContext&) = delete;
  LoadContext& operator=(const LoadContext&) = delete;
  virtual ~LoadContext() = default;

  /// True once nobody waits for the result any more: return soon, with any status.
  [[nodiscard]] virtual bool IsCanceled() const = 0;
  /// Never waits.
  virtual void ReportProgress(unsigned char percent) = 0;
};

/// A shape whose data comes from a function of the client. Any thread.
class Shape : public zelk::Shape {
public:
  /// Gets the data and answers what came of it. Runs on a worker, for one shape once at a time. What it throws counts
  /// as failed. It must hold no reference to the shape, which holds it. What it holds is let go of on the thread of the
  /// shape's last holder, which may be a worker.
  using Work = std::function<zelk::ShapeDataStatus(LoadContext&)>;

  /// A shape without data of its own can be had with `ShapeDataNone` and no work; it fails when it is asked for.
  explicit Shape(Work work, zelk::ShapeDataStatus status = zelk::ShapeDataNone);
  ~Shape() override;

  [[nodiscard]] const Work& GetWork() const noexcept { return m_work; }
  [[nodiscard]] zelk::ShapeDataStatus GetDataStatus() const noexcept
  {
    return m_status.load(std::memory_order_acquire);
  }
  void SetDataStatus(zelk::ShapeDataStatus status) noexcept { m_status.store(status, std::memory_order_release); }
  void SetFromTrask(bool isFromTrask) noexcept { m_isFromTrask.store(isFromTrask, std::memory_order_relaxed); }

  [[nodiscard]] bool IsFromTrask() const override { return m_isFromTrask.load(std::memory_order_relaxed); }
  /// True for a shape of the native format whose status is `ShapeDataFailed`.
  [[nodiscard]] bool IsFailedFromTrask() const override;

private:
  const Work m_work;
  std::atomic<zelk::ShapeDataStatus> m_status;
  std::atomic<bool> m_isFromTrask{false};
};

}  // namespace memkernel
