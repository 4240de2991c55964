// Counts the heap allocations of the program it is linked into: every call of malloc, calloc,
// realloc and the aligned forms, which is where operator new and EBlob's C allocations both end.
// For the allocation test and the benchmarks only; it replaces the C allocator's entry points, so
// it is never linked into a sanitizer build.
#pragma once

#include <cstdint>

namespace allocation_counter {

// Allocations made by the whole program so far.
std::uint64_t Count();

}  // namespace allocation_counter
