// The few compiler facilities the library's hot paths use, behind one small header, so that a
// compiler without them needs a change here only.
#pragma once

#include <cstdint>

namespace eHal::detail {

#if defined(__BYTE_ORDER__) && defined(__ORDER_LITTLE_ENDIAN__)
inline constexpr bool kLittleEndian = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
#else
inline constexpr bool kLittleEndian = false;  // the byte-wise paths are always correct
#endif

// Number of zero bits above the highest set bit; `value` must not be 0.
inline unsigned int CountLeadingZeros(std::uint32_t value) {
#if defined(__GNUC__)
  return static_cast<unsigned int>(__builtin_clz(value));
#else
  unsigned int count = 0;
  for (std::uint32_t bit = 0x80000000u; (value & bit) == 0; bit >>= 1)
    ++count;
  return count;
#endif
}

// Number of zero bits below the lowest set bit; `value` must not be 0.
inline unsigned int CountTrailingZeros(std::uint64_t value) {
#if defined(__GNUC__)
  return static_cast<unsigned int>(__builtin_ctzll(value));
#else
  unsigned int count = 0;
  for (; (value & 1) == 0; value >>= 1)
    ++count;
  return count;
#endif
}

}  // namespace eHal::detail
