#include "eOutgoingMessage.h"

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::From;
using detail::Layout;

// Older layouts lack the port id, then the client id too; those keep their values.
struct EOutgoingMessage::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("PortId", &EOutgoingMessage::m_PortId),
                      Field("ClientID", &EOutgoingMessage::m_ClientID),
                      Field(kEnvelopeTypeField, &EOutgoingMessage::m_MessageType),
                      Field(kEnvelopePayloadField, &EOutgoingMessage::m_Message));
  static constexpr Layout kLayouts[] = {
      {0x33224457}, {0x33224456, From("ClientID")}, {0x33224455, From("MessageType")}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eOutgoingMessage", 111,
                                              "eHal::EOutgoingMessage::SerializeIn"};
};

void EOutgoingMessage::Empty() {
  EmptyEnvelope();
  m_ClientID.Empty();
  m_PortId = 0;
}

}  // namespace eHal

template class ERecord<eHal::EOutgoingMessage>;
