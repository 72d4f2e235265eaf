#pragma once

namespace structuretest {

/// For programs that link CountedMemory.cpp, which replaces the operator new.

/// How often memory has been allocated so far.
[[nodiscard]] int CountAllocations();

/// Watches one piece of memory, from now on, for as long as no other is watched.
void WatchMemory(const void* memory);
/// Whether the memory that is watched has been freed since.
[[nodiscard]] bool IsWatchedMemoryFreed();

}  // namespace structuretest
