// The counting operator new and delete behind AllocationWatch. Each block carries its size in a
// header as wide as the strictest fundamental alignment, so that delete knows what it returns.
#include "allocation_watch.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t kHeader = alignof(std::max_align_t);

std::atomic<std::size_t> gLive{0};
std::atomic<bool> gWatching{false};
std::size_t gBaseline = 0;
std::size_t gBudget = 0;
std::atomic<std::size_t> gPeak{0};
std::atomic<std::size_t> gAllocations{0};
std::atomic<std::size_t> gRefusals{0};

// The bytes live beyond those live when the watch began.
std::size_t BeyondBaseline(std::size_t live) {
  return live > gBaseline ? live - gBaseline : 0;
}

// Null when the budget refuses the request or memory runs out.
void* Allocate(std::size_t size) {
  const bool watching = gWatching.load();
  const std::size_t beyond = BeyondBaseline(gLive.load());
  if (watching && (beyond > gBudget || size > gBudget - beyond)) {
    ++gRefusals;
    return nullptr;
  }
  if (size > std::numeric_limits<std::size_t>::max() - kHeader) return nullptr;
  void* const block = std::malloc(kHeader + size);
  if (block == nullptr) return nullptr;
  *static_cast<std::size_t*>(block) = size;
  const std::size_t live = gLive += size;
  if (watching) {
    ++gAllocations;
    std::size_t peak = gPeak.load();
    while (BeyondBaseline(live) > peak &&
           !gPeak.compare_exchange_weak(peak, BeyondBaseline(live))) {
    }
  }
  return static_cast<char*>(block) + kHeader;
}

void Release(void* memory) {
  if (memory == nullptr) return;
  void* const block = static_cast<char*>(memory) - kHeader;
  gLive -= *static_cast<std::size_t*>(block);
  std::free(block);
}

void* AllocateOrThrow(std::size_t size) {
  void* const memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

AllocationWatch::AllocationWatch(std::size_t budget) {
  gBaseline = gLive.load();
  gBudget = budget;
  gPeak = 0;
  gAllocations = 0;
  gRefusals = 0;
  gWatching = true;
}

AllocationWatch::~AllocationWatch() {
  Stop();
}

void AllocationWatch::Stop() {
  gWatching = false;
}

std::size_t AllocationWatch::PeakBytes() const {
  return gPeak.load();
}

std::size_t AllocationWatch::Allocations() const {
  return gAllocations.load();
}

std::size_t AllocationWatch::Refusals() const {
  return gRefusals.load();
}

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}

void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}

void operator delete(void* memory) noexcept {
  Release(memory);
}

void operator delete[](void* memory) noexcept {
  Release(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  Release(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
  Release(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
  Release(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  Release(memory);
}
