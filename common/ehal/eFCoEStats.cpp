#include "eFCoEStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::From;
using eHal::detail::Layout;

// Each layout added its counters ahead of the previous one's.
struct EFCoEStats::Schema {
  static constexpr auto kFields = std::make_tuple(
      Counter("RSCNReceived", &EFCoEStats::m_RSCNReceived),
      Counter("RSCNAccTransmitted", &EFCoEStats::m_RSCNAccTransmitted),
      Counter("SCRTransmitted", &EFCoEStats::m_SCRTransmitted),
      Counter("SCRAccReceived", &EFCoEStats::m_SCRAccReceived),
      Counter("FCoENSQuerySent", &EFCoEStats::m_FCoENSQuerySent),
      Counter("FCoENSQuerySuccessful", &EFCoEStats::m_FCoENSQuerySuccessful),
      Counter("FCoEPRLISent", &EFCoEStats::m_FCoEPRLISent),
      Counter("FCoEPRLISuccessful", &EFCoEStats::m_FCoEPRLISuccessful),
      Counter("FCoEPRLIReceived", &EFCoEStats::m_FCoEPRLIReceived),
      Counter("FCoEDiscoverySolicitationsSent", &EFCoEStats::m_FCoEDiscoverySolicitationsSent),
      Counter("FCoEDiscoveryAdvertisementsReceived",
              &EFCoEStats::m_FCoEDiscoveryAdvertisementsReceived),
      Counter("FCoEKeepAlivesSent", &EFCoEStats::m_FCoEKeepAlivesSent),
      Counter("FCoEClearVirtualLinksReceived", &EFCoEStats::m_FCoEClearVirtualLinksReceived),
      Counter("FCoEFlogiSent", &EFCoEStats::m_FCoEFlogiSent),
      Counter("FCoEFlogiSuccessful", &EFCoEStats::m_FCoEFlogiSuccessful),
      Counter("FCoEPlogiSent", &EFCoEStats::m_FCoEPlogiSent),
      Counter("FCoEPlogiSuccessful", &EFCoEStats::m_FCoEPlogiSuccessful),
      Counter("FCoEPlogiReceived", &EFCoEStats::m_FCoEPlogiReceived),
      Counter("FCoEFlogoSent", &EFCoEStats::m_FCoEFlogoSent),
      Counter("FCoEPlogoSent", &EFCoEStats::m_FCoEPlogoSent),
      Counter("FCoEPlogoReceived", &EFCoEStats::m_FCoEPlogoReceived),
      Counter("FCoEFdiscSent", &EFCoEStats::m_FCoEFdiscSent),
      Counter("FCoEFdiscSuccessful", &EFCoEStats::m_FCoEFdiscSuccessful),
      Counter("FCoENSRegSent", &EFCoEStats::m_FCoENSRegSent),
      Counter("FCoENSRegSuccessful", &EFCoEStats::m_FCoENSRegSuccessful),
      Counter("FCoENPortsEnabled", &EFCoEStats::m_FCoENPortsEnabled),
      Counter("FCoENPortIdsAcquired", &EFCoEStats::m_FCoENPortIdsAcquired));
  static constexpr Layout kLayouts[] = {{4},
                                        {3, From("FCoENSQuerySent")},
                                        {2, From("FCoEDiscoverySolicitationsSent")},
                                        {1, From("FCoEFlogiSent")}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eFCoEStats", 270,
                                              "EFCoEStats::SerializeIn"};
};

template class ERecord<EFCoEStats>;
template class EStatsRecord<EFCoEStats>;
