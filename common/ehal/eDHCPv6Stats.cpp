#include "eDHCPv6Stats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::Layout;

struct EDHCPv6Stats::Schema {
  static constexpr auto kFields = std::make_tuple(
      Counter("DHCPv6SolicitsSent", &EDHCPv6Stats::m_DHCPv6SolicitsSent),
      Counter("DHCPv6AdvertisementsReceived", &EDHCPv6Stats::m_DHCPv6AdvertisementsReceived),
      Counter("DHCPv6RequestsSent", &EDHCPv6Stats::m_DHCPv6RequestsSent),
      Counter("DHCPv6EnabledInterfaces", &EDHCPv6Stats::m_DHCPv6EnabledInterfaces),
      Counter("DHCPv6AddressesDiscovered", &EDHCPv6Stats::m_DHCPv6AddressesDiscovered),
      Counter("DHCPv6DeclinesSent", &EDHCPv6Stats::m_DHCPv6DeclinesSent),
      Counter("DHCPv6RepliesReceived", &EDHCPv6Stats::m_DHCPv6RepliesReceived),
      Counter("DHCPv6ReleasesSent", &EDHCPv6Stats::m_DHCPv6ReleasesSent));
  static constexpr Layout kLayouts[] = {{1}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eDHCPv6Stats", 142,
                                              "EDHCPv6Stats::SerializeIn"};
};

template class ERecord<EDHCPv6Stats>;
template class EStatsRecord<EDHCPv6Stats>;
