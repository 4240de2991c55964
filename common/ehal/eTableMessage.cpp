#include "eTableMessage.h"

#include "eArchive.h"
#include "eRecordLayout.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x22220022;
constexpr ELayoutVersion kVersions[] = {{kSignature, 0}};
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eTableMessage", 101,
                                            "eHal::ETableMessage::SerializeIn"};
}  // namespace

ETableMessage& ETableMessage::operator=(const ETableMessage& other) {
  if (this != &other) Copy(other);
  return *this;
}

void ETableMessage::SetMessage(eMessageType type, const EBlob& payload) {
  SetMessageType(type);
  SetMessage(payload);
}

void ETableMessage::Copy(const ETableMessage& other) {
  m_MessageType = other.m_MessageType;
  m_Message = other.m_Message;
  m_TableName = other.m_TableName;
}

void ETableMessage::Empty() {
  m_MessageType = eMessageType{};
  m_Message.Empty();
  m_TableName.Empty();
}

template <typename Self, typename Visit>
void ETableMessage::Fields(Self& self, Visit& field) {
  field.template Field<unsigned int>(self.m_MessageType);
  field.template Field<EBlob>(self.m_Message);
  field.template Field<ETableName>(self.m_TableName);
}

void ETableMessage::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kSignature, [this](auto& field) { Fields(*this, field); });
}

void ETableMessage::SerializeIn(EArchive& archive) {
  ReadRecord(archive, kVersions, kErrorSite, [this](auto& field) { Fields(*this, field); });
}

EArchive& operator<<(EArchive& archive, const ETableMessage& message) {
  message.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, ETableMessage& message) {
  message.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
