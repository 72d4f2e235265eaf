#include "zelk/MemoryPoolAllocated.h"

#include <new>

namespace zelk {

void* MemoryPoolAllocated::operator new(std::size_t size)
{
  return ::operator new(size);
}

void MemoryPoolAllocated::operator delete(void* memory, std::size_t /*size*/) noexcept
{
  ::operator delete(memory);
}

}  // namespace zelk
