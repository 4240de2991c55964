// Hex text helpers shared by the text forms of the value types, on the library's one digit table.
// They write into a caller's character buffer and return the position after the last character,
// so that an address can be formatted into a stack buffer and turned into a string at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "detail/eDigits.h"

namespace eHal::detail {

// Upper-case hexadecimal digits of `value`, no leading zeros ("0" for zero). At most 8 characters.
inline char* WriteUpperHex(char* out, unsigned int value) {
  int shift = 28;
  while (shift > 0 && (value >> shift) == 0)
    shift -= 4;
  for (; shift >= 0; shift -= 4)
    *out++ = HexDigit(value >> shift);
  return out;
}

// Lower-case hexadecimal digits of `value`, at least `width` of them (zeros in front), as "%0*lx"
// writes them. At most 16 characters.
inline char* WriteLowerHex(char* out, std::uint64_t value, unsigned int width = 1) {
  unsigned int digits = 1;
  while (digits < 16 && (value >> (4 * digits)) != 0)
    ++digits;
  for (; width > digits; --width)
    *out++ = '0';
  for (unsigned int shift = 4 * digits; shift > 0; shift -= 4)
    *out++ = HexDigit(static_cast<unsigned int>(value >> (shift - 4)), true);
  return out;
}

// Every byte as two lower-case hexadecimal digits, `separator` between consecutive pairs.
inline std::string JoinLowerHexPairs(const unsigned char* bytes, std::size_t count,
                                     const std::string& separator) {
  std::string text;
  if (count == 0) return text;
  text.resize(count * 2 + (count - 1) * separator.size());
  char* out = &text[0];
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) out += separator.copy(out, separator.size());
    *out++ = HexDigit(bytes[i] >> 4, true);
    *out++ = HexDigit(bytes[i], true);
  }
  return text;
}

}  // namespace eHal::detail
