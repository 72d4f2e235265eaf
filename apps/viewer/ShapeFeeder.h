#pragma once

#include <TopoDS_Shape.hxx>

#include <functional>
#include <memory>
#include <set>

#include "PlacedShape.h"
#include "dom/ManagedObject.h"
#include "du/SmartPtr.h"
#include "memkernel/Shape.h"
#include "memkernel/World.h"

namespace viewer {

/// Gets shapes ready to be drawn: has the kernel load them, and then copies them on a worker. Owner's thread; ends
/// before the world.
class ShapeFeeder {
public:
  /// Called in a turn of the owner's loop, once for each shape that was asked for. A null shape: there is nothing to
  /// draw.
  using Ready = std::function<void(const memkernel::Shape& shape, const TopoDS_Shape& drawable)>;

  ShapeFeeder(const du::SmartPtr<memkernel::World>& world, Ready ready);
  ShapeFeeder(const ShapeFeeder&) = delete;
  ShapeFeeder& operator=(const ShapeFeeder&) = delete;
  /// What is under way is called off.
  ~ShapeFeeder();

  /// One call for a shape that is under way is enough.
  void Ask(const du::SmartPtr<memkernel::Shape>& shape, const std::shared_ptr<const ShapeSource>& source);
  /// What has been asked for and is not ready yet.
  [[nodiscard]] std::size_t GetWaitingCount() const noexcept { return m_waiting.size(); }

private:
  class LoadEvent;
  class CopyTask;

  void _Copy(const du::SmartPtr<memkernel::Shape>& shape, const std::shared_ptr<const ShapeSource>& source);
  void _Finish(const memkernel::Shape& shape, const TopoDS_Shape& drawable);

  const du::SmartPtr<memkernel::World> m_world;
  const Ready m_ready;
  const du::SmartPtr<dom::ManagedObject> m_manager;
  const memkernel::TaskPool::Lane m_lane;
  /// Shared with events and tasks, which see by it whether the feeder is still there.
  const std::shared_ptr<ShapeFeeder*> m_self;
  std::set<const memkernel::Shape*> m_waiting;
};

}  // namespace viewer
