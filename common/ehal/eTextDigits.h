// Hex text helpers shared by the text forms of the value types, on the library's one digit table.
// They write into a caller's character buffer and return the position after the last character,
// so that an address can be formatted into a stack buffer and turned into a string at once.
#pragma once

#include <cstddef>
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
