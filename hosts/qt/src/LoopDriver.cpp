#include "qthost/LoopDriver.h"

#include <memory>
#include <mutex>
#include <utility>

#include <QCoreApplication>
#include <QEvent>

namespace qthost {

/// Where the events go: null once the driver has ended.
struct LoopDriver::Target {
  std::mutex mutex;
  LoopDriver* driver = nullptr;
};

LoopDriver::LoopDriver(std::function<void()> runDue, QObject* parent)
    : QObject(parent), m_runDue(std::move(runDue)), m_target(std::make_shared<Target>())
{
  m_target->driver = this;
}

LoopDriver::~LoopDriver()
{
  const std::lock_guard lock(m_target->mutex);
  m_target->driver = nullptr;
}

std::function<void()> LoopDriver::MakeWakeUp() const
{
  return [target = m_target] {
    const std::lock_guard lock(target->mutex);
    if (target->driver) {
      QCoreApplication::postEvent(target->driver, std::make_unique<QEvent>(QEvent::User).release());
    }
  };
}

bool LoopDriver::event(QEvent* event)
{
  if (event->type() != QEvent::User) {
    return QObject::event(event);
  }
  m_runDue();
  return true;
}

}  // namespace qthost
