// The library's one decimal writer and its digit tables (powers of ten, digit pairs, hex digits),
// shared by the archive's number writer and reader and by the text forms of the records.
#pragma once

#include <cstdint>

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

inline unsigned int DigitCount(std::uint64_t value) {
  if (value <= UINT32_MAX) return DigitCount(static_cast<std::uint32_t>(value));
  unsigned int count = 10;
  for (value /= 10000000000u; value != 0; value /= 10)
    ++count;
  return count;
}

// Writes the decimal digits of `value` so that they end just before `end`, two at a time.
template <typename Unsigned, typename Char>
void WriteDigitsBackwards(Unsigned value, Char* end) {
  while (value >= 100) {
    const unsigned int pair = static_cast<unsigned int>(value % 100) * 2;
    value /= 100;
    end -= 2;
    end[0] = static_cast<Char>(kDigitPairs[pair]);
    end[1] = static_cast<Char>(kDigitPairs[pair + 1]);
  }
  if (value >= 10) {
    const unsigned int pair = static_cast<unsigned int>(value) * 2;
    end[-2] = static_cast<Char>(kDigitPairs[pair]);
    end[-1] = static_cast<Char>(kDigitPairs[pair + 1]);
  } else {
    end[-1] = static_cast<Char>('0' + value);
  }
}

// Writes the decimal digits of `value` (no leading zeros, "0" for zero) at `out` and returns the
// position after them. At most 10 characters.
inline char* WriteDecimal(char* out, std::uint32_t value) {
  const unsigned int digits = DigitCount(value);
  WriteDigitsBackwards(value, out + digits);
  return out + digits;
}

}  // namespace eHal::detail
