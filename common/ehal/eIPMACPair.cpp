#include "eIPMACPair.h"

#include "eArchive.h"

namespace {
constexpr unsigned int kSignature = 0x18111311;
}  // namespace

EIPMACPair& EIPMACPair::operator=(const EIPMACPair& other) {
  Copy(other);
  return *this;
}

void EIPMACPair::Copy(const EIPMACPair& other) {
  if (this == &other) return;
  m_SourceIP = other.m_SourceIP;
  m_DestinationIP = other.m_DestinationIP;
  m_SourceMAC = other.m_SourceMAC;
  m_DestinationMAC = other.m_DestinationMAC;
  m_SourceResolved = other.m_SourceResolved;
  m_DestinationResolved = other.m_DestinationResolved;
}

void EIPMACPair::Empty() {
  m_SourceIP.Empty();
  m_DestinationIP.Empty();
  m_SourceMAC.Empty();
  m_DestinationMAC.Empty();
  m_SourceResolved = false;
  m_DestinationResolved = false;
}

void EIPMACPair::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_SourceIP << m_DestinationIP << m_SourceMAC << m_DestinationMAC << m_SourceResolved
          << m_DestinationResolved;
}

void EIPMACPair::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eIPMACPair", 99, "EIPMACPair::SerializeIn");
  }
  archive >> m_SourceIP >> m_DestinationIP >> m_SourceMAC >> m_DestinationMAC >> m_SourceResolved >>
      m_DestinationResolved;
}

EArchive& operator<<(EArchive& archive, const EIPMACPair& pair) {
  pair.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EIPMACPair& pair) {
  pair.SerializeIn(archive);
  return archive;
}
