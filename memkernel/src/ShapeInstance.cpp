#include "memkernel/ShapeInstance.h"

namespace memkernel {

ShapeInstance::ShapeInstance(const du::SmartPtr<zelk::Instance>& instance, const du::SmartPtr<Shape>& shape,
                             unsigned int bits)
    : m_instance(instance), m_shape(shape), m_bits(bits)
{
}

ShapeInstance::~ShapeInstance() = default;

void ShapeInstance::GetInstance(du::SmartPtr<zelk::Instance>& out) const
{
  out = _Has(Gone) ? du::SmartPtr<zelk::Instance>() : m_instance;
}

void ShapeInstance::GetShape(du::SmartPtr<zelk::Shape>& out) const
{
  out = m_shape;
}

unsigned short ShapeInstance::GetShapeDataStatus(unsigned short what) const
{
  if (what != 1) {
    return zelk::ShapeDataNone;
  }
  const unsigned short own = m_ownStatus.load(std::memory_order_acquire);
  if (own != s_asShape) {
    return own;
  }
  return m_shape ? m_shape->GetDataStatus() : zelk::ShapeDataNone;
}

bool ShapeInstance::HasRejectedCopyrights() const
{
  return _Has(RejectedCopyrights);
}

bool ShapeInstance::IsCompared() const
{
  return _Has(Compared);
}

bool ShapeInstance::IsComparedFirstItem() const
{
  return _Has(ComparedFirst);
}

bool ShapeInstance::IsThumbnail() const
{
  return _Has(Thumbnail);
}

bool ShapeInstance::IsVisible() const
{
  return _Has(Visible);
}

bool ShapeInstance::_Set(Bit bit, bool on) noexcept
{
  const unsigned int before = on ? m_bits.fetch_or(bit, std::memory_order_acq_rel)
                                 : m_bits.fetch_and(~static_cast<unsigned int>(bit), std::memory_order_acq_rel);
  return ((before & bit) != 0) != on;
}

}  // namespace memkernel
