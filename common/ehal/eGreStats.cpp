#include "eGreStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::Layout;

// A foreign signature is reported under the name of the matching parameters reader, the text that
// clients of this record have always seen.
struct EGreStats::Schema {
  static constexpr auto kFields =
      std::make_tuple(Counter("GreFramesSent", &EGreStats::m_GreFramesSent),
                      Counter("GreFramesReceived", &EGreStats::m_GreFramesReceived),
                      Counter("GreBytesSent", &EGreStats::m_GreBytesSent),
                      Counter("GreBytesReceived", &EGreStats::m_GreBytesReceived));
  static constexpr Layout kLayouts[] = {{1}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eGreStats", 93,
                                              "EGreParameters::SerializeIn"};
};

template class ERecord<EGreStats>;
template class EStatsRecord<EGreStats>;
