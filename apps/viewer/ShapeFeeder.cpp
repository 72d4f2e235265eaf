#include "ShapeFeeder.h"

#include <Standard_Failure.hxx>

#include <atomic>
#include <utility>

#include "Drawable.h"
#include "du/Task.h"
#include "zelloader/ShapeLoaderEvent.h"

namespace viewer {

namespace {

bool HasTriangles(const memkernel::Shape& shape)
{
  const zelk::ShapeDataStatus status = shape.GetDataStatus();
  return status == zelk::ShapeDataLoaded || status == zelk::ShapeDataPartial;
}

}  // namespace

/// A shape that was asked for, up to the moment when it is ready or called off.
struct ShapeFeeder::Request {
  /// Not to be looked at once the request is called off: it may have gone.
  ShapeFeeder& feeder;
  const du::SmartPtr<memkernel::Shape> shape;
  const std::shared_ptr<const ShapeSource> source;
  /// Written by the owner, read by workers.
  std::atomic<bool> isCalledOff{false};
  /// Null while nothing is loaded.
  du::SmartPtr<LoadEvent> load{};
};

class ShapeFeeder::LoadEvent final : public zelloader::ShapeLoaderEvent {
public:
  explicit LoadEvent(RequestPtr request) : m_request(std::move(request)) {}

protected:
  void OnComplete(unsigned short /*status*/) override
  {
    if (m_request->isCalledOff) {
      return;
    }
    m_request->load.Reset();
    if (HasTriangles(*m_request->shape)) {
      m_request->feeder._Copy(m_request);
    } else {
      m_request->feeder._Finish(*m_request, TopoDS_Shape());
    }
  }

private:
  const RequestPtr m_request;
};

class ShapeFeeder::CopyTask final : public du::Task {
public:
  explicit CopyTask(RequestPtr request) : m_request(std::move(request)) {}

  void Run() override
  {
    try {
      m_drawable = m_request->isCalledOff ? TopoDS_Shape() : MakeDrawable(*m_request->source);
    } catch (const Standard_Failure&) {
      m_drawable.Nullify();
    }
  }

  void TaskComplete() override
  {
    if (!m_request->isCalledOff) {
      m_request->feeder._Finish(*m_request, m_drawable);
    }
  }

private:
  const RequestPtr m_request;
  TopoDS_Shape m_drawable;
};

ShapeFeeder::ShapeFeeder(const du::SmartPtr<memkernel::World>& world, Ready ready)
    : m_world(world),
      m_ready(std::move(ready)),
      m_manager(world->CreateManagedObject()),
      m_lane(world->GetMemTaskPool().CreateLane())
{
}

ShapeFeeder::~ShapeFeeder()
{
  CallOff();
}

void ShapeFeeder::CallOff()
{
  for (const auto& [shape, request] : std::exchange(m_waiting, {})) {
    _CallOff(*request);
  }
}

void ShapeFeeder::CallOff(const memkernel::Shape& shape)
{
  if (const auto waiting = m_waiting.extract(&shape)) {
    _CallOff(*waiting.mapped());
  }
}

void ShapeFeeder::_CallOff(Request& request)
{
  request.isCalledOff = true;
  if (request.load) {
    // They hold each other otherwise.
    std::exchange(request.load, {})->Cancel();
  }
}

void ShapeFeeder::Ask(const du::SmartPtr<memkernel::Shape>& shape, const std::shared_ptr<const ShapeSource>& source)
{
  RequestPtr& request = m_waiting[shape.Get()];
  if (request) {
    return;
  }
  request.reset(new Request{*this, shape, source});
  if (HasTriangles(*shape)) {
    _Copy(request);
  } else {
    _Load(request);
  }
}

void ShapeFeeder::_Load(const RequestPtr& request)
{
  const auto event = du::MakeSmart<LoadEvent>(request);
  request->load = event;
  m_manager->ManageObject(event);
  m_world->GetMemLoader().LoadShape(request->shape, du::Flags(zelloader::Loader::LoadGeometry), event.Get(), nullptr);
}

void ShapeFeeder::_Copy(const RequestPtr& request)
{
  if (!m_world->GetMemTaskPool().InsertTaskInLane(du::MakeSmart<CopyTask>(request), m_lane)) {
    _Finish(*request, TopoDS_Shape());
  }
}

void ShapeFeeder::_Finish(const Request& request, const TopoDS_Shape& drawable)
{
  const RequestPtr finished = m_waiting.extract(request.shape.Get()).mapped();
  m_ready(*finished->shape, drawable);
}

}  // namespace viewer
