#include "ePacket.h"

#include <utility>

#include "eArchive.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x112344;
}  // namespace

void EPacket::Empty() {
  m_PacketTimestamp = 0;
  m_PacketData.Empty();
}

void EPacket::Copy(const EPacket& other) {
  if (this == &other) return;
  m_PacketTimestamp = other.m_PacketTimestamp;
  m_PacketData = other.m_PacketData;
}

void EPacket::Swap(EPacket& other) {
  std::swap(m_PacketTimestamp, other.m_PacketTimestamp);
  m_PacketData.Swap(other.m_PacketData);
}

bool EPacket::operator==(const EPacket& other) const {
  return m_PacketTimestamp == other.m_PacketTimestamp && m_PacketData == other.m_PacketData;
}

void EPacket::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_PacketTimestamp << m_PacketData;
}

void EPacket::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/ePacket", 108, "eHal::EPacket::SerializeIn");
  }
  archive >> m_PacketTimestamp >> m_PacketData;
}

EArchive& operator<<(EArchive& archive, const EPacket& packet) {
  packet.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EPacket& packet) {
  packet.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
