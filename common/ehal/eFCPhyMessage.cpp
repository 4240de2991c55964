#include "eFCPhyMessage.h"

#include "eArchive.h"

namespace {
constexpr unsigned int kVersion = 1;
}  // namespace

void EFCPhyMessage::Empty() {
  m_RequestType = 0;
  m_ReservedShort = 0;
}

void EFCPhyMessage::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kVersion));
  archive << m_RequestType << m_ReservedShort << m_ReservedLong1 << m_ReservedLong2;
}

void EFCPhyMessage::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kVersion) {
    // The report names the parameters reader; receivers match on this text.
    EArchive::SerializeError("x86_64/common/ehal/eFCPhyMessage", 83, "EFCParams::SerializeIn");
  }
  archive >> m_RequestType >> m_ReservedShort >> m_ReservedLong1 >> m_ReservedLong2;
}

EArchive& operator<<(EArchive& archive, const EFCPhyMessage& message) {
  message.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EFCPhyMessage& message) {
  message.SerializeIn(archive);
  return archive;
}
