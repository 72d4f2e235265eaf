#pragma once

#include <cstdint>

namespace systemtest {

/// By remainder.
template <typename Array>
auto& Choose(Array& array, std::uint32_t number)
{
  return array[number % array.size()];
}

}  // namespace systemtest
