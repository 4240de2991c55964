#include "eIPAddressRange.h"

#include "eArchive.h"
#include "eByteOrder.h"

namespace {
constexpr unsigned int kSignature = 0x44444444;

// The blob's first four bytes as a big-endian number when its allocation holds them, else 0.
unsigned int FirstWordOf(const EBlob& blob) {
  unsigned char bytes[4];
  return blob.GetAt(bytes, 0, 4) ? ehal_bytes::ReadBigEndian32(bytes) : 0;
}
}  // namespace

EIPAddressRange& EIPAddressRange::operator=(const EIPAddressRange& other) {
  Copy(other);
  return *this;
}

void EIPAddressRange::Copy(const EIPAddressRange& other) {
  if (this == &other) return;
  m_Address = other.m_Address;
  m_RangeCount = other.m_RangeCount;
}

void EIPAddressRange::Empty() {
  m_Address.Empty();
  m_RangeCount = 1;
}

void EIPAddressRange::SetIPAddresses(const EBlob& from, const EBlob& thru) {
  m_Address.SetAddress(from, eIPv4Address);
  const unsigned int first = FirstWordOf(from);
  const unsigned int last = FirstWordOf(thru);
  m_RangeCount = first > last ? 1 : last - first + 1;
}

EBlob EIPAddressRange::GetIPAddressAt(unsigned int i) const {
  unsigned char bytes[4];
  ehal_bytes::WriteBigEndian32(bytes, ehal_bytes::ReadBigEndian32(m_Address.GetAddress()) + i);
  return EBlob(bytes, 4);
}

EBlob EIPAddressRange::GetIPAddressThru() const {
  return GetIPAddressAt(m_RangeCount - 1);
}

EBlob EIPAddressRange::GetIPAddressFrom() const {
  return m_Address.GetAddressAsBlob();
}

bool EIPAddressRange::IsEqual(const EIPAddressRange& other) const {
  return m_RangeCount == other.m_RangeCount && m_Address.IsEqual(other.m_Address);
}

bool EIPAddressRange::operator<(const EIPAddressRange& other) const {
  if (m_Address < other.m_Address) return true;
  if (other.m_Address < m_Address) return false;
  return m_RangeCount < other.m_RangeCount;
}

void EIPAddressRange::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  m_Address.SerializeOut(archive);
  archive.WriteUnsignedInt(m_RangeCount);
}

void EIPAddressRange::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eIPAddressRange", 195,
                             "EIPAddressRange::SerializeIn");
  }
  m_Address.SerializeIn(archive);
  archive >> m_RangeCount;
}

EArchive& operator<<(EArchive& archive, const EIPAddressRange& range) {
  range.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EIPAddressRange& range) {
  range.SerializeIn(archive);
  return archive;
}
