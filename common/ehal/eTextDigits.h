// Small digit writers shared by the text forms of the value types. They write into a caller's
// character buffer and return the position after the last character, so that an address can be
// formatted into a stack buffer and turned into a string with one allocation.
#pragma once

#include <cstddef>
#include <string>

namespace ehal_text {

inline constexpr char kLowerHexDigits[] = "0123456789abcdef";
inline constexpr char kUpperHexDigits[] = "0123456789ABCDEF";

// Decimal digits of `value`, no leading zeros ("0" for zero). At most 10 characters.
inline char* WriteDecimal(char* out, unsigned int value) {
  char reversed[10];
  int count = 0;
  do {
    reversed[count++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  while (count > 0)
    *out++ = reversed[--count];
  return out;
}

// Upper-case hexadecimal digits of `value`, no leading zeros ("0" for zero). At most 8 characters.
inline char* WriteUpperHex(char* out, unsigned int value) {
  int shift = 28;
  while (shift > 0 && (value >> shift) == 0)
    shift -= 4;
  for (; shift >= 0; shift -= 4)
    *out++ = kUpperHexDigits[(value >> shift) & 0x0F];
  return out;
}

// Two lower-case hexadecimal digits of `byte`.
inline char* WriteLowerHexPair(char* out, unsigned char byte) {
  *out++ = kLowerHexDigits[byte >> 4];
  *out++ = kLowerHexDigits[byte & 0x0F];
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
    out = WriteLowerHexPair(out, bytes[i]);
  }
  return text;
}

}  // namespace ehal_text
