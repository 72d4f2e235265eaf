#include "dg/Color.h"

#include <algorithm>
#include <cmath>

namespace dg {
namespace {

unsigned int ToByte(float component) noexcept
{
  // Written so that a component that is no number reads as 0.
  const float inRange = component > 0.0F ? std::min(component, 1.0F) : 0.0F;
  return static_cast<unsigned int>(std::lround(inRange * 255.0F));
}

}  // namespace

unsigned int Color::GetAsHexUI() const noexcept
{
  return ToByte(red) << 16 | ToByte(green) << 8 | ToByte(blue);
}

}  // namespace dg
