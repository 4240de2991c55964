// Helpers shared by the text forms of the request/reply records: the fixed text of an
// enumeration value (with a fallback for values the table does not know) and the leading
// "request type, return code" items that most of those forms open with.
#pragma once

#include <cstddef>
#include <ostream>

namespace eHal::detail {

// The text of `value` in a table indexed from 0, or `fallback` for any value beyond it.
template <std::size_t N>
const char* EnumText(unsigned int value, const char* const (&texts)[N],
                     const char* fallback = "Unknown") {
  return value < N ? texts[value] : fallback;
}

// Writes `label` and the request text, then ", Return Code: " and the return-code text.
inline std::ostream& WriteHead(std::ostream& text, const char* requestText, const char* returnText,
                               const char* label = "Request Type: ") {
  return text << label << requestText << ", Return Code: " << returnText;
}

}  // namespace eHal::detail
