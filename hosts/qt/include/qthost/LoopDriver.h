#pragma once

#include <functional>
#include <memory>

#include <QObject>

namespace qthost {

/// Runs the loop of a kernel's owner from the event loop of Qt. Owner's thread; the wake-up may be called from any
/// thread, and for longer than the driver lives.
///
///     qthost::LoopDriver driver([&world] { world.GetLoop().RunDue(); });
///     world.GetLoop().SetWakeUp(driver.MakeWakeUp());
///
/// Each wake-up costs one event, so that painting and input have their turn between two runs.
class LoopDriver : public QObject {
  Q_OBJECT

public:
  explicit LoopDriver(std::function<void()> runDue, QObject* parent = nullptr);
  LoopDriver(const LoopDriver&) = delete;
  LoopDriver& operator=(const LoopDriver&) = delete;
  ~LoopDriver() override;

  /// A function that has `runDue` called soon, on the thread of the driver; nothing once that has ended.
  [[nodiscard]] std::function<void()> MakeWakeUp() const;

  bool event(QEvent* event) override;

private:
  struct Target;

  const std::function<void()> m_runDue;
  const std::shared_ptr<Target> m_target;
};

}  // namespace qthost
