#include "eOutgoingProtocolMessage.h"

#include "eArchive.h"
#include "eRecordLayout.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x11122003;
constexpr ELayoutVersion kVersions[] = {{kSignature, 0}, {0x11122002, 1}};
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eOutgoingProtocolMessage", 116,
                                            "eHal::EOutgoingProtocolMessage::SerializeIn"};
// The object type given to a message from a sender of the older layout.
constexpr unsigned int kOldSenderObjectType = 0;
}  // namespace

EOutgoingProtocolMessage& EOutgoingProtocolMessage::operator=(
    const EOutgoingProtocolMessage& other) {
  if (this != &other) Copy(other);
  return *this;
}

void EOutgoingProtocolMessage::SetMessage(eMessageType type, const EBlob& payload) {
  SetMessageType(type);
  SetMessage(payload);
}

void EOutgoingProtocolMessage::Copy(const EOutgoingProtocolMessage& other) {
  m_MessageType = other.m_MessageType;
  m_Message = other.m_Message;
  m_ObjectType = other.m_ObjectType;
  m_ProtocolName = other.m_ProtocolName;
}

void EOutgoingProtocolMessage::Empty() {
  m_MessageType = eMessageType{};
  m_Message.Empty();
  m_ProtocolName.Empty();
  m_ObjectType = kDefaultObjectType;
}

template <typename Self, typename Visit>
void EOutgoingProtocolMessage::Fields(Self& self, Visit& field) {
  field.template Field<unsigned int>(self.m_ObjectType);
  field.template Field<unsigned int>(self.m_MessageType);
  field.template Field<EBlob>(self.m_Message);
  field.template Field<EProtocolName>(self.m_ProtocolName);
}

void EOutgoingProtocolMessage::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kSignature, [this](auto& field) { Fields(*this, field); });
}

void EOutgoingProtocolMessage::SerializeIn(EArchive& archive) {
  if (ReadRecord(archive, kVersions, kErrorSite, [this](auto& field) { Fields(*this, field); }) >
      0) {
    m_ObjectType = kOldSenderObjectType;
  }
}

EArchive& operator<<(EArchive& archive, const EOutgoingProtocolMessage& message) {
  message.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EOutgoingProtocolMessage& message) {
  message.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
