// EFormatUtils: formats the bytes of an integer as two-digit lower-case hexadecimal pairs with a
// separator between them ("0a:0b:0c:0d").
#pragma once

#include <string>

class EFormatUtils {
 public:
  // The lowest `count` bytes of the value (at most four), most significant first.
  static std::string GetEDWORDAsFormattedString(unsigned int value, unsigned int count,
                                                const std::string& separator);
  // The lowest `count` bytes of the value (at most eight), most significant first.
  static std::string GetInt64AsFormattedString(unsigned long value, unsigned int count,
                                               const std::string& separator);

  // The generic form: the lowest `count` bytes of any unsigned integer, most significant first,
  // each as two lower-case hex digits, `separator` between consecutive pairs; a count above
  // the value's width is limited to it, and 0 gives the empty string.
  template <typename Value>
  static std::string GetAsFormattedString(Value value, unsigned int count,
                                          const std::string& separator) {
    unsigned char bytes[sizeof(Value)];
    for (unsigned int i = 0; i < sizeof(Value); ++i)
      bytes[sizeof(Value) - 1 - i] = static_cast<unsigned char>(value >> (8 * i));
    const unsigned int used = count < sizeof(Value) ? count : sizeof(Value);
    return FormatBytes(bytes + sizeof(Value) - used, used, separator);
  }

 private:
  static std::string FormatBytes(const unsigned char* bytes, unsigned int count,
                                 const std::string& separator);
};
