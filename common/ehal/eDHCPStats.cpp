#include "eDHCPStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::Layout;

struct EDHCPStats::Schema {
  static constexpr auto kFields = std::make_tuple(
      Counter("DHCPDiscoversSent", &EDHCPStats::m_DHCPDiscoversSent),
      Counter("DHCPDiscoversOffersReceived", &EDHCPStats::m_DHCPDiscoversOffersReceived),
      Counter("DHCPRequestsSent", &EDHCPStats::m_DHCPRequestsSent),
      Counter("DHCPEnabledInterfaces", &EDHCPStats::m_DHCPEnabledInterfaces),
      Counter("DHCPAddressesDiscovered", &EDHCPStats::m_DHCPAddressesDiscovered),
      Counter("DHCPACKReceived", &EDHCPStats::m_DHCPACKReceived),
      Counter("DHCPNAKReceived", &EDHCPStats::m_DHCPNAKReceived),
      Counter("DHCPReleasesSent", &EDHCPStats::m_DHCPReleasesSent));
  static constexpr Layout kLayouts[] = {{1}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eDHCPStats", 136,
                                              "EDHCPStats::SerializeIn"};
};

template class ERecord<EDHCPStats>;
template class EStatsRecord<EDHCPStats>;
