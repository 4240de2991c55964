// A blob's sizes are 32-bit, so the largest blob holds 2^32 - 1 bytes. These turn a wider byte
// count into a blob size, so that a sum near 4 GiB is refused instead of wrapping round to a small
// size that a following copy would then overrun. Shared by the blob and the archive.
#pragma once

#include <cstdint>
#include <new>

namespace eHal::detail {

// The most bytes one blob holds.
inline constexpr std::uint64_t kLargestBlob = UINT32_MAX;

// True when `n` bytes and `extra` more fit in one blob.
inline bool FitsInBlob(unsigned int n, unsigned int extra) {
  return std::uint64_t{n} + extra <= kLargestBlob;
}

// `bytes` as a blob size. More than a blob holds is refused with std::bad_alloc, as an
// allocation that cannot be made is.
inline unsigned int BlobSize(std::uint64_t bytes) {
  if (bytes > kLargestBlob) throw std::bad_alloc();
  return static_cast<unsigned int>(bytes);
}

// `n` bytes followed by `extra` more as one blob size, added without wrapping; refused as above.
inline unsigned int BlobSizeOfSum(unsigned int n, unsigned int extra) {
  return BlobSize(std::uint64_t{n} + extra);
}

}  // namespace eHal::detail
