#include "eMessage.h"

#include "eArchive.h"
#include "eRecordLayout.h"

namespace eHal {

namespace {
// Only version 3 is written. Versions 1 and 2 lack the leading port id and port count; the
// signatures of the layouts before them lack the destination and then the client id as well.
constexpr unsigned int kVersion = 3;
constexpr ELayoutVersion kVersions[] = {{3, 0},          {2, 1},          {1, 2},
                                        {0x77220024, 3}, {0x77220023, 3}, {0x77220022, 4}};
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eMessage", 157,
                                            "eHal::EMessage::SerializeIn"};
}  // namespace

unsigned int EMessage::m_CurrentSequenceNumber = 0;
ELock EMessage::m_CurrentSequenceNumberLock;

EMessage& EMessage::operator=(const EMessage& other) {
  if (this != &other) Copy(other);
  return *this;
}

void EMessage::SetMessage(eMessageType type, const EBlob& payload) {
  SetMessageType(type);
  SetMessage(payload);
}

void EMessage::Copy(const EMessage& other) {
  m_MessageType = other.m_MessageType;
  m_Destination = other.m_Destination;
  m_Message = other.m_Message;
  m_ClientID = other.m_ClientID;
  m_PortId = other.m_PortId;
  m_PortCount = other.m_PortCount;
}

void EMessage::Empty() {
  m_MessageType = eMessageType{};
  m_Destination = kDefaultDestination;
  m_Message.Empty();
  m_ClientID.Empty();
  m_PortId = 0;
  m_PortCount = 1;
}

template <typename Self, typename Visit>
void EMessage::Fields(Self& self, Visit& field) {
  field.template Field<unsigned int>(self.m_PortCount);
  field.template Field<unsigned int>(self.m_PortId);
  field.template Field<unsigned char>(self.m_Destination);
  field.template Field<EClientID>(self.m_ClientID);
  field.template Field<unsigned int>(self.m_MessageType);
  field.template Field<EBlob>(self.m_Message);
}

void EMessage::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kVersion, [this](auto& field) { Fields(*this, field); });
}

void EMessage::SerializeIn(EArchive& archive) {
  ReadRecord(archive, kVersions, kErrorSite, [this](auto& field) { Fields(*this, field); });
}

unsigned int EMessage::GetNextSequenceNumber() {
  m_CurrentSequenceNumberLock.Lock(eLockDebugData());
  const unsigned int number = ++m_CurrentSequenceNumber;
  m_CurrentSequenceNumberLock.Unlock(eLockDebugData());
  return number;
}

EArchive& operator<<(EArchive& archive, const EMessage& message) {
  message.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EMessage& message) {
  message.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
