// Feeds arbitrary bytes to the reader of every registered record class: the first byte picks the
// class, the rest is the archive a receiver loads (see fuzz::ReadRecordInput). A read either
// completes or ends in the serialisation error; a record that was read describes itself in
// exactly the bytes it writes. The archive's wrap limit bounds every read by a fixed multiple of
// its input, and so does the memory a read holds: more than kBytesPerInputByte for each input
// byte stops the run, as do the run's limits (-rss_limit_mb, -malloc_limit_mb, -timeout). The
// seed corpus comes from the golden vectors (see fuzz_seeds.cpp). records_tokens_fuzz is this
// target with the token-aware mutator of token_mutator.cpp.
#include <sanitizer/allocator_interface.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "fuzz_entries.h"

namespace {

// The most memory a read may hold at once for each byte of its input (plus kBaseBytes): enough
// for a five-fold pass over the data building the largest records, far below what a count taken
// at its word would cost.
constexpr long long kBytesPerInputByte = 256;
constexpr long long kBaseBytes = 64 << 10;

// Memory held beyond what was held when the read began, and its peak, counted through the
// sanitizer's allocation hooks while a read runs.
struct HeldMemory {
  bool counting = false;
  long long held = 0;
  long long peak = 0;
};
HeldMemory gMemory;

void CountAllocation(const volatile void*, std::size_t size) {
  if (!gMemory.counting) return;
  gMemory.held += static_cast<long long>(size);
  if (gMemory.held > gMemory.peak) gMemory.peak = gMemory.held;
}

void CountRelease(const volatile void* memory) {
  if (!gMemory.counting || memory == nullptr) return;
  gMemory.held -= static_cast<long long>(__sanitizer_get_allocated_size(memory));
}

// Counts the memory held from construction to destruction.
class MemoryCount {
 public:
  MemoryCount() { gMemory = HeldMemory{true, 0, 0}; }
  ~MemoryCount() { gMemory.counting = false; }
  MemoryCount(const MemoryCount&) = delete;
  MemoryCount& operator=(const MemoryCount&) = delete;
};

// Reads the input with the memory it holds counted.
fuzz::RecordInput CountedRead(const std::uint8_t* data, std::size_t size) {
  const MemoryCount count;
  return fuzz::ReadRecordInput(data, size);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // The registry is built once, on first use: not by the first read counted.
  ERecordRegistry::Classes();
  __sanitizer_install_malloc_and_free_hooks(&CountAllocation, &CountRelease);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::RecordInput input = CountedRead(data, size);
  if (gMemory.peak > kBaseBytes + kBytesPerInputByte * static_cast<long long>(size)) {
    std::fprintf(stderr, "reading %s from %zu bytes held %lld bytes\n",
                 input.recordClass->name.c_str(), size, gMemory.peak);
    __builtin_trap();
  }
  if (input.record != nullptr && !fuzz::DescribesItselfExactly(*input.record)) __builtin_trap();
  return 0;
}
