#include "stepimport/ShapeStore.h"

#include <TopoDS_Shape.hxx>

#include <algorithm>

#include "ShapeStoreBuilder.h"
#include "SharedShapes.h"

namespace stepimport {

namespace {

const TopoDS_Shape NoShape;

}  // namespace

ShapeStore::ShapeStore() : m_content(std::make_unique<Content>()) {}

ShapeStore::~ShapeStore() = default;

const TopoDS_Shape& ShapeStore::GetProductShape(ProductIndex product) const
{
  return product < m_content->products.size() ? m_content->products[product].shape : NoShape;
}

const TopoDS_Shape& ShapeStore::GetBodyShape(ProductIndex product, std::size_t body) const
{
  if (product >= m_content->products.size() || body >= m_content->products[product].bodies.size()) {
    return NoShape;
  }
  return m_content->products[product].bodies[body];
}

TDF_Label ShapeStore::GetProductLabel(ProductIndex product) const
{
  return product < m_content->products.size() ? m_content->products[product].label : TDF_Label();
}

std::shared_lock<std::shared_mutex> ShapeStore::HoldShapes(ProductIndex product) const
{
  return std::shared_lock(GetShapeMutex(*this, product));
}

std::shared_mutex& GetShapeMutex(const ShapeStore& store, ProductIndex product)
{
  ShapeStore::Content& content = *store.m_content;
  return product < content.groups.size() ? *content.mutexes[content.groups[product]] : content.noMutex;
}

void ShapeStoreBuilder::Set(ProductIndex product, ProductShape shape)
{
  std::vector<ProductShape>& products = _Content().products;
  if (product >= products.size()) {
    products.resize(product + 1);
  }
  products[product] = std::move(shape);
}

void ShapeStoreBuilder::Share(ProductIndex product, ProductIndex source)
{
  if (source < _Content().products.size()) {
    Set(product, ProductShape(_Content().products[source]));
  }
}

std::shared_ptr<const ShapeStore> ShapeStoreBuilder::Take()
{
  ShapeStore::Content& content = _Content();
  SharedShapes shared;
  for (const ProductShape& product : content.products) {
    shared.Add(product.shape);
  }
  content.groups = shared.MakeGroups();
  for (const std::size_t group : content.groups) {
    content.mutexes.resize(std::max(content.mutexes.size(), group + 1));
  }
  for (auto& mutex : content.mutexes) {
    mutex = std::make_unique<std::shared_mutex>();
  }
  return std::move(m_store);
}

}  // namespace stepimport
