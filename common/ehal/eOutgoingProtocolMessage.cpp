#include "eOutgoingProtocolMessage.h"

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::From;
using detail::Layout;

namespace {
// The object type given to a message from a sender of the older layout (not the default 2).
constexpr unsigned int kOldSenderObjectType = 0;
}  // namespace

struct EOutgoingProtocolMessage::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("ObjectType", &EOutgoingProtocolMessage::m_ObjectType)
                          .OrWhenAbsent(kOldSenderObjectType),
                      Field(kEnvelopeTypeField, &EOutgoingProtocolMessage::m_MessageType),
                      Field(kEnvelopePayloadField, &EOutgoingProtocolMessage::m_Message),
                      Field("ProtocolName", &EOutgoingProtocolMessage::m_ProtocolName));
  static constexpr Layout kLayouts[] = {{0x11122003}, {0x11122002, From("MessageType")}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eOutgoingProtocolMessage", 116,
                                              "eHal::EOutgoingProtocolMessage::SerializeIn"};
};

void EOutgoingProtocolMessage::Empty() {
  EmptyEnvelope();
  m_ProtocolName.Empty();
  m_ObjectType = kDefaultObjectType;
}

}  // namespace eHal

template class ERecord<eHal::EOutgoingProtocolMessage>;
