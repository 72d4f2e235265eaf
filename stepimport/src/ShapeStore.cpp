#include "stepimport/ShapeStore.h"

#include "ShapeStoreBuilder.h"

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

}  // namespace stepimport
