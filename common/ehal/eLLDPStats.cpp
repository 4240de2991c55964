#include "eLLDPStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::kDropped;
using eHal::detail::Layout;

struct ELLDPStats::Schema {
  static constexpr auto kFields =
      std::make_tuple(Counter("LLDPNeighborCount", &ELLDPStats::m_LLDPNeighborCount),
                      Counter("LLDPSent", &ELLDPStats::m_LLDPSent),
                      Counter("LLDPReceived", &ELLDPStats::m_LLDPReceived),
                      Counter("LLDPRxAgeout", &ELLDPStats::m_LLDPRxAgeout),
                      Counter("LLDPRxError", &ELLDPStats::m_LLDPRxError),
                      Counter("LLDPRxTlvUnrecognized", &ELLDPStats::m_LLDPRxTlvUnrecognized));
  // The first layout carries two values the record no longer keeps and no neighbour count.
  static constexpr const char* kFirstLayout[] = {
      "LLDPSent",    "LLDPReceived", "LLDPRxAgeout",         kDropped,
      "LLDPRxError", kDropped,       "LLDPRxTlvUnrecognized"};
  static constexpr Layout kLayouts[] = {{0x21080129}, {0x21080128, kFirstLayout}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eLldpStats", 125,
                                              "ELLDPStats::SerializeIn"};
};

template class ERecord<ELLDPStats>;
template class EStatsRecord<ELLDPStats>;
