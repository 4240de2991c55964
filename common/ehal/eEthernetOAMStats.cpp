#include "eEthernetOAMStats.h"

using estats::C;

namespace {

// The signature lies above 2^31 and is written unsigned, so that its text is never negative.
constexpr estats::Layout kLayouts[] = {
    {0x91201742, {C(0, 7)}},
};

}  // namespace

const estats::ArchiveForm EEthernetOAMStats::kArchiveForm(kLayouts,
                                                          {"x86_64/common/ehal/eEthernetOAMStats",
                                                           149, "EEthernetOAMStats::SerializeIn"},
                                                          estats::SignatureText::kUnsigned);

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
