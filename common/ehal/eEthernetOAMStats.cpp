#include "eEthernetOAMStats.h"

#include "eStatsSchema.h"

using eHal::detail::Counter;
using eHal::detail::Layout;

// The signature lies above 2^31 and is written unsigned, so that its text is never negative.
struct EEthernetOAMStats::Schema {
  static constexpr auto kFields = std::make_tuple(
      Counter("InformationPDUsSent", &EEthernetOAMStats::m_InformationPDUsSent),
      Counter("InformationPDUsReceived", &EEthernetOAMStats::m_InformationPDUsReceived),
      Counter("EventNotificationPDUsReceived", &EEthernetOAMStats::m_EventNotificationPDUsReceived),
      Counter("LoopbackControlPDUsReceived", &EEthernetOAMStats::m_LoopbackControlPDUsReceived),
      Counter("OrgPDUsReceived", &EEthernetOAMStats::m_OrgPDUsReceived),
      Counter("VariableRequestPDUsReceived", &EEthernetOAMStats::m_VariableRequestPDUsReceived),
      Counter("VariableResponsePDUsReceived", &EEthernetOAMStats::m_VariableResponsePDUsReceived),
      Counter("UnsupportedPDUsReceived", &EEthernetOAMStats::m_UnsupportedPDUsReceived));
  static constexpr Layout kLayouts[] = {{0x91201742}};
  static constexpr ENumberWire kSignatureWire = ENumberWire::kUnsigned32;
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eEthernetOAMStats", 149,
                                              "EEthernetOAMStats::SerializeIn"};
};

std::string EEthernetOAMStats::ToString() const {
  struct Item {
    const char* label;
    unsigned int value;
  };
  const Item items[] = {
      {", Information PDUs Sent: ", GetInformationPDUsSent()},
      {", Information PDUs Received: ", GetInformationPDUsReceived()},
      {", Event Notification PDUs Received: ", GetEventNotificationPDUsReceived()},
      {", Loopback Control PDUs Received: ", GetLoopbackControlPDUsReceived()},
      {", Variable Request PDUs Received: ", GetVariableRequestPDUsReceived()},
      {", Variable Response PDUs Received: ", GetVariableResponsePDUsReceived()},
      {", Unsupported PDUs Received: ", GetUnsupportedPDUsReceived()},
  };
  std::string text;
  for (const Item& item : items) {
    text += item.label;
    text += std::to_string(item.value);
  }
  return text;
}

template class ERecord<EEthernetOAMStats>;
template class EStatsRecord<EEthernetOAMStats>;
