#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

#include "BranchWalk.h"
#include "du/SmartPtr.h"
#include "memkernel/World.h"

namespace viewer {

/// Has one list of the kernel's selection drawn, with all that is below what is in it: once for all that changes in a
/// turn of the event loop, and found in small portions, between which the window answers. What is on its way when the
/// list changes again is dropped. Owner's thread.
class ListHighlight final : public QObject {
  Q_OBJECT

public:
  using Draw = std::function<void(BranchWalk::InstanceSet instances)>;

  ListHighlight(const du::SmartPtr<memkernel::World>& world, unsigned int list, Draw draw);
  ListHighlight(const ListHighlight&) = delete;
  ListHighlight& operator=(const ListHighlight&) = delete;
  ~ListHighlight() override;

  /// For what changes below the listed instances.
  void Refresh();
  [[nodiscard]] bool IsUpToDate() const { return !m_timer.isActive(); }

Q_SIGNALS:
  /// The list is another one, and is about to be drawn.
  void Changed();

private:
  class Follower;

  void _Work();

  const du::SmartPtr<memkernel::World> m_world;
  const unsigned int m_list;
  const Draw m_draw;
  du::SmartPtr<Follower> m_follower;
  QTimer m_timer;
  bool m_isStale = false;
  BranchWalk m_walk;
};

}  // namespace viewer
