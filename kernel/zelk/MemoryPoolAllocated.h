#pragma once

#include <cstddef>

namespace zelk {

/// Base of small objects that come and go in large numbers: their memory is taken by these two, so that a pool can be
/// put behind them in one place. Any thread.
class MemoryPoolAllocated {
public:
  static void* operator new(std::size_t size);
  static void operator delete(void* memory, std::size_t size) noexcept;

protected:
  MemoryPoolAllocated() = default;
  MemoryPoolAllocated(const MemoryPoolAllocated&) = default;
  MemoryPoolAllocated& operator=(const MemoryPoolAllocated&) = default;
  ~MemoryPoolAllocated() = default;
};

}  // namespace zelk
