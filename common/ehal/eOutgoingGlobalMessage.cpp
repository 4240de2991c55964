#include "eOutgoingGlobalMessage.h"

#include "eArchive.h"
#include "eRecordLayout.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x66220023;
constexpr ELayoutVersion kVersions[] = {{kSignature, 0}, {0x66220022, 1}};
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eOutgoingGlobalMessage", 104,
                                            "eHal::EOutgoingGlobalMessage::SerializeIn"};
}  // namespace

EOutgoingGlobalMessage& EOutgoingGlobalMessage::operator=(const EOutgoingGlobalMessage& other) {
  if (this != &other) Copy(other);
  return *this;
}

void EOutgoingGlobalMessage::SetMessage(eMessageType type, const EBlob& payload) {
  SetMessageType(type);
  SetMessage(payload);
}

void EOutgoingGlobalMessage::Copy(const EOutgoingGlobalMessage& other) {
  m_MessageType = other.m_MessageType;
  m_Message = other.m_Message;
  m_ObjectType = other.m_ObjectType;
}

void EOutgoingGlobalMessage::Empty() {
  m_MessageType = eMessageType{};
  m_Message.Empty();
  m_ObjectType = kDefaultObjectType;
}

template <typename Self, typename Visit>
void EOutgoingGlobalMessage::Fields(Self& self, Visit& field) {
  field.template Field<unsigned int>(self.m_ObjectType);
  field.template Field<unsigned int>(self.m_MessageType);
  field.template Field<EBlob>(self.m_Message);
}

void EOutgoingGlobalMessage::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kSignature, [this](auto& field) { Fields(*this, field); });
}

void EOutgoingGlobalMessage::SerializeIn(EArchive& archive) {
  // An older sender's object type is the default one (unlike EGlobalMessage, which uses 0).
  if (ReadRecord(archive, kVersions, kErrorSite, [this](auto& field) { Fields(*this, field); }) >
      0) {
    m_ObjectType = kDefaultObjectType;
  }
}

EArchive& operator<<(EArchive& archive, const EOutgoingGlobalMessage& message) {
  message.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EOutgoingGlobalMessage& message) {
  message.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
