#include "eARPStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::Layout;

// A foreign signature is reported under the name of the matching parameters reader, the text that
// clients of this record have always seen.
struct EARPStats::Schema {
  static constexpr auto kFields =
      std::make_tuple(Counter("ResponsesSent", &EARPStats::m_ResponsesSent),
                      Counter("ResponsesReceived", &EARPStats::m_ResponsesReceived),
                      Counter("RequestsSent", &EARPStats::m_RequestsSent),
                      Counter("RequestsReceived", &EARPStats::m_RequestsReceived));
  static constexpr Layout kLayouts[] = {{0x18321311}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eARPStats", 94,
                                              "EARPParameters::SerializeIn"};
};

template class ERecord<EARPStats>;
template class EStatsRecord<EARPStats>;
