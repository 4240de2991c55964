#include "eGlobalMessage.h"

#include "eArchive.h"
#include "eRecordLayout.h"

namespace {
constexpr unsigned int kSignature = 0x55220023;
constexpr ELayoutVersion kVersions[] = {{kSignature, 0}, {0x55220022, 1}};
// The report names the class inside the HAL namespace, although it is declared outside it;
// receivers match on this text.
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eGlobalMessage", 105,
                                            "eHal::EGlobalMessage::SerializeIn"};
// The object type given to a message from a sender of the older layout.
constexpr unsigned int kOldSenderObjectType = 0;
}  // namespace

EGlobalMessage& EGlobalMessage::operator=(const EGlobalMessage& other) {
  if (this != &other) Copy(other);
  return *this;
}

void EGlobalMessage::SetMessage(eMessageType type, const EBlob& payload) {
  SetMessageType(type);
  SetMessage(payload);
}

void EGlobalMessage::Copy(const EGlobalMessage& other) {
  m_MessageType = other.m_MessageType;
  m_Message = other.m_Message;
  m_ObjectType = other.m_ObjectType;
}

void EGlobalMessage::Empty() {
  m_MessageType = eMessageType{};
  m_Message.Empty();
  m_ObjectType = 0;
}

template <typename Self, typename Visit>
void EGlobalMessage::Fields(Self& self, Visit& field) {
  field.template Field<unsigned int>(self.m_ObjectType);
  field.template Field<unsigned int>(self.m_MessageType);
  field.template Field<EBlob>(self.m_Message);
}

void EGlobalMessage::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kSignature, [this](auto& field) { Fields(*this, field); });
}

void EGlobalMessage::SerializeIn(EArchive& archive) {
  if (ReadRecord(archive, kVersions, kErrorSite, [this](auto& field) { Fields(*this, field); }) >
      0) {
    m_ObjectType = kOldSenderObjectType;
  }
}

EArchive& operator<<(EArchive& archive, const EGlobalMessage& message) {
  message.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EGlobalMessage& message) {
  message.SerializeIn(archive);
  return archive;
}
