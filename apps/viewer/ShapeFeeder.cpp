#include "ShapeFeeder.h"

#include <Standard_Failure.hxx>

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

class ShapeFeeder::LoadEvent final : public zelloader::ShapeLoaderEvent {
public:
  LoadEvent(std::shared_ptr<ShapeFeeder*> feeder, const du::SmartPtr<memkernel::Shape>& shape,
            std::shared_ptr<const ShapeSource> source)
      : m_feeder(std::move(feeder)), m_shape(shape), m_source(std::move(source))
  {
  }

protected:
  void OnComplete(unsigned short /*status*/) override
  {
    if (*m_feeder == nullptr) {
      return;
    }
    if (HasTriangles(*m_shape)) {
      (*m_feeder)->_Copy(m_shape, m_source);
    } else {
      (*m_feeder)->_Finish(*m_shape, TopoDS_Shape());
    }
  }

private:
  const std::shared_ptr<ShapeFeeder*> m_feeder;
  const du::SmartPtr<memkernel::Shape> m_shape;
  const std::shared_ptr<const ShapeSource> m_source;
};

class ShapeFeeder::CopyTask final : public du::Task {
public:
  CopyTask(std::shared_ptr<ShapeFeeder*> feeder, const du::SmartPtr<memkernel::Shape>& shape,
           std::shared_ptr<const ShapeSource> source)
      : m_feeder(std::move(feeder)), m_shape(shape), m_source(std::move(source))
  {
  }

  void Run() override
  {
    try {
      m_drawable = MakeDrawable(*m_source);
    } catch (const Standard_Failure&) {
      m_drawable.Nullify();
    }
  }

  void TaskComplete() override
  {
    if (*m_feeder != nullptr) {
      (*m_feeder)->_Finish(*m_shape, m_drawable);
    }
  }

private:
  const std::shared_ptr<ShapeFeeder*> m_feeder;
  const du::SmartPtr<memkernel::Shape> m_shape;
  const std::shared_ptr<const ShapeSource> m_source;
  TopoDS_Shape m_drawable;
};

ShapeFeeder::ShapeFeeder(const du::SmartPtr<memkernel::World>& world, Ready ready)
    : m_world(world),
      m_ready(std::move(ready)),
      m_manager(world->CreateManagedObject()),
      m_lane(world->GetMemTaskPool().CreateLane()),
      m_self(std::make_shared<ShapeFeeder*>(this))
{
}

ShapeFeeder::~ShapeFeeder()
{
  *m_self = nullptr;
}

void ShapeFeeder::Ask(const du::SmartPtr<memkernel::Shape>& shape, const std::shared_ptr<const ShapeSource>& source)
{
  if (!m_waiting.insert(shape.Get()).second) {
    return;
  }
  if (HasTriangles(*shape)) {
    _Copy(shape, source);
    return;
  }
  const auto event = du::MakeSmart<LoadEvent>(m_self, shape, source);
  m_manager->ManageObject(event);
  m_world->GetMemLoader().LoadShape(shape, du::Flags(zelloader::Loader::LoadGeometry), event.Get(), nullptr);
}

void ShapeFeeder::_Copy(const du::SmartPtr<memkernel::Shape>& shape, const std::shared_ptr<const ShapeSource>& source)
{
  if (!m_world->GetMemTaskPool().InsertTaskInLane(du::MakeSmart<CopyTask>(m_self, shape, source), m_lane)) {
    _Finish(*shape, TopoDS_Shape());
  }
}

void ShapeFeeder::_Finish(const memkernel::Shape& shape, const TopoDS_Shape& drawable)
{
  m_waiting.erase(&shape);
  m_ready(shape, drawable);
}

}  // namespace viewer
