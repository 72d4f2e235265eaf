#include "memkernel/Shape.h"

#include <utility>

namespace memkernel {

Shape::Shape(Work work, zelk::ShapeDataStatus status) : m_work(std::move(work)), m_status(status) {}

Shape::~Shape() = default;

bool Shape::IsFailedFromTrask() const
{
  return IsFromTrask() && GetDataStatus() == zelk::ShapeDataFailed;
}

}  // namespace memkernel
