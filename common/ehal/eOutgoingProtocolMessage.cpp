#include "eOutgoingProtocolMessage.h"

#include "eRecordSchema.h"

namespace eHal {

using namespace detail;

struct EOutgoingProtocolMessage::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("ObjectType", &EOutgoingProtocolMessage::m_ObjectType),
                      Field("MessageType", &EOutgoingProtocolMessage::m_MessageType),
                      Field("Message", &EOutgoingProtocolMessage::m_Message),
                      Field("ProtocolName", &EOutgoingProtocolMessage::m_ProtocolName));
  static constexpr Layout kLayouts[] = {{0x11122003}, {0x11122002, Lacking(1)}};
  static constexpr ESerializeErrorSite kError = {"x86_64/common/ehal/eOutgoingProtocolMessage", 116,
                                                 "eHal::EOutgoingProtocolMessage::SerializeIn"};
};

namespace {
// The object type given to a message from a sender of the older layout.
constexpr unsigned int kOldSenderObjectType = 0;
}  // namespace

void EOutgoingProtocolMessage::Empty() {
  EmptyEnvelope();
  m_ProtocolName.Empty();
  m_ObjectType = kDefaultObjectType;
}

void EOutgoingProtocolMessage::SerializeIn(EArchive& archive) {
  if (Read<Schema>(archive, *this).lacking > 0) m_ObjectType = kOldSenderObjectType;
}

}  // namespace eHal

template class ERecord<eHal::EOutgoingProtocolMessage>;
