#include "memkernel/Product.h"

#include "TreeLink.h"
#include "zelk/ComponentInstance.h"

namespace memkernel {
namespace {

du::Symbol GetAllowedPartId(const ProductInfo& info)
{
  return info.partId == zelk::ComponentInstance::ROOT_INSTANCE_ID ? du::Symbol() : info.partId;
}

unsigned int GetAllowedFlags(const ProductInfo& info)
{
  const unsigned int shapeSource = info.shape ? InstanceShapeSource : 0U;
  return (info.flags & InstanceAllFlags) | shapeSource;
}

}  // namespace

Product::Product(const du::SmartPtr<TreeLink>& tree, const du::Symbol& key, const ProductInfo& info)
    : m_tree(tree),
      m_key(key),
      m_name(du::MakeSmart<TextValue>(info.name)),
      m_partId(GetAllowedPartId(info)),
      m_shape(info.shape),
      m_anchor(info.anchor),
      m_properties(info.properties),
      m_flags(GetAllowedFlags(info))
{
}

Product::~Product() = default;

}  // namespace memkernel
