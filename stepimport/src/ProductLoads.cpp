#include "ProductLoads.h"

#include <chrono>
#include <mutex>
#include <thread>
#include <utility>

#include "ShapeMesher.h"
#include "ShapeStoreBuilder.h"

namespace stepimport {

namespace {

/// How often a load that waits for another one looks whether it may go on, or whether nobody wants it any more.
constexpr std::chrono::milliseconds LookInterval{2};

using ShapeLock = std::unique_lock<std::shared_mutex>;

/// Without the lock when `context` has asked to stop before it could be had.
ShapeLock WaitForShapes(std::shared_mutex& mutex, const memkernel::LoadContext& context)
{
  ShapeLock lock(mutex, std::defer_lock);
  while (!context.IsCanceled() && !lock.try_lock()) {
    std::this_thread::sleep_for(LookInterval);
  }
  return lock;
}

}  // namespace

ProductLoads::ProductLoads(std::shared_ptr<const ShapeStore> store, ProductIndex product)
    : m_store(std::move(store)), m_product(product)
{
}

zelk::ShapeDataStatus ProductLoads::LoadProduct(memkernel::LoadContext& context)
{
  return _Load(m_store->GetProductShape(m_product), context);
}

zelk::ShapeDataStatus ProductLoads::LoadBody(std::size_t body, memkernel::LoadContext& context)
{
  return _Load(m_store->GetBodyShape(m_product, body), context);
}

zelk::ShapeDataStatus ProductLoads::_Load(const TopoDS_Shape& shape, memkernel::LoadContext& context)
{
  if (shape.IsNull()) {
    return zelk::ShapeDataFailed;
  }
  const ShapeLock lock = WaitForShapes(GetShapeMutex(*m_store, m_product), context);
  if (!lock) {
    return zelk::ShapeDataNone;
  }
  if (m_deflection <= 0) {
    m_deflection = ChooseDeflection(m_store->GetProductShape(m_product));
  }
  return MeshShape(shape, m_deflection, context);
}

}  // namespace stepimport
