#pragma once

#include <TopoDS_Shape.hxx>

#include <functional>
#include <memory>
#include <unordered_map>

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
  /// Called in a turn of the owner's loop, once for each shape that was asked for and not called off since. A null
  /// shape: there is nothing to draw.
  using Ready = std::function<void(const memkernel::Shape& shape, const TopoDS_Shape& drawable)>;

  ShapeFeeder(const du::SmartPtr<memkernel::World>& world, Ready ready);
  ShapeFeeder(const ShapeFeeder&) = delete;
  ShapeFeeder& operator=(const ShapeFeeder&) = delete;
  /// Calls off.
  ~ShapeFeeder();

  /// One call for a shape that is under way is enough.
  void Ask(const du::SmartPtr<memkernel::Shape>& shape, const std::shared_ptr<const ShapeSource>& source);
  /// Nothing comes of what has been asked for up to now, and no worker goes on with it.
  void CallOff();
  /// As above, of this shape alone.
  void CallOff(const memkernel::Shape& shape);
  /// What has been asked for and is not ready yet.
  [[nodiscard]] std::size_t GetWaitingCount() const noexcept { return m_waiting.size(); }

private:
  struct Request;
  class LoadEvent;
  class CopyTask;

  using RequestPtr = std::shared_ptr<Request>;

  static void _CallOff(Request& request);
  void _Load(const RequestPtr& request);
  void _Copy(const RequestPtr& request);
  void _Finish(const Request& request, const TopoDS_Shape& drawable);

  const du::SmartPtr<memkernel::World> m_world;
  const Ready m_ready;
  const du::SmartPtr<dom::ManagedObject> m_manager;
  const memkernel::TaskPool::Lane m_lane;
  std::unordered_map<const memkernel::Shape*, RequestPtr> m_waiting;
};

}  // namespace viewer
