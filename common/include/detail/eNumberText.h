// The archive's number text: the writer of a number's digits and blank, and the pieces of the
// reader's inline fast path that take several digits at once. Used by eArchive.h inline; not part
// of the interface.
#pragma once

#include <cstdint>
#include <cstring>

#include "eDigits.h"
#include "ePortability.h"

namespace eHal::detail {

// The longest number text the archive writes: twenty digits and a blank.
inline constexpr unsigned int kLongestNumberText = 21;

// The archive's text of a number: its digits ("-" first when negative) and one blank. Returns the
// position after the blank.
inline unsigned char* WriteNumberText(unsigned char* out, std::uint32_t value) {
  out = WriteDigits(out, value);
  *out = ' ';
  return out + 1;
}

inline unsigned char* WriteNumberText(unsigned char* out, std::int32_t value) {
  if (value >= 0) return WriteNumberText(out, static_cast<std::uint32_t>(value));
  *out = '-';
  return WriteNumberText(out + 1, 0u - static_cast<std::uint32_t>(value));
}

inline unsigned char* WriteNumberText(unsigned char* out, std::uint64_t value) {
  out = WriteDigits(out, value);
  *out = ' ';
  return out + 1;
}

// Eight bytes from `bytes`, the first in the lowest eight bits.
inline std::uint64_t LoadEight(const unsigned char* bytes) {
  std::uint64_t chunk;
  std::memcpy(&chunk, bytes, sizeof chunk);
  return chunk;
}

// Stores the digit value of each of the eight bytes in `values` (meaningful for the digits
// only) and returns how many leading bytes are decimal digits, 0 to 8.
inline unsigned int LeadingDigits(std::uint64_t chunk, std::uint64_t& values) {
  values = chunk ^ 0x3030303030303030ULL;
  // A digit has a zero high nibble both as it is and after adding 6 to its low nibble; the
  // first byte that is not a digit is the lowest with a high nibble set in either. Carries only
  // run towards later bytes, so they cannot hide it.
  const std::uint64_t high = (values | (values + 0x0606060606060606ULL)) & 0xF0F0F0F0F0F0F0F0ULL;
  return high == 0 ? 8 : CountTrailingZeros(high) / 8;
}

// The number spelt by the first `count` (1 to 8) digit values, the first the most significant.
inline std::uint32_t SpellDigits(std::uint64_t values, unsigned int count) {
  std::uint64_t v = values << (8 * (8 - count));  // leading zeros fill the dropped places
  v = (v * 10 + (v >> 8)) & 0x00FF00FF00FF00FFULL;
  v = (v * 100 + (v >> 16)) & 0x0000FFFF0000FFFFULL;
  return static_cast<std::uint32_t>(v * 10000 + (v >> 32));
}

// The value of a digit character; above 9 for any other byte.
inline unsigned int DigitValue(unsigned char c) {
  return static_cast<unsigned int>(c) - unsigned{'0'};
}

// Takes up to four leading digits of `first` into `value`; returns how many it took. Written out
// rather than as a loop so that every optimisation level gets straight-line code whose branches
// the processor predicts for numbers of similar length.
inline unsigned int TakeUpToFourDigits(const unsigned char* first, std::uint32_t& value) {
  value = DigitValue(first[0]);
  if (value > 9) return 0;
  const unsigned int second = DigitValue(first[1]);
  if (second > 9) return 1;
  value = value * 10 + second;
  const unsigned int third = DigitValue(first[2]);
  if (third > 9) return 2;
  value = value * 10 + third;
  const unsigned int fourth = DigitValue(first[3]);
  if (fourth > 9) return 3;
  value = value * 10 + fourth;
  return 4;
}

}  // namespace eHal::detail
