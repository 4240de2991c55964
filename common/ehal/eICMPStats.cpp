#include "eICMPStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::From;
using eHal::detail::Layout;

// The newer layout put two counters in front. A foreign signature is reported under the name of the
// matching parameters reader, the text that clients of this record have always seen.
struct EICMPStats::Schema {
  static constexpr auto kFields =
      std::make_tuple(Counter("EchoResponsesReceived", &EICMPStats::m_EchoResponsesReceived),
                      Counter("EchoRequestsSent", &EICMPStats::m_EchoRequestsSent),
                      Counter("EchoResponsesSent", &EICMPStats::m_EchoResponsesSent),
                      Counter("EchoRequestsReceived", &EICMPStats::m_EchoRequestsReceived));
  static constexpr Layout kLayouts[] = {{0x18321312}, {0x18321311, From("EchoResponsesSent")}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eICMPStats", 103,
                                              "EICMPParameters::SerializeIn"};
};

template class ERecord<EICMPStats>;
template class EStatsRecord<EICMPStats>;
