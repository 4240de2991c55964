#include "eVLANStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::Layout;

// A foreign signature is reported under the name of the matching parameters reader, the text that
// clients of this record have always seen.
struct EVLANStats::Schema {
  static constexpr auto kFields =
      std::make_tuple(Counter("DroppedPackets", &EVLANStats::m_DroppedPackets));
  static constexpr Layout kLayouts[] = {{0x18321311}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eVLANStats", 85,
                                              "EVLANParameters::SerializeIn"};
};

template class ERecord<EVLANStats>;
template class EStatsRecord<EVLANStats>;
