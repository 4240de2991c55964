// The counting allocator: each entry point counts the call and hands it to the C library's own
// implementation, which glibc exports under its __libc_ names for exactly this use.
#include "allocation_counter.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* data, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* data);
}

namespace {

std::atomic<std::uint64_t> gAllocations{0};

void Counted() {
  gAllocations.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

namespace allocation_counter {

std::uint64_t Count() {
  return gAllocations.load(std::memory_order_relaxed);
}

}  // namespace allocation_counter

extern "C" {

void* malloc(std::size_t size) {
  Counted();
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
  Counted();
  return __libc_calloc(count, size);
}

void* realloc(void* data, std::size_t size) {
  Counted();
  return __libc_realloc(data, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
  Counted();
  return __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  Counted();
  return __libc_memalign(alignment, size);
}

int posix_memalign(void** data, std::size_t alignment, std::size_t size) {
  Counted();
  *data = __libc_memalign(alignment, size);
  return *data == nullptr ? 12 /* ENOMEM */ : 0;
}

void free(void* data) {
  __libc_free(data);
}

}  // extern "C"
