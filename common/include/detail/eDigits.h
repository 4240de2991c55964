// The library's one decimal writer and its digit tables (powers of ten, digit pairs, hex digits),
// shared by the archive's number writer and reader and by the text forms of the records.
#pragma once

#include <cstdint>
#include <cstring>

#include "ePortability.h"

namespace eHal::detail {

inline constexpr std::uint32_t kPowersOfTen[] = {1,      10,      100,      1000,      10000,
                                                 100000, 1000000, 10000000, 100000000, 1000000000};

inline constexpr char kDigitPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

// Upper-case digits, then lower-case ones.
inline constexpr char kHexDigits[] = "0123456789ABCDEF0123456789abcdef";

// The hex digit of the low four bits of `value`.
inline char HexDigit(unsigned int value, bool lowerCase = false) {
  return kHexDigits[(value & 0x0F) + (lowerCase ? 16 : 0)];
}

// The value of a hexadecimal digit of either case, or -1 for any other character.
inline int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// Number of decimal digits of `value` (1 for 0), without a loop.
inline unsigned int DigitCount(std::uint32_t value) {
  // value | 1 has as many digits as value (every 99..9 is odd) and is never 0.
  const unsigned int bits = 32 - CountLeadingZeros(value | 1);
  const unsigned int guess = (bits * 1233) >> 12;  // floor(bits * log10(2))
  return guess + ((value | 1) >= kPowersOfTen[guess] ? 1 : 0);
}

// Decimal digits without a division per digit. `value` times a rounded-up 2^32 / 10^k is a
// fixed-point number whose integer part (bits 32 and up) is value / 10^k, the leading one or two
// digits, and whose 32-bit fraction is the rest; each multiplication of the fraction by 100 then
// moves the next two digits into the integer part. The rounding error of the constants stays
// below one in the last pair for every 32-bit value (checked over all of them), so the digits are
// exact. Above 10^6 the constant carries 16 or 25 more bits, shifted out again after the product;
// one is added after the shift so that the bits it drops never leave the fraction short.

// Copies the two digits of `pair` (0 to 99) to `out`.
template <typename Char>
void WritePair(Char* out, std::uint32_t pair) {
  std::memcpy(out, kDigitPairs + 2 * pair, 2);
}

// Writes the integer part of `fixed` (1 to 99) as one or two digits, then `Pairs` more pairs
// from its fraction; returns the position after them.
template <unsigned int Pairs, typename Char>
Char* WriteFixedPoint(Char* out, std::uint64_t fixed) {
  const auto head = static_cast<std::uint32_t>(fixed >> 32);
  if (head < 10) {
    *out++ = static_cast<Char>('0' + head);
  } else {
    WritePair(out, head);
    out += 2;
  }
  for (unsigned int i = 0; i < Pairs; ++i, out += 2) {
    fixed = std::uint64_t{static_cast<std::uint32_t>(fixed)} * 100;
    WritePair(out, static_cast<std::uint32_t>(fixed >> 32));
  }
  return out;
}

// Writes the decimal digits of `value` (no leading zeros, "0" for zero) at `out` and returns the
// position after them; at most 10 characters. Inlined into every number writer: a call per number
// costs as much as the digits.
template <typename Char>
[[gnu::always_inline]] inline Char* WriteDigits(Char* out, std::uint32_t value) {
  if (value < 100) {
    if (value < 10) {
      *out = static_cast<Char>('0' + value);
      return out + 1;
    }
    WritePair(out, value);
    return out + 2;
  }
  const std::uint64_t wide = value;
  if (value < 10000) return WriteFixedPoint<1>(out, wide * 42949673);                     // / 10^2
  if (value < 1000000) return WriteFixedPoint<2>(out, wide * 429497);                     // / 10^4
  if (value < 100000000) return WriteFixedPoint<3>(out, ((wide * 281474977) >> 16) + 1);  // / 10^6
  return WriteFixedPoint<4>(out, ((wide * 1441151881) >> 25) + 1);                        // / 10^8
}

// Writes exactly eight digits of `value` (below 10^8), with leading zeros.
template <typename Char>
Char* WriteEightDigits(Char* out, std::uint32_t value) {
  std::uint64_t fixed = ((std::uint64_t{value} * 281474977) >> 16) + 1;  // / 10^6
  WritePair(out, static_cast<std::uint32_t>(fixed >> 32));
  for (unsigned int i = 1; i < 4; ++i) {
    fixed = std::uint64_t{static_cast<std::uint32_t>(fixed)} * 100;
    WritePair(out + 2 * i, static_cast<std::uint32_t>(fixed >> 32));
  }
  return out + 8;
}

// 64-bit form: at most 20 characters.
template <typename Char>
Char* WriteDigits(Char* out, std::uint64_t value) {
  if (value <= UINT32_MAX) return WriteDigits(out, static_cast<std::uint32_t>(value));
  constexpr std::uint64_t kEight = 100000000;
  const std::uint64_t high = value / kEight;
  const auto low = static_cast<std::uint32_t>(value % kEight);
  if (high <= UINT32_MAX) {
    out = WriteDigits(out, static_cast<std::uint32_t>(high));
  } else {
    out = WriteDigits(out, static_cast<std::uint32_t>(high / kEight));
    out = WriteEightDigits(out, static_cast<std::uint32_t>(high % kEight));
  }
  return WriteEightDigits(out, low);
}

// The same for char text.
inline char* WriteDecimal(char* out, std::uint32_t value) {
  return WriteDigits(out, value);
}

}  // namespace eHal::detail
