#include "eOutgoingMessage.h"

#include "eArchive.h"
#include "eRecordLayout.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x33224457;
constexpr ELayoutVersion kVersions[] = {{kSignature, 0}, {0x33224456, 1}, {0x33224455, 2}};
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eOutgoingMessage", 111,
                                            "eHal::EOutgoingMessage::SerializeIn"};
}  // namespace

EOutgoingMessage& EOutgoingMessage::operator=(const EOutgoingMessage& other) {
  if (this != &other) Copy(other);
  return *this;
}

void EOutgoingMessage::SetMessage(eMessageType type, const EBlob& payload) {
  SetMessageType(type);
  SetMessage(payload);
}

void EOutgoingMessage::Copy(const EOutgoingMessage& other) {
  m_MessageType = other.m_MessageType;
  m_Message = other.m_Message;
  m_ClientID = other.m_ClientID;
  m_PortId = other.m_PortId;
}

void EOutgoingMessage::Empty() {
  m_MessageType = eMessageType{};
  m_Message.Empty();
  m_ClientID.Empty();
  m_PortId = 0;
}

template <typename Self, typename Visit>
void EOutgoingMessage::Fields(Self& self, Visit& field) {
  field.template Field<unsigned int>(self.m_PortId);
  field.template Field<EClientID>(self.m_ClientID);
  field.template Field<unsigned int>(self.m_MessageType);
  field.template Field<EBlob>(self.m_Message);
}

void EOutgoingMessage::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kSignature, [this](auto& field) { Fields(*this, field); });
}

void EOutgoingMessage::SerializeIn(EArchive& archive) {
  ReadRecord(archive, kVersions, kErrorSite, [this](auto& field) { Fields(*this, field); });
}

EArchive& operator<<(EArchive& archive, const EOutgoingMessage& message) {
  message.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EOutgoingMessage& message) {
  message.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
