#include "eNeighborSolicitationStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::Layout;

// A foreign signature is reported under the name of the matching parameters reader, the text that
// clients of this record have always seen.
struct ENeighborSolicitationStats::Schema {
  static constexpr auto kFields = std::make_tuple(
      Counter("Icmp6OutNeighborSolicits", &ENeighborSolicitationStats::m_Icmp6OutNeighborSolicits),
      Counter("Icmp6OutNeighborAdvertisements",
              &ENeighborSolicitationStats::m_Icmp6OutNeighborAdvertisements),
      Counter("Icmp6InNeighborSolicits", &ENeighborSolicitationStats::m_Icmp6InNeighborSolicits),
      Counter("Icmp6InNeighborAdvertisements",
              &ENeighborSolicitationStats::m_Icmp6InNeighborAdvertisements));
  static constexpr Layout kLayouts[] = {{0x18321311}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eNeighborSolicitationStats", 106,
                                              "ENeighborSolicitationParameters::SerializeIn"};
};

template class ERecord<ENeighborSolicitationStats>;
template class EStatsRecord<ENeighborSolicitationStats>;
