// Index of a virtual operation in its class's table of virtual operations, read from a pointer
// to member under the Itanium C++ ABI (GCC and Clang on x86 and AArch64). The two destructor
// entries come first, so the first operation declared after a virtual destructor has index 2.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__) || defined(__aarch64__))
#define EHAL_HAS_VIRTUAL_SLOT 1

// -1 when `member` is not virtual.
template <typename MemberPointer>
std::ptrdiff_t VirtualSlot(MemberPointer member) {
  static_assert(sizeof(MemberPointer) == 2 * sizeof(std::uintptr_t), "Itanium member pointer");
  std::uintptr_t words[2];
  std::memcpy(words, &member, sizeof words);
  // A virtual member is encoded as 1 + its byte offset in the table.
  if ((words[0] & 1) == 0) return -1;
  return static_cast<std::ptrdiff_t>((words[0] - 1) / sizeof(void*));
}
#else
#define EHAL_HAS_VIRTUAL_SLOT 0
#endif
