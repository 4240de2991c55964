#include "eFormatUtils.h"

#include "eTextDigits.h"

std::string EFormatUtils::GetEDWORDAsFormattedString(unsigned int value, unsigned int count,
                                                     const std::string& separator) {
  return GetAsFormattedString(value, count, separator);
}

std::string EFormatUtils::GetInt64AsFormattedString(unsigned long value, unsigned int count,
                                                    const std::string& separator) {
  return GetAsFormattedString(value, count, separator);
}

std::string EFormatUtils::FormatBytes(const unsigned char* bytes, unsigned int count,
                                      const std::string& separator) {
  return eHal::detail::JoinLowerHexPairs(bytes, count, separator);
}
