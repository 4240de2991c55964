#include "eDriverStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::From;
using eHal::detail::Layout;

// The newer layout put the overflow counter in front. A foreign signature is reported under the
// name of the matching parameters reader, the text that clients of this record have always seen.
struct EDriverStats::Schema {
  static constexpr auto kFields =
      std::make_tuple(Counter("PacketsReceiveOverflow", &EDriverStats::m_PacketsReceiveOverflow),
                      Counter("PacketsSent", &EDriverStats::m_PacketsSent),
                      Counter("PacketsReceived", &EDriverStats::m_PacketsReceived),
                      Counter("PacketsDroppedByDriver", &EDriverStats::m_PacketsDroppedByDriver));
  static constexpr Layout kLayouts[] = {{0x18321312}, {0x18321311, From("PacketsSent")}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eDriverStats", 96,
                                              "EDriverParameters::SerializeIn"};
};

template class ERecord<EDriverStats>;
template class EStatsRecord<EDriverStats>;
