#include "CountedMemory.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<int> s_allocations{0};
/// As a number: the memory may have gone.
std::atomic<std::uintptr_t> s_watched{0};
std::atomic<bool> s_isFreed{false};

void* CountAndAllocate(std::size_t size)
{
  ++s_allocations;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (!memory) {
    throw std::bad_alloc();
  }
  return memory;
}

void NoteAndFree(void* memory) noexcept
{
  if (memory && reinterpret_cast<std::uintptr_t>(memory) == s_watched) {
    s_isFreed = true;
  }
  std::free(memory);
}

}  // namespace

namespace structuretest {

int CountAllocations()
{
  return s_allocations;
}

void WatchMemory(const void* memory)
{
  s_watched = reinterpret_cast<std::uintptr_t>(memory);
  s_isFreed = false;
}

bool IsWatchedMemoryFreed()
{
  return s_isFreed;
}

}  // namespace structuretest

void* operator new(std::size_t size)
{
  return CountAndAllocate(size);
}
void* operator new[](std::size_t size)
{
  return CountAndAllocate(size);
}
void operator delete(void* memory) noexcept
{
  NoteAndFree(memory);
}
void operator delete[](void* memory) noexcept
{
  NoteAndFree(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
  NoteAndFree(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
  NoteAndFree(memory);
}
